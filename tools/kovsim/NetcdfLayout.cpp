#include "NetcdfLayout.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string_view>
#include <system_error>
#include <vector>

#include "Failure.h"

namespace kov::tool {

namespace {

// Sizes of the external types by their number; the classic forms have the first six.
constexpr std::array<std::uint64_t, 12> kTypeSize = {0, 1, 1, 2, 4, 4, 8, 1, 2, 4, 8, 8};
constexpr std::uint64_t kMostName = 256, kMostRank = 1024;
constexpr std::uint64_t kLongest = std::uint64_t{1} << 60;
constexpr std::string_view kHdf5 = "\x89HDF\r\n\x1a\n";

class HeaderReader {
  public:
    HeaderReader(std::string const& path, std::uint64_t length)
        : m_path(path), m_length(length), m_stream(path, std::ios::binary) {
        if (!m_stream) throw Failure(path + ": cannot be opened for reading");
    }

    // The count of whole records.
    std::uint64_t Check();

  private:
    enum Tag : std::uint32_t { kAbsent = 0, kDimensions = 10, kVariables = 11, kAttributes = 12 };

    [[noreturn]] void Fail(std::string const& what) const {
        throw Failure(m_path + ": damaged netCDF header at byte " + std::to_string(m_at) + ": " +
                      what);
    }
    std::uint64_t Number(int bytes) {
        std::array<char, 8> buffer{};
        if (!m_stream.read(buffer.data(), bytes)) Fail("it ends within the header");
        std::uint64_t value = 0;
        for (int i = 0; i < bytes; ++i) {
            value = value << 8 | static_cast<unsigned char>(buffer[static_cast<std::size_t>(i)]);
        }
        m_at += static_cast<std::uint64_t>(bytes);
        return value;
    }
    std::uint64_t Count() { return Number(m_wide ? 8 : 4); }
    void Skip(std::uint64_t bytes) {
        std::uint64_t const padded = (bytes + 3) / 4 * 4;
        if (bytes > m_length || padded > m_length - m_at) Fail("it ends within the header");
        m_at += padded;
        m_stream.seekg(static_cast<std::streamoff>(m_at));
    }
    std::string Name() {
        std::uint64_t const length = Count();
        if (length == 0 || length > kMostName)
            Fail("a name of " + std::to_string(length) + " bytes");
        std::string name(length, '\0');
        if (!m_stream.read(name.data(), static_cast<std::streamsize>(length))) {
            Fail("it ends within a name");
        }
        m_stream.seekg(static_cast<std::streamoff>(m_at));
        Skip(length);
        if (name.find('\0') != std::string::npos) Fail("a zero byte in a name");
        return name;
    }
    std::uint64_t Type() {
        std::uint64_t const type = Number(4);
        if (type < 1 || type > (m_wide ? 11u : 6u)) Fail("type " + std::to_string(type));
        return type;
    }
    // The count of a list that has this tag, or is absent.
    std::uint64_t List(Tag tag) {
        std::uint64_t const found = Number(4), count = Count();
        if (found == kAbsent && count == 0) return 0;
        if (found != tag)
            Fail("list " + std::to_string(found) + " in place of " + std::to_string(tag));
        return count;
    }
    void Dimensions();
    void Attributes();
    void Variable();
    std::uint64_t WholeRecords() const;

    struct Extent {
        std::string name;
        std::uint64_t begin = 0;
        std::uint64_t bytes = 0;  // of one record where it has records
        bool records = false;
        bool unpadded = false;  // of a type narrower than 4 bytes
    };

