#include "KOVSrvSetMapperFactory.h"

#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "KOVObjMesh.h"
#include "KOVSimSchema.h"
#include "services/NamesFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char const* kSource = "KOVSrvFsm.m/src/KOVSrvSetMapperFactory";

KOVSimCSetID Ordered(KOVSimCollection const& collection, std::vector<int> const& members) {
    KOVSimCSet set =
        collection.CreateVolatileOrderedCSet(members.data(), static_cast<int>(members.size()));
    return set.RegisterWithCollection();
}

class SetMapperFactory : public NamesTest {
  protected:
    void SetUp() override {
        NamesTest::SetUp();
        Write([&] {
            Nodes().ExtendSpace(100);
            Elements().ExtendSpace(100);
            // Something that keeps the collection of degrees of freedom in reach.
            Document().SetMaterialCollection(
                Document().Focus().CreateTypedCollection(100, schema::MeshDofCollection()));
        });
        Reopen();
    }

    static KOVSimCollection NodesOf(KOVObjDocument const& document) {
        return KOVSimCollection(KOVObjMesh(document.GetMesh()).GetNodeCollection().GetCollection());
    }
    KOVSimCollection Nodes() const { return NodesOf(Document()); }
    KOVSimCollection Elements() const {
        return KOVSimCollection(
            KOVObjMesh(Document().GetMesh()).GetElementCollection().GetCollection());
    }
    KOVSimCollection Dofs() const {
        return KOVSimCollection(Document().GetMaterialCollection().GetCollection());
    }
    void Persist(KOVSimCollection const& collection, std::vector<int> const& base,
                 std::vector<int> const& permutation) {
        Write([&] {
            KOVSrvSetMapperFactory::PersistMapper(Ordered(collection, permutation),
                                                  Ordered(collection, base));
        });
        Reopen();
    }
    KOVSimPosition Record(int link) const { return Document().GetModel().GetPosition(link); }
    static std::vector<int> Mapped(KOVSimCMemberMap const& map, KOVSimCollection const& collection,
                                   std::vector<int> const& members) {
        return MembersOf(map.Map(collection.CreateVolatileOrderedCSet(
            members.data(), static_cast<int>(members.size()))));
    }
};
KOV_DOCUMENT_TESTS(SetMapperFactory);

TEST_P(SetMapperFactory, NodeMapperLeadsFromTheBaseToThePermutation) {
    Persist(Nodes(), {10, 20, 30}, {7, 5, 6});
    KOVSimCMemberMap const map = KOVSrvSetMapperFactory::NodeMapper(Document().Focus());
    EXPECT_THAT(Mapped(map, Nodes(), {10}), ElementsAre(7));
    EXPECT_THAT(Mapped(map, Nodes(), {20}), ElementsAre(5));
    EXPECT_THAT(Mapped(map, Nodes(), {30}), ElementsAre(6));
    EXPECT_THAT(Mapped(map, Nodes(), {10, 20, 30}), ElementsAre(7, 5, 6));
    EXPECT_THAT(Mapped(map, Nodes(), {5, 6, 7}), IsEmpty()) << "the other way is not mapped";
}

TEST_P(SetMapperFactory, ElementMapperLeadsFromTheBaseToThePermutation) {
    Persist(Elements(), {0, 1, 2}, {2, 0, 1});
    KOVSimCMemberMap const map = KOVSrvSetMapperFactory::ElementMapper(Document().Focus());
    EXPECT_THAT(Mapped(map, Elements(), {0}), ElementsAre(2));
    EXPECT_THAT(Mapped(map, Elements(), {1, 2}), ElementsAre(0, 1));
}

TEST_P(SetMapperFactory, DofMapperLeadsFromTheBaseToThePermutation) {
    Persist(Dofs(), {3, 1}, {90, 91});
    KOVSimCMemberMap const map = KOVSrvSetMapperFactory::DofMapper(Document().Focus());
    EXPECT_THAT(Mapped(map, Dofs(), {3}), ElementsAre(90));
    EXPECT_THAT(Mapped(map, Dofs(), {1}), ElementsAre(91));
}

