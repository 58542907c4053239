#include "KOVSrvSymbolCollection.h"

#include <initializer_list>

#include "KOVSimContext.h"
#include "KOVSimSchema.h"
#include "services/NamesFixture.h"
#include "zdm_ComponentSymbols.h"

namespace kov::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Ints = KOVSrvSymbolCollection::Ints;

Ints Array(std::initializer_list<int> values) {
    Ints array(static_cast<int>(values.size()), 0);
    int i = 0;
    for (int value : values) array.Get(i++) = value;
    return array;
}

std::vector<int> Values(Ints const& array) { return {array.begin(), array.end()}; }

// A collection whose members stand for other numbers than their own: 30, none, 10, 20, and 40 as a
// symbol of another type.
class SymbolCollection : public NamesTest {
  protected:
    void SetUp() override {
        NamesTest::SetUp();
        Write([&] {
            KOVSimPosition const mixed =
                Document().Focus().CreateTypedCollection(0, schema::ComponentCollection());
            mixed.AddSymbol("C", 30, schema::ComponentSymbol());
            mixed.AppendMember(schema::Mapper());
            mixed.AddSymbol("A", 10, schema::ComponentSymbol());
            mixed.AddSymbol("B", 20, schema::ComponentSymbol());
            mixed.AddSymbol("D", 40, schema::DofSymbol());
            Document().Focus().SetPosition(schema::Focus_materials(), mixed);
        });
        Reopen(KOVObjDocument::ReadOnly);
    }

    KOVSimCollectionID ID() const { return Document().GetMaterialCollection().GetCollection(); }
    KOVSrvSymbolCollection Symbols() const { return {ID(), schema::ComponentSymbol()}; }
    KOVSimCSet Ordered(std::initializer_list<int> members) const {
        Ints const array = Array(members);
        return KOVSimCollection(ID()).CreateVolatileOrderedCSet(array.Ptr(), array.Size());
    }
};
KOV_DOCUMENT_TESTS(SymbolCollection);

TEST_P(SymbolCollection, MemberGivesTheSymbolThatItStandsFor) {
    EXPECT_EQ(Symbols().GetSymbol(0), 30);
    EXPECT_EQ(Symbols().GetSymbol(2), 10);
    EXPECT_EQ(Symbols().GetSymbol(3), 20);
}

TEST_P(SymbolCollection, MemberThatIsNoSymbolGivesMinusOne) {
    EXPECT_EQ(Symbols().GetSymbol(1), -1);
}

// The type takes no part on the way from member to symbol.
TEST_P(SymbolCollection, SymbolOfAnotherTypeIsGivenByItsMember) {
    EXPECT_EQ(Symbols().GetSymbol(4), 40);
}

TEST_P(SymbolCollection, MemberOutsideTheCollectionIsRefused) {
    for (int member : {-1, 5}) {
        EXPECT_THAT(RefusalOf([&] { Symbols().GetSymbol(member); }),
                    HasSubstr("index " + std::to_string(member) + " is outside [0, 5)"));
    }
}

TEST_P(SymbolCollection, SymbolsFollowTheLocationsOfTheSet) {
    EXPECT_THAT(Values(Symbols().GetSymbols(Ordered({3, 1, 0, 2}))), ElementsAre(20, -1, 30, 10));
    EXPECT_THAT(Values(Symbols().GetSymbols(Ordered({0, 1, 2, 3}))), ElementsAre(30, -1, 10, 20));
}

TEST_P(SymbolCollection, EmptySetHasNoSymbols) {
    EXPECT_EQ(Symbols().GetSymbols(Ordered({})).Size(), 0);
    EXPECT_EQ(Symbols().GetSymbols(KOVSimCSet(ID())).Size(), 0);
    EXPECT_EQ(Symbols().GetSymbols(KOVSimCSet()).Size(), 0);
}

// Members are looked up in the object's own collection, whatever the set belongs to.
TEST_P(SymbolCollection, SetOfAnotherCollectionNamesMembersOfThisOne) {
    KOVSimCollection const other(Document().GetComponentCollection().GetCollection());
    int const members[] = {2, 0};
    EXPECT_THAT(Values(Symbols().GetSymbols(other.CreateVolatileOrderedCSet(members, 2))),
                ElementsAre(10, 30));
}

TEST_P(SymbolCollection, SymbolGivesItsMember) {
    EXPECT_EQ(Symbols().GetCMember(10), 2);
    EXPECT_EQ(Symbols().GetCMember(20), 3);
    EXPECT_EQ(Symbols().GetCMember(30), 0);
}

TEST_P(SymbolCollection, UnknownSymbolIsRefused) {
    for (int symbol : {-1, 0, 11, 40}) {
        EXPECT_THAT(RefusalOf([&] { Symbols().GetCMember(symbol); }),
                    HasSubstr("cannot find symbol " + std::to_string(symbol) +
                              ": no member of collection " + std::to_string(ID().Minor()) +
                              " stands for it as ComponentSymbol"));
    }
}

