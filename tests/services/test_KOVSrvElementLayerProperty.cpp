#include "KOVSrvElementLayerProperty.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "services/ElementLayerFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;
using Numbers = std::vector<int>;
using Block = ElementLayerDocument::Block;
using Blocks = std::vector<Block>;

constexpr int kUntouched = ElementLayerDocument::kUntouched;

class ElementLayerProperty : public testing::TestWithParam<Medium> {
  protected:
    void Add(KOVSrvElementLayerProperty& property, Numbers const& elements, Numbers const& layers,
             int value) {
        property.Add(mesh.Elements(elements), mesh.LayerSet(layers), mesh.Value(value));
    }
    template <class Work>
    void InTransaction(Work work) {
        auto const transaction = mesh.Write();
        work(*transaction);
        transaction->Commit();
    }
    struct Given {
        Numbers elements, layers;
        int value;
    };
    // Adds and saves, and opens the document anew.
    void Store(std::vector<Given> const& all, int link = ElementLayerDocument::kLink) {
        InTransaction([&](KOVSimTransaction& transaction) {
            KOVSrvElementLayerProperty property = mesh.Property(link);
            for (Given const& given : all) {
                Add(property, given.elements, given.layers, given.value);
            }
            property.Save(transaction);
        });
        mesh.Reopen();
    }
    Numbers Lookup(Numbers const& elements, Numbers const& layers,
                   int link = ElementLayerDocument::kLink) {
        return ElementLayerDocument::Lookup(mesh.Property(link), mesh.Elements(elements),
                                            mesh.LayerSet(layers));
    }
    Numbers LayersOf(Numbers const& elements) {
        return Members(mesh.Property().GetElementLayers(mesh.Elements(elements)));
    }

    ElementLayerDocument mesh{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Media, ElementLayerProperty, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(ElementLayerProperty, ElementsOfTheSameLayersShareADrawer) {
    Store({{{5, 6}, {0, 1}, 3}, {{1, 900}, {0, 1}, 4}});
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{1, 5, 6, 900}, {0, 1}}}));
    EXPECT_THAT(Lookup({1, 5, 6, 900}, {0, 1}), ElementsAre(4, 4, 3, 3, 3, 3, 4, 4));
}

TEST_P(ElementLayerProperty, SameElementsUnderTwoSetsOfLayersStandInTwoDrawers) {
    Store({{{5, 6}, {0, 1}, 3}, {{5, 6}, {2, 7}, 4}});
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{5, 6}, {0, 1}}, {{5, 6}, {2, 7}}}));
    EXPECT_THAT(LayersOf({5}), ElementsAre(0, 1, 2, 7));
    EXPECT_THAT(Lookup({6}, {0, 1, 2, 3, 7}), ElementsAre(3, 3, 4, kUntouched, 4));
}

TEST_P(ElementLayerProperty, SetsOfLayersThatDifferByOneAreKeptApart) {
    Store({{{1}, {0, 2}, 3}, {{2}, {0, 1, 2}, 4}, {{3}, {0, 2}, 5}, {{4}, {0, 1, 2}, 6}});
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{1, 3}, {0, 2}}, {{2, 4}, {0, 1, 2}}}));
    EXPECT_THAT(LayersOf({1}), ElementsAre(0, 2));
    EXPECT_THAT(LayersOf({4}), ElementsAre(0, 1, 2));
}

TEST_P(ElementLayerProperty, TableIsChunkedAndGrowsByElements) {
    Store({{{5, 6}, {0, 1, 4}, 3}});
    KOVSimDistribution const table = mesh.Table();
    EXPECT_EQ(table.Grid().Collections().ConstGet(0), mesh.elements.ID());
    EXPECT_EQ(table.Grid().Collections().ConstGet(1), mesh.Layers().ID());
    EXPECT_EQ(table.Range().Key(), KOVSimTypeKeyMember);
    EXPECT_EQ(table.Range().Collection(), mesh.Values().ID());
    EXPECT_EQ(KOVSimPosition(table.ID()).TypePosition(), schema::Field_ElementLayerProperty());
    Descriptions const drawers = MeshDocument::Drawers(table);
    ASSERT_EQ(drawers.Size(), 1);
    EXPECT_EQ(MeshDocument::ChunkSizes(drawers.ConstGet(0)),
              (Numbers{ElementLayerDocument::kChunk, 3}));
    EXPECT_EQ(drawers.ConstGet(0).extendableDim, 0);
}

