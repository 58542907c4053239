// What an element layer property makes of documents and arguments of odd layouts: associations that
// lead elsewhere, tables over other grids, sets and numbers that fit nothing. All of it is answered
// with nothing or refused, and what is refused leaves no trace behind a dropped transaction.
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "services/ElementLayerFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Numbers = std::vector<int>;
using Block = ElementLayerDocument::Block;
using Blocks = std::vector<Block>;

constexpr char kDone[] = "done";

std::string OutcomeOf(std::function<void()> const& work) {
    try {
        work();
    } catch (KOVBasException const& refusal) {
        return refusal.what();
    }
    return kDone;
}

class OddElementLayers : public testing::TestWithParam<Medium> {
  protected:
    template <class Work>
    void InTransaction(Work work) {
        auto const transaction = mesh.Write();
        work();
        transaction->Commit();
    }
    // The mesh leads to `target` in place of a DSet of this property.
    void Associate(KOVSimPosition const& target) {
        mesh.document.GetMesh().Associate(ElementLayerDocument::LinkType(),
                                          ElementLayerDocument::kLink, target);
    }
    KOVSimRangeType Members() const { return {KOVSimTypeKeyMember, mesh.Values().ID()}; }
    // A DSet over a table that has one drawer, which cannot grow.
    KOVSimPosition Table(KOVSimCollection const& rows, KOVSimCollection const& columns,
                         Numbers const& rowMembers, Numbers const& columnMembers) {
        KOVSimDistributionID const table = mesh.NewDistribution(rows, columns, Members());
        KOVSimTransfer make{KOVSimDistribution(table)};
        make.SetMakeNewDrawer().SetDim(0, MeshDocument::Set(rows, rowMembers));
        make.SetDim(1, MeshDocument::Set(columns, columnMembers)).CheckView().ExecMake();
        return DSet(table);
    }
    KOVSimPosition FlatTable() {
        KOVSimGrid::CollectionArray grid(1, 0);
        grid.Get(0) = mesh.elements.ID();
        KOVSimDistributionID const table =
            mesh.document.CreateDistribution(KOVSimGrid(grid), Members(), -1);
        KOVSimTransfer make{KOVSimDistribution(table)};
        make.SetMakeNewDrawer().SetDim(0, mesh.Elements({1})).CheckView().ExecMake();
        return DSet(table);
    }
    KOVSimPosition DSet(KOVSimDistributionID const& table) {
        KOVSimContext const context = mesh.document.Focus().Context();
        return context.CreateDSet(table, context.Schema().TypeID(ElementLayerDocument::DSetType()));
    }
    std::string Layers() {
        return OutcomeOf([&] { mesh.Property().GetElementLayers(mesh.Elements({1})); });
    }
    std::string Lookup() {
        Numbers values(4);
        return OutcomeOf([&] {
            mesh.Property().Lookup(KOVSimCSet(mesh.Elements({1, 2})),
                                   KOVSimCSet(mesh.LayerSet({0, 1})), values.data());
        });
    }
    // Adds and saves in a transaction that is dropped.
    std::string AddAndSave(Numbers const& layers = {0}) {
        return OutcomeOf([&] {
            auto const transaction = mesh.Write();
            KOVSrvElementLayerProperty property = mesh.Property();
            property.Add(mesh.Elements({1}), mesh.LayerSet(layers), mesh.Value(1));
            property.Add(mesh.Elements({500}), mesh.LayerSet(layers), mesh.Value(2));
            property.Save(*transaction);
        });
    }
    // The same with an object of these numbers.
    std::string AddAndSave(KOVSimPosition const& focus, KOVSimCollectionID const& values,
                           int linkType, int chunk) {
        return OutcomeOf([&] {
            auto const transaction = mesh.Write();
            KOVSrvElementLayerProperty property(focus, values, ElementLayerDocument::DSetType(),
                                                linkType, 7, chunk);
            property.Add(mesh.Elements({1}), mesh.LayerSet({0}), mesh.Value(1));
            property.Add(mesh.Elements({500}), mesh.LayerSet({0}), mesh.Value(1));
            property.Save(*transaction);
        });
    }

