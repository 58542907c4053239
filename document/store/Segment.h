// Segment: the bytes of one segment, in a file or in memory. A segment file begins with 64 bytes:
//
//   0  8   magic: "KOVSEG\r\n"
//   8  4   format version, little-endian like all numbers
//   12 4   number of the segment, from 1
//   16 16  uuid of the document
//   32 24  zero
//   56 8   XXH3-64 of bytes 0 to 55
//
// Blocks follow without gaps. Do not change the layout. Memory segments keep the same offsets.
// Private to BlockStore.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace kov::store {

using Uuid = std::array<unsigned char, 16>;
inline constexpr std::int64_t SegmentHeaderBytes = 64;

class Segment {
  public:
    virtual ~Segment() = default;
    virtual void Write(std::int64_t offset, void const* data, std::size_t bytes) = 0;
    /// Reads all of it; throws where the segment ends before.
    virtual void Read(std::int64_t offset, void* out, std::size_t bytes) const = 0;
    /// Makes what was written lasting; answers an errno value.
    virtual int TrySync() = 0;
    /// Gives back what lies behind `size`; answers an errno value.
    virtual int TryTruncate(std::int64_t size) = 0;
    virtual void SetPath(std::string path) = 0;
    /// Forgets the descriptor: for a child that has inherited it.
    virtual void Abandon() = 0;
};

/// The name of a segment's file: "000001.seg".
std::string SegmentName(int number);
/// The number of the segment that has this name; 0 if it is none.
int SegmentNumber(std::string const& name);

std::unique_ptr<Segment> CreateFileSegment(std::string const& path, int number, Uuid const& uuid);
/// Opens a segment and checks its header and that it holds `bytes` bytes. Throws with a text that
/// says what is wrong.
std::unique_ptr<Segment> OpenFileSegment(std::string const& path, int number, Uuid const& uuid,
                                         std::int64_t bytes, bool write);
/// A segment in memory that can grow to `limit` bytes, or less where the process's address space is
/// small; `limit` tells.
std::unique_ptr<Segment> CreateMemorySegment(std::int64_t& limit);

}  // namespace kov::store
