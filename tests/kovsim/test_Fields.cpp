// What `kovsim fields` shows.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "ResultCommandFixture.h"

namespace kov::test {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class Fields : public ResultCommandTest {
  protected:
    Fields() : ResultCommandTest("fields") {}

    // Two static frames and two modes; U in all, S at two points of each bar in the second frame.
    void BuildTwoSteps() const {
        Build(kBars, [](ResultBuilder& r) {
            KOVSimPosition const load = r.Step("Load");
            for (int i = 1; i <= 2; ++i) {
                KOVSimPosition const frame =
                    r.Frame(load, i, 0.5 * i, 0.5 * i, i == 2 ? "end" : "");
                r.Whole(load, frame, "U_D", zdm_Algebraic_VECTOR, schema::Grid_Node(), {0, 1, 2},
                        ResultBuilder::Vector(), {0, 0, 0, 3.0 * i, 4.0 * i, 0, 1, -2.0 * i, 0});
                if (i == 2) continue;
                KOVSimPosition const stress =
                    r.Field(load, frame, "S0", zdm_Algebraic_TENSOR2_SYMMETRIC,
                            schema::Grid_IntegrationPoint());
                for (int point = 1; point <= 2; ++point) {
                    r.Drawer(stress, r.Serial(stress, point), {0, 1}, ResultBuilder::Tensor(),
                             {1.0 * point, 0, 0, 0, 0, 0, 5.0 * point, 0, 0, 0, 0, 0});
                }
            }
            KOVSimPosition const modes = r.Step("Modes", schema::Step_Lin_Frequency());
            for (int i = 1; i <= 2; ++i) {
                r.Whole(modes, r.Frame(modes, i, 12.5 * i, 0), "U_D", zdm_Algebraic_VECTOR,
                        schema::Grid_Node(), {0, 2}, ResultBuilder::Vector(),
                        {1, 0, 0, 0, 0, -1.0 * i});
            }
        });
    }
    // One scalar field of that name at the three nodes.
    void BuildScalar(std::vector<double> const& values, std::string const& deck = kBars) const {
        Build(deck, [&](ResultBuilder& r) {
            KOVSimPosition const step = r.Step("Load");
            std::vector<int> nodes(values.size());
            std::iota(nodes.begin(), nodes.end(), 0);
            r.Whole(step, r.Frame(step, 1, 1, 1), "NT", zdm_Algebraic_SCALAR, schema::Grid_Node(),
                    nodes, ResultBuilder::Scalar(), values);
        });
    }
    // The only field, as JSON.
    JsonValue Only() const { return Json()["steps"][0]["listed"][0]["fields"][0]; }
};

TEST_F(Fields, EachFieldStandsOnceInAStepAsInItsLastFrame) {
    BuildTwoSteps();
    EXPECT_EQ(
        Show({}),
        "step 1 Load: static step, 2 frames, time 0.5 to 1\n"
        "  variable  field  on                  rows  frames  frame  component    minimum  at      "
        "   maximum  at\n"
        "  U         U_D    nodes                  3       2      2  U1                 0  10      "
        "         6  20\n"
        "                                                            U2                -4  30      "
        "         8  20\n"
        "                                                            U3                 0  10      "
        "         0  10\n"
        "                                                            (magnitude)        0  10      "
        "        10  20\n"
        "  S         S0     integration points     4       1      1  S11                1  7 point "
        "1       10  8 point 2\n"
        "                                                            S22                0  7 point "
        "1        0  7 point 1\n"
        "                                                            S33                0  7 point "
        "1        0  7 point 1\n"
        "                                                            S12                0  7 point "
        "1        0  7 point 1\n"
        "                                                            S23                0  7 point "
        "1        0  7 point 1\n"
        "                                                            S13                0  7 point "
        "1        0  7 point 1\n"
        "                                                            (Mises)            1  7 point "
        "1       10  8 point 2\n"
        "step 2 Modes: natural frequency extraction, 2 frames, frequency 12.5 to 25\n"
        "  variable  field  on     rows  frames  frame  component    minimum  at  maximum  at\n"
        "  U         U_D    nodes     2       2      2  U1                 0  30        1  10\n"
        "                                               U2                 0  10        0  10\n"
        "                                               U3                -2  30        0  10\n"
        "                                               (magnitude)        1  10        2  30\n");
}

TEST_F(Fields, AStepAndFramesAreChosen) {
    BuildTwoSteps();
    std::string const first = Show({"--step", "load", "--frame", "1"});
    EXPECT_THAT(first, HasSubstr("frame 1: increment 1, time 0.5, total time 0.5\n"));
    EXPECT_THAT(first, Not(HasSubstr("Modes")));
    EXPECT_THAT(Show({"--step", "1", "--frame", "last"}),
                HasSubstr("frame 2: increment 2, time 1, total time 1, end\n"));
    EXPECT_THAT(Show({"--step", "2", "--frame", "last"}),
                HasSubstr("frame 2: increment 2, frequency 25\n"));
    JsonValue const all = Json({"--frame", "all"});
    EXPECT_EQ(all["steps"][0]["listed"].Size(), 2U);
    EXPECT_EQ(all["steps"][1]["listed"][1]["frame"]["value"].number, 25.0);
    EXPECT_THAT(Show({"--frame", "none"}), HasSubstr("outside of frames\n    no fields\n"));
}

TEST_F(Fields, WhatIsNotThereIsToldWithTheNearest) {
    BuildTwoSteps();
    EXPECT_EQ(Show({"--step", "Loads"}), "no step 'Loads' among 2 steps; did you mean 'Load'?\n");
    EXPECT_EQ(Show({"--step", "3"}), "no step '3' among 2 steps\n");
    EXPECT_EQ(Show({"--step", "Load", "--frame", "3"}), "no frame 3: step Load has 2 frames\n");
    EXPECT_EQ(Show({"--field", "U_E"}), "no field 'U_E' there; did you mean 'U_D'?\n");
    for (std::string const frame : {"0", "-1", "first", "1.5", "99999999999"}) {
        auto const result = Ask({"--frame", frame});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors, "kovsim: '" + frame +
                                     "' is no frame; expected a number from 1 upward, last, all, "
                                     "or none\n");
    }
}

