#include "KOVSrvFieldServices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "KOVSimSchema.h"
#include "KOVSrvVariableMap.h"

namespace {

using Fields = KOVSrvFieldServices;
using testing::ElementsAre;
using testing::IsEmpty;

std::string Plain(KOVString const& text) { return text.TextOrEmpty(); }

std::vector<std::string> Plain(Fields::Strings const& texts) {
    std::vector<std::string> plain;
    for (KOVString const& text : texts) plain.push_back(Plain(text));
    return plain;
}

KOVString WithZeroByte(std::string const& head, std::string const& tail) {
    std::string const bytes = head + '\0' + tail;
    KOVString text;
    text.BuildFromUTF8(bytes.data(), static_cast<int>(bytes.size()));
    return text;
}

std::vector<int> Walk(char const* label) {
    std::vector<int> grids;
    int grid = Fields::GetGridTypeFromVariableLabel(label, false);
    while (grid != -1) {
        grids.push_back(grid);
        grid = Fields::GetGridTypeFromVariableLabel(label, true);
    }
    return grids;
}

zdm_ComponentSymbolsEnm Component(int number) {
    return static_cast<zdm_ComponentSymbolsEnm>(number);
}

}  // namespace

// ---- the field of a label ----

TEST(FieldServices, LabelGivesTheNameOfItsField) {
    EXPECT_EQ(Plain(Fields::GetFieldType("U1")), "U_D");
    EXPECT_EQ(Plain(Fields::GetFieldType("S11")), "S0");
    EXPECT_EQ(Plain(Fields::GetFieldType("AC YIELD")), "AC_YIELD");
    EXPECT_EQ(Plain(Fields::GetFieldType("SNDFLG")), "PROCESSOR");
}

TEST(FieldServices, UnknownLabelGivesAnUndefinedField) {
    for (char const* label :
         {"", "NULL", "NOSUCH", "s11", "S1", "S11 ", " S11", "U_D", "UNDEFINED"})
        EXPECT_EQ(Plain(Fields::GetFieldType(label)), "UNDEFINED") << label;
}

TEST(FieldServices, LabelIsComparedBehindAZeroByteToo) {
    EXPECT_EQ(Plain(Fields::GetFieldType(WithZeroByte("S11", "X"))), "UNDEFINED");
    EXPECT_EQ(Plain(Fields::GetFieldType(WithZeroByte("", "S11"))), "UNDEFINED");
    EXPECT_EQ(Fields::GetComponent(WithZeroByte("U1", ""), false), zdm_Component_NONE);
}

// ---- the component of a label ----

TEST(FieldServices, LabelGivesItsComponent) {
    EXPECT_EQ(Fields::GetComponent("U1", false), 0);
    EXPECT_EQ(Fields::GetComponent("S12", false), 5);
    EXPECT_EQ(Fields::GetComponent("U", false), 38);
}

TEST(FieldServices, UnknownLabelGivesNoComponent) {
    for (char const* label : {"", "NULL", "NOSUCH"}) {
        EXPECT_EQ(Fields::GetComponent(label, false), 38) << label;
        EXPECT_EQ(Fields::GetComponent(label, true), 38) << label;
    }
}

TEST(FieldServices, FlagGivesTheSecondComponentOfAnOffDiagonalTerm) {
    EXPECT_EQ(Fields::GetComponent("S12", true), 9);
    EXPECT_EQ(Fields::GetComponent("S13", true), 11);
    EXPECT_EQ(Fields::GetComponent("S23", true), 19);
    EXPECT_EQ(Fields::GetComponent("ER13", true), 11);
    EXPECT_EQ(Fields::GetComponent("RI12", true), 9);
}

TEST(FieldServices, FlagChangesNothingForOtherLabels) {
    // On many grids, on one, and in front of a row of another label.
    for (char const* label : {"S11", "AC YIELD", "U1", "ALLKE", "AMAG", "DG12"})
        EXPECT_EQ(Fields::GetComponent(label, true), Fields::GetComponent(label, false)) << label;
}

