#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "CommandFixture.h"
#include "JsonText.h"
#include "KOVObjDocument.h"
#include "ModelBuilder.h"

namespace kov::test {
namespace {

class Find : public CommandTest {
  protected:
    Find() : CommandTest("find") {}
    std::string Show(std::vector<std::string> const& arguments, int status = 0) const {
        Workshop::Result const result = Ask(arguments);
        EXPECT_EQ(result.status, status) << result.output << result.errors;
        if (result.status == 2) {
            EXPECT_EQ(result.output, "");
        } else {
            EXPECT_EQ(result.errors, "");
        }
        return result.status == 2 ? result.errors : result.output;
    }
};

TEST_F(Find, NodesByInstanceAndLabel) {
    Make(BuildAssembly);
    EXPECT_EQ(Show({"node", "P-1", "7", "30", "7"}),
              "node P-1 7: ordinal 4, at 4, 2, 0\n"
              "node P-1 30: ordinal 0, at 0, 0, 0\n"
              "node P-1 7: ordinal 4, at 4, 2, 0\n");
    EXPECT_EQ(Show({"node", "My Part", "5"}), "node \"My Part\" 5: ordinal 9, at 9, 4.5, 0\n");
    EXPECT_EQ(Show({"node", "\"My Part\"", "5"}), "node \"My Part\" 5: ordinal 9, at 9, 4.5, 0\n");
    EXPECT_EQ(Show({"node", "", "100"}), "node \"\" 100: ordinal 10, at 10, 5, 0\n");
    EXPECT_EQ(Show({"node", "\"\"", "100"}), "node \"\" 100: ordinal 10, at 10, 5, 0\n");
}

TEST_F(Find, ElementsWithTheirTypesAndNodes) {
    Make(BuildAssembly);
    EXPECT_EQ(Show({"element", "P-1", "2", "1"}),
              "element P-1 2: ordinal 1, S4R, nodes P-1: 10, 20, 40, 7\n"
              "element P-1 1: ordinal 0, S4, nodes P-1: 30, 10, 20, 40\n");
    EXPECT_EQ(Show({"element", "", "9"}),
              "element \"\" 9: ordinal 3, without type, nodes P-1: 30; \"My Part\": 1; \"\": 100; "
              "(no label): 11\n");
}

TEST_F(Find, WhatIsNotThereIsStatusOne) {
    Make(BuildAssembly);
    EXPECT_EQ(Show({"node", "P-1", "8", "30", "-5", "2147483647"}, 1),
              "node P-1 8: none\n"
              "node P-1 30: ordinal 0, at 0, 0, 0\n"
              "node P-1 -5: none\n"
              "node P-1 2147483647: none\n");
    EXPECT_EQ(Show({"element", "P-1", "3"}, 1), "element P-1 3: none\n");
    EXPECT_EQ(Show({"node", "--ordinal", "12"}, 1), "node ordinal 12: none\n");
}

TEST_F(Find, TheWayBackByOrdinals) {
    Make(BuildAssembly);
    EXPECT_EQ(Show({"node", "--ordinal", "4", "10", "11", "4"}),
              "node P-1 7: ordinal 4, at 4, 2, 0\n"
              "node \"\" 100: ordinal 10, at 10, 5, 0\n"
              "node (no label): ordinal 11, without coordinates\n"
              "node P-1 7: ordinal 4, at 4, 2, 0\n");
    EXPECT_EQ(Show({"element", "--ordinal", "2", "4"}),
              "element \"My Part\" 1: ordinal 2, S3, nodes \"My Part\": 1, 2, 3\n"
              "element (no label): ordinal 4, without type, without nodes\n");
}

TEST_F(Find, AnswersAsJson) {
    Make(BuildAssembly);
    JsonValue const nodes = ParseJson(Show({"node", "P-1", "30", "31", "--json"}, 1));
    EXPECT_EQ(nodes["kind"].text, "node");
    ASSERT_EQ(nodes["answers"].Size(), 2U);
    JsonValue const& node = nodes["answers"][0];
    EXPECT_EQ(node["instance"].text, "P-1");
    EXPECT_EQ(node["label"].Int(), 30);
    EXPECT_EQ(node["ordinal"].Int(), 0);
    EXPECT_TRUE(node["found"].truth);
    EXPECT_EQ(node["coordinates"].Numbers(), (std::vector<double>{0, 0, 0}));
    EXPECT_FALSE(nodes["answers"][1]["found"].truth);
    EXPECT_EQ(nodes["answers"][1]["label"].Int(), 31);
    EXPECT_TRUE(nodes["answers"][1]["ordinal"].IsNull());

    JsonValue const element = ParseJson(Show({"element", "", "9", "--json"}))["answers"][0];
    EXPECT_TRUE(element["type"].IsNull());
    ASSERT_EQ(element["nodes"].Size(), 4U);
    EXPECT_EQ(element["nodes"][1]["instance"].text, "My Part");
    EXPECT_EQ(element["nodes"][1]["label"].Int(), 1);
    EXPECT_EQ(element["nodes"][1]["ordinal"].Int(), 5);
    EXPECT_TRUE(element["nodes"][3]["instance"].IsNull());

    JsonValue const back = ParseJson(Show({"node", "--ordinal", "11", "77", "--json"}, 1));
    EXPECT_TRUE(back["answers"][0]["instance"].IsNull());
    EXPECT_TRUE(back["answers"][0]["coordinates"][0].IsNull());
    EXPECT_TRUE(back["answers"][0]["found"].truth);
    EXPECT_EQ(back["answers"][1]["ordinal"].Int(), 77);
    EXPECT_FALSE(back["answers"][1]["found"].truth);
}

TEST_F(Find, UnknownInstancesAreStatusTwoWithAHint) {
    Make(BuildAssembly);
    EXPECT_EQ(Show({"node", "P-2", "1"}, 2),
              "kovsim: m.ksd: no instance named 'P-2'; did you mean 'P-1'?\n");
    EXPECT_EQ(Show({"node", "my part", "1"}, 2),
              "kovsim: m.ksd: no instance named 'my part'; did you mean 'My Part'?\n");
    EXPECT_EQ(Show({"element", "\"P-1", "1"}, 2),
              "kovsim: m.ksd: the quotes of the instance '\"P-1' are not in pairs\n");
    EXPECT_EQ(Show({"element", "Part of another", "1"}, 2),
              "kovsim: m.ksd: no instance named 'Part of another'\n");
}

TEST_F(Find, AnInstanceWithoutNodesHasNone) {
    Make([](KOVObjDocument const& document) {
        ModelBuilder model(document);
        model.Space(2, 2);
        model.Labels(KOVObjLabelerNodes, "A", {1, 2}, {0, 1});
        model.Labels(KOVObjLabelerElements, "B", {1}, {0});
        model.Put(schema::Model_instances(), "C", model.Record(schema::Instance()));
        model.Commit();
    });
    EXPECT_EQ(Show({"node", "B", "1"}, 1), "node B 1: none\n");
    EXPECT_EQ(Show({"node", "C", "1"}, 1), "node C 1: none\n");
    EXPECT_EQ(Show({"node", "", "1"}, 2),
              "kovsim: m.ksd: all nodes belong to named instances; expected the name of one, such "
              "as A\n");
}

TEST_F(Find, WrongNumbersAreStatusTwo) {
    Make(BuildAssembly);
    std::string const label =
        "' is no label; expected a whole number from -2147483648 to 2147483647\n";
    for (std::string const word : {"x", "1.5", "2147483648", "99999999999999999999", "1-5", ""}) {
        EXPECT_EQ(Show({"node", "P-1", word}, 2), "kovsim: '" + word + label);
    }
    for (std::string const word : {"-1", "two", "4294967296"}) {
        EXPECT_EQ(
            Show({"node", "--ordinal", word}, 2),
            "kovsim: '" + word + "' is no ordinal; expected a whole number from 0 to 2147483647\n");
    }
}

TEST_F(Find, WrongUseIsStatusTwo) {
    Make(BuildAssembly);
    for (std::vector<std::string> const& arguments : {std::vector<std::string>{},
                                                      {"node"},
                                                      {"node", "P-1"},
                                                      {"face", "P-1", "1"},
                                                      {"node", "--ordinal"},
                                                      {"node", "P-1", "1", "--bogus"}}) {
        EXPECT_EQ(Show(arguments, 2).substr(0, 8), "kovsim: ");
    }
}

TEST_F(Find, LabelsFromStandardInput) {
    Make(BuildAssembly);
    WriteFile(work / "labels", "30\n10, 20\n\n41");
    std::string const command = "cd " + work.Folder() + " && '" + Process::Program() +
                                "' find m.ksd node P-1 7 - 40 < labels > out 2> err";
    int const status = std::system(command.c_str());
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_EQ(ReadFile(work / "out"),
              "node P-1 7: ordinal 4, at 4, 2, 0\n"
              "node P-1 30: ordinal 0, at 0, 0, 0\n"
              "node P-1 10: ordinal 1, at 1, 0.5, 0\n"
              "node P-1 20: ordinal 2, at 2, 1, 0\n"
              "node P-1 41: none\n"
              "node P-1 40: ordinal 3, at 3, 1.5, 0\n");
    EXPECT_EQ(ReadFile(work / "err"), "");
}

TEST_F(Find, ClosedStreamsAreToldAndNoFileTakesTheirPlace) {
    Make(BuildAssembly);
    std::string const head = "cd " + work.Folder() + " && '" + Process::Program() + "' ";
    int const input = std::system((head + "find m.ksd node P-1 - <&- > out 2> err").c_str());
    EXPECT_EQ(WEXITSTATUS(input), 2);
    EXPECT_EQ(ReadFile(work / "err"), "kovsim: cannot read standard input: Bad file descriptor\n");
    int const output = std::system((head + "find m.ksd node P-1 7 >&- 2> err").c_str());
    EXPECT_EQ(WEXITSTATUS(output), 2);
    EXPECT_EQ(ReadFile(work / "err"),
              "kovsim: cannot write to standard output: Bad file descriptor\n");
    WriteFile(work / "d.inp", "*NODE\n1, 1\n");
    int const all = std::system((head + "translate d.inp -o c.ksd <&- >&- 2>&-").c_str());
    EXPECT_EQ(WEXITSTATUS(all), 2);
    int const only = std::system((head + "translate d.inp -o e.ksd <&- 2>&- > out").c_str());
    EXPECT_EQ(WEXITSTATUS(only), 0);
    EXPECT_EQ(work.Run({"verify", "e.ksd"}).status, 0);
}

// More than one block of questions, each answered as if it were the only one.
TEST_F(Find, ManyLabelsAreAnsweredInTheirOrder) {
    int const count = 30000;
    std::string deck = "*NODE\n";
    for (int i = 0; i < count; ++i) {
        int const label = 1 + (i * 7919) % 30011;
        deck += std::to_string(label) + "," + std::to_string(i) + "\n";
    }
    WriteFile(work / "d.inp", deck);
    ASSERT_EQ(work.Run({"translate", "d.inp", "-o", "m.ksd"}).status, 0);
    std::string labels;
    std::string expected;
    for (int k = 0; k < 250000; ++k) {
        int const i = (k * 31) % count;
        std::string const label = std::to_string(1 + (i * 7919) % 30011);
        labels += label + "\n";
        expected += "node \"\" " + label + ": ordinal " + std::to_string(i) + ", at " +
                    std::to_string(i) + ", 0, 0\n";
    }
    WriteFile(work / "labels", labels);
    std::string const command = "cd " + work.Folder() + " && '" + Process::Program() +
                                "' find m.ksd node '' - < labels > out";
    ASSERT_EQ(WEXITSTATUS(std::system(command.c_str())), 0);
    EXPECT_TRUE(ReadFile(work / "out") == expected);
}

TEST_F(Find, DocumentsWithoutLabelsAreAskedByOrdinal) {
    Make([](KOVObjDocument const& document) {
        ModelBuilder model(document);
        model.Space(3, 1);
        model.Coordinates(3);
        model.Element(0, {2, 0});
        model.Commit();
    });
    EXPECT_EQ(Show({"node", "", "1"}, 2),
              "kovsim: m.ksd: the nodes have no labels; ask for ordinals with --ordinal\n");
    EXPECT_EQ(Show({"node", "--ordinal", "2"}), "node (no label): ordinal 2, at 2, 1, 0\n");
    EXPECT_EQ(Show({"element", "--ordinal", "0"}),
              "element (no label): ordinal 0, without type, nodes (no label): 2, 0\n");
}

TEST_F(Find, DocumentsWithLittleInThemAreAnswered) {
    Make([](KOVObjDocument const&) {});
    EXPECT_EQ(Show({"node", "--ordinal", "0"}, 1), "node ordinal 0: none\n");
    EXPECT_EQ(Show({"element", "--ordinal", "0"}, 1), "element ordinal 0: none\n");
    Make([](KOVObjDocument const& document) {
        ModelBuilder model(document);
        model.Space(2, 2);
        document.SetComponentCollection(KOVSimPosition());
        model.Mesh().SetCoordinates(KOVSimPosition());
        model.Mesh().SetConnectivity(KOVSimPosition());
        model.Commit();
    });
    EXPECT_EQ(Show({"node", "--ordinal", "1"}),
              "node (no label): ordinal 1, without coordinates\n");
    EXPECT_EQ(Show({"element", "--ordinal", "1"}),
              "element (no label): ordinal 1, without type, without nodes\n");
    Make([](KOVObjDocument const& document) {
        KOVSimTransaction transaction(document.ContextID());
        document.SetModel(KOVSimPosition());
        transaction.Commit();
    });
    EXPECT_EQ(Show({"node", "--ordinal", "1"}, 1), "node ordinal 1: none\n");
    EXPECT_EQ(Show({"element", "x", "1"}, 2).substr(0, 15), "kovsim: m.ksd: ");
}

TEST_F(Find, LinksToWhatIsSomethingElseAreTold) {
    Make([](KOVObjDocument const& document) {
        BuildAssembly(document);
        ModelBuilder model(document);
        KOVSimDSet const dset(model.Mesh().GetConnectivity());
        model.Mesh().SetCoordinates(KOVSimPosition(dset.GetRelationalDistributionID()));
        model.Commit();
    });
    EXPECT_EQ(Show({"node", "P-1", "7"}, 2),
              "kovsim: m.ksd: the coordinates are not real numbers by node and component\n");
    Make([](KOVObjDocument const& document) {
        BuildAssembly(document);
        ModelBuilder model(document);
        model.Element(4, {0, 500});
        model.Commit();
    });
    EXPECT_EQ(Show({"element", "--ordinal", "4"}, 2),
              "kovsim: m.ksd: element 4 of the mesh names node 500, of 12 nodes; the document is "
              "not sound\n");
    EXPECT_EQ(Show({"element", "--ordinal", "2"}),
              "element \"My Part\" 1: ordinal 2, S3, nodes \"My Part\": 1, 2, 3\n");
}

}  // namespace
}  // namespace kov::test
