// Layers of shell sections: gathered and written in bulk, then read section by section.
//
//   --sections 100000 --layers 20 --reads 2000
//
// Each layer of each section has a material, a number of section points, a thickness and an angle.
// Beside the write stands a plain file with the same bytes, made lasting.
#include <random>

#include "KOVObjDocument.h"
#include "KOVSimSchema.h"
#include "KOVSimVector.h"
#include "KOVSrvBulkShellLayers.h"
#include "KOVSrvShellSection.h"
#include "bench/support/Measure.h"
#include "bench/support/Mesh.h"

namespace {

constexpr int kMaterials = 100;

struct Sizes {
    int sections, layers, reads;
};

int Material(int layer, int section) { return (7 * section + layer) % kMaterials; }
double Thickness(int layer, int section) { return 0.125 * (section % 64) + layer; }

void Require(bool right) {
    if (!right) throw std::runtime_error("shell_layers: not what was written");
}

void MakeModel(KOVObjDocument const& document, Sizes const& sizes) {
    bench::Mesh mesh(document);
    KOVSimTransaction transaction(document.ContextID());
    mesh.Extend(0, sizes.sections);
    KOVSimCollection(document.GetMaterialCollection().GetCollection()).ExtendSpace(kMaterials);
    KOVSimPosition const model = document.GetModel();
    KOVSimPosition const slots = model.CreateTypedCollection(sizes.layers, schema::BulkLayerSlot());
    KOVSimPosition const sections =
        model.CreateTypedCollection(sizes.sections, schema::BulkSection());
    model.SetPosition(schema::Model_bulkLayerSlots(), slots);
    model.SetPosition(schema::Model_bulkSections(), sections);
    for (int i = 0; i < sizes.sections; ++i) {
        KOVSimPosition const section = sections.CreateMember(i, schema::Section_Shell());
        section.DataRecord().SetInt(0, sizes.layers);
        KOVSimPosition const region = document.CreateDataRecord(schema::Region()).Pos();
        region.SetPosition(schema::Region_elementsCluster(),
                           mesh.elements.CreateCSetStrided(i, 1, 1, 1));
        KOVSimPosition const made = document.CreateDataRecord(schema::SectionAssignment()).Pos();
        made.SetPosition(schema::SectionAssignment_section(), section);
        made.SetPosition(schema::SectionAssignment_region(), region);
        model.GetVector(schema::Model_sectionAssignments()).PushBack(made);
    }
    transaction.Commit();
}

void Gather(KOVSrvBulkShellLayers& bulk, Sizes const& sizes) {
    for (int section = 0; section < sizes.sections; ++section) {
        for (int layer = 0; layer < sizes.layers; ++layer) {
            bulk.AppendMaterial(layer, section, Material(layer, section));
            bulk.AppendNumSectionPoints(layer, section, 3);
            bulk.AppendConstThickness(layer, section, Thickness(layer, section));
            bulk.AppendConstAngle(layer, section, 45.0 * layer);
        }
    }
}

void WritePlain(std::string const& path, Sizes const& sizes) {
    std::size_t const bytes = static_cast<std::size_t>(sizes.sections) *
                              static_cast<std::size_t>(sizes.layers) * (2 * 4 + 2 * 8);
    bench::Array<char> const content(bytes);
    std::filesystem::remove_all(path);
    bench::Report("shells.write", "plain file", bench::Seconds([&] {
                      std::FILE* const file = std::fopen(path.c_str(), "wb");
                      if (!file || std::fwrite(content.data(), 1, bytes, file) != bytes)
                          throw std::runtime_error("cannot write " + path);
                      std::fclose(file);
                      bench::SyncFile(path);
                  }));
    std::filesystem::remove_all(path);
}

// Sections at random. Each assignment is at hand, as when a reader walks the model.
void Read(KOVObjDocument const& document, Sizes const& sizes) {
    std::vector<KOVSimPosition> assignments;
    KOVSimVectoriterator at =
        document.GetModel().GetVector(schema::Model_sectionAssignments()).Begin();
    for (; at.NotDone(); ++at) assignments.push_back(*at);
    std::mt19937 random(5);
    std::uniform_int_distribution<int> any(0, sizes.sections - 1);
    auto const read = [&] {
        int const section = any(random);
        KOVSrvShellSection const shell(assignments[static_cast<std::size_t>(section)]);
        int const last = sizes.layers - 1;
        Require(shell.GetConstThicknesses()[last] == Thickness(last, section));
        Require(document.GetCMemberIndex(shell.GetMaterials()[last]) == Material(last, section));
        Require(shell.GetSectionPoints()[last] == 3);
    };
    bench::Report("shells.read", "ours, the first time", bench::Seconds(read));
    bench::Report("shells.read", "ours", bench::Seconds([&] {
                                             for (int i = 0; i < sizes.reads; ++i) read();
                                         }) / sizes.reads);
}

void Run(bench::Options const& options) {
    Sizes const sizes{options.Int("sections", 100'000), options.Int("layers", 20),
                      options.Int("reads", 2000)};
    std::string const path = bench::FreshPath(options, "shells.ksd");
    KOVObjDocument document = KOVObjDocument::Create(path.c_str());
    MakeModel(document, sizes);
    KOVSrvBulkShellLayers& bulk = *omi_Singleton<KOVSrvBulkShellLayers>::Instance();
    double gathering = 0, writing = 0;
    double const mb = bench::PeakMB([&] {
        gathering = bench::Seconds([&] { Gather(bulk, sizes); });
        writing = bench::Seconds([&] { bulk.WriteBulkDistributions(document.Focus()); });
    });
    bench::Report("shells.gather", "ours", gathering, mb);
    bench::Report("shells.write", "ours", writing);
    omi_SingletonBase<KOVSrvBulkShellLayers>::Finalize();
    WritePlain(path + ".plain", sizes);
    document.Close();
    document = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadOnly);
    Read(document, sizes);
    document.Close();
    std::filesystem::remove_all(path);
}

}  // namespace

int main(int argc, char** argv) { return bench::Main(argc, argv, &Run); }