TEST_P(ElementLayerProperty, MeshKnowsTheTableAsADatasetOfTheTypeGiven) {
    Store({{{5, 6}, {0, 1}, 3}});
    ASSERT_FALSE(mesh.Saved().IsNull());
    EXPECT_EQ(mesh.Saved().TypePosition(), ElementLayerDocument::DSetType());
    KOVSimDSet const dset(mesh.Saved());
    EXPECT_THAT(Members(dset.Collect(mesh.elements.ID())), ElementsAre(5, 6));
    EXPECT_THAT(Members(dset.Collect(mesh.Layers().ID())), ElementsAre(0, 1));
    EXPECT_THAT(Members(dset.Collect(mesh.Values().ID())), ElementsAre(3));
}

TEST_P(ElementLayerProperty, ElementsInNoDrawerHaveNoLayers) {
    Store({{{5, 6}, {0, 1}, 3}});
    KOVSimCSet const layers = mesh.Property().GetElementLayers(mesh.Elements({7, 8}));
    EXPECT_EQ(layers.Size(), 0);
    EXPECT_EQ(layers.CollectionID(), mesh.Layers().ID());
}

TEST_P(ElementLayerProperty, LayersOfSeveralElementsAreAllTheirLayers) {
    Store({{{1, 2}, {0, 1}, 3}, {{3}, {1, 5}, 4}, {{4}, {9}, 4}});
    EXPECT_THAT(LayersOf({2, 3, 50}), ElementsAre(0, 1, 5));
    EXPECT_THAT(LayersOf({1}), ElementsAre(0, 1));
    EXPECT_THAT(
        Members(mesh.Property().GetElementLayers(MeshDocument::Ordered(mesh.elements, {4, 3}))),
        ElementsAre(1, 5, 9));
    EXPECT_THAT(LayersOf({}), ElementsAre());
}

TEST_P(ElementLayerProperty, LaterObjectExtendsTheDrawersThatAreThere) {
    Store({{{5, 6}, {0, 1}, 3}, {{7}, {0}, 4}});
    Store({{{2, 8}, {0, 1}, 5}, {{9}, {0}, 6}, {{9}, {3}, 7}});
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{2, 5, 6, 8}, {0, 1}}, {{7, 9}, {0}}, {{9}, {3}}}));
    EXPECT_THAT(Lookup({2, 5, 8}, {0, 1}), ElementsAre(5, 5, 3, 3, 5, 5));
    EXPECT_THAT(Lookup({7, 9}, {0, 3}), ElementsAre(4, kUntouched, 6, 7));
}

TEST_P(ElementLayerProperty, PairsThatHaveAValueGetItAnew) {
    Store({{{5, 6, 7}, {0, 1}, 3}, {{6, 8}, {0, 1}, 4}});
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{5, 6, 7, 8}, {0, 1}}}));
    EXPECT_THAT(Lookup({5, 6, 7, 8}, {0, 1}), ElementsAre(3, 3, 4, 4, 3, 3, 4, 4));
}

TEST_P(ElementLayerProperty, OfDrawersThatOverlapTheOneMadeLastIsSeen) {
    Store({{{5}, {0, 2}, 3}, {{5}, {0, 1, 2}, 4}, {{5, 6}, {0, 2}, 5}});
    EXPECT_THAT(Lookup({5, 6}, {0, 1, 2}), ElementsAre(4, 4, 4, 5, kUntouched, 5));
}

TEST_P(ElementLayerProperty, LookupHonoursTheOrderOfBothSets) {
    Store({{{1}, {0, 1}, 10}, {{2}, {0}, 20}, {{2}, {1}, 21}});
    KOVSimCSet const elements(MeshDocument::Ordered(mesh.elements, {2, 9, 1}));
    KOVSimCSet const layers(MeshDocument::Ordered(mesh.Layers(), {1, 0}));
    EXPECT_THAT(ElementLayerDocument::Lookup(mesh.Property(), elements, layers),
                ElementsAre(21, 20, kUntouched, kUntouched, 10, 10));
}

