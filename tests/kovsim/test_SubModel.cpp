// A sub-model beside the plain vectors of the model that it was cut out of.

#include "SubModel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <set>

#include "DocumentReader.h"
#include "InMemory.h"
#include "KOVBasMap.h"
#include "KOVSimContext.h"
#include "KOVSimFTable.h"
#include "KOVSimMap.h"
#include "KOVSimSet.h"
#include "KOVSrvBulkShellLayers.h"
#include "LayupReader.h"
#include "RandomModel.h"

namespace kov::test {
namespace {

Ints MembersOf(KOVSimCSet const& set) {
    Ints members(static_cast<std::size_t>(set.Size()));
    set.OrderedMembers(members.data());
    return members;
}

// A model and a part of it, as ordinals of the model.
class Cut {
  public:
    Cut(RandomModel const& model, Ints const& elements, tool::SubModelOptions const& how = {})
        : m_model(model), m_elements(elements) {
        std::set<int> nodes;
        for (int const element : elements) {
            for (int const node : model.connectivity[static_cast<std::size_t>(element)]) {
                if (node >= 0) nodes.insert(node);
            }
        }
        m_nodes.assign(nodes.begin(), nodes.end());
        KOVSimTransaction transaction(document.ContextID());
        KOVSimCollection const collection = tool::CollectionAt(model.Mesh().GetElementCollection());
        summary =
            tool::WriteSubModel(model.document,
                                collection.CreateVolatileCSet(
                                    elements.data(), static_cast<int>(elements.size()), false),
                                document, how);
        transaction.Commit();
    }

    KOVObjMesh Mesh() const { return {document.GetMesh()}; }
    Ints const& Kept(Over over) const { return over == Over::Nodes ? m_nodes : m_elements; }
    int NewIndex(Over over, int member) const {
        if (over == Over::Columns) return member;
        Ints const& kept = Kept(over);
        auto const at = std::lower_bound(kept.begin(), kept.end(), member);
        return at == kept.end() || *at != member ? -1 : static_cast<int>(at - kept.begin());
    }
    Ints New(Over over, Ints const& members) const {
        Ints mapped;
        for (int const member : members) {
            if (NewIndex(over, member) >= 0) mapped.push_back(NewIndex(over, member));
        }
        return mapped;
    }

    void ExpectMesh() const {
        ASSERT_EQ(tool::SpaceAt(Mesh().GetNodeCollection()), static_cast<int>(m_nodes.size()));
        ASSERT_EQ(tool::SpaceAt(Mesh().GetElementCollection()),
                  static_cast<int>(m_elements.size()));
        KOVSimCollection const nodes = tool::CollectionAt(Mesh().GetNodeCollection());
        KOVSimCollection const symbols = tool::CollectionAt(document.GetComponentCollection());
        int const components[] = {zdm_Component_C_1, zdm_Component_C_2, zdm_Component_C_3};
        std::vector<double> found(3 * m_nodes.size(), -1.0);
        if (!m_nodes.empty()) {
            KOVSrvNodalCoordinates(Mesh().GetCoordinates(), 10)
                .Read(nodes.CreateVolatileCSetStrided(0, nodes.Space(), 1, 1),
                      symbols.CreateVolatileCSet(components, 3, false), found.data());
        }
        std::vector<double> expected;
        for (int const node : m_nodes) {
            auto const at = m_model.coordinates.begin() + 3 * node;
            expected.insert(expected.end(), at, at + 3);
        }
        EXPECT_EQ(found, expected);
        ExpectConnectivity();
    }
    void ExpectConnectivity() const {
        KOVSimCollection const elements = tool::CollectionAt(Mesh().GetElementCollection());
        KOVSimDSet const dset(Mesh().GetConnectivity());
        KOVSimDistribution const relation(dset.GetRelationalDistributionID());
        EXPECT_EQ(relation.Range().Collection(), Mesh().GetNodeCollection().GetCollection());
        KOVSimCollection const places(relation.Grid().Collections().ConstGet(1));
        for (std::size_t e = 0; e < m_elements.size(); ++e) {
            Ints const& of = m_model.connectivity[static_cast<std::size_t>(m_elements[e])];
            Ints expected = of;
            for (int& node : expected) node = node < 0 ? -1 : NewIndex(Over::Nodes, node);
            expected.resize(9, -77);
            Ints found(9, -77);
            KOVSrvElementConnectivity(Mesh().GetConnectivity(), 10)
                .Read(elements.CreateVolatileCSetStrided(static_cast<int>(e), 1, 1, 1),
                      places.CreateVolatileCSetStrided(0, 9, 1, 1), found.data());
            ASSERT_EQ(found, expected) << "element " << m_elements[e];
        }
        EXPECT_EQ(MembersOf(dset.Collect(elements.ID())).size(), m_elements.size());
    }

