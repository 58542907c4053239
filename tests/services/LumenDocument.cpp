#include "services/LumenDocument.h"

#include <stdlib.h>

#include "KOVSrvElementConnectivity.h"
#include "KOVSrvLumenChecker.h"
#include "KOVSrvNodalCoordinates.h"
#include "support/FastFolder.h"
#include "zdm_AlgebraicTypes.h"

namespace kov::test {

namespace {

// A document is made for each test, and it does not matter on which disk.
class FastDisk : public testing::Environment {
  public:
    void SetUp() override { ::setenv("KOV_TEST_TMP", m_folder.Path().c_str(), 1); }

  private:
    FastFolder m_folder;
};
[[maybe_unused]] testing::Environment* const kFastDisk =
    testing::AddGlobalTestEnvironment(new FastDisk);

KOVSimCollection CollectionOf(KOVSimPosition const& position) {
    return KOVSimCollection(position.GetCollection());
}

constexpr int kNodes = 20;
constexpr int kElements = 40;
constexpr int kSymmetric[] = {1, 9, 11, 14, 19, 23};

}  // namespace

LumenDocument::LumenDocument(Medium medium) : ShellDocument(medium, kNodes, kElements) {
    auto const transaction = Write();
    MakeMesh(*transaction);
    MakeSections();
    MakeRegions();
    MakeSteps();
    MakeHistory();
    MakeOutput();
    MakeSurfaceOutput();
    transaction->Commit();
    MakeLayers();
}

void LumenDocument::ReopenForReading() {
    KOVString const path = document.Path();
    if (path.IsEmpty()) return;
    document.Close();
    document = KOVObjDocument::Open(path, KOVObjDocument::ReadOnly);
}

KOVSimPosition LumenDocument::At(std::string const& name) const {
    auto const found = m_objects.find(name);
    if (found == m_objects.end()) {
        ADD_FAILURE() << "no object is called " << name;
        return KOVSimPosition();
    }
    KOVSimDynamicID id = found->second;
    id.context = document.ContextID();
    return KOVSimPosition(id);
}

KOVSimPosition LumenDocument::Know(std::string const& name, KOVSimPosition const& object) {
    m_objects[name] = object.ID();
    return object;
}

KOVSimPosition LumenDocument::Record(int type, char const* name) const {
    KOVSimPosition const made = document.CreateDataRecord(type).Pos();
    if (*name) made.SetName(name);
    return made;
}

KOVSimPosition LumenDocument::PersistentSet(KOVSimCollection collection,
                                            std::vector<int> const& members) const {
    return collection.CreateCSet(members.data(), static_cast<int>(members.size()), false);
}

KOVSimPosition LumenDocument::Relation(KOVSimCollection const& rows,
                                       KOVSimCollection const& columns,
                                       std::vector<std::pair<int, std::vector<int>>> const& pairs,
                                       int type) const {
    KOVSimCtation::Array compartments(static_cast<int>(pairs.size()));
    int at = 0;
    for (auto const& [row, members] : pairs) {
        KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> sets(2);
        sets.Get(0) = Set(rows, {row});
        sets.Get(1) = Set(columns, members);
        compartments.Get(at++) = KOVSimCompartment(sets);
    }
    return document.Focus().CreateTypedDSet(KOVSimCtation(compartments), type);
}

void LumenDocument::AssignSpecs(std::vector<std::pair<int, std::vector<int>>> const& pairs) const {
    Mesh().SetElementSpecAssignment(Relation(CollectionOf(document.GetElementSpecCollection()),
                                             elements, pairs, schema::ElementSpecAssignment()));
}

KOVSimPosition LumenDocument::Distribution(std::vector<KOVSimCollectionID> const& grid) const {
    KOVSimGrid::CollectionArray collections(static_cast<int>(grid.size()), 0);
    for (std::size_t i = 0; i < grid.size(); ++i) collections.Get(static_cast<int>(i)) = grid[i];
    return document.CreateDistribution(KOVSimGrid(collections),
                                       KOVSimRangeType(KOVSimTypeKeyDouble), -1);
}

KOVSimPosition LumenDocument::AddDrawer(KOVSimPosition const& distribution,
                                        std::vector<KOVSimPosition> const& sets) const {
    KOVSimTransfer make{KOVSimDistribution(distribution.GetDistribution())};
    make.SetMakeNewDrawer().SetBufferPadding(false);
    int dimension = 0;
    for (KOVSimPosition const& set : sets) make.SetDim(dimension++, set.GetCSet());
    make.CheckView().ExecMake();
    return make.DrawerID();
}

KOVSimPosition LumenDocument::NewMeshedField(std::string const& name, int algebraicType,
                                             int gridType) {
    KOVSimPosition const fieldType = Know("type." + name, Record(schema::FieldTypePrimary()));
    fieldType.DataRecord().SetSymb(0, algebraicType);
    document.Focus()
        .GetPosition(schema::Focus_fieldTypes())
        .GetMap(schema::zdm_FieldTypeLib_fieldTypes())
        .Insert(name.c_str(), fieldType);
    KOVSimPosition const field = Know(name, Record(schema::Field_Meshed(), name.c_str()));
    field.DataRecord().SetTypeID(0, gridType);
    field.SetPosition(schema::Field_fieldType(), fieldType);
    return field;
}

KOVSimPosition LumenDocument::AddSerialField(KOVSimPosition const& field,
                                             KOVSimCollection const& rows,
                                             std::vector<int> const& members,
                                             std::vector<int> const& symbols) const {
    std::vector<KOVSimCollectionID> grid{rows.ID()};
    std::vector<KOVSimPosition> sets{PersistentSet(rows, members)};
    if (!symbols.empty()) {
        grid.push_back(components.ID());
        sets.push_back(PersistentSet(components, symbols));
    }
    KOVSimPosition const serial = Record(schema::SerialField());
    serial.GetSet(schema::SerialField_drawers()).Insert(AddDrawer(Distribution(grid), sets));
    field.GetSet(schema::Field_serialFields()).Insert(serial);
    return serial;
}

void LumenDocument::SetComponents(std::string const& name, std::vector<int> const& symbols) const {
    KOVSimSet const serialFields = At(name).GetSet(schema::Field_serialFields());
    for (KOVSimSetiterator at = serialFields.Begin(); at.NotDone(); ++at) serialFields.Remove(*at);
    AddSerialField(At(name), nodes, Range(0, kNodes), symbols);
}

std::vector<std::string> LumenDocument::Findings() const {
    KOVSrvLumenChecker checker(document);
    checker.Check_Lumen();
    std::vector<std::string> findings;
    for (KOVString const& finding : checker.GetFindings()) {
        findings.emplace_back(finding.TextOrEmpty());
    }
    return findings;
}

std::string LumenDocument::IDOf(std::string const& name) const {
    KOVSimDynamicDataID const data = At("type." + name).ID().data;
    return std::to_string(data.parent) + "/" + std::to_string(data.minor);
}

// ---- mesh ----

void LumenDocument::MakeMesh(KOVSimTransaction& transaction) {
    Know("model", Model());
    Know("mesh", document.GetMesh());
    Know("focus", document.Focus());
    Mesh().SetUserNodes(Know("user nodes", PersistentSet(nodes, Range(0, kNodes))));
    std::vector<double> const coordinates(kNodes * 3, 1.0);
    KOVSrvNodalCoordinates(Coordinates(), 100)
        .Append(transaction, Nodes(Range(0, kNodes)), Components({0, 12, 20}), coordinates.data());
    std::vector<int> const corners(kElements * 4, 0);
    KOVSrvElementConnectivity(Connectivity(), 100)
        .Append(transaction, document.GetMesh().ID(), Elements(Range(0, kElements)), Positions(4),
                corners.data());

    KOVSimPosition const specs = document.GetElementSpecCollection();
    for (char const* name : {"S4R", "C3D8", "MASS", "S4"}) {
        specs.GetMap(schema::ElementSpecLib_elementSpecs())
            .Insert(name,
                    Know(std::string("spec.") + name, specs.AppendMember(schema::ElementSpec())));
    }
    AssignSpecs({{0, Range(0, 10)}, {1, Range(10, 10)}, {2, Range(20, 5)}});

    KOVSimPosition const classification =
        Know("classification", Record(schema::ElementClassification()));
    Mesh().SetElementClassification(classification);
    Mesh().SetShapeFormulationLogicalSectionClassification(classification);
    KOVSimPosition const collection =
        Model().CreateTypedCollection(4, schema::ElementClassCollection());
    Mesh().SetElementClassCollection(collection);
    struct Class {
        char const* name;
        char const* spec;
        std::vector<int> members;
    };
    Class const classes[] = {{"class.shell", "spec.S4R", Range(0, 10)},
                             {"class.solid", "spec.C3D8", Range(10, 10)},
                             {"class.mass", "spec.MASS", Range(20, 5)},
                             {"class.bare", "spec.S4", Range(25, 5)}};
    int member = 0;
    for (Class const& one : classes) {
        KOVSimPosition const made =
            Know(one.name, collection.CreateMember(member++, schema::ElementClass()));
        made.SetPosition(schema::ElementClass_elementSpec(), At(one.spec));
        KOVObjElementClass(made).SetElementCSet(PersistentSet(elements, one.members));
        classification.GetSet(schema::ElementClassification_elementClasses()).Insert(made);
    }
}

// ---- sections, plies ----

void LumenDocument::MakeSections() {
    AddCollections();
    Assign(0, 2, Range(0, 10));
    KOVSimPosition const skin =
        Know("SKIN", Assignment(0).GetPosition(schema::SectionAssignment_section()));
    skin.SetName("SKIN");
    skin.DataRecord().SetSymb(9, 1);
    KOVSimPosition const bulk = Know("BULK", Record(schema::Section_Solid(), "BULK"));
    Assign(bulk, Range(10, 10));
    for (int i = 0; i < 2; ++i) {
        std::string const name = "assignment." + std::to_string(i);
        Know(name, Assignment(i));
        Know(name + ".region", Assignment(i).GetPosition(schema::SectionAssignment_region()));
    }
    KOVSimSet const known = document.Focus().GetSet(schema::Focus_externalSectionIds());
    known.Insert(skin);
    known.Insert(bulk);
    At("class.shell").GetSet(schema::ElementClass_sections()).Insert(skin);
    At("class.solid").GetSet(schema::ElementClass_sections()).Insert(bulk);

    KOVSimPosition const ply = Know("PLY-1", Plies().CreateMember(0, schema::Ply()));
    ply.SetName("PLY-1");
    Model().GetMap(schema::Model_plies()).Insert("PLY-1", ply);
    document.Focus().GetSet(schema::Focus_externalPlyIds()).Insert(ply);

    KOVSimPosition const layer = Know("layer.0", Record(schema::Layer_Shell()));
    layer.SetPosition(schema::Layer_ply(), ply);
    KOVSimPosition const beam = Know("layer.1", Record(schema::Layer_Beam_Arbitrary()));
    beam.SetPosition(schema::Layer_Beam_Arbitrary_segments(), Know("segments", NewTableField(1)));
    skin.GetVector(schema::Section_layers()).PushBack(layer);
    skin.GetVector(schema::Section_layers()).PushBack(beam);
}

void LumenDocument::MakeLayers() {
    for (int layer = 0; layer < 2; ++layer) {
        Bulk().AppendMaterial(layer, 0, layer);
        Bulk().AppendPly(layer, 0, 0);
        Bulk().AppendConstThickness(layer, 0, 0.25);
    }
    WriteBulk();
}

// ---- regions, rigid bodies ----

void LumenDocument::MakeRegions() {
    KOVSimPosition const regions =
        Know("regions", Model().CreateTypedCollection(10, schema::RegionCollection()));
    Model().SetPosition(schema::Model_regionCollection(), regions);
    KOVSimPosition const bodies =
        Know("bodies", Model().CreateTypedCollection(4, schema::RigidBodyCollection()));
    document.GetMesh().SetPosition(schema::Mesh_rigidBodies(), bodies);
    document.GetMesh().SetPosition(
        schema::Mesh_rigidBodyReferenceNode(),
        Relation(CollectionOf(bodies), nodes, {{0, {0}}, {1, {1}}, {2, {2}}, {3, {3}}},
                 schema::RigidBodyReferenceNodes()));

    auto const add = [&](char const* name, int member, int type) {
        KOVSimPosition const made = Know(name, regions.CreateMember(member, type));
        made.SetName(name);
        Model().GetMap(schema::Model_regions()).Insert(name, made);
        return made;
    };
    KOVSimPosition const faces =
        Relation(elements, nodes, {{0, {0}}, {1, {1}}}, schema::ElementFaces());
    add("SURF", 0, schema::Surface()).SetPosition(schema::Region_elementsFacesCluster(), faces);
    add("EDGES", 1, schema::Surface()).SetPosition(schema::Region_elementsEdgesCluster(), faces);
    add("NODES", 2, schema::Surface())
        .SetPosition(schema::Region_nodesCluster(), PersistentSet(nodes, {1, 2}));
    add("ELSET", 3, schema::Region())
        .SetPosition(schema::Region_elementsCluster(), PersistentSet(elements, {1, 2}));
    add("FREE", 4, schema::Surface_ClusterFree());
    add("FREE-REGION", 5, schema::Region_ClusterFree());
    MakeSurface("A", 6, schema::AnalyticSurface_TypeA(), 0);
    MakeSurface("B", 7, schema::AnalyticSurface_TypeB(), 1);
    MakeSurface("C", 8, schema::AnalyticSurface_TypeC(), 2);
    MakeSurface("R", 9, schema::AnalyticSurface_Revolution(), 3);
    KOVSimPosition const orientation = Know("orientation", Record(schema::Orientation()));
    orientation.SetPosition(schema::Orientation_axisPointA(), Record(schema::AxisPoint()));
    orientation.SetPosition(schema::Orientation_axisPointB(), Record(schema::AxisPoint()));
    At("ANA-R").SetPosition(schema::AnalyticSurface_Revolution_orientation(), orientation);
}

void LumenDocument::MakeSurface(char const* letter, int member, int type, int body) {
    std::string const name = std::string("ANA-") + letter;
    KOVSimPosition const surface = Know(name, At("regions").CreateMember(member, type));
    surface.SetName(name.c_str());
    Model().GetMap(schema::Model_regions()).Insert(name.c_str(), surface);
    std::string const bodyName = std::string("RB-") + letter;
    KOVSimPosition const constraint =
        Know(bodyName, At("bodies").CreateMember(body, schema::Constraint_RigidBody()));
    constraint.SetName(bodyName.c_str());
    constraint.SetPosition(schema::Constraint_RigidBody_analyticSurface(), surface);
    KOVSimPosition const position = Know(name + ".mesh", Record(schema::Mesh()));
    KOVObjMesh const mesh(position);
    mesh.SetNodeCollection(Model().CreateTypedCollection(2, schema::MeshNodeCollection()));
    mesh.SetElementCollection(Model().CreateTypedCollection(1, schema::MeshElementCollection()));
    mesh.SetConnectivity(Relation(CollectionOf(mesh.GetElementCollection()),
                                  CollectionOf(mesh.GetNodeCollection()), {{0, {0, 1}}},
                                  schema::MeshConnectivity()));
    surface.SetPosition(schema::AnalyticSurface_mesh(), position);
}

void LumenDocument::MakeSurfaceOutput() {
    KOVSimPosition const record = Know("surface output", Record(schema::SurfaceOutputRecord()));
    document.Focus().Associate(schema::FocusRecord(), schema::FocusRecord_surfaceOutput, record);
    // SURF, EDGES, NODES and the two that need no cluster.
    record.Associate(schema::SurfaceOutputRecord(), schema::SurfaceOutputRecord_regions,
                     Relation(CollectionOf(At("regions")), nodes,
                              {{0, {0}}, {1, {0}}, {2, {0}}, {4, {0}}, {5, {0}}},
                              schema::SurfaceOutputRegions()));
}

// ---- steps ----

KOVSimPosition LumenDocument::MakeStep(char const* name, int type) {
    KOVSimPosition const step = Know(name, Record(type, name));
    Model().GetMap(schema::Model_steps()).Insert(name, step);
    Model().GetVector(schema::Model_stepSequence()).PushBack(step);
    document.Focus().GetSet(schema::Focus_externalTaskIds()).Insert(step);
    return step;
}

void LumenDocument::Describe(KOVSimPosition const& step, int link, int description,
                             int collectionLink, int dataLink, int size,
                             std::vector<std::vector<int>> const& drawers,
                             std::vector<int> const& named) {
    KOVSimPosition const position = Model().CreateTypedCollection(size, schema::TimeCollection());
    KOVSimCollection const collection = CollectionOf(position);
    KOVSimPosition const record = Record(description);
    KOVSimPosition const data = Distribution({collection.ID()});
    for (std::vector<int> const& members : drawers) {
        AddDrawer(data, {PersistentSet(collection, members)});
    }
    record.SetPosition(collectionLink, position);
    record.SetPosition(dataLink, data);
    step.SetPosition(link, PersistentSet(collection, named));
    KOVSimTypeSchemaSnapshot const schema;
    std::string const kind = schema.TypeName(description).TextOrEmpty();
    std::string const stepName = step.Name(-1).TextOrEmpty();
    Know(stepName + "." + kind, record);
    Know(stepName + "." + kind + ".collection", position);
}

void LumenDocument::MakeSteps() {
    auto const describeTimes = [&](KOVSimPosition const& step,
                                   std::vector<std::vector<int>> const& drawers,
                                   std::vector<int> const& named) {
        Describe(step, schema::Task_times(), schema::TimeDescription(),
                 schema::TimeDescription_timeCollection(), schema::TimeDescription_data(), 12,
                 drawers, named);
    };
    auto const describeFrequencies = [&](KOVSimPosition const& step) {
        Describe(step, schema::Task_frequencies(), schema::FrequencyDescription(),
                 schema::FrequencyDescription_frequencyCollection(),
                 schema::FrequencyDescription_data(), 4, {{0, 1, 2}}, {0, 1});
    };
    describeTimes(MakeStep("Static", schema::Step_Gen_Static()), {Range(0, 10)}, {2, 3});

    KOVSimPosition const riks = MakeStep("Riks", schema::Step_Gen_StaticRiks());
    riks.SetPosition(schema::Step_Gen_timeIncrementation(), Record(schema::TimeIncrementation()));
    describeTimes(riks, {{0}, {1}}, {0, 1});
    Describe(riks, schema::Step_Gen_StaticRiks_arcLengths(), schema::ArcLengthDescription(),
             schema::ArcLengthDescription_arcLengthCollection(),
             schema::ArcLengthDescription_data(), 4, {{0, 1, 2}}, {0, 1});

    KOVSimPosition const buckle = MakeStep("Buckle", schema::Step_Lin_Buckle());
    KOVSimPosition const frequency = MakeStep("Freq", schema::Step_Lin_Frequency());
    describeFrequencies(frequency);
    for (KOVSimPosition const& step : {buckle, frequency}) {
        KOVSimPosition const modes = Model().CreateTypedCollection(3, schema::ModeCollection());
        step.SetPosition(schema::Task_modes(), PersistentSet(CollectionOf(modes), {0, 1}));
        KOVSimPosition const system = Record(schema::ModalSystem());
        system.SetPosition(schema::ModalSystem_eigenvalues(),
                           Distribution({modes.GetCollection()}));
        step.SetPosition(schema::Task_feSystem(), system);
        Know(std::string(step.Name(-1).TextOrEmpty()) + ".system", system);
    }

    // Frequencies without a description are no fault.
    KOVSimPosition const steady = MakeStep("Steady", schema::Step_Lin_SteadyState());
    KOVSimPosition const bare = Model().CreateTypedCollection(3, schema::FrequencyCollection());
    steady.SetPosition(schema::Task_frequencies(), PersistentSet(CollectionOf(bare), {0, 1}));
}

// ---- output ----

void LumenDocument::MakeHistory() {
    auto const request = [&](char const* name, int kind) {
        KOVSimPosition const made = Know(name, Record(schema::ElaboratedOutputRequest(), name));
        made.DataRecord().SetSymb(3, kind);
        Model().GetSet(schema::Model_outputRequests()).Insert(made);
        return made;
    };
    request("request.none", 0);
    request("request.field", 1);
    KOVSimPosition const history = request("request.history", 2);
    request("request.empty", 1);
    KOVSimPosition const inner = request("request.inner", 2);
    KOVSimPosition const user = Know("user", Record(schema::UserOutputRequest(), "USER-1"));
    user.SetPosition(schema::OutputRequest_elaboratedRequest(), history);
    for (char const* region : {"SURF", "EDGES", "NODES", "ELSET"}) {
        user.GetSet(schema::UserOutputRequest_outputRegions()).Insert(At(region));
    }

    KOVSimCollection const times = CollectionOf(At("Static.TimeDescription.collection"));
    auto const add = [&](char const* step, char const* name, int algebraicType, int grid,
                         KOVSimCollection const& rows, std::vector<int> const& symbols) {
        KOVSimPosition const field = NewMeshedField(name, algebraicType, grid);
        AddSerialField(field, rows, {0, 1}, symbols);
        At(step).GetSet(schema::Task_historyResults()).Insert(field);
        return field;
    };
    KOVSimSet const ofHistory = history.GetSet(schema::OutputRequest_field());
    ofHistory.Insert(
        add("Static", "U", zdm_Algebraic_VECTOR, schema::Grid_Node(), nodes, {0, 12, 20}));
    add("Static", "ENERGY", zdm_Algebraic_SCALAR, schema::Grid_WholeModel(), times, {});
    KOVSimPosition const stress =
        add("Static", "S", zdm_Algebraic_TENSOR2_SYMMETRIC, schema::Grid_Element(), elements,
            {std::begin(kSymmetric), std::end(kSymmetric)});
    ofHistory.Insert(stress);
    inner.GetSet(schema::OutputRequest_field()).Insert(stress);
    add("Riks", "CF", zdm_Algebraic_VECTOR, schema::Grid_SurfaceVector(), times, {0, 12, 20});
    ofHistory.Insert(add("Riks", "WORK", zdm_Algebraic_SCALAR, schema::Grid_Mode(), times, {34}));
}

void LumenDocument::MakeOutput() {
    struct Field {
        char const* name;
        int type;
        std::vector<int> symbols;
    };
    Field const fields[] = {
        {"COORD", zdm_Algebraic_POSITION, {0, 12, 20}},
        {"T", zdm_Algebraic_SCALAR, {34}},
        {"GEN", zdm_Algebraic_TENSOR2_GENERAL, {1, 14, 23, 5, 10, 18}},
        {"ORTH", zdm_Algebraic_TENSOR2_ORTHOGONAL, {27, 28, 29, 30}},
        {"SYM", zdm_Algebraic_TENSOR2_SYMMETRIC, {1, 14, 23, 5, 10, 18, 13, 21, 22}},
        {"T4", zdm_Algebraic_TENSOR4, {2, 4, 3}},
        {"ROT", zdm_Algebraic_VECTOR, {31, 32, 33}},
        {"ODD", 5, {34}},
    };
    for (Field const& one : fields) {
        KOVSimPosition const field = NewMeshedField(one.name, one.type, schema::Grid_Node());
        AddSerialField(field, nodes, Range(0, kNodes), one.symbols);
        At("request.field").GetSet(schema::OutputRequest_field()).Insert(field);
        At("Static").GetSet(schema::Task_fieldResults()).Insert(field);
    }
    AddSerialField(At("SYM"), nodes, Range(0, 5), {1, 14, 23});
    KOVSimPosition const unchecked = Know("type.ODD", Record(schema::FieldType_unchecked()));
    unchecked.DataRecord().SetSymb(0, 5);
    At("ODD").SetPosition(schema::Field_fieldType(), unchecked);

    KOVSimPosition const empty = NewMeshedField("EMPTY", zdm_Algebraic_SCALAR, schema::Grid_Node());
    AddSerialField(empty, nodes, {}, {34});
    At("request.empty").GetSet(schema::OutputRequest_field()).Insert(empty);
}

}  // namespace kov::test
