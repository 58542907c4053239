#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "CommandFixture.h"
#include "JsonText.h"
#include "SectionBuilder.h"

namespace kov::test {
namespace {

using Ints = SectionBuilder::Ints;

constexpr int kQuadrilateral = 11;
constexpr int kPoint = 0;

LayerMade Steel() {
    LayerMade layer;
    layer.material = "STEEL";
    layer.thickness = 1;
    return layer;
}

// Ten elements, 8 and 9 masses, all labelled from 1 in P-1 but the last two of the shells.
void AddMesh(SectionBuilder& made) {
    made.model.Space(4, 11);
    made.model.Labels(KOVObjLabelerElements, "P-1", {1, 2, 3, 4, 5, 6}, {0, 1, 2, 3, 4, 5});
    made.model.Labels(KOVObjLabelerElements, "", {1, 2}, {8, 9});
    made.model.Assignment(
        {{made.model.Specification("S4", kQuadrilateral), {0, 1, 2, 3, 4, 5, 6, 7}},
         {made.model.Specification("MASS", kPoint), {8, 9}}});
}

void BuildSections(KOVObjDocument const& document) {
    SectionBuilder made(document);
    AddMesh(made);
    KOVSimPosition const skin = made.Shell("P-1_Skin", {Steel(), Steel()});
    made.Assign(skin, made.ElementSet("P-1_Skin", {0, 1, 2}));
    made.Assign(made.Shell("Sheet", {Steel()}, false), {2, 3, 8});
    made.Assign(made.Section("Bar", schema::Section_Beam(), "STEEL"), {4});
    made.model.Model()
        .GetMap(schema::Model_sections())
        .Find("Bar")
        .GetDataRecord()
        .SetString(3, "PIPE");
    made.Assign(made.Section("Lump", schema::Section_Solid(), "STEEL"), {8});
    made.Commit();
}

class Sections : public CommandTest {
  protected:
    Sections() : CommandTest("sections") {}
    std::string Show(int status, std::vector<std::string> const& arguments = {}) const {
        Workshop::Result const result = Ask(arguments);
        EXPECT_EQ(result.status, status) << result.output << result.errors;
        return status == 2 ? result.errors : result.output;
    }
};

TEST_F(Sections, AreListedWithWhatTheyGovern) {
    Make(BuildSections);
    EXPECT_EQ(Show(1),
              "4 section assignments\n"
              "  number  section   kind               holds        given to  elements  governs\n"
              "       1  P-1_Skin  composite shell    2 layers     P-1_Skin         3        3\n"
              "       2  Sheet     homogeneous shell  STEEL        -                3        2"
              "  1 governed by one before it\n"
              "       3  Bar       beam               PIPE, STEEL  -                1        1\n"
              "       4  Lump      homogeneous solid  STEEL        -                1        0"
              "  1 governed by one before it\n"
              "3 elements in no section\n"
              "  S4  3  P-1: 6; (no label): 6-7\n"
              "2 elements in no section, which need none\n"
              "  MASS          1  \"\": 2\n"
              "  without type  1  (no label): 10\n"
              "1 element in more than one section\n"
              "  S4  1  P-1: 3\n"
              "1 element in more than one section, which need none\n"
              "  MASS  1  \"\": 1\n");
}

TEST_F(Sections, AreShownAsJson) {
    Make(BuildSections);
    JsonValue const shown = ParseJson(Show(1, {"--json"}));
    EXPECT_EQ(shown["document"].text, "m.ksd");
    EXPECT_FALSE(shown["complete"].truth);
    ASSERT_EQ(shown["assignments"].Size(), 4U);
    JsonValue const& skin = shown["assignments"][0];
    EXPECT_EQ(skin["number"].Int(), 1);
    EXPECT_EQ(skin["section"].text, "P-1_Skin");
    EXPECT_EQ(skin["kind"].text, "shell");
    EXPECT_TRUE(skin["composite"].truth);
    EXPECT_EQ(skin["layers"].Int(), 2);
    EXPECT_TRUE(skin["material"].IsNull());
    EXPECT_EQ(skin["elementSet"].text, "P-1_Skin");
    EXPECT_EQ(skin["governed"].Int(), 3);
    JsonValue const& sheet = shown["assignments"][1];
    EXPECT_EQ(sheet["material"].text, "STEEL");
    EXPECT_TRUE(sheet["elementSet"].IsNull());
    EXPECT_EQ(sheet["elements"].Int(), 3);
    EXPECT_EQ(sheet["governed"].Int(), 2);
    EXPECT_EQ(sheet["lost"].Int(), 1);
    EXPECT_EQ(shown["assignments"][2]["profile"].text, "PIPE");
    ASSERT_EQ(shown["withoutSection"].Size(), 3U);
    JsonValue const& shells = shown["withoutSection"][0];
    EXPECT_EQ(shells["type"].text, "S4");
    EXPECT_TRUE(shells["needsSection"].truth);
    EXPECT_EQ(shells["count"].Int(), 3);
    EXPECT_EQ(shells["members"][0]["instance"].text, "P-1");
    EXPECT_EQ(shells["members"][0]["ranges"][0].Numbers(), (std::vector<double>{6, 6, 1}));
    EXPECT_TRUE(shells["members"][1]["instance"].IsNull());
    EXPECT_FALSE(shown["withoutSection"][1]["needsSection"].truth);
    EXPECT_TRUE(shown["withoutSection"][2]["type"].IsNull());
    ASSERT_EQ(shown["inSeveralSections"].Size(), 2U);
    EXPECT_EQ(shown["inSeveralSections"][0]["count"].Int(), 1);
}

TEST_F(Sections, ThatCoverAllWithoutOverlapAreStatusZero) {
    Make([](KOVObjDocument const& document) {
        SectionBuilder made(document);
        AddMesh(made);
        KOVSimPosition const sheet = made.Shell("Sheet", {Steel()}, false);
        made.Assign(sheet, {0, 1, 2, 3, 4});
        made.Assign(sheet, {5, 6, 7});
        made.Commit();
    });
    EXPECT_EQ(Show(0),
              "2 section assignments\n"
              "  number  section  kind               holds  given to  elements  governs\n"
              "       1  Sheet    homogeneous shell  STEEL  -                5        5\n"
              "       2  Sheet    homogeneous shell  STEEL  -                3        3\n"
              "3 elements in no section, which need none\n"
              "  MASS          2  \"\": 1-2\n"
              "  without type  1  (no label): 10\n"
              "each element that needs a section is in one\n");
    EXPECT_TRUE(ParseJson(Show(0, {"--json"}))["complete"].truth);
}

TEST_F(Sections, OfAnUnknownElementTypeAreExpected) {
    Make([](KOVObjDocument const& document) {
        SectionBuilder made(document);
        made.model.Space(0, 2);
        made.model.Assignment({{made.model.Specification("XYZ9", kQuadrilateral), {0, 1}}});
        made.Assign(made.Shell("Sheet", {Steel()}, false), {0});
        made.Commit();
    });
    EXPECT_NE(Show(1).find("1 element in no section\n  XYZ9  1  (no label): 1\n"),
              std::string::npos);
}

TEST_F(Sections, OfADocumentWithoutAnyAreNone) {
    Make([](KOVObjDocument const&) {});
    EXPECT_EQ(Show(0), "the model has no sections\n");
    EXPECT_EQ(ParseJson(Show(0, {"--json"}))["assignments"].Size(), 0U);
    Make([](KOVObjDocument const& document) {
        KOVSimTransaction transaction(document.ContextID());
        document.SetMesh(KOVSimPosition());
        document.SetModel(KOVSimPosition());
        transaction.Commit();
    });
    EXPECT_EQ(Show(0), "the model has no sections\n");
}

TEST_F(Sections, OfElementsThatNeedThemButHaveNoneAreIncomplete) {
    Make([](KOVObjDocument const& document) {
        SectionBuilder made(document);
        made.model.Space(0, 1);
        made.model.Assignment({{made.model.Specification("S4", kQuadrilateral), {0}}});
        made.Commit();
    });
    EXPECT_EQ(Show(1), "the model has no sections\n");
    EXPECT_FALSE(ParseJson(Show(1, {"--json"}))["complete"].truth);
}

TEST_F(Sections, AnAssignmentThatStandsTwiceGovernsOnce) {
    Make([](KOVObjDocument const& document) {
        SectionBuilder made(document);
        AddMesh(made);
        KOVSimPosition const one = made.Assign(made.Shell("Sheet", {Steel()}, false), {0, 1});
        made.model.Model().GetVector(schema::Model_sectionAssignments()).PushBack(one);
        made.Assign(made.Shell("Rest", {Steel()}, false), {2, 3, 4, 5, 6, 7});
        made.Commit();
    });
    JsonValue const shown = ParseJson(Show(1, {"--json"}));
    EXPECT_EQ(shown["assignments"][0]["governed"].Int(), 2);
    EXPECT_EQ(shown["assignments"][1]["governed"].Int(), 0);
    EXPECT_EQ(shown["assignments"][1]["lost"].Int(), 2);
}

TEST_F(Sections, ThatAreIncompleteAreRefused) {
    char const* const kTexts[] = {
        "kovsim: m.ksd: section assignment 2 has no section\n",
        "kovsim: m.ksd: section assignment 2 has no region\n",
        "kovsim: m.ksd: the region of section assignment 2 has no elements\n",
        "kovsim: m.ksd: the region of section assignment 2 is no set of the mesh's elements\n"};
    for (int what = 0; what < 4; ++what) {
        Make([what](KOVObjDocument const& document) {
            SectionBuilder made(document);
            AddMesh(made);
            KOVSimPosition const sheet = made.Shell("Sheet", {Steel()}, false);
            made.Assign(sheet, {0});
            if (what == 0) made.Assign({}, {1});
            if (what == 1) made.Assign(sheet, KOVSimPosition(), false);
            if (what == 2) made.Assign(sheet, KOVSimPosition());
            if (what == 3) made.Assign(sheet, made.model.NodeSet({1}));
            made.Commit();
        });
        EXPECT_EQ(Show(2), kTexts[what]);
        EXPECT_EQ(Show(2, {"--json"}), kTexts[what]);
    }
}

TEST_F(Sections, ListsThatCannotBeWrittenAreStatusTwo) {
    Make(BuildSections);
    Workshop::Result const full = work.Shell("\"$KOVSIM\" sections m.ksd > /dev/full");
    EXPECT_EQ(full.status, 2);
    EXPECT_NE(full.errors.find("cannot write to standard output"), std::string::npos);
}

// Random regions against a plain list of owners.
TEST_F(Sections, OfRandomRegionsGovernWhatTheFirstOfThemHolds) {
    unsigned const seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    auto const below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    constexpr int kElements = 40;
    for (int round = 0; round < 4; ++round) {
        std::vector<std::set<int>> regions(static_cast<std::size_t>(1 + below(6)));
        for (std::set<int>& region : regions) {
            for (int i = below(kElements); i > 0; --i) region.insert(below(kElements));
        }
        Ints masses, shells;
        for (int e = 0; e < kElements; ++e) (below(4) == 0 ? masses : shells).push_back(e);
        Make([&](KOVObjDocument const& document) {
            SectionBuilder made(document);
            made.model.Space(0, kElements);
            made.model.Assignment({{made.model.Specification("S4", kQuadrilateral), shells},
                                   {made.model.Specification("MASS", kPoint), masses}});
            for (std::set<int> const& region : regions) {
                made.Assign(
                    made.Shell("S" + std::to_string(&region - regions.data()), {Steel()}, false),
                    Ints(region.begin(), region.end()));
            }
            made.Commit();
        });
        std::map<int, int> owner;
        std::set<int> several;
        std::vector<int> governed(regions.size(), 0);
        for (std::size_t i = 0; i < regions.size(); ++i) {
            for (int const e : regions[i]) {
                if (owner.emplace(e, static_cast<int>(i)).second) {
                    ++governed[i];
                } else {
                    several.insert(e);
                }
            }
        }
        bool complete = true;
        for (int const e : shells) complete = complete && owner.count(e) > 0 && !several.count(e);
        JsonValue const shown = ParseJson(Show(complete ? 0 : 1, {"--json"}));
        EXPECT_EQ(shown["complete"].truth, complete);
        for (std::size_t i = 0; i < regions.size(); ++i) {
            JsonValue const& each = shown["assignments"][static_cast<int>(i)];
            EXPECT_EQ(each["governed"].Int(), governed[i]);
            EXPECT_EQ(each["elements"].Int(), static_cast<int>(regions[i].size()));
            EXPECT_EQ(each["lost"].Int(), static_cast<int>(regions[i].size()) - governed[i]);
        }
        int without = 0;
        for (JsonValue const& each : shown["withoutSection"].items) without += each["count"].Int();
        EXPECT_EQ(without, kElements - static_cast<int>(owner.size()));
        int twice = 0;
        for (JsonValue const& each : shown["inSeveralSections"].items) twice += each["count"].Int();
        EXPECT_EQ(twice, static_cast<int>(several.size()));
    }
}

}  // namespace
}  // namespace kov::test