    void ExpectLabels() const {
        for (auto const type : {KOVObjLabelerNodes, KOVObjLabelerElements}) {
            Over const over = type == KOVObjLabelerNodes ? Over::Nodes : Over::Elements;
            Ints const& labels = over == Over::Nodes ? m_model.nodeLabels : m_model.elementLabels;
            KOVObjLabeler labeler(document, type);
            labeler.Read();
            std::set<std::string> names;
            for (KOVString const& name : labeler.Occurrences()) names.insert(tool::Plain(name));
            std::set<std::string> expected;
            for (auto const& [name, instance] : m_model.instances) {
                Ints const& members = over == Over::Nodes ? instance.nodes : instance.elements;
                for (int const member : members) {
                    int const index = NewIndex(over, member);
                    if (index < 0) continue;
                    expected.insert(name);
                    EXPECT_EQ(labeler.GetInstanceLabel(tool::ToKOVString(name), index),
                              labels[static_cast<std::size_t>(member)]);
                }
            }
            // The nodes that belong to no instance are of no element, and so not there.
            EXPECT_EQ(names, expected);
        }
    }

    void ExpectInstances() const {
        KOVSimMap const map = document.GetModel().GetMap(schema::Model_instances());
        for (auto const& [name, instance] : m_model.instances) {
            KOVSimPosition const record = map.Find(tool::ToKOVString(name));
            Ints const nodes = New(Over::Nodes, instance.nodes);
            Ints const elements = New(Over::Elements, instance.elements);
            ASSERT_EQ(record.IsNull(), nodes.empty() && elements.empty()) << name;
            if (record.IsNull()) continue;
            EXPECT_TRUE(record.IsA(schema::Instance()));
            EXPECT_EQ(tool::Plain(record.Name(-1)), name);
            EXPECT_EQ(tool::Plain(record.GetDataRecord().ReturnString(0)), instance.part);
            std::array<double, 13> placing;
            placing.fill(-1.0);
            record.GetDataRecord().GetDouble(1, placing.data(), 13);
            EXPECT_TRUE(
                std::equal(instance.placing.begin(), instance.placing.end(), placing.begin()));
            EXPECT_EQ(placing[12], -1.0) << "the field has as many numbers as before";
            EXPECT_EQ(MembersOf(record.GetPosition(schema::Instance_nodes()).CSet()), nodes);
            EXPECT_EQ(MembersOf(record.GetPosition(schema::Instance_elements()).CSet()), elements);
        }
    }

    void ExpectSets() const {
        for (auto const& [name, set] : m_model.sets) {
            KOVSimPosition const position =
                document.GetModel().GetMap(set.map).Find(tool::ToKOVString(name));
            Ints const expected = New(set.over, set.members);
            // A set that was empty stays so; one that has lost all its members is gone.
            ASSERT_EQ(position.IsNull(), expected.empty() && !set.members.empty()) << name;
            if (!position.IsNull()) {
                EXPECT_EQ(MembersOf(position.CSet()), expected) << name;
            }
        }
        EXPECT_EQ(MembersOf(KOVObjMesh(document.GetMesh()).GetUserNodes().CSet()).size(),
                  m_nodes.size());
    }

    void ExpectSurfaces() const {
        KOVSimPosition const model = document.GetModel();
        KOVSimCollectionID const faces =
            document.Focus().GetPosition(schema::Focus_faces()).GetCollection();
        KOVSimCollectionID const elements = Mesh().GetElementCollection().GetCollection();
        int surfaces = 0;
        for (auto const& [name, parts] : m_model.surfaces) {
            std::map<int, Ints> expected;
            for (auto const& [face, members] : parts) {
                Ints const mapped = New(Over::Elements, members);
                if (!mapped.empty()) expected[face] = mapped;
            }
            KOVSimPosition const surface =
                model.GetMap(schema::Model_regions()).Find(tool::ToKOVString(name));
            ASSERT_EQ(surface.IsNull(), expected.empty() && !parts.empty()) << name;
            if (surface.IsNull()) continue;
            ++surfaces;
            EXPECT_TRUE(surface.IsA(schema::Surface()));
            EXPECT_EQ(tool::Plain(surface.Name(-1)), name);
            std::map<int, Ints> found;
            KOVSimDSet const dset(surface.GetPosition(schema::Region_elementsFacesCluster()));
            for (KOVSimCompartment const& compartment : dset.GetCtation().Compartments()) {
                KOVSimCSet const face = compartment.CSet(compartment.Position(faces));
                ASSERT_EQ(face.Size(), 1);
                EXPECT_EQ(
                    tool::Plain(KOVSimPosition(document.GetRecord(faces, face[0])).GetSymbolName()),
                    "S" + std::to_string(face[0] + 1));
                found[face[0]] = MembersOf(compartment.CSet(compartment.Position(elements)));
            }
            EXPECT_EQ(found, expected) << name;
        }
        // The places of surfaces that are gone are closed up.
        EXPECT_EQ(tool::SpaceAt(model.GetPosition(schema::Model_regionCollection())), surfaces);
    }

