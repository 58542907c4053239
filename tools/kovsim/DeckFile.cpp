#include "DeckFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "Failure.h"
#include "Interrupt.h"

namespace kov::tool {
namespace {

// Large enough that system calls cost nothing, small enough to stay in the cache of one core.
constexpr std::size_t kStreamBuffer = 256 * 1024;

std::string ErrorText(int error) { return std::generic_category().message(error); }

class SystemFile : public DeckFile {
  public:
    explicit SystemFile(std::string const& path)
        : m_descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
        if (m_descriptor < 0) throw Failure("cannot be opened: " + ErrorText(errno));
        struct stat found = {};
        if (fstat(m_descriptor, &found) == 0 && S_ISDIR(found.st_mode)) {
            close(m_descriptor);
            throw Failure("is a folder; expected a file of keyword text");
        }
        if (S_ISREG(found.st_mode)) m_size = found.st_size;
        posix_fadvise(m_descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    }
    ~SystemFile() override { close(m_descriptor); }
    SystemFile(SystemFile const&) = delete;
    SystemFile& operator=(SystemFile const&) = delete;

    std::size_t Read(char* to, std::size_t size) override {
        for (;;) {
            ssize_t const got = read(m_descriptor, to, size);
            if (got >= 0) return static_cast<std::size_t>(got);
            if (errno != EINTR) throw Failure("cannot be read: " + ErrorText(errno));
            ThrowIfInterrupted();
        }
    }
    void Seek(std::int64_t offset) override {
        if (lseek(m_descriptor, offset, SEEK_SET) < 0) {
            throw Failure("cannot be read a second time; expected a regular file");
        }
    }
    std::int64_t Size() const override { return m_size; }

  private:
    int m_descriptor;
    std::int64_t m_size = -1;
};

class MemoryFile : public DeckFile {
  public:
    explicit MemoryFile(std::string const& text) : m_text(text) {}

    std::size_t Read(char* to, std::size_t size) override {
        std::size_t const count = std::min(size, m_text.size() - m_at);
        std::memcpy(to, m_text.data() + m_at, count);
        m_at += count;
        return count;
    }
    void Seek(std::int64_t offset) override {
        m_at = std::min(static_cast<std::size_t>(offset), m_text.size());
    }
    std::int64_t Size() const override { return static_cast<std::int64_t>(m_text.size()); }

  private:
    std::string const& m_text;
    std::size_t m_at = 0;
};

}  // namespace

std::unique_ptr<DeckFile> SystemFiles::Open(std::string const& path) {
    return std::make_unique<SystemFile>(path);
}

std::string SystemFiles::Identity(std::string const& path) {
    struct stat found = {};
    if (stat(path.c_str(), &found) != 0) throw Failure("cannot be opened: " + ErrorText(errno));
    return std::to_string(found.st_dev) + ":" + std::to_string(found.st_ino);
}

std::unique_ptr<DeckFile> MemoryFiles::Open(std::string const& path) {
    auto const found = texts.find(path);
    if (found == texts.end()) throw Failure("cannot be opened: " + ErrorText(ENOENT));
    return std::make_unique<MemoryFile>(found->second);
}

std::string MemoryFiles::Identity(std::string const& path) {
    if (!texts.contains(path)) throw Failure("cannot be opened: " + ErrorText(ENOENT));
    return path;
}

DeckStream::DeckStream(std::unique_ptr<DeckFile> file, std::int64_t offset)
    : m_file(std::move(file)), m_buffer(std::make_unique_for_overwrite<char[]>(kStreamBuffer)) {
    if (offset != 0) m_file->Seek(offset);
    cookie_io_functions_t functions = {};
    functions.read = &ReadCookie;
    m_stream = fopencookie(this, "r", functions);
    if (m_stream == nullptr) throw Failure("cannot be opened: " + ErrorText(errno));
    std::setvbuf(m_stream, m_buffer.get(), _IOFBF, kStreamBuffer);
    if (offset == 0) SkipByteOrderMark();
}

void DeckStream::SkipByteOrderMark() {
    constexpr int mark[] = {0xef, 0xbb, 0xbf};
    for (int i = 0; i < 3; ++i) {
        int const c = std::getc(m_stream);
        if (c == mark[i]) continue;
        if (c != EOF) std::ungetc(c, m_stream);
        while (i-- > 0) std::ungetc(mark[i], m_stream);
        return;
    }
    m_skipped = 3;
}

DeckStream::~DeckStream() {
    if (m_stream != nullptr) std::fclose(m_stream);
}

ssize_t DeckStream::ReadCookie(void* cookie, char* to, std::size_t size) {
    auto& self = *static_cast<DeckStream*>(cookie);
    // Nothing may be thrown through the C library.
    try {
        if (!self.m_fault.empty() || PendingInterrupt() != 0) return 0;
        std::size_t const count = self.m_file->Read(to, size);
        void const* const zero = count == 0 ? nullptr : std::memchr(to, 0, count);
        if (zero == nullptr) return static_cast<ssize_t>(count);
        self.m_fault = "a zero byte; expected text";
        return static_cast<char const*>(zero) - to;
    } catch (std::exception const& error) {
        self.m_fault = error.what();
        return 0;
    }
}

}  // namespace kov::tool
