#include "KOVSrvKeywordDataReader.h"

#include "KOVAssert.h"
#include "KOVSrvKeywordCharacters.h"
#include "KOVSrvKeywordNumbers.h"
#include "KOVSrvKeywordParser.h"

using kov::keyword::IsSpace;

KOVSrvKeywordDataReader::KOVSrvKeywordDataReader(KOVSrvKeywordParser& parser)
    : m_lineNumber(parser.LineNumber()), m_parser(parser) {}

void KOVSrvKeywordDataReader::First() { Next(); }

void KOVSrvKeywordDataReader::TakeLine() {
    m_buffer = m_parser.Readline();
    ++m_lineNumber;
    m_fieldNumber = 0;
}

void KOVSrvKeywordDataReader::Next() {
    do TakeLine();
    while (m_parser.IsComment(m_buffer));
    // Putting an indented line back moves it, and m_buffer then shows the tail of its keyword: the
    // line after it ends the loop of the caller.
    if (m_parser.IsKeyword(m_buffer)) m_parser.Buffer(m_buffer);
}

bool KOVSrvKeywordDataReader::IsDone() const {
    KOV_FATAL_ASSERT(m_buffer != 0);
    return m_parser.IsKeyword(m_buffer) || m_parser.IsEndOfFile();
}

/// Moves to the field. False if it is empty or past the end of the line, and so done with.
bool KOVSrvKeywordDataReader::SkipToField() {
    while (IsSpace(*m_buffer)) ++m_buffer;
    if (*m_buffer != '\0' && *m_buffer != ',') return true;
    if (*m_buffer == ',') ++m_buffer;
    ++m_fieldNumber;
    return false;
}

/// Passes over what stands between the end of the number and the end of the field.
void KOVSrvKeywordDataReader::FinishField(char const* end) {
    bool flawed = false;
    for (; *end != '\0' && *end != ','; ++end) flawed = flawed || IsSpace(*end);
    if (flawed) RecordFlaw();
    if (*end == ',') ++end;
    ++m_fieldNumber;
    m_buffer = end;
}

void KOVSrvKeywordDataReader::RecordFlaw() { m_flawedFields.Insert(m_lineNumber, m_fieldNumber); }

int KOVSrvKeywordDataReader::ReadInt(int defaultValue) {
    KOV_FATAL_ASSERT(m_buffer != 0);
    if (!SkipToField()) return defaultValue;
    char const* end = m_buffer;
    int const value = kov::keyword::ToInt(m_buffer, end);
    FinishField(end);
    return value;
}

double KOVSrvKeywordDataReader::ReadDouble(double defaultValue) {
    KOV_FATAL_ASSERT(m_buffer != 0);
    if (!SkipToField()) return defaultValue;
    char const* end = m_buffer;
    double const value = kov::keyword::ToDouble(m_buffer, end);
    FinishField(end);
    return value;
}

KOVString KOVSrvKeywordDataReader::ReadString() {
    KOV_FATAL_ASSERT(m_buffer != 0);
    if (*m_buffer == '\0') {
        ++m_fieldNumber;
        return KOVString();
    }
    KOVString field(m_buffer);
    int count = 0;
    bool quoted = false;
    for (; *m_buffer != '\0'; ++m_buffer) {
        if (*m_buffer == '"') quoted = !quoted;
        if (*m_buffer == ',' && !quoted) {
            ++m_buffer;
            break;
        }
        ++count;
    }
    // The count is one of bytes, the length one of characters: beyond ASCII a field may keep more
    // than its own text.
    int const length = field.GetLengthInChar();
    if (length > count) field.Remove(count, length - count);
    if (quoted) RecordFlaw();
    ++m_fieldNumber;
    return field;
}