    void ExpectTypes() const {
        std::map<int, Ints> expected;
        for (std::size_t e = 0; e < m_elements.size(); ++e) {
            auto const nodes = m_model.connectivity[static_cast<std::size_t>(m_elements[e])].size();
            expected[static_cast<int>(nodes)].push_back(static_cast<int>(e));
        }
        std::map<int, Ints> found;
        for (tool::ElementGroup const& group : tool::ElementGroups(document)) {
            found[std::stoi(group.name.substr(1))] = MembersOf(group.elements);
        }
        EXPECT_EQ(found, expected);
    }

    // The whole of a distribution by its members; nothing where no drawer holds an entry.
    using Entries = std::map<Ints, double>;
    void ExpectFields() const {
        KOVSimPosition const step =
            document.GetModel().GetMap(schema::Model_steps()).Find("Step-1");
        EXPECT_EQ(document.GetModel().GetVector(schema::Model_stepSequence()).Size(), 1);
        std::map<std::string, KOVSimPosition> records;
        for (auto at = step.GetVector(schema::Task_fieldResults()).Begin(); at.NotDone(); ++at) {
            records[tool::Plain((*at).Name(-1))] = *at;
        }
        for (PlainDistribution const& field : m_model.fields) {
            std::vector<PlainDrawer> expected;
            for (PlainDrawer const& drawer : field.drawers) {
                if (auto const part = PartOf(field, drawer)) expected.push_back(*part);
            }
            ASSERT_EQ(records.contains(field.name), !expected.empty()) << field.name;
            if (expected.empty()) continue;
            KOVSimDistribution const found(
                records[field.name].GetPosition(schema::Field_distribution()).GetDistribution());
            EXPECT_EQ(found.Range().Key(), field.key);
            KOVSimArray<KOVSimPersistentDrawerDesc,
                        KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>
                drawers;
            found.QueryDrawers(drawers);
            ASSERT_EQ(drawers.Size(), static_cast<int>(expected.size())) << field.name;
            for (int d = 0; d < drawers.Size(); ++d) {
                PlainDrawer const& plain = expected[static_cast<std::size_t>(d)];
                ExpectDrawer(field, plain, found, drawers.ConstGet(d));
            }
        }
    }

    KOVObjDocument document = KOVObjDocument::CreateInMemory();
    tool::SubModelSummary summary;

  private:
    std::optional<PlainDrawer> PartOf(PlainDistribution const& field,
                                      PlainDrawer const& drawer) const {
        PlainDrawer part = drawer;
        part.values.clear();
        for (std::size_t i = 0; i < drawer.sets.size(); ++i) {
            part.sets[i] = New(field.grid[i], drawer.sets[i]);
            if (part.sets[i].empty()) return std::nullopt;
        }
        Ints const one = {0};
        Ints const& columns = drawer.sets.size() > 1 ? drawer.sets[1] : one;
        Over const over = field.grid.size() > 1 ? field.grid[1] : Over::Columns;
        std::size_t at = 0;
        for (int const row : drawer.sets[0]) {
            for (int const column : columns) {
                double value = drawer.values[at++];
                if (NewIndex(field.grid[0], row) < 0 || NewIndex(over, column) < 0) continue;
                if (field.key == KOVSimTypeKeyMember && value >= 0) {
                    value = NewIndex(field.names, static_cast<int>(value));
                }
                part.values.push_back(value);
            }
        }
        return part;
    }

