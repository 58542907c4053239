#include "LayupPicture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "LayupSamples.h"
#include "PictureReader.h"

namespace kov::tool {
namespace {

using test::Composite;
using test::Constant;
using test::OfAngles;
using test::OfElement;
using test::Ply;
using Picture = test::PictureReader;
using test::Spread;
using test::XmlElement;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

TEST(LayupPicture, EachLayerHasABandAndALine) {
    Picture const picture(OfAngles({0, 45, -45, 90}));
    EXPECT_EQ(picture.Bands().size(), 4U);
    EXPECT_EQ(picture.Lines().size(), 4U);
    for (char const* const label : {"P1", "P2", "P3", "P4", "1", "4", "45\xc2\xb0", "0.125"})
        EXPECT_THAT(picture.Labels(), Contains(label));
}

TEST(LayupPicture, TheFirstLayerIsAtTheBottom) {
    Picture const picture(OfAngles({0, 45, 90}));
    EXPECT_GT(picture.Label("P1").Number("y"), picture.Label("P2").Number("y"));
    EXPECT_GT(Picture::Corners(*picture.Bands()[0])[0].second,
              Picture::Corners(*picture.Bands()[2])[0].second);
    // Each stands upon the one before.
    EXPECT_NEAR(Picture::Corners(*picture.Bands()[0])[3].second,
                Picture::Corners(*picture.Bands()[1])[0].second, 0.2);
}

TEST(LayupPicture, BandsAreAsHighAsTheirLayersAreThick) {
    Picture const picture(
        Composite({Ply("A", "M", Constant(1), Constant(0)), Ply("B", "M", Constant(2), Constant(0)),
                   Ply("C", "M", Constant(5), Constant(0))}));
    EXPECT_NEAR(picture.LeftHeight(1), 2 * picture.LeftHeight(0), 0.3);
    EXPECT_NEAR(picture.LeftHeight(2), 5 * picture.LeftHeight(0), 0.5);
    EXPECT_THAT(picture.Text(), Not(HasSubstr("to scale")));
}

TEST(LayupPicture, ThinLayersStayVisibleAndAreMarked) {
    Picture const picture(Composite({Ply("A", "M", Constant(1), Constant(45)),
                                     Ply("B", "M", Constant(1e9), Constant(0)),
                                     Ply("C", "M", Constant(1), Constant(-45))}));
    EXPECT_GE(picture.LeftHeight(0), 3.8);
    EXPECT_GE(picture.LeftHeight(2), 3.8);
    EXPECT_THAT(picture.Labels(), Contains("1 *"));
    EXPECT_THAT(picture.Labels(), Contains("1e+09"));
    EXPECT_THAT(picture.Labels(), Contains("* drawn thicker than to scale"));
}

TEST(LayupPicture, HatchesRunInTheDirectionOfThePlies) {
    Picture const picture(OfAngles({45, -45, 0, 90, 22.5, 135}));
    std::map<std::string, std::string> turns;
    for (XmlElement const* pattern : picture.Tags("pattern"))
        turns[pattern->attributes.at("id")] = pattern->attributes.at("patternTransform");
    auto const turn = [&](std::size_t band) {
        std::string const fill = picture.Hatches(band).at(0);
        return turns.at(fill.substr(5, fill.size() - 6));
    };
    // y points downward, so that angles are counted the other way round.
    EXPECT_THAT(turn(0), HasSubstr("rotate(-45)"));
    EXPECT_THAT(turn(1), HasSubstr("rotate(45)"));
    EXPECT_THAT(turn(2), HasSubstr("rotate(0)"));
    EXPECT_THAT(turn(3), HasSubstr("rotate(-90)"));
    EXPECT_THAT(turn(4), HasSubstr("rotate(-22.5)"));
    EXPECT_EQ(picture.Hatches(5), picture.Hatches(1));
}

TEST(LayupPicture, LayersWithoutAngleHaveNoHatch) {
    Picture const picture(Composite({Ply("", "STEEL", Constant(2), {})}));
    EXPECT_TRUE(picture.Hatches(0).empty());
    EXPECT_THAT(picture.Labels(), AllOf(Contains("Materials"), Not(Contains("Angles"))));
    EXPECT_THAT(picture.Labels(), AllOf(Not(Contains("Ply")), Not(Contains("Angle"))));
}

TEST(LayupPicture, MaterialsHaveColoursAndAreExplained) {
    Picture const picture(Composite(
        {Ply("A", "CARBON", Constant(1), Constant(0)), Ply("B", "FOAM", Constant(1), Constant(0)),
         Ply("C", "CARBON", Constant(1), Constant(0)), Ply("D", "", Constant(1), Constant(0))}));
    EXPECT_EQ(picture.Ground(0), picture.Ground(2));
    EXPECT_EQ((std::set{picture.Ground(0), picture.Ground(1), picture.Ground(3)}.size()), 3U);
    EXPECT_THAT(picture.Labels(), Contains("CARBON (2 layers)"));
    EXPECT_THAT(picture.Labels(), Contains("FOAM (1 layer)"));
}

TEST(LayupPicture, AnglesAreExplainedTheFlattestFirst) {
    Picture const picture(OfAngles({90, -45, 45, 0, 30}));
    std::vector<std::string> angles;
    for (std::string const& label : picture.Labels())
        if (label.find("\xc2\xb0 (1 layer)") != std::string::npos) angles.push_back(label);
    ASSERT_EQ(angles.size(), 5U);
    EXPECT_TRUE(angles[0].starts_with("0"));
    EXPECT_TRUE(angles[1].starts_with("30"));
    EXPECT_TRUE(angles[2].starts_with("45"));
    EXPECT_TRUE(angles[3].starts_with("-45"));
    EXPECT_TRUE(angles[4].starts_with("90"));
}

TEST(LayupPicture, LongLegendsEndWithTheNumberOfOthers) {
    Layup layup = Composite();
    for (int i = 0; i < 30; ++i)
        layup.layers.push_back(Ply("", "M" + std::to_string(i), Constant(1), Constant(i)));
    Picture const picture(layup);
    int explained = 0;
    for (std::string const& label : picture.Labels())
        if (label.starts_with("M") && label.ends_with(" (1 layer)")) ++explained;
    EXPECT_GT(explained, 5);
    EXPECT_THAT(picture.Labels(), Contains("and " + std::to_string(30 - explained) + " others"));
    for (int i = 0; i < 30; ++i) EXPECT_THAT(picture.Labels(), Contains("M" + std::to_string(i)));
}

TEST(LayupPicture, ThicknessByElementSlantsTheBand) {
    Picture const picture(Composite(
        {Ply("A", "M", Constant(2), Constant(0)), Ply("B", "M", Spread(1, 4), Constant(0))}));
    EXPECT_NEAR(picture.RightHeight(1), 4 * picture.LeftHeight(1), 0.6);
    EXPECT_NEAR(picture.RightHeight(0), picture.LeftHeight(0), 0.2);
    EXPECT_THAT(picture.Labels(), Contains("1 \xe2\x80\xa6 4"));
    EXPECT_THAT(picture.Text(), HasSubstr("Thicknesses differ between elements"));
}

TEST(LayupPicture, TheRangeOfTheWholeThicknessGoesBeforeItsBounds) {
    Layup layup = Composite(
        {Ply("A", "M", Spread(1, 2), Constant(0)), Ply("B", "M", Spread(1, 4), Constant(0))});
    EXPECT_THAT(Picture(layup).Labels(), Contains(HasSubstr("thickness within 2 \xe2\x80\xa6 6")));
    layup.thicknessRange = {3, 5.5};
    EXPECT_THAT(Picture(layup).Labels(), Contains(HasSubstr("thickness 3 \xe2\x80\xa6 5.5")));
}

TEST(LayupPicture, TheDirectionOfTheStackIsNamedWhereItIsGiven) {
    Layup layup = OfAngles({0});
    EXPECT_THAT(Picture(layup).Text(), Not(HasSubstr("stacked")));
    layup.stackDirection = 2;
    EXPECT_THAT(Picture(layup).Labels(), Contains(HasSubstr("stacked along direction 2")));
    layup.stackDirection = 4;
    EXPECT_THAT(Picture(layup).Labels(), Contains(HasSubstr("stacked along the orientation")));
}

TEST(LayupPicture, AngleByElementTurnsTheHatch) {
    Picture const picture(Composite({Ply("A", "M", Constant(2), Spread(-30, 60))}));
    auto const hatches = picture.Hatches(0);
    ASSERT_GE(hatches.size(), 3U);
    EXPECT_EQ(hatches.front(), "url(#widem30)");
    EXPECT_EQ(hatches.back(), "url(#wide60)");
    EXPECT_EQ(std::set<std::string>(hatches.begin(), hatches.end()).size(), hatches.size());
    EXPECT_THAT(picture.Labels(), Contains("-30 \xe2\x80\xa6 60\xc2\xb0"));
}

TEST(LayupPicture, TheNumbersOfOneElementAreDrawnAsTheyAre) {
    Layup layup = Composite({Ply("A", "M", OfElement(0.3), OfElement(12.5))});
    layup.element = Layup::Element{"Wing-1", 17, "S4R"};
    Picture const picture(layup);
    EXPECT_THAT(picture.Labels(), Contains(HasSubstr("element Wing-1.17 (S4R)")));
    EXPECT_THAT(picture.Labels(), Contains("0.3, by element"));
    EXPECT_THAT(picture.Labels(), Contains("12.5\xc2\xb0, by element"));
    EXPECT_THAT(picture.Labels(), Contains(HasSubstr("thickness 0.3")));
    EXPECT_NEAR(picture.RightHeight(0), picture.LeftHeight(0), 0.2);
    EXPECT_THAT(picture.Text(), Not(HasSubstr("differ between")));
}

TEST(LayupPicture, AnElementOfAModelWithoutInstancesHasItsLabelOnly) {
    Layup layup = OfAngles({0});
    layup.element = Layup::Element{"", 17, "S4R"};
    EXPECT_THAT(Picture(layup).Labels(), Contains(HasSubstr(" element 17 (S4R)")));
}

TEST(LayupPicture, NumbersThatNobodyKnowsAreSaidToBeByElement) {
    LayerNumber const unknown{LayerNumber::Variation::ByElement, {}, {}, {}};
    Picture const picture(Composite({Ply("A", "M", unknown, unknown)}));
    EXPECT_EQ(picture.Bands().size(), 1U);
    EXPECT_EQ(std::ranges::count(picture.Labels(), "by element"), 2);
    EXPECT_THAT(picture.Text(), HasSubstr("stroke-dasharray=\"5 3\""));
}

TEST(LayupPicture, TheReferenceSurfaceInTheMiddleIsOneLine) {
    Picture const picture(OfAngles({0, 90}));
    EXPECT_THAT(picture.Labels(), Contains("reference = middle"));
    EXPECT_THAT(picture.Labels(), AllOf(Contains("0.125"), Contains("-0.125"), Contains("0")));
}

TEST(LayupPicture, AnOffsetMovesTheZeroOfTheAxis) {
    Layup layup = OfAngles({0, 90});
    layup.offset = 0.5;
    Picture const top(layup);
    EXPECT_THAT(top.Labels(), AllOf(Contains("reference surface"), Contains("middle surface")));
    EXPECT_THAT(top.Labels(), AllOf(Contains("-0.25"), Contains("-0.125"), Not(Contains("0.25"))));
    EXPECT_NEAR(top.Label("reference surface").Number("y") - 4,
                Picture::Corners(*top.Bands()[1])[3].second, 0.5);
    layup.offset = -0.5;
    Picture const bottom(layup);
    EXPECT_THAT(bottom.Labels(), AllOf(Contains("0.25"), Not(Contains("-0.25"))));
    EXPECT_NEAR(bottom.Label("reference surface").Number("y") - 4,
                Picture::Corners(*bottom.Bands()[0])[0].second, 0.5);
}

TEST(LayupPicture, AReferenceSurfaceFarOutsideIsToldInANote) {
    Layup layup = OfAngles({0, 90});
    layup.offset = -3;
    Picture const picture(layup);
    EXPECT_THAT(picture.Labels(), Not(Contains("reference surface")));
    EXPECT_THAT(picture.Text(), HasSubstr("3 thicknesses below the middle surface"));
    EXPECT_THAT(picture.Labels(), AllOf(Contains("0.625"), Contains("0.875")));
}

TEST(LayupPicture, SolidsHaveRelativeThicknessesAndNoReferenceSurface) {
    Layup layup = Composite(
        {Ply("A", "M", Constant(1), Constant(0)), Ply("B", "M", Constant(3), Constant(0))});
    layup.kind = Layup::Kind::Solid;
    Picture const picture(layup);
    EXPECT_THAT(picture.Labels(), Contains("Rel. thickness"));
    EXPECT_THAT(picture.Labels(), AllOf(Contains("0"), Contains("0.25"), Contains("1")));
    EXPECT_THAT(picture.Text(), AllOf(Not(HasSubstr("reference")), Not(HasSubstr("surface")),
                                      Not(HasSubstr("Simpson"))));
}

TEST(LayupPicture, SymmetricStacksAreCalledSo) {
    EXPECT_THAT(Picture(OfAngles({0, 45, 45, 0})).Labels(),
                Contains(HasSubstr("symmetric \xc2\xb7 [0/45]s")));
    EXPECT_THAT(Picture(OfAngles({0, 90, 0})).Labels(),
                Contains(HasSubstr("symmetric \xc2\xb7 [0/90/0]")));
    EXPECT_THAT(Picture(OfAngles({0, 45, -45, 0})).Text(),
                AllOf(HasSubstr("[0/45/-45/0]"), Not(HasSubstr("symmetric"))));
    Layup mixed = OfAngles({0, 90, 0});
    mixed.layers[1].material = "FOAM";
    EXPECT_THAT(Picture(mixed).Text(), AllOf(HasSubstr("symmetric"), Not(HasSubstr("[0/90"))));
}

TEST(LayupPicture, EqualRangesDoNotMakeAStackSymmetric) {
    Layup const layup = Composite(
        {Ply("A", "M", Spread(1, 2), Constant(0)), Ply("B", "M", Spread(1, 2), Constant(0))});
    EXPECT_THAT(Picture(layup).Text(), Not(HasSubstr("symmetric")));
}

TEST(LayupPicture, TheTitleIsTheNameOfTheLayup) {
    Layup layup = OfAngles({0});
    EXPECT_THAT(Picture(layup).Labels(), Contains("SKIN"));
    layup.name = "Wing skin";
    layup.assignments = 2;
    Picture const named(layup);
    EXPECT_THAT(named.Labels(), Contains("Wing skin"));
    EXPECT_THAT(named.Labels(),
                Contains(AllOf(HasSubstr("section SKIN"), HasSubstr("12 elements in 2 assign"))));
}

TEST(LayupPicture, ALayersOwnOrientationIsNamed) {
    Layup layup = OfAngles({0, 45});
    EXPECT_THAT(Picture(layup).Labels(), Not(Contains("Orientation")));
    layup.layers[1].angle = {};
    layup.layers[1].orientation = "TURNED";
    EXPECT_THAT(Picture(layup).Labels(), AllOf(Contains("Orientation"), Contains("TURNED")));
}

TEST(LayupPicture, NamesComeThroughEscaped) {
    std::string const odd = "<script>&\"' ]]>";
    Layup layup = Composite({Ply(odd, odd + "m", Constant(1), Constant(0))});
    layup.section = odd;
    layup.orientation = odd;
    Picture const picture(layup);
    EXPECT_EQ(std::ranges::count(picture.Labels(), odd), 2);
    EXPECT_THAT(picture.Labels(), Contains(odd + "m"));
    EXPECT_THAT(picture.Labels(), Contains(HasSubstr("orientation " + odd)));
}

TEST(LayupPicture, WhatIsNoTextBecomesQuestionMarks) {
    Layup layup = OfAngles({0});
    layup.layers[0].ply = "a\x01\n\xff\xc3z";
    layup.section = "\xef\xbf\xbe\xed\xa0\x80";
    EXPECT_THAT(Picture(layup).Labels(), AllOf(Contains("a????z"), Contains("????")));
}

TEST(LayupPicture, LongNamesAreShortenedAndStandWholeInTooltips) {
    std::string name;
    for (int i = 0; i < 300; ++i) name += "LONG_NAME_";
    Layup layup = Composite({Ply(name + "P1", name + "M1", Constant(1), Constant(0))});
    layup.section = name + "S";
    layup.name = name + "L";
    layup.orientation = name + "O";
    layup.layers[0].orientation = name + "Q";
    Picture const picture(layup);
    EXPECT_LT(picture.Root().Number("width"), 2000);
    for (std::string const& label : picture.Labels()) EXPECT_LT(label.size(), 250U) << label;
    for (char const* const end : {"P1", "M1", "S", "L", "O", "Q"})
        EXPECT_THAT(picture.Tooltips(), Contains(HasSubstr(name + end))) << end;
}

TEST(LayupPicture, TooltipsHaveTheDigitsThatLabelsLeaveOut) {
    Picture const picture(
        Composite({Ply("A", "M", Constant(0.123456789012), Constant(45.00000012))}));
    EXPECT_THAT(picture.Labels(), AllOf(Contains("0.123457"), Contains("45\xc2\xb0")));
    EXPECT_THAT(picture.Tooltips(), Contains("layer 1, ply A, material M, thickness "
                                             "0.123456789012, angle 45.00000012\xc2\xb0, 3 "
                                             "section points"));
}

TEST(LayupPicture, AnEmptyLayupSaysSo) {
    Picture const picture(Composite());
    EXPECT_TRUE(picture.Bands().empty());
    EXPECT_THAT(picture.Labels(), AllOf(Contains("SKIN"), Contains("no layers")));
    EXPECT_GT(picture.Root().Number("height"), 50);
    EXPECT_EQ(Picture(Layup{}).Tags("svg").size(), 1U);
}

TEST(LayupPicture, NeedsNothingFromOutsideAndRunsNothing) {
    Picture const picture(OfAngles({0, 45, -45, 90}));
    std::set<std::string> ids;
    for (XmlElement const* element : picture.Root().All()) {
        EXPECT_THAT((std::set<std::string>{"svg", "title", "rect", "defs", "pattern", "g",
                                           "polygon", "line", "path", "circle", "text"}),
                    Contains(element->tag));
        for (auto const& [name, value] : element->attributes) {
            EXPECT_FALSE(name.starts_with("on") || name == "href" || name == "style") << name;
            EXPECT_TRUE(name != "id" || ids.insert(value).second) << value;
            EXPECT_TRUE(name == "xmlns" || value.find("://") == std::string::npos) << value;
        }
    }
    for (std::size_t band = 0; band < 4; ++band) {
        for (std::string const& fill : picture.Hatches(band))
            EXPECT_EQ(ids.count(fill.substr(5, fill.size() - 6)), 1U) << fill;
    }
}

TEST(LayupPicture, TheSameLayupGivesTheSameText) {
    Layup const layup = OfAngles({0, 45, -45, 90, 12});
    EXPECT_EQ(LayupPicture(layup), LayupPicture(layup));
}

}  // namespace
}  // namespace kov::tool