    ElementLayerDocument mesh{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Media, OddElementLayers, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(OddElementLayers, AssociationsThatLeadToNoDSetAreTablesWithoutContent) {
    std::function<KOVSimPosition()> const makers[] = {
        [&] {
            return KOVSimPosition(mesh.NewDistribution(mesh.elements, mesh.Layers(), Members()));
        },
        [&] { return KOVSimPosition(mesh.elements.ID()); },
        [&] { return KOVSimPosition(mesh.elements.CreateCSetStrided(0, 2, 1, 1)); },
        [&] { return mesh.document.GetMesh(); }};
    for (auto const& make : makers) {
        InTransaction([&] { Associate(make()); });
        mesh.Reopen();
        EXPECT_EQ(Layers(), kDone);
        EXPECT_THAT(Lookup(), HasSubstr("cannot read"));
        EXPECT_THAT(AddAndSave(), HasSubstr("cannot update a dataset"));
    }
}

TEST_P(OddElementLayers, TablesOverOtherCollectionsAreRefused) {
    struct Odd {
        KOVSimPosition dset;
        char const* layers;
        char const* add;
    };
    std::function<Odd()> const makers[] = {
        [&] {
            return Odd{Table(mesh.nodes, mesh.Layers(), {1}, {0}), "cannot intersect two sets",
                       "cannot make a drawer"};
        },
        [&] {
            return Odd{Table(mesh.nodes, mesh.nodes, {1}, {0}), "cannot intersect two sets",
                       "cannot make a drawer"};
        },
        [&] {
            return Odd{Table(mesh.elements, mesh.elements, {1}, {0}), "cannot unite two sets",
                       "cannot write"};
        }};
    for (auto const& make : makers) {
        Odd odd;
        InTransaction([&] {
            odd = make();
            Associate(odd.dset);
        });
        mesh.Reopen();
        EXPECT_THAT(Layers(), HasSubstr(odd.layers));
        EXPECT_THAT(Lookup(), HasSubstr("cannot read"));
        EXPECT_THAT(AddAndSave(), HasSubstr(odd.add));
    }
}

TEST_P(OddElementLayers, ATableOfOneDimensionIsRefusedWhenItIsLoaded) {
    InTransaction([&] { Associate(FlatTable()); });
    mesh.Reopen();
    EXPECT_THROW(mesh.Property(), KOVSimException);
}

TEST_P(OddElementLayers, ADrawerThatCannotGrowTakesNoFurtherElements) {
    InTransaction([&] { Associate(Table(mesh.elements, mesh.Layers(), {1, 2}, {0, 3})); });
    mesh.Reopen();
    EXPECT_THAT(AddAndSave({0, 3}), HasSubstr("cannot write"));
    InTransaction([&] {
        KOVSrvElementLayerProperty property = mesh.Property();
        property.Add(mesh.Elements({2}), mesh.LayerSet({0, 3}), mesh.Value(9));
    });
    mesh.Reopen();
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{1, 2}, {0, 3}}}));
    EXPECT_THAT(
        ElementLayerDocument::Lookup(mesh.Property(), mesh.Elements({1, 2}), mesh.LayerSet({0, 3})),
        ElementsAre(0, 0, 9, 9));
}

TEST_P(OddElementLayers, OfTwoDrawersOfTheSameLayersTheOneMadeFirstGrows) {
    {
        auto const transaction = mesh.Write();
        KOVSrvElementLayerProperty property = mesh.Property();
        property.Add(mesh.Elements({1}), mesh.LayerSet({0, 3}), mesh.Value(5));
        property.CreateDrawer(mesh.Elements({7}), mesh.LayerSet({0, 3}));
        property.Save(*transaction);
        transaction->Commit();
    }
    mesh.Reopen();
    InTransaction([&] {
        KOVSrvElementLayerProperty property = mesh.Property();
        property.Add(mesh.Elements({8}), mesh.LayerSet({0, 3}), mesh.Value(6));
    });
    mesh.Reopen();
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{1, 8}, {0, 3}}, {{7}, {0, 3}}}));
}

