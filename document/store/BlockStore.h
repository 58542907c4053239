// BlockStore: the bulk numbers of a document: append-only segments of immutable blocks, with a
// checksum for each page of a block. Blocks are bytes here; the drawers above know what they hold,
// and keep a Block record for each in the catalogue.
//
// Segment files have a header of 64 bytes (magic, format version, segment number, the document's
// uuid, checksum of these); blocks follow without gaps. A page is checked the first time that it is
// read after opening, in the reader's buffer where the read covers it. Small appends are gathered
// and written together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "document/store/Segment.h"

namespace kov::store {

inline constexpr std::size_t PageBytes = std::size_t{64} << 10;
inline constexpr std::size_t BlockBytes = std::size_t{1} << 20;  // what a block is cut to

/// Where a block lies, and the checksums of its pages.
struct Block {
    int segment = 0;
    std::int64_t offset = 0;
    std::int64_t bytes = 0;
    std::vector<std::uint64_t> sums;
};

/// A stretch of a block and where it goes. Stretches that are neighbours in the segment and in
/// memory are read by one call.
struct BlockRead {
    Block const* block;
    std::int64_t offset;  // in the block
    std::int64_t bytes;
    void* out;
};

/// Whom a damaged page belongs to, for the text of the exception.
struct BlockOwner {
    int distribution;
    int drawer;
};

/// The committed length of a segment, header included.
struct SegmentLength {
    int number;
    std::int64_t bytes;
};

class BlockStore {
  public:
    /// In memory.
    explicit BlockStore(Uuid const& uuid);
    /// Over the segments in `folder`, of which the catalogue knows `lengths`.
    BlockStore(std::string folder, Uuid const& uuid, std::vector<SegmentLength> const& lengths,
               bool write);
    ~BlockStore();
    BlockStore(BlockStore const&) = delete;
    BlockStore& operator=(BlockStore const&) = delete;

    /// Appends `bytes` at `data` as blocks of about BlockBytes, each a whole number of units of
    /// `unit` bytes, in one write where it is large. Throws KOVSimException when the disk refuses;
    /// the context must not commit afterwards.
    std::vector<Block> Append(void const* data, std::size_t bytes, std::size_t unit);
    /// Reads stretches of blocks, own uncommitted ones included. Throws on a damaged page and on a
    /// failing disk.
    void Read(BlockOwner const& owner, std::vector<BlockRead> const& reads);
    void Read(BlockOwner const& owner, BlockRead const* reads, std::size_t count);
    /// Reads a whole block anew and compares every checksum; empty text if it is sound.
    std::string Check(Block const& block);

    // For the context.

    /// Writes and syncs what was appended since the last commit, and answers the new lengths of the
    /// segments concerned.
    std::vector<SegmentLength> Seal();
    /// What was sealed is committed.
    void AfterCommit();
    /// Forgets what was appended since the last commit; its offsets are used again. `keepBytes`:
    /// leaves the files as they are, for a commit that has failed and may yet be found whole.
    void Rollback(bool keepBytes);
    /// The reader stands on another commit.
    void SetLengths(std::vector<SegmentLength> const& lengths);
    /// The document's folder was renamed.
    void MoveTo(std::string folder);
    /// Lets go of all descriptors without closing them.
    void Abandon();
    /// Whether an append has failed since the last rollback.
    bool HasFailed() const { return m_failed; }
    bool HasAppended() const;
    /// Opens each segment anew and looks at its header and length; tells what is wrong.
    void CheckSegments(std::function<void(std::string const&)> const& finding) const;
    std::int64_t Bytes() const;
    int Segments() const { return static_cast<int>(m_segments.size()); }
    /// A new segment begins where one would grow beyond this.
    void SetSegmentLimit(std::int64_t bytes) { m_limit = bytes; }

  private:
    struct Entry;

    Entry& Current(std::int64_t bytes);
    Entry& Known(int number);
    Segment& Opened(Entry& entry);
    void Flush();
    void WriteOut(Entry& entry, void const* data, std::size_t bytes);
    void ReadBytes(Entry& entry, std::int64_t offset, void* out, std::size_t bytes);
    Entry& CheckStretch(BlockRead const& read);
    void ReadGroup(BlockOwner const& owner, Entry& entry, BlockRead const* reads,
                   std::size_t count);
    void ReadFromPage(BlockOwner const& owner, Entry& entry, BlockRead const& read);
    void VerifyPage(BlockOwner const& owner, Entry& entry, Block const& block, std::size_t page,
                    void const* data);
    std::string PathOf(int number) const;

    std::string m_folder;  // empty in memory
    Uuid m_uuid;
    bool m_write;
    std::map<int, Entry> m_segments;
    Entry* m_last = nullptr;     // looked up last
    Entry* m_current = nullptr;  // appended to
    std::vector<char> m_tail;    // small appends at the end of m_current, not written yet
    std::int64_t m_limit;
    bool m_failed = false;
    bool m_folderChanged = false;

    // The page that small stretches are taken from.
    std::unique_ptr<char[]> m_page;
    Block const* m_pageBlock = nullptr;
    std::size_t m_pageNumber = 0;
};

}  // namespace kov::store
