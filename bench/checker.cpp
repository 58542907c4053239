// The check of a whole document: `--elements` elements in `--classes` classes, each in runs of
// `--run` elements that lie among those of the others, `--assignments` shells of 4 layers, and
// `--fields` fields of a request, each with one drawer over all nodes. Opened anew for each
// measure, and checked twice: the second time all that the document layer keeps is at hand. Beside
// it the same objects in as many runs, each of one element. In the sound document every class has a
// section; in the other none has, so that every class is compared with the assignment and the
// connectivity, and reported.
//
//   --elements 5000000 --classes 1000 --run 100 --assignments 10000 --fields 1000 --runs 5
#include <algorithm>
#include <functional>
#include <map>
#include <vector>

#include "KOVObjElementClass.h"
#include "KOVSimCtation.h"
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransfer.h"
#include "KOVSimVector.h"
#include "KOVSrvBulkShellLayers.h"
#include "KOVSrvLumenChecker.h"
#include "bench/support/Measure.h"
#include "bench/support/Mesh.h"
#include "zdm_AlgebraicTypes.h"

namespace {

constexpr int kLayers = 4;
constexpr int kFieldTypes = 50;

struct Sizes {
    int elements, classes, run, assignments, fields;
};

KOVSimPosition NewRecord(KOVObjDocument const& document, int type) {
    return document.CreateDataRecord(type).Pos();
}

// Writes the document whose parts the checker walks.
class Maker {
  public:
    Maker(std::string const& path, Sizes const& sizes, bool sound)
        : m_document(KOVObjDocument::Create(path.c_str())),
          m_mesh(m_document),
          m_sizes(sizes),
          m_sound(sound) {
        KOVSimTransaction transaction(m_document.ContextID());
        m_mesh.Extend(sizes.elements, sizes.elements);
        MakeMesh();
        MakeSections();
        MakeClasses();
        MakeFields();
        transaction.Commit();
        WriteLayers();
        m_document.Close();
    }

  private:
    // A drawer that no number was written to.
    static KOVSimDrawerID MakeDrawer(KOVSimDistributionID const& distribution,
                                     std::vector<KOVSimCSetID> const& sets) {
        KOVSimTransfer make{KOVSimDistribution(distribution)};
        make.SetMakeNewDrawer().SetBufferPadding(false);
        for (std::size_t i = 0; i < sets.size(); ++i) make.SetDim(static_cast<int>(i), sets[i]);
        make.CheckView().ExecMake();
        return make.DrawerID();
    }

    void MakeMesh() {
        m_nodes = m_mesh.nodes.CreateCSetStrided(0, m_sizes.elements, 1, 1);
        m_elements = m_mesh.elements.CreateCSetStrided(0, m_sizes.elements, 1, 1);
        KOVObjMesh(m_mesh.position).SetUserNodes(KOVSimPosition(m_nodes));
        m_axes = m_mesh.Axes();
        MakeDrawer(m_mesh.coordinates.GetDistribution(), {m_nodes, m_axes});
        MakeDrawer(m_mesh.Relation().ID(),
                   {m_elements, m_mesh.slots.CreateTempCSetStrided(0, 8, 1, 1)});
    }

    // The elements of a class: runs, one class after the other and over again.
    KOVSimCSetID MembersOf(int one) {
        std::vector<int> members;
        for (int first = one * m_sizes.run; first < m_sizes.elements;
             first += m_sizes.classes * m_sizes.run) {
            for (int i = 0; i < m_sizes.run && first + i < m_sizes.elements; ++i) {
                members.push_back(first + i);
            }
        }
        return m_mesh.elements.CreateCSet(members.data(), static_cast<int>(members.size()), false);
    }

