// TextFile: writes decks for the measures, fast enough for those of gigabytes.
#pragma once

#include <charconv>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

namespace bench {

class TextFile {
  public:
    explicit TextFile(std::string const& path) : m_file(std::fopen(path.c_str(), "w")) {
        if (!m_file) throw std::runtime_error("cannot write " + path);
    }
    ~TextFile() {
        Flush();
        std::fclose(m_file);
    }
    TextFile& operator<<(char const* text) {
        std::size_t const n = std::strlen(text);
        Room(n);
        std::memcpy(m_buffer + m_used, text, n);
        m_used += n;
        return *this;
    }
    template <class Number>
    TextFile& operator<<(Number number) {
        Room(32);
        char* const at = m_buffer + m_used;
        m_used = static_cast<std::size_t>(std::to_chars(at, at + 32, number).ptr - m_buffer);
        return *this;
    }
    void Fixed(double number, int digits) {
        Room(64);
        char* const at = m_buffer + m_used;
        m_used = static_cast<std::size_t>(
            std::to_chars(at, at + 64, number, std::chars_format::fixed, digits).ptr - m_buffer);
    }

  private:
    void Room(std::size_t n) {
        if (m_used + n > sizeof m_buffer) Flush();
    }
    void Flush() {
        std::fwrite(m_buffer, 1, m_used, m_file);
        m_used = 0;
    }
    FILE* m_file;
    char m_buffer[1 << 16];
    std::size_t m_used = 0;
};

}  // namespace bench
