// The log's layout is SQLite's: a header of 32 bytes (magic, version, page size, sequence, two
// salts, two sums), then frames: a header of 24 bytes (page number, size of the database after a
// commit or 0, the salts, two sums) and a page. Sums run on from frame to frame, over 32-bit words
// in the byte order that the magic names; all fields are big-endian.
#include "document/store/LogScan.h"

#include <cstdint>
#include <cstring>
#include <vector>

#include "document/store/CatalogueVfs.h"
#include "document/store/Files.h"

namespace kov::store {

namespace {

constexpr std::size_t HeaderBytes = 32;
constexpr std::size_t FrameHeaderBytes = 24;
constexpr std::size_t FrameBytes = FrameHeaderBytes + CataloguePageBytes;

std::uint32_t Big32(unsigned char const* at) {
    return std::uint32_t{at[0]} << 24 | std::uint32_t{at[1]} << 16 | std::uint32_t{at[2]} << 8 |
           at[3];
}
std::uint32_t Little32(unsigned char const* at) {
    return std::uint32_t{at[3]} << 24 | std::uint32_t{at[2]} << 16 | std::uint32_t{at[1]} << 8 |
           at[0];
}

struct LogSum {
    bool big;
    std::uint32_t s0 = 0, s1 = 0;
    void Add(unsigned char const* data, std::size_t bytes) {
        for (std::size_t i = 0; i < bytes; i += 8) {
            s0 += (big ? Big32(data + i) : Little32(data + i)) + s1;
            s1 += (big ? Big32(data + i + 4) : Little32(data + i + 4)) + s0;
        }
    }
    bool Is(unsigned char const* at) const { return Big32(at) == s0 && Big32(at + 4) == s1; }
};

}  // namespace

std::string FindCutLog(std::string const& path) {
    File file;
    if (file.TryOpen(path, File::Mode::Read) != 0) return {};
    std::int64_t const size = file.Size();
    if (size == 0) return {};
    unsigned char header[HeaderBytes];
    std::string const cut = "the log of an earlier session is damaged and was cut: ";
    if (file.ReadAt(0, header, sizeof header) < sizeof header) {
        return cut + "its header is not whole";
    }
    std::uint32_t const magic = Big32(header);
    LogSum sum{(magic & 1) != 0};
    sum.Add(header, 24);
    if ((magic & ~1u) != 0x377f0682 || Big32(header + 8) != CataloguePageBytes ||
        !sum.Is(header + 24)) {
        return cut + "its header is damaged";
    }
    std::int64_t const frames =
        (size - static_cast<std::int64_t>(HeaderBytes)) / static_cast<std::int64_t>(FrameBytes);
    std::vector<unsigned char> frame(FrameBytes);
    bool sound = true;
    std::int64_t firstBad = 0;
    for (std::int64_t i = 0; i < frames; ++i) {
        std::int64_t const at =
            static_cast<std::int64_t>(HeaderBytes) + i * static_cast<std::int64_t>(FrameBytes);
        std::size_t const wanted = sound ? FrameBytes : FrameHeaderBytes;
        if (file.ReadAt(at, frame.data(), wanted) < wanted) break;
        bool const ofThisLog = std::memcmp(frame.data() + 8, header + 16, 8) == 0;
        if (sound) {
            sum.Add(frame.data(), 8);
            sum.Add(frame.data() + FrameHeaderBytes, CataloguePageBytes);
            if (ofThisLog && Big32(frame.data()) != 0 && sum.Is(frame.data() + 16)) continue;
            sound = false;
            firstBad = i + 1;
        }
        // What a dropped transaction has left behind has no end of a commit.
        if (ofThisLog && Big32(frame.data() + 4) != 0) {
            return cut + "frame " + std::to_string(firstBad) +
                   " is not sound, and a commit ends at frame " + std::to_string(i + 1);
        }
    }
    return {};
}

}  // namespace kov::store
