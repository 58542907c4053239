#include "document/store/BlockStore.h"

#include <algorithm>
#include <cstring>
#include <exception>

#include "document/store/Errors.h"
#include "document/store/Files.h"
#include "document/store/PageSums.h"
#include "document/store/SegmentEntry.h"

namespace kov::store {

namespace {

constexpr std::int64_t SegmentLimit = std::int64_t{4} << 30;
constexpr std::size_t SmallAppend = std::size_t{256} << 10;  // what is shorter is gathered
constexpr std::size_t TailBytes = std::size_t{4} << 20;  // at which the gathered tail is written

void SumPages(Block& block, char const* data) {
    auto const bytes = static_cast<std::size_t>(block.bytes);
    block.sums.reserve((bytes + PageBytes - 1) / PageBytes);
    for (std::size_t at = 0; at < bytes; at += PageBytes) {
        block.sums.push_back(Sum(data + at, std::min(PageBytes, bytes - at)));
    }
}

}  // namespace

BlockStore::BlockStore(Uuid const& uuid) : m_uuid(uuid), m_write(true), m_limit(SegmentLimit) {}

BlockStore::BlockStore(std::string folder, Uuid const& uuid,
                       std::vector<SegmentLength> const& lengths, bool write)
    : m_folder(std::move(folder)), m_uuid(uuid), m_write(write), m_limit(SegmentLimit) {
    SetLengths(lengths);
}

BlockStore::~BlockStore() = default;

void BlockStore::SetLengths(std::vector<SegmentLength> const& lengths) {
    for (SegmentLength const& known : lengths) {
        Entry& entry = m_segments[known.number];
        entry.number = known.number;
        entry.committed = entry.length = entry.written = known.bytes;
        entry.limit = m_limit;
    }
    m_current = m_segments.empty() ? nullptr : &m_segments.rbegin()->second;
}

std::string BlockStore::PathOf(int number) const { return m_folder + "/" + SegmentName(number); }

Segment& BlockStore::Opened(Entry& entry) {
    if (!entry.segment) {
        entry.segment =
            OpenFileSegment(PathOf(entry.number), entry.number, m_uuid, entry.committed, m_write);
    }
    return *entry.segment;
}

/// The segment that takes the next `bytes`: a new one where the last would grow too long.
BlockStore::Entry& BlockStore::Current(std::int64_t bytes) {
    if (m_current && (m_current->length == SegmentHeaderBytes ||
                      m_current->length + bytes <= m_current->limit)) {
        return *m_current;
    }
    if (m_current) Flush();
    int const number = m_current ? m_current->number + 1 : 1;
    std::int64_t limit = m_limit;
    std::unique_ptr<Segment> segment;
    if (m_folder.empty()) {
        limit = std::max(limit, bytes + SegmentHeaderBytes);
        segment = CreateMemorySegment(limit);
    } else {
        segment = CreateFileSegment(PathOf(number), number, m_uuid);
        m_folderChanged = true;
    }
    Entry& entry = m_segments[number];
    entry.number = number;
    entry.length = entry.written = SegmentHeaderBytes;
    entry.limit = limit;
    entry.segment = std::move(segment);
    m_current = &entry;
    return entry;
}

std::vector<Block> BlockStore::Append(void const* data, std::size_t bytes, std::size_t unit) {
    if (!m_write) Fail("cannot append bulk numbers: the document is read-only");
    if (unit == 0 || bytes % unit != 0)
        Fail("cannot append bulk numbers: they are no whole number of rows");
    if (m_failed) Fail("cannot append bulk numbers: writing has failed before in this transaction");
    std::vector<Block> blocks;
    if (bytes == 0) return blocks;
    // Blocks of one append are as equal as rows allow.
    std::size_t const units = bytes / unit;
    std::size_t const wanted = std::max<std::size_t>(1, (bytes + BlockBytes / 2) / BlockBytes);
    std::size_t const count = std::min(units, wanted);
    blocks.reserve(count);
    auto const* const from = static_cast<char const*>(data);
    try {
        std::size_t first = 0;
        for (std::size_t i = 0; i < count; ++i) {
            std::size_t const last = units / count * (i + 1) + std::min(units % count, i + 1);
            Block block;
            block.bytes = static_cast<std::int64_t>((last - first) * unit);
            char const* const at = from + first * unit;
            SumPages(block, at);
            Entry& entry = Current(block.bytes);
            block.segment = entry.number;
            block.offset = entry.length;
            if (bytes < SmallAppend) {
                m_tail.insert(m_tail.end(), at, at + block.bytes);
                entry.length += block.bytes;
                if (m_tail.size() >= TailBytes) Flush();
            } else {
                Flush();
                WriteOut(entry, at, static_cast<std::size_t>(block.bytes));
                entry.length = entry.written;
            }
            blocks.push_back(std::move(block));
            first = last;
        }
    } catch (...) {
        m_failed = true;
        throw;
    }
    return blocks;
}

void BlockStore::WriteOut(Entry& entry, void const* data, std::size_t bytes) {
    Opened(entry).Write(entry.written, data, bytes);
    entry.written += static_cast<std::int64_t>(bytes);
}

void BlockStore::Flush() {
    if (m_tail.empty()) return;
    WriteOut(*m_current, m_tail.data(), m_tail.size());
    m_tail.clear();
}

bool BlockStore::HasAppended() const {
    return std::any_of(m_segments.begin(), m_segments.end(),
                       [](auto const& s) { return s.second.length != s.second.committed; });
}

std::vector<SegmentLength> BlockStore::Seal() {
    if (m_failed) Fail("bulk numbers could not be written in this transaction");
    Flush();
    std::vector<SegmentLength> lengths;
    for (auto& [number, entry] : m_segments) {
        if (entry.length == entry.committed) continue;
        if (int const error = entry.segment->TrySync()) FailFile("sync", PathOf(number), error);
        lengths.push_back({number, entry.length});
    }
    if (m_folderChanged) {
        if (int const error = TrySyncFolder(m_folder)) FailFile("sync", m_folder, error);
        m_folderChanged = false;
    }
    return lengths;
}

void BlockStore::AfterCommit() {
    for (auto& [number, entry] : m_segments) entry.committed = entry.length;
}

void BlockStore::Rollback(bool keepBytes) {
    m_failed = false;
    m_tail.clear();
    m_pageBlock = nullptr;
    m_last = nullptr;
    for (auto at = m_segments.begin(); at != m_segments.end();) {
        Entry& entry = at->second;
        if (entry.committed == 0) {
            entry.segment.reset();
            if (!m_folder.empty() && !keepBytes) TryRemoveFile(PathOf(entry.number));
            at = m_segments.erase(at);
            continue;
        }
        // Only to give the space back: what lies behind the end is not looked at.
        if (entry.written > entry.committed && !keepBytes)
            entry.segment->TryTruncate(entry.committed);
        if (entry.length > entry.committed) entry.verified.ForgetFrom(entry.committed);
        entry.length = entry.written = entry.committed;
        ++at;
    }
    m_current = m_segments.empty() ? nullptr : &m_segments.rbegin()->second;
}

void BlockStore::CheckSegments(std::function<void(std::string const&)> const& finding) const {
    if (m_folder.empty()) return;
    for (auto const& [number, entry] : m_segments) {
        try {
            OpenFileSegment(PathOf(number), number, m_uuid, entry.committed, false);
        } catch (std::exception const& e) {
            finding(e.what());
        }
    }
}

void BlockStore::MoveTo(std::string folder) {
    m_folder = std::move(folder);
    for (auto& [number, entry] : m_segments) {
        if (entry.segment) entry.segment->SetPath(PathOf(number));
    }
}

void BlockStore::Abandon() {
    for (auto& [number, entry] : m_segments) {
        if (entry.segment) entry.segment->Abandon();
    }
}

std::int64_t BlockStore::Bytes() const {
    std::int64_t total = 0;
    for (auto const& [number, entry] : m_segments) total += entry.length;
    return total;
}

}  // namespace kov::store
