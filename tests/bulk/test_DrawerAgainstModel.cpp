// Random writes of all kinds to several drawers, checked against a plain table, with transactions
// that commit or are dropped.
#include <algorithm>
#include <map>
#include <random>

#include "BulkFixture.h"

using DrawerModel = BulkFixture;
INSTANTIATE_TEST_SUITE_P(Documents, DrawerModel, testing::Values(Where::Memory, Where::Disk),
                         WhereName);

namespace {

struct ModelDrawer {
    int number;
    int growing;
    std::vector<int> fixed[2];  // members of dimensions that do not grow
    std::map<std::pair<int, int>, double> entries;
};

}  // namespace

TEST_P(DrawerModel, RandomWritesReadBackAsFromAPlainTable) {
    unsigned const seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    auto upTo = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    auto pick = [&](int space, int most) {
        std::vector<int> members;
        if (upTo(2) == 0) {
            int const first = upTo(space);
            for (int m = first; m < space && static_cast<int>(members.size()) < most; ++m)
                members.push_back(m);
        } else {
            int const n = 1 + upTo(most);
            for (int i = 0; i < n; ++i) members.push_back(upTo(space));
            std::sort(members.begin(), members.end());
            members.erase(std::unique(members.begin(), members.end()), members.end());
        }
        if (upTo(3) == 0) std::shuffle(members.begin(), members.end(), random);
        return members;
    };
    std::vector<ModelDrawer> committed;
    double next = 1;
    for (int round = 0; round < 40; ++round) {
        std::vector<ModelDrawer> model = committed;
        {
            KOVSimTransaction transaction(document.ContextID());
            for (int step = 0; step < 8; ++step) {
                if (model.empty() || (model.size() < 5 && upTo(8) == 0)) {
                    ModelDrawer fresh;
                    fresh.growing = upTo(3) - 1;
                    std::vector<int> const d0 = pick(kRows, 300);
                    std::vector<int> const d1 = pick(kColumns, 4);
                    fresh.fixed[0] = d0;
                    fresh.fixed[1] = d1;
                    for (int r : d0)
                        for (int c : d1) fresh.entries[{r, c}] = 0;
                    KOVSimDrawerID const id = MakeDrawer(Rows(d0), Columns(d1), fresh.growing);
                    fresh.number = id.Minor();
                    model.push_back(fresh);
                }
                ModelDrawer& drawer =
                    model[static_cast<std::size_t>(upTo(static_cast<int>(model.size())))];
                std::vector<int> members[2];
                for (int dim = 0; dim < 2; ++dim) {
                    if (dim == drawer.growing) {
                        members[dim] = dim == 0 ? pick(kRows, 800) : pick(kColumns, 4);
                    } else {
                        for (int m : drawer.fixed[dim])
                            if (upTo(4) != 0) members[dim].push_back(m);
                        if (members[dim].empty()) members[dim] = drawer.fixed[dim];
                        if (upTo(3) == 0)
                            std::shuffle(members[dim].begin(), members[dim].end(), random);
                    }
                }
                std::vector<double> values;
                for (int r : members[0])
                    for (int c : members[1]) {
                        values.push_back(next);
                        drawer.entries[{r, c}] = next++;
                    }
                // A growing drawer holds every entry of its rectangle.
                if (drawer.growing >= 0)
                    for (int m : members[drawer.growing])
                        for (int f : drawer.fixed[1 - drawer.growing])
                            drawer.entries.insert(
                                {drawer.growing == 0 ? std::pair{m, f} : std::pair{f, m}, 0.0});
                KOVSimDynamicID id = doubles.ID();
                id.category = KOVSimCategoryDrawer;
                id.data.parent = doubles.Minor();
                id.data.minor = drawer.number;
                Write(KOVSimDrawerID(id), Rows(members[0]), Columns(members[1]), values);
            }
            if (upTo(4) != 0) {
                transaction.Commit();
                committed = model;
            }
        }
        if (upTo(4) == 0) Reopen();
        for (int check = 0; check < 3; ++check) {
            std::vector<int> const d0 = pick(kRows, 900);
            std::vector<int> const d1 = pick(kColumns, 6);
            std::vector<double> const read = Read(Rows(d0), Columns(d1), -7);
            std::size_t at = 0;
            for (int r : d0)
                for (int c : d1) {
                    double expected = -7;
                    for (ModelDrawer const& drawer : committed) {
                        auto const found = drawer.entries.find({r, c});
                        if (found != drawer.entries.end()) expected = found->second;
                    }
                    ASSERT_EQ(read[at], expected)
                        << "row " << r << ", column " << c << ", round " << round;
                    ++at;
                }
        }
    }
    std::string faults;
    EXPECT_TRUE(document.Verify([&](char const* fault) { faults += std::string(fault) + "\n"; }))
        << faults;
}

// Blocks are cut at about 1 MiB: sizes that cross it, single rows overwritten all over, and many
// small commits.
TEST_P(DrawerModel, LargeAndTinyWritesAcrossBlocks) {
    constexpr int kMany = 400000;
    {
        KOVSimTransaction transaction(document.ContextID());
        KOVSimCollection(rows).ExtendSpace(kMany);
        KOVSimDrawerID const drawer = MakeDrawer(RowRange(0, 100000), Columns({0, 1}), 0);
        std::vector<double> values(200000);
        for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<double>(i);
        Write(drawer, RowRange(0, 100000), Columns({0, 1}), values);
        transaction.Commit();
    }
    std::vector<double> model(2 * kMany, -1);
    for (std::size_t i = 0; i < 200000; ++i) model[i] = static_cast<double>(i);
    std::mt19937 random(7);
    int size = 100000;
    for (int round = 0; round < 60; ++round) {
        KOVSimTransaction transaction(document.ContextID());
        Descriptions drawers(1, 0);
        Doubles().QueryDrawers(drawers);
        int const more = round % 10 == 0 ? 20000 : 7;
        std::vector<int> members;
        for (int i = 0; i < more; ++i) members.push_back(size + i);
        for (int i = 0; i < 40; ++i)
            members.push_back(static_cast<int>(random() % static_cast<unsigned>(size)));
        std::sort(members.begin(), members.end());
        members.erase(std::unique(members.begin(), members.end()), members.end());
        std::vector<double> values;
        for (int m : members)
            for (int c = 0; c < 2; ++c) {
                values.push_back(round * 1e6 + m * 2 + c);
                model[static_cast<std::size_t>(m) * 2 + static_cast<std::size_t>(c)] =
                    values.back();
            }
        Write(drawers.Get(0).drawerID, Rows(members), Columns({0, 1}), values);
        size += more;
        transaction.Commit();
        if (round % 20 == 19) Reopen();
    }
    ASSERT_EQ(Read(RowRange(0, kMany), Columns({0, 1})), model);
    std::vector<int> every;
    for (int m = 3; m < size; m += 11) every.push_back(m);
    std::vector<double> const some = Read(Rows(every), Columns({1}));
    for (std::size_t i = 0; i < every.size(); ++i)
        ASSERT_EQ(some[i], model[static_cast<std::size_t>(every[i]) * 2 + 1]) << every[i];
    KOVObjDocumentStatistics const sizes = document.Statistics();
    EXPECT_LT(sizes.blocks, 3000) << "small writes are merged";
}
