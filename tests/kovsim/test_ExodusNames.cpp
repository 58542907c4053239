#include "ExodusNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kov::tool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Names = std::vector<std::string>;

ExodusVariables At(bool elements, Names names, std::vector<std::vector<bool>> present = {}) {
    ExodusVariables variables;
    variables.elements = elements;
    if (present.empty()) present = {std::vector<bool>(names.size(), true)};
    for (std::size_t b = 0; b < present.size(); ++b) {
        variables.items.push_back(10);
        variables.blockIds.push_back(std::to_string(100 + b));
    }
    variables.present = std::move(present);
    variables.names = std::move(names);
    return variables;
}

// Each field as "LABEL: components / count of points".
Names Told(ExodusGroups const& groups) {
    Names texts;
    for (ExodusGroup const& group : groups.groups) {
        std::string text = group.label + ":";
        for (std::string const& component : group.components) text += " " + component;
        if (group.numbered) text += " / " + std::to_string(group.variables.size());
        texts.push_back(text);
    }
    return texts;
}
Names Nodal(Names const& names) { return Told(GroupExodusVariables(At(false, names))); }
Names Element(Names const& names) { return Told(GroupExodusVariables(At(true, names))); }

TEST(ExodusNames, AVectorIsSpelledByLettersOrNumbers) {
    EXPECT_THAT(Nodal({"disp_x", "disp_y", "disp_z"}), ElementsAre("U: U1 U2 U3"));
    EXPECT_THAT(Nodal({"DISPLX", "DISPLY", "DISPLZ"}), ElementsAre("U: U1 U2 U3"));
    EXPECT_THAT(Nodal({"VelocityX", "VelocityY"}), ElementsAre("V: V1 V2"));
    EXPECT_THAT(Nodal({"U1", "U2", "U3"}), ElementsAre("U: U1 U2 U3"));
    EXPECT_THAT(Nodal({"reaction_1", "reaction_2"}), ElementsAre("RF: RF1 RF2"));
}

TEST(ExodusNames, ATensorIsSpelledByLettersOrNumbersOrByOneLetterForNormalTerms) {
    EXPECT_THAT(
        Element({"stress_xx", "stress_yy", "stress_zz", "stress_xy", "stress_yz", "stress_zx"}),
        ElementsAre("S: S11 S22 S33 S12 S13 S23"));
    EXPECT_THAT(Element({"S11", "S22", "S33", "S12", "S13", "S23"}),
                ElementsAre("S: S11 S22 S33 S12 S13 S23"));
    EXPECT_THAT(Nodal({"Sx", "Sy", "Sz", "Sxy", "Sxz", "Syz"}),
                ElementsAre("S: S11 S22 S33 S12 S13 S23"));
    EXPECT_THAT(Element({"strain_xx", "strain_yy", "strain_xy"}), ElementsAre("E: E11 E22 E12"));
}

TEST(ExodusNames, EachComponentIsTheVariableOfItsName) {
    ExodusGroups const groups = GroupExodusVariables(
        At(true, {"stress_zx", "stress_xy", "stress_zz", "stress_yy", "stress_yz", "stress_xx"}));
    ASSERT_EQ(groups.groups.size(), 1u);
    EXPECT_THAT(groups.groups[0].variables, ElementsAre(ElementsAre(5, 3, 2, 1, 0, 4)));
}

TEST(ExodusNames, AnUnknownStemKeepsItsNameToTheLetter) {
    EXPECT_THAT(Nodal({"Flow_x", "Flow_y", "Flow_z"}), ElementsAre("Flow: Flow1 Flow2 Flow3"));
    EXPECT_THAT(Nodal({"chi"}), ElementsAre("chi: chi"));
    EXPECT_THAT(
        Element({"fabric_11", "fabric_22", "fabric_33", "fabric_12", "fabric_13", "fabric_23"}),
        ElementsAre("fabric: fabric11 fabric22 fabric33 fabric12 fabric13 fabric23"));
}