    void ExpectDrawer(PlainDistribution const& field, PlainDrawer const& plain,
                      KOVSimDistribution const& distribution,
                      KOVSimPersistentDrawerDesc const& drawer) const {
        EXPECT_EQ(drawer.extendableDim, plain.growing) << field.name;
        EXPECT_EQ(drawer.IsChunked(), plain.chunked) << field.name;
        if (plain.chunked) {
            KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks;
            drawer.ChunkSizes(chunks);
            EXPECT_EQ(chunks.ConstGet(0), 7);
        }
        KOVSimTransfer read(distribution);
        read.SetRead().SetBufferPadding(false).SetDrawer(drawer.drawerID);
        for (std::size_t i = 0; i < plain.sets.size(); ++i) {
            KOVSimCSet const& set = drawer.compartment.CSet(static_cast<int>(i));
            ASSERT_EQ(MembersOf(set), plain.sets[i]) << field.name;
            read.SetDim(static_cast<int>(i), set);
        }
        read.CheckView();
        std::vector<double> found(plain.values.size(), -5.5);
        if (field.key == KOVSimTypeKeyDouble) {
            read.SetBuffer(0, found.data(), 8 * found.size()).ExecRead();
        } else {
            Ints numbers(plain.values.size(), -55);
            read.SetBuffer(0, numbers.data(), 4 * numbers.size()).ExecRead();
            found.assign(numbers.begin(), numbers.end());
        }
        EXPECT_EQ(found, plain.values) << field.name;
    }

    RandomModel const& m_model;
    Ints m_elements;
    Ints m_nodes;
};

void ExpectWhole(Cut const& cut) {
    cut.ExpectMesh();
    cut.ExpectLabels();
    cut.ExpectInstances();
    cut.ExpectSets();
    cut.ExpectSurfaces();
    cut.ExpectTypes();
    cut.ExpectFields();
    KOVString heading;
    cut.document.GetModel().GetDataRecord().GetString(1, heading);
    EXPECT_EQ(tool::Plain(heading), "a heading");
    EXPECT_TRUE(cut.document.Verify([](char const* finding) { ADD_FAILURE() << finding; }));
}

TEST(SubModel, AgreesWithPlainVectorsForRandomParts) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomModel model(seed);
        int const percent = std::array{2, 10, 50, 90, 100}[seed % 5];
        Ints elements = model.Some(model.Elements(), percent);
        if (elements.empty()) elements.push_back(model.Random(model.Elements()));
        // Blocks of a few entries cut rows too.
        tool::SubModelOptions how;
        if (seed % 3 != 0) how.block = 1 + static_cast<int>(seed % 11);
        ExpectWhole(Cut(model, elements, how));
        if (HasFailure()) return;
    }
}

TEST(SubModel, AContiguousPartAgreesToo) {
    RandomModel model(99);
    Ints elements;
    for (int e = model.Elements() / 4; e < model.Elements() / 2; ++e) elements.push_back(e);
    ExpectWhole(Cut(model, elements));
}

TEST(SubModel, AllElementsOfOneInstanceLeaveTheOthersOut) {
    RandomModel model(7);
    Cut const cut(model, model.instances.at("I-2").elements);
    ExpectWhole(cut);
    EXPECT_EQ(cut.summary.instances.before, 3);
    EXPECT_EQ(cut.summary.instances.after, 1);
}

TEST(SubModel, APartOfAPartIsThatPart) {
    RandomModel model(12);
    Ints const elements = model.Some(model.Elements(), 60);
    Cut const first(model, elements);
    KOVObjDocument const document = KOVObjDocument::CreateInMemory();
    KOVSimTransaction transaction(document.ContextID());
    KOVSimCollection const collection = tool::CollectionAt(first.Mesh().GetElementCollection());
    tool::WriteSubModel(first.document,
                        collection.CreateVolatileCSetStrided(0, collection.Space(), 1, 1),
                        document);
    transaction.Commit();
    KOVObjDocumentStatistics const a = first.document.Statistics();
    KOVObjDocumentStatistics const b = document.Statistics();
    EXPECT_EQ(a.records, b.records);
    EXPECT_EQ(a.links, b.links);
    EXPECT_EQ(a.distributions, b.distributions);
    EXPECT_EQ(a.drawers, b.drawers);
    EXPECT_EQ(a.liveBulkBytes, b.liveBulkBytes);
}

// ------------------------------------------------------------------- what lies beside the mesh

