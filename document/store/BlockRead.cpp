// Reading of blocks. A group is a run of stretches that are neighbours in the segment and in
// memory: one call fetches it, and pages of it that it covers whole are checked where they have
// landed. Many small stretches out of one page are copied from that page, fetched once.
#include <algorithm>
#include <cstring>

#include "document/store/BlockStore.h"
#include "document/store/Errors.h"
#include "document/store/PageSums.h"
#include "document/store/SegmentEntry.h"

namespace kov::store {

namespace {

constexpr auto Page = static_cast<std::int64_t>(PageBytes);
constexpr std::int64_t ChunkBytes = 64 * Page;  // what one word of verified bits stands for

constexpr std::int64_t SmallStretch = 4096;
constexpr std::size_t DenseStretches = 12;  // so many out of one page make its fetch worth while

std::int64_t PageCount(Block const& block) { return (block.bytes + Page - 1) / Page; }

std::int64_t PageSize(Block const& block, std::int64_t page) {
    return std::min(Page, block.bytes - page * Page);
}

bool Touches(BlockRead const& a, BlockRead const& b) {
    return a.block->segment == b.block->segment &&
           a.block->offset + a.offset + a.bytes == b.block->offset + b.offset &&
           static_cast<char*>(a.out) + a.bytes == b.out;
}

bool InOnePage(BlockRead const& a, BlockRead const& b) {
    return a.block == b.block && a.offset / Page == (a.offset + a.bytes - 1) / Page &&
           b.offset / Page == a.offset / Page;
}

bool IsVerified(VerifiedPages& verified, Block const& block, std::int64_t page) {
    return verified.Bits(block.offset + page / 64 * ChunkBytes) >> (page % 64) & 1;
}

void SetVerified(VerifiedPages& verified, Block const& block, std::int64_t page) {
    verified.Bits(block.offset + page / 64 * ChunkBytes) |= std::uint64_t{1} << (page % 64);
}

}  // namespace

BlockStore::Entry& BlockStore::Known(int number) {
    if (m_last && m_last->number == number) return *m_last;
    auto const at = m_segments.find(number);
    if (at == m_segments.end()) {
        Fail(m_folder + ": a block lies in segment " + std::to_string(number) +
             ", which the document does not have");
    }
    m_last = &at->second;
    return *m_last;
}

BlockStore::Entry& BlockStore::CheckStretch(BlockRead const& read) {
    Block const& block = *read.block;
    Entry& entry = Known(block.segment);
    if (block.offset < SegmentHeaderBytes || block.bytes < 0 ||
        block.bytes > entry.length - block.offset ||
        static_cast<std::int64_t>(block.sums.size()) != PageCount(block)) [[unlikely]] {
        Fail(PathOf(block.segment) + ": a block at byte " + std::to_string(block.offset) +
             " lies outside its segment");
    }
    if (read.offset < 0 || read.bytes < 0 || read.bytes > block.bytes - read.offset) [[unlikely]] {
        Fail(PathOf(block.segment) + ": cannot read outside the block at byte " +
             std::to_string(block.offset));
    }
    return entry;
}

void BlockStore::ReadBytes(Entry& entry, std::int64_t offset, void* out, std::size_t bytes) {
    auto const end = offset + static_cast<std::int64_t>(bytes);
    std::int64_t const stored = std::clamp(entry.written - offset, std::int64_t{0}, end - offset);
    if (stored > 0) Opened(entry).Read(offset, out, static_cast<std::size_t>(stored));
    if (stored == end - offset) return;
    std::memcpy(static_cast<char*>(out) + stored, m_tail.data() + (offset + stored - entry.written),
                static_cast<std::size_t>(end - offset - stored));
}

void BlockStore::VerifyPage(BlockOwner const& owner, Entry& entry, Block const& block,
                            std::size_t page, void const* data) {
    auto const number = static_cast<std::int64_t>(page);
    if (Sum(data, static_cast<std::size_t>(PageSize(block, number))) != block.sums[page]) {
        Fail(PathOf(block.segment) + " is damaged: the checksum of page " + std::to_string(number) +
             " of the block at byte " + std::to_string(block.offset) +
             " does not fit (distribution " + std::to_string(owner.distribution) + ", drawer " +
             std::to_string(owner.drawer) + ")");
    }
    SetVerified(entry.verified, block, number);
}

void BlockStore::Read(BlockOwner const& owner, std::vector<BlockRead> const& reads) {
    Read(owner, reads.data(), reads.size());
}

void BlockStore::Read(BlockOwner const& owner, BlockRead const* reads, std::size_t count) {
    m_pageBlock = nullptr;
    std::size_t i = 0;
    while (i < count) {
        BlockRead const& first = reads[i];
        Entry& entry = CheckStretch(first);
        if (first.bytes == 0) {
            ++i;
            continue;
        }
        bool const cached = first.block == m_pageBlock &&
                            first.offset / Page == static_cast<std::int64_t>(m_pageNumber) &&
                            (first.offset + first.bytes - 1) / Page == first.offset / Page;
        if (cached) {
            std::memcpy(first.out, m_page.get() + first.offset % Page,
                        static_cast<std::size_t>(first.bytes));
            ++i;
            continue;
        }
        std::size_t end = i + 1;
        while (end < count) {
            CheckStretch(reads[end]);
            if (reads[end].bytes == 0 || !Touches(reads[end - 1], reads[end])) break;
            ++end;
        }
        if (end == i + 1 && first.bytes <= SmallStretch && i + DenseStretches < count &&
            InOnePage(first, reads[i + DenseStretches])) {
            ReadFromPage(owner, entry, first);
        } else {
            ReadGroup(owner, entry, reads + i, end - i);
        }
        i = end;
    }
    m_pageBlock = nullptr;
}

/// Fetches the page that holds the stretch, and leaves it for the stretches that follow.
void BlockStore::ReadFromPage(BlockOwner const& owner, Entry& entry, BlockRead const& read) {
    Block const& block = *read.block;
    std::int64_t const page = read.offset / Page;
    if (!m_page) m_page = std::make_unique<char[]>(PageBytes);
    m_pageBlock = nullptr;
    ReadBytes(entry, block.offset + page * Page, m_page.get(),
              static_cast<std::size_t>(PageSize(block, page)));
    if (!IsVerified(entry.verified, block, page)) {
        VerifyPage(owner, entry, block, static_cast<std::size_t>(page), m_page.get());
    }
    m_pageBlock = &block;
    m_pageNumber = static_cast<std::size_t>(page);
    std::memcpy(read.out, m_page.get() + read.offset % Page, static_cast<std::size_t>(read.bytes));
}

void BlockStore::ReadGroup(BlockOwner const& owner, Entry& entry, BlockRead const* reads,
                           std::size_t count) {
    BlockRead const& last = reads[count - 1];
    std::int64_t const begin = reads[0].block->offset + reads[0].offset;
    std::int64_t const end = last.block->offset + last.offset + last.bytes;
    auto* const out = static_cast<char*>(reads[0].out);
    ReadBytes(entry, begin, out, static_cast<std::size_t>(end - begin));
    for (std::size_t i = 0; i < count; ++i) {
        BlockRead const& read = reads[i];
        Block const& block = *read.block;
        std::int64_t const lastPage = (read.offset + read.bytes - 1) / Page;
        for (std::int64_t page = read.offset / Page; page <= lastPage; ++page) {
            if (IsVerified(entry.verified, block, page)) continue;
            std::int64_t const at = block.offset + page * Page;
            std::int64_t const bytes = PageSize(block, page);
            if (at >= begin && at + bytes <= end) {
                VerifyPage(owner, entry, block, static_cast<std::size_t>(page), out + (at - begin));
                continue;
            }
            // The group has a part of the page: take that from the page that is checked.
            if (!m_page) m_page = std::make_unique<char[]>(PageBytes);
            m_pageBlock = nullptr;
            ReadBytes(entry, at, m_page.get(), static_cast<std::size_t>(bytes));
            VerifyPage(owner, entry, block, static_cast<std::size_t>(page), m_page.get());
            std::int64_t const from = std::max(at, begin);
            std::int64_t const to = std::min(at + bytes, end);
            std::memcpy(out + (from - begin), m_page.get() + (from - at),
                        static_cast<std::size_t>(to - from));
        }
    }
}

std::string BlockStore::Check(Block const& block) {
    try {
        Entry& entry = CheckStretch({&block, 0, 0, nullptr});
        if (!m_page) m_page = std::make_unique<char[]>(PageBytes);
        m_pageBlock = nullptr;
        for (std::int64_t page = 0; page < PageCount(block); ++page) {
            auto const bytes = static_cast<std::size_t>(PageSize(block, page));
            ReadBytes(entry, block.offset + page * Page, m_page.get(), bytes);
            if (Sum(m_page.get(), bytes) != block.sums[static_cast<std::size_t>(page)]) {
                return PathOf(block.segment) + " is damaged: the checksum of page " +
                       std::to_string(page) + " of the block at byte " +
                       std::to_string(block.offset) + " does not fit";
            }
        }
    } catch (std::exception const& e) {
        return e.what();
    }
    return {};
}

}  // namespace kov::store
