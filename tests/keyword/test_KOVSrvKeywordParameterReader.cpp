#include "KOVSrvKeywordParameterReader.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

namespace {

using Parameters = KOVSrvKeywordParameterReader::Parameters;

Parameters Given(std::initializer_list<char const*> texts) {
    Parameters parameters;
    for (char const* text : texts) {
        parameters.SetSize(parameters.Size() + 1);
        parameters.Get(parameters.Size() - 1) = text;
    }
    return parameters;
}

KOVString Key(char const* parameter, std::initializer_list<char const*> keys) {
    std::vector<char const*> list(keys);
    list.push_back(nullptr);
    Parameters const parameters = Given({parameter});
    return KOVSrvKeywordParameterReader(parameters, list.data()).CurrentKey();
}

char const* s_noKeys[] = {nullptr};

}  // namespace

TEST(KOVSrvKeywordParameterReader, AnAbbreviationOfOneNameGivesTheName) {
    EXPECT_EQ(Key("Typ=Beam", {"type", "name"}), "type");
    EXPECT_EQ(Key("NAME", {"type", "name"}), "name");
}

TEST(KOVSrvKeywordParameterReader, AnAbbreviationOfSeveralNamesIsEmpty) {
    EXPECT_TRUE(Key("n", {"name", "nset"}).IsEmpty());
}

TEST(KOVSrvKeywordParameterReader, AnExactMatchWinsWhereverItStands) {
    EXPECT_EQ(Key("n", {"n", "name"}), "n");
    EXPECT_EQ(Key("n=1", {"name", "nset", "n"}), "n");
}

TEST(KOVSrvKeywordParameterReader, APartInsideANameIsNoAbbreviation) {
    EXPECT_TRUE(Key("ame", {"name"}).IsEmpty());
    EXPECT_TRUE(Key("names", {"name"}).IsEmpty());
}

TEST(KOVSrvKeywordParameterReader, ANameWithACapitalIsHitByNothing) {
    EXPECT_TRUE(Key("name", {"Name"}).IsEmpty());
    EXPECT_TRUE(Key("Name", {"Name"}).IsEmpty());
}

TEST(KOVSrvKeywordParameterReader, AnEmptyListGivesNothing) {
    EXPECT_TRUE(Key("name", {}).IsEmpty());
}

TEST(KOVSrvKeywordParameterReader, AnEmptyKeyAbbreviatesNothing) {
    EXPECT_TRUE(Key("=x", {"name"}).IsEmpty());
    EXPECT_TRUE(Key("", {"name"}).IsEmpty());
}

TEST(KOVSrvKeywordParameterReader, SplitsAtTheFirstEquals) {
    Parameters const parameters = Given({"a=b=c"});
    char const* keys[] = {"a", nullptr};
    KOVSrvKeywordParameterReader const reader(parameters, keys);
    EXPECT_EQ(reader.CurrentKey(), "a");
    EXPECT_EQ(reader.CurrentValueAsString(), "b=c");
}

TEST(KOVSrvKeywordParameterReader, AValueKeepsItsCaseAndQuotes) {
    Parameters const parameters = Given({"typ=Beam", "n=\"A, b\""});
    KOVSrvKeywordParameterReader reader(parameters, s_noKeys);
    EXPECT_EQ(reader.CurrentValueAsString(), "Beam");
    reader.Next();
    EXPECT_EQ(reader.CurrentValueAsString(), "\"A, b\"");
}

TEST(KOVSrvKeywordParameterReader, ValuesBeyondAsciiAreKept) {
    Parameters const parameters =
        Given({"\xC3\xA9=\xE2\x82\xAC"
               "b"});
    KOVSrvKeywordParameterReader const reader(parameters, s_noKeys);
    EXPECT_EQ(reader.CurrentValueAsString(),
              "\xE2\x82\xAC"
              "b");
}

TEST(KOVSrvKeywordParameterReader, WithoutEqualsTheValueIsEmptyAndZero) {
    Parameters const parameters = Given({"generate"});
    KOVSrvKeywordParameterReader const reader(parameters, s_noKeys);
    EXPECT_TRUE(reader.CurrentValueAsString().IsEmpty());
    EXPECT_EQ(reader.CurrentValueAsDouble(), 0.0);
    EXPECT_EQ(reader.CurrentValueAsInt(), 0);
}

TEST(KOVSrvKeywordParameterReader, NumbersIgnoreWhatStandsBehindThem) {
    Parameters const parameters = Given({"a=1.5e2x", "b=x", "c=4294967299", "d="});
    KOVSrvKeywordParameterReader reader(parameters, s_noKeys);
    EXPECT_EQ(reader.CurrentValueAsDouble(), 150.0);
    EXPECT_EQ(reader.CurrentValueAsInt(), 1);
    reader.Next();
    EXPECT_EQ(reader.CurrentValueAsDouble(), 0.0);
    EXPECT_EQ(reader.CurrentValueAsInt(), 0);
    reader.Next();
    EXPECT_EQ(reader.CurrentValueAsInt(), 3);
    reader.Next();
    EXPECT_EQ(reader.CurrentValueAsDouble(), 0.0);
    EXPECT_TRUE(reader.CurrentValueAsString().IsEmpty());
}

TEST(KOVSrvKeywordParameterReader, StepsToTheEndAndStaysThere) {
    Parameters const parameters = Given({"a", "b"});
    KOVSrvKeywordParameterReader reader(parameters, s_noKeys);
    EXPECT_FALSE(reader.IsDone());
    reader.Next();
    reader.Next();
    EXPECT_TRUE(reader.IsDone());
    reader.Next();
    EXPECT_TRUE(reader.IsDone());
    EXPECT_THROW(reader.CurrentValueAsString(), KOVSimException);
    reader.First();
    EXPECT_FALSE(reader.IsDone());
}

TEST(KOVSrvKeywordParameterReader, WithoutParametersItIsDoneAtOnce) {
    Parameters const parameters;
    EXPECT_TRUE(KOVSrvKeywordParameterReader(parameters, s_noKeys).IsDone());
}
