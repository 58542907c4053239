#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "document/store/CatalogueTables.h"
#include "document/store/Errors.h"
#include "document/store/Files.h"
#include "document/store/PageSums.h"
#include "document/store/Segment.h"

namespace kov::store {

namespace {

constexpr char Magic[8] = {'K', 'O', 'V', 'S', 'E', 'G', '\r', '\n'};
constexpr std::size_t SumPlace = 56;
// The disk is kept busy while a large transaction goes on: 480 MB are synced in 0.03 s then, and in
// 0.4 s otherwise.
constexpr std::int64_t WriteBackBytes = std::int64_t{32} << 20;

using Header = std::array<unsigned char, SegmentHeaderBytes>;

void Put32(unsigned char* out, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) out[i] = static_cast<unsigned char>(value >> (8 * i));
}

std::uint32_t Get32(unsigned char const* in) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value |= static_cast<std::uint32_t>(in[i]) << (8 * i);
    return value;
}

std::uint64_t HeaderSum(Header const& header) { return Sum(header.data(), SumPlace); }

Header MakeHeader(int number, Uuid const& uuid) {
    Header header{};
    std::memcpy(header.data(), Magic, sizeof Magic);
    Put32(&header[8], FormatVersion);
    Put32(&header[12], static_cast<std::uint32_t>(number));
    std::copy(uuid.begin(), uuid.end(), &header[16]);
    std::uint64_t const sum = HeaderSum(header);
    Put32(&header[SumPlace], static_cast<std::uint32_t>(sum));
    Put32(&header[SumPlace + 4], static_cast<std::uint32_t>(sum >> 32));
    return header;
}

void CheckHeader(std::string const& path, Header const& header, int number, Uuid const& uuid) {
    if (std::memcmp(header.data(), Magic, sizeof Magic) != 0)
        Fail(path + " is no segment of a document");
    std::uint64_t const sum = HeaderSum(header);
    if (Get32(&header[SumPlace]) != static_cast<std::uint32_t>(sum) ||
        Get32(&header[SumPlace + 4]) != static_cast<std::uint32_t>(sum >> 32)) {
        Fail("the header of " + path + " is damaged: its checksum does not fit");
    }
    if (Get32(&header[8]) > static_cast<std::uint32_t>(FormatVersion)) {
        Fail(path + " has format version " + std::to_string(Get32(&header[8])) +
             "; this program knows versions up to " + std::to_string(FormatVersion));
    }
    if (Get32(&header[12]) != static_cast<std::uint32_t>(number)) {
        Fail(path + " is segment " + std::to_string(Get32(&header[12])) +
             " of its document, under a wrong name");
    }
    if (!std::equal(uuid.begin(), uuid.end(), &header[16]))
        Fail(path + " belongs to another document");
}

class FileSegment : public Segment {
  public:
    explicit FileSegment(File file) : m_file(std::move(file)) {}

    void Write(std::int64_t offset, void const* data, std::size_t bytes) override {
        m_file.WriteAt(offset, data, bytes);
        std::int64_t const end = offset + static_cast<std::int64_t>(bytes);
        if (end < m_handedOver)
            m_handedOver = offset;  // a dropped transaction's offsets are used again
        if (m_handedOver == 0) m_handedOver = offset;
        if (end - m_handedOver < WriteBackBytes) return;
        m_file.BeginWriteBack(m_handedOver, end - m_handedOver);
        m_handedOver = end;
    }
    void Read(std::int64_t offset, void* out, std::size_t bytes) const override {
        std::size_t const got = m_file.ReadAt(offset, out, bytes);
        if (got < bytes) {
            Fail(m_file.Path() + " has been cut short: it ends at byte " +
                 std::to_string(offset + static_cast<std::int64_t>(got)) + " inside a block");
        }
    }
    int TrySync() override { return m_file.TrySync(); }
    int TryTruncate(std::int64_t size) override { return m_file.TryTruncate(size); }
    void SetPath(std::string path) override { m_file.SetPath(std::move(path)); }
    void Abandon() override { m_file.Abandon(); }

  private:
    File m_file;
    std::int64_t m_handedOver = 0;  // up to where the system was told to write to the disk
};

}  // namespace

std::string SegmentName(int number) {
    char name[32];
    std::snprintf(name, sizeof name, "%06d.seg", number);
    return name;
}

int SegmentNumber(std::string const& name) {
    std::size_t const digits = name.find_first_not_of("0123456789");
    if (digits < 6 || digits > 9 || name.substr(digits) != ".seg") return 0;
    int const number = std::stoi(name.substr(0, digits));
    return SegmentName(number) == name ? number : 0;
}

std::unique_ptr<Segment> CreateFileSegment(std::string const& path, int number, Uuid const& uuid) {
    File file;
    int error = file.TryCreate(path);
    // Left by a transaction that was dropped.
    if (error == EEXIST && (error = TryRemoveFile(path)) == 0) error = file.TryCreate(path);
    if (error) FailFile("create", path, error);
    Header const header = MakeHeader(number, uuid);
    file.WriteAt(0, header.data(), header.size());
    return std::make_unique<FileSegment>(std::move(file));
}

std::unique_ptr<Segment> OpenFileSegment(std::string const& path, int number, Uuid const& uuid,
                                         std::int64_t bytes, bool write) {
    File file;
    file.Open(path, write ? File::Mode::Write : File::Mode::Read);
    std::int64_t const size = file.Size();
    if (size < bytes || size < SegmentHeaderBytes) {
        Fail(path + " has been cut short: " + std::to_string(size) + " bytes of " +
             std::to_string(bytes));
    }
    Header header;
    if (file.ReadAt(0, header.data(), header.size()) < header.size())
        Fail(path + " has been cut short");
    CheckHeader(path, header, number, uuid);
    return std::make_unique<FileSegment>(std::move(file));
}

}  // namespace kov::store