TEST_P(ElementLayerProperty, OrderedSetsThatAscendAreTaken) {
    InTransaction([&](KOVSimTransaction& transaction) {
        KOVSrvElementLayerProperty property = mesh.Property();
        property.Add(MeshDocument::Ordered(mesh.elements, {1, 4, 7}),
                     MeshDocument::Ordered(mesh.Layers(), {2}), mesh.Value(8));
        property.Save(transaction);
    });
    mesh.Reopen();
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{1, 4, 7}, {2}}}));
    EXPECT_THAT(Lookup({4}, {2}), ElementsAre(8));
}

TEST_P(ElementLayerProperty, EmptySetsHoldNothing) {
    Store({{{}, {0, 1}, 3}, {{1}, {}, 4}, {{2}, {0, 1}, 5}});
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{2}, {0, 1}}, {{1}, {}}}));
    EXPECT_THAT(LayersOf({1}), ElementsAre());
    EXPECT_THAT(Lookup({1, 2}, {0, 1}), ElementsAre(kUntouched, kUntouched, 5, 5));
    EXPECT_THAT(Lookup({}, {0, 1}), ElementsAre());
}

TEST_P(ElementLayerProperty, ValueThatIsNoMemberIsKeptAsMinusOne) {
    InTransaction([&](KOVSimTransaction& transaction) {
        KOVSrvElementLayerProperty property = mesh.Property();
        property.Add(mesh.Elements({1}), mesh.LayerSet({0}),
                     mesh.document.CreateDataRecord(schema::Region()).Pos().ID());
        property.Save(transaction);
    });
    mesh.Reopen();
    EXPECT_THAT(Lookup({1}, {0}), ElementsAre(-1));
}

TEST_P(ElementLayerProperty, SaveBeforeAnyAddDoesNothing) {
    KOVObjDocumentStatistics const before = mesh.document.Statistics();
    InTransaction([&](KOVSimTransaction& transaction) { mesh.Property().Save(transaction); });
    mesh.Reopen();
    EXPECT_TRUE(mesh.Saved().IsNull());
    EXPECT_EQ(mesh.document.Statistics().datasets, before.datasets);
    EXPECT_EQ(mesh.document.Statistics().distributions, before.distributions);
}

TEST_P(ElementLayerProperty, TableThatWasNotSavedIsNotFound) {
    InTransaction([&](KOVSimTransaction&) {
        KOVSrvElementLayerProperty property = mesh.Property();
        Add(property, {1}, {0}, 3);
        EXPECT_THAT(ElementLayerDocument::Lookup(property, mesh.Elements({1}), mesh.LayerSet({0})),
                    ElementsAre(3));
    });
    mesh.Reopen();
    EXPECT_TRUE(mesh.Saved().IsNull());
    EXPECT_THAT(LayersOf({1}), ElementsAre());
}

TEST_P(ElementLayerProperty, SaveMayBeRepeated) {
    auto const datasets = mesh.document.Statistics().datasets;
    auto property = std::make_unique<KOVSrvElementLayerProperty>(mesh.Property());
    InTransaction([&](KOVSimTransaction& transaction) {
        Add(*property, {1}, {0}, 3);
        property->Save(transaction);
    });
    KOVSimPosition const saved = mesh.Saved();
    InTransaction([&](KOVSimTransaction& transaction) {
        Add(*property, {2}, {5}, 4);
        property->Save(transaction);
    });
    EXPECT_EQ(mesh.Saved().ID(), saved.ID());
    mesh.Reopen();
    EXPECT_EQ(mesh.document.Statistics().datasets, datasets + 1);
    EXPECT_THAT(Members(KOVSimDSet(mesh.Saved()).Collect(mesh.Values().ID())), ElementsAre(3, 4));
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{1}, {0}}, {{2}, {5}}}));
}