    void MakeClasses() {
        KOVSimPosition const specs = m_document.GetElementSpecCollection();
        KOVSimPosition const classes = m_document.GetModel().CreateTypedCollection(
            m_sizes.classes, schema::ElementClassCollection());
        KOVSimPosition const classification =
            NewRecord(m_document, schema::ElementClassification());
        KOVSimCtation::Array compartments(m_sizes.classes);
        for (int one = 0; one < m_sizes.classes; ++one) {
            std::string const name = "T" + std::to_string(one);
            KOVSimPosition const spec = specs.AppendMember(schema::ElementSpec());
            specs.GetMap(schema::ElementSpecLib_elementSpecs()).Insert(name.c_str(), spec);
            KOVSimPosition const made = classes.CreateMember(one, schema::ElementClass());
            KOVSimCSetID const members = MembersOf(one);
            made.SetPosition(schema::ElementClass_elementSpec(), spec);
            KOVObjElementClass(made).SetElementCSet(KOVSimPosition(members));
            if (m_sound) made.GetSet(schema::ElementClass_sections()).Insert(m_section);
            classification.GetSet(schema::ElementClassification_elementClasses()).Insert(made);
            KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> sets(2);
            sets.Get(0) = KOVSimCollection(specs.GetCollection()).CreateTempCSet(&one, 1, false);
            sets.Get(1) = members;
            compartments.Get(one) = KOVSimCompartment(sets);
        }
        KOVObjMesh mesh(m_mesh.position);
        mesh.SetElementSpecAssignment(m_mesh.position.CreateTypedDSet(
            KOVSimCtation(compartments), schema::ElementSpecAssignment()));
        mesh.SetElementClassification(classification);
        mesh.SetShapeFormulationLogicalSectionClassification(classification);
    }

    void MakeSections() {
        KOVSimPosition const model = m_document.GetModel();
        int const count = m_sizes.assignments;
        KOVSimPosition const sections = model.CreateTypedCollection(count, schema::BulkSection());
        model.SetPosition(schema::Model_bulkSections(), sections);
        model.SetPosition(schema::Model_bulkLayerSlots(),
                          model.CreateTypedCollection(kLayers, schema::BulkLayerSlot()));
        model.SetPosition(schema::Model_bulkPlies(),
                          model.CreateTypedCollection(1, schema::BulkPly()));
        KOVSimSet const known = m_document.Focus().GetSet(schema::Focus_externalSectionIds());
        int const each = std::max(m_sizes.elements / count, 1);
        for (int i = 0; i < count; ++i) {
            m_section = sections.CreateMember(i, schema::Section_Shell());
            m_section.SetName(("SECTION-" + std::to_string(i)).c_str());
            m_section.DataRecord().SetInt(0, kLayers);
            m_section.DataRecord().SetSymb(9, 1);
            known.Insert(m_section);
            KOVSimPosition const region = NewRecord(m_document, schema::Region());
            int const first = std::min(i * each, m_sizes.elements - each);
            region.SetPosition(
                schema::Region_elementsCluster(),
                KOVSimPosition(m_mesh.elements.CreateCSetStrided(first, each, 1, 1)));
            KOVSimPosition const made = NewRecord(m_document, schema::SectionAssignment());
            made.SetPosition(schema::SectionAssignment_section(), m_section);
            made.SetPosition(schema::SectionAssignment_region(), region);
            model.GetVector(schema::Model_sectionAssignments()).PushBack(made);
        }
    }

    void WriteLayers() {
        KOVSrvBulkShellLayers& bulk = *omi_Singleton<KOVSrvBulkShellLayers>::Instance();
        for (int layer = 0; layer < kLayers; ++layer) {
            for (int section = 0; section < m_sizes.assignments; ++section) {
                bulk.AppendPly(layer, section, 0);
                bulk.AppendConstThickness(layer, section, 0.25);
            }
        }
        bulk.WriteBulkDistributions(m_document.Focus());
        omi_SingletonBase<KOVSrvBulkShellLayers>::Finalize();
    }