    std::string const& m_path;
    std::uint64_t m_length;
    std::ifstream m_stream;
    std::uint64_t m_at = 0;
    bool m_wide = false;  // CDF-5
    bool m_far = false;   // offsets of 64 bits
    std::uint64_t m_records = 0;
    std::vector<std::uint64_t> m_dimensions;
    std::vector<Extent> m_extents;
};

std::uint64_t HeaderReader::Check() {
    auto const version = Number(4) & 0xff;
    m_wide = version == 5;
    m_far = version != 1;
    m_records = Count();
    if (m_records == (m_wide ? std::numeric_limits<std::uint64_t>::max() : 0xffffffffu)) {
        throw Failure(m_path + ": the count of records is open: it is still being written");
    }
    Dimensions();
    Attributes();
    std::uint64_t const variables = List(kVariables);
    for (std::uint64_t i = 0; i < variables; ++i) Variable();
    return WholeRecords();
}

void HeaderReader::Dimensions() {
    std::uint64_t const count = List(kDimensions);
    bool open = false;
    for (std::uint64_t i = 0; i < count; ++i) {
        std::string const name = Name();
        std::uint64_t const length = Count();
        if (length > kLongest) Fail("dimension " + name + " of length " + std::to_string(length));
        if (length == 0 && open) Fail("a second dimension of open length, " + name);
        open = open || length == 0;
        m_dimensions.push_back(length);
    }
}

void HeaderReader::Attributes() {
    std::uint64_t const count = List(kAttributes);
    for (std::uint64_t i = 0; i < count; ++i) {
        std::string const name = Name();
        std::uint64_t const size = kTypeSize[Type()], length = Count();
        if (length > m_length / size) Fail("attribute " + name + " is longer than the file");
        Skip(length * size);
    }
}

void HeaderReader::Variable() {
    Extent extent;
    extent.name = Name();
    std::uint64_t const rank = Count();
    if (rank > kMostRank) Fail(extent.name + " has " + std::to_string(rank) + " dimensions");
    std::uint64_t items = 1;
    for (std::uint64_t d = 0; d < rank; ++d) {
        std::uint64_t const dimension = Count();
        if (dimension >= m_dimensions.size()) {
            Fail(extent.name + " has dimension " + std::to_string(dimension) + " of " +
                 std::to_string(m_dimensions.size()));
        }
        std::uint64_t const length = m_dimensions[dimension];
        if (length == 0) {
            if (d > 0) Fail(extent.name + " has its open dimension behind another");
            extent.records = true;
            continue;
        }
        if (items > kLongest / length) Fail(extent.name + " is too large");
        items *= length;
    }
    Attributes();
    std::uint64_t const type = Type();
    Count();  // the size as written: of no use, since it need not be right
    extent.begin = Number(m_far ? 8 : 4);
    if (items > kLongest / kTypeSize[type] || extent.begin > kLongest) {
        Fail(extent.name + " is too large");
    }
    extent.bytes = items * kTypeSize[type];
    extent.unpadded = kTypeSize[type] < 4;
    m_extents.push_back(std::move(extent));
}

// Where the data end, by the offsets: records lie one behind the other, each with a part for each
// variable, all parts filled up to 4 bytes unless there is but one.
std::uint64_t HeaderReader::WholeRecords() const {
    std::uint64_t record = 0;
    int withRecords = 0;
    for (Extent const& extent : m_extents) {
        if (!extent.records) continue;
        ++withRecords;
        record += (extent.bytes + 3) / 4 * 4;
        if (record > kLongest) Fail("its records are too large");
    }
    if (withRecords == 1) {
        for (Extent const& extent : m_extents) {
            if (extent.records && extent.unpadded) record = extent.bytes;
        }
    }
    std::uint64_t whole = m_records;
    for (Extent const& extent : m_extents) {
        if (extent.bytes == 0) continue;
        std::uint64_t const end = extent.begin + extent.bytes;
        if (extent.records) {
            whole = std::min(whole, end > m_length ? 0 : (m_length - end) / record + 1);
        } else if (end > m_length) {
            throw Failure(m_path + ": " + extent.name + ": ends at byte " + std::to_string(end) +
                          " of a file of " + std::to_string(m_length) +
                          " bytes: it was cut short, or is still being written");
        }
    }
    return whole;
}

bool IsClassic(std::string_view start) {
    return start.size() > 3 && start.substr(0, 3) == "CDF" &&
           (start[3] == 1 || start[3] == 2 || start[3] == 5);
}

}  // namespace

bool LooksLikeNetcdf(std::string_view start) {
    return start.substr(0, kHdf5.size()) == kHdf5 || IsClassic(start);
}

std::uint64_t CheckNetcdfLayout(std::string const& path) {
    std::error_code error;
    if (!std::filesystem::exists(path, error)) throw Failure(path + ": there is no such file");
    if (!std::filesystem::is_regular_file(path, error)) throw Failure(path + ": is not a file");
    std::uint64_t const length = std::filesystem::file_size(path, error);
    if (error) throw Failure(path + ": " + error.message());

    std::array<char, 8> bytes{};
    {
        std::ifstream stream(path, std::ios::binary);
        if (!stream) throw Failure(path + ": cannot be opened for reading");
        stream.read(bytes.data(), bytes.size());
    }
    std::string_view const magic(bytes.data(), bytes.size());
    if (magic == kHdf5) return std::numeric_limits<std::uint64_t>::max();
    if (!IsClassic(magic)) throw Failure(path + ": is not a netCDF file");
    return HeaderReader(path, length).Check();
}

}  // namespace kov::tool
