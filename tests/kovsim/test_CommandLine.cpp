#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "KOVObjDocument.h"
#include "KOVSimDataRecord.h"
#include "KOVSimTransaction.h"
#include "Process.h"

namespace kov::test {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

char const kDeck[] =
    "*HEADING\n A small \"deck\"\n*NODE, NSET=N\n1, 0, 0\n2, 1, 0\n3, 1, 1\n4, 0, 1\n"
    "*ELEMENT, TYPE=S4R, ELSET=E\n5, 1, 2, 3, 4\n*STEP\n1\n";

class CommandLine : public ::testing::Test {
  protected:
    void SetUp() override { WriteFile(work / "deck.inp", kDeck); }
    void Translate() {
        auto const result = work.Run({"translate", "deck.inp", "-o", "m.ksd"});
        ASSERT_EQ(result.status, 0) << result.errors;
    }

    Workshop work;
};

TEST_F(CommandLine, ExplainsItself) {
    auto const help = work.Run({"--help"});
    EXPECT_EQ(help.status, 0);
    for (char const* const name :
         {"translate", "info", "sets", "find", "classes", "verify", "compact", "export", "extract",
          "map", "monitor", "layup", "sections", "variable", "fields", "results", "materials",
          "conditions", "check"}) {
        EXPECT_NE(help.output.find(name), std::string::npos) << name;
        auto const own = work.Run({name, "--help"});
        EXPECT_EQ(own.status, 0);
        EXPECT_NE(own.output.find("Usage"), std::string::npos) << name;
    }
    EXPECT_EQ(work.Run({"--version"}).output.substr(0, 7), "kovsim ");
}

TEST_F(CommandLine, WrongUseIsStatusTwo) {
    for (std::vector<std::string> const& arguments :
         {std::vector<std::string>{},
          {"frobnicate"},
          {"translate"},
          {"translate", "deck.inp"},
          {"info"},
          {"info", "a", "b"},
          {"translate", "deck.inp", "-o", "x.ksd", "--bogus"},
          {"monitor", "m.ksd", "--interval", "-1"}}) {
        auto const result = work.Run(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors.substr(0, 8), "kovsim: ");
        EXPECT_EQ(result.output, "");
    }
}

TEST_F(CommandLine, AnUnknownSubcommandIsNamedWithTheNearest) {
    EXPECT_EQ(work.Run({"exprot", "m.ksd"}).errors,
              "kovsim: no subcommand named 'exprot'; did you mean 'export'? (see kovsim --help)\n");
    auto const result = work.Run({std::string(1000, 'x')});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors, "kovsim: no subcommand named '" + std::string(60, 'x') +
                                 "...' (see kovsim --help)\n");
}

TEST_F(CommandLine, ASummaryThatCannotBeWrittenLeavesWhatWasMade) {
    Translate();
    for (std::string const command : {"translate deck.inp -o t.ksd", "export m.ksd -o t.vtu",
                                      "compact m.ksd -o c.ksd", "extract m.ksd --set E -o e.ksd"}) {
        auto const full = work.Shell("\"$KOVSIM\" " + command + " > /dev/full");
        std::string const made = command.substr(command.rfind(' ') + 1);
        EXPECT_EQ(full.status, 2) << command;
        EXPECT_EQ(full.errors, "kovsim: " + made +
                                   " is made and whole, but the summary is lost: cannot write to "
                                   "standard output: No space left on device\n");
        EXPECT_TRUE(std::filesystem::exists(work / made.c_str())) << command;
    }
}

TEST_F(CommandLine, TranslatesAndShows) {
    auto const translated = work.Run({"translate", "deck.inp", "-o", "m.ksd"});
    EXPECT_EQ(translated.status, 0);
    EXPECT_EQ(translated.errors, "");
    EXPECT_NE(translated.output.find("unknown *STEP"), std::string::npos);
    EXPECT_EQ(Entries(work.Folder()), (Names{"deck.inp", "m.ksd"}));

    auto const info = work.Run({"info", "m.ksd"});
    EXPECT_EQ(info.status, 0);
    EXPECT_NE(info.output.find("A small \"deck\""), std::string::npos);
    EXPECT_NE(info.output.find("S4R"), std::string::npos);
    auto const json = work.Run({"info", "m.ksd", "--json"});
    EXPECT_NE(json.output.find("\"heading\": \"A small \\\"deck\\\"\""), std::string::npos);
    EXPECT_NE(json.output.find("\"nodes\": 4"), std::string::npos);

    auto const verified = work.Run({"verify", "m.ksd"});
    EXPECT_EQ(verified.status, 0) << verified.output;
    EXPECT_EQ(verified.output, "m.ksd: sound\n");
    EXPECT_NE(work.Run({"verify", "m.ksd", "--json"}).output.find("\"sound\": true"),
              std::string::npos);
}

