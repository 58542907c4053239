#include "LabelComparison.h"

#include <algorithm>

#include "DocumentReader.h"
#include "Interrupt.h"
#include "KOVObjMesh.h"
#include "Names.h"

namespace kov::tool {
namespace {

int CommonLabels(KOVBasVector<int> const& a, KOVBasVector<int> const& b) {
    int common = 0;
    for (int i = 0, j = 0; i < a.Size() && j < b.Size();) {
        if (a[i] == b[j]) ++common;
        int const label = std::min(a[i], b[j]);
        if (a[i] == label) ++i;
        if (b[j] == label) ++j;
    }
    return common;
}

int Members(KOVObjDocument const& document, KOVObjLabelerType type) {
    KOVObjMesh const mesh(document.GetMesh());
    return SpaceAt(type == KOVObjLabelerNodes ? mesh.GetNodeCollection()
                                              : mesh.GetElementCollection());
}

std::vector<std::string> NamesOf(KOVObjLabeler const& labeler) {
    std::vector<std::string> names;
    for (KOVString const& name : labeler.Occurrences()) names.push_back(Plain(name));
    return names;
}

}  // namespace

bool LabelComparison::Same() const {
    bool same = total.Same();
    for (Instance const& instance : instances) {
        same = same && instance.isInA && instance.isInB && instance.counts.Same();
    }
    return same;
}

LabelComparison CompareLabels(KOVObjDocument const& a, KOVObjDocument const& b,
                              KOVObjLabelerType type) {
    KOVObjLabeler labelsOfA(a, type);
    KOVObjLabeler labelsOfB(b, type);
    labelsOfA.Read();
    labelsOfB.Read();
    std::vector<std::string> const namesA = NamesOf(labelsOfA);
    std::vector<std::string> const namesB = NamesOf(labelsOfB);
    std::vector<std::string> names = namesA;
    names.insert(names.end(), namesB.begin(), namesB.end());
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());

    LabelComparison comparison;
    long long labelledA = 0;
    long long labelledB = 0;
    for (std::string const& name : names) {
        ThrowIfInterrupted();
        LabelComparison::Instance& instance = comparison.instances.emplace_back();
        instance.name = name;
        KOVString const text = ToKOVString(name);
        instance.isInA = labelsOfA.IsInstanceValid(text);
        instance.isInB = labelsOfB.IsInstanceValid(text);
        KOVBasVector<int> ordinals;
        KOVBasVector<int> inA;
        labelsOfA.GetInstanceLabelsAndOrdinals(text, inA, ordinals);
        KOVBasVector<int> inB;
        labelsOfB.GetInstanceLabelsAndOrdinals(text, inB, ordinals);
        instance.counts = {inA.Size(), inB.Size(), CommonLabels(inA, inB)};
        labelledA += inA.Size();
        labelledB += inB.Size();
        comparison.total.common += instance.counts.common;
    }
    comparison.total.inA = Members(a, type);
    comparison.total.inB = Members(b, type);
    // Documents of other writers may give one member two labels.
    comparison.unlabelledA = static_cast<int>(std::max(comparison.total.inA - labelledA, 0LL));
    comparison.unlabelledB = static_cast<int>(std::max(comparison.total.inB - labelledB, 0LL));
    return comparison;
}

}  // namespace kov::tool
