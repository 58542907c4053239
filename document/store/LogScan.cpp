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

/// Goes through the frames of a log from the first on, and tells where they cease to be sound.
class LogReader {
  public:
    bool Open(std::string const& path) {
        if (m_file.TryOpen(path, File::Mode::Read) != 0) return false;
        m_size = m_file.Size();
        return m_size > 0;
    }
    /// Empty if the header is sound.
    std::string HeaderFault() {
        if (m_file.ReadAt(0, m_header, sizeof m_header) < sizeof m_header)
            return "its header is not whole";
        std::uint32_t const magic = Big32(m_header);
        m_sum = LogSum{(magic & 1) != 0};
        m_sum.Add(m_header, 24);
        if ((magic & ~1u) != 0x377f0682 || Big32(m_header + 8) != CataloguePageBytes ||
            !m_sum.Is(m_header + 24)) {
            return "its header is damaged";
        }
        return {};
    }
    std::int64_t Frames() const {
        return (m_size - static_cast<std::int64_t>(HeaderBytes)) /
               static_cast<std::int64_t>(FrameBytes);
    }
    /// Reads the next frame; false at the end of the file.
    bool Next() {
        std::int64_t const at = static_cast<std::int64_t>(HeaderBytes) +
                                m_number * static_cast<std::int64_t>(FrameBytes);
        std::size_t const wanted = m_sound ? FrameBytes : FrameHeaderBytes;
        if (m_number >= Frames() || m_file.ReadAt(at, m_frame.data(), wanted) < wanted)
            return false;
        ++m_number;
        if (!m_sound) return true;
        m_sum.Add(m_frame.data(), 8);
        m_sum.Add(m_frame.data() + FrameHeaderBytes, CataloguePageBytes);
        m_sound = IsOfThisLog() && Page() != 0 && m_sum.Is(m_frame.data() + 16);
        return true;
    }
    bool IsSound() const { return m_sound; }
    bool IsOfThisLog() const { return std::memcmp(m_frame.data() + 8, m_header + 16, 8) == 0; }
    bool EndsCommit() const { return Big32(m_frame.data() + 4) != 0; }
    std::uint32_t Page() const { return Big32(m_frame.data()); }
    std::int64_t Number() const { return m_number; }  // of the frame at hand, from 1

  private:
    File m_file;
    std::int64_t m_size = 0;
    unsigned char m_header[HeaderBytes] = {};
    LogSum m_sum{false};
    std::vector<unsigned char> m_frame = std::vector<unsigned char>(FrameBytes);
    bool m_sound = true;
    std::int64_t m_number = 0;
};

}  // namespace

std::string FindCutLog(std::string const& path) {
    LogReader log;
    if (!log.Open(path)) return {};
    std::string const cut = "the log of an earlier session is damaged and was cut: ";
    std::string const fault = log.HeaderFault();
    // The header is synced before there is a frame.
    if (!fault.empty()) return log.Frames() > 0 ? cut + fault : std::string();
    std::int64_t firstBad = 0;
    while (log.Next()) {
        if (log.IsSound()) continue;
        if (firstBad == 0) firstBad = log.Number();
        // What a dropped transaction has left behind has no end of a commit.
        if (log.IsOfThisLog() && log.EndsCommit()) {
            return cut + "frame " + std::to_string(firstBad) +
                   " is not sound, and a commit ends at frame " + std::to_string(log.Number());
        }
    }
    return {};
}

std::set<std::int64_t> PagesInLog(std::string const& path) {
    std::set<std::int64_t> committed, pending;
    LogReader log;
    if (!log.Open(path) || !log.HeaderFault().empty()) return committed;
    while (log.Next() && log.IsSound()) {
        pending.insert(log.Page());
        if (log.EndsCommit()) committed.merge(pending);
    }
    return committed;
}

}  // namespace kov::store
