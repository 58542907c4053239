#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "CommandFixture.h"
#include "JsonText.h"
#include "KOVObjDocument.h"
#include "ModelBuilder.h"

namespace kov::test {
namespace {

using Ints = ModelBuilder::Ints;

class Sets : public CommandTest {
  protected:
    Sets() : CommandTest("sets") {}
    void Make() { CommandTest::Make(BuildAssembly); }
    using CommandTest::Make;
    void Translate(std::string const& deck) {
        WriteFile(work / "d.inp", deck);
        ASSERT_EQ(work.Run({"translate", "d.inp", "-o", "m.ksd"}).status, 0);
    }
};

TEST_F(Sets, AreListed) {
    Make();
    EXPECT_EQ(Show({}),
              "document              m.ksd\n"
              "instances                          3\n"
              "  \"\"                  1 node, 1 element\n"
              "  \"My Part\"           5 nodes, 1 element, part Rib\n"
              "  P-1                 5 nodes, 2 elements, part Plate\n"
              "node sets                          4\n"
              "  All                             10\n"
              "  \"My Part_Top Set\"                4\n"
              "  None                             0\n"
              "  P-1_Top                          4\n"
              "internal node sets                 1\n"
              "  P-1_Hidden                       1\n"
              "element sets                       2\n"
              "  P-1_Top                          2\n"
              "  Skin                             5\n"
              "internal element sets              1\n"
              "  Picked                           1\n"
              "surfaces                           3\n"
              "  Bare                nothing\n"
              "  Bolt                2 nodes\n"
              "  P-1_Top             4 faces, 1 edge, 1 element\n"
              "orientations                       2\n"
              "  Blank               system not given\n"
              "  P-1_Ori             cylindrical\n");
}

TEST_F(Sets, AreListedOfOneKind) {
    Make();
    EXPECT_EQ(Show({"--kind", "elements"}),
              "document              m.ksd\n"
              "element sets                       2\n"
              "  P-1_Top                          2\n"
              "  Skin                             5\n"
              "internal element sets              1\n"
              "  Picked                           1\n");
    EXPECT_EQ(Show({"--kind", "orientation"}),
              "document              m.ksd\n"
              "orientations                       2\n"
              "  Blank               system not given\n"
              "  P-1_Ori             cylindrical\n");
}

TEST_F(Sets, AreListedAsJson) {
    Make();
    JsonValue const list = Json({});
    EXPECT_EQ(list["document"].text, "m.ksd");
    EXPECT_EQ(list["instances"].Size(), 3U);
    EXPECT_EQ(list["instances"][0]["name"].text, "");
    EXPECT_EQ(list["instances"][2]["part"].text, "Plate");
    EXPECT_EQ(list["instances"][2]["nodes"].Int(), 5);
    EXPECT_EQ(list["instances"][2]["elements"].Int(), 2);
    EXPECT_EQ(list["nodeSets"][1]["name"].text, "My Part_Top Set");
    EXPECT_EQ(list["nodeSets"][1]["size"].Int(), 4);
    EXPECT_EQ(list["internalNodeSets"][0]["name"].text, "P-1_Hidden");
    EXPECT_EQ(list["elementSets"].Size(), 2U);
    EXPECT_EQ(list["internalElementSets"].Size(), 1U);
    EXPECT_EQ(list["surfaces"][2]["faces"].Int(), 4);
    EXPECT_EQ(list["surfaces"][2]["edges"].Int(), 1);
    EXPECT_EQ(list["surfaces"][2]["elements"].Int(), 1);
    EXPECT_EQ(list["surfaces"][1]["nodes"].Int(), 2);
    EXPECT_TRUE(list["orientations"][0]["system"].IsNull());
    EXPECT_EQ(list["orientations"][1]["system"].text, "cylindrical");
}

TEST_F(Sets, MembersAreShownByInstance) {
    Make();
    EXPECT_EQ(Show({"All"}),
              "node set All: 10 nodes\n"
              "  \"\": 100\n"
              "  \"My Part\": 1, 3, 5\n"
              "  P-1: 7, 10-40 step 10\n"
              "  (no label): 11\n");
    EXPECT_EQ(Show({"Skin"}),
              "element set Skin: 5 elements\n"
              "  \"\": 9\n"
              "  \"My Part\": 1\n"
              "  P-1: 1-2\n"
              "  (no label): 4\n");
    EXPECT_EQ(Show({"None"}), "node set None: 0 nodes\n");
    EXPECT_EQ(Show({"Picked"}), "internal element set Picked: 1 element\n  \"My Part\": 1\n");
}

TEST_F(Sets, MembersAreShownAsJson) {
    Make();
    JsonValue const shown = Json({"All"});
    EXPECT_EQ(shown["asked"].text, "All");
    ASSERT_EQ(shown["objects"].Size(), 1U);
    JsonValue const& set = shown["objects"][0];
    EXPECT_EQ(set["kind"].text, "nodes");
    EXPECT_EQ(set["name"].text, "All");
    EXPECT_FALSE(set["internal"].truth);
    EXPECT_EQ(set["size"].Int(), 10);
    JsonValue const& members = set["members"];
    ASSERT_EQ(members.Size(), 4U);
    EXPECT_EQ(members[1]["instance"].text, "My Part");
    EXPECT_EQ(members[1]["ranges"].Size(), 3U);
    EXPECT_EQ(members[2]["ranges"][1].Numbers(), (std::vector<double>{10, 40, 10}));
    EXPECT_TRUE(members[3]["instance"].IsNull());
    EXPECT_EQ(members[3]["ranges"][0].Numbers(), (std::vector<double>{11, 11, 1}));
    EXPECT_TRUE(Json({"P-1_Hidden"})["objects"][0]["internal"].truth);
}

TEST_F(Sets, AreFoundByEachFormOfTheirName) {
    Make();
    std::string const hidden = "internal node set P-1_Hidden: 1 node\n  P-1: 7\n";
    for (char const* const name :
         {"P-1.Hidden", "P-1_Hidden", "\"P-1\".Hidden", "\"P-1\".\"Hidden\"", "P-1.\"Hidden\""}) {
        EXPECT_EQ(Show({name}), hidden) << name;
    }
    std::string const quoted = "node set \"My Part_Top Set\": 4 nodes\n  \"My Part\": 1-3, 5\n";
    for (char const* const name :
         {"\"My Part\".\"Top Set\"", "My Part.Top Set", "My Part_Top Set", "\"My Part_Top Set\"",
          "\"My Part\".Top Set", "My Part.\"Top Set\""}) {
        EXPECT_EQ(Show({name}), quoted) << name;
    }
}

TEST_F(Sets, PiecesInQuotesMayHoldDots) {
    Make([](KOVObjDocument const& document) {
        ModelBuilder model(document);
        model.Space(4, 0);
        model.Put(schema::Model_nodeSets(), "A.1_Set.x", model.NodeSet({0}));
        model.Put(schema::Model_nodeSets(), "a.b", model.NodeSet({1, 2}));
        model.Commit();
    });
    EXPECT_EQ(Show({"\"A.1\".Set.x"}), "node set \"A.1_Set.x\": 1 node\n  (no label): 0\n");
    EXPECT_EQ(Show({"\"A.1\".\"Set.x\""}), "node set \"A.1_Set.x\": 1 node\n  (no label): 0\n");
    EXPECT_EQ(Show({"a.b"}), "node set \"a.b\": 2 nodes\n  (no label): 1-2\n");
    EXPECT_EQ(Show({"\"a.b\""}), "node set \"a.b\": 2 nodes\n  (no label): 1-2\n");
}

TEST_F(Sets, OfANamedModelAreFoundWithAndWithoutItsName) {
    Make([](KOVObjDocument const& document) {
        ModelBuilder model(document);
        model.Space(4, 0);
        document.GetModel().GetDataRecord().SetString(0, "Model-1");
        model.Put(schema::Model_nodeSets(), "Model-1_Set-1", model.NodeSet({0}));
        model.Put(schema::Model_nodeSets(), "Set-2", model.NodeSet({1}));
        KOVSimPosition const surface = model.Record(schema::Surface());
        surface.SetPosition(schema::Region_nodesCluster(), model.NodeSet({2}));
        model.Put(schema::Model_regions(), "INP2SIM_NSET_Top", surface);
        model.Commit();
    });
    EXPECT_EQ(Show({"Set-1"}), "node set Model-1_Set-1: 1 node\n  (no label): 0\n");
    EXPECT_EQ(Show({"Model-1.Set-2"}), "node set Set-2: 1 node\n  (no label): 1\n");
    EXPECT_EQ(Show({"Model-1.Top"}),
              "surface INP2SIM_NSET_Top: 1 node\n  nodes\n    (no label): 2\n");
}

TEST_F(Sets, ANameThatFitsSeveralKindsShowsAllOrTheOneAskedFor) {
    Make();
    std::string const nodes = "node set P-1_Top: 4 nodes\n  P-1: 10-40 step 10\n";
    std::string const elements = "element set P-1_Top: 2 elements\n  P-1: 1-2\n";
    std::string const surface =
        "surface P-1_Top: 4 faces, 1 edge, 1 element\n"
        "  S1\n"
        "    \"My Part\": 1\n"
        "  SPOS\n"
        "    \"\": 9\n"
        "    P-1: 1-2\n"
        "  E2\n"
        "    P-1: 2\n"
        "  elements\n"
        "    (no label): 4\n";
    EXPECT_EQ(Show({"P-1.Top"}), nodes + elements + surface);
    EXPECT_EQ(Show({"P-1.Top", "--kind", "nodes"}), nodes);
    EXPECT_EQ(Show({"P-1.Top", "--kind", "elements"}), elements);
    EXPECT_EQ(Show({"P-1.Top", "--kind", "surface"}), surface);
    EXPECT_EQ(Json({"P-1.Top"})["objects"].Size(), 3U);
    Workshop::Result const wrong = Ask({"P-1.Top", "--kind", "colour"});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_EQ(wrong.errors.substr(0, 8), "kovsim: ");
}

TEST_F(Sets, SurfacesAreShownAsJson) {
    Make();
    JsonValue const surface = Json({"P-1.Top", "--kind", "surface"})["objects"][0];
    EXPECT_EQ(surface["kind"].text, "surface");
    ASSERT_EQ(surface["faces"].Size(), 2U);
    EXPECT_EQ(surface["faces"][1]["name"].text, "SPOS");
    EXPECT_EQ(surface["faces"][1]["size"].Int(), 3);
    EXPECT_EQ(surface["faces"][1]["elements"][1]["instance"].text, "P-1");
    EXPECT_EQ(surface["edges"][0]["name"].text, "E2");
    EXPECT_EQ(surface["elements"][0]["ranges"][0].Numbers(), (std::vector<double>{4, 4, 1}));
    EXPECT_EQ(surface["nodes"].Size(), 0U);
    EXPECT_EQ(Show({"Bolt"}), "surface Bolt: 2 nodes\n  nodes\n    \"My Part\": 4-5\n");
    EXPECT_EQ(Show({"Bare"}), "surface Bare: nothing\n");
}

TEST_F(Sets, OrientationsAreShownWithTheirPoints) {
    Make();
    EXPECT_EQ(Show({"P-1.Ori"}),
              "orientation P-1_Ori: cylindrical\n"
              "  a 0, 0, 0.5\n"
              "  b 0, 0, 1e-06\n"
              "  c 1, 0, 0\n"
              "  rotated by 45 degrees about axis 3\n"
              "  first axis point 0, 0, 0.5\n"
              "  second axis point 0, 0, 1e-06\n");
    EXPECT_EQ(Show({"Blank"}), "orientation Blank: system not given\n");
    JsonValue const shown = Json({"P-1.Ori"})["objects"][0];
    EXPECT_EQ(shown["system"].text, "cylindrical");
    EXPECT_EQ(shown["c"].Numbers(), (std::vector<double>{1, 0, 0}));
    EXPECT_EQ(shown["rotationAxis"].Int(), 3);
    EXPECT_EQ(shown["rotationAngle"].Int(), 45);
    EXPECT_EQ(shown["axisPointB"].Numbers(), (std::vector<double>{0, 0, 1e-6}));
    JsonValue const blank = Json({"Blank"})["objects"][0];
    EXPECT_TRUE(blank["system"].IsNull());
    EXPECT_TRUE(blank["a"].IsNull());
}

TEST_F(Sets, UnknownNamesAreStatusTwoWithAHint) {
    Make();
    EXPECT_EQ(Show({"P-1.Tap"}), "no set named 'P-1.Tap'; did you mean 'P-1_Top'?\n");
    EXPECT_EQ(Show({"p-1.top"}), "no set named 'p-1.top'; did you mean 'P-1_Top'?\n");
    EXPECT_EQ(Show({"P-1.Hidde"}), "no set named 'P-1.Hidde'; did you mean 'P-1_Hidden'?\n");
    EXPECT_EQ(Show({"Skim", "--kind", "nodes"}), "no node set named 'Skim'\n");
    EXPECT_EQ(Show({"Skim", "--kind", "elements"}),
              "no element set named 'Skim'; did you mean 'Skin'?\n");
    EXPECT_EQ(Show({"Skin", "--kind", "orientation"}), "no orientation named 'Skin'\n");
    EXPECT_EQ(Show({"Skin", "--kind", "surface"}), "no surface named 'Skin'\n");
    EXPECT_EQ(Show({""}), "no set named ''\n");
    EXPECT_EQ(Show({"\""}), "the quotes of the name '\"' are not in pairs\n");
    EXPECT_EQ(Show({"P-1.\"Top"}), "the quotes of the name 'P-1.\"Top' are not in pairs\n");
    EXPECT_EQ(Show({"\"\""}), "no set named '\"\"'\n");
    EXPECT_EQ(Show({"."}), "no set named '.'\n");
    EXPECT_EQ(Show({std::string(100000, 'x')}), "no set named '" + std::string(60, 'x') + "...'\n");
    EXPECT_EQ(Show({"P-1_\"Top\"_\"x"}),
              "the quotes of the name 'P-1_\"Top\"_\"x' are not in pairs\n");
}

TEST_F(Sets, LongListsGoOnInFurtherLines) {
    Make([](KOVObjDocument const& document) {
        ModelBuilder model(document);
        model.Space(400, 0);
        Ints members;
        Ints labels;
        Ints ordinals;
        for (int i = 0; i < 400; ++i) {
            labels.push_back(1000 + i * i);
            ordinals.push_back(i);
        }
        model.Labels(KOVObjLabelerNodes, "Long Name", labels, ordinals);
        model.Put(schema::Model_nodeSets(), "s", model.NodeSet(ordinals));
        model.Commit();
    });
    std::string const text = Show({"s"});
    std::string const head = "  \"Long Name\": ";
    std::size_t lines = 0;
    std::string joined;
    for (std::size_t at = text.find('\n') + 1; at < text.size(); ++lines) {
        std::size_t const end = text.find('\n', at);
        EXPECT_LE(end - at, 100U);
        EXPECT_EQ(text.substr(at, head.size()), head);
        joined +=
            (joined.empty() ? "" : ", ") + text.substr(at + head.size(), end - at - head.size());
        at = end + 1;
    }
    EXPECT_GT(lines, 20U);
    std::string expected;
    for (int i = 0; i < 400; ++i) {
        if (i == 1) continue;
        expected += (i == 0 ? "1000-1001" : ", " + std::to_string(1000 + i * i));
    }
    EXPECT_EQ(joined, expected);
}

TEST_F(Sets, OfADeckAreShown) {
    Translate(
        "*NODE, NSET=N\n1, 0\n2, 1\n5, 2\n4, 3\n*ELEMENT, TYPE=B31, ELSET=\"My Beams\"\n8, 1, "
        "2\n9, "
        "5, 4\n*NSET, NSET=EMPTY\n");
    EXPECT_EQ(Show({}),
              "document              m.ksd\n"
              "instances                          1\n"
              "  \"\"                  4 nodes, 2 elements\n"
              "node sets                          2\n"
              "  EMPTY                            0\n"
              "  N                                4\n"
              "element sets                       1\n"
              "  \"My Beams\"                       2\n"
              "surfaces                           0\n"
              "orientations                       0\n");
    EXPECT_EQ(Show({"N"}), "node set N: 4 nodes\n  \"\": 1-2, 4-5\n");
    EXPECT_EQ(Show({"My Beams"}), "element set \"My Beams\": 2 elements\n  \"\": 8-9\n");
}

// What a translator writes is found as its deck names it.
TEST_F(Sets, OfATranslatedAssemblyAreShown) {
    Translate(
        "*PART, NAME=Plate\n*NODE, NSET=All\n1, 0, 0\n2, 1, 0\n3, 1, 1\n4, 0, 1\n5, 0.5, 0.5\n"
        "*ELEMENT, TYPE=S4R, ELSET=E\n7, 1, 2, 3, 4\n*ELEMENT, TYPE=S3, ELSET=T\n8, 1, 2, 5\n"
        "*SURFACE, NAME=Top\nE, SPOS\nT, E2\n*ORIENTATION, NAME=Ori, SYSTEM=CYLINDRICAL\n"
        "0, 0, 0, 0, 0, 1\n3, 30\n*END PART\n*ASSEMBLY, NAME=A\n*INSTANCE, NAME=Plate-1, "
        "PART=Plate\n*END INSTANCE\n*INSTANCE, NAME=\"My Plate\", PART=Plate\n5, 0, 0\n"
        "*END INSTANCE\n*NODE\n100, 9, 9, 9\n*NSET, NSET=Both\nPlate-1.All, \"My Plate\".All, 100\n"
        "*NSET, NSET=Picked, INTERNAL, INSTANCE=Plate-1\n2, 3\n*SURFACE, NAME=Bolt, TYPE=NODE\n"
        "Plate-1.All\n100\n*END ASSEMBLY\n");
    EXPECT_EQ(Show({"Both"}),
              "node set Both: 11 nodes\n  \"\": 100\n  \"My Plate\": 1-5\n  Plate-1: 1-5\n");
    EXPECT_EQ(Show({"\"My Plate\".All"}),
              "node set \"My Plate_All\": 5 nodes\n  \"My Plate\": 1-5\n");
    EXPECT_EQ(
        Show({"Plate-1.Top"}),
        "surface Plate-1_Top: 1 face, 1 edge\n  SPOS\n    Plate-1: 7\n  E2\n    Plate-1: 8\n");
    EXPECT_EQ(Show({"Bolt"}), "surface Bolt: 6 nodes\n  nodes\n    \"\": 100\n    Plate-1: 1-5\n");
    EXPECT_EQ(Show({"Picked"}), "internal node set Picked: 2 nodes\n  Plate-1: 2-3\n");
    EXPECT_EQ(Show({"\"My Plate\".\"Ori\""}),
              "orientation \"My Plate_Ori\": cylindrical\n"
              "  a 5, 0, 0\n"
              "  b 5, 0, 1\n"
              "  c 5, 0, 0\n"
              "  rotated by 30 degrees about axis 3\n"
              "  first axis point 5, 0, 0\n"
              "  second axis point 5, 0, 1\n");
    EXPECT_EQ(
        Show({"Plate-1.Tap"}),
        "no set named 'Plate-1.Tap'; did you mean 'Plate-1_Top', 'Plate-1_T' or 'Plate-1_All'?\n");
    EXPECT_EQ(Show({"all"}), "no set named 'all'; did you mean 'My Plate_All' or 'Plate-1_All'?\n");
    std::string const instances =
        "instances                          3\n"
        "  \"\"                  1 node, 0 elements\n"
        "  \"My Plate\"          5 nodes, 2 elements, part Plate\n"
        "  Plate-1             5 nodes, 2 elements, part Plate\n";
    EXPECT_NE(Show({}).find(instances), std::string::npos);
    // Both commands count and name instances alike.
    Workshop::Result const info = work.Run({"info", "m.ksd"});
    EXPECT_NE(info.output.find(instances), std::string::npos) << info.output;
    EXPECT_EQ(info.output.find(" \n"), std::string::npos) << info.output;
    JsonValue const infos = ParseJson(work.Run({"info", "m.ksd", "--json"}).output);
    EXPECT_EQ(infos["instances"][2]["name"].text, "Plate-1");
    EXPECT_EQ(infos["instances"][2]["part"].text, "Plate");
    JsonValue const list = Json({});
    EXPECT_EQ(list["instances"][1]["name"].text, "My Plate");
    EXPECT_EQ(list["instances"][1]["part"].text, "Plate");
    EXPECT_EQ(list["internalNodeSets"][0]["name"].text, "Picked");
    Workshop::Result const classes = work.Run({"classes", "m.ksd"});
    EXPECT_EQ(classes.status, 0);
    EXPECT_EQ(classes.output,
              "2 element classes\n"
              "QUADRILATERAL_4\n"
              "  first specification  S4R\n"
              "  specifications       S4R\n"
              "  elements             2\n"
              "  from                 Plate-1 7 to \"My Plate\" 7\n"
              "TRIANGLE_3\n"
              "  first specification  S3\n"
              "  specifications       S3\n"
              "  elements             2\n"
              "  from                 Plate-1 8 to \"My Plate\" 8\n");
    EXPECT_EQ(work.Run({"find", "m.ksd", "element", "My Plate", "8"}).output,
              "element \"My Plate\" 8: ordinal 3, S3, nodes \"My Plate\": 1, 2, 5\n");
}

TEST_F(Sets, AnEmptyDocumentHasNone) {
    Make([](KOVObjDocument const&) {});
    EXPECT_EQ(Show({}),
              "document              m.ksd\n"
              "instances                          0\n"
              "node sets                          0\n"
              "element sets                       0\n"
              "surfaces                           0\n"
              "orientations                       0\n");
    EXPECT_EQ(Show({"x"}), "no set named 'x'\n");
    EXPECT_EQ(Json({})["nodeSets"].Size(), 0U);
}

TEST_F(Sets, DocumentsWithoutAModelOrAMeshAreAnswered) {
    Make([](KOVObjDocument const& document) {
        KOVSimTransaction transaction(document.ContextID());
        document.SetMesh(KOVSimPosition());
        transaction.Commit();
    });
    EXPECT_NE(Show({}).find("node sets                          0"), std::string::npos);
    Make([](KOVObjDocument const& document) {
        KOVSimTransaction transaction(document.ContextID());
        document.SetModel(KOVSimPosition());
        transaction.Commit();
    });
    EXPECT_NE(Show({}).find("instances                          0"), std::string::npos);
    EXPECT_EQ(Show({"x"}), "no set named 'x'\n");
}

TEST_F(Sets, WhatIsNoSetOrHoldsOtherMembersIsTold) {
    Make([](KOVObjDocument const& document) {
        ModelBuilder model(document);
        model.Space(4, 4);
        model.Put(schema::Model_nodeSets(), "Record", model.Record(schema::Surface()));
        model.Put(schema::Model_nodeSets(), "Elements", model.ElementSet({1}));
        model.Put(schema::Model_regions(), "Set", model.NodeSet({1}));
        model.Put(schema::Model_orientationsByName(), "Set", model.NodeSet({2}));
        KOVSimPosition const odd = model.Record(schema::Surface());
        odd.SetPosition(schema::Region_elementsFacesCluster(), model.Model());
        odd.SetPosition(schema::Region_nodesCluster(), model.ElementSet({1}));
        model.Put(schema::Model_regions(), "Odd", odd);
        model.Put(schema::Model_instances(), "I", model.NodeSet({1}));
        KOVSimPosition const orientation = model.Record(schema::Orientation());
        orientation.GetDataRecord().SetInt(0, 77);
        orientation.GetDataRecord().SetString(1, "text");
        orientation.SetPosition(schema::Orientation_axisPointA(), model.Model());
        model.Put(schema::Model_orientationsByName(), "Odd", orientation);
        model.Commit();
    });
    EXPECT_EQ(Show({"Record"}), "'Record' stands among the node sets, and is no set\n");
    EXPECT_EQ(Show({"Elements"}),
              "the set holds members of a collection that is not that of the mesh's nodes\n");
    EXPECT_EQ(Show({"Odd", "--kind", "surface"}),
              "the set holds members of a collection that is not that of the mesh's nodes\n");
    EXPECT_EQ(Show({"Set"}), "surface Set: nothing\norientation Set: system not given\n");
    EXPECT_EQ(Show({"Odd", "--kind", "orientation"}), "orientation Odd: system 77\n");
    std::string const list = Show({});
    EXPECT_NE(list.find("  Record              no set\n"), std::string::npos) << list;
    EXPECT_NE(list.find("  I                   0 nodes, 0 elements\n"), std::string::npos) << list;
    EXPECT_TRUE(Json({})["nodeSets"][1]["size"].IsNull());
}

TEST_F(Sets, FacesWithoutNamesAreNumbered) {
    Make([](KOVObjDocument const& document) {
        ModelBuilder model(document);
        model.Space(0, 4);
        KOVSimCollection plain(model.Model().CreateTypedCollection(9, schema::FaceCollection()));
        int const several[] = {4, 7};
        KOVSimPosition const surface = model.Record(schema::Surface());
        // The faces stand in front here, and one compartment has two of them.
        surface.SetPosition(
            schema::Region_elementsFacesCluster(),
            model.Relation(
                {{plain.CreateCSet(several, 2, false), model.ElementSet({0, 2}).GetCSet()},
                 {plain.CreateCSet(several, 1, false), model.ElementSet({1}).GetCSet()}},
                schema::ElementFaces()));
        model.Put(schema::Model_regions(), "s", surface);
        model.Commit();
    });
    EXPECT_EQ(Show({"s"}),
              "surface s: 5 faces\n  4\n    (no label): 0-2\n  7\n    (no label): 0, 2\n");
}

}  // namespace
}  // namespace kov::test
