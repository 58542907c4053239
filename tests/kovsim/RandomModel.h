// RandomModel: a model of several instances made through the library, with everything in it that a
// sub-model has to cut, and beside it the same in plain vectors.
#pragma once

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "DocumentReader.h"
#include "KOVObjDocument.h"
#include "KOVObjLabeler.h"
#include "KOVSimCtation.h"
#include "KOVSimDSet.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimTransaction.h"
#include "KOVSimTransfer.h"
#include "KOVSimVector.h"
#include "KOVSrvElementConnectivity.h"
#include "KOVSrvNodalCoordinates.h"
#include "Names.h"
#include "zdm_ComponentSymbols.h"

namespace kov::test {

using CSetIDs = KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>>;
using Ints = std::vector<int>;

enum class Over { Nodes, Elements, Columns };

/// One drawer in plain vectors; `values` row by row.
struct PlainDrawer {
    std::vector<Ints> sets;  ///< ascending
    bool chunked = false;
    int growing = -1;
    std::vector<double> values;
};

struct PlainDistribution {
    std::string name;
    std::vector<Over> grid;
    int key = KOVSimTypeKeyDouble;
    Over names = Over::Columns;  ///< of key 7: what the entries name
    std::vector<PlainDrawer> drawers;
};

struct PlainSet {
    Over over;
    Ints members;  ///< in stored order
    int map;
};

struct PlainInstance {
    Ints nodes;
    Ints elements;
    std::string part;
    std::array<double, 12> placing;
};

struct RandomModelSizes {
    int instances = 3;
    int nodes = 60;     ///< of an instance
    int elements = 40;  ///< of an instance
};

class RandomModel {
  public:
    static constexpr int kColumns = 5;

    explicit RandomModel(unsigned seed, RandomModelSizes const& sizes = {},
                         KOVObjDocument const& into = KOVObjDocument::CreateInMemory())
        : document(into), m_random(seed) {
        KOVSimTransaction transaction(document.ContextID());
        Plan(sizes);
        MakeMesh(transaction);
        MakeInstances();
        MakeSets();
        MakeSurfaces();
        MakeFields();
        document.GetModel().GetDataRecord().SetString(1, "a heading");
        transaction.Commit();
    }

    int Random(int below) {
        return static_cast<int>(m_random() % static_cast<unsigned>(std::max(below, 1)));
    }
    /// Members below `space`, each with a chance of `percent`, ascending.
    Ints Some(int space, int percent) {
        Ints some;
        for (int i = 0; i < space; ++i) {
            if (Random(100) < percent) some.push_back(i);
        }
        return some;
    }
    int Nodes() const { return static_cast<int>(coordinates.size() / 3); }
    int Elements() const { return static_cast<int>(connectivity.size()); }
    int Space(Over over) const {
        return over == Over::Nodes ? Nodes() : over == Over::Elements ? Elements() : kColumns;
    }
    KOVObjMesh Mesh() const { return {document.GetMesh()}; }

    KOVObjDocument document;
    std::vector<double> coordinates;
    std::vector<Ints> connectivity;  ///< -1 for a place without a node
    std::map<std::string, PlainInstance> instances;
    Ints nodeLabels;  ///< by ordinal; -1 for none
    Ints elementLabels;
    std::map<std::string, PlainSet> sets;
    std::map<std::string, std::map<int, Ints>> surfaces;  ///< elements by face
    std::vector<PlainDistribution> fields;

  private:
    KOVSimCollection Collection(Over over) const {
        switch (over) {
            case Over::Nodes:
                return tool::CollectionAt(Mesh().GetNodeCollection());
            case Over::Elements:
                return tool::CollectionAt(Mesh().GetElementCollection());
            default:
                return KOVSimCollection(m_columns);
        }
    }
    KOVSimCSetID Store(Over over, Ints const& members) const {
        return Collection(over).CreateCSet(members.data(), static_cast<int>(members.size()), false);
    }

