// KOVSrvLumenChecker: does a document hold everything that a results viewer needs? A model with a
// complete mesh, analytic surfaces that are fully described, plies, sections and steps that the
// focus reaches, descriptions that cover what the steps name, fields whose components fit their
// field types, and history that leads back to a request and its region.
//
// A check never stops at a fault: each fault becomes one line of text in a list, in the order in
// which the walk meets it, and an empty list after Check_Lumen certifies the document. The texts
// are fixed, also where their wording or numbering is odd: readers of reports know them by heart.
//
// Writes nothing to the document; where shells have bulk layers, reading them leaves temporary sets
// that end with the context. What the document layer refuses on the way, such as a damaged page,
// is an exception that passes through; the findings made so far stay. The time grows with the
// objects and with the runs of their sets, not with nodes or elements. One object is for one
// thread.
#pragma once

#include "KOVBasVector.h"
#include "KOVExport.h"
#include "KOVObjDocument.h"
#include "KOVSimArray.h"
#include "KOVSimPosition.h"
#include "KOVString.h"

class KOV_EXPORT KOVSrvLumenChecker {
  public:
    /// Component symbols (zdm_ComponentSymbolsEnm).
    using Symbols = KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>;

    /// Shares the document, which must stay open while a check runs. Nothing is read yet.
    explicit KOVSrvLumenChecker(KOVObjDocument const& document);

    /// Takes the model of the document's focus and runs the checks of mesh, regions, plies, steps,
    /// history, surface output and section assignments, in this order, each to its end. A document
    /// without a model is checked as one whose model is empty. A second call appends its findings.
    void Check_Lumen();

    /// The findings of all checks so far, in the order in which they were made; empty at first.
    /// Belongs to this object; grows with each check, and is never cleared or reordered.
    KOVBasVector<KOVString> const& GetFindings() const { return m_findings; }

    // Each of the following may be called by itself, in any order, after Check_Lumen has taken the
    // model; before that the model is null, and so without steps, regions and all the rest.

    /// The mesh: coordinates, user nodes, connectivity, and the element classes that have no
    /// section. A class is passed over if none of its elements has an element specification, or if
    /// its element type needs no section.
    void Check_Mesh();
    /// Each analytic surface among the regions: its rigid bodies, their reference nodes, its mesh
    /// and its axis.
    void Check_Regions();
    /// Each ply is known to the focus.
    void Check_Ply();
    /// Each step is known to the focus; its modes, modal system and time incrementation; the times,
    /// arc lengths and frequencies that it names have data.
    void Check_Steps();
    /// The history fields of each step, and the fields of each output request whose symbol field 3
    /// is 1 (members of the set OutputRequest_field), with Check_Field for each.
    void Check_History();
    /// The regions of surface output, which want faces, edges or nodes.
    void Check_FocusResults();
    /// Each section assignment, its section, its region and the section's layers. Where the model
    /// has bulk shell layers those of each shell are read as by KOVSrvShellSection, whose
    /// exceptions pass through.
    void Check_sectionAssignments();

    /// One meshed field: its field type, and the components of each serial field. `header` opens
    /// each finding, and `fieldNumber` follows it as the number of the field. A field type whose
    /// record lacks symbol field 0 counts as one of algebraic type -1.
    void Check_Field(KOVSimPosition field, KOVString header, KOVString fieldNumber);
    /// Whether component symbols fit an algebraic type (zdm_AlgebraicTypeEnm); one finding, with
    /// `header` in it, if they do not. Other numbers are reported as not supported, but for a
    /// `fieldType` of the exact type FieldType_unchecked.
    void Check_Component(KOVString header, int algebraicType, Symbols const& componentSymbols,
                         KOVSimPosition fieldType);
    /// True if each of the symbols is among the `allowedCount` entries of `allowed`, which stays
    /// the caller's and is not changed; order and repeats do not matter. True without symbols;
    /// false with some and an `allowedCount` below 1.
    bool Check_Component_Impl(Symbols const& componentSymbols, int* allowed,
                              int allowedCount) const;

    /// Whether the data of a field lie over the nodes or elements of the mesh, told by the first
    /// drawer of its first serial field. False for what is no meshed field, or has no drawer there.
    bool HasNodeOrElementDim(KOVSimPosition field) const;

  private:
    KOVObjDocument m_document;
    KOVSimPosition m_model;
    KOVBasVector<KOVString> m_findings;
};
