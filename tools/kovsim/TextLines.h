// TextLines: the lines of a text file of any size, in place and in bounded memory. Lines end with a
// newline, with or without a carriage return before it.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kov::tool {

class TextLines {
  public:
    /// A line is no longer than this; what is longer is no text.
    static constexpr std::size_t kLongest = 65'536;

    /// Throws Failure if the file cannot be opened.
    explicit TextLines(std::string const& path);
    /// Reads `file`, which is closed at the end; `path` is for messages.
    TextLines(std::string path, std::FILE* file);

    /// The next line; valid until the next call. False behind the last one. Throws Failure if the
    /// file cannot be read, and for a line that is too long.
    bool Next(std::string_view& line) {
        if (!Read()) return false;
        line = m_line;
        return true;
    }
    /// The number of the last line, from 1.
    long long Number() const { return m_number; }
    /// True if a newline ends it; the last line of a file may have none.
    bool IsEnded() const { return m_ended; }
    /// "FILE:LINE" of it.
    std::string Where() const { return m_path + ":" + std::to_string(m_number); }
    std::string const& Path() const { return m_path; }
    /// How much of the file has been read, between 0 and 1.
    double Done() const;

  private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    bool Read();
    bool Fill();

    std::string m_path;
    std::unique_ptr<std::FILE, Closer> m_file;
    std::vector<char> m_buffer;
    std::size_t m_at = 0;   ///< of the next line in the buffer
    std::size_t m_end = 0;  ///< of what the buffer holds
    bool m_atEnd = false;
    std::string_view m_line;
    bool m_ended = true;
    long long m_number = 0;
    std::int64_t m_read = 0;
    std::int64_t m_size = 0;
};

}  // namespace kov::tool
