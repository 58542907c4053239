// DeckReader: walks one file of a deck line by line, over the keyword parser.
//
// The parser gives a line of more than 255 characters in pieces. Here the pieces are put together
// again, so that a number on the border is never cut in two and the tail of a long comment is never
// taken for data. What it adds further: the number and the place of each line in the file, and
// errors that name them. Keyword lines longer than 255 characters are refused.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "DeckFile.h"
#include "KOVSrvKeywordParser.h"

namespace kov::tool {

/// A place in a file at which reading can begin again: in front of a line.
struct DeckPlace {
    std::int64_t offset = 0;
    int linesBefore = 0;
};

/// A keyword line with all its continuations.
struct KeywordLine {
    KOVString keyword;  ///< lower case, without its `*`
    KOVSrvKeywordParser::Parameters parameters;
    std::vector<std::string> typedParameters;  ///< with their blanks; for messages
    std::string typed;  ///< with its `*`, in capitals, the words one blank apart; for messages
    int line = 0;       ///< number of its first line
};

class DeckReader {
  public:
    /// `userData` is what the parser passes to callbacks. Throws Failure, without the file's name,
    /// if it cannot be opened.
    DeckReader(DeckFiles& files, std::string path, DeckPlace start, void* userData);

    std::string const& Path() const { return m_path; }
    KOVSrvKeywordParser& Parser() { return m_parser; }
    std::int64_t Size() const { return m_stream.Size(); }

    /// Takes the next line that is neither comment nor blank. False, and the line stays, if it is a
    /// keyword line; false at the end too.
    bool NextData() {
        while (NextLine()) {
            if (*m_line > '*') return true;
            switch (Classify()) {
                case Kind::Data:
                    return true;
                case Kind::Keyword:
                    m_held = true;
                    return false;
                case Kind::Skipped:
                    break;
            }
        }
        return false;
    }
    /// The line at hand comes once more.
    void TakeAgain() { m_held = true; }
    /// Passes over data lines. False at the end, true with a keyword line next.
    bool SkipToKeyword();

    /// Takes the keyword line that is next, with the lines that continue it, and finds its
    /// callback. Without parameters if the callback is `unknown`, as nothing is known of their
    /// form.
    KOVSrvKeywordCallback TakeKeyword(KeywordLine& keyword, KOVSrvKeywordCallback unknown);

    /// The line at hand, [Line, LineEnd), with a zero byte behind; it begins with no blank. It
    /// lives until the next call.
    char const* Line() const { return m_line; }
    char const* LineEnd() const { return m_lineEnd; }
    /// Its number, from 1; of the last line at the end of the file.
    int LineNumber() const { return m_lineNumber; }
    /// In front of the line at hand.
    DeckPlace Place() const { return {m_start, m_lineNumber - 1}; }
    /// Bytes read so far, for showing progress.
    std::int64_t Offset() const { return m_next; }

    /// A place in the deck, for a message about a line of this file: "line 7", "FILE:7".
    std::string At(std::string const& path, int line) const;
    /// Throws a DeckError for the line at hand.
    [[noreturn]] void Fail(std::string const& text) const { FailAt(m_lineNumber, text); }
    [[noreturn]] void FailAt(int line, std::string const& text) const;

  private:
    enum class Kind { Data, Keyword, Skipped };

    bool NextLine();
    void TakeLine(char const* line, std::size_t leading);
    void JoinPieces(char const* piece, std::size_t leading, std::size_t length);
    Kind Classify() const;
    void AddParameters(KeywordLine& keyword, int position);
    /// At the end of the stream: the end of the file, or a fault.
    void CheckEnd() const;
    void RefuseReturns() const;

    std::string m_path;
    DeckStream m_stream;
    KOVSrvKeywordParser m_parser;
    char const* m_base = nullptr;  ///< start of the parser's line buffer
    std::string m_long;            ///< a line that came in pieces
    char const* m_line = "";
    char const* m_lineEnd = m_line;
    std::int64_t m_start = 0;  ///< offset of the line at hand
    std::int64_t m_next;       ///< offset of the line behind it
    int m_lineNumber;
    bool m_held = false;  ///< the line at hand is to be taken again
};

}  // namespace kov::tool
