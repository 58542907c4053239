#include "DeckReader.h"

#include <cstring>
#include <utility>

#include "Failure.h"
#include "FieldScanner.h"
#include "Interrupt.h"
#include "Names.h"

namespace kov::tool {
namespace {

constexpr std::size_t kPiece = KOVSrvKeywordParser::PARSER_BUFFER - 2;
constexpr std::size_t kLongestLine = std::size_t{1} << 20;

// The words of a keyword line in front of its parameters.
std::string TypedKeyword(char const* line) {
    std::string typed;
    bool blank = false;
    for (; !FieldScanner::IsEnd(*line) && *line != ','; ++line) {
        if (FieldScanner::IsBlank(*line)) {
            blank = typed.size() > 1;
            continue;
        }
        if (blank) typed += ' ';
        blank = false;
        typed += *line >= 'a' && *line <= 'z' ? static_cast<char>(*line - 'a' + 'A') : *line;
    }
    return Shown(typed);
}

}  // namespace

DeckReader::DeckReader(DeckFiles& files, std::string path, DeckPlace start, void* userData)
    : m_path(std::move(path)),
      m_stream(files.Open(m_path), start.offset),
      m_parser(m_stream.Stream(), userData),
      m_next(start.offset + m_stream.Skipped()),
      m_lineNumber(start.linesBefore) {
    // A line that is put back and taken again begins at the start of the parser's buffer. With that
    // start known, the leading blanks of every later line can be counted, and so the bytes of the
    // file.
    char const* const first = m_parser.Readline();
    bool const atEnd = m_parser.IsEndOfFile();
    m_parser.Buffer(first);
    m_base = m_parser.Readline();
    if (atEnd) {
        CheckEnd();
        return;
    }
    TakeLine(m_base, static_cast<std::size_t>(first - m_base));
    m_held = true;
}

void DeckReader::FailAt(int line, std::string const& text) const {
    throw DeckError(m_path, line > 0 ? line : 1, text);
}

std::string DeckReader::At(std::string const& path, int line) const {
    return (path == m_path ? "line " : path + ":") + std::to_string(line);
}

void DeckReader::CheckEnd() const {
    ThrowIfInterrupted();
    bool const within = m_lineEnd != m_line && m_lineEnd[-1] != '\n';
    if (!m_stream.Fault().empty()) FailAt(m_lineNumber + (within ? 0 : 1), m_stream.Fault());
}

bool DeckReader::NextLine() {
    if (m_held) {
        m_held = false;
        return true;
    }
    char const* const line = m_parser.Readline();
    if (m_parser.IsEndOfFile()) {
        CheckEnd();
        return false;
    }
    TakeLine(line, static_cast<std::size_t>(line - m_base));
    return true;
}

void DeckReader::TakeLine(char const* line, std::size_t leading) {
    std::size_t const length = std::strlen(line);
    m_start = m_next;
    ++m_lineNumber;
    if (length > 0 && line[length - 1] == '\n') [[likely]] {
        m_line = line;
        m_lineEnd = line + length;
        m_next += static_cast<std::int64_t>(leading + length);
        return;
    }
    JoinPieces(line, leading, length);
}

// Blanks at both ends of a piece are lost, but their number is known, as each piece but the last is
// of one length: they are replaced by a single one.
void DeckReader::JoinPieces(char const* piece, std::size_t leading, std::size_t length) {
    m_long.assign(piece, length);
    for (;;) {
        char const* const next = m_parser.Readline();
        if (m_parser.IsEndOfFile()) {
            m_next += static_cast<std::int64_t>(leading + length);
            if (!m_stream.Fault().empty()) Fail(m_stream.Fault());
            break;
        }
        std::size_t const trailing = kPiece - leading - length;
        m_next += static_cast<std::int64_t>(kPiece);
        leading = static_cast<std::size_t>(next - m_base);
        length = std::strlen(next);
        if (trailing + leading > 0 && !m_long.empty()) m_long += ' ';
        m_long.append(next, length);
        if (length > 0 && next[length - 1] == '\n') {
            m_next += static_cast<std::int64_t>(leading + length);
            break;
        }
        if (m_long.size() > kLongestLine) Fail("a line of more than 1048576 characters");
    }
    m_line = m_long.c_str();
    m_lineEnd = m_line + m_long.size();
}

DeckReader::Kind DeckReader::Classify() const {
    if (*m_line == '*' || *m_line == '\v' || *m_line == '\f') {
        if (m_parser.IsComment(m_line)) {
            RefuseReturns();
            return Kind::Skipped;
        }
        return m_parser.IsKeyword(m_line) ? Kind::Keyword : Kind::Data;
    }
    return FieldScanner::IsEnd(*m_line) ? Kind::Skipped : Kind::Data;
}

// A carriage return in front of a keyword or a comment ends a line of a file that has no line
// feeds, and so is one line.
void DeckReader::RefuseReturns() const {
    auto const left = [this](char const* at) { return static_cast<std::size_t>(m_lineEnd - at); };
    char const* at = m_line;
    for (;;) {
        at = static_cast<char const*>(std::memchr(at, '\r', left(at)));
        if (at == nullptr) return;
        while (at != m_lineEnd && FieldScanner::IsBlank(*at)) ++at;
        if (*at != '*') continue;
        Fail("a carriage return alone ends a line; expected lines that end with a line feed");
    }
}

bool DeckReader::SkipToKeyword() {
    while (NextLine()) {
        if (Classify() == Kind::Keyword) {
            m_held = true;
            return true;
        }
    }
    return false;
}

KOVSrvKeywordCallback DeckReader::TakeKeyword(KeywordLine& keyword, KOVSrvKeywordCallback unknown) {
    NextLine();
    RefuseReturns();
    keyword.line = m_lineNumber;
    std::string const piece(
        m_line, std::min<std::size_t>(kPiece, static_cast<std::size_t>(m_lineEnd - m_line)));
    int position = 0;
    bool const exhausted = m_parser.ParseParameter(piece.c_str(), position, keyword.keyword);
    keyword.typed = TypedKeyword(m_line);
    KOVSrvKeywordCallback const callback = m_parser.Lookup(keyword.keyword);
    if (callback != unknown && !exhausted) AddParameters(keyword, position);
    return callback;
}

// A comma at the end of a line continues the parameters on the next one. A blank line or a keyword
// line there ends them.
void DeckReader::AddParameters(KeywordLine& keyword, int position) {
    for (;;) {
        if (static_cast<std::size_t>(m_lineEnd - m_line) > kPiece) {
            Fail("a keyword line of more than 255 characters; break it behind a comma");
        }
        bool exhausted = false;
        KOVString value;
        while (!exhausted) {
            int const start = position;
            exhausted = m_parser.ParseParameter(m_line, position, value);
            if (value.IsEmpty()) continue;
            char const* const end = m_line + position - (exhausted ? 0 : 1);
            keyword.typedParameters.emplace_back(m_line + start, end);
            int const count = keyword.parameters.Size();
            keyword.parameters.SetSize(count + 1);
            keyword.parameters.Get(count) = value;
        }
        // The line ends behind a comma exactly if nothing stands in its last field.
        if (!value.IsEmpty()) return;
        do {
            if (!NextLine() || FieldScanner::IsEnd(*m_line)) return;
        } while (m_parser.IsComment(m_line));
        if (m_parser.IsKeyword(m_line)) {
            m_held = true;
            return;
        }
        position = 0;
    }
}

}  // namespace kov::tool
