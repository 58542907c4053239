// What `kovsim conditions` shows, and what other subcommands say of initial conditions.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "CommandFixture.h"
#include "KOVSimDataRecord.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransaction.h"

namespace kov::test {
namespace {

std::string const kDeck =
    "*PART, NAME=P\n*NODE\n1\n2, 1\n3, 1, 1\n4, 0, 1\n*NSET, NSET=All\n1, 2, 3, 4\n"
    "*ELEMENT, TYPE=S3, ELSET=E\n11, 1, 2, 3\n12, 1, 3, 4\n*END PART\n"
    "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n*END ASSEMBLY\n"
    "*INITIAL CONDITIONS, TYPE=TEMPERATURE\nI.All, 20\n"
    "*INITIAL CONDITIONS, TYPE=VELOCITY\nI.3, 1, 0.5\nI.1, 1, -1\nI.4, 3, 2\n"
    "*INITIAL CONDITIONS, TYPE=STRESS\nI.12, 1, 2, 3\nI.11, 1, 5, 3\n";

class ConditionsCommand : public CommandTest {
  protected:
    ConditionsCommand() : CommandTest("conditions") {}

    void Translate(std::string const& deck) const {
        WriteFile(work / "d.inp", deck);
        ASSERT_EQ(work.Run({"translate", "d.inp", "-o", "m.ksd"}).status, 0);
    }
    // Changes the first field entry of the document.
    void Damage(std::function<void(KOVObjDocument const&, KOVSimPosition const&)> const& f) const {
        KOVObjDocument const document =
            KOVObjDocument::Open((work / "m.ksd").c_str(), KOVObjDocument::ReadWrite);
        KOVSimTransaction transaction(document.ContextID());
        f(document, *document.GetModel().GetSet(schema::Model_fieldEntries()).Begin());
        transaction.Commit();
        document.Close();
    }
};

TEST_F(ConditionsCommand, AllAreListed) {
    Translate(kDeck);
    EXPECT_EQ(Show({}),
              "4 initial conditions\n"
              "  condition    given to        members  values\n"
              "  TEMPERATURE  node set I_All        4  20\n"
              "  VELOCITY 1   nodes                 2  -1 to 0.5\n"
              "  VELOCITY 3   nodes                 1  2\n"
              "  STRESS       elements              2  1, 2 to 5, 3\n");
}

TEST_F(ConditionsCommand, OneKindIsShownWithItsValues) {
    Translate(kDeck);
    EXPECT_EQ(Show({"temperature"}), "TEMPERATURE of node set I_All, 4 nodes: 20\n");
    EXPECT_EQ(Show({"VELOCITY"}),
              "VELOCITY 1 of 2 nodes\n  I 1: -1\n  I 3: 0.5\nVELOCITY 3 of 1 node\n  I 4: 2\n");
    EXPECT_EQ(Show({"velocity 3"}), "VELOCITY 3 of 1 node\n  I 4: 2\n");
    EXPECT_EQ(Show({"Stress"}), "STRESS of 2 elements\n  I 11: 1, 5, 3\n  I 12: 1, 2, 3\n");
}

TEST_F(ConditionsCommand, AKindThatIsNotThereHasAHint) {
    Translate(kDeck);
    EXPECT_EQ(Show({"VELOCTY"}), "no initial condition 'VELOCTY'; did you mean 'VELOCITY'?\n");
    EXPECT_EQ(Show({"FIELD"}), "no initial condition 'FIELD'\n");
}

TEST_F(ConditionsCommand, ADocumentWithoutAnyHasAnEmptyList) {
    Translate("*NODE\n1\n");
    EXPECT_EQ(Show({}), "0 initial conditions\n");
    EXPECT_EQ(Json()["conditions"].Size(), 0U);
}

TEST_F(ConditionsCommand, JsonHasTheSame) {
    Translate(kDeck);
    JsonValue const json = Json();
    ASSERT_EQ(json["conditions"].Size(), 4U);
    JsonValue const& heat = json["conditions"][0];
    EXPECT_EQ(heat["kind"].text, "TEMPERATURE");
    EXPECT_TRUE(heat["number"].IsNull());
    EXPECT_EQ(heat["of"].text, "node");
    EXPECT_EQ(heat["set"].text, "I_All");
    EXPECT_EQ(heat["members"].Int(), 4);
    EXPECT_EQ(heat["values"].Numbers(), (std::vector<double>{20}));
    EXPECT_EQ(heat.members.count("rows"), 0U);
    JsonValue const& stress = json["conditions"][3];
    EXPECT_EQ(stress["of"].text, "element");
    EXPECT_TRUE(stress["set"].IsNull());
    EXPECT_TRUE(stress["values"].IsNull());
    EXPECT_EQ(stress["columns"].Int(), 3);
    EXPECT_EQ(stress["ranges"][1].Numbers(), (std::vector<double>{2, 5}));
}

TEST_F(ConditionsCommand, JsonOfAKindHasItsRows) {
    Translate(kDeck);
    JsonValue const json = Json({"VELOCITY"});
    ASSERT_EQ(json["conditions"].Size(), 2U);
    JsonValue const& first = json["conditions"][0];
    EXPECT_EQ(first["number"].Int(), 1);
    ASSERT_EQ(first["rows"].Size(), 2U);
    EXPECT_EQ(first["rows"][1]["instance"].text, "I");
    EXPECT_EQ(first["rows"][1]["label"].Int(), 3);
    EXPECT_EQ(first["rows"][1]["values"].Numbers(), (std::vector<double>{0.5}));
    EXPECT_EQ(first["labels"][0]["instance"].text, "I");
}

TEST_F(ConditionsCommand, InfoAndTheSummaryCountThem) {
    Translate(kDeck);
    EXPECT_EQ(ParseJson(work.Run({"info", "m.ksd", "--json"}).output)["initialConditions"].Int(),
              4);
    Workshop::Result const made = work.Run({"translate", "d.inp", "-o", "n.ksd"});
    EXPECT_NE(made.output.find("initial conditions                  4\n"), std::string::npos)
        << made.output;
}

TEST_F(ConditionsCommand, CopiesHaveThem) {
    Translate(kDeck);
    ASSERT_EQ(work.Run({"compact", "m.ksd", "-o", "c.ksd"}).status, 0);
    EXPECT_EQ(work.Run({"conditions", "c.ksd", "VELOCITY"}).output, Show({"VELOCITY"}));
    ASSERT_EQ(work.Run({"extract", "m.ksd", "--set", "I.E", "-o", "s.ksd"}).status, 0);
    EXPECT_EQ(work.Run({"conditions", "s.ksd"}).output, Show({}));
    EXPECT_EQ(work.Run({"conditions", "s.ksd", "STRESS"}).output, Show({"STRESS"}));
    EXPECT_EQ(work.Run({"verify", "s.ksd"}).status, 0);
}

// -------------------------------------------------------------------- documents of any writer

TEST_F(ConditionsCommand, FieldEntriesOfAnotherKindArePassedOver) {
    Translate(kDeck);
    Damage([](KOVObjDocument const&, KOVSimPosition const& entry) {
        entry.GetDataRecord().SetString(0, KOVString("STH"));
    });
    EXPECT_EQ(Show({}).substr(0, 20), "3 initial conditions");
}

TEST_F(ConditionsCommand, AnOwnerOfAnotherKindIsRefused) {
    Translate(kDeck);
    Damage([](KOVObjDocument const& document, KOVSimPosition const& entry) {
        entry.SetPosition(schema::FieldEntry_owner(), document.GetModel());
    });
    EXPECT_EQ(Show({}), "the initial TEMPERATURE is given to no set of nodes\n");
}

TEST_F(ConditionsCommand, WrongCountsAreRefused) {
    Translate(kDeck);
    Damage([](KOVObjDocument const&, KOVSimPosition const& entry) {
        entry.GetDataRecord().SetInt(1, 3);
        KOVSimPosition const field = entry.GetPosition(schema::FieldEntry_field());
        field.GetDataRecord().SetDouble(0, 1.0);
    });
    EXPECT_EQ(Show({}), "the initial TEMPERATURE has fewer values than it says\n");
    Damage([](KOVObjDocument const&, KOVSimPosition const& entry) {
        entry.GetDataRecord().SetInt(1, -1);
    });
    EXPECT_EQ(Show({}), "the initial TEMPERATURE has -1 values\n");
}

TEST_F(ConditionsCommand, FieldsOfAnotherFormAreRefused) {
    Translate(kDeck);
    Damage([](KOVObjDocument const&, KOVSimPosition const& entry) {
        entry.SetPosition(schema::FieldEntry_field(), KOVSimPosition());
    });
    EXPECT_EQ(Show({}), "the initial TEMPERATURE has no field\n");
    Damage([](KOVObjDocument const& document, KOVSimPosition const& entry) {
        entry.SetPosition(schema::FieldEntry_field(),
                          document.CreateDataRecord(schema::Field_FTable()).Pos());
    });
    EXPECT_EQ(Show({}), "the initial TEMPERATURE has no values\n");
    Damage([](KOVObjDocument const& document, KOVSimPosition const& entry) {
        KOVSimSet const entries = document.GetModel().GetSet(schema::Model_fieldEntries());
        KOVSimPosition other;
        for (auto at = entries.Begin(); at.NotDone(); ++at) other = *at;
        entry.SetPosition(schema::FieldEntry_field(),
                          other.GetPosition(schema::FieldEntry_field()));
    });
    EXPECT_EQ(Show({}), "the initial TEMPERATURE has values that are no table\n");
}

TEST_F(ConditionsCommand, MembersWithoutAValueAreRefused) {
    Translate(kDeck);
    Damage([](KOVObjDocument const& document, KOVSimPosition const& entry) {
        // The values of two nodes for a set of four.
        KOVSimSet const entries = document.GetModel().GetSet(schema::Model_fieldEntries());
        auto second = entries.Begin();
        ++second;
        entry.SetPosition(schema::FieldEntry_field(),
                          (*second).GetPosition(schema::FieldEntry_field()));
    });
    EXPECT_EQ(Show({}), "the initial TEMPERATURE has members without a value\n");
}

}  // namespace
}  // namespace kov::test
