// Behaviours of materials in decks, as they stand in documents, and the errors that they end with.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "KOVSrvFsmMaterialTable.h"
#include "Keywords.h"
#include "MaterialBehaviors.h"
#include "SectionDeck.h"
#include "SubModel.h"
#include "mem.h"

namespace kov::test {
namespace {

using Rows = std::vector<std::vector<double>>;

// What stands in a document under the numbers of a behaviour, told independently of the program's
// own descriptions.
struct TableAsked {
    std::vector<int> members;
    std::vector<int> lengths;
};
TableAsked const kIsotropic{{0, 1}, {1, 1}};
TableAsked const kEngineering{{2, 3, 4}, {3, 3, 3}};
TableAsked const kLamina{{2, 3, 4}, {2, 1, 3}};
TableAsked const kPlastic{{6, 7}, {1, 1}};
TableAsked Stiffness(int length) { return {{5}, {length}}; }
TableAsked One(int member, int length = 1) { return {{member}, {length}}; }

struct TableFound {
    Rows rows;
    bool hasTemperature = false;
    int fields = 0;
    friend bool operator==(TableFound const&, TableFound const&) = default;
};
void PrintTo(TableFound const& found, std::ostream* out) {
    *out << ::testing::PrintToString(found.rows) << (found.hasTemperature ? ", temperature" : "")
         << ", " << found.fields << " fields";
}

TableFound ReadTable(KOVSimPosition const& behaviour, TableAsked const& asked) {
    std::vector<int> types(asked.members.size(), schema::MaterialTable_dependentData());
    types.push_back(-1);
    KOVSrvFsmMaterialTable const table(types.data(), asked.members.data(), asked.lengths.data(),
                                       true, schema::MaterialTable_temperatureData(), 0,
                                       schema::MaterialTable_fieldVariableData(), 0);
    double** rows = nullptr;
    int rowCount = 0;
    int columns = 0;
    TableFound found;
    table.FillPointer(behaviour, rows, rowCount, columns, found.hasTemperature, found.fields);
    for (int row = 0; row < rowCount; ++row) {
        found.rows.emplace_back(rows[row], rows[row] + columns);
        mem_Free(rows[row]);
    }
    mem_Free(rows);
    return found;
}

class Materials : public SectionDecks {
  protected:
    KOVSimPosition Material(std::string const& name) const {
        return Document()
            .GetMaterialCollection()
            .GetMap(schema::MaterialLib_materials())
            .Find(KOVString(name.c_str()));
    }
    KOVSimPosition Behaviour(std::string const& key, std::string const& material = "M") const {
        return Material(material).GetMap(schema::Material_behaviors()).Find(KOVString(key.c_str()));
    }
    TableFound Table(std::string const& key, TableAsked const& asked,
                     std::string const& material = "M") const {
        return ReadTable(Behaviour(key, material), asked);
    }
    std::string Type(std::string const& key) const { return TextField(Behaviour(key), 0); }
};
KOV_DOCUMENT_TESTS(Materials);

std::string const kM = "*MATERIAL, NAME=M\n";

TEST_P(Materials, EachBehaviourIsARecordUnderItsName) {
    Translate(kM +
              "*ELASTIC\n2.1e11, 0.3\n*DENSITY\n7850.\n*PLASTIC\n2e8, 0\n2.5e8, .1\n"
              "*EXPANSION\n1.2e-5\n*CONDUCTIVITY\n50\n*SPECIFIC HEAT\n450\n*DAMPING, BETA=1e-3\n");
    EXPECT_EQ(KeysOf(Material("M").GetMap(schema::Material_behaviors())),
              (Texts{"Conductivity", "Damping", "Density", "Elastic", "Expansion", "Plastic",
                     "SpecificHeat"}));
    EXPECT_TRUE(Behaviour("Elastic").IsA(schema::MaterialBehavior()));
    EXPECT_EQ(NameOf(Behaviour("Elastic")), "Elastic");
    EXPECT_EQ(Type("Elastic"), "ISOTROPIC");
    EXPECT_EQ(Type("Plastic"), "ISOTROPIC");
    EXPECT_EQ(Type("Expansion"), "ISOTROPIC");
    EXPECT_EQ(Type("Conductivity"), "ISOTROPIC");
    EXPECT_EQ(Type("Density"), "");
    EXPECT_EQ(Type("Damping"), "");
    EXPECT_EQ(Table("Elastic", kIsotropic), (TableFound{{{2.1e11, 0.3}}}));
    EXPECT_EQ(Table("Density", One(8)), (TableFound{{{7850}}}));
    EXPECT_EQ(Table("Plastic", kPlastic), (TableFound{{{2e8, 0}, {2.5e8, 0.1}}}));
    EXPECT_EQ(Table("Expansion", One(9)), (TableFound{{{1.2e-5}}}));
    EXPECT_EQ(Table("Conductivity", One(10)), (TableFound{{{50}}}));
    EXPECT_EQ(Table("SpecificHeat", One(11)), (TableFound{{{450}}}));
    EXPECT_TRUE(summary.unknownKeywords.empty());
    EXPECT_TRUE(summary.notes.empty());
}

TEST_P(Materials, AMaterialWithoutBehavioursHasNone) {
    Translate(kM + "*MATERIAL, NAME=N\n*DENSITY\n1\n");
    EXPECT_EQ(Material("M").GetMap(schema::Material_behaviors()).Size(), 0);
    EXPECT_EQ(Material("N").GetMap(schema::Material_behaviors()).Size(), 1);
}

TEST_P(Materials, TemperaturesAndFieldVariablesStandBehindTheValues) {
    Translate(kM +
              "*ELASTIC, DEPENDENCIES=2\n1, .1, 20, 5, 6\n2, .2, 30, 5, 6\n3, .3, -10, 5, 7\n"
              "*DENSITY\n7, 20\n6, 400\n*CONDUCTIVITY, DEPENDENCIES=1\n1,,3\n2, , 4\n");
    EXPECT_EQ(Table("Elastic", kIsotropic),
              (TableFound{{{1, .1, 20, 5, 6}, {2, .2, 30, 5, 6}, {3, .3, -10, 5, 7}}, true, 2}));
    EXPECT_EQ(Table("Density", One(8)), (TableFound{{{7, 20}, {6, 400}}, true, 0}));
    EXPECT_EQ(Table("Conductivity", One(10)), (TableFound{{{1, 3}, {2, 4}}, false, 1}));
}

TEST_P(Materials, ElasticTypesHaveTheirColumns) {
    std::string deck;
    auto const add = [&deck](std::string const& name, std::string const& type,
                             std::string const& lines) {
        deck += "*MATERIAL, NAME=" + name + "\n*ELASTIC, TYPE=" + type + "\n" + lines;
    };
    add("O", "ORTHOTROPIC", "1,2,3,4,5,6,7,8\n9, 20\n10,11,12,13,14,15,16,17\n18, 21.\n");
    add("E", "ENGINEERING CONSTANTS", "1,2,3,.4,.5,.6,7,8\n9\n");
    add("A", "ANISOTROPIC", "1,2,3,4,5,6,7,8\n9,10,11,12,13,14,15,16\n17,18,19,20,21, 99\n");
    add("L", "lamina", "1,2,.3,4,5,6,20\n");
    add("S", "SHEAR", "5\n");
    add("T", "Traction", "1,2,3\n");
    add("I", "ISO", "1,-.5\n");
    Translate(deck);
    EXPECT_EQ(
        Table("Elastic", Stiffness(9), "O"),
        (TableFound{
            {{1, 2, 3, 4, 5, 6, 7, 8, 9, 20}, {10, 11, 12, 13, 14, 15, 16, 17, 18, 21}}, true, 0}));
    EXPECT_EQ(Table("Elastic", kEngineering, "E"), (TableFound{{{1, 2, 3, .4, .5, .6, 7, 8, 9}}}));
    Rows anisotropic(1);
    for (int i = 1; i <= 21; ++i) anisotropic[0].push_back(i);
    anisotropic[0].push_back(99);
    EXPECT_EQ(Table("Elastic", Stiffness(21), "A"), (TableFound{anisotropic, true, 0}));
    EXPECT_EQ(Table("Elastic", kLamina, "L"), (TableFound{{{1, 2, .3, 4, 5, 6, 20}}, true, 0}));
    EXPECT_EQ(Table("Elastic", One(4), "S"), (TableFound{{{5}}}));
    EXPECT_EQ(Table("Elastic", Stiffness(3), "T"), (TableFound{{{1, 2, 3}}}));
    EXPECT_EQ(Table("Elastic", kIsotropic, "I"), (TableFound{{{1, -.5}}}));
    EXPECT_EQ(TextField(Behaviour("Elastic", "E"), 0), "ENGINEERING CONSTANTS");
}

TEST_P(Materials, ExpansionAndConductivityHaveOneThreeOrSixNumbers) {
    Translate(
        kM +
        "*EXPANSION, TYPE=ORTHO, ZERO=-2.5\n1,2,3\n*CONDUCTIVITY, TYPE=ANISO\n1,-2,3,-4,-5,6,20\n"
        "*MATERIAL, NAME=N\n*EXPANSION, TYPE=ANISOTROPIC\n1,2,3,4,5,6\n"
        "*CONDUCTIVITY, TYPE=ORTHOTROPIC\n1,2,3\n");
    EXPECT_EQ(Table("Expansion", One(9, 3)), (TableFound{{{1, 2, 3}}}));
    EXPECT_EQ(RealField(Behaviour("Expansion"), 1), -2.5);
    EXPECT_EQ(Table("Conductivity", One(10, 6)),
              (TableFound{{{1, -2, 3, -4, -5, 6, 20}}, true, 0}));
    EXPECT_EQ(Table("Expansion", One(9, 6), "N"), (TableFound{{{1, 2, 3, 4, 5, 6}}}));
    EXPECT_EQ(RealField(Behaviour("Expansion", "N"), 1), -99);
    EXPECT_EQ(Table("Conductivity", One(10, 3), "N"), (TableFound{{{1, 2, 3}}}));
}

TEST_P(Materials, DampingHasNumbersAndNoTable) {
    Translate(kM + "*DAMPING, ALPHA=1.5, STRUCTURAL=2e-2, COMPOSITE=0\n");
    EXPECT_EQ(RealField(Behaviour("Damping"), 1), 1.5);
    EXPECT_EQ(RealField(Behaviour("Damping"), 2), -99);
    EXPECT_EQ(RealField(Behaviour("Damping"), 3), 0);
    EXPECT_EQ(RealField(Behaviour("Damping"), 4), 0.02);
    EXPECT_TRUE(Behaviour("Damping").GetPosition(schema::MaterialBehavior_rows()).IsNull());
}

TEST_P(Materials, PlasticCurvesBeginAnewAtEachTemperature) {
    Translate(kM + "*PLASTIC, HARDENING=KINEMATIC\n9, 0, 20\n10, .1, 20\n5, 0, 100\n6, .2, 100\n");
    EXPECT_EQ(Type("Plastic"), "KINEMATIC");
    EXPECT_EQ(Table("Plastic", kPlastic),
              (TableFound{{{9, 0, 20}, {10, .1, 20}, {5, 0, 100}, {6, .2, 100}}, true, 0}));
}

TEST_P(Materials, UnknownBehavioursStayUnknownAndEndNothing) {
    Translate(
        kM +
        "*DAMAGE INITIATION, CRITERION=X\n1, 2\n*ELASTIC\n1, 0\n*HYPERELASTIC\n1\n*DENSITY\n3\n");
    EXPECT_EQ(Table("Elastic", kIsotropic), (TableFound{{{1, 0}}}));
    EXPECT_EQ(Table("Density", One(8)), (TableFound{{{3}}}));
    EXPECT_EQ(summary.unknownKeywords.size(), 2U);
}

TEST_P(Materials, IncludedFilesGoOnWithTheMaterial) {
    files.texts["more.inp"] = "*ELASTIC\n1, 0\n";
    Translate(kM + "*INCLUDE, INPUT=more.inp\n*DENSITY\n3\n");
    EXPECT_EQ(Table("Elastic", kIsotropic), (TableFound{{{1, 0}}}));
    EXPECT_EQ(Table("Density", One(8)), (TableFound{{{3}}}));
}

TEST_P(Materials, AMaterialInAPartIsReadOnce) {
    Translate("*PART, NAME=P\n*NODE\n1\n" + kM +
              "*ELASTIC\n1, 0\n*DENSITY\n5, 1\n6, 2\n*END PART\n*ASSEMBLY, NAME=A\n"
              "*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n*INSTANCE, NAME=J, PART=P\n*END INSTANCE\n"
              "*END ASSEMBLY\n*MATERIAL, NAME=N\n*DENSITY\n9\n");
    EXPECT_EQ(summary.materials, 2U);
    EXPECT_EQ(Table("Elastic", kIsotropic), (TableFound{{{1, 0}}}));
    EXPECT_EQ(Table("Density", One(8)), (TableFound{{{5, 1}, {6, 2}}, true, 0}));
    EXPECT_EQ(Table("Density", One(8), "N"), (TableFound{{{9}}}));
}

TEST_P(Materials, WhatIsNotKeptIsNoted) {
    Translate(kM +
              "*PLASTIC, RATE=5\n1, 0\n*PLASTIC\n2, 0\n*PLASTIC, RATE=7\n3, 0\n"
              "*ELASTIC, MODULI=LONG TERM\n1, 0\n");
    EXPECT_EQ(Table("Plastic", kPlastic), (TableFound{{{2, 0}}}));
    EXPECT_EQ(summary.notes,
              (std::map<std::string, long>{{"*PLASTIC with RATE, which was not kept", 2},
                                           {"MODULI of *ELASTIC, which was not kept", 1}}));
}

TEST_P(Materials, TypesThatAreNotKeptAreNoted) {
    Translate(kM +
              "*ELASTIC, TYPE=SHORT FIBER\n1\n*PLASTIC, HARDENING=combined\n1\n"
              "*EXPANSION, TYPE=USER\n*DENSITY, PORE FLUID\n1\n*DENSITY\n2\n");
    EXPECT_EQ(KeysOf(Material("M").GetMap(schema::Material_behaviors())), Texts{"Density"});
    EXPECT_EQ(Table("Density", One(8)), (TableFound{{{2}}}));
    EXPECT_EQ(summary.notes, (std::map<std::string, long>{
                                 {"*DENSITY with PORE FLUID, which was not kept", 1},
                                 {"*ELASTIC with TYPE=SHORT FIBER, which was not kept", 1},
                                 {"*EXPANSION with TYPE=USER, which was not kept", 1},
                                 {"*PLASTIC with HARDENING=COMBINED, which was not kept", 1}}));
}

// ------------------------------------------------------------------------------- stability

struct Elasticity {
    char const* name;
    std::string type;
    std::string line;
    std::string finding;  ///< empty for a stable one
};
void PrintTo(Elasticity const& c, std::ostream* out) { *out << c.name; }

class Stability : public ::testing::TestWithParam<Elasticity> {};

std::string const kNotDefinite = "the stiffness is not positive definite";

Elasticity const kElasticities[] = {
    {"Lamina", "LAMINA", "100, 1, 9.99, 1, 1, 1", ""},
    {"LaminaAtTheLimit", "LAMINA", "100, 1, 10, 1, 1, 1", "nu12 is not below the root of E1/E2"},
    {"LaminaBelow", "LAMINA", "100, 1, -10.5, 1, 1, 1", "nu12 is not below the root of E1/E2"},
    {"LaminaOfExtremeModuli", "LAMINA", "1e308, 1e-308, 0, 1, 1, 1", ""},
    {"Engineering", "ENGINEERING CONSTANTS", "4, 1, 1, 1, 1, 0.3, 1, 1\n1", ""},
    {"EngineeringRatio", "ENGINEERING CONSTANTS", "4, 1, 1, 0.3, 2, 0.4, 1, 1\n1",
     "nu13 is not below the root of E1/E3"},
    {"EngineeringThirdRatio", "ENGINEERING CONSTANTS", "4, 1, 9, 0.3, .3, 0.34, 1, 1\n1",
     "nu23 is not below the root of E2/E3"},
    {"EngineeringTogether", "ENGINEERING CONSTANTS", "1, 1, 1, 0.5, 0.5, 0.5, 1, 1\n1",
     "nu12, nu13 and nu23 together are too large for a stiffness that is positive definite"},
    {"EngineeringTogetherJustBelow", "ENGINEERING CONSTANTS", "1, 1, 1, 0.499, 0.5, 0.5, 1, 1\n1",
     ""},
    {"Orthotropic", "ORTHOTROPIC", "2, 1, 2, 1, 1, 2, 1, 1\n1", ""},
    {"OrthotropicOfExtremeModuli", "ORTHOTROPIC",
     "2e300, 1e300, 2e300, 1e300, 1e300, 2e300, 1e-300, 1\n1", ""},
    {"OrthotropicPair", "ORTHOTROPIC", "2, 2, 2, 1, 1, 2, 1, 1\n1", kNotDefinite},
    {"OrthotropicTogether", "ORTHOTROPIC", "1, -.5, 1, -.5, -.5, 1, 1, 1\n1", kNotDefinite},
    {"Anisotropic", "ANISOTROPIC",
     "2, 1, 2, 1, 1, 2, 0, 0\n0, 1, 0, 0, 0, 0, 1, 0\n0, 0, 0, 0.99, 1", ""},
    {"AnisotropicShear", "ANISOTROPIC",
     "2, 1, 2, 1, 1, 2, 0, 0\n0, 1, 0, 0, 0, 0, 1, 0\n0, 0, 0, 1.01, 1", kNotDefinite},
    {"AnisotropicCoupling", "ANISOTROPIC",
     "1, 0, 1, 0, 0, 1, 1.5, 0\n0, 1, 0, 0, 0, 0, 1, 0\n0, 0, 0, 0, 1", kNotDefinite},
};

TEST_P(Stability, IsAFindingAndNoError) {
    InMemory made(kM + "*ELASTIC, TYPE=" + GetParam().type + "\n" + GetParam().line + "\n");
    made.Translate();
    tool::UnstableRows const& unstable = made.summary.unstable;
    if (GetParam().finding.empty()) {
        EXPECT_EQ(unstable.rows, 0);
        return;
    }
    ASSERT_EQ(unstable.rows, 1);
    EXPECT_EQ(unstable.first.at(0).path, "deck.inp");
    EXPECT_EQ(unstable.first.at(0).line, 3);
    EXPECT_EQ(unstable.first.at(0).material, "M");
    EXPECT_EQ(unstable.first.at(0).text, GetParam().finding);
}
INSTANTIATE_TEST_SUITE_P(All, Stability, ::testing::ValuesIn(kElasticities),
                         [](auto const& of) { return std::string(of.param.name); });

TEST(StabilityAlone, ManyRowsAreCountedAndTheFirstTenShown) {
    std::string deck = kM + "*ELASTIC, TYPE=LAMINA\n";
    for (int i = 0; i < 40; ++i) deck += "1, 1, 2, 1, 1, 1, " + std::to_string(i) + "\n";
    InMemory made(deck);
    made.Translate();
    EXPECT_EQ(made.summary.unstable.rows, 40);
    ASSERT_EQ(made.summary.unstable.first.size(), 10U);
    EXPECT_EQ(made.summary.unstable.first[9].line, 12);
}

TEST_P(Materials, NumbersAreKeptExactly) {
    Translate(kM +
              "*EXPANSION, TYPE=ANISO\n-0., 4.9406564584124654e-324, 1.7976931348623157e308, "
              "0.1, 3D-7, 1e-400\n");
    Rows const rows = Table("Expansion", One(9, 6)).rows;
    double const expected[] = {-0.0, 4.9406564584124654e-324, 1.7976931348623157e308, 0.1, 3e-7, 0};
    EXPECT_EQ(std::memcmp(rows.at(0).data(), expected, sizeof expected), 0);
}

TEST_P(Materials, LongTablesAreWrittenInBlocks) {
    int const count = 100'000;
    std::string deck = kM + "*ELASTIC, DEPENDENCIES=1\n";
    char line[96];
    for (int i = 0; i < count; ++i) {
        std::snprintf(line, sizeof line, "%d, 0.25, %d, %d\n", i + 1, i % 100, i / 100);
        deck += line;
    }
    Translate(deck);
    Rows const rows = Table("Elastic", kIsotropic).rows;
    ASSERT_EQ(rows.size(), static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(rows[static_cast<std::size_t>(i)],
                  (std::vector<double>{i + 1.0, 0.25, static_cast<double>(i % 100),
                                       static_cast<double>(i / 100)}));
    }
}

TEST_P(Materials, SubModelsHaveTheMaterialsWithTheirBehaviours) {
    Translate(kStrip + kM +
              "*ELASTIC, DEPENDENCIES=1\n1, .1, 20, 5\n2, .2, 30, 5\n*EXPANSION, ZERO=4\n1\n"
              "*DAMPING, BETA=2\n*SHELL SECTION, ELSET=LEFT, MATERIAL=M\n1\n");
    KOVObjDocument const sub = KOVObjDocument::CreateInMemory();
    KOVSimTransaction transaction(sub.ContextID());
    KOVSimCSet const left(Model().GetMap(schema::Model_elementSets()).Find(KOVString("LEFT")));
    tool::WriteSubModel(Document(), left, sub);
    transaction.Commit();
    KOVSimPosition const material =
        sub.GetMaterialCollection().GetMap(schema::MaterialLib_materials()).Find(KOVString("M"));
    KOVSimMap const behaviours = material.GetMap(schema::Material_behaviors());
    EXPECT_EQ(KeysOf(behaviours), (Texts{"Damping", "Elastic", "Expansion"}));
    EXPECT_EQ(ReadTable(behaviours.Find(KOVString("Elastic")), kIsotropic),
              (TableFound{{{1, .1, 20, 5}, {2, .2, 30, 5}}, true, 1}));
    EXPECT_EQ(RealField(behaviours.Find(KOVString("Expansion")), 1), 4);
    EXPECT_EQ(RealField(behaviours.Find(KOVString("Damping")), 2), 2);
}

// ---------------------------------------------------------------------------- random tables

// Random tables, written as text with all their digits, against what was put in.
TEST_P(Materials, RandomTablesComeBack) {
    unsigned const seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    auto const upTo = [&random](int n) { return static_cast<int>(random() % unsigned(n + 1)); };
    struct Form {
        char const* keyword;
        char const* key;
        TableAsked asked;
        int width;
    };
    Form const forms[] = {
        {"*ELASTIC, TYPE=ANISOTROPIC", "Elastic", Stiffness(21), 21},
        {"*ELASTIC, TYPE=ENGINEERING CONSTANTS", "Elastic", kEngineering, 9},
        {"*ELASTIC, TYPE=LAMINA", "Elastic", kLamina, 6},
        {"*DENSITY", "Density", One(8), 1},
        {"*EXPANSION, TYPE=ORTHO", "Expansion", One(9, 3), 3},
        {"*CONDUCTIVITY, TYPE=ANISO", "Conductivity", One(10, 6), 6},
    };
    std::string deck;
    std::vector<std::pair<Form const*, TableFound>> model;
    std::uniform_real_distribution<double> mantissa(1, 10);
    for (int m = 0; m < 40; ++m) {
        Form const& form = forms[upTo(5)];
        TableFound table;
        table.hasTemperature = upTo(1) == 1;
        table.fields = upTo(3) == 0 ? upTo(19) : upTo(3);
        int const rows = table.hasTemperature || table.fields > 0 ? 1 + upTo(30) : 1;
        deck += "*MATERIAL, NAME=M" + std::to_string(m) + "\n" + form.keyword;
        if (table.fields > 0) deck += ", DEPENDENCIES=" + std::to_string(table.fields);
        deck += "\n";
        std::vector<double> fields(static_cast<std::size_t>(table.fields));
        double temperature = -100;
        for (int r = 0; r < rows; ++r) {
            bool const change = table.fields > 0 && (!table.hasTemperature || upTo(3) == 0);
            if (change) fields[static_cast<std::size_t>(upTo(table.fields - 1))] += 0.5;
            temperature = change ? -100 : temperature + mantissa(random);
            std::vector<double> values;
            for (int i = 0; i < form.width; ++i) {
                values.push_back(std::ldexp(mantissa(random), upTo(600) - 300));
            }
            std::vector<std::string> words;
            char word[40];
            auto const add = [&](double value) {
                std::snprintf(word, sizeof word, "%.17g", value);
                words.push_back(word);
            };
            for (double const value : values) add(value);
            if (table.hasTemperature) {
                add(temperature);
                values.push_back(temperature);
            } else {
                words.push_back("");
            }
            for (double const field : fields) {
                add(field);
                values.push_back(field);
            }
            for (std::size_t i = 0; i < words.size(); ++i) {
                bool const ends = i % 8 == 7 || i + 1 == words.size();
                deck += words[i] + (ends ? (upTo(1) == 0 ? "\n" : ",\n") : ", ");
            }
            table.rows.push_back(values);
        }
        model.emplace_back(&form, table);
    }
    Translate(deck);
    for (std::size_t m = 0; m < model.size(); ++m) {
        EXPECT_EQ(Table(model[m].first->key, model[m].first->asked, "M" + std::to_string(m)),
                  model[m].second)
            << "material " << m;
    }
}

// ----------------------------------------------------------------------------------- errors

struct MaterialError {
    char const* name;
    std::string deck;  ///< behind *MATERIAL, NAME=M, which is line 1
    std::string error;
};
void PrintTo(MaterialError const& c, std::ostream* out) { *out << c.name; }

class MaterialErrors : public ::testing::TestWithParam<MaterialError> {};

MaterialError const kCases[] = {
    {"OutsideOfAMaterial", "*NODE\n1\n*ELASTIC\n1, 0\n",
     "deck.inp:4: *ELASTIC outside of a material; expected it behind a *MATERIAL"},
    {"BehindASection", "*HEADING\n*SPECIFIC HEAT\n1\n",
     "deck.inp:3: *SPECIFIC HEAT outside of a material; expected it behind a *MATERIAL"},
    {"Twice", "*DENSITY\n1\n*ELASTIC\n1, 0\n*DENSITY\n1\n",
     "deck.inp:6: material 'M' has a second *DENSITY, first at line 2; expected one"},
    {"TwiceWithAnotherType", "*ELASTIC\n1, 0\n*ELASTIC, TYPE=SHEAR\n1\n",
     "deck.inp:4: material 'M' has a second *ELASTIC, first at line 2; expected one"},
    {"NoDataLine", "*ELASTIC\n",
     "deck.inp:2: *ELASTIC without a data line; expected E, nu, temperature"},
    {"NoDataLineBeforeAKeyword", "*DENSITY, DEPENDENCIES=2\n*HEADING\n",
     "deck.inp:2: *DENSITY without a data line; expected density, temperature, field variable 1, "
     "field variable 2"},
    {"UnknownType", "*ELASTIC, TYPE=WOODEN\n1\n",
     "deck.inp:2: 'WOODEN' is not known; expected TYPE=ISOTROPIC, ORTHOTROPIC, ENGINEERING "
     "CONSTANTS, ANISOTROPIC, LAMINA, SHEAR or TRACTION"},
    {"TooShortAType", "*ELASTIC, TYPE=LA\n1\n",
     "deck.inp:2: 'LA' is not known; expected TYPE=ISOTROPIC, ORTHOTROPIC, ENGINEERING CONSTANTS, "
     "ANISOTROPIC, LAMINA, SHEAR or TRACTION"},
    {"UnknownHardening", "*PLASTIC, HARDENING=SOFT\n1\n",
     "deck.inp:2: 'SOFT' is not known; expected HARDENING=ISOTROPIC or KINEMATIC"},
    {"UnknownParameter", "*DENSITY, TYPE=ISO\n1\n",
     "deck.inp:2: *DENSITY has no parameter 'TYPE'; expected DEPENDENCIES, PORE FLUID"},
    {"Dependencies", "*ELASTIC, DEPENDENCIES=0\n1, 0\n",
     "deck.inp:2: '0' is no number of field variables; expected a whole number from 1 to 1000"},
    {"RealDependencies", "*ELASTIC, DEPENDENCIES=1.5\n1, 0\n",
     "deck.inp:2: '1.5' is no number of field variables; expected a whole number from 1 to 1000"},
    {"TooManyDependencies", "*ELASTIC, DEPENDENCIES=1001\n1, 0\n",
     "deck.inp:2: '1001' is no number of field variables; expected a whole number from 1 to 1000"},
    {"NegativeDependencies", "*ELASTIC, DEPENDENCIES=-1\n1, 0\n",
     "deck.inp:2: '-1' is no number of field variables; expected a whole number from 1 to 1000"},
    {"TextualDependencies", "*ELASTIC, DEPENDENCIES=x\n1, 0\n",
     "deck.inp:2: 'x' is no number of field variables; expected a whole number from 1 to 1000"},
    // ---- counts ----
    {"TooFewValues", "*ELASTIC\n1\n", "deck.inp:3: nu is missing; expected E, nu, temperature"},
    {"BlankValue", "*ELASTIC\n, 0.3\n", "deck.inp:3: E is missing; expected E, nu, temperature"},
    {"TooManyValues", "*ELASTIC\n1, 0, 20, 5\n",
     "deck.inp:3: more than 3 values on the line; expected E, nu, temperature"},
    {"MissingFieldVariable", "*ELASTIC, DEPENDENCIES=1\n1, 0, 20\n",
     "deck.inp:3: field variable 1 is missing; expected E, nu, temperature, field variable 1"},
    {"ManyFieldVariablesAreNotAllNamed", "*DENSITY, DEPENDENCIES=1000\n1, 20\n",
     "deck.inp:3: field variable 1 is missing; expected density, temperature, field variable 1, "
     "field variable 2, field variable 3, ... field variable 1000"},
    {"MissingSecondLine", "*ELASTIC, TYPE=ENGINEERING CONSTANTS\n1,1,1,0,0,0,1,1\n*DENSITY\n1\n",
     "deck.inp:3: G23 is missing; expected E1, E2, E3, nu12, nu13, nu23, G12, G13, G23, "
     "temperature"},
    {"NineOnALine", "*ELASTIC, TYPE=ENGINEERING CONSTANTS\n1,1,1,0,0,0,1,1,1\n",
     "deck.inp:3: more than 8 values on the line; expected E1, E2, E3, nu12, nu13, nu23, G12, G13, "
     "G23, temperature"},
    {"TooManyOnTheSecondLine", "*ELASTIC, TYPE=ENGINEERING CONSTANTS\n1,1,1,0,0,0,1,1\n1,2,3\n",
     "deck.inp:4: more than 2 values on the line; expected E1, E2, E3, nu12, nu13, nu23, G12, G13, "
     "G23, temperature"},
    {"DampingWithData", "*DAMPING, ALPHA=1\n1\n",
     "deck.inp:3: a data line behind *DAMPING; expected a keyword"},
    {"DampingAlone", "*DAMPING\n",
     "deck.inp:2: *DAMPING without a parameter; expected any of ALPHA, BETA, COMPOSITE, "
     "STRUCTURAL"},
    // ---- numbers ----
    {"Text", "*ELASTIC\nstiff, 0\n", "deck.inp:3: 'stiff' is no number; expected E"},
    {"Infinity", "*DENSITY\ninf\n", "deck.inp:3: 'inf' is no number; expected density"},
    {"NotANumber", "*EXPANSION\nnan\n", "deck.inp:3: 'nan' is no number; expected alpha"},
    {"TooLarge", "*ELASTIC\n1e999, 0\n", "deck.inp:3: '1e999' is too large a number; expected E"},
    {"Temperature", "*ELASTIC\n1, 0, hot\n",
     "deck.inp:3: 'hot' is no number; expected temperature"},
    {"ZeroModulus", "*ELASTIC\n0, 0\n", "deck.inp:3: '0' is no number above 0; expected E"},
    {"NegativeModulus", "*ELASTIC, TYPE=LAMINA\n1, -2, 0, 1, 1, 1\n",
     "deck.inp:3: '-2' is no number above 0; expected E2"},
    {"PoissonAboveHalf", "*ELASTIC\n1, 0.51\n",
     "deck.inp:3: '0.51' is out of range; expected nu above -1 and up to 0.5"},
    {"PoissonOfMinusOne", "*ELASTIC\n1, -1\n",
     "deck.inp:3: '-1' is out of range; expected nu above -1 and up to 0.5"},
    {"NegativeDensity", "*DENSITY\n-7850\n",
     "deck.inp:3: '-7850' is below 0; expected density from 0 upward"},
    {"NegativeYieldStress", "*PLASTIC\n-1, 0\n",
     "deck.inp:3: '-1' is no number above 0; expected yield stress"},
    {"NegativeDamping", "*DAMPING, ALPHA=-1\n",
     "deck.inp:2: '-1' is below 0; expected ALPHA from 0 upward"},
    {"DampingText", "*DAMPING, BETA=TABULAR\n",
     "deck.inp:2: 'TABULAR' is no number; expected BETA"},
    {"ZeroText", "*EXPANSION, ZERO=20C\n1\n", "deck.inp:2: '20C' is no number; expected ZERO"},
    {"ZeroTooLarge", "*EXPANSION, ZERO=1e999\n1\n",
     "deck.inp:2: '1e999' is too large a number; expected ZERO"},
    {"ZeroWithoutValue", "*EXPANSION, ZERO=\n1\n",
     "deck.inp:2: parameter ZERO has no value; expected ZERO=..."},
    // ---- order ----
    {"FallingTemperatures", "*ELASTIC\n1, 0, 20\n1, 0, 10\n",
     "deck.inp:4: temperature 10 behind 20; expected ascending temperatures"},
    {"EqualTemperatures", "*ELASTIC\n1, 0, 20\n1, 0, 20\n",
     "deck.inp:4: temperature 20 behind 20; expected ascending temperatures"},
    {"FallingWithinFieldVariables", "*DENSITY, DEPENDENCIES=1\n1, 20, 1\n1, 10, 2\n1, 5, 2\n",
     "deck.inp:5: temperature 5 behind 10; expected ascending temperatures"},
    {"SecondRowWithoutTemperature", "*DENSITY\n1\n2\n",
     "deck.inp:4: a second row without temperature; expected a temperature in each row"},
    {"SameFieldVariables", "*DENSITY, DEPENDENCIES=1\n1,, 5\n2,, 5\n",
     "deck.inp:4: a second row with the same field variables; expected rows that differ"},
    {"TemperatureMissing", "*DENSITY\n1, 20\n2\n",
     "deck.inp:4: no temperature, unlike the row at line 3; expected temperatures in all rows or "
     "in none"},
    {"TemperatureInTheSecondRow", "*PLASTIC\n1, 0\n2, .1, 20\n",
     "deck.inp:4: a temperature, unlike the row at line 3; expected temperatures in all rows or "
     "in none"},
    {"CurveWithoutBeginning", "*PLASTIC\n1, 0.01\n",
     "deck.inp:3: plastic strain 0.01 at the beginning of a curve; expected 0"},
    {"SecondCurveWithoutBeginning", "*PLASTIC\n1, 0, 20\n1, 0.01, 30\n",
     "deck.inp:4: plastic strain 0.01 at the beginning of a curve; expected 0"},
    {"FallingStrain", "*PLASTIC\n1, 0\n2, .2\n3, .1\n",
     "deck.inp:5: plastic strain 0.1 behind 0.2; expected ascending numbers"},
    {"FallingTemperatureOfCurves", "*PLASTIC\n1, 0, 20\n1, 0, 10\n",
     "deck.inp:4: temperature 10 behind 20; expected ascending temperatures"},
};

TEST_P(MaterialErrors, AreToldWithFileAndLine) {
    EXPECT_EQ(InMemory(kM + GetParam().deck).Error(), GetParam().error);
}
INSTANTIATE_TEST_SUITE_P(All, MaterialErrors, ::testing::ValuesIn(kCases),
                         [](auto const& of) { return std::string(of.param.name); });

TEST(MaterialErrorsAlone, ABehaviourBeforeAnyMaterial) {
    EXPECT_EQ(InMemory("*ELASTIC\n1, 0\n").Error(),
              "deck.inp:1: *ELASTIC outside of a material; expected it behind a *MATERIAL");
}

TEST(MaterialErrorsAlone, StrictDecksHoldKeptParametersOnly) {
    tool::TranslationOptions options;
    options.strict = true;
    EXPECT_EQ(InMemory(kM + "*PLASTIC, RATE=5\n1, 0\n").Error(options),
              "deck.inp:2: parameter RATE of *PLASTIC is not kept; expected kept ones only");
    EXPECT_EQ(InMemory(kM + "*ELASTIC, MODULI=LONG TERM\n1, 0\n").Error(options),
              "deck.inp:2: parameter MODULI of *ELASTIC is not kept; expected kept ones only");
}

TEST(MaterialErrorsAlone, TheSecondOfAnotherFileNamesTheFirst) {
    EXPECT_EQ(InMemory(kM + "*DENSITY\n1\n*INCLUDE, INPUT=more.inp\n")
                  .File("more.inp", "*DENSITY\n2\n")
                  .Error(),
              "more.inp:1: material 'M' has a second *DENSITY, first at deck.inp:2; expected one");
}

// ------------------------------------------------------------------------ the descriptions

TEST(MaterialBehaviorTables, DescribeEachColumnOnce) {
    for (tool::BehaviorKind const& kind : tool::BehaviorKinds()) {
        EXPECT_EQ(tool::FindBehavior(kind.name), &kind);
        for (tool::BehaviorTable const& table : kind.tables) {
            EXPECT_EQ(tool::FindTable(kind, table.type), &table);
            int columns = 0;
            for (tool::TablePart const& part : table.parts) {
                columns += part.length;
                EXPECT_LT(part.part, 32);
            }
            EXPECT_EQ(columns, static_cast<int>(table.columns.size()));
            // A row without temperature takes as many lines as one with it.
            EXPECT_NE(columns % 8, 0);
        }
    }
    EXPECT_EQ(tool::FindBehavior("Colour"), nullptr);
}

TEST(MaterialBehaviorTables, AllKeywordsLeadToTheirOwnBehaviour) {
    for (tool::BehaviorKind const& kind : tool::BehaviorKinds()) {
        std::string deck = std::string("*") + kind.keyword;
        EXPECT_EQ(InMemory(deck + "\n").Error(),
                  "deck.inp:1: " + tool::UpperCase(deck) +
                      " outside of a material; expected it behind a *MATERIAL");
        char const* const data = kind.tables.empty() ? ", ALPHA=1\n" : "\n1\n";
        bool const two = kind.tables.empty() ? false : kind.tables[0].columns.size() == 2;
        InMemory made(kM + "*" + kind.keyword + (two ? "\n1, 0\n" : data));
        made.Translate();
        KOVSimPosition const material = made.document.GetMaterialCollection()
                                            .GetMap(schema::MaterialLib_materials())
                                            .Find(KOVString("M"));
        EXPECT_EQ(KeysOf(material.GetMap(schema::Material_behaviors())), Texts{kind.name});
    }
}

}  // namespace
}  // namespace kov::test
