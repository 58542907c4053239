// What the command line tells of the sections of a deck, beside the commands about sections.

#include <gtest/gtest.h>

#include <string>

#include "JsonText.h"
#include "Process.h"

namespace kov::test {
namespace {

std::string const kDeck =
    "*NODE\n1\n2, 1\n3, 2\n7, 0, 1\n8, 1, 1\n9, 2, 1\n*ELEMENT, TYPE=S4R\n11, 1, 2, 8, 7\n"
    "12, 2, 3, 9, 8\n*ELEMENT, TYPE=S3\n13, 1, 2, 8\n*ELSET, ELSET=Skin\n11\n*SURFACE, NAME=Top\n"
    "Skin, SPOS\n*MATERIAL, NAME=Steel\n*SHELL SECTION, ELSET=Skin, COMPOSITE, DENSITY=1\n"
    "0.5, 3, Steel, 45, P\n";

class SectionsTold : public ::testing::Test {
  protected:
    Workshop work;

    Workshop::Result Translate(std::vector<std::string> const& further = {}) {
        WriteFile(work / "a.inp", kDeck);
        std::vector<std::string> words = {"translate", "a.inp", "-o", "m.ksd"};
        words.insert(words.end(), further.begin(), further.end());
        return work.Run(words);
    }
};

bool Has(std::string const& text, std::string const& part) {
    return text.find(part) != std::string::npos;
}

TEST_F(SectionsTold, TheSummaryCountsThem) {
    auto const result = Translate();
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_TRUE(Has(result.output, "materials                           1\n")) << result.output;
    EXPECT_TRUE(Has(result.output, "sections                            1\n")) << result.output;
    EXPECT_TRUE(Has(result.output, "plies                               1\n")) << result.output;
    EXPECT_TRUE(Has(result.output, "DENSITY of *SHELL SECTION, which was not kept: 1\n"));
    EXPECT_TRUE(Has(result.output,
                    "1 element (S4R) of a.inp:8 is in no section, the first is 12\n"
                    "1 element (S3) of a.inp:11 is in no section, the first is 13\n"))
        << result.output;
}

TEST_F(SectionsTold, TheSummaryAsJson) {
    auto const result = Translate({"--json"});
    ASSERT_EQ(result.status, 0) << result.errors;
    JsonValue const json = ParseJson(result.output);
    EXPECT_EQ(json["materials"].Int(), 1);
    EXPECT_EQ(json["sections"].Int(), 1);
    EXPECT_EQ(json["plies"].Int(), 1);
    auto const& without = json["elementsWithoutSection"];
    EXPECT_EQ(without["elements"].Int(), 2);
    EXPECT_EQ(without["blocks"].Int(), 2);
    EXPECT_EQ(without["first"][1]["line"].Int(), 11);
    EXPECT_EQ(without["first"][1]["file"].text, "a.inp");
    EXPECT_EQ(without["first"][1]["type"].text, "S3");
    EXPECT_EQ(without["first"][1]["label"].Int(), 13);
    EXPECT_EQ(without["first"][1]["instance"].text, "");
}

std::string const kOther =
    "*NODE\n1\n2, 1\n3, 1, 1\n4, 0, 1\n*ELEMENT, TYPE=S4R, ELSET=\"a b\"\n7, 1, 2, 3, 4\n8, 1, 2, "
    "3, "
    "4\n*ELEMENT, TYPE=B31, ELSET=Beam\n9, 1, 2\n*MATERIAL, NAME=Steel\n*BEAM SECTION, ELSET=\"a "
    "b\", MATERIAL=Steel, SECTION=CIRC\n1\n*SHELL SECTION, ELSET=Beam, MATERIAL=Steel\n1\n";

TEST_F(SectionsTold, ThatAreOfAnotherKindThanTheirElements) {
    WriteFile(work / "b.inp", kOther);
    auto const result = work.Run({"translate", "b.inp", "-o", "b.ksd"});
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_TRUE(Has(result.output,
                    "b.inp:12: beam section 'a b' is given to 2 elements that are no beams, the "
                    "first is 7 (S4R)\n"
                    "b.inp:14: shell section 'Beam' is given to 1 element that is no shell, the "
                    "first is 9 (B31)\n"))
        << result.output;
}

TEST_F(SectionsTold, ThatAreOfAnotherKindAsJson) {
    WriteFile(work / "b.inp", kOther);
    auto const result = work.Run({"translate", "b.inp", "-o", "b.ksd", "--json"});
    ASSERT_EQ(result.status, 0) << result.errors;
    JsonValue const json = ParseJson(result.output);
    auto const& others = json["sectionsOfAnotherKind"];
    EXPECT_EQ(others["elements"].Int(), 3);
    EXPECT_EQ(others["sections"].Int(), 2);
    EXPECT_EQ(others["first"][0]["file"].text, "b.inp");
    EXPECT_EQ(others["first"][0]["line"].Int(), 12);
    EXPECT_EQ(others["first"][0]["kind"].text, "beam");
    EXPECT_EQ(others["first"][0]["set"].text, "a b");
    EXPECT_EQ(others["first"][0]["elements"].Int(), 2);
    EXPECT_EQ(others["first"][0]["type"].text, "S4R");
    EXPECT_EQ(others["first"][0]["instance"].text, "");
    EXPECT_EQ(others["first"][0]["label"].Int(), 7);
    EXPECT_EQ(others["first"][1]["line"].Int(), 14);
}

TEST_F(SectionsTold, ThatAreOfAnotherKindInAnInstance) {
    WriteFile(work / "b.inp", "*PART, NAME=P\n" + kOther +
                                  "*END PART\n*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=P\n"
                                  "*END INSTANCE\n*INSTANCE, NAME=J, PART=P\n*END INSTANCE\n*END "
                                  "ASSEMBLY\n");
    auto const result = work.Run({"translate", "b.inp", "-o", "b.ksd"});
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_TRUE(Has(result.output,
                    "b.inp:15: shell section 'Beam' is given to 2 elements that are no shells, the "
                    "first is 9 of I (B31)\n"))
        << result.output;
}

TEST_F(SectionsTold, ParametersThatAreNotKeptAreStrictErrors) {
    auto const result = Translate({"--strict"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors,
              "kovsim: a.inp:18: parameter DENSITY of *SHELL SECTION is not kept; expected kept "
              "ones only\n");
}

TEST_F(SectionsTold, InfoCountsThemAndTheirRegionsAreNoSurfaces) {
    ASSERT_EQ(Translate().status, 0);
    auto const result = work.Run({"info", "m.ksd", "--json"});
    JsonValue const json = ParseJson(result.output);
    EXPECT_EQ(json["surfaces"].Int(), 1);
    EXPECT_EQ(json["materials"].Int(), 1);
    EXPECT_EQ(json["sections"].Int(), 1);
    EXPECT_EQ(json["plies"].Int(), 1);
    EXPECT_EQ(json["tableFields"].Int(), 0);
    auto const plain = work.Run({"info", "m.ksd"}).output;
    for (char const* const line :
         {"\nsurfaces ", "\nmaterials ", "\nsections ", "\nplies ", "\ntable fields "}) {
        EXPECT_TRUE(Has(plain, line)) << plain;
    }
}

TEST_F(SectionsTold, RegionsOfSectionsAreNotAmongTheSets) {
    ASSERT_EQ(Translate().status, 0);
    auto const list = work.Run({"sets", "m.ksd"});
    EXPECT_FALSE(Has(list.output, "INP2SIM")) << list.output;
    EXPECT_TRUE(Has(list.output, "Top ")) << list.output;
    auto const one = work.Run({"sets", "m.ksd", "INP2SIM_ELSET_Skin"});
    EXPECT_EQ(one.status, 2);
    EXPECT_FALSE(Has(one.errors, "did you mean 'INP2SIM")) << one.errors;
    auto const cut = work.Run({"extract", "m.ksd", "--set", "INP2SIM_ELSET_Skin", "-o", "s.ksd"});
    EXPECT_EQ(cut.status, 2);
}

TEST_F(SectionsTold, AnExtractionKeepsSectionsWithTheirLayers) {
    ASSERT_EQ(Translate().status, 0);
    auto const cut = work.Run({"extract", "m.ksd", "--set", "Skin", "-o", "s.ksd"});
    ASSERT_EQ(cut.status, 0) << cut.errors;
    EXPECT_TRUE(Has(cut.output, "surfaces                            1 of 1\n")) << cut.output;
    EXPECT_EQ(work.Run({"verify", "s.ksd"}).status, 0);
    auto const whole = work.Run({"layup", "m.ksd"});
    ASSERT_EQ(whole.status, 0) << whole.errors;
    EXPECT_EQ(work.Run({"layup", "s.ksd"}).output, whole.output);
}

}  // namespace
}  // namespace kov::test