TEST_P(ElementLayerProperty, AddAfterSaveIsInTheTableThatTheMeshKnows) {
    InTransaction([&](KOVSimTransaction& transaction) {
        KOVSrvElementLayerProperty property = mesh.Property();
        Add(property, {1}, {0}, 3);
        property.Save(transaction);
        Add(property, {2}, {0}, 4);
    });
    mesh.Reopen();
    EXPECT_THAT(Lookup({1, 2}, {0}), ElementsAre(3, 4));
}

TEST_P(ElementLayerProperty, OfTwoNewTablesTheOneSavedLastIsKnown) {
    InTransaction([&](KOVSimTransaction& transaction) {
        KOVSrvElementLayerProperty first = mesh.Property();
        KOVSrvElementLayerProperty second = mesh.Property();
        Add(first, {1}, {0}, 3);
        Add(second, {2}, {1}, 4);
        first.Save(transaction);
        second.Save(transaction);
    });
    mesh.Reopen();
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{2}, {1}}}));
}

TEST_P(ElementLayerProperty, PropertiesAreToldApartByTheirLink) {
    Store({{{1}, {0}, 3}}, 1);
    Store({{{1}, {0}, 4}, {{2}, {0}, 5}}, 2);
    EXPECT_THAT(Lookup({1, 2}, {0}, 1), ElementsAre(3, kUntouched));
    EXPECT_THAT(Lookup({1, 2}, {0}, 2), ElementsAre(4, 5));
    EXPECT_TRUE(mesh.Saved(ElementLayerDocument::kLink).IsNull());
    // The first number counts as well.
    EXPECT_TRUE(mesh.document.GetMesh().Follow(schema::Region(), 1).IsNull());
}

TEST_P(ElementLayerProperty, CollectionsAreThoseOfTheDocument) {
    mesh.Reopen();
    EXPECT_EQ(mesh.Property().GetElementCollection(), mesh.elements.ID());
    EXPECT_EQ(mesh.Property().GetSectionLayerCollection(), mesh.Layers().ID());
}

TEST_P(ElementLayerProperty, WithoutTableThereIsNothingToLookUp) {
    mesh.Reopen();
    KOVSrvElementLayerProperty property = mesh.Property();
    int value = kUntouched;
    EXPECT_THROW(property.Lookup(mesh.Elements({1}), mesh.LayerSet({0}), &value), KOVSimException);
    EXPECT_EQ(value, kUntouched);
    KOVSimCSet const layers = property.GetElementLayers(mesh.Elements({1}));
    EXPECT_EQ(layers.Size(), 0);
    EXPECT_EQ(layers.CollectionID(), mesh.Layers().ID());
    auto const transaction = mesh.Write();
    EXPECT_THROW(property.CreateDrawer(mesh.Elements({1}), mesh.LayerSet({0})), KOVSimException);
}

TEST_P(ElementLayerProperty, AddNeedsATransaction) {
    KOVSrvElementLayerProperty property = mesh.Property();
    EXPECT_THROW(Add(property, {1}, {0}, 3), KOVSimException);
    InTransaction([&](KOVSimTransaction& transaction) {
        Add(property, {1}, {0}, 3);
        property.Save(transaction);
    });
    mesh.Reopen();
    EXPECT_THAT(Lookup({1}, {0}), ElementsAre(3));
}

TEST_P(ElementLayerProperty, DroppedTransactionLeavesTheSavedTableAsItWas) {
    Store({{{1}, {0}, 3}});
    {
        auto const transaction = mesh.Write();
        KOVSrvElementLayerProperty property = mesh.Property();
        Add(property, {1, 2}, {0}, 4);
        Add(property, {1}, {5}, 4);
        property.Save(*transaction);
    }
    mesh.Reopen();
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{1}, {0}}}));
    EXPECT_THAT(Lookup({1, 2}, {0}), ElementsAre(3, kUntouched));
}