    // Ordinals of the instances are consecutive; the last nodes and elements belong to none.
    void Plan(RandomModelSizes const& sizes) {
        int nodes = 0;
        int elements = 0;
        for (int i = 0; i < sizes.instances; ++i) {
            PlainInstance& instance = instances["I-" + std::to_string(i + 1)];
            instance.part = "P-" + std::to_string(Random(2));
            for (double& number : instance.placing) number = Random(100) / 7.0;
            int const first = nodes;
            int const count = 20 + Random(sizes.nodes);
            for (int n = 0; n < count; ++n) instance.nodes.push_back(nodes++);
            int const more = Random(sizes.elements) + 1;
            for (int e = 0; e < more; ++e) {
                instance.elements.push_back(elements++);
                Ints of(std::array{2U, 4U, 8U}[static_cast<std::size_t>(Random(3))]);
                for (int& node : of) node = Random(12) == 0 ? -1 : first + Random(count);
                connectivity.push_back(of);
            }
        }
        nodes += 4;
        for (int n = 0; n < 3 * nodes; ++n) coordinates.push_back(Random(100000) / 8.0 - 6000);
        nodeLabels.assign(static_cast<std::size_t>(nodes), -1);
        elementLabels.assign(static_cast<std::size_t>(elements), -1);
    }

    void MakeMesh(KOVSimTransaction& transaction) {
        m_columns =
            document.Focus().CreateTypedCollection(kColumns, schema::SectionLayerCollection());
        Collection(Over::Nodes).ExtendSpace(Nodes());
        Collection(Over::Elements).ExtendSpace(Elements());
        int const components[] = {zdm_Component_C_1, zdm_Component_C_2, zdm_Component_C_3};
        KOVSimCollection symbols(document.GetComponentCollection().GetCollection());
        KOVSrvNodalCoordinates(Mesh().GetCoordinates(), 16)
            .Append(transaction, Collection(Over::Nodes).CreateTempCSetStrided(0, Nodes(), 1, 1),
                    symbols.CreateTempCSet(components, 3, false), coordinates.data());
        KOVSimDSet const dset(Mesh().GetConnectivity());
        KOVSimDistribution const relation(dset.GetRelationalDistributionID());
        KOVSimCollection places(relation.Grid().Collections().ConstGet(1));
        KOVSrvElementConnectivity writer(Mesh().GetConnectivity(), 16);
        KOVSimPosition const specs = document.GetElementSpecCollection();
        std::vector<KOVSimCompartment> assignment;
        for (int const count : {2, 4, 8}) {
            Ints elements;
            Ints rows;
            for (int e = 0; e < Elements(); ++e) {
                Ints const& of = connectivity[static_cast<std::size_t>(e)];
                if (static_cast<int>(of.size()) != count) continue;
                elements.push_back(e);
                rows.insert(rows.end(), of.begin(), of.end());
            }
            if (elements.empty()) continue;
            KOVSimPosition const spec = specs.AppendMember(schema::ElementSpec());
            KOVString const name = tool::ToKOVString("T" + std::to_string(count));
            spec.SetName(name);
            specs.GetMap(schema::ElementSpecLib_elementSpecs()).Insert(name, spec);
            KOVSimCSetID const set = Store(Over::Elements, elements);
            writer.Append(transaction, spec.ID(), set, places.CreateTempCSetStrided(0, count, 1, 1),
                          rows.data());
            int const index = document.GetCMemberIndex(spec);
            CSetIDs pair(2);
            pair.Get(0) = KOVSimCollection(specs.GetCollection()).CreateCSet(&index, 1, false);
            pair.Get(1) = set;
            assignment.emplace_back(pair);
        }
        Mesh().SetElementSpecAssignment(Dataset(assignment, schema::ElementSpecAssignment()));
        Mesh().SetUserNodes(Store(Over::Nodes, Some(Nodes(), 100)));
    }

    KOVSimPosition Dataset(std::vector<KOVSimCompartment> const& all, int type) const {
        KOVSimCtation::Array compartments(static_cast<int>(all.size()));
        for (std::size_t i = 0; i < all.size(); ++i) compartments.Get(static_cast<int>(i)) = all[i];
        return document.Focus().CreateTypedDSet(KOVSimCtation(compartments), type);
    }