TEST(FieldServices, FlagInFrontOfTheClosingRowChangesNothing) {
    EXPECT_EQ(Fields::GetComponent("SNDFLG", true), 38);
    EXPECT_EQ(Fields::GetComponent("SNDFLG", false), 38);
}

// ---- the labels of a field ----

TEST(FieldServices, FieldGivesTheLabelOfTheWhole) {
    EXPECT_EQ(Plain(Fields::GetVariableLabel("S0", -1)), "S");
    EXPECT_EQ(Plain(Fields::GetVariableLabel("S0", schema::Grid_Element())), "S");
    EXPECT_EQ(Plain(Fields::GetVariableLabel("PROCESSOR", schema::Grid_Node())), "PROC");
}

TEST(FieldServices, FirstOfSeveralLabelsOfTheWholeWins) {
    // V_D is AVGVEL on surfaces, USTAR on faces, and V and VT at nodes.
    EXPECT_EQ(Plain(Fields::GetVariableLabel("V_D", -1)), "AVGVEL");
    EXPECT_EQ(Plain(Fields::GetVariableLabel("V_D", schema::Grid_ElementFace())), "USTAR");
    EXPECT_EQ(Plain(Fields::GetVariableLabel("V_D", schema::Grid_Node())), "V");
}

TEST(FieldServices, UnknownFieldHasAnEmptyLabel) {
    for (char const* name : {"NOSUCH", "S", "s0", "UNDEFINED", "S0 "})
        EXPECT_TRUE(Fields::GetVariableLabel(name, -1).IsEmpty()) << name;
}

TEST(FieldServices, EmptyFieldAndNullHaveAnUndefinedLabel) {
    EXPECT_EQ(Plain(Fields::GetVariableLabel("", -1)), "UNDEFINED");
    EXPECT_EQ(Plain(Fields::GetVariableLabel(KOVString(), 7)), "UNDEFINED");
    EXPECT_EQ(Plain(Fields::GetVariableLabel("NULL", -1)), "UNDEFINED");
    EXPECT_TRUE(Fields::GetVariableLabel("NULLS", -1).IsEmpty());
    EXPECT_TRUE(Fields::GetVariableLabel("null", -1).IsEmpty());
}

TEST(FieldServices, FieldOnAnotherGridHasAnEmptyLabel) {
    EXPECT_TRUE(Fields::GetVariableLabel("S0", schema::Grid_Node()).IsEmpty());
    EXPECT_TRUE(Fields::GetVariableLabel("S0", 0).IsEmpty());
    EXPECT_TRUE(Fields::GetVariableLabel("S0", -2).IsEmpty());
}

TEST(FieldServices, FieldWithoutALabelOfTheWholeHasAnEmptyOne) {
    // CRACK2 is told by its components alone.
    EXPECT_TRUE(Fields::GetVariableLabel("CRACK2", -1).IsEmpty());
    EXPECT_EQ(Plain(Fields::GetComponentLabel("CRACK2", Component(0), -1)), "CRACK2X");
}

TEST(FieldServices, FieldNameEndsAtAZeroByte) {
    EXPECT_EQ(Plain(Fields::GetVariableLabel(WithZeroByte("S0", "X"), -1)), "S");
    EXPECT_EQ(Plain(Fields::GetVariableLabel(WithZeroByte("", "S0"), -1)), "UNDEFINED");
    EXPECT_EQ(Plain(Fields::GetVariableLabel(WithZeroByte("NULL", "X"), -1)), "UNDEFINED");
}

TEST(FieldServices, ComponentOfAFieldGivesItsLabel) {
    EXPECT_EQ(Plain(Fields::GetComponentLabel("U_D", Component(12), -1)), "U2");
    EXPECT_EQ(Plain(Fields::GetComponentLabel("U_D", Component(12), schema::Grid_Node())), "U2");
    EXPECT_EQ(Plain(Fields::GetComponentLabel("S0", Component(9), schema::Grid_Element())), "S12");
    EXPECT_EQ(Plain(Fields::GetComponentLabel("S0", Component(24), -1)), "SP1");
}

