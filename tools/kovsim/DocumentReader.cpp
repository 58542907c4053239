#include "DocumentReader.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "Failure.h"
#include "KOVSimCtation.h"
#include "KOVSimDSet.h"
#include "KOVSimDataRecord.h"
#include "KOVSimException.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "Names.h"

namespace kov::tool {
namespace {

KOVObjDocument OpenDocument(std::string const& path, KOVObjDocument::Access access) {
    struct stat found = {};
    if (stat(path.c_str(), &found) != 0) {
        throw Failure(path + ": cannot be opened: " + std::generic_category().message(errno));
    }
    if (!S_ISDIR(found.st_mode)) {
        throw Failure(path + ": is no document; expected a folder such as MODEL.ksd");
    }
    try {
        return KOVObjDocument::Open(ToKOVString(path), access);
    } catch (KOVSimException const& error) {
        std::string const text = error.what();
        // The path stands in front, as in all messages, and not twice.
        throw Failure(text.find(path) == std::string::npos ? path + ": " + text : text);
    }
}

}  // namespace

KOVObjDocument OpenForReading(std::string const& path) {
    return OpenDocument(path, KOVObjDocument::ReadOnly);
}

KOVObjDocument OpenForWriting(std::string const& path) {
    return OpenDocument(path, KOVObjDocument::ReadWrite);
}

KOVSimCollection CollectionAt(KOVSimPosition const& position) {
    KOVSimCollectionID const id = position.GetCollection();
    return id.IsNull() ? KOVSimCollection() : KOVSimCollection(id);
}

int SpaceAt(KOVSimPosition const& position) {
    KOVSimCollection const collection = CollectionAt(position);
    return collection.IsPresent() ? collection.Space() : 0;
}

std::vector<ElementGroup> ElementGroups(KOVObjDocument const& document) {
    std::vector<ElementGroup> groups;
    KOVSimPosition const mesh = document.GetMesh();
    KOVSimPosition const assignment = KOVObjMesh(mesh).GetElementSpecAssignment();
    KOVSimCollectionID const specifications = document.GetElementSpecCollection().GetCollection();
    KOVSimCollectionID const elements = KOVObjMesh(mesh).GetElementCollection().GetCollection();
    if (assignment.IsNull() || specifications.IsNull() || elements.IsNull()) return groups;
    KOVSimDSet const dset(assignment);
    if (dset.IsNull()) return groups;
    for (KOVSimCompartment const& compartment : dset.GetCtation().Compartments()) {
        int const specAt = compartment.Position(specifications);
        int const elementsAt = compartment.Position(elements);
        if (specAt < 0 || elementsAt < 0 || compartment.CSet(specAt).Size() != 1) continue;
        int const index = compartment.CSet(specAt)[0];
        KOVSimPosition const specification(document.GetRecord(specifications, index));
        ElementGroup& group = groups.emplace_back();
        group.name = Plain(specification.Name(-1));
        group.type = FindElementType(group.name);
        group.shape = specification.GetPosition(schema::ElementSpec_shape()).GetSymbolPosition();
        group.elements = compartment.CSet(elementsAt);
    }
    return groups;
}

std::vector<DocumentSet> DocumentSets(KOVObjDocument const& document, int map) {
    std::vector<DocumentSet> sets;
    for (KOVSimMapiterator at = document.GetModel().GetMap(map).Begin(); at.NotDone(); ++at) {
        KOVSimPosition const position = at.Value();
        if (!KOVSimCSetID::CanBeConverted(position.ID())) continue;
        sets.push_back({Plain(at.Key()), KOVSimCSet(position)});
    }
    return sets;
}

bool IsSurface(KOVSimPosition const& region) { return region.TypePosition() != schema::Region(); }

int CountSurfaces(KOVObjDocument const& document) {
    int surfaces = 0;
    KOVSimMap const regions = document.GetModel().GetMap(schema::Model_regions());
    for (KOVSimMapiterator at = regions.Begin(); at.NotDone(); ++at) {
        if (IsSurface(at.Value())) ++surfaces;
    }
    return surfaces;
}

std::vector<DocumentInstance> DocumentInstances(KOVObjDocument const& document) {
    constexpr int partField = 0;
    std::vector<DocumentInstance> instances;
    KOVSimMap const map = document.GetModel().GetMap(schema::Model_instances());
    for (KOVSimMapiterator at = map.Begin(); at.NotDone(); ++at) {
        KOVSimPosition const instance = at.Value();
        DocumentInstance& made = instances.emplace_back();
        made.name = Plain(at.Key());
        made.part = Plain(instance.GetDataRecord().ReturnString(partField));
        made.nodes = KOVSimCSet(instance.GetPosition(schema::Instance_nodes()));
        made.elements = KOVSimCSet(instance.GetPosition(schema::Instance_elements()));
    }
    return instances;
}

std::vector<int> LabelsByOrdinal(KOVObjDocument const& document, KOVObjLabelerType type,
                                 int space) {
    std::vector<int> byOrdinal;
    KOVObjLabeler labeler(document, type);
    labeler.Read();
    KOVObjLabeler::NameArray const instances = labeler.Occurrences();
    if (instances.Size() == 0) return byOrdinal;
    byOrdinal.assign(static_cast<std::size_t>(space), -1);
    for (KOVString const& instance : instances) {
        KOVBasVector<int> labels;
        KOVBasVector<int> ordinals;
        labeler.GetInstanceLabelsAndOrdinals(instance, labels, ordinals);
        for (int i = 0; i < labels.Size(); ++i) {
            if (ordinals[i] < 0 || ordinals[i] >= space) continue;
            byOrdinal[static_cast<std::size_t>(ordinals[i])] = labels[i];
        }
    }
    return byOrdinal;
}

}  // namespace kov::tool
