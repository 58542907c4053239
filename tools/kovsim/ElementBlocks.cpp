#include "ElementBlocks.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <map>
#include <utility>

namespace kov::tool {

int ElementMarks::FirstMarked(int first, int count, int stride) const {
    for (int i = 0; i < count; ++i) {
        int const element = first + i * stride;
        // A whole word at once, where a run has one.
        if (stride == 1 && element % 64 == 0 && count - i >= 64 &&
            m_words[static_cast<std::size_t>(element) / 64] == 0) {
            i += 63;
        } else if (IsMarked(element)) {
            return element;
        }
    }
    return -1;
}

void ElementMarks::Mark(int first, int count, int stride) {
    for (int i = 0; i < count; ++i) {
        auto const at = static_cast<std::size_t>(first + i * stride);
        if (stride == 1 && at % 64 == 0 && count - i >= 64) {
            m_words[at / 64] = ~std::uint64_t{0};
            i += 63;
        } else {
            m_words[at / 64] |= std::uint64_t{1} << (at % 64);
        }
    }
}

int ElementMarks::Take(int first, int count, int stride) {
    int taken = 0;
    for (int i = 0; i < count; ++i) {
        int const element = first + i * stride;
        taken += IsMarked(element) ? 0 : 1;
        Mark(element, 1, 1);
    }
    return taken;
}

int ElementMarks::Unmarked(int first, int end, int& unmarked) const {
    int count = 0;
    for (int element = first; element < end;) {
        auto const at = static_cast<std::size_t>(element);
        int const bit = static_cast<int>(at % 64);
        int const bits = std::min(64 - bit, end - element);
        std::uint64_t open = ~m_words[at / 64] >> static_cast<unsigned>(bit);
        if (bits < 64) open &= (std::uint64_t{1} << static_cast<unsigned>(bits)) - 1;
        if (count == 0 && open != 0) unmarked = element + std::countr_zero(open);
        count += std::popcount(open);
        element += bits;
    }
    return count;
}

void ElementBlocks::Begin(int first, ElementType const& type, DeckLine const& at) {
    if (!m_blocks.empty() && m_blocks.back().first == first) m_blocks.pop_back();
    m_blocks.push_back({first, &type, at});
}

ElementBlocks::Range ElementBlocks::RangeOf(int element, int elements) const {
    auto const behind =
        std::upper_bound(m_blocks.begin(), m_blocks.end(), element,
                         [](int sought, Block const& block) { return sought < block.first; });
    Block const& block = *std::prev(behind);
    return {block.first, behind == m_blocks.end() ? elements : behind->first, block.type};
}

std::vector<Sectionless> ElementBlocks::Unmarked(ElementMarks const& marks, int elements,
                                                 Scopes const& scopes, FileNames const& files,
                                                 std::size_t most, long& blocks, long& all) const {
    std::vector<Sectionless> shown;
    // A part is read for each of its instances: one finding for all of them. By file and line;
    // those beyond the first have the place `most`.
    std::map<std::pair<int, int>, std::size_t> found;
    for (std::size_t i = 0; i < m_blocks.size(); ++i) {
        Block const& block = m_blocks[i];
        if (!NeedsSection(*block.type)) continue;
        int const end = i + 1 < m_blocks.size() ? m_blocks[i + 1].first : elements;
        int first = 0;
        int const count = marks.Unmarked(block.first, end, first);
        if (count == 0) continue;
        all += count;
        auto const [at, isNew] = found.try_emplace({block.at.file, block.at.line}, shown.size());
        if (isNew) {
            ++blocks;
            if (shown.size() < most) {
                Scope const& scope = scopes.OfElement(first);
                shown.push_back({files.Path(block.at), block.at.line, std::string(block.type->name),
                                 0, scope.elementLabels.LabelOf(first), scope.name});
            } else {
                at->second = most;
            }
        }
        if (at->second < shown.size()) shown[at->second].count += count;
    }
    return shown;
}

}  // namespace kov::tool
