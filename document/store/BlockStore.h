// BlockStore: the bulk numbers of a document: append-only segments of immutable blocks, with a checksum for each page of a
// block. Blocks are bytes here; the drawers above know what they hold, and keep a Block record for each in the catalogue.
//
// Segment files have a header of 64 bytes (magic, format version, segment number, the document's uuid, checksum of these);
// blocks follow without gaps. A page is checked the first time that it is read after opening, in the reader's buffer where
// the read covers it. Small appends are gathered and written together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

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

/// A stretch of a block and where it goes. Stretches that are neighbours in the segment and in memory are read by one call.
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

class BlockStore {
public:
    virtual ~BlockStore() = default;

    /// Appends `bytes` at `data` as blocks of about BlockBytes, each a whole number of units of `unit` bytes, in one write
    /// where it is large. Throws KOVSimException when the disk refuses; the context must not commit afterwards.
    std::vector<Block> Append(void const* data, std::size_t bytes, std::size_t unit);
    /// Reads stretches of blocks, own uncommitted ones included. Throws on a damaged page and on a failing disk.
    void Read(BlockOwner const& owner, std::vector<BlockRead> const& reads);
    /// Reads a whole block anew and compares every checksum; empty text if it is sound.
    std::string Check(Block const& block);
};

}  // namespace kov::store