    void MakeInstances() {
        KOVSimMap const map = document.GetModel().GetMap(schema::Model_instances());
        for (auto const& [name, instance] : instances) {
            KOVSimDataRecord const record = document.CreateDataRecord(schema::Instance());
            record.Pos().SetName(tool::ToKOVString(name));
            record.SetString(0, tool::ToKOVString(instance.part));
            record.SetDouble(1, instance.placing.data(), 12);
            record.Pos().SetPosition(schema::Instance_nodes(), Store(Over::Nodes, instance.nodes));
            record.Pos().SetPosition(schema::Instance_elements(),
                                     Store(Over::Elements, instance.elements));
            map.Insert(tool::ToKOVString(name), record.Pos());
            SetLabels(KOVObjLabelerNodes, name, instance.nodes, nodeLabels);
            SetLabels(KOVObjLabelerElements, name, instance.elements, elementLabels);
        }
        SetLabels(KOVObjLabelerNodes, "", {Nodes() - 2, Nodes() - 1}, nodeLabels);
    }
    void SetLabels(KOVObjLabelerType type, std::string const& name, Ints const& members,
                   Ints& labels) {
        KOVBasVector<int> of;
        KOVBasVector<int> ordinals;
        int label = 0;
        for (int const member : members) {
            label += 1 + Random(3);
            labels[static_cast<std::size_t>(member)] = label;
            of.PushBack(label);
            ordinals.PushBack(member);
        }
        KOVObjLabeler labeler(document, type);
        labeler.Read();
        labeler.SetInstance(tool::ToKOVString(name), of, ordinals);
    }

    void MakeSets() {
        for (Over const over : {Over::Nodes, Over::Elements}) {
            bool const nodes = over == Over::Nodes;
            for (int i = 0; i < 6; ++i) {
                PlainSet set;
                set.over = over;
                set.members = Some(Space(over),
                                   std::array{1, 10, 50, 100}[static_cast<std::size_t>(Random(4))]);
                bool const ordered = i == 2 || i == 5;
                if (ordered) std::shuffle(set.members.begin(), set.members.end(), m_random);
                if (i == 1) set.members.clear();
                set.map = nodes ? (i < 4 ? schema::Model_nodeSets() : schema::Model_otherNodeSets())
                                : (i < 4 ? schema::Model_elementSets()
                                         : schema::Model_otherElementSets());
                std::string const name = (nodes ? "N" : "E") + std::to_string(i);
                KOVSimCSet volatileSet = Collection(over).CreateVolatileOrderedCSet(
                    set.members.data(), static_cast<int>(set.members.size()));
                KOVSimPosition const position =
                    ordered ? KOVSimPosition(volatileSet.RegisterWithCollection())
                            : KOVSimPosition(Store(over, set.members));
                document.GetModel().GetMap(set.map).Insert(tool::ToKOVString(name), position);
                sets[name] = set;
            }
        }
    }

    void MakeSurfaces() {
        KOVSimPosition const model = document.GetModel();
        KOVSimPosition const regions = model.CreateTypedCollection(0, schema::RegionCollection());
        model.SetPosition(schema::Model_regionCollection(), regions);
        KOVSimPosition const faces = model.CreateTypedCollection(0, schema::FaceCollection());
        document.Focus().SetPosition(schema::Focus_faces(), faces);
        for (int face = 0; face < 6; ++face) {
            faces.AddSymbol(tool::ToKOVString("S" + std::to_string(face + 1)), face,
                            schema::Symbol());
        }
        for (int i = 0; i < 4; ++i) {
            std::string const name = "S-" + std::to_string(i);
            KOVSimPosition const surface = regions.AppendMember(schema::Surface());
            surface.SetName(tool::ToKOVString(name));
            std::vector<KOVSimCompartment> all;
            for (int face = 0; face < 6; ++face) {
                Ints const elements = Some(Elements(), i == 0 ? 1 : 15);
                if (elements.empty()) continue;
                CSetIDs pair(2);
                pair.Get(0) = Store(Over::Elements, elements);
                pair.Get(1) = KOVSimCollection(faces.GetCollection()).CreateCSet(&face, 1, false);
                all.emplace_back(pair);
                surfaces[name][face] = elements;
            }
            if (!all.empty()) {
                surface.SetPosition(schema::Region_elementsFacesCluster(),
                                    Dataset(all, schema::ElementFaces()));
            }
            surfaces[name];
            model.GetMap(schema::Model_regions()).Insert(tool::ToKOVString(name), surface);
        }
    }

