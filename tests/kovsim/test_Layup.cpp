#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "CommandFixture.h"
#include "DamagedDocuments.h"
#include "JsonText.h"
#include "KOVObjMeshedField.h"
#include "SectionBuilder.h"

namespace kov::test {
namespace {

namespace fs = std::filesystem;
using Ints = SectionBuilder::Ints;

constexpr int kQuadrilateral = 11;

// Eight elements: P-1 has 11 to 14, the model 9 and 10 outside, 6 and 7 have no label.
void AddMesh(SectionBuilder& made) {
    made.model.Space(4, 8);
    made.model.Labels(KOVObjLabelerElements, "P-1", {14, 13, 12, 11}, {3, 2, 1, 0});
    made.model.Labels(KOVObjLabelerElements, "", {9, 10}, {4, 5});
    made.model.Assignment({{made.model.Specification("S4", kQuadrilateral), {0, 1, 2, 3, 4, 5}}});
}

LayerMade Constant(char const* material, double thickness, double angle) {
    LayerMade layer;
    layer.material = material;
    layer.points = 3;
    layer.thickness = thickness;
    layer.angle = angle;
    return layer;
}

// One of each: a composite shell with a ply and an orientation, a homogeneous shell, a shell with
// numbers by element, a composite solid, sections without layers.
void BuildSections(KOVObjDocument const& document) {
    SectionBuilder made(document);
    AddMesh(made);
    LayerMade core = Constant("Foam Core", 1.5, 0);
    core.orientation = "Ori-1";
    core.angle.reset();
    LayerMade bottom = Constant("CFRP", 0.125, 45);
    bottom.ply = "Ply-1";
    KOVSimPosition const skin =
        made.Shell("P-1_Skin", {bottom, core, Constant("CFRP", 0.375, -45)});
    skin.GetDataRecord().SetDouble(1, 0.5);
    skin.GetDataRecord().SetInt(2, 1);
    skin.GetDataRecord().SetString(3, "Outer");
    skin.SetPosition(schema::Section_orientation(), made.Orientation("My Frame"));
    made.Assign(skin, {0, 1});
    LayerMade sheet = Constant("STEEL", 2.5, 0);
    sheet.points = 5;
    sheet.angle.reset();
    made.Assign(made.Shell("Sheet", {sheet}, false), {2});
    LayerMade tapered = Constant("CFRP", 0.25, 0);
    tapered.thickness.reset();
    tapered.thicknesses = {{3, 0.5}, {4, 0.125}};
    LayerMade steered = Constant("CFRP", 0.25, 0);
    steered.angle.reset();
    steered.angles = {{3, -30}, {4, 60}};
    made.Assign(made.Shell("Tapered", {tapered, steered}), {3, 4});
    LayerMade share = Constant("CFRP", 1, 90);
    share.ply = "Ply-1";
    share.points = 1;
    KOVSimPosition const block = made.Solid("Block", {share, Constant("CFRP", 3, 0)});
    block.GetDataRecord().SetInt(7, 3);
    made.Assign(block, {5});
    made.Assign(made.Solid("Plain", {}, "STEEL"), {6});
    made.Section("Bar", schema::Section_Beam(), "STEEL").GetDataRecord().SetString(3, "PIPE");
    made.Shell("Spare", {sheet}, false);
    made.Commit();
}

class Layup : public CommandTest {
  protected:
    Layup() : CommandTest("layup") {}
    void Make() { CommandTest::Make(BuildSections); }
    using CommandTest::Make;
};

char const kSkin[] =
    "section P-1_Skin: composite shell of 3 layers\n"
    "  layup        Outer\n"
    "  elements     2, in 1 assignment\n"
    "  orientation  \"My Frame\"\n"
    "  offset       0.5 of the thickness, towards the top\n"
    "  integration  Gauss points\n"
    "  thickness    2\n"
    "  from         -2 (bottom) to 0 (top), from the reference surface\n"
    "  layer  ply    material     orientation  points  thickness  angle  from .. to\n"
    "      1  Ply-1  CFRP         -                 3      0.125     45  -2 .. -1.875\n"
    "      2  -      \"Foam Core\"  Ori-1             3        1.5      -  -1.875 .. -0.375\n"
    "      3  -      CFRP         -                 3      0.375    -45  -0.375 .. 0\n"
    "  layer 1 is the bottom one, layer 3 the top one\n";

TEST_F(Layup, OfASectionIsShown) {
    Make();
    EXPECT_EQ(Show({"--section", "P-1_Skin"}), kSkin);
    EXPECT_EQ(Show({"--section", "P-1.Skin"}), kSkin);
    EXPECT_EQ(Show({"--section", "\"P-1\".Skin"}), kSkin);
}

TEST_F(Layup, OfAllSectionsThatHaveLayersAreShownInTheOrderOfTheAssignments) {
    Make();
    EXPECT_EQ(Show({}),
              std::string(kSkin) +
                  "\n"
                  "section Sheet: homogeneous shell of 1 layer\n"
                  "  elements     1, in 1 assignment\n"
                  "  orientation  none\n"
                  "  offset       0, the reference surface is the middle one\n"
                  "  integration  Simpson's rule\n"
                  "  thickness    2.5\n"
                  "  from         -1.25 (bottom) to 1.25 (top), from the reference surface\n"
                  "  layer  ply  material  orientation  points  thickness  angle  from .. to\n"
                  "      1  -    STEEL     -                 5        2.5      -  -1.25 .. 1.25\n"
                  "\n"
                  "section Tapered: composite shell of 2 layers\n"
                  "  elements     2, in 1 assignment\n"
                  "  orientation  none\n"
                  "  offset       0, the reference surface is the middle one\n"
                  "  integration  Simpson's rule\n"
                  "  thickness    0.375 .. 0.75 by element\n"
                  "  layer  ply  material  orientation  points                thickness"
                  "                 angle\n"
                  "      1  -    CFRP      -                 3  0.125 .. 0.5 by element"
                  "                     0\n"
                  "      2  -    CFRP      -                 3                     0.25"
                  "  -30 .. 60 by element\n"
                  "  layer 1 is the bottom one, layer 2 the top one\n"
                  "\n"
                  "section Block: composite solid of 2 layers\n"
                  "  elements       1, in 1 assignment\n"
                  "  orientation    none\n"
                  "  stacked along  axis 3\n"
                  "  sum of shares  4\n"
                  "  layer  ply    material  orientation  points  share  angle  from .. to\n"
                  "      1  Ply-1  CFRP      -                 1      1     90  0 .. 0.25\n"
                  "      2  -      CFRP      -                 3      3      0  0.25 .. 1\n"
                  "  layer 1 is the bottom one, layer 2 the top one\n");
}

TEST_F(Layup, OfAnElementHasItsOwnNumbers) {
    Make();
    EXPECT_EQ(Show({"--element", "P-1", "14"}),
              "section Tapered: composite shell of 2 layers\n"
              "  element      P-1 14, S4\n"
              "  elements     2, in 1 assignment\n"
              "  orientation  none\n"
              "  offset       0, the reference surface is the middle one\n"
              "  integration  Simpson's rule\n"
              "  thickness    0.75\n"
              "  from         -0.375 (bottom) to 0.375 (top), from the reference surface\n"
              "  layer  ply  material  orientation  points  thickness  angle  from .. to\n"
              "      1  -    CFRP      -                 3        0.5      0  -0.375 .. 0.125\n"
              "      2  -    CFRP      -                 3       0.25    -30  0.125 .. 0.375\n"
              "  layer 1 is the bottom one, layer 2 the top one\n");
    JsonValue const shown = Json({"--element", "", "9"})["layups"][0];
    EXPECT_EQ(shown["element"]["instance"].text, "");
    EXPECT_EQ(shown["element"]["label"].Int(), 9);
    EXPECT_EQ(shown["element"]["type"].text, "S4");
    EXPECT_EQ(shown["thickness"].number, 0.375);
    EXPECT_TRUE(shown["thicknessRange"].IsNull());
    EXPECT_EQ(shown["layers"][0]["thicknessVariation"].text, "distributed");
    EXPECT_EQ(shown["layers"][0]["thickness"].number, 0.125);
    EXPECT_EQ(shown["layers"][1]["angle"].number, 60);
    EXPECT_TRUE(shown["layers"][1]["angleRange"].IsNull());
}

TEST_F(Layup, IsShownAsJson) {
    Make();
    JsonValue const all = Json();
    EXPECT_EQ(all["document"].text, "m.ksd");
    ASSERT_EQ(all["layups"].Size(), 4U);
    JsonValue const& skin = all["layups"][0];
    EXPECT_EQ(skin["section"].text, "P-1_Skin");
    EXPECT_EQ(skin["kind"].text, "shell");
    EXPECT_TRUE(skin["composite"].truth);
    EXPECT_EQ(skin["layupName"].text, "Outer");
    EXPECT_EQ(skin["orientation"].text, "My Frame");
    EXPECT_EQ(skin["offset"].number, 0.5);
    EXPECT_EQ(skin["integration"].text, "gauss");
    EXPECT_EQ(skin["assignments"].Int(), 1);
    EXPECT_EQ(skin["elements"].Int(), 2);
    EXPECT_EQ(skin["thickness"].number, 2);
    EXPECT_TRUE(skin["thicknessRange"].IsNull());
    ASSERT_EQ(skin["layers"].Size(), 3U);
    JsonValue const& core = skin["layers"][1];
    EXPECT_EQ(core["layer"].Int(), 2);
    EXPECT_TRUE(core["ply"].IsNull());
    EXPECT_EQ(core["material"].text, "Foam Core");
    EXPECT_EQ(core["orientation"].text, "Ori-1");
    EXPECT_EQ(core["sectionPoints"].Int(), 3);
    EXPECT_EQ(core["thicknessVariation"].text, "constant");
    EXPECT_EQ(core["thickness"].number, 1.5);
    EXPECT_EQ(core["angleVariation"].text, "none");
    EXPECT_TRUE(core["angle"].IsNull());
    EXPECT_EQ(skin["layers"][0]["ply"].text, "Ply-1");
    JsonValue const& sheet = all["layups"][1];
    EXPECT_FALSE(sheet["composite"].truth);
    EXPECT_TRUE(sheet["layupName"].IsNull());
    EXPECT_EQ(sheet["integration"].text, "simpson");
    JsonValue const& tapered = all["layups"][2];
    EXPECT_TRUE(tapered["thickness"].IsNull());
    EXPECT_EQ(tapered["thicknessRange"].Numbers(), (std::vector<double>{0.375, 0.75}));
    EXPECT_EQ(tapered["layers"][0]["thicknessRange"].Numbers(), (std::vector<double>{0.125, 0.5}));
    EXPECT_EQ(tapered["layers"][1]["angleRange"].Numbers(), (std::vector<double>{-30, 60}));
    EXPECT_EQ(tapered["layers"][0].members.count("thicknessValues"), 0U);
    JsonValue const& block = all["layups"][3];
    EXPECT_EQ(block["kind"].text, "solid");
    EXPECT_TRUE(block["offset"].IsNull());
    EXPECT_TRUE(block["integration"].IsNull());
    EXPECT_EQ(block["stackDirection"].Int(), 3);
    EXPECT_EQ(block["thickness"].number, 4);
    EXPECT_EQ(block["layers"][0]["angle"].number, 90);
}

TEST_F(Layup, ValuesOfEachElementAreShownOnRequest) {
    Make();
    std::string const shown = Show({"--section", "Tapered", "--values"});
    EXPECT_EQ(shown.substr(shown.find("the top one\n") + 12),
              "  element  thickness 1  angle 2\n"
              "  P-1 14           0.5      -30\n"
              "  \"\" 9           0.125       60\n");
    JsonValue const json = Json({"--values"});
    JsonValue const& tapered = json["layups"][2];
    EXPECT_EQ(tapered["layers"][0]["thicknessValues"].Numbers(), (std::vector<double>{0.5, 0.125}));
    EXPECT_EQ(tapered["layers"][1]["angleValues"].Numbers(), (std::vector<double>{-30, 60}));
    EXPECT_EQ(tapered["layers"][1].members.count("thicknessValues"), 0U);
    ASSERT_EQ(tapered["elementLabels"].Size(), 2U);
    EXPECT_EQ(tapered["elementLabels"][0]["instance"].text, "P-1");
    EXPECT_EQ(tapered["elementLabels"][0]["labels"].Numbers(), (std::vector<double>{14}));
    EXPECT_EQ(tapered["elementLabels"][1]["instance"].text, "");
    EXPECT_EQ(tapered["elementLabels"][1]["labels"].Numbers(), (std::vector<double>{9}));
}

TEST_F(Layup, OfSeveralAssignmentsCountsAllTheirElements) {
    Make([](KOVObjDocument const& document) {
        SectionBuilder made(document);
        AddMesh(made);
        LayerMade layer = Constant("CFRP", 1, 0);
        layer.angle.reset();
        layer.angles = {{0, 1}, {1, 2}, {5, 7}};
        LayerMade partial = Constant("CFRP", 1, 0);
        partial.thickness.reset();
        partial.thicknesses = {{0, 1}, {1, 2}};
        KOVSimPosition const shell = made.Shell("Twice", {layer, partial});
        made.Assign(shell, {0, 1});
        made.Assign(shell, {1, 5});
        made.Commit();
    });
    JsonValue const shown = Json({"--section", "Twice", "--values"})["layups"][0];
    EXPECT_EQ(shown["assignments"].Int(), 2);
    EXPECT_EQ(shown["elements"].Int(), 3);
    EXPECT_EQ(shown["layers"][0]["angleValues"].Numbers(), (std::vector<double>{1, 2, 7}));
    // What only some of the elements have is not a property of the section.
    EXPECT_EQ(shown["layers"][1]["thicknessVariation"].text, "none");
    EXPECT_TRUE(shown["thickness"].IsNull());
    EXPECT_TRUE(shown["thicknessRange"].IsNull());
    // The governing assignment has numbers for all of its elements.
    EXPECT_EQ(Json({"--element", "P-1", "12"})["layups"][0]["layers"][1]["thickness"].number, 2);
}

TEST_F(Layup, OfSolidsMayHaveNumbersByElement) {
    Make([](KOVObjDocument const& document) {
        SectionBuilder made(document);
        AddMesh(made);
        LayerMade layer = Constant("CFRP", 1, 0);
        layer.angle.reset();
        layer.angles = {{1, 10}};
        made.Assign(made.Solid("Block", {layer, Constant("CFRP", 1, 0)}), {0, 1, 2});
        made.Commit();
    });
    JsonValue const shown = Json({"--section", "Block", "--values"})["layups"][0];
    EXPECT_EQ(shown["layers"][0]["angleVariation"].text, "distributed");
    EXPECT_EQ(shown["layers"][0]["angleRange"].Numbers(), (std::vector<double>{0, 10}));
    EXPECT_EQ(shown["layers"][0]["angleValues"].Numbers(), (std::vector<double>{0, 10, 0}));
    EXPECT_EQ(shown["thickness"].number, 2);
}

TEST_F(Layup, WhatIsNotThereIsRefusedWithAHint) {
    Make();
    EXPECT_EQ(Show({"--section", "P-1_Sknn"}),
              "no section named 'P-1_Sknn'; did you mean 'P-1_Skin'?\n");
    EXPECT_EQ(Show({"--section", "Skin"}), "no section named 'Skin'; did you mean 'P-1_Skin'?\n");
    EXPECT_EQ(Show({"--section", "far away"}), "no section named 'far away'\n");
    EXPECT_EQ(Show({"--section", ""}), "no section named ''\n");
    EXPECT_EQ(Show({"--section", "\"Skin"}), "the quotes of the name '\"Skin' are not in pairs\n");
    EXPECT_EQ(Show({"--element", "P-2", "11"}), "no instance named 'P-2'; did you mean 'P-1'?\n");
    EXPECT_EQ(Show({"--element", "P-1", "9"}), "no element 9 in instance P-1; it has 11-14\n");
}

TEST_F(Layup, OfWhatHasNoLayersIsRefusedWithWhatItIs) {
    Make();
    EXPECT_EQ(Show({"--section", "Plain"}),
              "section Plain is a homogeneous solid of material STEEL and has no layers\n");
    EXPECT_EQ(Show({"--section", "Bar"}),
              "section Bar is a beam of profile PIPE of material STEEL and has no layers\n");
    EXPECT_EQ(Show({"--section", "Spare"}), "section Spare is assigned to no elements\n");
    Make([](KOVObjDocument const& document) {
        SectionBuilder made(document);
        AddMesh(made);
        made.Assign(made.Section("Plain", schema::Section_Solid(), "STEEL"), {4});
        made.Commit();
    });
    EXPECT_EQ(Show({"--element", "", "9"}),
              "element 9 of \"\" is in section Plain, which is a homogeneous solid of material "
              "STEEL and has no layers\n");
    EXPECT_EQ(Show({"--element", "", "10"}), "element 10 of \"\" is in no section\n");
    EXPECT_EQ(Show({}), "no section has layers\n");
}

TEST_F(Layup, OfADocumentWithoutSectionsIsNone) {
    Make([](KOVObjDocument const&) {});
    EXPECT_EQ(Show({}), "no section has layers\n");
    EXPECT_EQ(Json()["layups"].Size(), 0U);
    EXPECT_EQ(Show({"--section", "Skin"}), "no section named 'Skin'\n");
    EXPECT_EQ(Show({"--element", "", "1"}), "the elements have no labels\n");
}

TEST_F(Layup, WordsThatAreNoQuestionAreStatusTwo) {
    Make();
    EXPECT_EQ(Ask({"--element", "P-1"}).status, 2);
    EXPECT_EQ(Ask({"--element", "P-1", "11", "12"}).status, 2);
    EXPECT_EQ(Ask({"--element", "P-1", "11", "--section", "Sheet"}).status, 2);
    for (char const* const word : {"eleven", "1e3", "", "99999999999"}) {
        Workshop::Result const result = Ask({"--element", "P-1", word});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors,
                  std::string("kovsim: '") + word + "' is no label; expected a whole number\n");
    }
}

// ------------------------------------------------------------------------- decks

char const kPanel[] =
    "*PART, NAME=Panel\n*NODE\n1, 0\n2, 1\n3, 2\n4, 3\n5, 0, 1\n6, 1, 1\n7, 2, 1\n8, 3, 1\n"
    "*ELEMENT, TYPE=S4R\n1, 1, 2, 6, 5\n2, 2, 3, 7, 6\n3, 3, 4, 8, 7\n*ELEMENT, TYPE=MASS\n10, 4\n"
    "*ELSET, ELSET=Skin\n1, 2\n*ELSET, ELSET=Tip\n3\n"
    "*ORIENTATION, NAME=Span\n1, 0, 0, 0, 1, 0\n"
    "*DISTRIBUTION TABLE, NAME=Turn\nANGLE\n"
    "*DISTRIBUTION, NAME=Steering, LOCATION=ELEMENT, TABLE=Turn\n, 0\n1, 15\n2, 30\n"
    "*SHELL SECTION, ELSET=Skin, COMPOSITE, ORIENTATION=Span, OFFSET=SPOS, LAYUP=Outer\n"
    "0.125, 3, CFRP, 45, Ply-1\n0.125, 3, CFRP, Steering, Ply-2\n0.5, 5, \"Foam Core\"\n"
    "*SHELL SECTION, ELSET=Tip, MATERIAL=Steel\n2.5\n*END PART\n"
    "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=Left, PART=Panel\n*END INSTANCE\n"
    "*INSTANCE, NAME=Right, PART=Panel\n0, 0, 5\n*END INSTANCE\n*END ASSEMBLY\n"
    "*MATERIAL, NAME=CFRP\n*MATERIAL, NAME=\"Foam Core\"\n*MATERIAL, NAME=Steel\n";

TEST_F(Layup, OfADeckIsShown) {
    WriteFile(work / "d.inp", kPanel);
    ASSERT_EQ(work.Run({"translate", "d.inp", "-o", "m.ksd"}).status, 0);
    EXPECT_EQ(Show({"--section", "Right.Skin"}),
              "section Right_Skin: composite shell of 3 layers\n"
              "  layup        Outer\n"
              "  elements     2, in 1 assignment\n"
              "  orientation  Right_Span\n"
              "  offset       0.5 of the thickness, towards the top\n"
              "  integration  Simpson's rule\n"
              "  thickness    0.75\n"
              "  from         -0.75 (bottom) to 0 (top), from the reference surface\n"
              "  layer  ply          material     orientation  points  thickness"
              "                angle  from .. to\n"
              "      1  Right_Ply-1  CFRP         -                 3      0.125"
              "                   45  -0.75 .. -0.625\n"
              "      2  Right_Ply-2  CFRP         -                 3      0.125"
              "  15 .. 30 by element  -0.625 .. -0.5\n"
              "      3  -            \"Foam Core\"  -                 5        0.5"
              "                    0  -0.5 .. 0\n"
              "  layer 1 is the bottom one, layer 3 the top one\n");
    EXPECT_EQ(Json({"--element", "Left", "2"})["layups"][0]["layers"][1]["angle"].number, 30);
    EXPECT_EQ(Show({"--element", "Left", "10"}), "element 10 of Left is in no section\n");
    EXPECT_EQ(work.Run({"sections", "m.ksd"}).output,
              "4 section assignments\n"
              "  number  section     kind               holds     given to    elements  governs\n"
              "       1  Left_Skin   composite shell    3 layers  Left_Skin          2        2\n"
              "       2  Left_Tip    homogeneous shell  Steel     Left_Tip           1        1\n"
              "       3  Right_Skin  composite shell    3 layers  Right_Skin         2        2\n"
              "       4  Right_Tip   homogeneous shell  Steel     Right_Tip          1        1\n"
              "2 elements in no section, which need none\n"
              "  MASS  2  Left: 10; Right: 10\n"
              "each element that needs a section is in one\n");
}

// ------------------------------------------------------------------------- defective documents

TEST_F(Layup, OfIncompleteAssignmentsIsRefused) {
    auto const make = [&](int what) {
        Make([what](KOVObjDocument const& document) {
            SectionBuilder made(document);
            AddMesh(made);
            KOVSimPosition const shell = made.Shell("Skin", {Constant("CFRP", 1, 0)});
            made.Assign(shell, {0});
            KOVSimPosition const nodes = made.model.NodeSet({1});
            if (what == 0) made.Assign({}, {1});
            if (what == 1) made.Assign(shell, KOVSimPosition(), false);
            if (what == 2) made.Assign(shell, KOVSimPosition());
            if (what == 3) made.Assign(shell, nodes);
            if (what == 4) made.Assign(shell, shell);
            made.Commit();
        });
    };
    char const* const kTexts[] = {"section assignment 2 has no section\n",
                                  "section assignment 2 has no region\n",
                                  "the region of section assignment 2 has no elements\n",
                                  "the region of section assignment 2 is no set of the mesh's "
                                  "elements\n",
                                  "the region of section assignment 2 is no set of the mesh's "
                                  "elements\n"};
    for (int what = 0; what < 5; ++what) {
        make(what);
        EXPECT_EQ(Show({}), kTexts[what]);
        EXPECT_EQ(Show({"--element", "P-1", "11"}), kTexts[what]);
        if (what == 0) continue;
        std::string own = kTexts[what];
        own.replace(own.find("section assignment 2"), 20, "an assignment of section Skin");
        EXPECT_EQ(Show({"--section", "Skin"}), own);
    }
}

TEST_F(Layup, OfDefectiveLayerStoresIsRefused) {
    auto const make = [&](auto const& spoil) {
        Make([&](KOVObjDocument const& document) {
            SectionBuilder made(document);
            AddMesh(made);
            LayerMade layer = Constant("CFRP", 1, 0);
            made.Assign(made.Shell("Skin", {layer, layer}), {0, 1});
            made.Commit();
            ModelBuilder after(document);
            spoil(document, after.Model().GetPosition(schema::Model_bulkShellLayers()));
            after.Commit();
        });
    };
    using Position = KOVSimPosition;
    make([](KOVObjDocument const& document, Position const&) {
        KOVSimPosition const sections =
            document.GetModel().GetPosition(schema::Model_bulkSections());
        KOVSimPosition(document.GetRecord(sections.GetCollection(), 0))
            .GetDataRecord()
            .SetInt(0, 3);
    });
    EXPECT_EQ(Show({"--section", "Skin"}),
              "section Skin has 3 layers, more than the model has layer slots\n");
    make([](KOVObjDocument const& document, Position const&) {
        document.GetModel().SetPosition(schema::Model_bulkSections(), KOVSimPosition());
    });
    EXPECT_NE(Show({"--section", "Skin"}).find("the bulk layers"), std::string::npos);
    make([](KOVObjDocument const&, Position const& bulk) {
        bulk.SetPosition(schema::BulkShellLayers_materials(), bulk);
    });
    EXPECT_EQ(Show({"--section", "Skin"}),
              "the materials of the bulk layers have no distribution\n");
    make([](KOVObjDocument const&, Position const& bulk) {
        bulk.SetPosition(schema::BulkShellLayers_distAngles(),
                         bulk.GetPosition(schema::BulkShellLayers_constAngles()));
    });
    EXPECT_EQ(Show({"--section", "Skin"}),
              "the distributed angles of the bulk layers are not real numbers by layer slot and "
              "element\n");
    make([](KOVObjDocument const&, Position const& bulk) {
        bulk.SetPosition(schema::BulkShellLayers_plies(),
                         bulk.GetPosition(schema::BulkShellLayers_constAngles()));
    });
    EXPECT_EQ(Show({"--section", "Skin"}), "the plies of the bulk layers have no distribution\n");
    // A drawer of two layers.
    make([](KOVObjDocument const& document, Position const& bulk) {
        KOVObjMesh const mesh(document.GetMesh());
        KOVSimCollection elements(mesh.GetElementCollection().GetCollection());
        KOVSimCollection slots(
            document.GetModel().GetPosition(schema::Model_bulkLayerSlots()).GetCollection());
        KOVSimGrid::CollectionArray grid(2);
        grid.Get(0) = slots.ID();
        grid.Get(1) = elements.ID();
        KOVSimPosition const field = document.CreateDataRecord(schema::Field_Meshed()).Pos();
        KOVSimDistributionID const id =
            field.CreateTypedDistribution(KOVSimGrid(grid), schema::BulkLayerElementDistribution(),
                                          KOVSimRangeType(KOVSimTypeKeyDouble));
        KOVSimTransfer drawer{KOVSimDistribution(id)};
        drawer.SetMakeNewDrawer().SetBufferPadding(false);
        drawer.SetDim(0, slots.CreateCSetStrided(0, 2, 1, 1));
        drawer.SetDim(1, elements.CreateCSetStrided(0, 2, 1, 1)).CheckView().ExecMake();
        KOVObjMeshedField(field).SetDistribution(KOVSimPosition(id));
        bulk.SetPosition(schema::BulkShellLayers_distThicknesses(), field);
    });
    EXPECT_EQ(Show({}),
              "the distributed thicknesses of the bulk layers have a drawer that is not of exactly "
              "one layer\n");
}

TEST_F(Layup, WithoutAnyLayerStoresHasLayersOfNothing) {
    Make([](KOVObjDocument const& document) {
        SectionBuilder made(document);
        AddMesh(made);
        made.Assign(made.Shell("Skin", {LayerMade(), LayerMade()}), {0, 1});
        made.Commit();
    });
    JsonValue const shown = Json()["layups"][0];
    ASSERT_EQ(shown["layers"].Size(), 2U);
    EXPECT_TRUE(shown["layers"][1]["material"].IsNull());
    EXPECT_TRUE(shown["layers"][1]["sectionPoints"].IsNull());
    EXPECT_EQ(shown["layers"][1]["thicknessVariation"].text, "none");
    EXPECT_NE(Show({}).find("  thickness    not known\n"), std::string::npos);
}

TEST_F(Layup, BeyondTheRangeOfNumbersHasNoWhole) {
    Make([](KOVObjDocument const& document) {
        SectionBuilder made(document);
        made.model.Space(0, 4);
        LayerMade half;
        half.thickness = 1e308;
        LayerMade unlike;
        unlike.thicknesses = {{1, 1e308}, {2, 1}};
        LayerMade thick;
        thick.thickness = 1e10;
        LayerMade thin;
        thin.thickness = 5e-324;
        made.Assign(made.Shell("Sum", {half, half}), Ints{0});
        made.Assign(made.Shell("Elements", {unlike, unlike}), Ints{1, 2});
        KOVSimPosition const shell = made.Shell("Offset", {thick});
        shell.GetDataRecord().SetDouble(1, 1e308);
        made.Assign(shell, Ints{3});
        made.Assign(made.Solid("Solid", {thin}), Ints{});
        made.Commit();
    });
    std::string const text = Show({});
    for (char const* const word : {"inf", "nan", "from .. to"}) {
        EXPECT_EQ(text.find(word), std::string::npos) << word << "\n" << text;
    }
    JsonValue const all = Json({})["layups"];
    for (int i : {0, 1}) {
        EXPECT_TRUE(all[i]["thickness"].IsNull());
        EXPECT_TRUE(all[i]["thicknessRange"].IsNull());
    }
    EXPECT_EQ(all[1]["layers"][0]["thicknessRange"].Numbers(), (std::vector<double>{1, 1e308}));
    EXPECT_EQ(all[2]["thickness"].number, 1e10);
}

TEST_F(Layup, OfADeckIsWithinTheRangeOfNumbers) {
    std::string const mesh =
        "*NODE\n1\n2, 1\n3, 0, 1\n*ELEMENT, TYPE=S3, ELSET=E\n1, 1, 2, 3\n*MATERIAL, NAME=M\n"
        "*SHELL SECTION, ELSET=E, COMPOSITE";
    for (char const* const rest :
         {"\n1e308,, M\n1e308,, M\n", ", SYMMETRIC\n1e308,, M\n", ", OFFSET=1e308\n1e10,, M\n"}) {
        WriteFile(work / "d.inp", mesh + rest);
        Workshop::Result const result = work.Run({"translate", "d.inp", "-o", "m.ksd"});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors,
                  "kovsim: d.inp:8: the thickness of the layers together, or the offset, is beyond "
                  "the range of numbers; expected smaller ones\n");
        EXPECT_FALSE(fs::exists(work / "m.ksd"));
    }
}

