// Reads keyword text from a stream and hands each keyword to the callback registered for it.
//
// A keyword line is white space, one `*`, white space, a letter and so on; a comment line begins
// with `**`; all else is data. A keyword line holds the keyword and its parameters, separated by
// commas; white space outside double quotes is deleted from them. A comma at the end of the line
// continues the parameters on the next.
//
// The data lines behind a keyword belong to its callback, which steps through them with a
// KOVSrvKeywordDataReader and has to leave the parser at the next keyword line or at the end:
//
//     construct -> Register... -> Parse:  SkipToNextKeyword
//                                         while not IsEndOfFile: ParseKeyword, Lookup, callback
//
// The stream stays the caller's and is not closed. No memory is allocated for a line. For one
// thread.
#pragma once

#include <cstdio>

#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimBtree.h"
#include "KOVString.h"

class KOVSrvKeywordParser;

/// A callback: the keyword, its parameters, the parser, and the pointer given to the parser.
using KOVSrvKeywordCallback =
    void (*)(KOVString const& keyword,
             KOVSimArray<KOVString, KOVSimArrayClassPolicy<KOVString>> const& parameters,
             KOVSrvKeywordParser& parser, void* userData);

class KOV_EXPORT KOVSrvKeywordParser {
  public:
    using Parameters = KOVSimArray<KOVString, KOVSimArrayClassPolicy<KOVString>>;

    /// Size of the line buffer. A line of more than 255 characters comes as several lines.
    static constexpr int PARSER_BUFFER = 257;

    /// `userData` is passed to every callback untouched.
    KOVSrvKeywordParser(FILE* file, void* userData);
    KOVSrvKeywordParser(KOVSrvKeywordParser const&) = delete;
    KOVSrvKeywordParser& operator=(KOVSrvKeywordParser const&) = delete;

    /// Registers a callback under a keyword, without its `*`, in lower case and without blanks. Of
    /// two registrations of one text the first stands.
    void Register(KOVString const& keyword, KOVSrvKeywordCallback callback);
    /// What is called for a keyword that matches nothing, or several registrations. The callbacks
    /// in place at first end the process.
    void RegisterUnknownKeywordCallback(KOVSrvKeywordCallback callback);
    void RegisterAmbiguousKeywordCallback(KOVSrvKeywordCallback callback);

    /// Reads the stream to its end. A callback that leaves a data line behind ends the process.
    void Parse();

    /// The next line, without its leading blanks. The newline stays at the end of the text; a last
    /// line without one, and all but the last piece of an over-long line, lose their trailing
    /// blanks. The empty text when there is no further line; IsEndOfFile is true from then on.
    /// Never null; lives until the next Readline or Buffer.
    char const* Readline();

    /// Puts a line back, to be given by the next Readline. It moves to the start of the line
    /// buffer. While a line is put back, only the same text may be put back again.
    void Buffer(char const* stash);

    /// Reads on to the next keyword line and puts it back, or to the end.
    void SkipToNextKeyword();

    bool IsEndOfFile() const { return m_endOfFile; }
    /// Number of the line last taken, from 1; 0 before the first. Reads past the end count too.
    int LineNumber() const { return m_lineNumber; }

    bool IsComment(char const* line) const { return line[0] == '*' && line[1] == '*'; }
    bool IsKeyword(char const* line) const;

    /// Takes a keyword line: the keyword with its `*`, and the parameters, each appended to
    /// `parameters`.
    void ParseKeyword(KOVString& keyword, Parameters& parameters);

    /// Takes the text from `position` up to the next comma into `value`. True if the line is
    /// exhausted, false if a comma was passed; `position` stands behind it.
    bool ParseParameter(char const* line, int& position, KOVString& value);

    /// The callback for `keyword`, given with its `*`, which is folded to lower case and loses the
    /// `*`. An exact match wins; else the text must occur in one registered keyword, which replaces
    /// it. Otherwise the callback for ambiguous or unknown keywords.
    KOVSrvKeywordCallback Lookup(KOVString& keyword) const;

  private:
    char const* NoFurtherLine();

    int m_lineNumber = 0;
    FILE* m_file;
    char m_buffer[PARSER_BUFFER] = {};
    void* m_userData;
    bool m_endOfFile = false;
    bool m_isBuffered = false;
    KOVSimBtree<KOVString, KOVSrvKeywordCallback> m_keywords;
    KOVSrvKeywordCallback m_unknownCallback;
    KOVSrvKeywordCallback m_ambiguousCallback;
};
