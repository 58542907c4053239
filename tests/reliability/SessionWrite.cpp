// The writing side of the session.
#include <algorithm>
#include <cstring>

#include "KOVObjLabeler.h"
#include "KOVObjMesh.h"
#include "KOVSimCollection.h"
#include "KOVSimContext.h"
#include "KOVSimCtation.h"
#include "KOVSimDSet.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransaction.h"
#include "KOVSimTransfer.h"
#include "KOVSimVector.h"
#include "reliability/Session.h"

namespace reliability {

namespace {

using Chunks = KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>;
using DrawerIDs = KOVSimArray<KOVSimDrawerID, KOVSimArrayCopyClassPolicy<KOVSimDrawerID>>;

constexpr int Components[3] = {0, 12, 20};
constexpr int RowsAtOnce = 20000;

std::size_t Size(int n) { return static_cast<std::size_t>(n); }

KOVSimCSet Some(KOVSimCollectionID const& collection, std::vector<int> const& members) {
    return KOVSimCollection(collection)
        .CreateVolatileOrderedCSet(members.data(), static_cast<int>(members.size()));
}
KOVSimCSet Run(KOVSimCollectionID const& collection, Range const& range) {
    return KOVSimCollection(collection).CreateVolatileCSetStrided(range.first, range.count, 1, 1);
}

/// Drawer `number` of a distribution, from 0; null if there are not so many.
KOVSimDrawerID DrawerNumber(KOVSimDistribution const& distribution, int number) {
    DrawerIDs drawers;
    distribution.DrawerIDArray(drawers);
    return number < drawers.Size() ? drawers.ConstGet(number) : KOVSimDrawerID();
}

KOVSimDrawerID MakeDrawer(KOVSimDistribution const& distribution, KOVSimCSet rows,
                          KOVSimCSet columns, int chunk) {
    Chunks chunks(2, 0);
    chunks.Get(0) = chunk;
    chunks.Get(1) = columns.Size();
    // The sets of a drawer to be made are stored ones.
    rows.RegisterWithTempCollection();
    columns.RegisterWithTempCollection();
    KOVSimTransfer make(distribution);
    make.SetMakeNewDrawerChunked(chunks).SetBufferPadding(false).SetExtendableDim(0);
    make.SetDim(0, rows).SetDim(1, columns).CheckView().ExecMake();
    return make.DrawerID();
}

template <class T>
void WriteRows(KOVSimDistribution const& distribution, KOVSimDrawerID const& drawer,
               KOVSimCSet const& rows, KOVSimCSet const& columns, std::vector<T> const& values) {
    KOVSimTransfer write(distribution);
    write.SetWrite().SetAutoExtend().SetBufferPadding(false).SetDrawer(drawer);
    write.SetDim(0, rows).SetDim(1, columns).CheckView();
    write.SetBuffer(0, values.data(), values.size() * sizeof(T)).ExecWrite().RelinquishBuffers();
    // What was written is read back at once, through the other end of the transaction.
    std::vector<T> back(values.size());
    KOVSimTransfer read(distribution);
    read.SetRead().SetBufferPadding(false).SetDim(0, rows).SetDim(1, columns).CheckView();
    read.SetBuffer(0, back.data(), back.size() * sizeof(T)).ExecRead().RelinquishBuffers();
    if (!values.empty() && std::memcmp(back.data(), values.data(), values.size() * sizeof(T)) != 0)
        throw Mismatch("a transaction does not read what it wrote");
}

void WriteRecords(KOVObjDocument const& document, Plan const& plan) {
    int const n = plan.n;
    KOVSimPosition root = RootOf(document);
    if (root.IsNull()) {
        root = document.CreateDataRecord(schema::Results()).Pos();
        document.SetResults(root);
    }
    root.GetDataRecord().SetInt(0, n);

    KOVSimDataRecord const step = document.CreateDataRecord(schema::Step_Gen_Static());
    step.SetInt(0, n);
    step.SetDouble(1, FieldReal(n, 0));
    std::vector<double> reals;
    for (int i = 0; i < n % 13; ++i) reals.push_back(FieldReal(n, i));
    if (!reals.empty()) step.SetDouble(2, reals.data(), static_cast<int>(reals.size()));
    step.SetSymb(3, n % 5);
    step.SetString(4, FieldText(n).c_str());
    step.SetTypeID(5, KOVSimContext(document.ContextID()).Schema().TypeID(schema::Step_Lin()));
    step.Pos().SetName(StepName(n).c_str());

    KOVSimMap const all = root.GetMap(schema::Model_regions());
    KOVSimPosition const previous = all.Find(std::to_string(n - 1).c_str());
    all.Insert(std::to_string(n).c_str(), step.Pos());
    root.GetVector(schema::Model_stepSequence()).PushBack(step.Pos());
    root.GetSet(schema::Task_fieldResults()).Insert(step.Pos());
    root.GetMap(schema::Model_steps()).Insert(StepName(n).c_str(), step.Pos());
    if (n > 1) step.Pos().SetPosition(schema::Task_feSystem(), previous);
    step.Pos().Associate(schema::FocusRecord(), schema::FocusRecord_surfaceOutput, root);

    // What earlier transactions wrote is changed and taken away again.
    all.Find(std::to_string(plan.touched).c_str()).GetDataRecord().SetInt(6, n);
    if (n % 5 == 0) root.GetVector(schema::Model_stepSequence()).Remove(0);
    if (n % 4 == 0) {
        root.GetMap(schema::Model_steps()).Remove(StepName(n - 2).c_str());
        root.GetSet(schema::Task_fieldResults()).Remove(all.Find(std::to_string(n - 2).c_str()));
    }
    if (n % 6 == 0) previous.SetPosition(schema::Task_feSystem(), KOVSimPosition());
}

constexpr int FirstText = 100;  // field

void WriteTexts(KOVObjDocument const& document, int n, int texts) {
    KOVSimDataRecord const step = RootOf(document)
                                      .GetMap(schema::Model_regions())
                                      .Find(std::to_string(n).c_str())
                                      .GetDataRecord();
    for (int i = 0; i < texts; ++i) step.SetString(FirstText + i, LongText(n, i).c_str());
}

KOVSimPosition StepOf(KOVObjDocument const& document, int n) {
    return RootOf(document).GetMap(schema::Model_regions()).Find(std::to_string(n).c_str());
}

void WriteSets(KOVObjDocument const& document, Plan const& plan) {
    int const n = plan.n;
    KOVSimCollection nodes(KOVObjMesh(document.GetMesh()).GetNodeCollection().GetCollection());
    KOVSimMap const sets = RootOf(document).GetMap(schema::Model_nodeSets());
    sets.Insert(("range " + std::to_string(n)).c_str(),
                nodes.CreateCSetStrided(RangeSet(n, plan.spaceNodes).first,
                                        RangeSet(n, plan.spaceNodes).count, 1, 1));
    std::vector<int> const some = RandomMembers(n, 20, 1 + n % 40, plan.spaceNodes);
    sets.Insert(("random " + std::to_string(n)).c_str(),
                nodes.CreateCSet(some.data(), static_cast<int>(some.size()), false));
    std::vector<int> const order = RandomMembers(n, 21, 2 + n % 17, plan.spaceNodes);
    KOVSimCSet ordered =
        nodes.CreateVolatileOrderedCSet(order.data(), static_cast<int>(order.size()));
    sets.Insert(("ordered " + std::to_string(n)).c_str(), ordered.RegisterWithCollection());
}

void WriteCoordinates(KOVObjDocument const& document, Plan const& plan) {
    KOVObjMesh const mesh(document.GetMesh());
    KOVSimCollectionID const nodes = mesh.GetNodeCollection().GetCollection();
    KOVSimDistribution const distribution(mesh.GetCoordinates().GetDistribution());
    KOVSimCSet const columns = Some(document.GetComponentCollection().GetCollection(),
                                    {Components[0], Components[1], Components[2]});
    KOVSimCollection(nodes).ExtendSpace(plan.spaceNodes);
    KOVSimDrawerID drawer = DrawerNumber(distribution, 0);
    auto const write = [&](Range const& range) {
        for (int first = range.first; first < range.first + range.count; first += RowsAtOnce) {
            Range const part{first, std::min(RowsAtOnce, range.first + range.count - first)};
            if (drawer.IsNull())
                drawer = MakeDrawer(distribution, Run(nodes, part), columns, RowsAtOnce);
            std::vector<double> values;
            values.reserve(Size(part.count) * 3);
            for (int i = 0; i < part.count; ++i) {
                for (int c = 0; c < 3; ++c) values.push_back(Coordinate(part.first + i, c, plan.n));
            }
            WriteRows(distribution, drawer, Run(nodes, part), columns, values);
        }
    };
    write(plan.nodes);
    if (plan.rewritten.count) write(plan.rewritten);
    if (plan.scattered.empty()) return;
    std::vector<double> values;
    for (int const node : plan.scattered)
        values.push_back(Coordinate(node, plan.scatteredComponent, plan.n));
    KOVSimCSet const one = Some(columns.CollectionID(), {Components[plan.scatteredComponent]});
    WriteRows(distribution, drawer, Some(nodes, plan.scattered), one, values);
}

void WriteConnectivity(KOVObjDocument const& document, Plan const& plan, State const& before) {
    KOVObjMesh const mesh(document.GetMesh());
    KOVSimCollectionID const elements = mesh.GetElementCollection().GetCollection();
    KOVSimDSet const relation(mesh.GetConnectivity());
    KOVSimDistribution const distribution(relation.GetRelationalDistributionID());
    KOVSimCollectionID const places = distribution.Grid().Collections().ConstGet(1);
    KOVSimCollection(elements).ExtendSpace(plan.elements.first + plan.elements.count);
    auto const write = [&](KOVSimDrawerID drawer, Range const& range, int width) {
        KOVSimCSet const columns = Run(places, {0, width});
        if (drawer.IsNull()) drawer = MakeDrawer(distribution, Run(elements, range), columns, 64);
        std::vector<int> values;
        for (int e = range.first; e < range.first + range.count; ++e) {
            for (int j = 0; j < width; ++j) values.push_back(Node(e, j, plan.n, plan.spaceNodes));
        }
        WriteRows(distribution, drawer, Run(elements, range), columns, values);
    };
    write(DrawerNumber(distribution, plan.drawer), plan.elements, plan.width);
    if (plan.rewrittenElement >= 0) {
        int const number = before.elements[Size(plan.rewrittenElement)].drawer;
        write(DrawerNumber(distribution, number), {plan.rewrittenElement, 1},
              before.drawers[Size(number)].width);
    }
    KOVSimContext(document.ContextID()).UpdateDSet(relation.ID(), distribution.ID());
}

void WriteNumbers(KOVObjDocument const& document, int n) {
    KOVSimPosition const step = StepOf(document, n);
    int const count = NumbersOf(n);
    KOVSimCollectionID const rows =
        document.Focus().CreateTypedCollection(count, schema::TimeCollection());
    KOVSimGrid::CollectionArray grid(1, 0);
    grid.Get(0) = rows;
    KOVSimDistributionID const id = step.CreateTypedDistribution(
        KOVSimGrid(grid), schema::TimeData(), KOVSimRangeType(KOVSimTypeKeyInt));
    step.SetPosition(schema::TimeDescription_data(), id);
    std::vector<int> values;
    for (int i = 0; i < count; ++i) values.push_back(Node(i, 500, n, 1 << 30));
    KOVSimCSet all = Run(rows, {0, count});
    all.RegisterWithTempCollection();
    KOVSimTransfer write{KOVSimDistribution(id)};
    write.SetWrite().SetMakeNewDrawer().SetBufferPadding(false).SetDim(0, all).CheckView();
    write.SetBuffer(0, values.data(), values.size() * sizeof(int)).ExecWrite().RelinquishBuffers();
}

void WriteTable(KOVObjDocument const& document, int n) {
    int const rows = 1 + n % 9;
    KOVBasVector<KOVString> labels, columns;
    labels.PushBack(("table " + std::to_string(n)).c_str());
    columns.PushBack("a");
    columns.PushBack("b");
    std::vector<double> data;
    for (int i = 0; i < rows * 2; ++i) data.push_back(Coordinate(i, 7, n));
    KOVSimPosition const step = StepOf(document, n);
    step.SetPosition(schema::FieldFTable_table(),
                     step.CreateFTable(schema::FTable(), rows, labels, columns, data.data(),
                                       static_cast<int>(data.size())));
}

void WriteLabels(KOVObjDocument const& document, int n, int nodes) {
    std::vector<int> const ordinals = LabelOrdinals(n, nodes);
    KOVBasVector<int> labels, places;
    // In descending order: neither as they are stored nor as they are delivered.
    for (std::size_t i = 0; i < ordinals.size(); ++i) {
        int const ordinal = ordinals[ordinals.size() - 1 - i];
        places.PushBack(ordinal);
        labels.PushBack(Label(ordinal, n));
    }
    KOVObjLabeler(document, KOVObjLabelerNodes).SetInstance(InstanceOf(n).c_str(), labels, places);
}

void WriteRelation(KOVObjDocument const& document, int n, Plan const& plan) {
    KOVObjMesh const mesh(document.GetMesh());
    KOVSimCollection nodes(mesh.GetNodeCollection().GetCollection());
    KOVSimCollection elements(mesh.GetElementCollection().GetCollection());
    KOVSimCtation::Array compartments(2, 0);
    for (int i = 0; i < 2; ++i) {
        std::vector<int> const some =
            RandomMembers(n, 30 + i, 5, plan.elements.first + plan.elements.count);
        KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> sets(2, 0);
        sets.Get(0) = elements.CreateCSet(some.data(), static_cast<int>(some.size()), false);
        sets.Get(1) = nodes.CreateCSetStrided(i, 2 + n % 3, 1, 1);
        compartments.Get(i) = KOVSimCompartment(sets);
    }
    KOVSimPosition const step = StepOf(document, n);
    step.SetPosition(
        schema::ElementClassification_membership(),
        step.CreateTypedDSet(KOVSimCtation(compartments), schema::ElementClassMembership()));
}

void WriteCollection(KOVObjDocument const& document, int n) {
    KOVSimPosition const step = StepOf(document, n);
    KOVSimPosition const collection =
        document.Focus().CreateTypedCollection(3, schema::MaterialCollection());
    step.SetPosition(schema::Mesh_dofs(), collection);
    for (int i = 0; i < 2 + n % 4; ++i) {
        KOVSimPosition const member = i == 0 ? collection.CreateMember(1, schema::Material())
                                             : collection.AppendMember(schema::Material());
        member.SetName(("member " + std::to_string(i) + " of " + std::to_string(n)).c_str());
        member.GetDataRecord().SetInt(0, n * 100 + i);
    }
}

}  // namespace

KOVSimPosition RootOf(KOVObjDocument const& document) { return document.GetResults(); }

void Session::WriteOpen(KOVObjDocument const& document, int n) {
    State const& before = At(n - 1);
    Plan const plan = MakePlan(m_scale, n, before.nodes, static_cast<int>(before.elements.size()));
    WriteRecords(document, plan);
    WriteTexts(document, n, TextsOf(m_scale, n));
    WriteCoordinates(document, plan);
    WriteSets(document, plan);
    WriteConnectivity(document, plan, before);
    if (HasNumbers(n)) WriteNumbers(document, n);
    if (HasTable(n)) WriteTable(document, n);
    if (HasLabels(n)) WriteLabels(document, n, plan.spaceNodes);
    if (HasRelation(n)) WriteRelation(document, n, plan);
    if (HasCollection(n)) WriteCollection(document, n);
}

void Session::Write(KOVObjDocument const& document, int n) {
    KOVSimTransaction transaction(document.ContextID());
    WriteOpen(document, n);
    transaction.Commit();
}

}  // namespace reliability
