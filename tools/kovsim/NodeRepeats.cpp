#include "NodeRepeats.h"

#include <algorithm>

#include "Failure.h"

namespace kov::tool {

void NodeRepeats::Add(ModelWriter& model, std::string const& file, int line, int label, int ordinal,
                      double const* xyz) {
    if (m_files.empty() || m_files.back() != file) m_files.push_back(file);
    m_repeats.push_back(
        {{xyz[0], xyz[1], xyz[2]}, ordinal, label, line, static_cast<int>(m_files.size()) - 1});
    if (m_repeats.size() == ModelWriter::kBlock) Check(model);
}

void NodeRepeats::Check(ModelWriter& model) {
    std::vector<int> ordinals;
    ordinals.reserve(m_repeats.size());
    for (Repeat const& repeat : m_repeats) ordinals.push_back(repeat.ordinal);
    std::sort(ordinals.begin(), ordinals.end());
    ordinals.erase(std::unique(ordinals.begin(), ordinals.end()), ordinals.end());
    std::vector<double> stored(3 * ordinals.size());
    model.ReadNodes(ordinals.data(), static_cast<int>(ordinals.size()), stored.data());
    for (Repeat const& repeat : m_repeats) {
        auto const found = std::lower_bound(ordinals.begin(), ordinals.end(), repeat.ordinal);
        double const* const xyz = stored.data() + 3 * (found - ordinals.begin());
        if (std::equal(xyz, xyz + 3, repeat.xyz)) continue;
        throw DeckError(
            m_files[static_cast<std::size_t>(repeat.file)], repeat.line,
            "node " + std::to_string(repeat.label) +
                " is defined a second time with other coordinates; expected each label once");
    }
    m_repeats.clear();
    m_files.clear();
}

}  // namespace kov::tool