TEST_P(SetMapperFactory, RecordLinksTheTwoSets) {
    KOVSimPosition base, permutation;
    Write([&] {
        base = Ordered(Nodes(), {1, 2});
        permutation = Ordered(Nodes(), {2, 1});
        KOVSrvSetMapperFactory::PersistMapper(permutation, base);
    });
    Reopen(KOVObjDocument::ReadOnly);
    KOVSimPosition const record = Record(schema::Model_nodeMapper());
    EXPECT_EQ(record.TypePosition(), schema::Mapper());
    EXPECT_EQ(record.GetPosition(schema::Mapper_base()).ID(), Again(base).ID());
    EXPECT_EQ(record.GetPosition(schema::Mapper_permutation()).ID(), Again(permutation).ID());
    EXPECT_EQ(record.Members().Size(), 2);
}

TEST_P(SetMapperFactory, EachKindHasItsOwnLink) {
    Persist(Elements(), {0}, {4});
    EXPECT_TRUE(Record(schema::Model_nodeMapper()).IsNull());
    EXPECT_TRUE(Record(schema::Model_dofMapper()).IsNull());
    Persist(Nodes(), {1}, {5});
    Persist(Dofs(), {2}, {6});
    KOVSimPosition const focus = Document().Focus();
    EXPECT_THAT(Mapped(KOVSrvSetMapperFactory::ElementMapper(focus), Elements(), {0}),
                ElementsAre(4));
    EXPECT_THAT(Mapped(KOVSrvSetMapperFactory::NodeMapper(focus), Nodes(), {1}), ElementsAre(5));
    EXPECT_THAT(Mapped(KOVSrvSetMapperFactory::DofMapper(focus), Dofs(), {2}), ElementsAre(6));
}

TEST_P(SetMapperFactory, SecondMapperWinsAndTheFirstRecordStays) {
    Persist(Nodes(), {1, 2}, {3, 4});
    KOVSimPosition const first = Record(schema::Model_nodeMapper());
    auto const records = Document().Statistics().records;
    Persist(Nodes(), {1, 2}, {6, 5});
    KOVSimCMemberMap const map = KOVSrvSetMapperFactory::NodeMapper(Document().Focus());
    EXPECT_THAT(Mapped(map, Nodes(), {1, 2}), ElementsAre(6, 5));
    EXPECT_EQ(Document().Statistics().records, records + 1);
    KOVSimPosition const old = Again(first);
    EXPECT_NE(Record(schema::Model_nodeMapper()).ID(), old.ID());
    EXPECT_THAT(MembersOf(old.GetPosition(schema::Mapper_permutation()).CSet()), ElementsAre(3, 4));
}

// What decides is the base set alone.
TEST_P(SetMapperFactory, PermutationMayBeOnAnotherCollection) {
    Write([&] {
        KOVSrvSetMapperFactory::PersistMapper(Ordered(Elements(), {8, 9}),
                                              Ordered(Nodes(), {0, 1}));
    });
    Reopen();
    KOVSimCMemberMap const map = KOVSrvSetMapperFactory::NodeMapper(Document().Focus());
    EXPECT_THAT(Mapped(map, Nodes(), {1}), ElementsAre(9));
    EXPECT_EQ(KOVSrvSetMapperFactory::GetPermutationNodes(Document().Focus()).CollectionID(),
              Elements().ID());
}

TEST_P(SetMapperFactory, SizesAreComparedOnlyByTheMap) {
    Persist(Nodes(), {1, 2, 3}, {4, 5});
    EXPECT_THAT(
        MembersOf(KOVSimCSet(KOVSrvSetMapperFactory::GetPermutationNodes(Document().Focus()))),
        ElementsAre(4, 5));
    EXPECT_THAT(RefusalOf([&] { KOVSrvSetMapperFactory::NodeMapper(Document().Focus()); }),
                HasSubstr("the target has 2 members, the source 3"));
}

