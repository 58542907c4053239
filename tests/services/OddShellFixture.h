// Shell layers in documents that others made, in ways that this library does not: links that are
// missing or lead to objects of another kind, stores over other grids and of other types, layer
// counts that fit nothing. Nothing of it ends the process, reads past a buffer or changes the
// document: what cannot be read is absent or refused.
#pragma once

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "services/ShellFixture.h"

namespace kov::test {

inline constexpr char kRead[] = "read";

// What came of it: kRead, or the text of the refusal.
inline std::string OutcomeOf(std::function<void()> const& work) {
    try {
        work();
    } catch (KOVBasException const& refusal) {
        return refusal.what();
    }
    return kRead;
}

class OddShells : public ShellTest {
  protected:
    static constexpr double kNone = -std::numeric_limits<double>::max();
    static constexpr auto None = KOVSrvShellSection::VariationNone;
    static constexpr auto Constant = KOVSrvShellSection::VariationConstant;

    template <class T>
    static std::vector<T> List(KOVBasVector<T> const& vector) {
        return {vector.begin(), vector.end()};
    }
    KOVSrvShellSection Section(int assignment = 0) const {
        return KOVSrvShellSection(mesh.Assignment(assignment));
    }
    // The questions that are read on request.
    static std::vector<std::function<void()>> AllOf(KOVSrvShellSection const& section) {
        return {[&] { section.GetMaterials(); }, [&] { section.GetOrientations(); },
                [&] { section.GetPlies(); }, [&] { section.GetSectionPoints(); }};
    }
    static void ExpectNoDatum(KOVSrvShellSection const& section, int layers) {
        ASSERT_EQ(section.GetNumLayers(), layers);
        for (auto const* records :
             {&section.GetMaterials(), &section.GetOrientations(), &section.GetPlies()}) {
            ASSERT_EQ(records->Size(), layers);
            for (KOVSimPosition const& record : *records) EXPECT_TRUE(record.IsNull());
        }
        std::size_t const n = static_cast<std::size_t>(layers);
        EXPECT_EQ(List(section.GetSectionPoints()), std::vector<int>(n, -1));
        EXPECT_EQ(List(section.GetConstThicknesses()), std::vector<double>(n, kNone));
        EXPECT_EQ(List(section.GetConstRotationAngles()), std::vector<double>(n, kNone));
        EXPECT_EQ(List(section.GetThicknessVariation()), std::vector(n, None));
        EXPECT_EQ(List(section.GetRotationAngleVariation()), std::vector(n, None));
    }
    // In a transaction, as all that makes something below.
    KOVSimPosition Record(int type) const { return mesh.document.CreateDataRecord(type).Pos(); }
    KOVSimCollection Slots() const { return KOVSimCollection(mesh.Slots().GetCollection()); }
    KOVSimCollection Sections() const { return KOVSimCollection(mesh.Sections().GetCollection()); }
    KOVSimPosition FieldOf(KOVSimPosition const& distribution) const {
        KOVSimPosition const field = Record(schema::Field_Meshed());
        KOVObjMeshedField(field).SetDistribution(distribution);
        return field;
    }
    void Link(int member, KOVSimPosition const& position) const {
        mesh.BulkRecord().SetPosition(member, position);
    }
    void LinkAll(KOVSimPosition const& position) const {
        for (int member : kIntegers) Link(member, position);
        for (int member : kFields) Link(member, position);
    }
    // A store with one drawer, whose entries were never written.
    KOVSimDistributionID Store(KOVSimCollection const& rows, KOVSimCollection const& columns,
                               KOVSimRangeType const& range, std::vector<int> const& rowMembers,
                               std::vector<int> const& columnMembers) const {
        KOVSimDistributionID const store = mesh.NewDistribution(rows, columns, range);
        KOVSimTransfer make{KOVSimDistribution(store)};
        make.SetMakeNewDrawer().SetBufferPadding(false);
        make.SetDim(0, MeshDocument::Set(rows, rowMembers));
        make.SetDim(1, MeshDocument::Set(columns, columnMembers)).CheckView().ExecMake();
        return store;
    }
    // The same over the layer slots alone.
    KOVSimDistributionID FlatStore(KOVSimRangeType const& range,
                                   std::vector<int> const& layers) const {
        KOVSimGrid::CollectionArray grid(1, 0);
        grid.Get(0) = Slots().ID();
        KOVSimDistributionID const store =
            mesh.document.CreateDistribution(KOVSimGrid(grid), range, -1);
        KOVSimTransfer make{KOVSimDistribution(store)};
        make.SetMakeNewDrawer().SetBufferPadding(false);
        make.SetDim(0, MeshDocument::Set(Slots(), layers)).CheckView().ExecMake();
        return store;
    }
    std::vector<int> const kIntegers = {
        schema::BulkShellLayers_materials(), schema::BulkShellLayers_orientations(),
        schema::BulkShellLayers_plies(), schema::BulkShellLayers_sectionPoints()};
    std::vector<int> const kFields = {
        schema::BulkShellLayers_constThicknesses(), schema::BulkShellLayers_constAngles(),
        schema::BulkShellLayers_distThicknesses(), schema::BulkShellLayers_distAngles()};
};

}  // namespace kov::test
