// kovsim check on a certified document, on faulty ones, and what it does with its outputs.

#include <fstream>
#include <sstream>

#include "CommandFixture.h"
#include "SmallXml.h"
#include "services/LumenDocument.h"

namespace kov::test {
namespace {

constexpr char kCertified[] = "certified: nothing that a viewer needs is missing\n";

class Check : public CommandTest {
  protected:
    Check() : CommandTest("check") {}

    // A document that is certified, after `spoil` in a transaction.
    template <class Spoil>
    Workshop::Result AskOf(Spoil const& spoil, std::vector<std::string> arguments = {}) const {
        LumenDocument made(Medium::Disk);
        auto const transaction = made.Write();
        spoil(made);
        transaction->Commit();
        made.document.Close();
        arguments.insert(arguments.begin(), {"check", made.Path()});
        return work.Run(arguments);
    }
    std::string Read(char const* name) const {
        std::ifstream file(work / name);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
};

void Nothing(LumenDocument const&) {}
// Bars the way of the focus to all its steps, in the order of the walk.
void ForgetSteps(LumenDocument const& made) {
    KOVSimSet const known = made.document.Focus().GetSet(schema::Focus_externalTaskIds());
    for (char const* const step : {"Static", "Riks", "Buckle", "Freq", "Steady"})
        known.Remove(made.At(step));
}

TEST_F(Check, ACertifiedDocumentIsStatusZero) {
    Workshop::Result const result = AskOf(Nothing);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, kCertified);
    EXPECT_EQ(result.errors, "");
    JsonValue const json = ParseJson(AskOf(Nothing, {"--json"}).output);
    EXPECT_TRUE(json["certified"].truth);
    EXPECT_EQ(json["findings"].Size(), 0U);
}

TEST_F(Check, FindingsStandOneALineInTheOrderOfTheWalk) {
    Workshop::Result const result = AskOf(ForgetSteps);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output,
              "Step \"Static\" is not referred to by Focus (Focus_externalTaskIds).\n"
              "Step \"Riks\" is not referred to by Focus (Focus_externalTaskIds).\n"
              "Step \"Buckle\" is not referred to by Focus (Focus_externalTaskIds).\n"
              "Step \"Freq\" is not referred to by Focus (Focus_externalTaskIds).\n"
              "Step \"Steady\" is not referred to by Focus (Focus_externalTaskIds).\n");
    JsonValue const json = ParseJson(AskOf(ForgetSteps, {"--json"}).output);
    EXPECT_FALSE(json["certified"].truth);
    ASSERT_EQ(json["findings"].Size(), 5U);
    EXPECT_EQ(json["findings"][1].text,
              "Step \"Riks\" is not referred to by Focus (Focus_externalTaskIds).");
}

TEST_F(Check, ANewDocumentLacksNodesClassesAndSteps) {
    Make([](KOVObjDocument const&) {});
    Workshop::Result const result = Ask({});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.output.find("Model has no Steps.\n"), std::string::npos);
}

TEST_F(Check, ABuildServerGetsATestForEachFinding) {
    EXPECT_EQ(AskOf(ForgetSteps, {"--junit", work / "bad.xml"}).status, 1);
    XmlElement const bad = SmallXml::Parse(Read("bad.xml"));
    EXPECT_EQ(bad.tag, "testsuite");
    EXPECT_EQ(bad.attributes.at("tests"), "5");
    EXPECT_EQ(bad.attributes.at("failures"), "5");
    EXPECT_EQ(bad.attributes.at("errors"), "0");
    ASSERT_EQ(bad.children.size(), 5U);
    EXPECT_EQ(bad.children[1].children.at(0).attributes.at("message"),
              "Step \"Riks\" is not referred to by Focus (Focus_externalTaskIds).");

    EXPECT_EQ(AskOf(Nothing, {"--junit", work / "good.xml"}).status, 0);
    XmlElement const good = SmallXml::Parse(Read("good.xml"));
    EXPECT_EQ(good.attributes.at("tests"), "1");
    ASSERT_EQ(good.children.size(), 1U);
    EXPECT_TRUE(good.children[0].children.empty());
}

TEST_F(Check, AReportIsNotReplaced) {
    std::ofstream(work / "there.xml") << "mine";
    Workshop::Result const result = AskOf(Nothing, {"--junit", work / "there.xml"});
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.errors.find("there.xml"), std::string::npos);
    EXPECT_EQ(Read("there.xml"), "mine");
}

TEST_F(Check, WhatIsNoDocumentIsStatusTwo) {
    Workshop::Result const result = work.Run({"check", "none.ksd"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_NE(result.errors.find("none.ksd"), std::string::npos);
}

}  // namespace
}  // namespace kov::test