TEST(FieldServices, FirstOfSeveralLabelsOfAComponentWins) {
    EXPECT_EQ(Plain(Fields::GetComponentLabel("COORD", Component(0), -1)), "COOR1");
    EXPECT_EQ(Plain(Fields::GetComponentLabel("COORD", Component(0), schema::Grid_SectionPoint())),
              "COORD1");
}

TEST(FieldServices, WholeCountsAsAComponentHere) {
    EXPECT_EQ(Plain(Fields::GetComponentLabel("U_D", zdm_Component_NONE, -1)), "U");
}

TEST(FieldServices, ComponentThatAFieldDoesNotHaveHasAnEmptyLabel) {
    EXPECT_TRUE(Fields::GetComponentLabel("U_D", Component(12), schema::Grid_Element()).IsEmpty());
    EXPECT_TRUE(Fields::GetComponentLabel("U_D", Component(1), -1).IsEmpty());
    EXPECT_TRUE(Fields::GetComponentLabel("U_D", Component(39), -1).IsEmpty());
    for (char const* name : {"", "NULL", "NOSUCH", "UNDEFINED"})
        EXPECT_TRUE(Fields::GetComponentLabel(name, zdm_Component_NONE, -1).IsEmpty()) << name;
    EXPECT_TRUE(Fields::GetComponentLabel("UNDEFINED", zdm_Component_NONE, 0).IsEmpty());
}

// ---- all components of a label's field ----

TEST(FieldServices, LabelGivesTheComponentsOfItsField) {
    EXPECT_THAT(Plain(Fields::GetComponents("U")), ElementsAre("U1", "U2", "U3"));
    EXPECT_THAT(Plain(Fields::GetComponents("U3")), ElementsAre("U1", "U2", "U3"));
    EXPECT_THAT(Plain(Fields::GetComponents("UT")), ElementsAre("U1", "U2", "U3"));
}

TEST(FieldServices, TermsWithTwoRowsAndAllFamiliesOfComponentsAreGiven) {
    EXPECT_THAT(Plain(Fields::GetComponents("S")),
                ElementsAre("S11", "S12", "S12", "S13", "S13", "S22", "S23", "S23", "S33", "SP1",
                            "SP2", "SP3"));
}

TEST(FieldServices, ComponentsAreThoseOnTheGridOfTheFirstRow) {
    // The section points have the labels COORD1 to COORD3; COORD itself stands at nodes first.
    EXPECT_THAT(Plain(Fields::GetComponents("COORD1")), ElementsAre("COORD1", "COORD2", "COORD3"));
    EXPECT_THAT(Plain(Fields::GetComponents("COORD")), ElementsAre("COOR1", "COOR2", "COOR3"));
}

TEST(FieldServices, ComponentsOfAnEarlierRunOfTheFieldStandFirst) {
    EXPECT_THAT(
        Plain(Fields::GetComponents("SVAVG33")),
        ElementsAre("S11", "S12", "S12", "S13", "S13", "S22", "S23", "S23", "S33", "SP1", "SP2",
                    "SP3", "SVAVG11", "SVAVG12", "SVAVG13", "SVAVG22", "SVAVG23", "SVAVG33"));
}

TEST(FieldServices, ScalarAndUnknownLabelHaveNoComponents) {
    for (char const* label : {"ALLKE", "SNDFLG", "", "NULL", "NOSUCH", "UNDEFINED"})
        EXPECT_THAT(Plain(Fields::GetComponents(label)), IsEmpty()) << label;
}

// ---- the grids of a label ----

TEST(FieldServices, WalkGivesTheGridsInTheOrderOfTheRows) {
    EXPECT_THAT(Walk("AC YIELD"),
                ElementsAre(schema::Grid_SectionPoint(), schema::Grid_IntegrationPoint(),
                            schema::Grid_IntegrationPointLayer(), schema::Grid_ElementNode(),
                            schema::Grid_ElementNodeLayer(), schema::Grid_Element(),
                            schema::Grid_ElementLayer()));
}