TEST_F(Layup, LongNamesKeepTheColumns) {
    std::string const name(40, 'M');
    Make([&](KOVObjDocument const& document) {
        SectionBuilder made(document);
        AddMesh(made);
        LayerMade layer = Constant("K\xc3\xb6per", 1, 0);
        made.Assign(made.Shell("Skin", {Constant(name.c_str(), 1, 0), layer}), {0, 1});
        made.Commit();
    });
    std::string const shown = Show({});
    EXPECT_NE(shown.find("      1  -    " + name + "  -   "), std::string::npos) << shown;
    EXPECT_NE(shown.find("      2  -    K\xc3\xb6per" + std::string(35, ' ') + "  -   "),
              std::string::npos)
        << shown;
}

TEST_F(Layup, OutputThatCannotBeWrittenIsStatusTwo) {
    Make();
    Workshop::Result const full = work.Shell("\"$KOVSIM\" layup m.ksd > /dev/full");
    EXPECT_EQ(full.status, 2);
    EXPECT_NE(full.errors.find("cannot write to standard output"), std::string::npos);
}

TEST_F(Layup, AndSectionsOfDamagedDocumentsAreAnsweredOrRefused) {
    Make();
    ExpectAnswersOrRefusals(work, {{"layup", "m.ksd"},
                                   {"layup", "m.ksd", "--json", "--values"},
                                   {"layup", "m.ksd", "--section", "P-1_Skin"},
                                   {"layup", "m.ksd", "--section", "Plain"},
                                   {"layup", "m.ksd", "--element", "P-1", "14"},
                                   {"sections", "m.ksd"},
                                   {"sections", "m.ksd", "--json"}});
}