TEST_F(Fields, FieldsAreChosenByNameLabelAndComponent) {
    BuildTwoSteps();
    for (std::string const word : {"S0", "s0", "S", "S12", "s12"}) {
        std::string const text = Show({"--field", word});
        EXPECT_THAT(text, HasSubstr("S11")) << word;
        EXPECT_THAT(text, Not(HasSubstr("U1"))) << word;
    }
    EXPECT_THAT(Show({"--field", "S,U"}), HasSubstr("U1"));
}

TEST_F(Fields, JsonHasAllDigitsAndPlaces) {
    BuildTwoSteps();
    JsonValue const json = Json({"--field", "S"});
    JsonValue const& step = json["steps"][0];
    EXPECT_EQ(step["name"].text, "Load");
    EXPECT_EQ(step["type"].text, "Step_Gen_Static");
    EXPECT_EQ(step["frames"].Int(), 2);
    EXPECT_EQ(step["first"].number, 0.5);
    EXPECT_EQ(step["last"].number, 1.0);
    JsonValue const& field = step["listed"][0]["fields"][0];
    EXPECT_EQ(field["name"].text, "S0");
    EXPECT_EQ(field["grid"].text, "Grid_IntegrationPoint");
    EXPECT_EQ(field["kind"].text, "symmetric tensor");
    EXPECT_EQ(field["frames"].Int(), 1);
    EXPECT_EQ(field["frame"]["number"].Int(), 1);
    EXPECT_EQ(field["rows"].Int(), 4);
    EXPECT_EQ(field["points"].Int(), 2);
    ASSERT_EQ(field["components"].Size(), 7U);
    JsonValue const& first = field["components"][0];
    EXPECT_EQ(first["label"].text, "S11");
    EXPECT_EQ(first["symbol"].text, "C_11");
    EXPECT_EQ(first["minimum"]["value"].number, 1.0);
    EXPECT_EQ(first["minimum"]["label"].Int(), 7);
    EXPECT_EQ(first["minimum"]["point"].Int(), 1);
    EXPECT_EQ(first["maximum"]["value"].number, 10.0);
    EXPECT_EQ(first["maximum"]["label"].Int(), 8);
    EXPECT_EQ(first["maximum"]["ordinal"].Int(), 1);
    EXPECT_EQ(first["maximum"]["point"].Int(), 2);
    JsonValue const& mises = field["components"][6];
    EXPECT_EQ(mises["label"].text, "Mises");
    EXPECT_TRUE(mises["derived"].truth);
    EXPECT_TRUE(mises["symbol"].IsNull());
    EXPECT_EQ(mises["maximum"]["value"].number, 10.0);
}

