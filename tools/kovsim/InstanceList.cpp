#include "InstanceList.h"

#include <algorithm>

#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "Names.h"
#include "ObjectContent.h"

namespace kov::tool {

std::vector<InstanceEntry> ListInstances(KOVObjDocument const& document, MeshLabels const& nodes,
                                         MeshLabels const& elements) {
    std::vector<InstanceEntry> instances;
    auto const entry = [&instances](std::string const& name) -> InstanceEntry& {
        auto const at = std::lower_bound(
            instances.begin(), instances.end(), name,
            [](InstanceEntry const& a, std::string const& sought) { return a.name < sought; });
        if (at != instances.end() && at->name == name) return *at;
        return *instances.insert(at, {name, "", 0, 0});
    };
    KOVSimMap const map = document.GetModel().GetMap(schema::Model_instances());
    for (KOVSimMapiterator at = map.Begin(); at.NotDone(); ++at) {
        InstanceEntry& instance = entry(Plain(at.Key()));
        instance.part = Plain(at.Value().GetDataRecord().ReturnString(0));
        instance.nodes = KOVSimCSet(at.Value().GetPosition(schema::Instance_nodes())).Size();
        instance.elements = KOVSimCSet(at.Value().GetPosition(schema::Instance_elements())).Size();
    }
    auto const labelled = [&](MeshLabels const& labels, int InstanceEntry::*count) {
        for (int i = 0; i < static_cast<int>(labels.Names().size()); ++i) {
            int& size = entry(labels.Names()[static_cast<std::size_t>(i)]).*count;
            size = std::max(size, labels.Ordinals(i).Size());
        }
    };
    labelled(nodes, &InstanceEntry::nodes);
    labelled(elements, &InstanceEntry::elements);
    return instances;
}

std::string InstanceText(InstanceEntry const& instance) {
    return CountText(instance.nodes, "node") + ", " + CountText(instance.elements, "element") +
           (instance.part.empty() ? "" : ", part " + NameText(instance.part));
}

}  // namespace kov::tool
