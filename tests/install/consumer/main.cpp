// An outside program on the installed package: makes a document with four nodes, opens it again and
// reads one back; then makes a document where one is, and catches the refusal.

#include <cstdio>
#include <string>

#include "KOVSimDocument.h"
#ifndef DOCUMENT_LAYER_ONLY
#include "KOVSrvSimServices.h"
#endif

namespace {

constexpr int kNodes = 4;

void Write(std::string const& path) {
    KOVObjDocument const document = KOVObjDocument::Create(path.c_str());
    KOVSimTransaction transaction(document.ContextID());
    KOVObjMesh const mesh(document.GetMesh());
    KOVSimCollection nodes(mesh.GetNodeCollection().GetCollection());
    nodes.ExtendSpace(kNodes);
#ifndef DOCUMENT_LAYER_ONLY
    KOVSimCollection components(document.GetComponentCollection().GetCollection());
    int const directions[] = {0, 12, 20};
    double const cube[kNodes * 3] = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0.25, 0.5, 2};
    KOVSrvNodalCoordinates coordinates(mesh.GetCoordinates(), 1000);
    coordinates.Append(transaction, nodes.CreateTempCSetStrided(0, kNodes, 1, 1),
                       components.CreateTempCSet(directions, 3, false), cube);
#endif
    transaction.Commit();
    document.Close();
}

bool Read(std::string const& path) {
    KOVObjDocument const document = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadOnly);
    KOVObjMesh const mesh(document.GetMesh());
    KOVSimCollection nodes(mesh.GetNodeCollection().GetCollection());
    bool good = nodes.Space() == kNodes;
#ifndef DOCUMENT_LAYER_ONLY
    KOVSrvNodalCoordinates const coordinates(mesh.GetCoordinates(), 1000);
    double last[3] = {};
    coordinates.Read(KOVSimCSet(nodes.CreateTempCSetStrided(kNodes - 1, 1, 1, 1)),
                     coordinates.Components(), last);
    std::printf("%d nodes, the last at %g %g %g\n", coordinates.NumberNodes(), last[0], last[1],
                last[2]);
    good = good && coordinates.NumberNodes() == kNodes && last[0] == 0.25 && last[1] == 0.5 &&
           last[2] == 2.0;
#endif
    good = document.Verify([](char const* text) { std::printf("%s\n", text); }) && good;
    document.Close();
    return good;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    std::string const path = argv[1];
#ifndef DOCUMENT_LAYER_ONLY
    int modules = 0;
    KOVSrvBasic_initialize(modules);
#endif
    Write(path);
    if (!Read(path)) return 3;
    bool refused = false;
    try {
        KOVObjDocument::Create(path.c_str());
    } catch (KOVSimException const& refusal) {  // the class is one on both sides of the library
        std::printf("refused: %s\n", refusal.what());
        refused = true;
    }
#ifndef DOCUMENT_LAYER_ONLY
    KOVSrvBasic_finalize(modules);
#endif
    return refused ? 0 : 4;
}
