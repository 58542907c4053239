#include "KOVSrvKeywordParser.h"

#include <cstring>

#include "KOVAssert.h"
#include "KOVSimBtreeIterator.h"
#include "KOVSrvKeywordCharacters.h"

using kov::keyword::IsLetter;
using kov::keyword::IsSpace;

namespace {

// The blanks that Readline takes away. The newline is not among them: it stays at the end of a
// line.
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

void UnknownKeyword(KOVString const&, KOVSrvKeywordParser::Parameters const&, KOVSrvKeywordParser&,
                    void*) {
    KOV_FATAL_ASSERT("KOVSrvKeywordParser ERROR: Unknown keyword" == 0);
}

void AmbiguousKeyword(KOVString const&, KOVSrvKeywordParser::Parameters const&,
                      KOVSrvKeywordParser&, void*) {
    KOV_FATAL_ASSERT("KOVSrvKeywordParser ERROR: Ambiguous keyword" == 0);
}

}  // namespace

KOVSrvKeywordParser::KOVSrvKeywordParser(FILE* file, void* userData)
    : m_file(file),
      m_userData(userData),
      m_unknownCallback(UnknownKeyword),
      m_ambiguousCallback(AmbiguousKeyword) {}

void KOVSrvKeywordParser::Register(KOVString const& keyword, KOVSrvKeywordCallback callback) {
    m_keywords.Insert(keyword, callback, false);
}

void KOVSrvKeywordParser::RegisterUnknownKeywordCallback(KOVSrvKeywordCallback callback) {
    m_unknownCallback = callback;
}

void KOVSrvKeywordParser::RegisterAmbiguousKeywordCallback(KOVSrvKeywordCallback callback) {
    m_ambiguousCallback = callback;
}

void KOVSrvKeywordParser::Parse() {
    SkipToNextKeyword();
    while (!IsEndOfFile()) {
        KOVString keyword;
        Parameters parameters;
        ParseKeyword(keyword, parameters);
        KOVSrvKeywordCallback const callback = Lookup(keyword);
        callback(keyword, parameters, *this, m_userData);
    }
}

// The stream belongs to this thread while it is parsed, so that its lock need not be taken for each
// line.
char const* KOVSrvKeywordParser::Readline() {
    ++m_lineNumber;
    if (m_isBuffered) {
        m_isBuffered = false;
        return m_buffer;
    }
    if (feof_unlocked(m_file) || ferror_unlocked(m_file)) return NoFurtherLine();
    m_buffer[0] = '\0';
    // At most 255 characters: what is left of a longer line comes as a line of its own.
    char const* const read = fgets_unlocked(m_buffer, PARSER_BUFFER - 1, m_file);
    if (!read || ferror_unlocked(m_file)) return NoFurtherLine();
    std::size_t const length = std::strlen(m_buffer);
    if (length == 0) return feof_unlocked(m_file) ? NoFurtherLine() : m_buffer;

    char* start = m_buffer;
    while (IsBlank(*start)) ++start;
    for (char* last = m_buffer + length; last > start && IsBlank(last[-1]); --last) last[-1] = '\0';
    return start;
}

char const* KOVSrvKeywordParser::NoFurtherLine() {
    m_endOfFile = true;
    m_buffer[0] = '\0';
    return m_buffer;
}

void KOVSrvKeywordParser::Buffer(char const* stash) {
    if (m_isBuffered) {
        KOV_FATAL_ASSERT(!strcmp(stash, m_buffer));
    }
    std::size_t const length = std::strlen(stash);
    KOV_FATAL_ASSERT(length < PARSER_BUFFER);
    // The text may lie inside the buffer already, some bytes further on.
    std::memmove(m_buffer, stash, length + 1);
    --m_lineNumber;
    m_isBuffered = true;
}

void KOVSrvKeywordParser::SkipToNextKeyword() {
    for (;;) {
        char const* const line = Readline();
        if (IsEndOfFile()) return;
        if (IsKeyword(line)) {
            Buffer(line);
            return;
        }
    }
}

bool KOVSrvKeywordParser::IsKeyword(char const* line) const {
    while (IsSpace(*line)) ++line;
    if (*line != '*') return false;
    ++line;
    while (IsSpace(*line)) ++line;
    return IsLetter(*line);
}

bool KOVSrvKeywordParser::ParseParameter(char const* line, int& position, KOVString& value) {
    char kept[PARSER_BUFFER];
    int nchar = 0;
    bool quoted = false;
    for (; line[position] != '\0'; ++position) {
        char const c = line[position];
        // A closing quote is looked at with the state off already, and kept as it is no white
        // space.
        if (c == '"') quoted = !quoted;
        if (!quoted) {
            if (c == ',') break;
            if (IsSpace(c)) continue;
        }
        if (nchar < PARSER_BUFFER) kept[nchar] = c;
        ++nchar;
    }
    KOV_FATAL_ASSERT(nchar < PARSER_BUFFER);
    value.BuildFromUTF8(kept, nchar);
    if (line[position] == '\0') return true;
    ++position;
    return false;
}

void KOVSrvKeywordParser::ParseKeyword(KOVString& keyword, Parameters& parameters) {
    char const* data = Readline();
    KOV_FATAL_ASSERT(data != 0);
    KOV_FATAL_ASSERT(IsKeyword(data));
    int position = 0;
    bool exhausted = ParseParameter(data, position, keyword);
    while (!exhausted) {
        int const count = parameters.Size() + 1;
        parameters.SetSize(count);
        KOVString& parameter = parameters.Get(count - 1);
        exhausted = ParseParameter(data, position, parameter);
        if (!parameter.IsEmpty()) continue;
        // Nothing before the comma: the parameter stands on the next line, whatever that line is.
        data = Readline();
        position = 0;
        exhausted = ParseParameter(data, position, parameter);
    }
}

KOVSrvKeywordCallback KOVSrvKeywordParser::Lookup(KOVString& keyword) const {
    keyword.ASCIIToLower();
    keyword.Remove(0, 1);
    if (KOVSrvKeywordCallback const* const exact = m_keywords.Find(keyword)) return *exact;

    KOVSrvKeywordCallback callback = m_unknownCallback;
    KOVString registered;
    int hits = 0;
    KOVSimBtreeIterator<KOVString, KOVSrvKeywordCallback> entry(m_keywords);
    for (entry.First(); !entry.IsDone(); entry.Next()) {
        if (entry.CurrentKey().FindPosition(keyword, 0) == -1) continue;
        ++hits;
        registered = entry.CurrentKey();
        callback = entry.CurrentValue();
    }
    if (hits > 1) return m_ambiguousCallback;
    if (hits == 1) keyword = registered;
    return callback;
}