TEST_F(Fields, TheInstanceIsNamedInAnAssembly) {
    BuildScalar({3, 1, 2, 5, 4, 9}, kTwice);
    std::string const text = Show({});
    EXPECT_THAT(text, HasSubstr("Left: 20"));
    EXPECT_THAT(text, HasSubstr("Right: 30"));
    EXPECT_EQ(Only()["components"][0]["maximum"]["instance"].text, "Right");
}

TEST_F(Fields, OfEqualValuesTheLowestPlaceIsNamed) {
    BuildScalar({4, 4, 4});
    JsonValue const field = Only();
    EXPECT_EQ(field["components"][0]["minimum"]["label"].Int(), 10);
    EXPECT_EQ(field["components"][0]["maximum"]["label"].Int(), 10);
}

TEST_F(Fields, WhatIsNoNumberIsCountedAndNotCompared) {
    BuildScalar({kNaN, 2, kNaN});
    JsonValue const field = Only();
    EXPECT_EQ(field["components"][0]["nan"].Int(), 2);
    EXPECT_EQ(field["components"][0]["minimum"]["value"].number, 2.0);
    EXPECT_THAT(Show({}), HasSubstr("no number\n"));
    BuildScalar({kNaN});
    EXPECT_TRUE(Only()["components"][0]["minimum"].IsNull());
    BuildScalar({1});
    EXPECT_THAT(Show({}), Not(HasSubstr("no number")));
}

TEST_F(Fields, InfinitiesAreCompared) {
    double const infinity = std::numeric_limits<double>::infinity();
    BuildScalar({-infinity, 0, infinity});
    EXPECT_THAT(Show({}), HasSubstr(" -inf  10 "));
    EXPECT_THAT(Show({}), HasSubstr(" inf  30\n"));
    BuildScalar({infinity, infinity});
    EXPECT_EQ(Only()["components"][0]["minimum"]["label"].Int(), 10);
}

TEST_F(Fields, AThousandFramesAreShownInAFewLines) {
    Build(kBars, [](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        for (int i = 1; i <= 1000; ++i) {
            r.Whole(step, r.Frame(step, i, i, i), "NT", zdm_Algebraic_SCALAR, schema::Grid_Node(),
                    {0}, ResultBuilder::Scalar(), {1.0 * i});
        }
    });
    std::string const text = Show({});
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);
    EXPECT_THAT(text, HasSubstr("1000 frames, time 1 to 1000\n"));
    EXPECT_EQ(Only()["frames"].Int(), 1000);
    EXPECT_EQ(Only()["components"][0]["minimum"]["value"].number, 1000.0);
}

TEST_F(Fields, FieldsOutsideOfFramesAreShown) {
    Build(kBars, [](ResultBuilder& r) {
        r.Whole(r.Step("Load"), {}, "NT", zdm_Algebraic_SCALAR, schema::Grid_Node(), {1},
                ResultBuilder::Scalar(), {8});
    });
    EXPECT_THAT(Show({}), HasSubstr("step 1 Load: static step, no frames\n"));
    EXPECT_THAT(Show({}), HasSubstr("  none  NT"));
    EXPECT_THAT(Show({"--frame", "none"}), HasSubstr("outside of frames\n"));
    EXPECT_TRUE(Only()["frame"].IsNull());
    EXPECT_EQ(Show({"--frame", "1"}), "no frame 1: step Load has 0 frames\n");
}

// The part that is cut out keeps what stands on its nodes and elements.
TEST_F(Fields, ExtractedPartsKeepTheirResults) {
    Build(kBars + "*ELSET, ELSET=E\n8\n", [](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const frame = r.Frame(step, 3, 0.5, 1.5, "end");
        r.Whole(step, frame, "NT", zdm_Algebraic_SCALAR, schema::Grid_Node(), {0, 1, 2},
                ResultBuilder::Scalar(), {10, 20, 30});
        KOVSimPosition const points =
            r.Field(step, frame, "PEEQ", zdm_Algebraic_SCALAR, schema::Grid_IntegrationPoint());
        for (int point = 1; point <= 2; ++point) {
            r.Drawer(points, r.Serial(points, point), {0, 1}, ResultBuilder::Scalar(),
                     {1.0 * point, 5.0 * point});
        }
        r.Whole(step, frame, "EVOL", zdm_Algebraic_SCALAR, schema::Grid_Element(), {0},
                ResultBuilder::Scalar(), {4});
    });
    ASSERT_EQ(work.Run({"extract", "m.ksd", "--set", "E", "-o", "part.ksd"}).status, 0);
    auto const result = work.Run({"fields", "part.ksd"});
    EXPECT_EQ(
        result.output,
        "step 1 Load: static step, 1 frame, time 0.5\n"
        "  variable  field  on                  rows  frames  frame  component  minimum  at     "
        "    maximum  at\n"
        "  NT        NT     nodes                  2       1      1  NT              20  20     "
        "         30  30\n"
        "  PEEQ      PEEQ   integration points     2       1      1  PEEQ             5  8 point "
        "1       10  8 point 2\n");
    EXPECT_EQ(work.Run({"verify", "part.ksd"}).status, 0);
}

