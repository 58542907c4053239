#include "reliability/Walk.h"

#include <algorithm>
#include <deque>
#include <set>
#include <vector>

#include "KOVObjElementClass.h"
#include "KOVObjElementClassification.h"
#include "KOVObjLabeler.h"
#include "KOVObjMesh.h"
#include "KOVObjMeshedField.h"
#include "KOVObjModel.h"
#include "KOVSimCMemberMap.h"
#include "KOVSimCSetIterator.h"
#include "KOVSimCollection.h"
#include "KOVSimContext.h"
#include "KOVSimCtation.h"
#include "KOVSimDSet.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimDrawer.h"
#include "KOVSimException.h"
#include "KOVSimFTable.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimSymbols.h"
#include "KOVSimTransfer.h"
#include "KOVSimVector.h"

namespace reliability {

namespace {

constexpr int MostMembers = 10;     // of a collection, of a list, that are visited one by one
constexpr int LargestSet = 100000;  // that is read out
constexpr int MostRows = 300;       // of a distribution that are read at a time
constexpr int MostObjects = 4000;

struct Before {
    bool operator()(KOVSimPosition const& a, KOVSimPosition const& b) const {
        return a.ID().Compare(b.ID()) < 0;
    }
};

class Walker {
  public:
    explicit Walker(KOVObjDocument const& document) : m_document(document) {}

    Walked Run() {
        Try([&] { Add(m_document.Focus()); });
        Facades();
        while (!m_queue.empty() && m_walked.objects < MostObjects) {
            KOVSimPosition const position = m_queue.front();
            m_queue.pop_front();
            ++m_walked.objects;
            Visit(position);
        }
        Labels(KOVObjLabelerNodes);
        Labels(KOVObjLabelerElements);
        return m_walked;
    }

  private:
    template <class F>
    void Try(F const& read) {
        try {
            read();
        } catch (KOVSimException const& e) {
            ++m_walked.refusals;
            m_lastLength = e.Text().GetLengthInByte();
        }
    }

    void Add(KOVSimPosition const& position) {
        if (!position.IsNull() && m_seen.insert(position).second) m_queue.push_back(position);
    }

    void Facades() {
        KOVObjDocument const& d = m_document;
        Try([&] { Add(d.GetModel()); });
        Try([&] { Add(d.GetMesh()); });
        Try([&] { Add(d.GetResults()); });
        Try([&] { Add(d.GetComponentCollection()); });
        Try([&] { Add(d.GetDofTypeCollection()); });
        Try([&] { Add(d.GetShapeCollection()); });
        Try([&] { Add(d.GetElementSpecCollection()); });
        Try([&] { Add(d.GetMaterialCollection()); });
        Try([&] { Add(d.GetPointCollection()); });
        Try([&] { d.Statistics(); });
        Try([&] {
            KOVObjMesh const mesh(d.GetMesh());
            Add(mesh.GetNodeCollection());
            Add(mesh.GetElementCollection());
            Add(mesh.GetCoordinates());
            Add(mesh.GetConnectivity());
            Add(mesh.GetUserNodes());
            Add(mesh.GetElementSpecAssignment());
            Add(mesh.GetElementClassification());
        });
    }

    void Visit(KOVSimPosition const& position) {
        Try([&] { Links(position); });
        Try([&] { Fields(position.GetDataRecord()); });
        Try([&] {
            position.IsA(schema::Mesh());
            position.TypePosition();
            position.Name(-1);
            Add(position.Parent(schema::Model_steps()));
            position.GetReferenceKey(schema::Model_steps());
            Add(position.Follow(schema::FocusRecord(), schema::FocusRecord_surfaceOutput));
            position.GetSymbolPosition();
            position.GetSymbolName();
        });
        Try([&] { Add(KOVObjMeshedField(position).GetDistribution()); });
        Try([&] { KOVObjMeshedField(position).GetGridType(); });
        Try([&] { Add(KOVObjElementClassification(position).GetMembership()); });
        Try([&] { Add(KOVObjElementClass(position).GetElementCSet()); });
        if (!position.GetCollection().IsNull()) Collection(position.GetCollection());
        if (!position.GetCSet().IsNull()) Set(position);
        if (!position.GetDSet().IsNull()) Relation(position);
        if (!position.GetDistribution().IsNull())
            Try([&] { Distribution(KOVSimDistribution(position.GetDistribution())); });
        if (!position.GetDrawer().IsNull())
            Try([&] { KOVSimDrawer(position.GetDrawer()).Description(); });
        if (!position.GetFTable().IsNull()) Try([&] { Table(KOVSimFTable(position.GetFTable())); });
    }

