// Decks from untrusted bytes, translated into a document in memory.
//
// Zero bytes do not stand in decks; the byte 1 parts the deck from the files that it may include,
// "1.inp", "2.inp" and so on. A deck is translated, or refused with a text that names a file: no
// exception of another kind may come. Each deck has a transaction of its own, which is dropped, so
// that one document serves many decks, unless a deck has sections.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "DeckFile.h"
#include "DocumentReader.h"
#include "Failure.h"
#include "KOVObjDocument.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimTransaction.h"
#include "KOVSimVector.h"
#include "Translation.h"

namespace {

using namespace kov::tool;

void Require(bool condition) {
    if (!condition) std::abort();
}

MemoryFiles Split(std::uint8_t const* data, std::size_t size) {
    MemoryFiles files;
    std::string text;
    int number = 0;
    auto const finish = [&] {
        files.texts[number == 0 ? "deck.inp" : std::to_string(number) + ".inp"] = text;
        text.clear();
        ++number;
    };
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == 1) {
            finish();
        } else {
            text += static_cast<char>(data[i]);
        }
    }
    finish();
    return files;
}

// What the summary counts stands in the document.
void CheckDocument(KOVObjDocument const& document, TranslationSummary const& summary) {
    KOVObjMesh const mesh(document.GetMesh());
    Require(SpaceAt(mesh.GetNodeCollection()) == summary.nodes);
    Require(SpaceAt(mesh.GetElementCollection()) == summary.elements);
    int inGroups = 0;
    for (ElementGroup const& group : ElementGroups(document)) {
        Require(group.type != nullptr);
        inGroups += group.elements.Size();
    }
    Require(inGroups == summary.elements);
    auto const sets = DocumentSets(document, schema::Model_nodeSets());
    auto const internal = DocumentSets(document, schema::Model_otherNodeSets());
    Require(sets.size() + internal.size() == summary.nodeSets);
    for (DocumentSet const& set : sets) Require(set.set.Size() <= summary.nodes);
    Require(DocumentSets(document, schema::Model_elementSets()).size() +
                DocumentSets(document, schema::Model_otherElementSets()).size() ==
            summary.elementSets);
    KOVSimPosition const model = document.GetModel();
    Require(static_cast<std::size_t>(CountSurfaces(document)) == summary.surfaces);
    Require(static_cast<std::size_t>(model.GetMap(schema::Model_regions()).Size()) ==
            summary.surfaces + summary.sections);
    Require(static_cast<std::size_t>(model.GetMap(schema::Model_sections()).Size()) ==
            summary.sections);
    Require(static_cast<std::size_t>(model.GetVector(schema::Model_sectionAssignments()).Size()) ==
            summary.sections);
    Require(static_cast<std::size_t>(model.GetMap(schema::Model_plies()).Size()) == summary.plies);
    Require(SpaceAt(document.GetMaterialCollection()) == static_cast<int>(summary.materials));
    Require(static_cast<std::size_t>(model.GetMap(schema::Model_orientationsByName()).Size()) ==
            summary.orientations);
    Require(static_cast<std::size_t>(model.GetMap(schema::Model_distributions()).Size()) ==
            summary.distributions);
    auto const instances = DocumentInstances(document);
    Require(instances.size() == summary.instances);
    int inInstances = 0;
    for (DocumentInstance const& instance : instances) inInstances += instance.nodes.Size();
    Require(inInstances <= summary.nodes);
    std::vector<int> const labels = LabelsByOrdinal(document, KOVObjLabelerNodes, summary.nodes);
    for (int const label : labels) Require(label > 0);
    Require(static_cast<int>(labels.size()) == summary.nodes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    // Temporary sets end with their document.
    static std::unique_ptr<KOVObjDocument> document;
    static int uses = 0;
    if (document == nullptr || ++uses % 500 == 0) {
        if (document != nullptr) document->Close();
        document = std::make_unique<KOVObjDocument>(KOVObjDocument::CreateInMemory());
    }
    MemoryFiles files = Split(data, size);
    KOVSimTransaction transaction(document->ContextID());
    try {
        bool const strict = size % 16 == 7;
        Translation translation(files, *document, transaction, {strict, {}});
        TranslationSummary const summary = translation.Run("deck.inp");
        CheckDocument(*document, summary);
        if (summary.sections > 0) {
            // Layers are written behind the commit: such a document serves one deck only.
            transaction.Commit();
            translation.WriteLayers();
            document->Close();
            document.reset();
        }
    } catch (Failure const& failure) {
        Require(std::string(failure.what()).find(".inp:") != std::string::npos);
    }
    return 0;
}