TEST_F(Fields, InfoCountsThem) {
    BuildTwoSteps();
    auto const text = work.Run({"info", "m.ksd"});
    EXPECT_THAT(text.output, HasSubstr("\nframes                             4\n"
                                       "result fields                      5\n"));
    JsonValue const json = ParseJson(work.Run({"info", "m.ksd", "--json"}).output);
    EXPECT_EQ(json["frames"].Int(), 4);
    EXPECT_EQ(json["fields"].Int(), 5);
}

TEST_F(Fields, ADocumentWithoutStepsHasNone) {
    Build(kBars, [](ResultBuilder&) {});
    EXPECT_EQ(Show({}), "no steps\n");
    EXPECT_EQ(Json()["steps"].Size(), 0U);
    EXPECT_EQ(Show({"--step", "1"}), "no step '1' among 0 steps\n");
    EXPECT_EQ(Show({"--field", "U"}), "no field 'U' there\n");
}

// ---- documents of other writers ----

TEST_F(Fields, AVariableThatNobodyKnowsGoesByItsOwnName) {
    Build(kBars, [](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        r.Whole(step, r.Frame(step, 1, 1, 1), "my value", -1, schema::Grid_Node(), {0},
                {zdm_Component_C_1, zdm_Component_C_12_21}, {1, 2});
    });
    JsonValue const field = Only();
    EXPECT_EQ(field["label"].text, "my value");
    EXPECT_TRUE(field["algebraicType"].IsNull());
    EXPECT_EQ(field["kind"].text, "other");
    EXPECT_EQ(field["components"][0]["label"].text, "my value1");
    EXPECT_EQ(field["components"][1]["label"].text, "my value12");
}

TEST_F(Fields, OnAGridThatTheMapDoesNotHaveAFieldGoesByItsOwnNameIfThatIsALabel) {
    Build(kBars, [](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const frame = r.Frame(step, 1, 1, 1);
        for (char const* const name : {"TEMP", "P", "S0"}) {
            r.Whole(step, frame, name, -1, schema::Grid_Node(), {0}, ResultBuilder::Scalar(), {1});
        }
    });
    JsonValue const fields = Json()["steps"][0]["listed"][0]["fields"];
    ASSERT_EQ(fields.Size(), 3U);
    EXPECT_EQ(fields[0]["label"].text, "TEMP");
    EXPECT_EQ(fields[0]["components"][0]["label"].text, "TEMP");
    EXPECT_EQ(fields[1]["label"].text, "P");
    EXPECT_EQ(fields[2]["label"].text, "S");
}

TEST_F(Fields, AFieldWithoutAnythingHasNoValues) {
    Build(kBars, [](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const frame = r.Frame(step, 1, 1, 1);
        KOVSimPosition const bare = r.New(schema::Field_Meshed());
        frame.GetSet(schema::Frame_fields()).Insert(bare);
        // A serial field without drawers, and a drawer without rows.
        r.Serial(r.Field(step, frame, "U_D", zdm_Algebraic_VECTOR, schema::Grid_Node()));
        r.Whole(step, frame, "V_D", zdm_Algebraic_VECTOR, schema::Grid_Node(), {},
                ResultBuilder::Vector(), {});
    });
    JsonValue const json = Json();
    JsonValue const& fields = json["steps"][0]["listed"][0]["fields"];
    ASSERT_EQ(fields.Size(), 3U);
    for (JsonValue const& field : fields.items) {
        EXPECT_EQ(field["rows"].Int(), 0);
        EXPECT_EQ(field["components"].Size(), 0U);
    }
    EXPECT_THAT(Show({}), HasSubstr("no values"));
}

