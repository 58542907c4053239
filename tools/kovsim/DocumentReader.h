// DocumentReader: what the subcommands that look into documents share: opening one for reading, its
// sets, its elements by type. Documents may come from any writer, so that whatever is absent is
// answered by emptiness.
#pragma once

#include <string>
#include <vector>

#include "ElementTypes.h"
#include "Failure.h"
#include "KOVBasVector.h"
#include "KOVObjDocument.h"
#include "KOVObjLabeler.h"
#include "KOVObjMesh.h"
#include "KOVSimCSet.h"
#include "KOVSimCollection.h"
#include "KOVSimException.h"

namespace kov::tool {

/// Each opens a document, and throws Failure that names the path and says why it cannot be done.
KOVObjDocument OpenForReading(std::string const& path);
KOVObjDocument OpenForWriting(std::string const& path);

/// Something in a document that cannot be answered. The text has no path: WhileReading puts it in
/// front.
class DocumentFault : public Failure {
  public:
    using Failure::Failure;
};

/// Runs `look`, which reads the document that was opened under `path`, and gives its result. What
/// the document refuses becomes a Failure that names the path, and so does
/// a DocumentFault.
template <class Look>
auto WhileReading(std::string const& path, Look&& look) {
    try {
        return look();
    } catch (KOVSimException const& error) {
        throw Failure(path + ": " + error.what());
    } catch (DocumentFault const& fault) {
        throw Failure(path + ": " + fault.what());
    }
}

/// The elements of one element specification.
struct ElementGroup {
    std::string name;                   ///< of the element type; empty where it has none
    ElementType const* type = nullptr;  ///< null if the name is not known
    int shape = -1;                     ///< number of the shape symbol; -1 if none is set
    KOVSimCSet elements;
};
/// All groups of the element specification assignment, in its order.
std::vector<ElementGroup> ElementGroups(KOVObjDocument const& document);

struct DocumentSet {
    std::string name;
    KOVSimCSet set;
};
/// The sets in a map of the model, by ascending name.
std::vector<DocumentSet> DocumentSets(KOVObjDocument const& document, int map);

/// True for what stands among the regions of a model as a surface: all but plain regions, which
/// sections have for their elements.
bool IsSurface(KOVSimPosition const& region);
int CountSurfaces(KOVObjDocument const& document);

/// An instance of an assembly.
struct DocumentInstance {
    std::string name;
    std::string part;
    KOVSimCSet nodes;
    KOVSimCSet elements;
};
/// The instances of the model, by ascending name; none for a document without an assembly.
std::vector<DocumentInstance> DocumentInstances(KOVObjDocument const& document);

/// The collection at a position; one without a share for a null position.
KOVSimCollection CollectionAt(KOVSimPosition const& position);
/// Its count of members; 0 without a collection.
int SpaceAt(KOVSimPosition const& position);

/// The user label of each ordinal below `space`, over all instances; -1 where there is none. Empty
/// without any instance.
std::vector<int> LabelsByOrdinal(KOVObjDocument const& document, KOVObjLabelerType type, int space);

}  // namespace kov::tool