TEST_P(SymbolCollection, TypeChoosesAmongSymbols) {
    EXPECT_EQ(KOVSrvSymbolCollection(ID(), schema::DofSymbol()).GetCMember(40), 4);
    EXPECT_THAT(
        RefusalOf([&] { KOVSrvSymbolCollection(ID(), schema::DofSymbol()).GetCMember(10); }),
        HasSubstr("stands for it as DofSymbol"));
}

TEST_P(SymbolCollection, MembersComeInTheOrderOfTheSymbols) {
    EXPECT_THAT(Values(Symbols().GetCMembers(Array({20, 30, 20, 10}))), ElementsAre(3, 0, 3, 2));
    EXPECT_EQ(Symbols().GetCMembers(Ints()).Size(), 0);
}

TEST_P(SymbolCollection, OneUnknownSymbolOfSeveralIsRefused) {
    EXPECT_THAT(RefusalOf([&] {
                    Symbols().GetCMembers(Array({10, 99}));
                }),
                HasSubstr("cannot find symbol 99"));
    EXPECT_THAT(RefusalOf([&] {
                    Symbols().CreateOCSet(Array({99, 10}));
                }),
                HasSubstr("cannot find symbol 99"));
}

TEST_P(SymbolCollection, IdentityIsThatOfTheMember) {
    KOVSimDynamicID const id = Symbols().GetCMemberID(20).ID();
    EXPECT_EQ(id.category, 13);
    EXPECT_EQ(id.context, Document().ContextID());
    EXPECT_EQ(id.data.parent, ID().Minor());
    EXPECT_EQ(id.data.minor, 3);
    EXPECT_EQ(id.type, ID().TypeID());
    EXPECT_EQ(id, Document().GetRecord(ID(), 3));
    EXPECT_EQ(KOVSimPosition(id).GetSymbolName(), "B");
}

TEST_P(SymbolCollection, OrderedSetKeepsTheOrderOfTheSymbols) {
    KOVSimCSet const set = Symbols().CreateOCSet(Array({20, 30, 10}));
    EXPECT_THAT(MembersOf(set), ElementsAre(3, 0, 2));
    EXPECT_FALSE(set.IsAscending());
    EXPECT_EQ(set.CollectionID(), ID());
    EXPECT_TRUE(set.ID().IsNull()) << "it is volatile";
    EXPECT_TRUE(Symbols().CreateOCSet(Array({30, 10})).IsAscending());
}

TEST_P(SymbolCollection, NoSymbolsMakeAnEmptySetOfTheCollection) {
    KOVSimCSet const set = Symbols().CreateOCSet(Ints());
    EXPECT_EQ(set.Size(), 0);
    EXPECT_EQ(set.CollectionID(), ID());
}

TEST_P(SymbolCollection, SymbolsAndMembersAreInverses) {
    KOVSimCSet const members = Ordered({3, 0, 2});
    EXPECT_THAT(MembersOf(Symbols().CreateOCSet(Symbols().GetSymbols(members))),
                ElementsAre(3, 0, 2));
}

TEST_P(SymbolCollection, ComponentsOfADocumentStandForTheirOwnIndices) {
    KOVSimCollectionID const id = Document().GetComponentCollection().GetCollection();
    KOVSrvSymbolCollection const components(id, schema::ComponentSymbol());
    for (int i = 0; i < zdm_Component_NONE; ++i) {
        EXPECT_EQ(components.GetSymbol(i), i);
        EXPECT_EQ(components.GetCMember(i), i);
    }
    EXPECT_EQ(KOVSimPosition(components.GetCMemberID(zdm_Component_C_2)).GetSymbolName(), "C_2");
}

TEST_P(SymbolCollection, ObjectWithoutACollectionRefuses) {
    KOVSrvSymbolCollection const none;
    EXPECT_THAT(RefusalOf([&] { none.GetSymbol(0); }), HasSubstr("the collection is null"));
    EXPECT_THAT(RefusalOf([&] { none.GetSymbols(Ordered({0})); }),
                HasSubstr("the collection is null"));
    EXPECT_THAT(RefusalOf([&] { none.GetCMember(10); }),
                HasSubstr("cannot find symbol 10: the collection is null"));
    EXPECT_THAT(RefusalOf([&] { none.GetCMemberID(10); }), HasSubstr("the collection is null"));
    EXPECT_THAT(RefusalOf([&] { none.CreateOCSet(Array({10})); }),
                HasSubstr("the collection is null"));
    EXPECT_EQ(none.GetSymbols(KOVSimCSet()).Size(), 0);
}

TEST_P(SymbolCollection, CollectionOfAClosedDocumentIsRefused) {
    KOVSrvSymbolCollection const symbols = Symbols();
    Document().Close();
    EXPECT_THAT(RefusalOf([&] { symbols.GetSymbol(0); }), HasSubstr("closed"));
    EXPECT_THAT(RefusalOf([&] { symbols.GetCMember(10); }), HasSubstr("closed"));
}

}  // namespace
}  // namespace kov::test
