// Initial conditions of decks, as they stand in documents, and the errors that they end with.

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "ConditionContent.h"
#include "ConditionKinds.h"
#include "KOVSrvFieldServices.h"
#include "SectionDeck.h"
#include "SubModel.h"

namespace kov::test {
namespace {

// What a condition gives, by ordinal.
using Values = std::map<int, Reals>;

struct Found {
    std::string name;  ///< as the document has it
    std::string set;
    bool uniform;
    Values values;
    friend bool operator==(Found const&, Found const&) = default;
};
void PrintTo(Found const& found, std::ostream* out) {
    *out << found.name << " of " << found.set << (found.uniform ? " uniform " : " ")
         << ::testing::PrintToString(found.values);
}

std::vector<Found> FindAll(KOVObjDocument const& document) {
    std::vector<Found> all;
    for (tool::ConditionContent const& condition : tool::InitialConditions(document)) {
        Found found{tool::ConditionName(*condition.kind, condition.number),
                    condition.set,
                    condition.uniform,
                    {}};
        if (condition.uniform) {
            for (int const member : MembersOf(condition.region.Pos())) {
                found.values[member] = condition.values;
            }
        } else {
            tool::ForConditionRows(condition, [&](KOVSimCSet const& block, Reals const& values) {
                for (int i = 0; i < block.Size(); ++i) {
                    auto const at = values.begin() + std::ptrdiff_t{i} * condition.columns;
                    found.values[block[i]] = Reals(at, at + condition.columns);
                }
            });
        }
        all.push_back(found);
    }
    return all;
}

class Conditions : public SectionDecks {
  protected:
    std::vector<Found> Stored() const { return FindAll(Document()); }
    std::vector<KOVSimPosition> Entries() const {
        std::vector<KOVSimPosition> entries;
        KOVSimSet const set = Model().GetSet(schema::Model_fieldEntries());
        for (auto at = set.Begin(); at.NotDone(); ++at) entries.push_back(*at);
        return entries;
    }
};
KOV_DOCUMENT_TESTS(Conditions);

std::string Initial(std::string const& type) { return "*INITIAL CONDITIONS, TYPE=" + type + "\n"; }

TEST_P(Conditions, ASetHasAUniformField) {
    Translate(kStrip + "*NSET, NSET=Some\n2, 4\n" + Initial("TEMPERATURE") + "some, 2D1\n");
    EXPECT_EQ(Stored(),
              (std::vector<Found>{{"INITIAL TEMPERATURE", "Some", true, {{1, {20}}, {3, {20}}}}}));
    KOVSimPosition const entry = Entries().at(0);
    EXPECT_TRUE(entry.IsA(schema::FieldEntry()));
    EXPECT_EQ(TextField(entry, 0), "INITIAL TEMPERATURE");
    EXPECT_EQ(IntField(entry, 1), 1);
    KOVSimPosition const set = Model().GetMap(schema::Model_nodeSets()).Find(KOVString("Some"));
    EXPECT_EQ(entry.GetPosition(schema::FieldEntry_owner()).ID(), set.ID());
    KOVSimPosition const field = KOVSrvFieldServices::GetFieldPosition(
        Model().GetSet(schema::Model_fieldEntries()), set, -1, KOVString("INITIAL TEMPERATURE"));
    EXPECT_TRUE(field.IsA(schema::Field_UniformScalar()));
    double value = 0;
    EXPECT_TRUE(KOVSrvFieldServices::GetUniformFieldValue(field, &value, 1));
    EXPECT_EQ(value, 20);
    EXPECT_EQ(summary.initialConditions, 1U);
    EXPECT_TRUE(summary.notes.empty());
    EXPECT_TRUE(summary.unknownKeywords.empty());
}

TEST_P(Conditions, SeveralValuesOfASetAreUniformToo) {
    Translate(kStrip + Initial("STRESS") + "LEFT, 1, 2, 3, -4, 5, 6\n");
    EXPECT_EQ(Stored(),
              (std::vector<Found>{{"INITIAL STRESS",
                                   "LEFT",
                                   true,
                                   {{0, {1, 2, 3, -4, 5, 6}}, {1, {1, 2, 3, -4, 5, 6}}}}}));
    KOVSimPosition const field = Entries().at(0).GetPosition(schema::FieldEntry_field());
    EXPECT_TRUE(field.IsA(schema::Field_UniformValues()));
    EXPECT_EQ(IntField(Entries().at(0), 1), 6);
}

TEST_P(Conditions, LabelsHaveATableField) {
    Translate(kStrip + Initial("TEMPERATURE") + "3, 30\n1, 10\n12, 1.5\n");
    EXPECT_EQ(Stored(),
              (std::vector<Found>{
                  {"INITIAL TEMPERATURE", "", false, {{0, {10}}, {2, {30}}, {11, {1.5}}}}}));
    KOVSimPosition const entry = Entries().at(0);
    EXPECT_TRUE(entry.GetPosition(schema::FieldEntry_field()).IsA(schema::Field_FTable()));
    EXPECT_EQ(MembersOf(entry.GetPosition(schema::FieldEntry_owner())), (Ints{0, 2, 11}));
}

TEST_P(Conditions, SetsAndLabelsOfOneKeywordStandApart) {
    Translate(kStrip + "*NSET, NSET=S\n5, 6\n" + Initial("HARDENING") + "11, 1, 2\nRIGHT, 3\n" +
              "12, 4, 5\n" + Initial("FIELD, VARIABLE=2") + "S, 7\n1, 8\n");
    EXPECT_EQ(Stored(),
              (std::vector<Found>{{"INITIAL HARDENING", "", false, {{0, {1, 2}}, {1, {4, 5}}}},
                                  {"INITIAL HARDENING", "RIGHT", true, {{2, {3}}, {3, {3}}}},
                                  {"INITIAL FIELD 2", "S", true, {{4, {7}}, {5, {7}}}},
                                  {"INITIAL FIELD 2", "", false, {{0, {8}}}}}));
}

TEST_P(Conditions, VelocitiesGoByDegreeOfFreedom) {
    Translate(kStrip + "*NSET, NSET=S\n5, 6\n" + Initial("VELOCITY") +
              "1, 1, 10\n1, 3, 30\nS, 1, -2\n2, 1, 20\n");
    EXPECT_EQ(Stored(),
              (std::vector<Found>{{"INITIAL VELOCITY 1", "", false, {{0, {10}}, {1, {20}}}},
                                  {"INITIAL VELOCITY 3", "", false, {{0, {30}}}},
                                  {"INITIAL VELOCITY 1", "S", true, {{4, {-2}}, {5, {-2}}}}}));
}

TEST_P(Conditions, FieldsWithoutAVariableAreThoseOfTheFirst) {
    Translate(kStrip + Initial("FIELD") + "1, 5\n");
    EXPECT_EQ(Stored().at(0).name, "INITIAL FIELD 1");
}

TEST_P(Conditions, WhatIsDefinedFurtherOnIsKnown) {
    Translate(Initial("TEMPERATURE") + "LATER, 5\n7, 6\nEMPTY, 3\n8, 9\n" + kStrip +
              "*NSET, NSET=LATER\n2\n*NSET, NSET=EMPTY\n*NSET, NSET=LATER\n3\n");
    std::vector<Found> const stored = Stored();
    ASSERT_EQ(stored.size(), 3U);
    EXPECT_EQ(stored[0], (Found{"INITIAL TEMPERATURE", "LATER", true, {{1, {5}}, {2, {5}}}}));
    EXPECT_EQ(stored[2], (Found{"INITIAL TEMPERATURE", "EMPTY", true, {}}));
    EXPECT_EQ(stored[1], (Found{"INITIAL TEMPERATURE", "", false, {{6, {6}}, {7, {9}}}}));
}

TEST_P(Conditions, InstancesHaveTheirLabelsAndSets) {
    Translate(
        "*PART, NAME=P\n*NODE\n1\n2, 1\n*NSET, NSET=All\n1, 2\n*END PART\n"
        "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n"
        "*INSTANCE, NAME=J, PART=P\n5, 0, 0\n*END INSTANCE\n*NSET, NSET=Both, INSTANCE=I\n1\n"
        "*END ASSEMBLY\n" +
        Initial("TEMPERATURE") + "J.All, 20\nI.2, 30\nBoth, 40\n");
    EXPECT_EQ(Stored(),
              (std::vector<Found>{{"INITIAL TEMPERATURE", "J_All", true, {{2, {20}}, {3, {20}}}},
                                  {"INITIAL TEMPERATURE", "", false, {{1, {30}}}},
                                  {"INITIAL TEMPERATURE", "Both", true, {{0, {40}}}}}));
}

TEST_P(Conditions, TheSameValueMayBeGivenAgain) {
    Translate(kStrip + "*NSET, NSET=A\n1, 2, 3\n*NSET, NSET=B\n3, 4\n" + Initial("TEMPERATURE") +
              "A, 20\nB, 20\n3, 20\n5, 7\n5, 7\n" + Initial("TEMPERATURE") + "5, 7\n6, 8\nA, 20\n");
    EXPECT_EQ(Stored().size(), 5U);
}

TEST_P(Conditions, WhatIsNotKeptIsNoted) {
    Translate(kStrip + Initial("SOLUTION") + "LEFT, 1\n" + Initial("STRESS, GEOSTATIC") +
              "LEFT, 1, 2, 3, 4\n" + Initial("TEMPERATURE, FILE=x.y, STEP=1, INC=2") +
              Initial("solution") + "RIGHT, 5\n");
    EXPECT_TRUE(Stored().empty());
    EXPECT_EQ(summary.notes,
              (std::map<std::string, long>{
                  {"*INITIAL CONDITIONS with FILE, which was not kept", 1},
                  {"*INITIAL CONDITIONS with GEOSTATIC, which was not kept", 1},
                  {"*INITIAL CONDITIONS with TYPE=SOLUTION, which was not kept", 2}}));
}

TEST_P(Conditions, SubModelsHaveTheirShare) {
    Translate(kStrip + "*NSET, NSET=Ends\n1, 6, 12\n*NSET, NSET=Right\n6\n" +
              Initial("TEMPERATURE") + "Ends, 5\n2, 6\n5, 7\n" + Initial("VELOCITY") +
              "Right, 1, 9\n6, 2, 3\n" + Initial("STRESS") + "LEFT, 1, 2, 3\nRIGHT, 4, 5, 6\n");
    KOVObjDocument const sub = KOVObjDocument::CreateInMemory();
    KOVSimTransaction transaction(sub.ContextID());
    KOVSimCSet const left(Model().GetMap(schema::Model_elementSets()).Find(KOVString("LEFT")));
    tool::WriteSubModel(Document(), left, sub);
    transaction.Commit();
    // Nodes 1, 2, 3, 7, 8, 9 remain.
    EXPECT_EQ(
        FindAll(sub),
        (std::vector<Found>{{"INITIAL TEMPERATURE", "Ends", true, {{0, {5}}}},
                            {"INITIAL TEMPERATURE", "", false, {{1, {6}}}},
                            {"INITIAL STRESS", "LEFT", true, {{0, {1, 2, 3}}, {1, {1, 2, 3}}}}}));
}

TEST_P(Conditions, ManyLabelsInAnyOrderAreWrittenInBlocks) {
    int const count = 250'000;
    std::string deck = "*NODE\n";
    char line[64];
    for (int i = 1; i <= count; ++i) {
        std::snprintf(line, sizeof line, "%d, %d\n", i, i);
        deck += line;
    }
    deck += Initial("TEMPERATURE");
    for (int i = 0; i < count; ++i) {
        int const label = static_cast<int>(i * 99'991LL % count) + 1;
        std::snprintf(line, sizeof line, "%d, %d.5\n", label, label);
        deck += line;
    }
    deck += "7, 7.5\n";
    Translate(deck);
    Values const values = Stored().at(0).values;
    ASSERT_EQ(values.size(), static_cast<std::size_t>(count));
    for (auto const& [ordinal, value] : values) ASSERT_EQ(value, Reals{ordinal + 1.5});
}

// Random decks against a plain model of them.
TEST_P(Conditions, RandomDecksComeBack) {
    unsigned const seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    auto const upTo = [&random](int n) { return static_cast<int>(random() % unsigned(n + 1)); };
    std::string deck = kStrip;
    std::vector<Ints> sets;
    for (int s = 0; s < 5; ++s) {
        deck += "*NSET, NSET=N" + std::to_string(s) + "\n";
        Ints& members = sets.emplace_back();
        for (int label = 1; label <= 12; ++label) {
            if (upTo(2) > 0) continue;
            deck += std::to_string(label) + "\n";
            members.push_back(label - 1);
        }
    }
    std::map<std::string, Values> expected;
    for (int k = 0; k < 30; ++k) {
        int const variable = k + 1;
        int const columns = 1 + upTo(6);
        std::string const name = "INITIAL FIELD " + std::to_string(variable);
        Values& values = expected[name];
        deck += Initial("FIELD, VARIABLE=" + std::to_string(variable));
        for (int line = upTo(6); line >= 0; --line) {
            bool const named = upTo(1) == 0;
            int const which = named ? upTo(4) : upTo(11);
            Ints const members = named ? sets[static_cast<std::size_t>(which)] : Ints{which};
            bool taken = false;
            for (int const member : members) taken = taken || values.count(member) > 0;
            if (taken) continue;
            std::string text = (named ? "N" + std::to_string(which) : std::to_string(which + 1));
            Reals row;
            for (int c = 0; c < columns; ++c) {
                char word[40];
                row.push_back(std::ldexp(1 + upTo(1'000'000) * 1e-6, upTo(400) - 200));
                std::snprintf(word, sizeof word, ", %.17g", row.back());
                text += word;
            }
            deck += text + "\n";
            for (int const member : members) values[member] = row;
        }
        if (values.empty()) {
            deck += "N0, 1\n";
            for (int const member : sets[0]) values[member] = {1};
        }
        if (values.empty()) expected.erase(name);
    }
    Translate(deck);
    std::map<std::string, Values> found;
    for (Found const& one : Stored()) {
        for (auto const& [member, row] : one.values) {
            EXPECT_TRUE(found[one.name].emplace(member, row).second);
        }
    }
    EXPECT_EQ(found, expected) << deck;
}

// ----------------------------------------------------------------------------------- errors

struct ConditionError {
    char const* name;
    std::string deck;  ///< behind kStrip and a keyword of that type, whose line is 26
    std::string error;
};
void PrintTo(ConditionError const& c, std::ostream* out) { *out << c.name; }

class ConditionErrors : public ::testing::TestWithParam<ConditionError> {};

std::string const kNodeForm = "expected NODE OR NODE SET, VALUE, ...";

ConditionError const kCases[] = {
    {"NoType", "*INITIAL CONDITIONS\n",
     "deck.inp:26: *INITIAL CONDITIONS without TYPE; expected *INITIAL CONDITIONS, TYPE=..."},
    {"UnknownType", Initial("TEMPERTURE"),
     "deck.inp:26: 'TEMPERTURE' is not known; expected TYPE=TEMPERATURE, FIELD, VELOCITY, STRESS, "
     "PLASTIC STRAIN, HARDENING"},
    {"Variable", Initial("FIELD, VARIABLE=0") + "1, 1\n",
     "deck.inp:26: '0' is no field variable; expected a whole number from 1 to 1000"},
    {"NoData", Initial("STRESS") + "*NSET, NSET=X\n1\n",
     "deck.inp:26: *INITIAL CONDITIONS without a data line; expected one"},
    {"UnknownLabel", Initial("TEMPERATURE") + "1, 5\n99, 5\n",
     "deck.inp:28: an initial TEMPERATURE names node 99, which is not defined; expected nodes of "
     "the deck"},
    {"BlankLabel", Initial("TEMPERATURE") + ", 5\n",
     "deck.inp:27: a node label is missing; expected NODE OR NODE SET, VALUE, ..."},
    {"NoValue", Initial("TEMPERATURE") + "1\n", "deck.inp:27: value 1 is missing; " + kNodeForm},
    {"NoValueOfASet", Initial("TEMPERATURE") + "X, \n",
     "deck.inp:27: value 1 is missing; " + kNodeForm},
    {"BlankValue", Initial("STRESS") + "11, 1, , 3\n",
     "deck.inp:27: value 2 is missing; expected ELEMENT OR ELEMENT SET, VALUE, ..."},
    {"Text", Initial("TEMPERATURE") + "1, hot\n",
     "deck.inp:27: 'hot' is no number; expected a value"},
    {"TooMany", Initial("STRESS") + "11, 1, 2, 3, 4, 5, 6, 7\n",
     "deck.inp:27: more than 6 values; expected ELEMENT OR ELEMENT SET, VALUE, ..."},
    {"NoDof", Initial("VELOCITY") + "1\n",
     "deck.inp:27: a degree of freedom is missing; expected NODE OR NODE SET, DEGREE OF FREEDOM, "
     "VALUE"},
    {"Dof", Initial("VELOCITY") + "1, 7, 5\n",
     "deck.inp:27: '7' is no degree of freedom; expected a whole number from 1 to 6"},
    {"NoVelocity", Initial("VELOCITY") + "1, 2\n",
     "deck.inp:27: a value is missing; expected NODE OR NODE SET, DEGREE OF FREEDOM, VALUE"},
    {"OtherCount", Initial("TEMPERATURE") + "1, 2, 3\n2, 4\n",
     "deck.inp:28: 1 value, unlike line 27 with 2; expected the same count in all lines with "
     "labels"},
    // ---- twice ----
    {"LabelTwice", Initial("TEMPERATURE") + "3, 5\n1, 4\n3, 6\n",
     "deck.inp:29: a second initial TEMPERATURE of node 3, which differs from that of line 27; "
     "expected one"},
    {"LabelInTwoKeywords",
     Initial("VELOCITY") + "3, 1, 5\n3, 2, 5\n" + Initial("VELOCITY") + "3, 2, 6\n",
     "deck.inp:30: a second initial VELOCITY 2 of node 3, which differs from that of line 28; "
     "expected one"},
    {"LabelInASet", "*NSET, NSET=X\n1, 2\n" + Initial("TEMPERATURE") + "X, 5\n4, 4\n2, 6\n",
     "deck.inp:31: a second initial TEMPERATURE of node 2, which differs from that of line 29; "
     "expected one"},
    {"TwoSets",
     Initial("STRESS") + "LEFT, 1, 2\n*ELSET, ELSET=X\n13, 12\n" + Initial("STRESS") +
         "RIGHT, 5\nX, 1, 3\n",
     "deck.inp:32: a second initial STRESS of element 12, which differs from that of line 27; "
     "expected one"},
    {"OtherCountTwice", Initial("STRESS") + "LEFT, 1, 2\n12, 1\n",
     "deck.inp:28: a second initial STRESS of element 12, which differs from that of line 27; "
     "expected one"},
};

TEST_P(ConditionErrors, AreToldWithFileAndLine) {
    EXPECT_EQ(InMemory(kStrip + GetParam().deck).Error(), GetParam().error);
}
INSTANTIATE_TEST_SUITE_P(All, ConditionErrors, ::testing::ValuesIn(kCases),
                         [](auto const& of) { return std::string(of.param.name); });

TEST(ConditionErrorsAlone, AnUnknownSetHasAHint) {
    std::string const error =
        InMemory(kStrip + "*NSET, NSET=Fixed\n1\n" + Initial("TEMPERATURE") + "1, 5\nFixd, 5\n")
            .Error();
    EXPECT_EQ(error.substr(0, 12), "deck.inp:30:");
    EXPECT_NE(error.find("'Fixd'"), std::string::npos) << error;
    EXPECT_NE(error.find("did you mean 'Fixed'?"), std::string::npos) << error;
}

TEST(ConditionErrorsAlone, StrictDecksHoldKeptOnesOnly) {
    tool::TranslationOptions options;
    options.strict = true;
    EXPECT_EQ(InMemory(Initial("SOLUTION") + "X, 1\n").Error(options),
              "deck.inp:1: *INITIAL CONDITIONS with TYPE=SOLUTION is not kept; expected kept ones "
              "only");
    EXPECT_EQ(InMemory(Initial("STRESS, USER")).Error(options),
              "deck.inp:1: *INITIAL CONDITIONS with USER is not kept; expected kept ones only");
}

// --------------------------------------------------------------------------------- the kinds

TEST(ConditionKinds, AreFoundByTypeAndName) {
    for (tool::ConditionKind const& kind : tool::ConditionKinds()) {
        EXPECT_EQ(tool::FindConditionKind(kind.type), &kind);
        bool const numbered = kind.number != tool::ConditionKind::Number::None;
        tool::NamedCondition const named =
            tool::ReadConditionName(tool::ConditionName(kind, numbered ? 12 : 0));
        EXPECT_EQ(named.kind, &kind);
        EXPECT_EQ(named.number, numbered ? 12 : 0);
        EXPECT_LE(kind.most, tool::kMostConditionValues);
        EXPECT_FALSE(tool::IsConditionPassed(kind.type));
    }
    EXPECT_EQ(tool::FindConditionKind("plasticStrain"), tool::FindConditionKind("PLASTIC STRAIN"));
    EXPECT_TRUE(tool::IsConditionPassed("pore pressure"));
    for (char const* const name :
         {"", "INITIAL ", "TEMPERATURE", "INITIAL TEMPERATURE 1", "INITIAL FIELD", "INITIAL FIELD ",
          "INITIAL FIELD x", "INITIAL COLOUR", "thickness"}) {
        EXPECT_EQ(tool::ReadConditionName(name).kind, nullptr) << name;
    }
}

}  // namespace
}  // namespace kov::test