TEST(ExodusNames, AKnownVariableNeedsNotAllComponents) {
    EXPECT_THAT(Nodal({"disp_z"}), ElementsAre("U: U3"));
    EXPECT_THAT(Element({"S11", "S33"}), ElementsAre("S: S11 S33"));
    EXPECT_THAT(Nodal({"flux"}), ElementsAre("flux: flux")) << "no component x of flu";
    EXPECT_THAT(Nodal({"flow_z"}), ElementsAre("flow_z: flow_z"));
}

TEST(ExodusNames, KnownScalarsDependOnTheirPlace) {
    EXPECT_THAT(Nodal({"temperature"}), ElementsAre("NT: NT"));
    EXPECT_THAT(Element({"temperature"}), ElementsAre("TEMP: TEMP"));
    EXPECT_THAT(Element({"von_mises", "eqps"}), ElementsAre("MISES: MISES", "PEEQ: PEEQ"));
}

TEST(ExodusNames, SpellingsAreNotMixed) {
    EXPECT_THAT(Nodal({"flow_x", "flowy", "flow_Z"}),
                ElementsAre("flow_x: flow_x", "flowy: flowy", "flow_Z: flow_Z"));
}

TEST(ExodusNames, NumbersBehindAnUnknownStemAreNoComponents) {
    for (bool const elements : {false, true}) {
        ExodusGroups const groups =
            GroupExodusVariables(At(elements, {"conc_1", "conc_2", "conc_3"}));
        EXPECT_THAT(Told(groups),
                    ElementsAre("conc_1: conc_1", "conc_2: conc_2", "conc_3: conc_3"));
        EXPECT_THAT(groups.notes, ElementsAre(HasSubstr("'conc_1' to 'conc_3'")));
    }
}

TEST(ExodusNames, NumbersBeyondTheTermsMakeNoTensor) {
    Names names;
    for (int i = 1; i <= 33; ++i) names.push_back("SDV" + std::to_string(i));
    EXPECT_EQ(Element(names).size(), 33u);
}

TEST(ExodusNames, ANumberBehindAComponentIsAnIntegrationPoint) {
    Names names;
    for (int point = 1; point <= 8; ++point) {
        for (char const* term : {"xx", "yy", "zz", "xy", "yz", "zx"}) {
            names.push_back(std::string("stress_") + term + "_" + std::to_string(point));
        }
    }
    ExodusGroups const groups = GroupExodusVariables(At(true, names));
    EXPECT_THAT(Told(groups), ElementsAre("S: S11 S22 S33 S12 S13 S23 / 8"));
    EXPECT_THAT(groups.groups[0].variables[2], ElementsAre(12, 13, 14, 15, 17, 16));
    EXPECT_THAT(Element({"S11-1", "S11-2", "S22-1", "S22-2"}), ElementsAre("S: S11 S22 / 2"));
    EXPECT_THAT(Element({"flow_x_1", "flow_y_1"}), ElementsAre("flow: flow1 flow2 / 1"));
}

TEST(ExodusNames, NumbersOfPointsMayHaveLeadingZeros) {
    Names names;
    for (int point = 1; point <= 12; ++point) {
        names.push_back((point < 10 ? "eqps_0" : "eqps_") + std::to_string(point));
    }
    EXPECT_THAT(Element(names), ElementsAre("PEEQ: PEEQ / 12"));
}

TEST(ExodusNames, AMarkedNumberIsAnIntegrationPointOfAnyVariable) {
    EXPECT_THAT(Element({"damage_ip_1", "damage_ip_2"}), ElementsAre("damage: damage / 2"));
    EXPECT_THAT(Element({"damage_QP1", "damage_QP2"}), ElementsAre("damage: damage / 2"));
    EXPECT_THAT(Nodal({"damage_ip_1", "damage_ip_2"}),
                ElementsAre("damage_ip_1: damage_ip_1", "damage_ip_2: damage_ip_2"));
}

TEST(ExodusNames, AKnownVectorWithNumbersIsAVectorInElementsToo) {
    EXPECT_THAT(Element({"velocity_1", "velocity_2", "velocity_3"}), ElementsAre("V: V1 V2 V3"));
}

