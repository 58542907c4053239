#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "CommandFixture.h"
#include "DamagedDocuments.h"
#include "JsonText.h"
#include "KOVObjDocument.h"
#include "KOVObjElementClass.h"
#include "KOVObjElementClassification.h"
#include "KOVSimSet.h"
#include "KOVSrvEltClassificationBuilder.h"
#include "ModelBuilder.h"

namespace kov::test {
namespace {

namespace fs = std::filesystem;

class Classes : public CommandTest {
  protected:
    Classes() : CommandTest("classes") {}
    static void BuildClassified(KOVObjDocument const& document) {
        BuildAssembly(document);
        KOVSrvEltClassificationBuilder(document.Focus())
            .BuildEltClassification(KOVSrvEltClassificationByShape);
    }
    std::string Show(int status, std::vector<std::string> const& arguments = {}) const {
        Workshop::Result const result = Ask(arguments);
        EXPECT_EQ(result.status, status) << result.output << result.errors;
        return status == 2 ? result.errors : result.output;
    }
};

char const kClasses[] =
    "2 element classes\n"
    "QUADRILATERAL_4\n"
    "  first specification  S4\n"
    "  specifications       S4, S4R\n"
    "  elements             2\n"
    "  from                 P-1 1 to P-1 2\n"
    "TRIANGLE_3\n"
    "  first specification  S3\n"
    "  specifications       S3\n"
    "  elements             1\n"
    "  from                 \"My Part\" 1\n";

TEST_F(Classes, AreShownWithTheirSpecifications) {
    Make(BuildClassified);
    EXPECT_EQ(Show(0), kClasses);
}

TEST_F(Classes, TheirOwnElementsComeFirst) {
    Make([](KOVObjDocument const& document) {
        BuildClassified(document);
        ModelBuilder model(document);
        KOVSimSet const classes = model.Mesh().GetElementClassification().GetSet(
            schema::ElementClassification_elementClasses());
        KOVObjElementClass(*classes.Begin()).SetElementCSet(model.ElementSet({0, 1, 3, 4}));
        model.Commit();
    });
    EXPECT_NE(Show(0).find("  elements             4\n  from                 P-1 1 to (no label) "
                           "4\nTRIANGLE_3\n"),
              std::string::npos);
}

TEST_F(Classes, AreShownAsJson) {
    Make(BuildClassified);
    JsonValue const shown = ParseJson(Show(0, {"--json"}));
    EXPECT_TRUE(shown["classified"].truth);
    ASSERT_EQ(shown["classes"].Size(), 2U);
    JsonValue const& quads = shown["classes"][0];
    EXPECT_EQ(quads["shape"].text, "QUADRILATERAL_4");
    EXPECT_EQ(quads["firstSpecification"].text, "S4");
    EXPECT_EQ(quads["specifications"].Size(), 2U);
    EXPECT_EQ(quads["elements"].Int(), 2);
    EXPECT_EQ(quads["first"]["instance"].text, "P-1");
    EXPECT_EQ(quads["last"]["label"].Int(), 2);
    EXPECT_EQ(quads["last"]["ordinal"].Int(), 1);
}

TEST_F(Classes, WithoutAClassificationTheAssignmentIsShownWithStatusOne) {
    Make(BuildAssembly);
    EXPECT_EQ(Show(1),
              "no classification; 3 element specifications assigned\n"
              "QUADRILATERAL_4\n"
              "  specification        S4\n"
              "  elements             1\n"
              "  from                 P-1 1\n"
              "TRIANGLE_3\n"
              "  specification        S3\n"
              "  elements             1\n"
              "  from                 \"My Part\" 1\n"
              "QUADRILATERAL_4\n"
              "  specification        S4R\n"
              "  elements             1\n"
              "  from                 P-1 2\n");
    JsonValue const shown = ParseJson(Show(1, {"--json"}));
    EXPECT_FALSE(shown["classified"].truth);
    EXPECT_EQ(shown["assignment"].Size(), 3U);
    EXPECT_EQ(shown["assignment"][2]["specification"].text, "S4R");
}

TEST_F(Classes, WithoutAnAssignmentThereIsNothingToShow) {
    Make([](KOVObjDocument const&) {});
    EXPECT_EQ(Show(1), "no classification; 0 element specifications assigned\n");
    Make([](KOVObjDocument const& document) {
        KOVSimTransaction transaction(document.ContextID());
        document.SetModel(KOVSimPosition());
        transaction.Commit();
    });
    EXPECT_EQ(Show(1), "no classification; 0 element specifications assigned\n");
}

TEST_F(Classes, AnEmptyClassificationHasNoClasses) {
    Make([](KOVObjDocument const& document) {
        ModelBuilder model(document);
        model.Mesh().SetElementClassification(model.Record(schema::ElementClassification()));
        model.Commit();
    });
    EXPECT_EQ(Show(0), "0 element classes\n");
}

TEST_F(Classes, WithNullLinksAreShownAsFarAsTheyGo) {
    Make([](KOVObjDocument const& document) {
        ModelBuilder model(document);
        KOVSimPosition const classification = model.Record(schema::ElementClassification());
        KOVObjElementClassification(classification)
            .AppendElementClass(model.Record(schema::ElementClass()));
        model.Mesh().SetElementClassification(classification);
        model.Commit();
    });
    EXPECT_EQ(Show(0),
              "1 element class\n"
              "without shape\n"
              "  first specification  none\n"
              "  specifications       none\n"
              "  elements             0\n"
              "  from                 none\n");
    JsonValue const shown = ParseJson(Show(0, {"--json"}));
    EXPECT_TRUE(shown["classes"][0]["shape"].IsNull());
    EXPECT_TRUE(shown["classes"][0]["first"].IsNull());
}

// -------------------------------------------------------------- all three that answer questions

std::vector<std::vector<std::string>> Questions() {
    return {{"sets", "m.ksd"},
            {"sets", "m.ksd", "--json"},
            {"sets", "m.ksd", "P-1.Top"},
            {"sets", "m.ksd", "P-1.Ori", "--json"},
            {"sets", "m.ksd", "unknown"},
            {"find", "m.ksd", "node", "P-1", "30", "31"},
            {"find", "m.ksd", "node", "--ordinal", "4", "11"},
            {"find", "m.ksd", "element", "", "9", "--json"},
            {"classes", "m.ksd"}};
}

TEST_F(Classes, QuestionsToWhatIsNoDocumentAreStatusTwo) {
    WriteFile(work / "file", "text");
    fs::create_directory(work / "folder");
    for (std::vector<std::string> question : Questions()) {
        question[1] = "none.ksd";
        Workshop::Result const missing = work.Run(question);
        EXPECT_EQ(missing.status, 2);
        EXPECT_EQ(missing.errors,
                  "kovsim: none.ksd: cannot be opened: No such file or directory\n");
        question[1] = "file";
        Workshop::Result const file = work.Run(question);
        EXPECT_EQ(file.status, 2);
        EXPECT_EQ(file.errors,
                  "kovsim: file: is no document; expected a folder such as MODEL.ksd\n");
        question[1] = "folder";
        Workshop::Result const folder = work.Run(question);
        EXPECT_EQ(folder.status, 2);
        EXPECT_EQ(folder.errors.substr(0, 8), "kovsim: ");
        EXPECT_NE(folder.errors.find("folder"), std::string::npos);
    }
}

TEST_F(Classes, QuestionsToAClosedDocumentAreStatusTwo) {
    if (geteuid() == 0) GTEST_SKIP() << "nothing is closed to the superuser";
    Make(BuildClassified);
    for (char const* const part : {"m.ksd/catalog.sqlite", "m.ksd"}) {
        chmod((work / part).c_str(), 0);
        for (std::vector<std::string> const& question : Questions()) {
            Workshop::Result const result = work.Run(question);
            EXPECT_EQ(result.status, 2);
            EXPECT_EQ(result.errors.substr(0, 8), "kovsim: ");
            EXPECT_NE(result.errors.find("m.ksd"), std::string::npos);
            EXPECT_EQ(result.output, "");
        }
        chmod((work / part).c_str(), 0700);
    }
}

TEST_F(Classes, QuestionsLeaveTheDocumentAsItIs) {
    Make(BuildClassified);
    std::string const before = ReadFile(work / "m.ksd/catalog.sqlite");
    for (std::vector<std::string> const& question : Questions()) work.Run(question);
    EXPECT_TRUE(ReadFile(work / "m.ksd/catalog.sqlite") == before);
    EXPECT_EQ(Entries(work / "m.ksd"), (std::set<std::string>{"bulk", "catalog.sqlite", "lock"}));
}

TEST_F(Classes, QuestionsToDamagedDocumentsAreAnsweredOrRefused) {
    Make(BuildClassified);
    ExpectAnswersOrRefusals(work, Questions());
}

}  // namespace
}  // namespace kov::test
