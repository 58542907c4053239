// KOVSrvBulkShellLayers: gathers the layers of all the shell sections of a model, and writes them
// at once as distributions over (layer slots, sections) and (layer slots, elements).
//
// A translator meets layers section after section, a document keeps them layer after layer, in one
// drawer for each layer number: everything is held in memory until all sections are known, and no
// document is needed before that. Layers are counted from 0. A section is its member index in
// Model_bulkSections, an element its ordinal; materials, orientations and plies are member indices
// of the material collection, of Model_orientations and of Model_bulkPlies. All of them must be
// members by the time of writing. Thicknesses and angles are kept in the units of the caller.
//
// The one object is had from omi_Singleton<KOVSrvBulkShellLayers>::Instance(), and ends, with all
// that was not written, when the module KOVSrvFsm goes down. One thread at a time.
#pragma once

#include "KOVBasMap.h"
#include "KOVBasPair.h"
#include "KOVBasVector.h"
#include "KOVExport.h"
#include "KOVObjDocument.h"
#include "KOVSimPosition.h"
#include "omi_Singleton.h"

class KOV_EXPORT KOVSrvBulkShellLayers : public omi_Singleton<KOVSrvBulkShellLayers> {
  public:
    KOVSrvBulkShellLayers();
    ~KOVSrvBulkShellLayers();

    /// One value of one layer of one section. The first value stays; a later one for the same layer
    /// and section is dropped in silence.
    void AppendMaterial(int layer, int section, int material);
    void AppendOrientation(int layer, int section, int orientation);
    void AppendPly(int layer, int section, int ply);
    void AppendNumSectionPoints(int layer, int section, int count);
    void AppendConstThickness(int layer, int section, double thickness);
    void AppendConstAngle(int layer, int section, double angle);

    /// One layer of the elements of `elementSet`, a set of the mesh's elements; their values are
    /// those of `field`, a record of type Field_FTable, and are read when the layers are written.
    /// Of several pairs for one element the first that gives it a value counts. A pair with a null
    /// position is passed over when the layers are written.
    void AppendDistThickness(int layer, KOVSimPosition elementSet, KOVSimPosition field);
    void AppendDistAngle(int layer, KOVSimPosition elementSet, KOVSimPosition field);

    /// Writes all that was gathered into the document of `position`, in one transaction of its own,
    /// and holds nothing then. A document whose model assigns no shell section is left as it is,
    /// and everything is kept for the next write. Throws KOVSimException where the document refuses
    /// (members that do not exist, a table field without drawers, no collection of orientations):
    /// nothing is written then, and what came before the refusal is no longer held.
    void WriteBulkDistributions(KOVSimPosition position);

    /// The steps of WriteBulkDistributions, in its order, in the document that it bound and in its
    /// transaction. Initialize finds the bulk record and the collections, and makes those that are
    /// missing, orientations and materials apart. Each of the others writes one kind of datum anew,
    /// links it from the bulk record, and holds nothing of that kind then; where nothing is held it
    /// does nothing.
    void Initialize();
    void WriteMaterialDistribution();
    void WriteOrientationDistribution();
    void WritePlyDistribution();
    void WriteSectionPointDistribution();
    void WriteConstThicknessDistribution();
    void WriteConstAngleDistribution();
    void WriteDistThicknessDistribution();
    void WriteDistAngleDistribution();

    /// Adds to `values` the value of the table field `field` on each element of `elementSet`; an
    /// element that has a value keeps it. An element that the field's first drawer does not hold
    /// gets the first value of the field's table. Nothing is added for a field without table or
    /// without distribution. Throws KOVSimException if the distribution has no drawer.
    ///
    /// The i-th element takes the i-th number of the drawer's columns of all elements, element
    /// after element: with one column that is its own number.
    void ReadFieldData(KOVSimPosition elementSet, KOVSimPosition field,
                       KOVBasMap<int, double>& values);

  protected:
    // By layer, in the order of calls: what comes twice is sorted out when the layers are written,
    // where a map of sections would cost a node and a walk through memory for each value.
    using IntegerLayers = KOVBasMap<int, KOVBasVector<KOVBasPair<int, int>>>;  ///< section, value
    using RealLayers = KOVBasMap<int, KOVBasVector<KOVBasPair<int, double>>>;  ///< section, value
    using FieldPair = KOVBasPair<KOVSimPosition, KOVSimPosition>;              ///< set, field
    using FieldLayers = KOVBasMap<int, KOVBasVector<FieldPair>>;

    KOVObjDocument m_document;
    IntegerLayers m_materials;
    IntegerLayers m_orientations;
    IntegerLayers m_plies;
    IntegerLayers m_numSectionPoints;
    RealLayers m_constThicknesses;
    RealLayers m_constAngles;
    FieldLayers m_distThicknesses;
    FieldLayers m_distAngles;
    /// Initialize and all writing do nothing without it.
    bool m_enabled = true;
    /// Of the document, from Initialize on.
    KOVSimPosition m_bulkRecord;
    KOVSimPosition m_layerSlots;
    KOVSimPosition m_sections;
    KOVSimPosition m_materialCollection;
    KOVSimPosition m_orientationCollection;
    KOVSimPosition m_plyCollection;
};