    void MakeFields() {
        KOVSimPosition const step = document.CreateDataRecord(schema::Step_Gen_Static()).Pos();
        document.GetModel().GetMap(schema::Model_steps()).Insert("Step-1", step);
        document.GetModel().GetVector(schema::Model_stepSequence()).PushBack(step);
        struct Plan {
            std::vector<Over> grid;
            int key;
            Over names;
            int growing;
        };
        Plan const plans[] = {
            {{Over::Nodes, Over::Columns}, KOVSimTypeKeyDouble, Over::Columns, 0},
            {{Over::Elements, Over::Columns}, KOVSimTypeKeyInt, Over::Columns, -1},
            {{Over::Columns, Over::Elements}, KOVSimTypeKeyDouble, Over::Columns, 1},
            {{Over::Columns, Over::Nodes}, KOVSimTypeKeyDouble, Over::Columns, 0},
            {{Over::Nodes}, KOVSimTypeKeyMember, Over::Elements, -1},
            {{Over::Elements, Over::Nodes}, KOVSimTypeKeyMember, Over::Columns, 0},
            {{Over::Columns}, KOVSimTypeKeyMember, Over::Nodes, 0},
            {{Over::Columns}, KOVSimTypeKeyDouble, Over::Columns, -1},
        };
        for (Plan const& plan : plans) {
            PlainDistribution field{
                "F" + std::to_string(fields.size()), plan.grid, plan.key, plan.names, {}};
            for (int drawers = 1 + Random(3); drawers > 0; --drawers) {
                PlainDrawer drawer;
                for (Over const over : plan.grid) {
                    drawer.sets.push_back(Some(Space(over), over == Over::Columns ? 70 : 30));
                    if (drawer.sets.back().empty()) drawer.sets.back().push_back(0);
                }
                // A drawer that does not grow may be chunked as well.
                drawer.growing = plan.growing;
                drawer.chunked = plan.growing >= 0 || Random(2) == 0;
                std::size_t entries = 1;
                for (Ints const& set : drawer.sets) entries *= set.size();
                for (std::size_t i = 0; i < entries; ++i) {
                    drawer.values.push_back(plan.key == KOVSimTypeKeyDouble ? Random(9999) / 16.0
                                            : plan.key == KOVSimTypeKeyInt
                                                ? Random(9999) - 99
                                                : Random(Space(plan.names) + 1) - 1);
                }
                field.drawers.push_back(drawer);
            }
            step.GetVector(schema::Task_fieldResults()).PushBack(Store(field));
            fields.push_back(field);
        }
    }

    KOVSimPosition Store(PlainDistribution const& field) const {
        KOVSimGrid::CollectionArray grid(static_cast<int>(field.grid.size()));
        for (std::size_t i = 0; i < field.grid.size(); ++i) {
            grid.Get(static_cast<int>(i)) = Collection(field.grid[i]).ID();
        }
        KOVSimRangeType const range = field.key == KOVSimTypeKeyMember
                                          ? KOVSimRangeType(field.key, Collection(field.names).ID())
                                          : KOVSimRangeType(field.key);
        KOVSimDistributionID const id =
            document.Focus().CreateTypedDistribution(KOVSimGrid(grid), schema::Grid_Node(), range);
        for (PlainDrawer const& drawer : field.drawers) {
            KOVSimTransfer write{KOVSimDistribution(id)};
            write.SetWrite().SetBufferPadding(false);
            if (drawer.chunked) {
                KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks(grid.Size());
                for (int i = 0; i < grid.Size(); ++i) chunks.Get(i) = 7 + i;
                write.SetMakeNewDrawerChunked(chunks);
                if (drawer.growing >= 0) write.SetExtendableDim(drawer.growing);
            } else {
                write.SetMakeNewDrawer();
            }
            for (std::size_t i = 0; i < drawer.sets.size(); ++i) {
                Ints const& set = drawer.sets[i];
                write.SetDim(
                    static_cast<int>(i),
                    Collection(field.grid[i])
                        .CreateVolatileCSet(set.data(), static_cast<int>(set.size()), false));
            }
            write.CheckView();
            if (field.key == KOVSimTypeKeyDouble) {
                write.SetBuffer(0, drawer.values.data(), 8 * drawer.values.size()).ExecWrite();
            } else {
                Ints const values(drawer.values.begin(), drawer.values.end());
                write.SetBuffer(0, values.data(), 4 * values.size()).ExecWrite();
            }
        }
        KOVSimPosition const record = document.CreateDataRecord(schema::Field_Meshed()).Pos();
        record.SetName(tool::ToKOVString(field.name));
        record.SetPosition(schema::Field_distribution(), id);
        return record;
    }

    std::mt19937 m_random;
    KOVSimCollectionID m_columns;
};

}  // namespace kov::test
