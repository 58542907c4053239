// Which drawer takes the data, by the kind of the drawer that is read and by what is there.
#include <vector>

#include "services/CopyFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;

Kind const kPlain{};

using CopyDistribution = CopyTest;
INSTANTIATE_TEST_SUITE_P(Media, CopyDistribution, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(CopyDistribution, GrowingDrawerIntoNoneMakesOneThatGrowsAlike) {
    for (int growing : {0, 1}) {
        InTransaction([&] {
            read = NewDistribution(mesh.document, {mesh.nodes, mesh.components});
            written = NewDistribution(mesh.document, {mesh.nodes, mesh.components});
        });
        Kind const kind{{7, 2}, growing};
        Add(read, kind, {3, 4, 9}, {0, 12});
        CopyAll();
        Reopen();
        EXPECT_THAT(KindsOf(written), ElementsAre(kind));
        EXPECT_EQ(ContentOf(written), Shifted(ContentOf(read), 500));
        EXPECT_EQ(ContentOf(written).at({509, 12}), 912);
    }
}

TEST_P(CopyDistribution, TwoGrowingDrawersIntoNoneMakeOneEach) {
    Kind const first{{7, 2}, 0}, second{{3, 3}, 1};
    Add(read, first, {3, 4, 9}, {0, 12});
    Add(read, second, {4, 50}, {12, 20}, 0.5);
    CopyAll();
    Reopen();
    EXPECT_THAT(KindsOf(written), ElementsAre(first, second));
    EXPECT_EQ(ContentOf(written), Shifted(ContentOf(read), 500));
    // Of what both hold, each copy has what the reader of the original sees: the later one's.
    EXPECT_EQ(ContentOf(written, 0).at({504, 12}), 412.5);
    EXPECT_EQ(ContentOf(written, 0).at({504, 0}), 400);
    EXPECT_EQ(ContentOf(written, 1).at({504, 12}), 412.5);
}

TEST_P(CopyDistribution, GrowingDrawerExtendsTheOneThatIsThere) {
    Kind const there{{9, 9}, 0};
    Add(written, there, {1, 503, 700}, {0, 12}, 0.25);
    Add(read, {{7, 2}, 0}, {3, 4, 9}, {0, 12});
    Entries expected = ContentOf(written);
    for (auto const& [place, value] : Shifted(ContentOf(read), 500)) expected[place] = value;
    CopyAll();
    Reopen();
    EXPECT_THAT(KindsOf(written), ElementsAre(there));
    EXPECT_THAT(SetsOf(written, 0),
                ElementsAre(std::vector<int>{1, 503, 504, 509, 700}, std::vector<int>{0, 12}));
    EXPECT_EQ(ContentOf(written), expected);
}

TEST_P(CopyDistribution, TwoGrowingDrawersExtendTheOneThatIsThere) {
    Add(written, {{9, 9}, 0}, {1}, {0, 12}, 0.25);
    Add(read, {{7, 2}, 0}, {3, 4}, {0, 12});
    Add(read, {{7, 2}, 1}, {4, 5}, {0, 12}, 0.5);
    CopyAll();
    Reopen();
    EXPECT_EQ(KindsOf(written).size(), 1U);
    EXPECT_EQ(
        Members(KOVSimCSet(
            MeshDocument::Drawers(KOVSimDistribution(written)).ConstGet(0).compartment.CSet(0))),
        (std::vector<int>{1, 503, 504, 505}));
    EXPECT_EQ(ContentOf(written).at({504, 12}), 412.5);
}

TEST_P(CopyDistribution, DrawerThatCannotGrowTakesItsOwnMembersOnly) {
    Add(written, kPlain, Range(500, 10), {0, 12}, 0.25);
    Add(read, {{7, 2}, 0}, {3, 4}, {0, 12});
    CopyAll();
    EXPECT_EQ(ContentOf(written).at({503, 12}), 312);
    EXPECT_EQ(ContentOf(written).at({505, 12}), 50512.25);
    EXPECT_THROW(CopyAll(506), KOVSimException);
    Reopen();
    EXPECT_THAT(KindsOf(written), ElementsAre(kPlain));
}

TEST_P(CopyDistribution, ChunkedDrawerThatCannotGrowGrowsInItsCopy) {
    Kind const fixed{{7, 2}, -1}, copied{{7, 2}, 0};
    for (int present = 0; present < 3; ++present) {
        InTransaction([&] {
            read = NewDistribution(mesh.document, {mesh.nodes, mesh.components});
            written = NewDistribution(mesh.document, {mesh.nodes, mesh.components});
        });
        for (int i = 0; i < present; ++i) Add(written, {{9, 9}, 0}, {i}, {0, 12});
        Add(read, fixed, {3, 4, 9}, {0, 12});
        CopyAll();
        Reopen();
        std::vector<Kind> const kinds = KindsOf(written);
        ASSERT_EQ(kinds.size(), static_cast<std::size_t>(present + 1));
        EXPECT_EQ(kinds.back(), copied);
        EXPECT_EQ(KindsOf(read).front(), fixed);
        EXPECT_EQ(ContentOf(written, present), Shifted(ContentOf(read), 500));
    }
}

TEST_P(CopyDistribution, PlainDrawerMakesAPlainOneWhateverIsThere) {
    Add(read, kPlain, {3, 4, 9}, {0, 12});
    Add(read, kPlain, {9, 20}, {12, 13}, 0.5);
    for (int present = 0; present < 3; ++present) {
        InTransaction([&] {
            written = NewDistribution(mesh.document, {mesh.nodes, mesh.components});
        });
        for (int i = 0; i < present; ++i) Add(written, kPlain, {500 + i}, {0, 12});
        CopyAll();
        Reopen();
        std::vector<Kind> const kinds = KindsOf(written);
        ASSERT_EQ(kinds.size(), static_cast<std::size_t>(present + 2));
        EXPECT_EQ(kinds.back(), kPlain);
        Entries const copied = Shifted(ContentOf(read), 500);
        for (auto const& [place, value] : copied) EXPECT_EQ(ContentOf(written).at(place), value);
    }
}

TEST_P(CopyDistribution, DrawersOfEveryKindAreTakenInOrder) {
    Kind const growing{{5, 5}, 1}, fixed{{4, 4}, -1};
    Add(read, kPlain, {0, 1}, {0, 1});
    Add(read, growing, {1, 2}, {1, 2}, 0.25);
    Add(read, fixed, {2, 3}, {2, 3}, 0.5);
    CopyAll();
    Reopen();
    EXPECT_THAT(KindsOf(written), ElementsAre(kPlain, growing, Kind{{4, 4}, 0}));
    EXPECT_EQ(ContentOf(written), Shifted(ContentOf(read), 500));
}

}  // namespace
}  // namespace kov::test
