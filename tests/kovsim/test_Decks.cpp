// The decks of the folder, each translated, verified and exported by the command line. The first
// line of a deck says what is expected of it:
//
//     ** expect: nodes=4 elements=1 nodeSets=2 elementSets=1
//     ** expect error: 7: the text behind the file and line 7

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "Process.h"

namespace kov::test {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> Decks() {
    std::vector<std::string> names;
    char const* const source = std::getenv("KOV_SOURCE_DIR");
    fs::path const folder = fs::path(source == nullptr ? "." : source) / "tests/kovsim/decks";
    for (auto const& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".inp") names.push_back(entry.path().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

void ExpectDeck(std::string const& path) {
    Workshop const work;
    std::string const text = ReadFile(path);
    std::string const first = text.substr(0, text.find_first_of("\r\n"));
    auto const result = work.Run({"translate", path, "-o", "m.ksd", "--json"});
    std::string const wrong = "** expect error: ";
    if (first.substr(0, wrong.size()) == wrong) {
        std::string const rest = first.substr(wrong.size());
        EXPECT_EQ(result.status, 2);
        std::size_t const colon = rest.find(": ");
        EXPECT_EQ(result.errors,
                  "kovsim: " + path + ":" + rest.substr(0, colon) + rest.substr(colon) + "\n");
        EXPECT_TRUE(Entries(work.Folder()).empty());
        return;
    }
    std::string const right = "** expect: ";
    ASSERT_EQ(first.substr(0, right.size()), right) << "the first line says what to expect";
    ASSERT_EQ(result.status, 0) << result.errors;
    std::istringstream expectations(first.substr(right.size()));
    std::string expectation;
    int count = 0;
    while (expectations >> expectation) {
        std::size_t const equals = expectation.find('=');
        ASSERT_NE(equals, std::string::npos) << expectation;
        std::string const part =
            "\"" + expectation.substr(0, equals) + "\": " + expectation.substr(equals + 1);
        EXPECT_TRUE(result.output.find(part + ",") != std::string::npos ||
                    result.output.find(part + "\n") != std::string::npos)
            << part << " in " << result.output;
        ++count;
    }
    EXPECT_GT(count, 0);
    EXPECT_EQ(work.Run({"verify", "m.ksd"}).status, 0);
    EXPECT_EQ(work.Run({"info", "m.ksd"}).status, 0);
    EXPECT_EQ(work.Run({"export", "m.ksd", "-o", "m.vtu"}).status, 0);
    EXPECT_EQ(Entries(work.Folder()), (std::set<std::string>{"m.ksd", "m.vtu"}));
}

TEST(Decks, AllDoWhatTheirFirstLineSays) {
    std::vector<std::string> const decks = Decks();
    EXPECT_GE(decks.size(), 12U);
    for (std::string const& deck : decks) {
        SCOPED_TRACE(deck);
        ExpectDeck(deck);
    }
}

}  // namespace
}  // namespace kov::test
