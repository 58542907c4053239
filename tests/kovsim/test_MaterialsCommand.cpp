// What `kovsim materials` shows.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "JsonText.h"
#include "KOVObjDocument.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimTransaction.h"
#include "Process.h"

namespace kov::test {
namespace {

std::string const kDeck =
    "*MATERIAL, NAME=Steel\n*ELASTIC\n2.1e11, 0.3, 20\n2e11, 0.31, 400\n*DENSITY\n7850\n"
    "*EXPANSION, ZERO=20\n1.2e-5\n*DAMPING, ALPHA=0.1, BETA=2\n"
    "*MATERIAL, NAME=\"Foam, soft\"\n"
    "*MATERIAL, NAME=Ply\n*ELASTIC, TYPE=LAMINA, DEPENDENCIES=1\n"
    "1.35e11, 9.8e9, 0.31, 4.9e9, 4.9e9, 3.4e9,, 1\n1.3e11, 9e9, 0.3, 4e9, 4e9, 3e9, , 2.5\n";

class MaterialsCommand : public ::testing::Test {
  protected:
    void Translate(std::string const& deck) const {
        WriteFile(work / "d.inp", deck);
        ASSERT_EQ(work.Run({"translate", "d.inp", "-o", "m.ksd"}).status, 0);
    }
    Workshop::Result Ask(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"materials", "m.ksd"});
        return work.Run(arguments);
    }
    std::string Show(std::vector<std::string> const& arguments) const {
        Workshop::Result const result = Ask(arguments);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.errors, "");
        return result.output;
    }
    JsonValue Json(std::vector<std::string> arguments = {}) const {
        arguments.push_back("--json");
        return ParseJson(Show(arguments));
    }

    Workshop work;
};

TEST_F(MaterialsCommand, MaterialsAreListedWithTheirBehaviours) {
    Translate(kDeck);
    EXPECT_EQ(
        Show({}),
        "3 materials\n"
        "  material      sections  behaviour  type       rows  temperatures  field variables\n"
        "  \"Foam, soft\"         0  -          -             -  -                           -\n"
        "  Ply                  0  Elastic    LAMINA        2  -                           1\n"
        "  Steel                0  Damping    -             -  -                           -  "
        "alpha 0.1, beta 2\n"
        "                          Density    -             1  -                           -\n"
        "                          Elastic    ISOTROPIC     2  20 to 400                   -\n"
        "                          Expansion  ISOTROPIC     1  -                           -  "
        "zero 20\n");
}

TEST_F(MaterialsCommand, OneIsShownWithItsTables) {
    Translate(kDeck);
    EXPECT_EQ(Show({"Steel"}),
              "material Steel: 4 behaviours, no section\n"
              "  Damping, alpha 0.1, beta 2\n"
              "  Density\n"
              "    density\n"
              "       7850\n"
              "  Elastic, ISOTROPIC\n"
              "          E    nu  temperature\n"
              "    2.1e+11   0.3           20\n"
              "      2e+11  0.31          400\n"
              "  Expansion, ISOTROPIC, zero 20\n"
              "      alpha\n"
              "    1.2e-05\n");
    EXPECT_EQ(Show({"Ply"}),
              "material Ply: 1 behaviour, no section\n"
              "  Elastic, LAMINA\n"
              "          E1       E2  nu12      G12      G13      G23  field 1\n"
              "    1.35e+11  9.8e+09  0.31  4.9e+09  4.9e+09  3.4e+09        1\n"
              "     1.3e+11    9e+09   0.3    4e+09    4e+09    3e+09      2.5\n");
    EXPECT_EQ(Show({"Foam, soft"}), "material \"Foam, soft\": 0 behaviours, no section\n");
}

