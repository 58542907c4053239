#include "LayupPicture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>

#include "LayupSamples.h"
#include "SmallXml.h"

namespace kov::tool {
namespace {

using test::Composite;
using test::Constant;
using test::OfAngles;
using test::OfElement;
using test::Ply;
using test::SmallXml;
using test::Spread;
using test::XmlElement;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// What a reader of a picture sees, found by its elements.
class Picture {
  public:
    explicit Picture(Layup const& layup)
        : m_text(LayupPicture(layup)), m_root(SmallXml::Parse(m_text)), m_all(m_root.All()) {
        for (XmlElement const* element : m_all) {
            auto const at = element->attributes.find("class");
            if (at != element->attributes.end()) m_groups[at->second].push_back(element);
        }
    }
    Picture(Picture const&) = delete;

    XmlElement const& Root() const { return m_root; }
    std::string const& Text() const { return m_text; }

    std::vector<XmlElement const*> Tags(std::string_view tag) const {
        std::vector<XmlElement const*> found;
        for (XmlElement const* element : m_all)
            if (element->tag == tag) found.push_back(element);
        return found;
    }
    std::vector<std::string> Labels() const { return Texts("text"); }
    std::vector<std::string> Tooltips() const { return Texts("title"); }

    XmlElement const& Label(std::string const& text) const {
        for (XmlElement const* element : Tags("text"))
            if (element->text == text) return *element;
        throw std::runtime_error("no label " + text);
    }

    std::vector<XmlElement const*> const& Bands() const { return Groups("layer"); }
    /// Of the text beside the bands.
    std::vector<XmlElement const*> const& Lines() const { return Groups("line"); }

    /// Corners of a band: lower left, lower right, upper right, upper left; y downward.
    static std::vector<std::pair<double, double>> Corners(XmlElement const& band) {
        std::vector<std::pair<double, double>> corners;
        double shiftX = 0;
        double shiftY = 0;
        std::string const& transform = band.attributes.at("transform");
        EXPECT_EQ(std::sscanf(transform.c_str(), "translate(%lf %lf)", &shiftX, &shiftY), 2);
        std::istringstream points(band.children.at(1).attributes.at("points"));
        double x = 0;
        double y = 0;
        while (points >> x >> y) corners.emplace_back(x + shiftX, y + shiftY);
        EXPECT_EQ(corners.size(), 4U);
        return corners;
    }
    double LeftHeight(std::size_t band) const {
        auto const corners = Corners(*Bands().at(band));
        return corners[0].second - corners[3].second;
    }
    double RightHeight(std::size_t band) const {
        auto const corners = Corners(*Bands().at(band));
        return corners[1].second - corners[2].second;
    }
    /// The hatches of a band from left to right.
    std::vector<std::string> Hatches(std::size_t band) const {
        std::vector<std::string> hatches;
        for (XmlElement const& part : Bands().at(band)->children) {
            auto const fill = part.attributes.find("fill");
            if (fill != part.attributes.end() && fill->second.starts_with("url("))
                hatches.push_back(fill->second);
        }
        return hatches;
    }
    std::string Ground(std::size_t band) const {
        return Bands().at(band)->children.at(1).attributes.at("fill");
    }

  private:
    std::vector<std::string> Texts(std::string_view tag) const {
        std::vector<std::string> texts;
        for (XmlElement const* element : Tags(tag)) texts.push_back(element->text);
        return texts;
    }

    std::vector<XmlElement const*> const& Groups(std::string const& name) const {
        static std::vector<XmlElement const*> const none;
        auto const at = m_groups.find(name);
        return at == m_groups.end() ? none : at->second;
    }

