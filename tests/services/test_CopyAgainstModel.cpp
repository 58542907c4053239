// The copier against plain maps: random drawers of every kind, overlapping, of one and two
// dimensions, copied between member sets in random order. The seed is printed with a failure;
// KOV_SEED sets it.
#include <algorithm>
#include <cstdlib>
#include <random>
#include <set>
#include <vector>

#include "services/CopyFixture.h"

namespace kov::test {
namespace {

unsigned Seed() {
    char const* const text = std::getenv("KOV_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
}

using Ordered = std::vector<int>;

// A drawer as a plain rectangle. One dimension counts as two, with the one column 0.
struct Rectangle {
    Kind kind;
    std::set<int> members[2];
    Entries entries;

    static Rectangle Of(Kind const& kind, std::vector<Ordered> const& members) {
        Rectangle made{kind, {}, {}};
        for (std::size_t i = 0; i < 2; ++i) {
            if (i < members.size())
                made.members[i] = {members[i].begin(), members[i].end()};
            else
                made.members[i] = {0};
        }
        return made;
    }
    bool Holds(std::set<int> const& others, int dimension) const {
        return std::includes(members[dimension].begin(), members[dimension].end(), others.begin(),
                             others.end());
    }
    // Fills what its members span and was never written.
    void Complete() {
        for (int row : members[0]) {
            for (int column : members[1]) entries.insert({{row, column}, 0});
        }
    }
};
using Rectangles = std::vector<Rectangle>;

Entries Seen(Rectangles const& drawers) {
    Entries all;
    for (Rectangle const& drawer : drawers) {
        for (auto const& [place, value] : drawer.entries) all[place] = value;
    }
    return all;
}

// Which member goes where, in one dimension.
struct Pairs {
    Ordered from, to;
    int At(int member) const {
        auto const place = std::find(from.begin(), from.end(), member) - from.begin();
        return to.at(static_cast<std::size_t>(place));
    }
};

// The rules of the copier on rectangles; false where the store refuses, and `written` is not to be
// looked at then.
bool CopyModel(Rectangles const& read, Rectangles& written, Pairs const (&pairs)[2]) {
    Entries const seen = Seen(read);
    std::size_t const present = written.size();
    for (Rectangle const& drawer : read) {
        Rectangle moved{drawer.kind, {}, {}};
        for (int i = 0; i < 2; ++i) {
            for (int member : drawer.members[i]) moved.members[i].insert(pairs[i].At(member));
        }
        for (auto const& entry : drawer.entries) {
            auto const [row, column] = entry.first;
            moved.entries[{pairs[0].At(row), pairs[1].At(column)}] = seen.at(entry.first);
        }
        if (drawer.kind.growing >= 0 && present == 1) {
            Rectangle& target = written.front();
            int const grows = target.kind.growing;
            for (int i = 0; i < 2; ++i) {
                if (i != grows && !target.Holds(moved.members[i], i)) return false;
            }
            if (grows >= 0) target.members[grows].merge(moved.members[grows]);
            for (auto const& [place, value] : moved.entries) target.entries[place] = value;
            target.Complete();
            continue;
        }
        if (!drawer.kind.chunks.empty() && drawer.kind.growing < 0) moved.kind.growing = 0;
        written.push_back(moved);
    }
    return true;
}

class CopyAgainstModel : public testing::TestWithParam<Medium> {
  protected:
    CopyAgainstModel() : trace(__FILE__, __LINE__, "KOV_SEED=" + std::to_string(seed)) {}

    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    // `count` different members below `space`, ascending half of the time.
    Ordered Pick(int space, int count) {
        Ordered picked, all = Range(0, space);
        std::sample(all.begin(), all.end(), std::back_inserter(picked), count, random);
        if (Below(2)) std::shuffle(picked.begin(), picked.end(), random);
        return picked;
    }
    KOVSimCSetID Set(KOVSimCollection const& collection, Ordered const& members) {
        return std::is_sorted(members.begin(), members.end())
                   ? MeshDocument::Set(collection, members)
                   : MeshDocument::Ordered(collection, members);
    }
    Kind AnyKind(int dimensions) {
        Kind kind;
        int const choice = Below(4);
        if (choice == 0) return kind;
        for (int i = 0; i < dimensions; ++i) kind.chunks.push_back(1 + Below(20));
        if (choice > 1) kind.growing = Below(dimensions);
        return kind;
    }
    // Adds a drawer over some of `rows` and `columns`, and the same to the model.
    void AddDrawer(KOVSimDistributionID const& to, Rectangles& model, Ordered const& rows,
                   Ordered const& columns, bool whole) {
        std::vector<Ordered> const allowed = {rows, columns};
        std::vector<Ordered> members;
        std::vector<KOVSimCSetID> sets;
        std::size_t count = 1;
        for (std::size_t i = 0; i < collections.size(); ++i) {
            Ordered const& from = allowed[i];
            Ordered chosen;
            int const n = whole ? static_cast<int>(from.size()) : Below(int(from.size()) + 1);
            std::sample(from.begin(), from.end(), std::back_inserter(chosen), n, random);
            sets.push_back(Set(collections[i], chosen));
            count *= chosen.size();
            members.push_back(chosen);
        }
        Kind const kind = AnyKind(static_cast<int>(collections.size()));
        std::vector<double> data(count);
        for (double& value : data) value = 1 + Below(1'000'000);
        kov::test::AddDrawer(to, kind, sets, data);
        Rectangle made = Rectangle::Of(kind, members);
        auto value = data.begin();
        for (int row : members[0]) {
            for (int column : members.size() > 1 ? members[1] : Ordered{0}) {
                made.entries[{row, column}] = *value++;
            }
        }
        model.push_back(made);
    }
    void ExpectHolds(KOVSimDistributionID const& distribution, Rectangles const& model) {
        std::vector<Kind> kinds;
        for (Rectangle const& drawer : model) kinds.push_back(drawer.kind);
        ASSERT_EQ(KindsOf(distribution), kinds);
        for (int at = 0; at < static_cast<int>(model.size()); ++at) {
            Rectangle const& drawer = model[static_cast<std::size_t>(at)];
            std::vector<Ordered> const sets = SetsOf(distribution, at);
            for (std::size_t i = 0; i < sets.size(); ++i) {
                ASSERT_EQ(sets[i], Ordered(drawer.members[i].begin(), drawer.members[i].end()));
            }
            ASSERT_EQ(ContentOf(distribution, at), drawer.entries) << "drawer " << at;
        }
        ASSERT_EQ(ContentOf(distribution), Seen(model));
    }
    void Round();

    unsigned const seed = Seed();
    testing::ScopedTrace const trace;
    std::mt19937 random{seed};
    MeshDocument mesh{GetParam(), 90, 10};
    std::vector<KOVSimCollection> collections;
    int copies = 0, refusals = 0;
};
INSTANTIATE_TEST_SUITE_P(Media, CopyAgainstModel, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

void CopyAgainstModel::Round() {
    constexpr int kNodes = 90, kComponents = 38;
    collections = {mesh.nodes};
    if (Below(3) != 0) collections.push_back(mesh.components);
    bool const flat = collections.size() == 1;
    int const n = 1 + Below(kNodes), m = 1 + Below(kComponents);
    Pairs const pairs[2] = {
        {Pick(kNodes, n), Pick(kNodes, n)},
        {flat ? Ordered{0} : Pick(kComponents, m), flat ? Ordered{0} : Pick(kComponents, m)}};

    Rectangles readModel, writtenModel;
    auto transaction = mesh.Write();
    KOVSimDistributionID const read = NewDistribution(mesh.document, collections);
    KOVSimDistributionID const written = NewDistribution(mesh.document, collections);
    for (int i = Below(5); i > 0; --i) {
        AddDrawer(read, readModel, pairs[0].from, pairs[1].from, Below(6) == 0);
    }
    bool const grows = std::any_of(readModel.begin(), readModel.end(), [](Rectangle const& drawer) {
        return drawer.kind.growing >= 0;
    });
    for (int i = Below(grows ? 2 : 4); i > 0; --i) {
        AddDrawer(written, writtenModel, Range(0, kNodes), Range(0, kComponents), Below(3) != 0);
    }
    transaction->Commit();
    transaction.reset();

    std::vector<KOVSimCSetID> from, to;
    for (std::size_t i = 0; i < collections.size(); ++i) {
        from.push_back(Set(collections[i], pairs[i].from));
        to.push_back(Set(collections[i], pairs[i].to));
    }
    Rectangles expected = writtenModel;
    bool const accepted = CopyModel(readModel, expected, pairs);
    transaction = mesh.Write();
    if (accepted) {
        Copy(written, read, to, from);
        transaction->Commit();
        ++copies;
    } else {
        EXPECT_THROW(Copy(written, read, to, from), KOVSimException);
        expected = writtenModel;
        ++refusals;
    }
    transaction.reset();

    auto const again = [&](KOVSimDistributionID const& distribution) {
        KOVSimDynamicID id = distribution.ID();
        id.context = mesh.document.ContextID();
        return KOVSimDistributionID(id);
    };
    if (Below(4) == 0) mesh.Reopen();
    ASSERT_NO_FATAL_FAILURE(ExpectHolds(again(written), expected));
    ASSERT_NO_FATAL_FAILURE(ExpectHolds(again(read), readModel));
}

TEST_P(CopyAgainstModel, EveryEntryGoesWhereItsMembersArePaired) {
    int const rounds = GetParam() == Medium::Memory ? 200 : 40;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        ASSERT_NO_FATAL_FAILURE(Round());
    }
    EXPECT_GT(copies, rounds / 2);
    EXPECT_GT(refusals, 0);
}

}  // namespace
}  // namespace kov::test