TEST(ExodusNames, PointsWithAGapStayVariables) {
    EXPECT_THAT(Element({"eqps_1", "eqps_3"}), ElementsAre("eqps_1: eqps_1", "eqps_3: eqps_3"));
    EXPECT_THAT(Element({"flow_x_1", "flow_y_1", "flow_x_2"}),
                ElementsAre("flow_x_1: flow_x_1", "flow_y_1: flow_y_1", "flow_x_2: flow_x_2"));
}

TEST(ExodusNames, BlocksMayHaveDifferentCountsOfPoints) {
    ExodusGroups const groups = GroupExodusVariables(
        At(true, {"eqps_1", "eqps_2", "eqps_3"}, {{true, true, true}, {true, false, false}}));
    EXPECT_THAT(Told(groups), ElementsAre("PEEQ: PEEQ / 3"));
    EXPECT_THAT(groups.groups[0].blocks, ElementsAre(0, 1));
    EXPECT_EQ(GroupExodusVariables(At(true, {"eqps_1", "eqps_2", "eqps_3"},
                                      {{true, true, true}, {true, false, true}}))
                  .groups.size(),
              3u)
        << "a gap in one block";
}

TEST(ExodusNames, ABlockWithOtherComponentsIsAFieldOfItsOwn) {
    ExodusVariables variables = At(true, {"S11", "S22", "S12", "S33"},
                                   {{true, true, true, false}, {true, true, true, true}});
    variables.items = {5, 7};
    ExodusGroups const groups = GroupExodusVariables(variables);
    EXPECT_THAT(Told(groups),
                ElementsAre("S of block 100: S of block 10011 S of block 10022 S of block 10012",
                            "S: S11 S22 S33 S12"));
    EXPECT_THAT(groups.notes, ElementsAre(HasSubstr("'S of block 100' is a field of its own")));
    EXPECT_THAT(groups.groups[1].blocks, ElementsAre(1));
}

TEST(ExodusNames, OfTwoWithOneLabelTheSecondKeepsItsName) {
    ExodusGroups const groups =
        GroupExodusVariables(At(false, {"disp_x", "disp_y", "displ_x", "displ_y"}));
    EXPECT_THAT(Told(groups), ElementsAre("U: U1 U2", "displ: displ1 displ2"));
    EXPECT_THAT(groups.notes, ElementsAre(HasSubstr("'displ' keeps its own name")));
}

TEST(ExodusNames, AStemThatIsAVariableTooIsNoField) {
    EXPECT_THAT(Nodal({"flow", "flow_x", "flow_y"}),
                ElementsAre("flow: flow", "flow_x: flow_x", "flow_y: flow_y"));
}

TEST(ExodusNames, AScalarWithTheLabelOfSomethingElseIsRenamed) {
    EXPECT_THAT(Nodal({"U"}), ElementsAre("U (1): U (1)"));
    EXPECT_THAT(Element({"SP1", "S11"}), ElementsAre("SP1 (1): SP1 (1)", "S: S11"));
    EXPECT_THAT(Nodal({"temp", "NT"}), ElementsAre("temp: temp", "NT: NT"));
}

TEST(ExodusNames, ATensorWithBothHalvesIsNotSymmetric) {
    Names const names = {"grad_xx", "grad_yy", "grad_zz", "grad_xy", "grad_yz",
                         "grad_xz", "grad_yx", "grad_zy", "grad_zx"};
    EXPECT_EQ(Nodal(names).size(), 9u);
}

TEST(ExodusNames, AShearTermAloneTellsNothing) {
    EXPECT_THAT(Element({"stress_xy"}), ElementsAre("stress_xy: stress_xy"));
    EXPECT_THAT(Element({"stress_xx"}), ElementsAre("S: S11"));
}

TEST(ExodusNames, WhatNoBlockHasIsNoField) {
    EXPECT_THAT(Told(GroupExodusVariables(At(true, {"a", "b"}, {{false, true}}))),
                ElementsAre("b: b"));
    EXPECT_THAT(Nodal({}), IsEmpty());
}

}  // namespace
}  // namespace kov::tool
