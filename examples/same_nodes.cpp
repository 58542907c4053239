// Two states of one model: how far the nodes of a set lie apart in them, found by instance and user
// label, however each document numbers its nodes.
//
//     same_nodes A.ksd B.ksd SET
#include <cstdio>
#include <exception>
#include <vector>

#include "KOVSimDocument.h"
#include "KOVSimSchema.h"
#include "KOVSrvSimServices.h"

namespace {

std::vector<double> Coordinates(KOVObjDocument const& document, KOVSimCSet const& nodes) {
    KOVSrvNodalCoordinates const coordinates(KOVObjMesh(document.GetMesh()).GetCoordinates(), 0);
    std::vector<double> xyz(3 * static_cast<std::size_t>(nodes.Size()));
    if (!xyz.empty()) coordinates.Read(nodes, coordinates.Components(), xyz.data());
    return xyz;
}

int Compare(char const* pathA, char const* pathB, char const* name) {
    KOVObjDocument const a = KOVObjDocument::Open(pathA, KOVObjDocument::ReadOnly);
    KOVObjDocument const b = KOVObjDocument::Open(pathB, KOVObjDocument::ReadOnly);
    KOVSimPosition const set =
        KOVSrvGetIDFromScopedName(a.Focus(), name, schema::Model_nodeSets(), ".", "", true);
    if (set.IsNull() || a.ContextID() == b.ContextID()) {
        std::fprintf(stderr, "same_nodes: %s\n", set.IsNull() ? "no such set" : "one document");
        return 1;
    }

    KOVSrvLabelMapper mapper(a.Focus(), b.Focus());
    KOVSrvLabelMapper::Ordinals const rows = mapper.GetMappingFromPrimaryNodeSet(set.GetCSet());
    KOVSimCSet const inA = set.CSet().Intersection(mapper.GetCommonPrimaryNodeSet());
    KOVSimCSet const inB = mapper.GetSecondaryNodeSet(set.GetCSet(), false);
    std::vector<double> const first = Coordinates(a, inA), second = Coordinates(b, inB);
    for (int i = 0; i < rows.Size(); ++i) {
        int const row = rows.ConstGet(i);
        std::size_t const at = 3 * static_cast<std::size_t>(i);
        std::printf("%s %d: %g %g %g\n", mapper.GetNodeMappingOrdinalInstanceName(row).Text(),
                    mapper.GetNodeMappingOrdinalUserLabel(row), second[at] - first[at],
                    second[at + 1] - first[at + 1], second[at + 2] - first[at + 2]);
    }
    return 0;
}

}  // namespace

int main(int count, char** arguments) try {
    if (count != 4) {
        std::fprintf(stderr, "usage: same_nodes A.ksd B.ksd SET\n");
        return 2;
    }
    int modules = 0;
    KOVSrvBasic_initialize(modules);
    int const status = Compare(arguments[1], arguments[2], arguments[3]);
    KOVSrvBasic_finalize(modules);
    return status;
} catch (std::exception const& failure) {
    std::fprintf(stderr, "same_nodes: %s\n", failure.what());
    return 2;
}
