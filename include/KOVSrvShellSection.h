// KOVSrvShellSection: the layers of the shell section of one section assignment, as plain vectors
// by layer number: material, orientation, ply, number of section points, thickness, rotation angle.
//
// Reads what KOVSrvBulkShellLayers wrote, one transfer for each kind of datum, and writes nothing.
// Thicknesses and angles are read when the object is built; each of the other vectors on its first
// request, once: a later change of the document is not seen. Numbers are given as they are stored,
// in the units of the model. One thread at a time, reading included. The object shares the
// database of its document, and is of no use once the document is closed.
#pragma once

#include "KOVBasVector.h"
#include "KOVExport.h"
#include "KOVObjDocument.h"
#include "KOVSimCSet.h"
#include "KOVSimPosition.h"

class KOVSimDistribution;

class KOV_EXPORT KOVSrvShellSection {
  public:
    /// How a thickness or a rotation angle of one layer varies.
    enum VariationEnm : int {
        VariationNone = 0,         ///< the layer has no such value
        VariationConstant = 1,     ///< one value for the section, in the vector of constants
        VariationDistributed = 2,  ///< one value for each element, in a field of the bulk record
    };

    /// `assignment`: a member of Model_sectionAssignments with a section that is a member of
    /// Model_bulkSections, and with a region. Of the section's membership only the index counts.
    /// Throws KOVSimException where the section is no member with an index of Model_bulkSections,
    /// or has more layers than the model has layer slots; where the model lacks one of the two
    /// collections, all that is kept by section is absent. A section of 0 layers asks for none of
    /// them. Throws KOVBasAssertException as UpdateThicknesses does.
    explicit KOVSrvShellSection(KOVSimPosition const& assignment);
    ~KOVSrvShellSection();
    KOVSrvShellSection(KOVSrvShellSection const& other);
    KOVSrvShellSection& operator=(KOVSrvShellSection const& other);

    /// One record for each layer; a null position where the layer has none. The vectors belong to
    /// this object and stay as they are from the first request on. A read that throws is not tried
    /// again: later requests give null positions.
    KOVBasVector<KOVSimPosition> const& GetMaterials() const;
    KOVBasVector<KOVSimPosition> const& GetOrientations() const;
    KOVBasVector<KOVSimPosition> const& GetPlies() const;
    /// The number of section points of each layer; -1 where there is none.
    KOVBasVector<int> const& GetSectionPoints() const;

    /// The constant of each layer; the negative of the largest finite double where it has none.
    KOVBasVector<double> const& GetConstThicknesses() const { return m_constThicknesses; }
    KOVBasVector<double> const& GetConstRotationAngles() const { return m_constRotationAngles; }
    /// How each layer's thickness or angle varies: constant where there is a constant, distributed
    /// where there is none and all elements of the section have a value.
    KOVBasVector<VariationEnm> const& GetThicknessVariation() const { return m_thicknessVariation; }
    KOVBasVector<VariationEnm> const& GetRotationAngleVariation() const {
        return m_rotationAngleVariation;
    }

    /// Read the constants and variations anew from the document; the elements of the vectors move.
    /// A field of distributed values without a drawer hides the constants. Throw
    /// KOVBasAssertException at a drawer of distributed values that does not hold exactly one
    /// layer.
    void UpdateThicknesses();
    void UpdateRotationAngles();

    int GetNumLayers() const { return m_numLayers; }
    /// The section among Model_bulkSections and its layers among Model_bulkLayerSlots, as temporary
    /// sets; tied to no collection for a section of 0 layers, or where the model lacks that
    /// collection.
    KOVSimCSet const& GetSectionSet() const { return m_sectionSet; }
    KOVSimCSet const& GetLayerSet() const { return m_layerSet; }
    /// The elements of the assignment's region.
    KOVSimCSet const& GetElementSet() const { return m_elementSet; }

  private:
    KOVSimPosition BulkMember(int member) const;
    void ReadRow(KOVSimDistribution const& distribution, void* entries, unsigned long bytes) const;
    bool ReadIntegers(int member, KOVBasVector<int>& entries) const;
    void ReadRecords(int member, KOVSimPosition const& collection,
                     KOVBasVector<KOVSimPosition>& records) const;
    bool MarkDistributed(KOVSimPosition const& field, KOVBasVector<VariationEnm>& variations) const;
    void Update(int distributedMember, int constantMember, KOVBasVector<double>& constants,
                KOVBasVector<VariationEnm>& variations) const;

    KOVSimPosition m_assignment;
    KOVObjDocument m_document;
    KOVSimCSet m_sectionSet;
    KOVSimCSet m_layerSet;
    KOVSimCSet m_elementSet;
    int m_numLayers = 0;
    mutable KOVBasVector<KOVSimPosition> m_materials;
    mutable KOVBasVector<KOVSimPosition> m_orientations;
    mutable KOVBasVector<KOVSimPosition> m_plies;
    mutable KOVBasVector<int> m_sectionPoints;
    KOVBasVector<double> m_constThicknesses;
    KOVBasVector<double> m_constRotationAngles;
    KOVBasVector<VariationEnm> m_thicknessVariation;
    KOVBasVector<VariationEnm> m_rotationAngleVariation;
    mutable bool m_materialsRead = false;
    mutable bool m_orientationsRead = false;
    mutable bool m_pliesRead = false;
    mutable bool m_sectionPointsRead = false;
};