TEST_F(MaterialsCommand, SectionsOfAMaterialAreNamed) {
    Translate("*NODE\n1\n2, 1\n3, 1, 1\n4, 0, 1\n5, 0, 0, 1\n" +
              std::string("*ELEMENT, TYPE=S3, ELSET=A\n1, 1, 2, 3\n*ELEMENT, TYPE=S3, ELSET=B\n") +
              "2, 1, 3, 4\n*ELEMENT, TYPE=C3D4, ELSET=\"C, D\"\n3, 1, 2, 3, 5\n"
              "*ELEMENT, TYPE=C3D4, ELSET=E\n4, 1, 3, 4, 5\n" +
              kDeck +
              "*SHELL SECTION, ELSET=A, MATERIAL=Steel\n1\n*SHELL SECTION, ELSET=B, COMPOSITE\n"
              "1, 3, Ply\n1, 3, Steel\n1, 3, Ply\n*SOLID SECTION, ELSET=\"C, D\", MATERIAL=Ply\n"
              "*SOLID SECTION, ELSET=E, COMPOSITE\n1, 3, Steel\n1, 3, Ply\n");
    EXPECT_NE(Show({"Steel"}).find(": 4 behaviours, 3 sections\n  in A, B, E\n"), std::string::npos)
        << Show({"Steel"});
    EXPECT_NE(Show({"Ply"}).find(": 1 behaviour, 3 sections\n  in B, \"C, D\", E\n"),
              std::string::npos)
        << Show({"Ply"});
    JsonValue const list = Json();
    EXPECT_EQ(list["materials"][0]["sectionCount"].Int(), 0);
    EXPECT_EQ(list["materials"][1]["sectionCount"].Int(), 3);
    EXPECT_EQ(list["materials"][2]["sectionCount"].Int(), 3);
    JsonValue const steel = Json({"Steel"});
    EXPECT_EQ(steel["materials"][0]["sectionCount"].Int(), 3);
    std::vector<std::string> names;
    for (JsonValue const& name : steel["materials"][0]["sections"].items) {
        names.push_back(name.text);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"A", "B", "E"}));
}

TEST_F(MaterialsCommand, TheSummaryTellsOfUnstableElasticity) {
    WriteFile(work / "d.inp", "*MATERIAL, NAME=M\n*ELASTIC, TYPE=LAMINA\n1, 1, 2, 1, 1, 1\n");
    std::string const text = work.Run({"translate", "d.inp", "-o", "m.ksd"}).output;
    EXPECT_NE(text.find("d.inp:3: elasticity of material 'M' is not stable: nu12 is not below the "
                        "root of E1/E2\n"),
              std::string::npos)
        << text;
    JsonValue const json =
        ParseJson(work.Run({"translate", "d.inp", "-o", "n.ksd", "--json"}).output);
    EXPECT_EQ(json["unstableElasticity"]["rows"].Int(), 1);
    EXPECT_EQ(json["unstableElasticity"]["first"][0]["material"].text, "M");
}

TEST_F(MaterialsCommand, InfoCountsBehaviours) {
    Translate(kDeck);
    JsonValue const json = ParseJson(work.Run({"info", "m.ksd", "--json"}).output);
    EXPECT_EQ(json["materials"].Int(), 3);
    EXPECT_EQ(json["behaviors"].Int(), 5);
    EXPECT_NE(work.Run({"info", "m.ksd"}).output.find("  with 5 behaviours\n"), std::string::npos);
}

TEST_F(MaterialsCommand, CaseIsForgivenInNames) {
    Translate(kDeck);
    EXPECT_EQ(Show({"sTEEL"}), Show({"Steel"}));
}