    void Links(KOVSimPosition const& position) {
        for (int const member : position.Members()) {
            Try([&] { Add(position.GetPosition(member)); });
            Try([&] {
                for (auto at = position.GetVector(member).Begin(); at.NotDone(); ++at) Add(*at);
                position.GetVector(member).Size();
            });
            Try([&] {
                for (auto at = position.GetSet(member).Begin(); at.NotDone(); ++at) Add(*at);
                position.GetSet(member).Size();
            });
            Try([&] {
                KOVSimMap const map = position.GetMap(member);
                for (auto at = map.Begin(); at.NotDone(); ++at) {
                    Add(at.Value());
                    map.Find(at.Key());
                }
            });
            Try([&] {
                KOVSimPosition const target = position.GetPosition(member);
                for (auto at = target.ReferrersSet(member).Begin(); at.NotDone(); ++at) Add(*at);
                target.Name(member);
            });
        }
    }

    void Fields(KOVSimDataRecord const& record) {
        for (int const field : record.Fields()) {
            int whole = 0;
            double reals[40] = {};
            KOVString text;
            Try([&] { record.FieldKind(field); });
            Try([&] { record.GetInt(field, whole); });
            Try([&] { record.GetSymb(field, whole); });
            Try([&] { record.GetTypeID(field, whole); });
            Try([&] { record.GetDouble(field, reals[0]); });
            Try([&] { record.GetDouble(field, reals, 40); });
            Try([&] { record.GetString(field, text); });
            Try([&] { record.ReturnString(field); });
        }
    }

    void Collection(KOVSimCollectionID const& id) {
        Try([&] {
            KOVSimCollection const collection(id);
            int const space = collection.Space();
            Try([&] { Add(KOVSimPosition(collection.EmptyCSetID())); });
            for (int i = 0; i < std::min(space, MostMembers); ++i) {
                Try([&] {
                    KOVSimDynamicID const member = m_document.GetRecord(id, i);
                    Add(member);
                    m_document.GetCMemberIndex(member);
                    KOVSimSymbols const symbols(m_document.ContextID());
                    if (symbols.IsMember(member)) symbols.Get(member);
                });
            }
            Try([&] { m_document.GetSymbol(schema::ComponentSymbol(), "C_1", id); });
        });
    }

    void Set(KOVSimPosition const& position) {
        Try([&] {
            KOVSimCSet const set = position.CSet();
            Try([&] { Add(KOVSimPosition(set.CollectionID())); });
            Members(set);
            Try([&] { set.AscendingID(); });
            Try([&] { KOVSimCollection(set.CollectionID()).SeekCSet(set, false); });
        });
    }

    void Members(KOVSimCSet const& set) {
        int const size = set.Size();
        set.Bounds();
        set.IsAscending();
        Try([&] { set.Contains(0); });
        if (size <= 0 || size > LargestSet) return;
        std::vector<int> members(static_cast<std::size_t>(size));
        Try([&] { set.Members(members.data()); });
        Try([&] { set.OrderedMembers(members.data()); });
        Try([&] {
            long long sum = 0;
            KOVSimCSetIterator at(set);
            for (at.First(); !at.IsDone(); at.Next()) sum += at.CurrentValue();
            m_lastLength = static_cast<int>(sum & 1);
        });
        Try([&] {
            Members2(set,
                     KOVSimCollection(set.CollectionID()).CreateVolatileCSetStrided(0, 2, 1, 1));
        });
    }

    void Members2(KOVSimCSet const& a, KOVSimCSet const& b) {
        Try([&] { a.Union(b).Size(); });
        Try([&] { a.Intersection(b).Size(); });
        Try([&] { (a - b).Size(); });
        Try([&] { a.SameMembers(b); });
        Try([&] { KOVSimCMemberMap::Create(a, a).Map(b).Size(); });
    }

    void Relation(KOVSimPosition const& position) {
        Try([&] {
            KOVSimDSet const relation = position.DSet();
            Try([&] { relation.IsNull() || relation.IsEmpty(); });
            Try([&] { Add(KOVSimPosition(relation.GetRelationalDistributionID())); });
            KOVSimCtation::Array const& compartments = relation.GetCtation().Compartments();
            for (int i = 0; i < std::min(compartments.Size(), MostMembers); ++i) {
                KOVSimCompartment const& compartment = compartments.ConstGet(i);
                for (int k = 0; k < compartment.Size(); ++k) {
                    KOVSimCSet const& set = compartment.CSet(k);
                    Try([&] { Members(set); });
                    Try([&] { relation.Collect(set.CollectionID()).Size(); });
                    Try([&] { relation.Select(set).IsNull(); });
                }
            }
        });
    }