class Beside : public ::testing::Test {
  protected:
    KOVObjDocument CutOut() {
        KOVObjDocument const document = KOVObjDocument::CreateInMemory();
        KOVSimTransaction transaction(document.ContextID());
        KOVSimCollection const collection = tool::CollectionAt(model.Mesh().GetElementCollection());
        tool::WriteSubModel(model.document, collection.CreateVolatileCSetStrided(0, 5, 1, 1),
                            document);
        transaction.Commit();
        return document;
    }
    template <class Body>
    void Write(Body body) {
        KOVSimTransaction transaction(model.document.ContextID());
        body();
        transaction.Commit();
    }

    RandomModel model{5};
};

TEST_F(Beside, MaterialsComeWithTheirBehavioursTablesAndFields) {
    Write([&] {
        KOVSimPosition const materials = model.document.GetMaterialCollection();
        KOVSimPosition const steel = materials.AppendMember(schema::Material());
        steel.SetName("Steel");
        steel.GetDataRecord().SetDouble(0, std::nan(""));
        steel.GetDataRecord().SetInt(1, -7);
        steel.GetDataRecord().SetSymb(2, 3);
        std::vector<double> many(1000);
        for (std::size_t i = 0; i < many.size(); ++i) many[i] = static_cast<double>(i % 3);
        steel.GetDataRecord().SetDouble(3, many.data(), 1000);
        materials.GetMap(schema::MaterialLib_materials()).Insert("Steel", steel);
        KOVSimPosition const elastic =
            model.document.CreateDataRecord(schema::MaterialBehavior()).Pos();
        steel.GetMap(schema::Material_behaviors()).Insert("Elastic", elastic);
        KOVBasVector<KOVString> columns;
        columns.PushBack("a");
        columns.PushBack("b");
        double const data[] = {1, 2, 3, 4};
        KOVSimPosition const table =
            model.document.Focus().CreateFTable(schema::FTable(), 2, {}, columns, data, 4);
        elastic.SetPosition(schema::FieldFTable_table(), table);
        elastic.Associate(schema::MaterialTable_dependentData(), 4, table);
    });
    KOVObjDocument const cut = CutOut();
    KOVSimPosition const materials = cut.GetMaterialCollection();
    EXPECT_EQ(tool::SpaceAt(materials), 1);
    KOVSimPosition const steel = materials.GetMap(schema::MaterialLib_materials()).Find("Steel");
    EXPECT_EQ(cut.GetCMemberIndex(steel), 0);
    EXPECT_TRUE(steel.IsA(schema::Material()));
    double number = 0;
    int whole = 0;
    int symbol = 0;
    steel.GetDataRecord().GetDouble(0, number);
    steel.GetDataRecord().GetInt(1, whole);
    steel.GetDataRecord().GetSymb(2, symbol);
    EXPECT_TRUE(std::isnan(number));
    EXPECT_EQ(whole, -7);
    EXPECT_EQ(symbol, 3);
    std::vector<double> many(1001, -9.0);
    steel.GetDataRecord().GetDouble(3, many.data(), 1001);
    EXPECT_EQ(many[998], 2.0);
    EXPECT_EQ(many[999], 0.0);
    EXPECT_EQ(many[1000], -9.0);
    KOVSimPosition const elastic = steel.GetMap(schema::Material_behaviors()).Find("Elastic");
    KOVSimPosition const table = elastic.Follow(schema::MaterialTable_dependentData(), 4);
    EXPECT_EQ(table.ID(), elastic.GetPosition(schema::FieldFTable_table()).ID());
    double data[4] = {};
    KOVSimFTable(table.GetFTable()).GetData(data, 4);
    EXPECT_EQ(data[3], 4.0);
    EXPECT_EQ(tool::Plain(KOVSimFTable(table.GetFTable()).ColumnLabel(1)), "b");
}

TEST_F(Beside, AnAssignmentGoesWithItsSurface) {
    Write([&] {
        KOVSimPosition const source = model.document.GetModel();
        KOVSimPosition const regions = source.GetPosition(schema::Model_regionCollection());
        int const far = model.Elements() - 1;
        for (int const element : {0, far}) {
            KOVSimPosition const region = regions.AppendMember(schema::Region());
            region.SetPosition(schema::Region_elementsCluster(),
                               tool::CollectionAt(model.Mesh().GetElementCollection())
                                   .CreateCSet(&element, 1, false));
            KOVSimPosition const assignment =
                model.document.CreateDataRecord(schema::SectionAssignment()).Pos();
            assignment.SetName(element == 0 ? "near" : "far");
            assignment.SetPosition(schema::SectionAssignment_region(), region);
            source.GetVector(schema::Model_sectionAssignments()).PushBack(assignment);
        }
    });
    KOVObjDocument const cut = CutOut();
    KOVSimVector const all = cut.GetModel().GetVector(schema::Model_sectionAssignments());
    ASSERT_EQ(all.Size(), 1);
    EXPECT_EQ(tool::Plain((*all.Begin()).Name(-1)), "near");
    EXPECT_EQ((*all.Begin())
                  .GetPosition(schema::SectionAssignment_region())
                  .GetPosition(schema::Region_elementsCluster())
                  .CSet()
                  .Size(),
              1);
}