TEST_F(CommandLine, PrintsItsSummaryAsJson) {
    auto const result = work.Run({"translate", "deck.inp", "-o", "m.ksd", "--json"});
    EXPECT_EQ(result.status, 0);
    for (char const* const part : {"\"nodes\": 4", "\"elements\": 1", "\"S4R\": 1",
                                   "\"nodeSets\": 1", "\"*STEP\": 1", "\"seconds\": "}) {
        EXPECT_NE(result.output.find(part), std::string::npos) << part << result.output;
    }
}

TEST_F(CommandLine, StrictRefusesUnknownKeywordsAndLeavesNothing) {
    auto const result = work.Run({"translate", "deck.inp", "-o", "m.ksd", "--strict"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors,
              "kovsim: deck.inp:10: keyword *STEP is not known; expected known keywords only\n");
    EXPECT_EQ(Entries(work.Folder()), Names{"deck.inp"});
}

TEST_F(CommandLine, NothingThatExistsIsReplaced) {
    Translate();
    for (auto const& arguments : {std::vector<std::string>{"translate", "deck.inp", "-o", "m.ksd"},
                                  {"compact", "m.ksd", "-o", "deck.inp"},
                                  {"export", "m.ksd", "-o", "deck.inp"}}) {
        auto const result = work.Run(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors, "kovsim: " + arguments.back() +
                                     ": exists already; remove it, or choose another name\n");
    }
    EXPECT_EQ(ReadFile(work / "deck.inp"), kDeck);
    EXPECT_EQ(Entries(work.Folder()), (Names{"deck.inp", "m.ksd"}));
}

TEST_F(CommandLine, NothingIsWrittenIntoADocument) {
    Translate();
    Names const before = Entries(work / "m.ksd");
    for (auto const& arguments : {std::vector<std::string>{"translate", "deck.inp", "-o"},
                                  {"compact", "m.ksd", "-o"},
                                  {"export", "m.ksd", "-o"},
                                  {"extract", "m.ksd", "--set", "E", "-o"}}) {
        for (std::string const output : {"m.ksd/x", "m.ksd/bulk/x", "m.ksd/../m.ksd/x"}) {
            std::vector<std::string> all = arguments;
            all.push_back(output);
            auto const result = work.Run(all);
            EXPECT_EQ(result.status, 2) << arguments[0];
            EXPECT_NE(result.errors.find("kovsim: " + output + ": lies inside the document "),
                      std::string::npos)
                << result.errors;
        }
    }
    EXPECT_EQ(Entries(work / "m.ksd"), before);
    EXPECT_EQ(work.Run({"verify", "m.ksd"}).status, 0);
}

TEST_F(CommandLine, ALimitOfFileSizesIsAnError) {
    std::string deck = "*NODE\n";
    for (int i = 1; i <= 100000; ++i) deck += std::to_string(i) + ", 1.5, 2.5, 3.5\n";
    WriteFile(
        work / "large.inp", deck + "*ELEMENT, TYPE=C3D4, ELSET=E\n" + [] {
            std::string elements;
            for (int i = 1; i <= 90000; ++i) {
                elements += std::to_string(i);
                for (int k = 0; k < 4; ++k) elements += ", " + std::to_string(i + 7 * k);
                elements += "\n";
            }
            return elements;
        }());
    ASSERT_EQ(work.Run({"translate", "large.inp", "-o", "large.ksd"}).status, 0);
    Names const before = Entries(work.Folder());
    for (std::string const command : {"translate large.inp", "compact large.ksd",
                                      "export large.ksd", "extract large.ksd --set E"}) {
        auto const result = work.Shell("ulimit -f 1000; exec \"$KOVSIM\" " + command + " -o x.ksd");
        EXPECT_EQ(result.status, 2) << command;
        EXPECT_EQ(result.errors.substr(0, 8), "kovsim: ");
        EXPECT_NE(result.errors.find("File too large"), std::string::npos) << result.errors;
        EXPECT_EQ(Entries(work.Folder()), before) << command;
    }
}

TEST_F(CommandLine, InputsThatAreMissingOrNoDocumentAreNamed) {
    fs::create_directory(work / "folder");
    struct {
        std::vector<std::string> arguments;
        char const* start;
    } const cases[] = {
        {{"translate", "none.inp", "-o", "x.ksd"},
         "kovsim: none.inp: cannot be opened: No such file or directory\n"},
        {{"translate", "folder", "-o", "x.ksd"},
         "kovsim: folder: is a folder; expected a file of keyword text\n"},
        {{"translate", "deck.inp", "-o", "no/x.ksd"}, "kovsim: no/x.ksd: there is no folder no\n"},
        {{"info", "none.ksd"}, "kovsim: none.ksd: cannot be opened: No such file or directory\n"},
        {{"verify", "none.ksd"}, "kovsim: none.ksd: cannot be opened: No such file or directory\n"},
        {{"export", "none.ksd", "-o", "x.vtu"},
         "kovsim: none.ksd: cannot be opened: No such file or directory\n"},
        {{"compact", "none.ksd", "-o", "x.ksd"},
         "kovsim: none.ksd: cannot be opened: No such file or directory\n"},
        {{"monitor", "none.ksd", "--once"},
         "kovsim: none.ksd: cannot be opened: No such file or directory\n"},
        {{"info", "deck.inp"},
         "kovsim: deck.inp: is no document; expected a folder such as MODEL.ksd\n"},
        {{"info", "folder"}, "kovsim: "},
        {{"verify", "folder"}, "kovsim: "},
    };
    for (auto const& c : cases) {
        auto const result = work.Run(c.arguments);
        EXPECT_EQ(result.status, 2) << c.start;
        EXPECT_EQ(result.errors.substr(0, std::string(c.start).size()), c.start);
        EXPECT_NE(result.errors.find(c.arguments[1] == "deck.inp" && c.arguments[0] == "translate"
                                         ? "no"
                                         : c.arguments[1]),
                  std::string::npos);
        EXPECT_EQ(result.output, "");
    }
    EXPECT_EQ(Entries(work.Folder()), (Names{"deck.inp", "folder"}));
}

TEST_F(CommandLine, ExportsAndCompacts) {
    Translate();
    auto const exported = work.Run({"export", "m.ksd", "-o", "m.vtu"});
    EXPECT_EQ(exported.status, 0) << exported.errors;
    EXPECT_EQ(exported.output, "m.ksd -> m.vtu\n4 points, 1 cell, 1 node set, 1 element set\n");
    EXPECT_EQ(ReadFile(work / "m.vtu").substr(0, 22), "<?xml version=\"1.0\"?>\n");
    auto const compacted = work.Run({"compact", "m.ksd", "-o", "c.ksd"});
    EXPECT_EQ(compacted.status, 0) << compacted.errors;
    EXPECT_EQ(work.Run({"verify", "c.ksd"}).status, 0);
    work.Run({"export", "c.ksd", "-o", "c.vtu"});
    EXPECT_EQ(ReadFile(work / "m.vtu"), ReadFile(work / "c.vtu"));
}

TEST_F(CommandLine, AFaultOfTheDocumentIsAFinding) {
    Translate();
    std::string const segment = work / "m.ksd/bulk/000001.seg";
    std::string bytes = ReadFile(segment);
    ASSERT_FALSE(bytes.empty());
    // The coordinate 1.0 of the second node, in the middle of the first block.
    double const one = 1.0;
    std::size_t const at = bytes.find(std::string(reinterpret_cast<char const*>(&one), sizeof one));
    ASSERT_NE(at, std::string::npos);
    bytes[at + 6] ^= 1;
    WriteFile(segment, bytes);
    auto const result = work.Run({"verify", "m.ksd"});
    EXPECT_EQ(result.status, 1) << result.output << result.errors;
    EXPECT_NE(result.output.find("findings"), std::string::npos);
    EXPECT_NE(work.Run({"verify", "m.ksd", "--json"}).output.find("\"sound\": false"),
              std::string::npos);
    EXPECT_EQ(work.Run({"export", "m.ksd", "-o", "m.vtu"}).status, 2);
    EXPECT_FALSE(fs::exists(work / "m.vtu"));
}

TEST_F(CommandLine, ADeckFromAPipeIsTranslatedUnlessItRefersForward) {
    fs::path const pipe = work / "pipe";
    auto const translate = [&](std::string const& deck) {
        fs::remove(pipe);
        EXPECT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        std::thread writer([&] { WriteFile(pipe, deck); });
        auto result = work.Run({"translate", "pipe", "-o", "p.ksd"});
        writer.join();
        fs::remove_all(work / "p.ksd");
        return result;
    };
    auto const plain = translate(kDeck);
    EXPECT_EQ(plain.status, 0) << plain.errors;
    auto const forward = translate("*ELEMENT, TYPE=B31\n1, 1, 2\n*NODE\n1\n2\n");
    EXPECT_EQ(forward.status, 2);
    EXPECT_EQ(forward.errors,
              "kovsim: pipe:2: refers to what is not defined before; expected a regular file, "
              "which can be read twice\n");
    auto const parts = translate("*HEADING\nx\n*PART, NAME=A\n*NODE\n1\n*END PART\n");
    EXPECT_EQ(parts.status, 2);
    EXPECT_EQ(parts.errors,
              "kovsim: pipe:3: a deck with parts; expected a regular file, as parts are read once "
              "for each instance\n");
    fs::remove(pipe);
    EXPECT_EQ(Entries(work.Folder()), Names{"deck.inp"});
}

// A deck that takes a while.
std::string LargeDeck() {
    std::string text = "*NODE\n";
    for (int i = 1; i <= 1500000; ++i) text += std::to_string(i) + ", 1.5, 2.5, 3.5\n";
    return text;
}

// Waits until the run has begun to write.
bool WaitForPlace(std::string const& folder) {
    for (int i = 0; i < 2000; ++i) {
        for (auto const& name : Entries(folder)) {
            if (name[0] == '.' && fs::exists(folder + "/" + name + "/m.ksd/bulk")) return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}

class Interrupted : public CommandLine, public ::testing::WithParamInterface<int> {};

TEST_P(Interrupted, LeavesNothing) {
    WriteFile(work / "large.inp", LargeDeck());
    Process process(work.Folder(), {"translate", "large.inp", "-o", "m.ksd"});
    ASSERT_TRUE(WaitForPlace(work.Folder()));
    process.Signal(GetParam());
    EXPECT_EQ(process.Wait(), 1000 + GetParam());
    EXPECT_EQ(process.Errors(), "kovsim: interrupted\n");
    EXPECT_EQ(Entries(work.Folder()), (Names{"deck.inp", "large.inp"}));
}
INSTANTIATE_TEST_SUITE_P(Signals, Interrupted, ::testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_F(CommandLine, AnInterruptionWithinAnAssemblyLeavesNothing) {
    std::string deck = "*PART, NAME=P\n" + LargeDeck() + "*END PART\n*ASSEMBLY\n";
    for (int i = 0; i < 20; ++i) {
        deck += "*INSTANCE, NAME=I" + std::to_string(i) + ", PART=P\n*END INSTANCE\n";
    }
    WriteFile(work / "large.inp", deck + "*END ASSEMBLY\n");
    Process process(work.Folder(), {"translate", "large.inp", "-o", "m.ksd"});
    ASSERT_TRUE(WaitForPlace(work.Folder()));
    process.Signal(SIGINT);
    EXPECT_EQ(process.Wait(), 1000 + SIGINT);
    EXPECT_EQ(process.Errors(), "kovsim: interrupted\n");
    EXPECT_EQ(Entries(work.Folder()), (Names{"deck.inp", "large.inp"}));
}

TEST_F(CommandLine, TheNextRunClearsAwayAfterAKilledOne) {
    WriteFile(work / "large.inp", LargeDeck());
    Process process(work.Folder(), {"translate", "large.inp", "-o", "m.ksd"});
    ASSERT_TRUE(WaitForPlace(work.Folder()));
    process.Signal(SIGKILL);
    ASSERT_EQ(process.Wait(), 1000 + SIGKILL);
    EXPECT_FALSE(fs::exists(work / "m.ksd"));
    EXPECT_EQ(Entries(work.Folder()).size(), 3U);
    Translate();
    EXPECT_EQ(Entries(work.Folder()), (Names{"deck.inp", "large.inp", "m.ksd"}));
    EXPECT_EQ(work.Run({"verify", "m.ksd"}).status, 0);
}

}  // namespace
}  // namespace kov::test
