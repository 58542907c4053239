#include "document/sets/SetStore.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "KOVSimCSet.h"
#include "KOVSimCollection.h"
#include "KOVSimDSet.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "document/records/CollectionSpaces.h"
#include "document/sets/CompartmentCodec.h"
#include "document/sets/SetCache.h"
#include "document/store/Catalogue.h"
#include "support/DocumentFixture.h"

namespace {

using kov::sets::IndexSet;
using kov::sets::SetCache;
using kov::sets::SetStore;
using kov::store::Context;
using kov::store::Statement;
using kov::test::RefusalOf;

TEST(SetCache, KeepsWithinItsBytesAndTwoWhateverTheirSize) {
    SetCache cache(3000);
    for (int number = 1; number <= 50; ++number) {
        cache.Put(number, 7, IndexSet::FromMembers(std::vector<int>{1, 5, number * 10}.data(), 3));
        EXPECT_LE(cache.Bytes(), 3000u);
    }
    ASSERT_NE(nullptr, cache.Find(50));
    EXPECT_EQ(7, cache.Find(50)->collection);
    EXPECT_EQ(nullptr, cache.Find(1));
    std::vector<int> many;
    for (int i = 0; i < 4000; ++i) many.push_back(i * i);
    cache.Put(51, 7, IndexSet::FromMembers(many.data(), many.size()));
    cache.Put(52, 7, IndexSet::FromMembers(many.data(), many.size() - 1));
    EXPECT_NE(nullptr, cache.Find(51)) << "larger than the bound, and kept beside the last";
    EXPECT_NE(nullptr, cache.Find(52));
    EXPECT_EQ(nullptr, cache.Find(50));
    cache.Clear();
    EXPECT_EQ(0u, cache.Bytes());
    EXPECT_EQ(nullptr, cache.Find(51));
}

TEST(SetCache, UsingASetKeepsItLonger) {
    SetCache cache(256 * 3 + 100);
    for (int number = 1; number <= 3; ++number) cache.Put(number, 1, IndexSet::Range(number, 1));
    cache.Find(1);
    cache.Put(4, 1, IndexSet::Range(4, 1));
    EXPECT_NE(nullptr, cache.Find(1));
    EXPECT_EQ(nullptr, cache.Find(2));
}

TEST(CompartmentCodec, WordsComeBackAndOtherBytesAreRefused) {
    std::string bytes;
    kov::sets::EncodeCompartment({{1, 2, -1}, {0x01020304, 0, 7}}, bytes);
    ASSERT_EQ(24u, bytes.size());
    EXPECT_EQ(std::string("\x04\x03\x02\x01", 4), bytes.substr(12, 4));
    std::vector<kov::sets::CompartmentWord> words;
    ASSERT_TRUE(kov::sets::DecodeCompartment(bytes, words));
    ASSERT_EQ(2u, words.size());
    EXPECT_EQ(-1, words[0].type);
    EXPECT_EQ(0x01020304, words[1].collection);
    EXPECT_FALSE(kov::sets::DecodeCompartment(bytes.substr(1), words));
}

class StoredSets : public ::testing::Test {
  protected:
    KOVObjDocument document_ = KOVObjDocument::CreateInMemory();
    Context& context_ = Context::Of(document_.ContextID());
    KOVSimCollection points_{document_.GetPointCollection().GetCollection()};

    /// Changes the catalogue behind the classes, and forgets what they keep.
    void Damage(char const* sql, std::int64_t number) {
        KOVSimTransaction transaction(document_.ContextID());
        Statement change(context_.Cat(), sql);
        change.Bind(number).Run();
        transaction.Commit();
        SetStore::Of(context_).AfterRefresh();
    }
    KOVSimCSetID Stored() {
        KOVSimTransaction transaction(document_.ContextID());
        int const members[] = {1, 5, 6};
        KOVSimCSetID const id = points_.CreateCSet(members, 3, false);
        transaction.Commit();
        return id;
    }
    std::string Findings() {
        std::string all;
        document_.Verify([&](char const* finding) { all += std::string(finding) + "\n"; });
        return all;
    }
    void ExpectFinding(std::string const& text) {
        std::string const findings = Findings();
        EXPECT_NE(std::string::npos, findings.find(text)) << findings;
    }
};

TEST_F(StoredSets, DamagedBytesAreRefusedWithTheSetsName) {
    KOVSimCSetID const id = Stored();
    EXPECT_EQ("", Findings());
    Damage("UPDATE sets SET members=x'ffffff' WHERE number=?", id.Minor());
    std::string const text = RefusalOf([&] { KOVSimCSet{id}; });
    EXPECT_NE(std::string::npos, text.find("set " + std::to_string(id.Minor()))) << text;
    EXPECT_NE(std::string::npos, text.find("is damaged")) << text;
    ExpectFinding("is damaged");
}

TEST_F(StoredSets, ASizeOrHashThatDoesNotFitIsFound) {
    KOVSimCSetID const id = Stored();
    Damage("UPDATE sets SET size=4 WHERE number=?", id.Minor());
    ExpectFinding("its size is not that of its members");
    Damage("UPDATE sets SET size=3, hash=hash+1 WHERE number=?", id.Minor());
    ExpectFinding("its hash is not that of its members");
}

TEST_F(StoredSets, MembersBeyondTheCollectionAreRefusedAndFound) {
    KOVSimCSetID const id = Stored();
    Damage("UPDATE collections SET space=5 WHERE number=?", points_.ID().Minor());
    context_.Part<kov::records::CollectionSpaces>().AfterRefresh();
    EXPECT_NE("", RefusalOf([&] { KOVSimCSet{id}; }));
    ExpectFinding("names members that the collection does not have");
}

TEST_F(StoredSets, ACompartmentWithoutItsSetIsFound) {
    KOVSimDSetID dset;
    KOVSimCSetID id;
    {
        KOVSimTransaction transaction(document_.ContextID());
        KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> sets(2);
        id = points_.CreateCSetStrided(0, 3, 1, 1);
        sets.Get(0) = id;
        sets.Get(1) = points_.EmptyCSetID();
        KOVSimCtation::Array compartments(1);
        compartments.Get(0) = KOVSimCompartment(sets);
        dset = document_.Focus().CreateTypedDSet(KOVSimCtation(compartments), -1);
        transaction.Commit();
    }
    EXPECT_EQ("", Findings());
    Damage("DELETE FROM sets WHERE number=?", id.Minor());
    ExpectFinding("dataset " + std::to_string(dset.Minor()) + ", compartment 0: set " +
                  std::to_string(id.Minor()));
    EXPECT_NE("", RefusalOf([&] { KOVSimDSet(dset).GetCtation(); }));
    Damage("UPDATE compartments SET sets=x'0102' WHERE dataset=?", dset.Minor());
    ExpectFinding("compartment 0: it is damaged");
    EXPECT_NE("", RefusalOf([&] { KOVSimDSet(dset).GetCtation(); }));
}

TEST_F(StoredSets, ALinkToTheEmptySetIsSound) {
    KOVSimTransaction transaction(document_.ContextID());
    document_.GetModel()
        .GetMap(schema::Model_nodeSets())
        .Insert("none", KOVSimCSet(points_.ID()).Pos());
    transaction.Commit();
    EXPECT_EQ("", Findings());
    KOVSimPosition const linked =
        document_.GetModel().GetMap(schema::Model_nodeSets()).Find("none");
    EXPECT_EQ(points_.EmptyCSetID(), linked.GetCSet());
    EXPECT_EQ("none", linked.Name(schema::Model_nodeSets()));
}

}  // namespace