TEST_F(Beside, AnOrientationGoesWithItsInstance) {
    Write([&] {
        KOVSimPosition const source = model.document.GetModel();
        KOVSimPosition const all = source.CreateTypedCollection(0, schema::OrientationCollection());
        source.SetPosition(schema::Model_orientations(), all);
        // I-1 stays, I-3 goes. The instance I-3_x stays, as it has nothing to lose.
        source.GetMap(schema::Model_instances())
            .Insert("I-3_x", model.document.CreateDataRecord(schema::Instance()).Pos());
        for (char const* const name : {"I-1_O", "I-3_O", "I-3_used", "I-3_x_O", "Plain", "I-3"}) {
            KOVSimPosition const orientation = all.AppendMember(schema::Orientation());
            orientation.SetName(name);
            orientation.GetDataRecord().SetInt(0, 1);
            source.GetMap(schema::Model_orientationsByName()).Insert(name, orientation);
        }
        KOVSimPosition const section =
            model.document.CreateDataRecord(schema::Section_Solid()).Pos();
        section.SetPosition(schema::Section_orientation(),
                            source.GetMap(schema::Model_orientationsByName()).Find("I-3_used"));
        source.GetMap(schema::Model_sections()).Insert("S", section);
    });
    KOVObjDocument const cut = CutOut();
    std::string names;
    KOVSimMap const map = cut.GetModel().GetMap(schema::Model_orientationsByName());
    for (KOVSimMapiterator at = map.Begin(); at.NotDone(); ++at) {
        names += tool::Plain(at.Key()) + " ";
        EXPECT_EQ(tool::Plain(at.Value().Name(-1)), tool::Plain(at.Key()));
        EXPECT_TRUE(at.Value().IsA(schema::Orientation()));
    }
    EXPECT_EQ(names, "I-1_O I-3 I-3_used I-3_x_O Plain ");
    EXPECT_EQ(tool::SpaceAt(cut.GetModel().GetPosition(schema::Model_orientations())), 5);
    EXPECT_EQ(cut.GetModel()
                  .GetMap(schema::Model_sections())
                  .Find("S")
                  .GetPosition(schema::Section_orientation())
                  .ID(),
              map.Find("I-3_used").ID());
}

TEST_F(Beside, OneSetUnderTwoNamesStaysOne) {
    Write([&] {
        KOVSimMap const map = model.document.GetModel().GetMap(schema::Model_elementSets());
        map.Insert("A", map.Find("E0").IsNull() ? map.Find("E3") : map.Find("E0"));
        int const first = 0;
        KOVSimPosition const set =
            tool::CollectionAt(model.Mesh().GetElementCollection()).CreateCSet(&first, 1, false);
        map.Insert("X", set);
        map.Insert("Y", set);
    });
    KOVObjDocument const cut = CutOut();
    KOVSimMap const map = cut.GetModel().GetMap(schema::Model_elementSets());
    EXPECT_FALSE(map.Find("X").IsNull());
    EXPECT_EQ(map.Find("X").ID(), map.Find("Y").ID());
}

TEST_F(Beside, MappersAndDegreesOfFreedomAreLeftOut) {
    Write([&] {
        KOVSimPosition const mapper = model.document.CreateDataRecord(schema::Mapper()).Pos();
        model.document.GetModel().SetPosition(schema::Model_nodeMapper(), mapper);
        KOVSimPosition const dofs = model.document.Focus().CreateTypedCollection(
            6 * model.Nodes(), schema::MeshDofCollection());
        KOVSimPosition(model.Mesh()).SetPosition(schema::Mesh_dofs(), dofs);
    });
    KOVObjDocument const cut = CutOut();
    EXPECT_TRUE(cut.GetModel().GetPosition(schema::Model_nodeMapper()).IsNull());
    EXPECT_TRUE(cut.GetMesh().GetPosition(schema::Mesh_dofs()).IsNull());
}

// ------------------------------------------------------------------------ damaged and foreign