    void MakeFields() {
        KOVSimPosition const model = m_document.GetModel();
        KOVSimPosition const step = NewRecord(m_document, schema::Step_Gen_Static());
        step.SetName("Step-1");
        model.GetMap(schema::Model_steps()).Insert("Step-1", step);
        model.GetVector(schema::Model_stepSequence()).PushBack(step);
        m_document.Focus().GetSet(schema::Focus_externalTaskIds()).Insert(step);
        KOVSimPosition const request = NewRecord(m_document, schema::ElaboratedOutputRequest());
        request.DataRecord().SetSymb(3, 1);
        model.GetSet(schema::Model_outputRequests()).Insert(request);
        KOVSimMap const catalogue = m_document.Focus()
                                        .GetPosition(schema::Focus_fieldTypes())
                                        .GetMap(schema::zdm_FieldTypeLib_fieldTypes());
        KOVSimGrid::CollectionArray grid(2, 0);
        grid.Get(0) = m_mesh.nodes.ID();
        grid.Get(1) = m_mesh.components.ID();
        for (int i = 0; i < m_sizes.fields; ++i) {
            std::string const name = "F" + std::to_string(i % kFieldTypes);
            KOVSimPosition type = catalogue.Find(name.c_str());
            if (type.IsNull()) {
                type = NewRecord(m_document, schema::FieldTypePrimary());
                type.DataRecord().SetSymb(0, zdm_Algebraic_VECTOR);
                catalogue.Insert(name.c_str(), type);
            }
            KOVSimPosition const field = NewRecord(m_document, schema::Field_Meshed());
            field.SetPosition(schema::Field_fieldType(), type);
            KOVSimDistributionID const data = m_document.CreateDistribution(
                KOVSimGrid(grid), KOVSimRangeType(KOVSimTypeKeyDouble), schema::Grid_Node());
            KOVSimPosition const serial = NewRecord(m_document, schema::SerialField());
            serial.GetSet(schema::SerialField_drawers())
                .Insert(KOVSimPosition(MakeDrawer(data, {m_nodes, m_axes})));
            field.GetSet(schema::Field_serialFields()).Insert(serial);
            step.GetSet(schema::Task_fieldResults()).Insert(field);
            request.GetSet(schema::OutputRequest_field()).Insert(field);
        }
    }

    KOVObjDocument m_document;
    bench::Mesh m_mesh;
    Sizes m_sizes;
    bool m_sound;
    KOVSimCSetID m_nodes, m_elements, m_axes;
    KOVSimPosition m_section;
};

using Seconds = std::map<std::string, std::vector<double>>;

void Require(bool holds) {
    if (!holds) throw std::runtime_error("the findings are not those of this document");
}

void Measure(std::string const& path, int findings, std::string const& who, Seconds& seconds) {
    KOVObjDocument const document = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadOnly);
    KOVSrvLumenChecker checker(document), again(document);
    seconds[who].push_back(bench::Seconds([&] { checker.Check_Lumen(); }));
    seconds[who + ", again"].push_back(bench::Seconds([&] { again.Check_Lumen(); }));
    Require(checker.GetFindings().Size() == findings);
    document.Close();
}

// Where the time goes, each check by itself, to standard error.
void Tell(std::string const& path) {
    using Check = void (KOVSrvLumenChecker::*)();
    std::pair<char const*, Check> const checks[] = {
        {"mesh", &KOVSrvLumenChecker::Check_Mesh},
        {"steps", &KOVSrvLumenChecker::Check_Steps},
        {"history", &KOVSrvLumenChecker::Check_History},
        {"section assignments", &KOVSrvLumenChecker::Check_sectionAssignments}};
    KOVObjDocument const document = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadOnly);
    KOVSrvLumenChecker checker(document);
    checker.Check_Lumen();
    for (auto const& [name, check] : checks) {
        double const taken = bench::Seconds([&, one = check] { (checker.*one)(); });
        std::fprintf(stderr, "    %s, again: %.1f ms\n", name, taken * 1e3);
    }
    document.Close();
}

void Run(bench::Options const& options) {
    Sizes const sizes{options.Int("elements", 5'000'000), options.Int("classes", 1000),
                      options.Int("run", 100), options.Int("assignments", 10'000),
                      options.Int("fields", 1000)};
    Sizes small = sizes;
    small.run = 1;
    small.elements = std::max(sizes.elements / sizes.run, sizes.classes);
    for (bool const sound : {true, false}) {
        std::string const path = bench::FreshPath(options, "checked.ksd");
        std::string const smallPath = bench::FreshPath(options, "checked-small.ksd");
        Maker(path, sizes, sound);
        Maker(smallPath, small, sound);
        Seconds seconds;
        int const findings = sound ? 0 : sizes.classes;
        for (int run = 0; run < options.Int("runs", 5); ++run) {
            Measure(path, findings, "ours", seconds);
            Measure(smallPath, findings, "ours, few elements", seconds);
        }
        for (auto const& [who, times] : seconds) {
            bench::Report(sound ? "checker.sound" : "checker.faulty", who, bench::Median(times));
        }
        if (options.Int("tell", 0)) Tell(path);
        std::filesystem::remove_all(path);
        std::filesystem::remove_all(smallPath);
    }
}

}  // namespace

int main(int argc, char** argv) { return bench::Main(argc, argv, &Run); }