// ------------------------------------------------------------------------- pictures

TEST_F(Layup, IsDrawnBesideTheTable) {
    Make();
    EXPECT_EQ(Show({"--section", "P-1_Skin", "--svg", "skin.svg"}), kSkin);
    std::string const picture = ReadFile(work / "skin.svg");
    EXPECT_NE(picture.find("<svg"), std::string::npos);
    EXPECT_NE(picture.find("Foam Core"), std::string::npos);
    EXPECT_EQ(Entries(work.Folder()), (std::set<std::string>{"m.ksd", "skin.svg"}));
    // The same layup gives the same picture.
    Json({"--section", "P-1_Skin", "--svg", "again.svg"});
    EXPECT_EQ(ReadFile(work / "again.svg"), picture);
    Show({"--element", "P-1", "14", "--svg", "one.svg"});
    EXPECT_NE(ReadFile(work / "one.svg").find("<svg"), std::string::npos);
}

TEST_F(Layup, OfAllSectionsAreDrawnOnlyIfThereIsOne) {
    Make();
    EXPECT_EQ(Show({"--svg", "all.svg"}),
              "several sections have layers; choose the one to draw with --section or --element\n");
    EXPECT_EQ(Entries(work.Folder()), (std::set<std::string>{"m.ksd"}));
    Make([](KOVObjDocument const& document) {
        SectionBuilder made(document);
        AddMesh(made);
        made.Assign(made.Shell("Skin", {Constant("CFRP", 1, 0)}), {0});
        made.Commit();
    });
    EXPECT_EQ(Show({"--svg", "all.svg"}).substr(0, 13), "section Skin:");
    EXPECT_EQ(Entries(work.Folder()), (std::set<std::string>{"all.svg", "m.ksd"}));
    Make([](KOVObjDocument const&) {});
    EXPECT_EQ(Show({"--svg", "none.svg"}), "no section has layers; there is nothing to draw\n");
}