TEST_F(Beside, ANodeThatIsNotThereIsRefused) {
    Write([&] {
        KOVSimDSet const dset(model.Mesh().GetConnectivity());
        KOVSimDistribution const relation(dset.GetRelationalDistributionID());
        KOVSimCollection places(relation.Grid().Collections().ConstGet(1));
        int const nodes[] = {0, model.Nodes() + 3};
        KOVSimCollection elements = tool::CollectionAt(model.Mesh().GetElementCollection());
        KOVSimTransfer make(relation);
        make.SetWrite().SetBufferPadding(false).SetMakeNewDrawer();
        make.SetDim(0, elements.CreateVolatileCSetStrided(0, 1, 1, 1));
        make.SetDim(1, places.CreateVolatileCSetStrided(0, 2, 1, 1)).CheckView();
        make.SetBuffer(0, static_cast<void const*>(nodes), sizeof nodes).ExecWrite();
    });
    try {
        CutOut();
        ADD_FAILURE() << "was not refused";
    } catch (tool::Failure const& failure) {
        EXPECT_NE(std::string(failure.what()).find("element 0 of the mesh names node"),
                  std::string::npos)
            << failure.what();
    }
}

TEST_F(Beside, WithoutConnectivityElementsHaveNoNodes) {
    Write([&] { model.Mesh().SetConnectivity(KOVSimPosition()); });
    KOVObjDocument const cut = CutOut();
    EXPECT_EQ(tool::SpaceAt(KOVObjMesh(cut.GetMesh()).GetElementCollection()), 5);
    EXPECT_EQ(tool::SpaceAt(KOVObjMesh(cut.GetMesh()).GetNodeCollection()), 0);
    EXPECT_TRUE(cut.Verify([](char const* finding) { ADD_FAILURE() << finding; }));
}

TEST_F(Beside, ConnectivityOfAnotherKindIsRefused) {
    Write([&] {
        KOVSimGrid::CollectionArray grid(2);
        grid.Get(0) = model.Mesh().GetElementCollection().GetCollection();
        grid.Get(1) = model.Mesh().GetElementCollection().GetCollection();
        KOVSimDistributionID const odd = model.document.Focus().CreateTypedDistribution(
            KOVSimGrid(grid), schema::RelationalDistribution(),
            KOVSimRangeType(KOVSimTypeKeyMember, grid.Get(0)));
        model.Mesh().SetConnectivity(
            KOVSimContext(model.document.ContextID()).CreateDSet(odd, schema::MeshConnectivity()));
    });
    EXPECT_THROW(CutOut(), tool::Failure);
}

TEST_F(Beside, LinksThatLeadInCirclesAreFollowedOnce) {
    Write([&] {
        KOVSimPosition const a = model.document.CreateDataRecord(schema::FieldEntry()).Pos();
        KOVSimPosition const b = model.document.CreateDataRecord(schema::FieldEntry()).Pos();
        a.SetPosition(schema::FieldEntry_owner(), b);
        b.SetPosition(schema::FieldEntry_owner(), a);
        a.SetPosition(schema::FieldEntry_field(), model.document.Focus());
        model.document.GetModel().GetSet(schema::Model_fieldEntries()).Insert(a);
    });
    KOVObjDocument const cut = CutOut();
    KOVSimPosition const a = *cut.GetModel().GetSet(schema::Model_fieldEntries()).Begin();
    KOVSimPosition const b = a.GetPosition(schema::FieldEntry_owner());
    EXPECT_EQ(b.GetPosition(schema::FieldEntry_owner()).ID(), a.ID());
    EXPECT_EQ(a.GetPosition(schema::FieldEntry_field()).ID(), cut.Focus().ID());
}

TEST(SubModelOfABareDocument, HasNoMeshToCut) {
    KOVObjDocument const bare = KOVObjDocument::CreateInMemory(KOVObjDocument::Bare);
    EXPECT_THROW(tool::NodesOfElements(bare, KOVSimCSet()), tool::Failure);
}

// Elements 1 and 2, of sets A and B, with distributions of which element 2 has the defaults alone.
std::string const kDefaults =
    "*NODE\n1, 0\n2, 1\n3, 1, 1\n4, 0, 1\n5, 2\n6, 2, 1\n"
    "*ELEMENT, TYPE=S4R, ELSET=A\n1, 1, 2, 3, 4\n*ELEMENT, TYPE=S4R, ELSET=B\n2, 2, 5, 6, 3\n"
    "*MATERIAL, NAME=M\n*DISTRIBUTION TABLE, NAME=T\nLENGTH\n"
    "*DISTRIBUTION, NAME=D, LOCATION=ELEMENT, TABLE=T\n, 0.25\n1, 0.5\n"
    "*DISTRIBUTION, NAME=All, LOCATION=ELEMENT, TABLE=T\n, 0.75\n"
    "*DISTRIBUTION, NAME=First, LOCATION=ELEMENT, TABLE=T\n1, 2.5\n";

