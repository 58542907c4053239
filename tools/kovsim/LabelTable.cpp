#include "LabelTable.h"

#include <algorithm>
#include <cstring>

namespace kov::tool {

int LabelTable::FindInList(Page const& page, unsigned at) {
    std::uint16_t const* const begin = page.offsets.get();
    std::uint16_t const* const end = begin + page.count;
    std::uint16_t const* const found = std::lower_bound(begin, end, at);
    return found != end && *found == at ? page.ordinals[static_cast<std::size_t>(found - begin)]
                                        : None;
}

LabelTable::Page& LabelTable::MakePage(int label) {
    unsigned const page = static_cast<unsigned>(label) >> kPageBits;
    unsigned const at = page % kChunkPages;
    if (page / kChunkPages >= m_chunks.size()) m_chunks.resize(page / kChunkPages + 1);
    Chunk& chunk = m_chunks[page / kChunkPages];
    if (at >= chunk.size) {
        unsigned const size = std::min(kChunkPages, std::max(at + 1, 2 * chunk.size));
        auto pages = std::make_unique<Page[]>(size);
        std::move(chunk.pages.get(), chunk.pages.get() + chunk.size, pages.get());
        chunk.pages = std::move(pages);
        chunk.size = size;
    }
    return chunk.pages[at];
}

bool LabelTable::Insert(int label, int ordinal) {
    Page* const found = const_cast<Page*>(PageOf(label));
    Page& page = found != nullptr ? *found : MakePage(label);
    unsigned const at = OffsetOf(label);
    bool inserted;
    if (page.ordinals == nullptr) {
        inserted = InsertIntoRun(page, at, ordinal);
    } else if (page.offsets != nullptr) {
        inserted = InsertIntoList(page, at, ordinal);
    } else {
        inserted = page.ordinals[at] == None;
        if (inserted) page.ordinals[at] = ordinal;
        page.count = static_cast<std::uint16_t>(page.count + (inserted ? 1 : 0));
    }
    if (inserted) ++m_size;
    return inserted;
}

bool LabelTable::InsertIntoRun(Page& page, unsigned at, int ordinal) {
    if (page.count == 0) {
        page.first = static_cast<std::uint16_t>(at);
        page.base = ordinal;
        page.count = 1;
        return true;
    }
    unsigned const end = page.first + static_cast<unsigned>(page.count);
    if (at == end && ordinal == page.base + page.count) {
        ++page.count;
        return true;
    }
    if (at + 1 == page.first && ordinal == page.base - 1) {
        --page.first;
        --page.base;
        ++page.count;
        return true;
    }
    if (at >= page.first && at < end) return false;
    // The run becomes a list, and perhaps at once an array.
    unsigned const count = page.count;
    GrowList(page, std::max(8U, std::min(kMostInList, count + count / 4 + 1)));
    for (unsigned i = 0; i < count; ++i) {
        page.offsets[i] = static_cast<std::uint16_t>(page.first + i);
        page.ordinals[i] = page.base + static_cast<int>(i);
    }
    return InsertIntoList(page, at, ordinal);
}

bool LabelTable::InsertIntoList(Page& page, unsigned at, int ordinal) {
    unsigned const count = page.count;
    std::uint16_t* const begin = page.offsets.get();
    unsigned place = count;
    if (begin[count - 1] >= at) {
        place = static_cast<unsigned>(std::lower_bound(begin, begin + count, at) - begin);
        if (begin[place] == at) return false;
    }
    if (count >= kMostInList) {
        MakeArray(page);
        page.ordinals[at] = ordinal;
        ++page.count;
        return true;
    }
    if (count == page.capacity) GrowList(page, std::min(kMostInList, count + count / 4 + 1));
    std::uint16_t* const offsets = page.offsets.get();
    int* const ordinals = page.ordinals.get();
    std::memmove(offsets + place + 1, offsets + place, (count - place) * sizeof *offsets);
    std::memmove(ordinals + place + 1, ordinals + place, (count - place) * sizeof *ordinals);
    offsets[place] = static_cast<std::uint16_t>(at);
    ordinals[place] = ordinal;
    ++page.count;
    return true;
}

void LabelTable::GrowList(Page& page, unsigned capacity) {
    // A long run has more labels than a list may; the list is short-lived then.
    capacity = std::max<unsigned>(capacity, page.count);
    auto offsets = std::make_unique<std::uint16_t[]>(capacity);
    auto ordinals = std::make_unique<int[]>(capacity);
    if (page.offsets != nullptr) {
        std::copy_n(page.offsets.get(), page.count, offsets.get());
        std::copy_n(page.ordinals.get(), page.count, ordinals.get());
    }
    page.offsets = std::move(offsets);
    page.ordinals = std::move(ordinals);
    page.capacity = static_cast<std::uint16_t>(capacity);
}

void LabelTable::MakeArray(Page& page) {
    auto ordinals = std::make_unique<int[]>(kPageSize);
    std::fill_n(ordinals.get(), kPageSize, None);
    for (unsigned i = 0; i < page.count; ++i) ordinals[page.offsets[i]] = page.ordinals[i];
    page.ordinals = std::move(ordinals);
    page.offsets.reset();
    page.capacity = 0;
}

int LabelTable::LabelOf(int ordinal) const {
    for (unsigned chunk = 0; chunk < m_chunks.size(); ++chunk) {
        for (unsigned p = 0; p < m_chunks[chunk].size; ++p) {
            Page const& page = m_chunks[chunk].pages[p];
            auto const start = static_cast<int>((chunk * kChunkPages + p) << kPageBits);
            if (page.ordinals == nullptr) {
                auto const behind = static_cast<unsigned>(ordinal - page.base);
                if (behind < page.count) return start + page.first + static_cast<int>(behind);
                continue;
            }
            unsigned const count = page.offsets == nullptr ? kPageSize : page.count;
            for (unsigned i = 0; i < count; ++i) {
                if (page.ordinals[i] != ordinal) continue;
                return start + static_cast<int>(page.offsets == nullptr ? i : page.offsets[i]);
            }
        }
    }
    return 0;
}

void LabelTable::MoveTo(KOVBasVector<int>& labels, KOVBasVector<int>& ordinals) {
    labels = KOVBasVector<int>();
    ordinals = KOVBasVector<int>();
    labels.Reserve(m_size);
    ordinals.Reserve(m_size);
    for (unsigned chunk = 0; chunk < m_chunks.size(); ++chunk) {
        for (unsigned p = 0; p < m_chunks[chunk].size; ++p) {
            Page const page = std::move(m_chunks[chunk].pages[p]);
            unsigned const start = ((chunk * kChunkPages) + p) << kPageBits;
            auto const add = [&](unsigned at, int ordinal) {
                labels.PushBack(static_cast<int>(start + at));
                ordinals.PushBack(ordinal);
            };
            if (page.ordinals == nullptr) {
                for (unsigned i = 0; i < page.count; ++i) {
                    add(page.first + i, page.base + static_cast<int>(i));
                }
            } else if (page.offsets != nullptr) {
                for (unsigned i = 0; i < page.count; ++i) add(page.offsets[i], page.ordinals[i]);
            } else {
                for (unsigned i = 0; i < kPageSize; ++i) {
                    if (page.ordinals[i] != None) add(i, page.ordinals[i]);
                }
            }
        }
        m_chunks[chunk] = Chunk();
    }
    std::vector<Chunk>().swap(m_chunks);
    m_size = 0;
}

}  // namespace kov::tool
