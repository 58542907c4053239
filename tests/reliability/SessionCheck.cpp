// The reading side of the session: everything is compared, and the first difference is told.
#include <cstring>
#include <sstream>

#include "KOVObjLabeler.h"
#include "KOVObjMesh.h"
#include "KOVSimCollection.h"
#include "KOVSimContext.h"
#include "KOVSimCtation.h"
#include "KOVSimDSet.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimFTable.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransfer.h"
#include "KOVSimVector.h"
#include "reliability/Session.h"

namespace reliability {

namespace {

constexpr double Preset = -7.5;
constexpr int FirstText = 100;  // field

template <class... Parts>
void Require(bool holds, Parts const&... parts) {
    if (holds) return;
    std::ostringstream text;
    (text << ... << parts);
    throw Mismatch(text.str());
}

std::size_t Size(int n) { return static_cast<std::size_t>(n); }

bool SameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

KOVSimPosition StepOf(KOVObjDocument const& document, int n) {
    return RootOf(document).GetMap(schema::Model_regions()).Find(std::to_string(n).c_str());
}

int NumberOf(KOVSimPosition const& step) {
    int n = -1;
    step.GetDataRecord().GetInt(0, n);
    return n;
}

void CheckStep(KOVSimPosition const& position, int n, int touched) {
    Require(!position.IsNull(), "step ", n, " is missing");
    Require(position.TypePosition() == schema::Step_Gen_Static(), "step ", n, " is of type ",
            position.TypePosition());
    Require(position.Name(-1) == StepName(n).c_str(), "step ", n, " has another name");
    KOVSimDataRecord const step = position.GetDataRecord();
    int number = -1, symbol = -1, last = 0;
    double real = 0;
    KOVString text("unset");
    KOVSimTypeID type = -2;
    step.GetInt(0, number);
    step.GetDouble(1, real);
    step.GetSymb(3, symbol);
    step.GetString(4, text);
    step.GetTypeID(5, type);
    step.GetInt(6, last);
    Require(number == n && symbol == n % 5, "step ", n, ": a whole number is ", number, ", ",
            symbol);
    Require(SameBits(real, FieldReal(n, 0)), "step ", n, ": a real is ", real);
    Require(text == FieldText(n).c_str(), "step ", n, ": the text is ", text.TextOrEmpty());
    Require(type == schema::Step_Lin(), "step ", n, ": the type field is ", type);
    Require(last == touched, "step ", n, ": touched by ", last, " and not by ", touched);
    std::vector<double> reals(Size(n % 13), 0.5);
    if (!reals.empty()) step.GetDouble(2, reals.data(), n % 13);
    for (int i = 0; i < n % 13; ++i)
        Require(SameBits(reals[Size(i)], FieldReal(n, i)), "step ", n, ": real ", i, " is wrong");
}

std::vector<int> Stored(KOVSimCSet const& set) {
    std::vector<int> members(Size(set.Size()));
    set.OrderedMembers(members.data());
    return members;
}

template <class T>
std::vector<T> Read(KOVSimDistribution const& distribution, std::vector<KOVSimCSet> const& view,
                    T preset) {
    std::size_t count = 1;
    for (KOVSimCSet const& set : view) count *= Size(set.Size());
    std::vector<T> values(count, preset);
    KOVSimTransfer read(distribution);
    read.SetRead().SetBufferPadding(false);
    for (std::size_t i = 0; i < view.size(); ++i) read.SetDim(static_cast<int>(i), view[i]);
    read.CheckView();
    Require(Size(read.RequiredBufferSize(0)) == count * sizeof(T), "a view has another size");
    read.SetBuffer(0, values.data(), count * sizeof(T)).ExecRead().RelinquishBuffers();
    return values;
}

double ExpectedCoordinate(State const& state, int node, int component) {
    auto const& versions = state.coordinates[Size(node)];
    int const version = versions[Size(component)];
    return version == 0 ? Preset : Coordinate(node, component, version);
}

}  // namespace

void Session::CheckRecords(KOVObjDocument const& document, State const& state) {
    KOVSimMap const all = RootOf(document).GetMap(schema::Model_regions());
    Require(all.Size() == state.n, "the root has ", all.Size(), " steps at ", state.n);
    for (int i = 1; i <= state.n; ++i) CheckStep(StepOf(document, i), i, state.touched[Size(i)]);
    for (int i = 1; i <= state.n; ++i) {
        KOVSimDataRecord const step = StepOf(document, i).GetDataRecord();
        int const texts = TextsOf(m_scale, i);
        Require(step.ReturnString(FirstText + texts).IsEmpty(), "step ", i, " has more texts");
        for (int k = 0; k < texts; ++k)
            Require(step.ReturnString(FirstText + k) == LongText(i, k).c_str(), "text ", k,
                    " of step ", i);
    }
    for (int i = 1; i <= state.n; ++i) {
        KOVSimPosition const table = StepOf(document, i).GetPosition(schema::FieldFTable_table());
        Require(table.IsNull() == !HasTable(i), "step ", i, ": its table");
        if (table.IsNull()) continue;
        KOVSimFTable const content(table.GetFTable());
        int const rows = 1 + i % 9;
        Require(content.RowCount() == rows && content.ColumnCount() == 2, "table ", i, ": shape");
        Require(content.LabelCount() == 1 &&
                    content.Label(0) == ("table " + std::to_string(i)).c_str() &&
                    content.ColumnLabel(1) == "b",
                "table ", i, ": labels");
        std::vector<double> data(Size(rows * 2), Preset);
        content.GetData(data.data(), rows * 2);
        for (int k = 0; k < rows * 2; ++k)
            Require(SameBits(data[Size(k)], Coordinate(k, 7, i)), "table ", i, ": entry ", k);
    }
}

void Session::CheckLinks(KOVObjDocument const& document, State const& state) {
    KOVSimPosition const root = RootOf(document);
    int expected = FirstStepInSequence(state.n);
    KOVSimVector const sequence = root.GetVector(schema::Model_stepSequence());
    for (KOVSimVectoriterator at = sequence.Begin(); at.NotDone(); ++at) {
        Require(NumberOf(*at) == expected, "the sequence has step ", NumberOf(*at), " where ",
                expected, " belongs");
        ++expected;
    }
    Require(expected == state.n + 1, "the sequence ends before step ", expected);

    int named = 0;
    KOVSimMap const steps = root.GetMap(schema::Model_steps());
    for (int i = 1; i <= state.n; ++i) {
        KOVSimPosition const step = StepOf(document, i);
        KOVSimPosition const byName = steps.Find(StepName(i).c_str());
        bool const has = StepHasName(i, state.n);
        named += has;
        Require(has ? byName.ID() == step.ID() : byName.IsNull(), "step ", i, " by its name");
        Require((step.GetReferenceKey(schema::Model_steps()) == StepName(i).c_str()) == has,
                "the key of step ", i);
        Require(step.ReferrersSet(schema::Task_fieldResults()).Size() == (has ? 1 : 0),
                "the referrers of step ", i);
        KOVSimPosition const previous = step.GetPosition(schema::Task_feSystem());
        bool const linked = StepHasPrevious(i, state.n);
        Require(linked ? NumberOf(previous) == i - 1 : previous.IsNull(), "step ", i,
                ": the link to the one before");
        if (linked)
            Require(previous.Parent(schema::Task_feSystem()).ID() == step.ID(), "step ", i - 1,
                    ": who links to it");
        Require(
            step.Follow(schema::FocusRecord(), schema::FocusRecord_surfaceOutput).ID() == root.ID(),
            "step ", i, ": its association");
    }
    Require(steps.Size() == named, "the map of steps has ", steps.Size(), " and not ", named);
    KOVSimSet const set = root.GetSet(schema::Task_fieldResults());
    Require(set.Size() == named, "the set of steps has ", set.Size(), " and not ", named);
    for (KOVSimSetiterator at = set.Begin(); at.NotDone(); ++at)
        Require(StepHasName(NumberOf(*at), state.n), "the set of steps has step ", NumberOf(*at));
}

void Session::CheckSets(KOVObjDocument const& document, State const& state) {
    KOVSimMap const sets = RootOf(document).GetMap(schema::Model_nodeSets());
    Require(sets.Size() == 3 * state.n, "there are ", sets.Size(), " named sets");
    for (int i = 1; i <= state.n; ++i) {
        int const space = state.nodesAt[Size(i)];
        auto const find = [&](char const* kind) {
            KOVSimPosition const found = sets.Find((kind + std::to_string(i)).c_str());
            Require(!found.IsNull(), "the set '", kind, i, "' is missing");
            return found.CSet();
        };
        KOVSimCSet const range = find("range ");
        Range const expected = RangeSet(i, space);
        Require(range.Size() == expected.count, "range set ", i, ": size");
        Require(range[0] == expected.first &&
                    range[expected.count - 1] == expected.first + expected.count - 1,
                "range set ", i);
        std::vector<int> const some = RandomMembers(i, 20, 1 + i % 40, space);
        KOVSimCSet const random = find("random ");
        Require(random.Size() == static_cast<int>(some.size()) && random.IsAscending(),
                "random set ", i, ": size");
        for (int const member : some)
            Require(random.Contains(member), "random set ", i, " lacks ", member);
        Require(Stored(find("ordered ")) == RandomMembers(i, 21, 2 + i % 17, space), "ordered set ",
                i);
    }
}

void Session::CheckCoordinates(KOVObjDocument const& document, State const& state) {
    KOVObjMesh const mesh(document.GetMesh());
    KOVSimCollection const nodes(mesh.GetNodeCollection().GetCollection());
    Require(nodes.Space() == state.nodes, "there are ", nodes.Space(), " nodes and not ",
            state.nodes);
    KOVSimDistribution const distribution(mesh.GetCoordinates().GetDistribution());
    int const components[3] = {0, 12, 20};
    KOVSimCSet const columns = KOVSimCollection(document.GetComponentCollection().GetCollection())
                                   .CreateVolatileCSet(components, 3, false);
    std::vector<double> const all = Read<double>(
        distribution, {nodes.CreateVolatileCSetStrided(0, state.nodes, 1, 1), columns}, Preset);
    for (int i = 0; i < state.nodes; ++i) {
        for (int c = 0; c < 3; ++c) {
            double const value = all[Size(i) * 3 + Size(c)];
            Require(SameBits(value, ExpectedCoordinate(state, i, c)), "coordinate ", c, " of node ",
                    i, " is ", value, " at transaction ", state.n);
        }
    }
    // The same by scattered members: another way through the blocks.
    std::vector<int> const some = RandomMembers(state.n, 40, 50, state.nodes);
    std::vector<double> const picked = Read<double>(
        distribution,
        {nodes.CreateVolatileOrderedCSet(some.data(), static_cast<int>(some.size())), columns},
        Preset);
    for (std::size_t i = 0; i < some.size(); ++i) {
        for (int c = 0; c < 3; ++c)
            Require(SameBits(picked[i * 3 + Size(c)], ExpectedCoordinate(state, some[i], c)),
                    "coordinate ", c, " of node ", some[i], ", read by itself");
    }
}

void Session::CheckConnectivity(KOVObjDocument const& document, State const& state) {
    KOVObjMesh const mesh(document.GetMesh());
    KOVSimCollection const elements(mesh.GetElementCollection().GetCollection());
    int const count = static_cast<int>(state.elements.size());
    Require(elements.Space() == count, "there are ", elements.Space(), " elements");
    KOVSimDSet const relation(mesh.GetConnectivity());
    KOVSimDistribution const distribution(relation.GetRelationalDistributionID());
    KOVSimCollection const places(distribution.Grid().Collections().ConstGet(1));
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>
        drawers;
    distribution.QueryDrawers(drawers);
    Require(drawers.Size() == static_cast<int>(state.drawers.size()), "there are ", drawers.Size(),
            " drawers of elements");
    for (int d = 0; d < drawers.Size(); ++d) {
        State::Drawer const& expected = state.drawers[Size(d)];
        KOVSimCSet const rows = drawers.ConstGet(d).compartment.CSet(0);
        KOVSimCSet const columns = places.CreateVolatileCSetStrided(0, expected.width, 1, 1);
        Require(rows.Size() == expected.elements.count && rows[0] == expected.elements.first,
                "drawer ", d, " has other elements");
        Require(drawers.ConstGet(d).compartment.CSet(1).SameMembers(columns) &&
                    drawers.ConstGet(d).extendableDim == 0,
                "drawer ", d, " has another shape");
        std::vector<int> const values = Read<int>(distribution, {rows, columns}, -1);
        for (int i = 0; i < rows.Size(); ++i) {
            int const element = expected.elements.first + i;
            int const version = state.elements[Size(element)].version;
            for (int j = 0; j < expected.width; ++j) {
                Require(values[Size(i) * Size(expected.width) + Size(j)] ==
                            Node(element, j, version, state.nodesAt[Size(version)]),
                        "node ", j, " of element ", element, " at transaction ", state.n);
            }
        }
    }
    KOVSimCSet const held = relation.Collect(elements.ID());
    Require(held.Size() == count && (count == 0 || held[count - 1] == count - 1),
            "the connectivity holds other elements");
}

void Session::CheckLabels(KOVObjDocument const& document, State const& state) {
    KOVObjLabeler labeler(document, KOVObjLabelerNodes);
    labeler.Read();
    KOVObjLabeler::NameArray const names = labeler.Occurrences();
    Require(names.Size() == static_cast<int>(state.labels.size()), "there are ", names.Size(),
            " labelled instances");
    int at = 0;
    for (auto const& [name, version] : state.labels) {
        Require(names.ConstGet(at++) == name.c_str(), "instance ", name, " is missing");
        KOVBasVector<int> labels, ordinals;
        labeler.GetInstanceLabelsAndOrdinals(name.c_str(), labels, ordinals);
        std::vector<int> const expected = LabelOrdinals(version, state.nodesAt[Size(version)]);
        Require(
            labels.Size() == static_cast<int>(expected.size()) && ordinals.Size() == labels.Size(),
            "instance ", name, " has ", labels.Size(), " labels");
        for (int i = 0; i < labels.Size(); ++i) {
            Require(labels[i] == Label(ordinals[i], version), "a label of ", name);
            Require(i == 0 || labels[i - 1] < labels[i], "the order of the labels of ", name);
        }
        if (expected.empty()) continue;
        int const middle = expected[expected.size() / 2];
        Require(labeler.GetInstanceLabel(name.c_str(), middle) == Label(middle, version),
                "the label of ordinal ", middle);
    }
}

void Session::CheckRelations(KOVObjDocument const& document, State const& state) {
    for (int i = 1; i <= state.n; ++i) {
        KOVSimPosition const step = StepOf(document, i);
        KOVSimPosition const held = step.GetPosition(schema::ElementClassification_membership());
        Require(held.IsNull() == !HasRelation(i), "step ", i, ": its dataset");
        if (HasRelation(i)) {
            KOVSimDSet const dset = held.DSet();
            KOVSimCtation::Array const& compartments = dset.GetCtation().Compartments();
            Require(compartments.Size() == 2, "dataset ", i, ": compartments");
            for (int k = 0; k < 2; ++k) {
                KOVSimCSet const& nodes = compartments.ConstGet(k).CSet(1);
                Require(nodes.Size() == 2 + i % 3 && nodes[0] == k, "dataset ", i, ": nodes");
                std::vector<int> const some =
                    RandomMembers(i, 30 + k, 5, state.elementsAt[Size(i)]);
                KOVSimCSet const& found = compartments.ConstGet(k).CSet(0);
                Require(found.Size() == static_cast<int>(some.size()), "dataset ", i, ": size");
                for (int const member : some)
                    Require(found.Contains(member), "dataset ", i, " lacks element ", member);
            }
        }
        KOVSimPosition const collection = step.GetPosition(schema::Mesh_dofs());
        Require(collection.IsNull() == !HasCollection(i), "step ", i, ": its collection");
        if (HasCollection(i)) {
            KOVSimCollectionID const id = collection.GetCollection();
            Require(KOVSimCollection(id).Space() == 4 + i % 4, "collection ", i, ": space");
            for (int k = 0; k < 2 + i % 4; ++k) {
                KOVSimPosition const member = document.GetRecord(id, k == 0 ? 1 : 2 + k);
                int value = -1;
                member.GetDataRecord().GetInt(0, value);
                Require(value == i * 100 + k, "collection ", i, ": member ", k, " holds ", value);
                Require(member.Name(-1) ==
                            ("member " + std::to_string(k) + " of " + std::to_string(i)).c_str(),
                        "collection ", i, ": the name of member ", k);
            }
        }
        KOVSimPosition const data = step.GetPosition(schema::TimeDescription_data());
        Require(data.IsNull() == !HasNumbers(i), "step ", i, ": its numbers");
        if (HasNumbers(i)) {
            KOVSimDistribution const distribution(data.GetDistribution());
            KOVSimCollection const rows(distribution.Grid().Collections().ConstGet(0));
            int const count = NumbersOf(i);
            Require(rows.Space() == count, "numbers of step ", i, ": space");
            std::vector<int> const values =
                Read<int>(distribution, {rows.CreateVolatileCSetStrided(0, count, 1, 1)}, -1);
            for (int k = 0; k < count; ++k)
                Require(values[Size(k)] == Node(k, 500, i, 1 << 30), "number ", k, " of step ", i);
        }
    }
}

}  // namespace reliability