TEST_P(OddElementLayers, ATableOfAnotherServiceIsLeftAsItIs) {
    InTransaction([&] { Associate(mesh.Connectivity()); });
    mesh.Reopen();
    EXPECT_EQ(Layers(), kDone);
    EXPECT_THAT(Lookup(), HasSubstr("cannot read"));
    EXPECT_THAT(AddAndSave(), HasSubstr("cannot make a drawer"));
}

TEST_P(OddElementLayers, NumbersThatFitNothingAreRefused) {
    KOVSimPosition const focus = mesh.document.Focus();
    KOVSimCollectionID const values = mesh.Values().ID();
    int const link = ElementLayerDocument::LinkType();
    int const least = std::numeric_limits<int>::min(), most = std::numeric_limits<int>::max();
    EXPECT_THAT(AddAndSave(KOVSimPosition(), values, link, 8), HasSubstr("position is null"));
    EXPECT_THAT(AddAndSave(mesh.document.GetMesh(), values, link, 8),
                HasSubstr("position is null"));
    EXPECT_THAT(AddAndSave(focus, KOVSimCollectionID(), link, 8), HasSubstr("range is null"));
    EXPECT_THAT(AddAndSave(focus, values, -1, 8), HasSubstr("-1 is no type"));
    EXPECT_THAT(AddAndSave(focus, values, link, -1), HasSubstr("chunk size is negative"));
    EXPECT_THAT(AddAndSave(focus, values, link, least), HasSubstr("chunk size is negative"));
    // Chunks are for the store to choose by.
    EXPECT_EQ(AddAndSave(focus, values, link, 0), kDone);
    EXPECT_EQ(AddAndSave(focus, values, link, most), kDone);
}

TEST_P(OddElementLayers, NullSetsAreRefusedByAddAndHaveNothing) {
    auto const transaction = mesh.Write();
    KOVSrvElementLayerProperty property = mesh.Property();
    KOVSimDynamicID const value = mesh.Value(1);
    EXPECT_THROW(property.Add(KOVSimCSetID(), KOVSimCSetID(), value), KOVSimException);
    EXPECT_THROW(property.Add(mesh.Elements({1}), KOVSimCSetID(), value), KOVSimException);
    property.Add(mesh.Elements({1}), mesh.LayerSet({0}), KOVSimDynamicID());
    EXPECT_EQ(property.GetElementLayers(KOVSimCSetID()).Size(), 0);
    EXPECT_EQ(property.Lookup(KOVSimCSet(), KOVSimCSet(), nullptr), 0);
    KOVSimCSet const elements(mesh.Elements({1})), layers(mesh.LayerSet({0}));
    EXPECT_THROW(property.Lookup(elements, layers, nullptr), KOVSimException);
    EXPECT_THAT(ElementLayerDocument::Lookup(property, elements, layers), ElementsAre(-1));
}

TEST_P(OddElementLayers, AClosedDocumentIsRefused) {
    KOVSrvElementLayerProperty property = mesh.Property();
    KOVSimCSetID const elements = mesh.Elements({1}), layers = mesh.LayerSet({0});
    mesh.document.Close();
    EXPECT_THROW(property.Add(elements, layers, KOVSimDynamicID()), KOVSimException);
    EXPECT_THROW(property.GetElementLayers(elements), KOVSimException);
    EXPECT_THROW(property.GetElementCollection(), KOVSimException);
    EXPECT_THROW(property.GetSectionLayerCollection(), KOVSimException);
}

}  // namespace
}  // namespace kov::test