TEST_P(ElementLayerProperty, WhatADroppedTransactionMadeIsRefused) {
    KOVSrvElementLayerProperty unsaved = mesh.Property();
    {
        auto const transaction = mesh.Write();
        Add(unsaved, {1}, {0}, 3);
    }
    EXPECT_THROW(unsaved.GetElementLayers(mesh.Elements({1})), KOVSimException);
    Store({{{1}, {0}, 3}});
    KOVSrvElementLayerProperty property = mesh.Property();
    {
        auto const transaction = mesh.Write();
        Add(property, {2}, {0}, 4);
        Add(property, {2}, {5}, 4);
    }
    InTransaction([&](KOVSimTransaction& transaction) {
        EXPECT_THROW(Add(property, {3}, {5}, 6), KOVSimException);
        // The drawer that was there before serves on.
        Add(property, {3}, {0}, 6);
        property.Save(transaction);
    });
    mesh.Reopen();
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{1, 3}, {0}}}));
    EXPECT_THAT(Lookup({1, 2, 3}, {0}), ElementsAre(3, kUntouched, 6));
}

TEST_P(ElementLayerProperty, TableWithTheLayersFirstIsReadAndNotWritten) {
    InTransaction([&](KOVSimTransaction&) {
        KOVSrvElementLayerProperty property = mesh.Property();
        KOVSimDistributionID const table =
            property.CreateDistribution(mesh.Layers().ID(), mesh.elements.ID());
        MeshDocument::NewDrawer<int>(table, mesh.LayerSet({0, 3}), mesh.Elements({5, 6}),
                                     {1, 2, 3, 4});
        MeshDocument::NewDrawer<int>(table, mesh.LayerSet({7}), mesh.Elements({6, 900}), {5, 6});
        KOVSimContext const context = mesh.document.Focus().Context();
        mesh.document.GetMesh().Associate(
            ElementLayerDocument::LinkType(), ElementLayerDocument::kLink,
            context.CreateDSet(table, context.Schema().TypeID(ElementLayerDocument::DSetType())));
    });
    mesh.Reopen();
    EXPECT_THAT(LayersOf({5}), ElementsAre(0, 3));
    EXPECT_THAT(LayersOf({6}), ElementsAre(0, 3, 7));
    EXPECT_THAT(LayersOf({900}), ElementsAre(7));
    EXPECT_THAT(LayersOf({0, 3, 7}), ElementsAre());
    auto const transaction = mesh.Write();
    KOVSrvElementLayerProperty property = mesh.Property();
    auto const refusal = [&](Numbers const& layers) -> std::string {
        try {
            Add(property, {5}, layers, 1);
        } catch (KOVSimException const& refused) {
            return refused.what();
        }
        return "";
    };
    // Both sets of layers have their drawer, any other has none.
    EXPECT_THAT(refusal({0, 3}), testing::StartsWith("cannot write"));
    EXPECT_THAT(refusal({7}), testing::StartsWith("cannot write"));
    EXPECT_THAT(refusal({5, 6}), testing::StartsWith("cannot make a drawer"));
    EXPECT_THROW(Lookup({5}, {0}), KOVSimException);
    EXPECT_EQ(mesh.Blocks(), (Blocks{{{0, 3}, {5, 6}}, {{7}, {6, 900}}}));
}

TEST_P(ElementLayerProperty, SetsOfAnotherCollectionAreRefused) {
    Store({{{1}, {0}, 3}});
    KOVSrvElementLayerProperty property = mesh.Property();
    EXPECT_THROW(property.GetElementLayers(mesh.Nodes({1})), KOVSimException);
    auto const transaction = mesh.Write();
    EXPECT_THROW(property.Add(mesh.Nodes({1}), mesh.LayerSet({0}), mesh.Value(1)), KOVSimException);
    EXPECT_THROW(property.Add(mesh.Elements({1}), mesh.Nodes({0}), mesh.Value(1)), KOVSimException);
}

TEST_P(ElementLayerProperty, AssociationThatLeadsToNoTableIsATableWithoutContent) {
    InTransaction([&](KOVSimTransaction&) {
        mesh.document.GetMesh().Associate(ElementLayerDocument::LinkType(),
                                          ElementLayerDocument::kLink,
                                          mesh.document.CreateDataRecord(schema::Region()).Pos());
    });
    mesh.Reopen();
    EXPECT_THAT(LayersOf({1}), ElementsAre());
    auto const transaction = mesh.Write();
    KOVSrvElementLayerProperty property = mesh.Property();
    Add(property, {1}, {0}, 3);
    EXPECT_THROW(property.Save(*transaction), KOVSimException);
}