TEST_P(SetMapperFactory, PermutationsAreGivenInTheirOwnOrder) {
    Persist(Nodes(), {1, 2, 3}, {6, 4, 5});
    Persist(Elements(), {1, 2}, {9, 8});
    Persist(Dofs(), {1}, {7});
    KOVSimPosition const focus = Document().Focus();
    EXPECT_THAT(MembersOf(KOVSimCSet(KOVSrvSetMapperFactory::GetPermutationNodes(focus))),
                ElementsAre(6, 4, 5));
    EXPECT_THAT(MembersOf(KOVSimCSet(KOVSrvSetMapperFactory::GetPermutationElements(focus))),
                ElementsAre(9, 8));
}

TEST_P(SetMapperFactory, AnyPositionOfTheDocumentWillDo) {
    Persist(Nodes(), {1}, {2});
    for (KOVSimPosition const& position :
         {Document().GetModel(), Document().GetMesh(), KOVSimPosition(Nodes().ID()),
          Record(schema::Model_nodeMapper()), Document().GetDofTypeCollection()}) {
        EXPECT_THAT(Mapped(KOVSrvSetMapperFactory::NodeMapper(position), Nodes(), {1}),
                    ElementsAre(2));
        EXPECT_EQ(KOVSimCSet(KOVSrvSetMapperFactory::GetPermutationNodes(position)).Size(), 1);
    }
}

TEST_P(SetMapperFactory, WithoutAMapperNothingIsMapped) {
    KOVSimCollection const nodes = Nodes();
    for (KOVSimPosition const& position : {Document().Focus(), KOVSimPosition()}) {
        EXPECT_THAT(Mapped(KOVSrvSetMapperFactory::NodeMapper(position), nodes, {1}), IsEmpty());
        EXPECT_THAT(Mapped(KOVSrvSetMapperFactory::ElementMapper(position), nodes, {1}), IsEmpty());
        EXPECT_THAT(Mapped(KOVSrvSetMapperFactory::DofMapper(position), nodes, {1}), IsEmpty());
        EXPECT_TRUE(KOVSrvSetMapperFactory::GetPermutationNodes(position).IsNull());
        EXPECT_TRUE(KOVSrvSetMapperFactory::GetPermutationElements(position).IsNull());
    }
}

TEST_P(SetMapperFactory, ActiveOrdinalsAreThoseOfTheMesh) {
    EXPECT_TRUE(KOVSrvSetMapperFactory::GetActiveNodalOrdinals(Document().Focus()).IsNull());
    EXPECT_TRUE(KOVSrvSetMapperFactory::GetActiveElementOrdinals(Document().Focus()).IsNull());
    EXPECT_TRUE(KOVSrvSetMapperFactory::GetActiveNodalOrdinals(KOVSimPosition()).IsNull());
    EXPECT_TRUE(KOVSrvSetMapperFactory::GetActiveElementOrdinals(KOVSimPosition()).IsNull());
    Write([&] {
        KOVSimPosition const mesh = Document().GetMesh();
        mesh.SetPosition(schema::Mesh_activeNodes(), Ordered(Nodes(), {3, 1}));
        mesh.SetPosition(schema::Mesh_activeElements(), Ordered(Elements(), {5, 7, 6}));
    });
    Reopen(KOVObjDocument::ReadOnly);
    for (KOVSimPosition const& position :
         {Document().Focus(), Document().GetComponentCollection()}) {
        EXPECT_THAT(MembersOf(KOVSimCSet(KOVSrvSetMapperFactory::GetActiveNodalOrdinals(position))),
                    ElementsAre(3, 1));
        EXPECT_THAT(
            MembersOf(KOVSimCSet(KOVSrvSetMapperFactory::GetActiveElementOrdinals(position))),
            ElementsAre(5, 7, 6));
    }
}

KOVObjDocument const* s_told = nullptr;
void TellRecords() {
    std::fprintf(stderr, "records: %d\n", static_cast<int>(s_told->Statistics().records));
}

