#include "Svg.h"

#include <gtest/gtest.h>

#include <limits>

#include "PictureText.h"
#include "SmallXml.h"

namespace kov::tool {
namespace {

using test::SmallXml;

TEST(Svg, IsOneElementWithItsSize) {
    auto const root = SmallXml::Parse(Svg(320, 200.5).Take());
    EXPECT_EQ(root.tag, "svg");
    EXPECT_EQ(root.attributes.at("xmlns"), "http://www.w3.org/2000/svg");
    EXPECT_EQ(root.attributes.at("viewBox"), "0 0 320 200.5");
    EXPECT_EQ(root.attributes.at("width"), "320");
}

TEST(Svg, TakeEndsWhatIsOpen) {
    Svg svg(10, 10);
    svg.Begin("g").Begin("g").Set("class", "inner");
    auto const root = SmallXml::Parse(svg.Take());
    EXPECT_EQ(root.children.at(1).children.at(0).attributes.at("class"), "inner");
}

TEST(Svg, EscapesTextsAndAttributes) {
    Svg svg(10, 10);
    svg.Begin("g").Set("class", "<a b=\"c\">&'").Label(1, 2, "]]> <!-- &amp;");
    auto const root = SmallXml::Parse(svg.Take());
    EXPECT_EQ(root.children.at(1).attributes.at("class"), "<a b=\"c\">&'");
    EXPECT_EQ(root.children.at(1).children.at(0).text, "]]> <!-- &amp;");
}

TEST(Svg, WhatXmlCannotHoldBecomesAQuestionMark) {
    Svg svg(10, 10);
    svg.Label(0, 0, std::string_view("a\0b\x1f\xff\xc3z\xed\xa0\x80\xef\xbf\xbf", 13));
    EXPECT_EQ(SmallXml::Parse(svg.Take()).children.at(1).text, "a?b???z????");
}

TEST(Svg, TextHasNoBlanksOfTheWriter) {
    Svg svg(10, 10);
    svg.Label(0, 0, "shown", {}, "whole");
    std::string const text = svg.Take();
    EXPECT_NE(text.find("><title>whole</title>shown</text>"), std::string::npos) << text;
}

TEST(Svg, NumbersHaveTwoDecimalsAtMost) {
    Svg svg(10, 10);
    svg.Line(1, 1.5, 2.004, -0.001, "#000000", 1e300);
    svg.Line(std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(),
             123456789.125, -7, "#000000", 1);
    auto const root = SmallXml::Parse(svg.Take());
    auto const& first = root.children.at(1).attributes;
    EXPECT_EQ(first.at("x1"), "1");
    EXPECT_EQ(first.at("y1"), "1.5");
    EXPECT_EQ(first.at("x2"), "2");
    EXPECT_EQ(first.at("y2"), "0");
    EXPECT_EQ(first.at("stroke-width"), "0");
    auto const& second = root.children.at(2).attributes;
    EXPECT_EQ(second.at("x1"), "0");
    EXPECT_EQ(second.at("y1"), "0");
    EXPECT_EQ(second.at("y2"), "-7");
}

TEST(Svg, ALabelThatFitsHasNoTooltip) {
    Svg svg(10, 10);
    svg.LabelWithin(0, 0, 100, "short");
    svg.LabelWithin(0, 0, 100, "a name that is far too long for so little room");
    auto const root = SmallXml::Parse(svg.Take());
    EXPECT_TRUE(root.children.at(1).children.empty());
    EXPECT_EQ(root.children.at(2).children.at(0).text,
              "a name that is far too long for so little room");
    EXPECT_LE(TextWidth(root.children.at(2).text, 12), 100);
}

TEST(PictureText, ShortenedKeepsStartAndEnd) {
    std::string const name = "SKIN_OF_THE_LEFT_WING_OUTBOARD_PLY_00017";
    std::string const shown = Shortened(name, 120, 12);
    EXPECT_LE(TextWidth(shown, 12), 120);
    EXPECT_TRUE(shown.starts_with("SKIN_OF"));
    EXPECT_TRUE(shown.ends_with("0017"));
    EXPECT_EQ(Shortened(name, 1000, 12), name);
    EXPECT_EQ(Shortened(name, 0, 12), "\xe2\x80\xa6");
    EXPECT_EQ(Shortened("", 0, 12), "");
}

TEST(PictureText, ShortenedCutsBetweenCharacters) {
    std::string name;
    for (int i = 0; i < 40; ++i) name += "\xe6\x97\xa5\xc3\xa4x\xf0\x9f\x98\x80";
    for (double room = 0; room < 300; room += 7) {
        std::string const shown = Shortened(name, room, 12);
        for (std::string_view rest = shown; !rest.empty();) {
            std::size_t const length = Utf8SequenceLength(rest);
            ASSERT_GT(length, 0U) << room;
            rest.remove_prefix(length);
        }
    }
}

TEST(PictureText, NumbersAreShortOrWhole) {
    EXPECT_EQ(ShortNumber(0.1234567891), "0.123457");
    EXPECT_EQ(FullNumber(0.1234567891), "0.1234567891");
    EXPECT_EQ(ShortNumber(-0.0), "0");
    EXPECT_EQ(FullNumber(-0.0), "0");
    EXPECT_EQ(ShortNumber(12345678), "1.23457e+07");
    EXPECT_EQ(ShortNumber(std::numeric_limits<double>::infinity()), "?");
    EXPECT_EQ(FullNumber(std::numeric_limits<double>::quiet_NaN()), "?");
}

}  // namespace
}  // namespace kov::tool
