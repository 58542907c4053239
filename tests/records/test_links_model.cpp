// Links against a plain model: random changes of vectors, sets, maps and single links, in
// transactions that commit or are dropped, with everything looked at from both ends.
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimVector.h"
#include "support/DocumentFixture.h"

namespace {

using kov::test::DocumentTest;

struct Owner {
    std::map<int, int> one;  // member -> object
    std::map<int, std::vector<int>> vectors;
    std::map<int, std::set<int>> sets;
    std::map<int, std::map<std::string, int>> maps;
};

class LinksModel : public DocumentTest {
  protected:
    static constexpr int Objects = 12;

    void SetUp() override {
        DocumentTest::SetUp();
        Write([&] {
            for (int i = 0; i < Objects; ++i) objects_.push_back(NewRecord(schema::Model()));
        });
        model_.resize(Objects);
    }

    int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }
    KOVSimPosition At(int object) const { return objects_[static_cast<std::size_t>(object)]; }
    int IndexOf(KOVSimPosition const& position) const {
        for (int i = 0; i < Objects; ++i) {
            if (At(i).ID() == position.ID()) return i;
        }
        return -1;
    }

    void Change() {
        int const who = Pick(Objects);
        int const member =
            members_[static_cast<std::size_t>(Pick(static_cast<int>(members_.size())))];
        int const target = Pick(Objects);
        KOVSimPosition const position = At(who);
        Owner& owner = model_[static_cast<std::size_t>(who)];
        std::string const key(1, static_cast<char>('a' + Pick(5)));
        switch (Pick(8)) {
            case 0:
                position.SetPosition(member, At(target));
                owner.one[member] = target;
                break;
            case 1:
                position.SetPosition(member, KOVSimPosition());
                owner.one.erase(member);
                break;
            case 2:
                position.GetVector(member).PushBack(At(target));
                owner.vectors[member].push_back(target);
                break;
            case 3: {
                std::vector<int>& vector = owner.vectors[member];
                if (vector.empty()) break;
                int const at = Pick(static_cast<int>(vector.size()));
                position.GetVector(member).Remove(at);
                vector.erase(vector.begin() + at);
                break;
            }
            case 4:
                position.GetSet(member).Insert(At(target));
                owner.sets[member].insert(target);
                break;
            case 5:
                position.GetSet(member).Remove(At(target));
                owner.sets[member].erase(target);
                break;
            case 6:
                position.GetMap(member).Insert(key.c_str(), At(target));
                owner.maps[member][key] = target;
                break;
            default:
                position.GetMap(member).Remove(key.c_str());
                owner.maps[member].erase(key);
        }
    }

    void CheckOwner(int who, int member) {
        KOVSimPosition const position = At(who);
        Owner& owner = model_[static_cast<std::size_t>(who)];
        KOVSimPosition const one = position.GetPosition(member);
        ASSERT_EQ(owner.one.count(member) ? owner.one[member] : -1, IndexOf(one));
        std::vector<int> vector;
        for (auto at = position.GetVector(member).Begin(); at.NotDone(); ++at)
            vector.push_back(IndexOf(*at));
        ASSERT_EQ(owner.vectors[member], vector);
        ASSERT_EQ(static_cast<int>(vector.size()), position.GetVector(member).Size());
        std::set<int> set;
        for (auto at = position.GetSet(member).Begin(); at.NotDone(); ++at)
            set.insert(IndexOf(*at));
        ASSERT_EQ(owner.sets[member], set);
        ASSERT_EQ(static_cast<int>(set.size()), position.GetSet(member).Size());
        std::map<std::string, int> map;
        for (auto at = position.GetMap(member).Begin(); at.NotDone(); ++at) {
            map[at.Key().TextOrEmpty()] = IndexOf(at.Value());
        }
        ASSERT_EQ(owner.maps[member], map);
    }

    void CheckReferrers(int target, int member) {
        std::multiset<int> expected;
        std::set<std::string> keys;
        for (int who = 0; who < Objects; ++who) {
            Owner& owner = model_[static_cast<std::size_t>(who)];
            if (owner.one.count(member) && owner.one[member] == target) expected.insert(who);
            for (int const each : owner.vectors[member]) {
                if (each == target) expected.insert(who);
            }
            if (owner.sets[member].count(target)) expected.insert(who);
            for (auto const& entry : owner.maps[member]) {
                if (entry.second != target) continue;
                expected.insert(who);
                keys.insert(entry.first);
            }
        }
        std::multiset<int> found;
        for (auto at = At(target).ReferrersSet(member).Begin(); at.NotDone(); ++at)
            found.insert(IndexOf(*at));
        ASSERT_EQ(expected, found);
        ASSERT_EQ(expected.empty() ? -1 : *expected.begin(), IndexOf(At(target).Parent(member)));
        std::string const key = At(target).GetReferenceKey(member).TextOrEmpty();
        ASSERT_TRUE(keys.empty() ? key.empty() : keys.count(key) == 1);
    }

    void Check() {
        for (int const member : members_) {
            for (int object = 0; object < Objects; ++object) {
                CheckOwner(object, member);
                if (HasFatalFailure()) return;
                CheckReferrers(object, member);
                if (HasFatalFailure()) return;
            }
        }
    }

    std::mt19937 random_;
    std::vector<KOVSimPosition> objects_;
    std::vector<Owner> model_;
    std::vector<int> members_ = {schema::Model_steps(), schema::Model_fieldEntries()};
};
KOV_DOCUMENT_TESTS(LinksModel);

TEST_P(LinksModel, RandomChangesAgreeWithThePlainModel) {
    unsigned const seed = std::random_device()();
    random_.seed(seed);
    SCOPED_TRACE("seed " + std::to_string(seed));
    for (int round = 0; round < 40; ++round) {
        std::vector<Owner> const before = model_;
        bool const commit = Pick(3) != 0;
        {
            KOVSimTransaction transaction(Document().ContextID());
            for (int i = Pick(60); i-- > 0;) Change();
            if (Pick(2)) Check();
            if (commit) transaction.Commit();
        }
        if (!commit) model_ = before;
        if (Pick(4) == 0) {
            Reopen();
            for (KOVSimPosition& object : objects_) object = Again(object);
        }
        Check();
        if (HasFatalFailure()) return;
    }
}

}  // namespace
