// Whether the layers of a document's shell sections stand as they should: one drawer for each layer
// number, however many sections there are. Status 1 if a kind of datum has another count, or no
// data.
//
//   --document shells.ksd --layers 20
#include "KOVObjDocument.h"
#include "KOVObjMeshedField.h"
#include "KOVSimDistribution.h"
#include "KOVSimSchema.h"
#include "bench/support/Measure.h"

namespace {

int Drawers(KOVSimDistributionID const& distribution) {
    KOVSimArray<KOVSimDrawerID, KOVSimArrayCopyClassPolicy<KOVSimDrawerID>> drawers(0);
    KOVSimDistribution(distribution).DrawerIDArray(drawers);
    return static_cast<int>(drawers.Size());
}

void Require(char const* kind, int drawers, int layers) {
    if (drawers == layers) return;
    throw std::runtime_error(std::string("shell_drawers: ") + kind + " in " +
                             std::to_string(drawers) + " drawers");
}

void Run(bench::Options const& options) {
    KOVObjDocument document = KOVObjDocument::Open(options.Text("document", "shells.ksd").c_str(),
                                                   KOVObjDocument::ReadOnly);
    int const layers = options.Int("layers", 20);
    KOVSimPosition const bulk = document.GetModel().GetPosition(schema::Model_bulkShellLayers());
    auto const plain = [&](int member) { return bulk.GetPosition(member).GetDistribution(); };
    auto const meshed = [&](int member) {
        return KOVObjMeshedField(bulk.GetPosition(member)).GetDistribution().GetDistribution();
    };
    Require("materials", Drawers(plain(schema::BulkShellLayers_materials())), layers);
    Require("section points", Drawers(plain(schema::BulkShellLayers_sectionPoints())), layers);
    Require("plies", Drawers(plain(schema::BulkShellLayers_plies())), layers);
    Require("thicknesses", Drawers(meshed(schema::BulkShellLayers_constThicknesses())), layers);
    Require("angles", Drawers(meshed(schema::BulkShellLayers_constAngles())), layers);
    document.Close();
}

}  // namespace

int main(int argc, char** argv) { return bench::Main(argc, argv, &Run); }