TEST_F(Fields, WhatCannotBeReadSaysWhy) {
    Build(kBars, [](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const frame = r.Frame(step, 1, 1, 1);
        // No drawer under the drawers.
        KOVSimPosition const none =
            r.Field(step, frame, "U_D", zdm_Algebraic_VECTOR, schema::Grid_Node());
        r.Serial(none).GetSet(schema::SerialField_drawers()).Insert(frame);
        // Nodes and elements in one field.
        KOVSimPosition const mixed =
            r.Whole(step, frame, "V_D", zdm_Algebraic_VECTOR, schema::Grid_Node(), {0},
                    ResultBuilder::Vector(), {1, 2, 3});
        KOVSimPosition const other =
            r.Whole(step, frame, "EVOL", zdm_Algebraic_SCALAR, schema::Grid_Element(), {0},
                    ResultBuilder::Scalar(), {1});
        r.Drawer(KOVSimDistribution(KOVObjMeshedField(other).GetDistribution().GetDistribution()),
                 r.Serial(mixed), {1}, ResultBuilder::Scalar(), {1});
    });
    std::string const text = Show({});
    EXPECT_THAT(text, HasSubstr("what a serial field has under its drawers is none\n"));
    EXPECT_THAT(text, HasSubstr("its drawers stand on items of several sorts\n"));
    EXPECT_THAT(text, HasSubstr("EVOL"));
    JsonValue const json = Json({"--field", "V"});
    EXPECT_EQ(json["steps"][0]["listed"][0]["fields"][0]["fault"].text,
              "its drawers stand on items of several sorts");
}

// A distribution over nodes, or over nodes by elements, with numbers of that kind.
KOVSimDistribution Odd(KOVObjDocument const& document, int dimensions, KOVSimTypeKey key) {
    KOVObjMesh const mesh(document.GetMesh());
    KOVSimGrid::CollectionArray grid(dimensions);
    grid.Get(0) = mesh.GetNodeCollection().GetCollection();
    if (dimensions == 2) grid.Get(1) = mesh.GetElementCollection().GetCollection();
    return KOVSimDistribution(
        document.CreateDistribution(KOVSimGrid(grid), KOVSimRangeType(key), schema::Grid_Node()));
}

TEST_F(Fields, AScalarMayHaveNoComponentsAndWholeNumbers) {
    Build(kBars, [&](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const field =
            r.Field(step, r.Frame(step, 1, 1, 1), "NT", zdm_Algebraic_SCALAR, schema::Grid_Node());
        KOVSimDistribution const distribution = Odd(r.Document(), 1, KOVSimTypeKeyInt);
        KOVSimCollection nodes(distribution.Grid().Collections().ConstGet(0));
        int const values[] = {7, -4};
        KOVSimTransfer transfer(distribution);
        transfer.SetWrite().SetMakeNewDrawer();
        transfer.SetDim(0, nodes.CreateTempCSetStrided(1, 2, 1, 1)).CheckView();
        transfer.SetBuffer(0, values, sizeof values).ExecWrite().RelinquishBuffers();
        r.Serial(field).GetSet(schema::SerialField_drawers()).Insert(transfer.DrawerID());
    });
    JsonValue const field = Only();
    EXPECT_EQ(field["components"].Size(), 1U);
    EXPECT_EQ(field["components"][0]["label"].text, "NT");
    EXPECT_EQ(field["components"][0]["minimum"]["value"].number, -4.0);
    EXPECT_EQ(field["components"][0]["minimum"]["label"].Int(), 30);
}

TEST_F(Fields, ItemsByItemsAreOdd) {
    Build(kBars, [&](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const field =
            r.Field(step, r.Frame(step, 1, 1, 1), "NT", zdm_Algebraic_SCALAR, schema::Grid_Node());
        r.Drawer(Odd(r.Document(), 2, KOVSimTypeKeyDouble), r.Serial(field), {0}, {0}, {1});
    });
    EXPECT_EQ(Only()["fault"].text, "its values do not stand on items by components");
}

TEST_F(Fields, ADamagedPageIsAnError) {
    BuildScalar({1.0, 123.456, 2});
    std::string const segment = work / "m.ksd/bulk/000001.seg";
    std::string bytes = ReadFile(segment);
    double const value = 123.456;
    std::size_t const at =
        bytes.find(std::string(reinterpret_cast<char const*>(&value), sizeof value));
    ASSERT_NE(at, std::string::npos);
    bytes[at] ^= 1;
    WriteFile(segment, bytes);
    auto const result = Ask({});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors.substr(0, 15), "kovsim: m.ksd: ");
}

}  // namespace
}  // namespace kov::test