TEST_F(MaterialsCommand, UnknownNamesGiveTheNearestOnes) {
    Translate(kDeck);
    Workshop::Result const result = Ask({"Stel"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "kovsim: m.ksd: no material named 'Stel'; did you mean 'Steel'?\n");
    EXPECT_EQ(Ask({"Unobtainium"}).errors, "kovsim: m.ksd: no material named 'Unobtainium'\n");
}

TEST_F(MaterialsCommand, ADocumentWithoutMaterialsHasAnEmptyList) {
    Translate("*NODE\n1\n");
    EXPECT_EQ(Show({}), "0 materials\n");
    EXPECT_EQ(Json()["materials"].Size(), 0U);
}

TEST_F(MaterialsCommand, JsonListsWithoutRows) {
    Translate(kDeck);
    JsonValue const json = Json();
    EXPECT_EQ(json["document"].text, "m.ksd");
    ASSERT_EQ(json["materials"].Size(), 3U);
    JsonValue const& steel = json["materials"][2];
    EXPECT_EQ(steel["name"].text, "Steel");
    JsonValue const& elastic = steel["behaviors"][2];
    EXPECT_EQ(elastic["name"].text, "Elastic");
    EXPECT_EQ(elastic["type"].text, "ISOTROPIC");
    EXPECT_EQ(elastic["rowCount"].Int(), 2);
    EXPECT_EQ(elastic["temperatureRange"].Numbers(), (std::vector<double>{20, 400}));
    EXPECT_EQ(elastic["fieldVariables"].Int(), 0);
    EXPECT_EQ(elastic.members.count("rows"), 0U);
    JsonValue const& damping = steel["behaviors"][0];
    EXPECT_TRUE(damping["type"].IsNull());
    EXPECT_TRUE(damping["temperatureRange"].IsNull());
    EXPECT_EQ(damping["parameters"]["alpha"].number, 0.1);
    EXPECT_EQ(damping["parameters"]["beta"].number, 2);
    EXPECT_EQ(damping["parameters"].Size(), 2U);
}

TEST_F(MaterialsCommand, JsonOfOneHasItsRows) {
    Translate(kDeck);
    JsonValue const json = Json({"Ply"});
    ASSERT_EQ(json["materials"].Size(), 1U);
    JsonValue const& elastic = json["materials"][0]["behaviors"][0];
    std::vector<std::string> columns;
    for (JsonValue const& name : elastic["columns"].items) columns.push_back(name.text);
    EXPECT_EQ(columns,
              (std::vector<std::string>{"E1", "E2", "nu12", "G12", "G13", "G23", "field 1"}));
    ASSERT_EQ(elastic["rows"].Size(), 2U);
    EXPECT_EQ(elastic["rows"][1].Numbers(),
              (std::vector<double>{1.3e11, 9e9, 0.3, 4e9, 4e9, 3e9, 2.5}));
}

TEST_F(MaterialsCommand, LongTablesAreShownInFull) {
    std::string deck = "*MATERIAL, NAME=M\n*DENSITY\n";
    for (int i = 0; i < 120'000; ++i) deck += "1, " + std::to_string(i) + "\n";
    Translate(deck);
    std::string const text = Show({"M"});
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 120'003);
    EXPECT_EQ(text.substr(text.size() - 26), "\n          1       119999\n");
    JsonValue const json = Json({"M"});
    JsonValue const& rows = json["materials"][0]["behaviors"][0]["rows"];
    ASSERT_EQ(rows.Size(), 120'000U);
    EXPECT_EQ(rows[99'999].Numbers(), (std::vector<double>{1, 99'999}));
}

TEST_F(MaterialsCommand, BehavioursOfAnotherWriterAreNamed) {
    Translate(kDeck);
    {
        KOVObjDocument const document =
            KOVObjDocument::Open((work / "m.ksd").c_str(), KOVObjDocument::ReadWrite);
        KOVSimTransaction transaction(document.ContextID());
        KOVSimMap const behaviors = document.GetMaterialCollection()
                                        .GetMap(schema::MaterialLib_materials())
                                        .Find(KOVString("Foam, soft"))
                                        .GetMap(schema::Material_behaviors());
        KOVSimPosition const odd = document.CreateDataRecord(schema::MaterialBehavior()).Pos();
        behaviors.Insert(KOVString("Crushable"), odd);
        KOVSimPosition const bare = document.CreateDataRecord(schema::MaterialBehavior()).Pos();
        behaviors.Insert(KOVString("Elastic"), bare);
        transaction.Commit();
        document.Close();
    }
    EXPECT_EQ(Show({"Foam, soft"}),
              "material \"Foam, soft\": 2 behaviours, no section\n"
              "  Crushable\n"
              "    no table of a known form\n"
              "  Elastic\n"
              "    no table of a known form\n");
    EXPECT_EQ(Json({"Foam, soft"})["materials"][0]["behaviors"][0]["columns"].Size(), 0U);
}

TEST_F(MaterialsCommand, TablesOfAnotherFormAreRefused) {
    Translate(kDeck);
    {
        KOVObjDocument const document =
            KOVObjDocument::Open((work / "m.ksd").c_str(), KOVObjDocument::ReadWrite);
        KOVSimTransaction transaction(document.ContextID());
        KOVSimPosition const elastic = document.GetMaterialCollection()
                                           .GetMap(schema::MaterialLib_materials())
                                           .Find(KOVString("Steel"))
                                           .GetMap(schema::Material_behaviors())
                                           .Find(KOVString("Elastic"));
        elastic.Associate(schema::MaterialTable_dependentData(), 0, elastic);
        transaction.Commit();
        document.Close();
    }
    Workshop::Result const result = Ask({"Steel"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors,
              "kovsim: m.ksd: the table of a material is not one of rows and columns\n");
}

TEST_F(MaterialsCommand, ExtractedDocumentsShowTheSame) {
    Translate("*NODE\n1\n2, 1\n3, 1, 1\n*ELEMENT, TYPE=S3, ELSET=E\n1, 1, 2, 3\n" + kDeck +
              "*SHELL SECTION, ELSET=E, MATERIAL=Steel\n1\n");
    ASSERT_EQ(work.Run({"extract", "m.ksd", "--set", "E", "-o", "s.ksd"}).status, 0);
    EXPECT_EQ(work.Run({"materials", "s.ksd"}).output, Show({}));
    EXPECT_EQ(work.Run({"materials", "s.ksd", "Steel"}).output, Show({"Steel"}));
    EXPECT_EQ(work.Run({"verify", "s.ksd"}).status, 0);
    ASSERT_EQ(work.Run({"compact", "m.ksd", "-o", "c.ksd"}).status, 0);
    EXPECT_EQ(work.Run({"materials", "c.ksd", "Ply"}).output, Show({"Ply"}));
}

}  // namespace
}  // namespace kov::test
