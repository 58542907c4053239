#include "Json.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "Names.h"
#include "VtuWriter.h"

namespace kov::tool {
namespace {

TEST(Json, WritesNestedValues) {
    Json json;
    json.BeginObject().Member("a", 1).Member("b", "x");
    json.Key("c").BeginArray().Value(true).Null().Value(2.5).EndArray();
    json.Key("d").BeginObject().EndObject().EndObject();
    EXPECT_EQ(json.Text(),
              "{\n  \"a\": 1,\n  \"b\": \"x\",\n  \"c\": [\n    true,\n    null,\n    2.5\n  ],\n  "
              "\"d\": {}\n}\n");
}

TEST(Json, WritesOneLine) {
    Json json(Json::Form::OneLine);
    json.BeginObject()
        .Member("a", 1)
        .Key("b")
        .BeginArray()
        .Value(1)
        .Value(2)
        .EndArray()
        .EndObject();
    EXPECT_EQ(json.Text(), "{\"a\": 1, \"b\": [1, 2]}\n");
}

TEST(Json, KeepsABracketOnOneLine) {
    Json json;
    json.BeginObject().Key("a").OneLine().BeginArray().Value(1).BeginArray().Value(2).EndArray();
    json.EndArray().Member("b", 3).EndObject();
    EXPECT_EQ(json.Text(), "{\n  \"a\": [1, [2]],\n  \"b\": 3\n}\n");
}

TEST(Json, GivesItselfAwayInPieces) {
    Json json;
    json.BeginArray().Value(1);
    std::string text = json.Take();
    json.Value(2);
    text += json.Take();
    EXPECT_EQ(json.Take(), "");
    text += json.EndArray().Text();
    EXPECT_EQ(text, "[\n  1,\n  2\n]\n");
}

TEST(Json, EscapesText) {
    Json json;
    json.Value(std::string_view("q\" b\\ n\n t\t z\0 \x7f \xc3\xa4", 19));
    EXPECT_EQ(json.Text(), "\"q\\\" b\\\\ n\\n t\\u0009 z\\u0000 \\u007f \xc3\xa4\"\n");
}

TEST(Json, ReplacesBytesThatAreNoText) {
    for (std::string const wrong :
         {"\xff", "\xc0\xaf", "\xe0\x80\x80", "\xed\xa0\x80", "\xf5\x80\x80\x80", "\xc3"}) {
        Json json;
        json.Value(wrong);
        std::string expected = "\"";
        for (std::size_t i = 0; i < wrong.size(); ++i) expected += "\xef\xbf\xbd";
        EXPECT_EQ(json.Text(), expected + "\"\n");
    }
}

TEST(Json, NumbersThatItDoesNotHaveAreNull) {
    Json json(Json::Form::OneLine);
    json.BeginArray().Value(std::numeric_limits<double>::infinity());
    json.Value(std::numeric_limits<double>::quiet_NaN()).Value(0.1).EndArray();
    EXPECT_EQ(json.Text(), "[null, null, 0.1]\n");
}

TEST(XmlText, EscapesMarkupAndReplacesWhatIsNoText) {
    EXPECT_EQ(XmlText("a<b>&\"c\""), "a&lt;b&gt;&amp;&quot;c&quot;");
    EXPECT_EQ(XmlText("t\t\xff\x01\xc3\xa4"), "t???\xc3\xa4");
    EXPECT_EQ(XmlText("a\xef\xbf\xbe\xef\xbf\xbf\xef\xbf\xbd"), "a??\xef\xbf\xbd");
}

TEST(Names, AreUnquotedInPairsOnly) {
    std::string name = "\"My Part\".Top";
    EXPECT_TRUE(Unquote(name));
    EXPECT_EQ(name, "My Part.Top");
    name = "\"open";
    EXPECT_FALSE(Unquote(name));
}

TEST(Names, AreQuotedWhereTheyAreNotPlain) {
    EXPECT_EQ(NameText("Part-1_a\xc3\xa4"), "Part-1_a\xc3\xa4");
    EXPECT_EQ(NameText(""), "\"\"");
    EXPECT_EQ(NameText("My Part"), "\"My Part\"");
    EXPECT_EQ(NameText("a.b"), "\"a.b\"");
    EXPECT_EQ(NameText("a\x1b[31m\n"), "\"a[31m\"");
}

TEST(Names, AreShownShortAndWithoutControlCharacters) {
    EXPECT_EQ(Shown("a\tb\nc"), "abc");
    EXPECT_EQ(Shown(std::string(100, 'x')), std::string(60, 'x') + "...");
}

}  // namespace
}  // namespace kov::tool