TEST(FieldServices, WalkGivesAGridForEachRow) {
    EXPECT_THAT(Walk("RI12"), ElementsAre(schema::Grid_WholeModel(), schema::Grid_WholeModel()));
    EXPECT_THAT(Walk("SNDFLG"), ElementsAre(schema::Grid_Element()));
}

TEST(FieldServices, WalkGoesOnBehindRowsOfAnotherLabel) {
    // The rows of MISESAVG stand among those of MISES.
    EXPECT_THAT(Walk("MISES"),
                ElementsAre(schema::Grid_IntegrationPoint(), schema::Grid_IntegrationPointLayer(),
                            schema::Grid_ElementLayer(), schema::Grid_ElementNode(),
                            schema::Grid_ElementNodeLayer()));
}

TEST(FieldServices, UnknownLabelHasNoGrid) {
    for (char const* label : {"", "NULL", "NOSUCH", "UNDEFINED"}) {
        EXPECT_EQ(Fields::GetGridTypeFromVariableLabel(label, false), -1) << label;
    }
}

TEST(FieldServices, WalkThatHasEndedStaysAtItsEndUntilANewOne) {
    EXPECT_EQ(Fields::GetGridTypeFromVariableLabel("NOSUCH", false), -1);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(Fields::GetGridTypeFromVariableLabel("U", true), -1);
    EXPECT_EQ(Fields::GetGridTypeFromVariableLabel("U", false), schema::Grid_Node());
}

TEST(FieldServices, CallWithoutResumeBeginsAgain) {
    int const first = Fields::GetGridTypeFromVariableLabel("S", false);
    int const second = Fields::GetGridTypeFromVariableLabel("S", true);
    EXPECT_NE(first, second);
    EXPECT_EQ(Fields::GetGridTypeFromVariableLabel("S", false), first);
    EXPECT_EQ(Fields::GetGridTypeFromVariableLabel("S", true), second);
}

TEST(FieldServices, WalkGoesOnForAnotherLabelFromWhereItStands) {
    EXPECT_EQ(Fields::GetGridTypeFromVariableLabel("U", false), schema::Grid_Node());
    EXPECT_EQ(Fields::GetGridTypeFromVariableLabel("V", true), schema::Grid_Node());
    // A stands in front of both.
    EXPECT_EQ(Fields::GetGridTypeFromVariableLabel("A", true), -1);
}

TEST(FieldServices, OtherSearchesLeaveTheWalkAlone) {
    Fields::GetGridTypeFromVariableLabel("S", false);
    Fields::GetFieldType("SNDFLG");
    Fields::GetComponent("SNDFLG", true);
    Fields::GetComponents("SNDFLG");
    Fields::GetVariableLabel("PROCESSOR", -1);
    EXPECT_EQ(Fields::GetGridTypeFromVariableLabel("S", true),
              schema::Grid_IntegrationPointLayer());
}

TEST(FieldServices, FirstWalkOfAProcessMayBeginWithResume) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        std::exit(Fields::GetGridTypeFromVariableLabel("A", true) == schema::Grid_Node() ? 7 : 1),
        testing::ExitedWithCode(7), "");
}

TEST(FieldServices, WalksOfTwoThreadsGiveGridsOfTheirOwnLabels) {
    std::set<int> ofS, ofU{schema::Grid_Node(), -1};
    for (int grid : Walk("S")) ofS.insert(grid);
    ofS.insert(-1);
    auto const wrong = [](char const* label, std::set<int> const& grids) {
        int count = 0;
        for (int i = 0; i < 3000; ++i)
            count += !grids.count(Fields::GetGridTypeFromVariableLabel(label, i % 7 != 0));
        return count;
    };
    int wrongS = -1, wrongU = -1;
    std::thread other([&] { wrongS = wrong("S", ofS); });
    wrongU = wrong("U", ofU);
    other.join();
    EXPECT_EQ(wrongS, 0);
    EXPECT_EQ(wrongU, 0);
}
