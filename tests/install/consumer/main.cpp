// An outside program on the installed package: makes a document with four nodes, and reads one back.

#include <cstdio>
#include <string>

#include "KOVSimDocument.h"
#ifndef DOCUMENT_LAYER_ONLY
#include "KOVSrvSimServices.h"
#endif

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    std::string const path = argv[1];
    try {
        KOVObjDocument document = KOVObjDocument::Create(path.c_str());
        if (document.GetMesh().IsNull()) return 3;
#ifndef DOCUMENT_LAYER_ONLY
        KOVSrvNodalCoordinates coordinates;
        (void)coordinates;
#endif
        document.Close();
        document = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadOnly);
        int faults = 0;
        bool const sound = document.Verify([&faults](char const* text) {
            std::printf("%s\n", text);
            ++faults;
        });
        document.Close();
        std::printf("%s, %d faults\n", sound ? "sound" : "not sound", faults);
        if (!sound || faults != 0) return 4;
        KOVObjDocument::Create(path.c_str());
    } catch (KOVSimException const& refusal) {
        // The second `Create` on one path; caught across the border of the library.
        std::printf("refused: %s\n", refusal.what());
        return 0;
    }
    return 5;
}
