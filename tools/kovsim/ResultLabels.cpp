#include "ResultLabels.h"

#include <algorithm>
#include <set>

#include "DocumentReader.h"
#include "InstanceQuestion.h"
#include "Interrupt.h"
#include "MeshLabels.h"
#include "Names.h"

namespace kov::tool {
namespace {

constexpr int kBlock = 1 << 18;
constexpr std::size_t kNamesShown = 4;

std::string SomeNames(std::set<std::string> const& names) {
    std::string text;
    std::size_t shown = 0;
    for (std::string const& name : names) {
        if (shown == kNamesShown) return text + " and others";
        text += (shown++ == 0 ? "" : ", ") + NameText(name);
    }
    return text;
}

}  // namespace

std::string ResultInstance(KOVObjDocument const& document,
                           std::optional<std::string> const& instance) {
    MeshLabels const nodes(document, KOVObjLabelerNodes);
    if (instance) {
        std::string name = InstanceName(*instance);
        InstanceNumber(document, nodes, KOVObjLabelerNodes, name);
        return name;
    }
    std::set<std::string> names(nodes.Names().begin(), nodes.Names().end());
    MeshLabels const elements(document, KOVObjLabelerElements);
    names.insert(elements.Names().begin(), elements.Names().end());
    if (names.empty()) throw DocumentFault("its nodes and elements have no labels");
    if (names.size() > 1) {
        throw DocumentFault("labels in results are those of one instance, and the model has " +
                            std::to_string(names.size()) + ", " + SomeNames(names) +
                            "; expected --instance NAME");
    }
    return *names.begin();
}

ResultLabels::ResultLabels(KOVObjDocument const& document, KOVObjLabelerType type,
                           std::string const& instance) {
    KOVObjMesh const mesh(document.GetMesh());
    m_space = SpaceAt(type == KOVObjLabelerNodes ? mesh.GetNodeCollection()
                                                 : mesh.GetElementCollection());
    MeshLabels const labels(document, type);
    int const number = labels.Find(instance);
    if (number < 0) return;
    KOVSimCSet const& all = labels.Ordinals(number);
    KOVSimCollection const collection = CollectionAt(
        type == KOVObjLabelerNodes ? mesh.GetNodeCollection() : mesh.GetElementCollection());
    std::vector<int> ordinals;
    for (int first = 0; first < m_space; first += kBlock) {
        ThrowIfInterrupted();
        int const count = std::min(kBlock, m_space - first);
        KOVSimCSet const block =
            all.Intersection(collection.CreateVolatileCSetStrided(first, count, 1, 1));
        ordinals.resize(static_cast<std::size_t>(block.Size()));
        block.Members(ordinals.data());
        std::vector<Labelled> const found = labels.Look(ordinals);
        for (std::size_t i = 0; i < found.size(); ++i) {
            int const label = found[i].label;
            if (found[i].instance != number) continue;
            Run* const last = m_runs.empty() ? nullptr : &m_runs.back();
            if (last != nullptr && ordinals[i] == last->ordinal + last->count &&
                label - last->count == last->label) {
                ++last->count;
            } else {
                m_runs.push_back({label, ordinals[i], 1});
            }
        }
    }
    std::sort(m_runs.begin(), m_runs.end(),
              [](Run const& a, Run const& b) { return a.label < b.label; });
}

int ResultLabels::Search(int label) {
    if (m_at + 1 < m_runs.size() && m_runs[m_at + 1].Holds(label)) {
        return m_runs[++m_at].Ordinal(label);
    }
    auto const behind = std::upper_bound(m_runs.begin(), m_runs.end(), label,
                                         [](int a, Run const& run) { return a < run.label; });
    if (behind == m_runs.begin() || !(behind - 1)->Holds(label)) return -1;
    m_at = static_cast<std::size_t>(behind - 1 - m_runs.begin());
    return m_runs[m_at].Ordinal(label);
}

}  // namespace kov::tool