    std::string m_text;
    XmlElement m_root;
    std::vector<XmlElement const*> m_all;
    std::map<std::string, std::vector<XmlElement const*>> m_groups;
};

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

/// All that is drawn is made of finite numbers, and labels begin and end on the page.
void ExpectSound(Layup const& layup) {
    Picture const picture(layup);
    EXPECT_EQ(picture.Bands().size(), layup.layers.size());
    std::string lower = picture.Text();
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    EXPECT_EQ(lower.find("nan"), std::string::npos);
    EXPECT_EQ(lower.find("inf"), std::string::npos);
    double const width = picture.Root().Number("width");
    double const height = picture.Root().Number("height");
    EXPECT_LT(width, 2500);
    for (XmlElement const* label : picture.Tags("text")) {
        if (label->Number("x") == 42) continue;  // within a line of the legend
        EXPECT_GE(label->Number("x"), 0) << label->text;
        EXPECT_LE(label->Number("x"), width) << label->text;
        EXPECT_GE(label->Number("y"), 0) << label->text;
        EXPECT_LE(label->Number("y"), height) << label->text;
    }
    for (std::size_t i = 0; i < layup.layers.size(); ++i) {
        EXPECT_GE(picture.RightHeight(i), 3.8) << i;
        EXPECT_GE(picture.LeftHeight(i), 0.8) << i;
    }
    auto const& lines = picture.Lines();
    for (std::size_t i = 1; i < lines.size(); ++i) {
        double const below = lines[i - 1]->children.at(1).Number("y");
        EXPECT_GE(below - lines[i]->children.at(1).Number("y"), 14.9) << i;
    }
}

TEST(LayupPicture, TwoHundredLayersStayReadable) {
    std::vector<double> angles;
    for (int i = 0; i < 200; ++i) angles.push_back(15 * (i % 12));
    Layup const layup = OfAngles(angles);
    ExpectSound(layup);
    Picture const picture(layup);
    EXPECT_THAT(picture.Labels(), AllOf(Contains("P1"), Contains("P117"), Contains("P200")));
}

TEST(LayupPicture, ExtremeNumbersAreDrawnAllTheSame) {
    for (double const odd : {kNan, kInfinity, -kInfinity, -1.0, 0.0, 5e-324, 1.7e308, -1.7e308}) {
        SCOPED_TRACE(odd);
        Layup layup = OfAngles({0, 45, odd, odd});
        layup.layers[1].thickness = Constant(odd);
        layup.layers[2].thickness = Spread(-odd, odd);
        layup.layers[3].thickness = Constant(odd);
        layup.layers[2].angle = Spread(-1e300, odd);
        for (double const offset : {0.0, odd, 0.5, 0.75}) {
            layup.offset = offset;
            ExpectSound(layup);
        }
        layup.layers.resize(1);
        layup.layers[0].thickness = Constant(odd);
        ExpectSound(layup);
        layup.kind = Layup::Kind::Solid;
        ExpectSound(layup);
    }
}

TEST(LayupPicture, AnyLayupIsDrawnSoundly) {
    std::mt19937 random(5);
    for (int run = 0; run < 150; ++run) {
        SCOPED_TRACE("run " + std::to_string(run) + " of seed 5");
        Layup layup = Composite();
        if (run % 4 == 0) layup.kind = Layup::Kind::Solid;
        layup.offset = std::uniform_real_distribution(-1.2, 1.2)(random);
        auto const number = [&](double least, double greatest) {
            std::uniform_real_distribution<double> any(least, greatest);
            double const a = any(random);
            double const b = any(random);
            switch (random() % 6) {
                case 0:
                    return LayerNumber{};
                case 1:
                    return Spread(std::min(a, b), std::max(a, b));
                case 2:
                    return OfElement(a);
                default:
                    return Constant(a);
            }
        };
        for (std::size_t n = random() % 60; n > 0; --n) {
            auto const material = "M" + std::to_string(random() % 9);
            double const scale = std::pow(10, std::uniform_real_distribution(-9.0, 9.0)(random));
            layup.layers.push_back(
                Ply("P", material, number(0, run % 3 == 0 ? 1 : scale), number(-200, 200)));
        }
        ExpectSound(layup);
    }
}

}  // namespace
}  // namespace kov::tool
