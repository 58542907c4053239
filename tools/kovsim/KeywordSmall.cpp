// *HEADING and *INCLUDE.

#include "FieldScanner.h"
#include "Keywords.h"
#include "Names.h"

namespace kov::tool {
namespace {

constexpr std::size_t kLongestHeading = std::size_t{1} << 20;

}  // namespace

// *HEADING
//   lines of text
void ReadHeading(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {});
    std::string& heading = translation.Heading();
    while (reader.NextData()) {
        char const* end = reader.LineEnd();
        while (end > reader.Line() && (FieldScanner::IsBlank(end[-1]) || end[-1] == '\n')) --end;
        if (!translation.Current().IsRoot()) continue;
        if (!heading.empty()) heading += '\n';
        heading.append(reader.Line(), end);
        if (heading.size() > kLongestHeading) {
            reader.Fail("a heading of more than 1048576 characters; expected a keyword behind it");
        }
    }
}

// *INCLUDE, INPUT=path, relative to the file that holds the line
void ReadInclude(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {"input"});
    std::string const path = parameters.Required("input");
    translation.Include(reader, path);
    RefuseData(reader, line);
}

}  // namespace kov::tool
