// What labels of result variables stand for.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "JsonText.h"
#include "KOVSrvFieldServices.h"
#include "KOVSrvVariableMap.h"
#include "Process.h"

namespace kov::test {
namespace {

class Variable : public ::testing::Test {
  protected:
    std::string Ask(std::string const& label, int status = 0) const {
        Workshop::Result const result = work.Run({"variable", label});
        EXPECT_EQ(result.status, status);
        EXPECT_EQ(result.errors, "");
        return result.output;
    }
    JsonValue Json(std::string const& label, int status = 0) const {
        Workshop::Result const result = work.Run({"variable", label, "--json"});
        EXPECT_EQ(result.status, status);
        return ParseJson(result.output);
    }

    Workshop work;
};

TEST_F(Variable, AComponentOfAVectorIsExplained) {
    EXPECT_EQ(Ask("U2"),
              "U2\n"
              "  field                U_D\n"
              "  component            C_2 (12)\n"
              "  grids                Grid_Node  nodes\n"
              "  labels of the field  U, UT\n"
              "  of its components    U1, U2, U3\n");
}

TEST_F(Variable, AShearTermHasTwoComponentsAndOneOrderOfGrids) {
    EXPECT_EQ(
        Ask("S12"),
        "S12\n"
        "  field                S0\n"
        "  component            C_12 (5) and C_12_21 (9)\n"
        "  grids                Grid_IntegrationPoint       elements by integration points\n"
        "                       Grid_IntegrationPointLayer  elements by integration points by "
        "section points\n"
        "                       Grid_Element                one value for a whole element\n"
        "                       Grid_ElementLayer           elements by section points\n"
        "                       Grid_ElementNode            elements by their nodes\n"
        "                       Grid_ElementNodeLayer       elements by their nodes by section "
        "points\n"
        "  labels of the field  S, SP, SVAVG\n"
        "  of its components    S11, S12, S13, S22, S23, S33, SP1, SP2, SP3, SVAVG11, SVAVG12, "
        "SVAVG13, SVAVG22, SVAVG23,\n"
        "                       SVAVG33\n");
}

TEST_F(Variable, AScalarIsAFieldAsAWhole) {
    EXPECT_EQ(Ask("ALLKE"),
              "ALLKE\n"
              "  field                KINETIC_ENERGY\n"
              "  component            the field as a whole\n"
              "  grids                Grid_WholeModel  whole-model history variables\n"
              "  labels of the field  ALLKE, ELKE\n"
              "  of its components    none\n");
}

TEST_F(Variable, CaseIsForgivenWithARemark) {
    EXPECT_EQ(Ask("u2"), "'u2' is written U2\n" + Ask("U2"));
    EXPECT_EQ(Ask("aC yield"), "'aC yield' is written AC YIELD\n" + Ask("AC YIELD"));
    JsonValue const json = Json("s11");
    EXPECT_EQ(json["asked"].text, "s11");
    EXPECT_EQ(json["label"].text, "S11");
}

TEST_F(Variable, UnknownLabelsGiveTheNearestOnes) {
    EXPECT_EQ(Ask("S112", 1),
              "no variable has the label 'S112'; did you mean 'S11', 'S12' or 'SC12'?\n");
    EXPECT_EQ(Ask("xqz", 1), "no variable has the label 'xqz'\n");
    EXPECT_EQ(Ask("", 1), "no variable has the label ''\n");
    EXPECT_EQ(Ask("NULL", 1).substr(0, 32), "no variable has the label 'NULL'");
    EXPECT_EQ(Ask("UNDEFINED", 1), "no variable has the label 'UNDEFINED'\n");
}

TEST_F(Variable, AFieldIsToldByItsLabels) {
    EXPECT_EQ(Ask("S0", 1),
              "no variable has the label 'S0': it is a field, with the labels S, SP, SVAVG\n");
    EXPECT_EQ(Ask("AC_YIELD", 1),
              "no variable has the label 'AC_YIELD': it is a field, with the labels AC YIELD, "
              "ACYIELD\n");
}

TEST_F(Variable, TheGridsOfALabelStandInTheOrderOfItsRows) {
    std::vector<std::string> names;
    JsonValue const json = Json("AC YIELD");
    for (JsonValue const& grid : json["grids"].items) {
        names.push_back(grid["type"].text);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Grid_SectionPoint", "Grid_IntegrationPoint",
                                               "Grid_IntegrationPointLayer", "Grid_ElementNode",
                                               "Grid_ElementNodeLayer", "Grid_Element",
                                               "Grid_ElementLayer"}));
}

TEST_F(Variable, JsonOfAnUnknownLabelHasNulls) {
    Workshop::Result const result = work.Run({"variable", "U4", "--json"});
    EXPECT_EQ(result.status, 1);
    JsonValue const json = ParseJson(result.output);
    EXPECT_TRUE(json["label"].IsNull());
    EXPECT_TRUE(json["field"].IsNull());
    EXPECT_EQ(json["nearest"].items.size(), 3U);
    EXPECT_EQ(json["labelsOfField"].items.size(), 0U);
}

TEST_F(Variable, WithoutALabelThereIsNoAnswer) {
    EXPECT_EQ(work.Run({"variable"}).status, 2);
    EXPECT_EQ(work.Run({"variable", "S11", "S22"}).status, 2);
}

// Every 37th label: all of them take long.
TEST_F(Variable, LabelsAgreeWithTheServices) {
    std::set<std::string> labels;
    for (int i = 0; KOVSrvVariableMap::GetEntry(i)->label != nullptr; ++i) {
        labels.insert(KOVSrvVariableMap::GetEntry(i)->label);
    }
    EXPECT_EQ(labels.size(), 1688U);
    int number = 0;
    for (std::string const& label : labels) {
        if (number++ % 37 != 0) continue;
        JsonValue const json = Json(label);
        EXPECT_EQ(json["label"].text, label);
        KOVString const text(label.c_str());
        EXPECT_STREQ(json["field"].text.c_str(),
                     KOVSrvFieldServices::GetFieldType(text).TextOrEmpty());
        int const component = KOVSrvFieldServices::GetComponent(text, false);
        std::vector<JsonValue> const& components = json["components"].items;
        EXPECT_EQ(components.empty(), component == zdm_Component_NONE) << label;
        if (!components.empty()) {
            EXPECT_EQ(components[0]["number"].Int(), component) << label;
        }
        for (JsonValue const& grid : json["grids"].items) {
            EXPECT_EQ(grid["type"].text.substr(0, 5), "Grid_") << label;
        }
    }
}

}  // namespace
}  // namespace kov::test
