#include "InstanceQuestion.h"

#include <algorithm>
#include <vector>

#include "DocumentReader.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "MemberList.h"
#include "Names.h"
#include "Nearest.h"

namespace kov::tool {

std::string InstanceName(std::string const& word) {
    std::string name = word;
    if (!Unquote(name)) {
        throw DocumentFault("the quotes of the instance '" + Shown(word) + "' are not in pairs");
    }
    return name;
}

int InstanceNumber(KOVObjDocument const& document, MeshLabels const& labels, KOVObjLabelerType type,
                   std::string const& name, char const* withoutLabels) {
    int const number = labels.Find(name);
    if (number >= 0) return number;
    bool const nodes = type == KOVObjLabelerNodes;
    std::string const kind = nodes ? "node" : "element";
    // An instance may have no labels of this kind; all its questions are answered by no.
    std::vector<std::string> names =
        MeshLabels(document, nodes ? KOVObjLabelerElements : KOVObjLabelerNodes).Names();
    KOVSimMap const map = document.GetModel().GetMap(schema::Model_instances());
    for (KOVSimMapiterator at = map.Begin(); at.NotDone(); ++at) names.push_back(Plain(at.Key()));
    if (std::find(names.begin(), names.end(), name) != names.end()) return -1;
    names.insert(names.begin(), labels.Names().begin(), labels.Names().end());
    if (names.empty()) throw DocumentFault("the " + kind + "s have no labels" + withoutLabels);
    if (name.empty()) {
        throw DocumentFault("all " + kind +
                            "s belong to named instances; expected the name of one, such as " +
                            NameText(names.front()));
    }
    throw DocumentFault("no instance named '" + Shown(name) + "'" +
                        NearestHint(NearestNames(name, names)));
}

int ElementOrdinal(KOVObjDocument const& document, MeshLabels const& labels,
                   std::string const& instance, int label) {
    int const number = InstanceNumber(document, labels, KOVObjLabelerElements, instance);
    std::string const what =
        "no element " + std::to_string(label) + " in instance " + NameText(instance);
    if (number < 0) throw DocumentFault(what + ", which has no elements");
    KOVObjLabeler labeler(document, KOVObjLabelerElements);
    labeler.Read();
    int const ordinal = labeler.GetInstanceOrdinal(ToKOVString(instance), label);
    int const space = SpaceAt(KOVObjMesh(document.GetMesh()).GetElementCollection());
    if (ordinal >= 0 && ordinal < space) return ordinal;
    throw DocumentFault(what + "; it has " + FirstLabels(labels, number, labels.Ordinals(number)));
}

}  // namespace kov::tool