KOVObjDocument ElementTwoOf(KOVObjDocument const& source) {
    KOVObjDocument const target = KOVObjDocument::CreateInMemory();
    KOVSimTransaction transaction(target.ContextID());
    KOVSimCollection const elements =
        tool::CollectionAt(KOVObjMesh(source.GetMesh()).GetElementCollection());
    tool::WriteSubModel(source, elements.CreateVolatileCSetStrided(1, 1, 1, 1), target, {});
    transaction.Commit();
    return target;
}

TEST(SubModel, ATableFieldKeepsItsDefaultsWhereNoElementHasAValue) {
    InMemory source(kDefaults);
    source.Translate();
    KOVObjDocument const cut = ElementTwoOf(source.document);
    KOVSimMap const fields = cut.GetModel().GetMap(schema::Model_distributions());
    for (auto const& [name, value] : {std::pair{"D", 0.25}, {"All", 0.75}}) {
        KOVSimPosition const field = fields.Find(name);
        ASSERT_FALSE(field.IsNull()) << name;
        KOVSimDistribution const values(
            field.GetPosition(schema::FieldFTable_distribution()).GetDistribution());
        tool::DrawerDescriptions drawers;
        values.QueryDrawers(drawers);
        ASSERT_EQ(drawers.Size(), 1) << name;
        EXPECT_TRUE(drawers.ConstGet(0).compartment.CSet(0).IsEmpty()) << name;
        EXPECT_EQ(drawers.ConstGet(0).compartment.CSet(1).Size(), 1) << name;
        EXPECT_EQ(drawers.ConstGet(0).extendableDim, 0) << name;

        KOVSimCollection elements =
            tool::CollectionAt(KOVObjMesh(cut.GetMesh()).GetElementCollection());
        KOVSimCSetID const all = elements.CreateTempCSetStrided(0, 1, 1, 1);
        KOVBasMap<int, double> read;
        omi_Singleton<KOVSrvBulkShellLayers>::Instance()->ReadFieldData(KOVSimPosition(all), field,
                                                                        read);
        ASSERT_EQ(read.Size(), 1) << name;
        EXPECT_EQ(*read.Find(0), value) << name;
    }
    // Without a default it has nothing for what remains.
    EXPECT_TRUE(fields.Find("First").IsNull());
}

TEST(SubModel, LayersOfSolidsKeepNumbersThatAreDefaults) {
    std::string const links = "*SOLID SECTION, ELSET=B, COMPOSITE\nD, 1, M, All\n2, 1, M, D\n";
    InMemory source(kDefaults + links);
    source.Translate();
    KOVObjDocument const cut = ElementTwoOf(source.document);
    tool::Layup const layup = tool::LayupReader(cut, false).OfElement("", 2);
    ASSERT_EQ(layup.layers.size(), 2U);
    EXPECT_EQ(layup.layers[0].thickness.value, 0.25);
    EXPECT_EQ(layup.layers[0].angle.value, 0.75);
    EXPECT_EQ(layup.layers[1].thickness.value, 2);
    EXPECT_EQ(layup.layers[1].angle.value, 0.25);
}

TEST(SubModel, SectionsKeepThicknessesThatAreDefaults) {
    InMemory source(kDefaults +
                    "*MEMBRANE SECTION, ELSET=A, MATERIAL=M\n1\n"
                    "*SHELL SECTION, ELSET=B, MATERIAL=M, SHELL THICKNESS=D\n");
    source.Translate();
    KOVObjDocument const cut = ElementTwoOf(source.document);
    KOVSimPosition const model = cut.GetModel();
    KOVSimPosition const section = model.GetMap(schema::Model_sections()).Find("B");
    EXPECT_FALSE(section.IsNull());
    EXPECT_EQ(section.GetPosition(schema::Section_thicknessField()).ID(),
              model.GetMap(schema::Model_distributions()).Find("D").ID());
    tool::Layup const layup = tool::LayupReader(cut, false).OfSection("B");
    ASSERT_EQ(layup.layers.size(), 1U);
    EXPECT_EQ(layup.layers[0].thickness.range, std::pair(0.25, 0.25));
}

}  // namespace
}  // namespace kov::test
