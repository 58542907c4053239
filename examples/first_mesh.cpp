// A first document: four nodes, one tetrahedron, a named set; written, closed, opened again and
// read.
//
//     first_mesh FOLDER/tetrahedron.ksd
#include <cstdio>
#include <exception>

#include "KOVSimDocument.h"
#include "KOVSimSchema.h"
#include "KOVSrvSimServices.h"

namespace {

void Write(char const* path) {
    KOVObjDocument const document = KOVObjDocument::Create(path);
    KOVObjMesh const mesh(document.GetMesh());
    KOVSimCollection nodes(mesh.GetNodeCollection().GetCollection());
    KOVSimCollection elements(mesh.GetElementCollection().GetCollection());
    KOVSimCollection components(document.GetComponentCollection().GetCollection());

    KOVSimTransaction transaction(document.ContextID());
    nodes.ExtendSpace(4);
    elements.ExtendSpace(1);

    double const points[] = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
    int const xyz[] = {0, 12, 20};  // the components of coordinates in the component collection
    KOVSrvNodalCoordinates coordinates(mesh.GetCoordinates(), 1000);
    coordinates.Append(transaction, nodes.CreateTempCSetStrided(0, 4, 1, 1),
                       components.CreateTempCSet(xyz, 3, false), points);

    int const corners[] = {0, 1, 2, 3};
    KOVSimDistribution const relation(
        KOVSimDSet(mesh.GetConnectivity()).GetRelationalDistributionID());
    KOVSimCollection places(relation.Grid().Collections().ConstGet(1));
    KOVSrvElementConnectivity connectivity(mesh.GetConnectivity(), 1000);
    connectivity.Append(transaction, mesh.GetElementCollection().ID(),
                        elements.CreateTempCSetStrided(0, 1, 1, 1),
                        places.CreateTempCSetStrided(0, 4, 1, 1), corners);

    int const base[] = {0, 1, 2};
    document.GetModel()
        .GetMap(schema::Model_nodeSets())
        .Insert("BASE", KOVSimPosition(nodes.CreateCSet(base, 3, false)));
    transaction.Commit();
    document.Close();
}

void Read(char const* path) {
    KOVObjDocument const document = KOVObjDocument::Open(path, KOVObjDocument::ReadOnly);
    KOVSimCSet const base =
        document.GetModel().GetMap(schema::Model_nodeSets()).Find("BASE").CSet();
    KOVSrvNodalCoordinates const coordinates(KOVObjMesh(document.GetMesh()).GetCoordinates(), 0);
    double points[9];
    coordinates.Read(base, coordinates.Components(), points);
    for (int i = 0; i < base.Size(); ++i)
        std::printf("node %d: %g %g %g\n", base[i], points[3 * i], points[3 * i + 1],
                    points[3 * i + 2]);
}

}  // namespace

int main(int count, char** arguments) try {
    if (count != 2) {
        std::fprintf(stderr, "usage: first_mesh FILE.ksd\n");
        return 2;
    }
    int modules = 0;
    KOVSrvBasic_initialize(modules);
    Write(arguments[1]);
    Read(arguments[1]);
    KOVSrvBasic_finalize(modules);
    return 0;
} catch (std::exception const& failure) {
    std::fprintf(stderr, "first_mesh: %s\n", failure.what());
    return 2;
}
