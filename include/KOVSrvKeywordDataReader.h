// Steps through the data lines behind a keyword and reads their comma-separated fields.
//
//     for (reader.First(); !reader.IsDone(); reader.Next()) { reader.ReadInt(0); ... }
//
// leaves the parser at the next keyword line or at the end, as a callback has to. Comment lines are
// passed over. The reader points into the parser's line: it is valid until the parser reads on. For
// one thread.
#pragma once

#include "KOVBasOmiDefaultAllocator.h"
#include "KOVExport.h"
#include "KOVString.h"
#include "omi_IntTable.h"

class KOVSrvKeywordParser;

class KOV_EXPORT KOVSrvKeywordDataReader {
  public:
    using FlawTable = omi_IntTable<int, KOVBasOmiDefaultAllocator>;

    /// The parser outlives the reader.
    explicit KOVSrvKeywordDataReader(KOVSrvKeywordParser& parser);
    KOVSrvKeywordDataReader(KOVSrvKeywordDataReader const&) = delete;
    KOVSrvKeywordDataReader& operator=(KOVSrvKeywordDataReader const&) = delete;

    /// Goes to the next data line; a keyword line is put back.
    void First();
    void Next();

    /// Whether there is no further data line. Not before First.
    bool IsDone() const;

    /// The next field as a number. The default stands for an empty field and for a field past the
    /// end of the line; a text that is no number gives 0. What stands behind the number is passed
    /// over, and recorded as a flaw if white space is in it.
    int ReadInt(int defaultValue);
    double ReadDouble(double defaultValue);

    /// The next field as text, blanks and quotes included; commas between double quotes belong to
    /// it. Empty past the end of the line. A quote that is not closed is recorded as a flaw.
    KOVString ReadString();

    /// Number of the current line, and of the next field on it, from 0.
    int LineNumber() const { return m_lineNumber; }
    int FieldNumber() const { return m_fieldNumber; }

    /// Line number to the number of the first flawed field on the line. The newline behind the last
    /// field counts as white space behind a number.
    FlawTable const& FlawedFields() const { return m_flawedFields; }

  private:
    void TakeLine();
    bool SkipToField();
    void FinishField(char const* end);
    void RecordFlaw();

    int m_lineNumber;
    int m_fieldNumber = 0;
    FlawTable m_flawedFields;
    KOVSrvKeywordParser& m_parser;
    char const* m_buffer = nullptr;
};