TEST_F(Layup, IsNotDrawnOverAnythingNorWhereNothingCanBeMade) {
    Make();
    WriteFile(work / "there.svg", "mine");
    std::vector<std::string> const ask = {"--section", "P-1_Skin", "--svg"};
    auto const draw = [&](char const* target) {
        std::vector<std::string> arguments = ask;
        arguments.push_back(target);
        Workshop::Result const result = Ask(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        return result.errors;
    };
    EXPECT_NE(draw("there.svg").find("there.svg"), std::string::npos);
    EXPECT_EQ(ReadFile(work / "there.svg"), "mine");
    EXPECT_NE(draw("nowhere/x.svg").find("nowhere"), std::string::npos);
    EXPECT_NE(draw("m.ksd/x.svg").find("document"), std::string::npos);
    EXPECT_EQ(Ask({"--section", "none", "--svg", "x.svg"}).status, 2);
    EXPECT_EQ(Entries(work.Folder()), (std::set<std::string>{"m.ksd", "there.svg"}));
}

TEST_F(Layup, APictureThatCannotBeWrittenLeavesNothing) {
    Make([](KOVObjDocument const& document) {
        SectionBuilder made(document);
        AddMesh(made);
        made.Assign(made.Shell("Skin", std::vector<LayerMade>(400, Constant("CFRP", 1, 0))), {0});
        made.Commit();
    });
    // Enough for what reading a document makes, too little for the picture.
    Workshop::Result const limited =
        work.Shell("ulimit -f 66; exec \"$KOVSIM\" layup m.ksd --section Skin --svg x.svg");
    EXPECT_EQ(limited.status, 2);
    EXPECT_EQ(limited.errors.substr(0, 33), "kovsim: x.svg: cannot be written:");
    EXPECT_EQ(Entries(work.Folder()), (std::set<std::string>{"m.ksd"}));
}

TEST_F(Layup, AReaderThatGoesAwayEndsIt) {
    Make();
    Workshop::Result const result =
        work.Shell("\"$KOVSIM\" layup m.ksd --values --json | true; echo done");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "done\n");
    EXPECT_EQ(result.errors, "");
}

