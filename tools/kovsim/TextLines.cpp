#include "TextLines.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "Failure.h"

namespace kov::tool {
namespace {

constexpr std::size_t kBuffer = std::size_t{1} << 20;

[[noreturn]] void FailSystem(std::string const& path, char const* what) {
    throw Failure(path + ": " + what + ": " + std::generic_category().message(errno));
}

std::FILE* Opened(std::string const& path) {
    std::FILE* const file = std::fopen(path.c_str(), "rbe");
    if (file == nullptr) FailSystem(path, "cannot be opened");
    return file;
}

}  // namespace

TextLines::TextLines(std::string const& path) : TextLines(path, Opened(path)) {}

TextLines::TextLines(std::string path, std::FILE* file)
    : m_path(std::move(path)), m_file(file), m_buffer(kBuffer) {
    struct stat found = {};
    int const number = fileno(file);
    if (number >= 0 && fstat(number, &found) == 0) m_size = found.st_size;
}

// Moves what is left to the front and reads on; false at the end of the file.
bool TextLines::Fill() {
    if (m_atEnd) return false;
    std::memmove(m_buffer.data(), m_buffer.data() + m_at, m_end - m_at);
    m_end -= m_at;
    m_at = 0;
    std::size_t const room = m_buffer.size() - m_end;
    std::size_t const got = std::fread(m_buffer.data() + m_end, 1, room, m_file.get());
    if (got < room && std::ferror(m_file.get()) != 0) FailSystem(m_path, "cannot be read");
    m_atEnd = got < room;
    m_end += got;
    m_read += static_cast<std::int64_t>(got);
    return true;
}

bool TextLines::Read() {
    char const* newline = nullptr;
    do {
        char const* const start = m_buffer.data() + m_at;
        newline = m_end == m_at ? nullptr
                                : static_cast<char const*>(std::memchr(start, '\n', m_end - m_at));
        if (newline != nullptr) break;
        if (m_end - m_at > kLongest) break;
    } while (Fill());
    if (m_at == m_end) return false;
    ++m_number;
    m_ended = newline != nullptr;
    char const* const start = m_buffer.data() + m_at;
    std::size_t length =
        newline == nullptr ? m_end - m_at : static_cast<std::size_t>(newline - start);
    if (length > kLongest) {
        throw Failure(Where() + ": a line of more than " + std::to_string(kLongest) +
                      " bytes is no text");
    }
    m_at += length + (newline == nullptr ? 0 : 1);
    if (length > 0 && start[length - 1] == '\r') --length;
    m_line = {start, length};
    return true;
}

double TextLines::Done() const {
    if (m_size <= 0) return 0.0;
    auto const done = static_cast<double>(m_read - static_cast<std::int64_t>(m_end - m_at));
    return std::min(1.0, done / static_cast<double>(m_size));
}

}  // namespace kov::tool