TEST_P(ElementLayerProperty, ReadOnlyDocumentAnswers) {
    Store({{{1, 2}, {0, 4}, 3}});
    mesh.Reopen(KOVObjDocument::ReadOnly);
    EXPECT_THAT(LayersOf({2}), ElementsAre(0, 4));
    EXPECT_THAT(Lookup({2}, {0, 4}), ElementsAre(3, 3));
}

TEST_P(ElementLayerProperty, EveryLayerSetOfManyFindsItsDrawerAgain) {
    // All 255 sets of 8 layers, each the number of its bits.
    auto const layersOf = [](int bits) {
        Numbers layers;
        for (int layer = 0; layer < 8; ++layer) {
            if (bits >> layer & 1) layers.push_back(layer);
        }
        return layers;
    };
    std::vector<Given> all;
    for (int bits = 1; bits < 256; ++bits) all.push_back({{bits}, layersOf(bits), bits % 60});
    Store(all);
    for (Given& given : all) given.elements = {given.elements.at(0) + 500};
    Store(all);
    Blocks const blocks = mesh.Blocks();
    ASSERT_EQ(blocks.size(), 255U);
    for (int bits = 1; bits < 256; ++bits) {
        EXPECT_EQ(blocks[static_cast<std::size_t>(bits - 1)],
                  (Block{{bits, bits + 500}, layersOf(bits)}));
    }
}

TEST(ElementLayerPropertyObject, LayersAreAskedOfTheMostDerivedClass) {
    struct Other : KOVSrvElementLayerProperty {
        using KOVSrvElementLayerProperty::KOVSrvElementLayerProperty;
        KOVSimCollectionID GetSectionLayerCollection() const override { return collection; }
        KOVSimCollectionID collection;
    };
    ElementLayerDocument const mesh(Medium::Memory);
    Other property(mesh.document.Focus(), mesh.Values().ID(), ElementLayerDocument::DSetType(),
                   ElementLayerDocument::LinkType(), 1, 10);
    property.collection = mesh.components.ID();
    EXPECT_EQ(property.GetElementLayers(mesh.Elements({1})).CollectionID(), mesh.components.ID());
}

// The place of a virtual operation among the slots behind the two destructors.
template <class Operation>
std::size_t Slot(Operation operation) {
    static_assert(sizeof operation >= sizeof(std::size_t));
    std::size_t word = 0;
    std::memcpy(&word, &operation, sizeof word);
    // Odd for a virtual operation: one more than the offset in the table.
    EXPECT_EQ(word % 2, 1U);
    return (word - 1) / sizeof(void*);
}

TEST(ElementLayerPropertyObject, VirtualOperationsKeepTheirSlots) {
#ifdef __x86_64__
    EXPECT_EQ(Slot(&KOVSrvElementLayerProperty::Add), 2U);
    EXPECT_EQ(Slot(&KOVSrvElementLayerProperty::GetElementLayers), 3U);
    EXPECT_EQ(Slot(&KOVSrvElementLayerProperty::GetElementCollection), 4U);
    EXPECT_EQ(Slot(&KOVSrvElementLayerProperty::GetSectionLayerCollection), 5U);
    EXPECT_EQ(Slot(&KOVSrvElementLayerProperty::Save), 6U);
    EXPECT_EQ(Slot(&KOVSrvElementLayerProperty::Lookup), 7U);
#else
    GTEST_SKIP() << "the form of pointers to members is known for x86-64 only";
#endif
}

TEST(ElementLayerPropertyObject, HeapObjectGoesThroughItsBase) {
    struct Counted : KOVSrvElementLayerProperty {
        Counted(ElementLayerDocument const& mesh, int& gone)
            : KOVSrvElementLayerProperty(mesh.Property()), m_gone(gone) {}
        ~Counted() override { ++m_gone; }
        int& m_gone;
    };
    ElementLayerDocument const mesh(Medium::Memory);
    int gone = 0;
    KOVSrvElementLayerProperty* const property = new Counted(mesh, gone);
    delete property;
    EXPECT_EQ(gone, 1);
}

}  // namespace
}  // namespace kov::test