// ------------------------------------------------------------------------- random layups

// Layups of random layers against the plain table that they were made of.
TEST_F(Layup, OfRandomLayersIsThatOfThePlainTable) {
    unsigned const seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    auto const below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    auto const number = [&] { return std::uniform_real_distribution<double>(-180, 180)(random); };
    constexpr int kElements = 60;
    struct Made {
        std::string name;
        bool solid;
        std::vector<LayerMade> layers;
        Ints elements;
    };
    for (int round = 0; round < 3; ++round) {
        std::vector<Made> table;
        std::vector<int> owner(kElements);
        int const sections = 1 + below(6);
        for (int& each : owner) each = below(sections + 1);
        // None is without elements: every layer of such a section counts as distributed.
        for (int s = 0; s < sections; ++s) owner[static_cast<std::size_t>(s)] = s;
        for (int s = 0; s < sections; ++s) {
            Made& made = table.emplace_back();
            made.name = "S-" + std::to_string(s);
            made.solid = below(3) == 0;
            for (int e = 0; e < kElements; ++e) {
                if (owner[static_cast<std::size_t>(e)] == s) made.elements.push_back(e);
            }
            int const layers = 1 + below(8);
            for (int i = 0; i < layers; ++i) {
                LayerMade& layer = made.layers.emplace_back();
                if (below(4) > 0) layer.material = "M" + std::to_string(below(3));
                if (below(4) == 0) layer.ply = "P" + std::to_string(below(5));
                if (below(4) == 0) layer.orientation = "O" + std::to_string(below(2));
                if (below(5) > 0) layer.points = below(9);
                int const kind = below(4);
                if (kind == 0 && !made.elements.empty()) {
                    for (int const e : made.elements) layer.thicknesses[e] = number();
                } else if (kind < 3) {
                    layer.thickness = number();
                }
                int const turn = below(4);
                if (turn == 0 && !made.elements.empty()) {
                    for (int const e : made.elements) layer.angles[e] = number();
                } else if (turn < 3) {
                    layer.angle = number();
                }
            }
        }
        Make([&](KOVObjDocument const& document) {
            SectionBuilder made(document);
            made.model.Space(0, kElements);
            Ints labels, ordinals;
            for (int e = 0; e < kElements; ++e) {
                labels.push_back(1000 - e);
                ordinals.push_back(e);
            }
            made.model.Labels(KOVObjLabelerElements, "P", labels, ordinals);
            for (Made const& each : table) {
                made.Assign(each.solid ? made.Solid(each.name, each.layers)
                                       : made.Shell(each.name, each.layers),
                            each.elements);
            }
            made.Commit();
        });
        JsonValue const shown = Json({"--values"});
        ASSERT_EQ(shown["layups"].Size(), table.size());
        for (std::size_t s = 0; s < table.size(); ++s) {
            Made const& made = table[s];
            JsonValue const& layup = shown["layups"][static_cast<int>(s)];
            SCOPED_TRACE(made.name);
            EXPECT_EQ(layup["section"].text, made.name);
            EXPECT_EQ(layup["elements"].Int(), static_cast<int>(made.elements.size()));
            ASSERT_EQ(layup["layers"].Size(), made.layers.size());
            std::vector<double> labels;
            for (int const e : made.elements) labels.push_back(1000 - e);
            ASSERT_EQ(layup["elementLabels"].Size(), labels.empty() ? 0U : 1U);
            if (!labels.empty()) {
                EXPECT_EQ(layup["elementLabels"][0]["labels"].Numbers(), labels);
            }
            for (std::size_t i = 0; i < made.layers.size(); ++i) {
                LayerMade const& layer = made.layers[i];
                JsonValue const& seen = layup["layers"][static_cast<int>(i)];
                SCOPED_TRACE("layer " + std::to_string(i + 1));
                EXPECT_EQ(seen["material"].text, layer.material);
                EXPECT_EQ(seen["ply"].text, layer.ply);
                EXPECT_EQ(seen["orientation"].text, layer.orientation);
                EXPECT_EQ(seen["sectionPoints"].IsNull(), !layer.points);
                if (layer.points) {
                    EXPECT_EQ(seen["sectionPoints"].Int(), *layer.points);
                }
                auto const compare = [&](char const* key, std::optional<double> const& constant,
                                         std::map<int, double> const& values) {
                    std::string const word = key;
                    EXPECT_EQ(seen[(word + "Variation").c_str()].text, constant ? "constant"
                                                                       : values.empty()
                                                                           ? "none"
                                                                           : "distributed");
                    EXPECT_EQ(seen[key].IsNull(), !constant);
                    if (constant) {
                        EXPECT_EQ(seen[key].number, *constant);
                    }
                    if (constant || values.empty()) return;
                    std::vector<double> numbers;
                    for (auto const& [e, value] : values) numbers.push_back(value);
                    EXPECT_EQ(seen[(word + "Values").c_str()].Numbers(), numbers);
                    auto const [low, high] = std::minmax_element(numbers.begin(), numbers.end());
                    EXPECT_EQ(seen[(word + "Range").c_str()].Numbers(),
                              (std::vector<double>{*low, *high}));
                };
                compare("thickness", layer.thickness, layer.thicknesses);
                compare("angle", layer.angle, layer.angles);
            }
            // One element's own numbers are those of its place in the table.
            if (made.elements.empty()) continue;
            int const e = made.elements[made.elements.size() / 2];
            JsonValue const own = Json({"--element", "P", std::to_string(1000 - e)})["layups"][0];
            EXPECT_EQ(own["section"].text, made.name);
            for (std::size_t i = 0; i < made.layers.size(); ++i) {
                JsonValue const& seen = own["layers"][static_cast<int>(i)];
                LayerMade const& layer = made.layers[i];
                if (!layer.thicknesses.empty()) {
                    EXPECT_EQ(seen["thickness"].number, layer.thicknesses.at(e));
                }
                if (!layer.angles.empty()) {
                    EXPECT_EQ(seen["angle"].number, layer.angles.at(e));
                }
            }
        }
    }
}

}  // namespace
}  // namespace kov::test