    void Distribution(KOVSimDistribution const& distribution) {
        KOVSimGrid::CollectionArray const& grid = distribution.Grid().Collections();
        for (int i = 0; i < grid.Size(); ++i) Try([&] { Add(KOVSimPosition(grid.ConstGet(i))); });
        KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>
            drawers;
        Try([&] { distribution.QueryDrawers(drawers); });
        for (int i = 0; i < std::min(drawers.Size(), MostMembers); ++i) {
            KOVSimPersistentDrawerDesc const& drawer = drawers.ConstGet(i);
            Try([&] { Add(KOVSimPosition(drawer.drawerID)); });
            Try([&] { drawer.DataSizeItems(0); });
            Try([&] { distribution.DrawerDescription(drawer.drawerID); });
            Try([&] { Rows(distribution, drawer.compartment, drawer.drawerID); });
        }
        Try([&] { FirstRows(distribution); });
    }

    /// The first members of a set, or every so many of them.
    KOVSimCSet Part(KOVSimCSet const& set, int most, bool spread) {
        int const size = set.Size();
        int const count = std::min(size, most);
        std::vector<int> members;
        for (int i = 0; i < count; ++i) {
            members.push_back(
                set[spread ? static_cast<int>(static_cast<long long>(i) * size / count) : i]);
        }
        return KOVSimCollection(set.CollectionID())
            .CreateVolatileOrderedCSet(members.data(), count);
    }

    void Rows(KOVSimDistribution const& distribution, KOVSimCompartment const& compartment,
              KOVSimDrawerID const& drawer) {
        for (bool const spread : {false, true}) {
            Try([&] {
                KOVSimTransfer read(distribution);
                read.SetRead().SetBufferPadding(false).SetDrawer(drawer);
                for (int i = 0; i < compartment.Size(); ++i)
                    read.SetDim(i, Part(compartment.CSet(i), i ? 40 : MostRows, spread));
                Execute(read.CheckView());
            });
        }
    }

    void FirstRows(KOVSimDistribution const& distribution) {
        KOVSimTransfer read(distribution);
        read.SetRead().SetBufferPadding(false);
        for (int i = 0; i < distribution.NumDimensions(); ++i) {
            KOVSimCollection const collection(distribution.Grid().Collections().ConstGet(i));
            int const count = std::min(collection.Space(), i ? 40 : MostRows);
            read.SetDim(i, collection.CreateVolatileCSetStrided(0, count, 1, 1));
        }
        Execute(read.CheckView());
    }

    static void Execute(KOVSimTransfer& read) {
        int const bytes = read.RequiredBufferSize(0);
        std::vector<char> buffer(static_cast<std::size_t>(bytes));
        read.SetBuffer(0, static_cast<void*>(buffer.data()), buffer.size()).ExecRead();
        read.RelinquishBuffers();
    }

    void Table(KOVSimFTable const& table) {
        int const rows = table.RowCount(), columns = table.ColumnCount();
        for (int i = 0; i < std::min(columns, MostMembers); ++i) Try([&] { table.ColumnLabel(i); });
        for (int i = 0; i < std::min(table.LabelCount(), MostMembers); ++i)
            Try([&] { table.Label(i); });
        long long const count = std::min(static_cast<long long>(rows) * columns, 5000LL);
        if (count <= 0) return;
        std::vector<double> data(static_cast<std::size_t>(count));
        Try([&] { table.GetData(data.data(), static_cast<int>(count)); });
    }

    void Labels(KOVObjLabelerType type) {
        Try([&] {
            KOVObjLabeler labeler(m_document, type);
            labeler.Read();
            KOVObjLabeler::NameArray const names = labeler.Occurrences();
            for (int i = 0; i < std::min(names.Size(), MostMembers); ++i) {
                KOVString const& name = names.ConstGet(i);
                KOVBasVector<int> labels, ordinals;
                KOVString found;
                Try([&] { labeler.IsInstanceValid(name); });
                Try([&] { labeler.GetInstanceLabelsAndOrdinals(name, labels, ordinals); });
                Try([&] { labeler.GetInstanceOrdinals(name).Size(); });
                Try([&] { labeler.GetInstanceOrdinal(name, labels.Size() ? labels[0] : 1); });
                // Often enough for the labeler to keep pages and owners.
                for (int k = 0; k < 8; ++k) {
                    int const ordinal = k < ordinals.Size() ? ordinals[k] : k;
                    Try([&] { labeler.GetInstanceLabel(name, ordinal); });
                    Try([&] { labeler.GetOccurrenceForFlatMeshOrdinal(ordinal, found); });
                }
            }
        });
    }

    KOVObjDocument const& m_document;
    std::deque<KOVSimPosition> m_queue;
    std::set<KOVSimPosition, Before> m_seen;
    Walked m_walked;
    int m_lastLength = 0;
};

}  // namespace

Walked Walk(KOVObjDocument const& document) { return Walker(document).Run(); }

}  // namespace reliability