TEST_P(SetMapperFactory, SetOnAnotherCollectionFailsAfterTheRecordWasMade) {
    ExpectAssertion(
        "0", kSource, [](KOVObjDocument const& document) { NodesOf(document).ExtendSpace(100); },
        [](KOVObjDocument const& document) {
            static KOVObjDocument const kept = document;
            s_told = &kept;
            KOVSimTransaction transaction(document.ContextID());
            KOVSimCollection const other(document.GetComponentCollection().GetCollection());
            KOVSimPosition const permutation = Ordered(NodesOf(document), {1});
            KOVSimPosition const base = Ordered(other, {1});
            TellRecords();
            std::atexit(TellRecords);
            KOVSrvSetMapperFactory::PersistMapper(permutation, base);
        },
        testing::Truly([](std::string const& told) {
            std::size_t const first = told.find("records: ");
            std::size_t const last = told.rfind("records: ");
            return first != last &&
                   std::stoi(told.substr(last + 9)) == std::stoi(told.substr(first + 9)) + 1;
        }));
}

TEST_P(SetMapperFactory, BaseThatIsNoSetFails) {
    ExpectAssertion(
        "0", kSource, [](KOVObjDocument const& document) { NodesOf(document).ExtendSpace(100); },
        [](KOVObjDocument const& document) {
            KOVSimTransaction transaction(document.ContextID());
            // A member has the type of its collection, and is no set all the same.
            KOVSimPosition const node = document.GetRecord(NodesOf(document).ID(), 0);
            KOVSrvSetMapperFactory::PersistMapper(Ordered(NodesOf(document), {1}), node);
        });
}

TEST_P(SetMapperFactory, NullPositionIsRefusedBeforeAnythingIsWritten) {
    auto const records = Document().Statistics().records;
    Write([&] {
        KOVSimPosition const set = Ordered(Nodes(), {1});
        EXPECT_THAT(RefusalOf([&] { KOVSrvSetMapperFactory::PersistMapper({}, set); }),
                    HasSubstr("the position of the permuted set is null"));
        EXPECT_THAT(RefusalOf([&] { KOVSrvSetMapperFactory::PersistMapper(set, {}); }),
                    HasSubstr("the position of the base set is null"));
    });
    EXPECT_EQ(Document().Statistics().records, records);
    EXPECT_TRUE(Record(schema::Model_nodeMapper()).IsNull());
}

TEST_P(SetMapperFactory, TemporarySetIsRefused) {
    Write([&] {
        int const member = 1;
        KOVSimPosition const temporary = Nodes().CreateTempCSet(&member, 1, false);
        KOVSimPosition const set = Ordered(Nodes(), {1});
        EXPECT_THAT(RefusalOf([&] { KOVSrvSetMapperFactory::PersistMapper(temporary, set); }),
                    HasSubstr("temporary set"));
        EXPECT_THAT(RefusalOf([&] { KOVSrvSetMapperFactory::PersistMapper(set, temporary); }),
                    HasSubstr("temporary set"));
    });
}

TEST_P(SetMapperFactory, WritingNeedsATransaction) {
    KOVSimPosition set;
    Write([&] { set = Ordered(Nodes(), {1}); });
    EXPECT_THAT(RefusalOf([&] { KOVSrvSetMapperFactory::PersistMapper(set, set); }),
                HasSubstr("transaction"));
}

TEST_P(SetMapperFactory, DroppedTransactionLeavesTheMapperBefore) {
    Persist(Nodes(), {1}, {2});
    WriteAndDrop([&] {
        KOVSrvSetMapperFactory::PersistMapper(Ordered(Nodes(), {3}), Ordered(Nodes(), {1}));
    });
    EXPECT_THAT(Mapped(KOVSrvSetMapperFactory::NodeMapper(Document().Focus()), Nodes(), {1}),
                ElementsAre(2));
}

}  // namespace
}  // namespace kov::test
