// Fields that `kovsim export` carries into files for viewers.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "ResultCommandFixture.h"
#include "VtuFile.h"

namespace kov::test {
namespace {

using testing::DoubleEq;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsNan;
using testing::NanSensitiveDoubleEq;
using testing::Not;
using testing::Pointwise;

// Equal bit for bit but for not-a-number.
std::string Text(std::vector<double> const& values) {
    std::string text;
    for (double const value : values) {
        text += (text.empty() ? "" : " ") + (std::isnan(value) ? "-" : std::to_string(value));
        text.erase(text.find_last_not_of('0') + 1);
    }
    return text;
}

class ExportFields : public ResultCommandTest {
  protected:
    ExportFields() : ResultCommandTest("export") {}

    std::string Made(std::vector<std::string> arguments, char const* file = "f.vtu") const {
        std::filesystem::remove_all(work / file);
        arguments.insert(arguments.end(), {"-o", file});
        return Show(arguments);
    }
    VtuFile File(std::vector<std::string> const& arguments = {}) const {
        Made(arguments);
        return VtuFile(work / "f.vtu");
    }

    // Displacements in two frames of a step, and in one frame of the next.
    void BuildFrames() const {
        Build(kBars, [](ResultBuilder& r) {
            for (char const* const name : {"Load", "Hold"}) {
                KOVSimPosition const step = r.Step(name);
                bool const first = std::string(name) == "Load";
                for (int i = 1; i <= (first ? 2 : 1); ++i) {
                    double const total = first ? 0.5 * i : 3;
                    r.Whole(step, r.Frame(step, i, 0.5 * i, total), "U_D", zdm_Algebraic_VECTOR,
                            schema::Grid_Node(), {0, 1, 2}, ResultBuilder::Vector(),
                            {total, 1, 2, total, 4, 5, total, 7, 8});
                }
            }
        });
    }
};

TEST_F(ExportFields, VectorsAtNodesArePointDataWithNamedComponents) {
    BuildFrames();
    EXPECT_EQ(Made({}),
              "m.ksd -> f.vtu\n3 points, 2 cells, 0 node sets, 0 element sets\n"
              "step Hold, frame 1 of 1, time 3: U\n");
    VtuFile const file(work / "f.vtu");
    EXPECT_THAT(file.Doubles("PointData/U"), ElementsAre(3, 1, 2, 3, 4, 5, 3, 7, 8));
    EXPECT_EQ(file.Labels("PointData/U"), "U1 U2 U3 ");
    EXPECT_EQ(file.Number("TimeValue"), "3");
    EXPECT_EQ(file.Number("FrameNumber"), "1");
    EXPECT_EQ(file.Number("FrameValue"), "0.5");
}

TEST_F(ExportFields, StepAndFrameAreChosen) {
    BuildFrames();
    EXPECT_EQ(File({"--step", "Load"}).Doubles("PointData/U")[0], 1.0);
    EXPECT_EQ(File({"--step", "1", "--frame", "1"}).Doubles("PointData/U")[0], 0.5);
    EXPECT_EQ(File({"--frame", "2"}).Doubles("PointData/U")[0], 1.0);
    EXPECT_EQ(File({"--frame", "last"}).Doubles("PointData/U")[0], 3.0);
    EXPECT_EQ(Made({"--frame", "1"}), "2 steps have frame 1; choose one with --step\n");
    EXPECT_EQ(Made({"--frame", "3"}), "no frame 3: no step has more than 2 frames\n");
    EXPECT_EQ(Made({"--step", "Loads"}), "no step 'Loads' among 2 steps; did you mean 'Load'?\n");
    EXPECT_EQ(Entries(work.Folder()), (std::set<std::string>{"d.inp", "m.ksd"}));
}

TEST_F(ExportFields, WithoutFieldsTheFileIsThatOfTheMesh) {
    BuildFrames();
    EXPECT_EQ(Made({"--no-fields"}),
              "m.ksd -> f.vtu\n3 points, 2 cells, 0 node sets, 0 element sets\n");
    std::string const bare = ReadFile(work / "f.vtu");
    Build(kBars, [](ResultBuilder&) {});
    EXPECT_EQ(Made({}), "m.ksd -> f.vtu\n3 points, 2 cells, 0 node sets, 0 element sets\n");
    EXPECT_EQ(bare, ReadFile(work / "f.vtu"));
}

TEST_F(ExportFields, NodesWithoutAValueAreNoNumbersAndMissingComponentsZero) {
    Build(kBars, [](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const frame = r.Frame(step, 1, 1, 1);
        r.Whole(step, frame, "U_D", zdm_Algebraic_VECTOR, schema::Grid_Node(), {2, 0},
                {zdm_Component_C_1, zdm_Component_C_2}, {5, 6, 7, 8});
        // Each part of the nodes in a drawer of its own.
        KOVSimPosition const heat =
            r.Field(step, frame, "NT", zdm_Algebraic_SCALAR, schema::Grid_Node());
        KOVSimPosition const serial = r.Serial(heat);
        r.Drawer(heat, serial, {1}, ResultBuilder::Scalar(), {20});
        r.Drawer(heat, serial, {0}, ResultBuilder::Scalar(), {10});
    });
    VtuFile const file = File();
    EXPECT_EQ(Text(file.Doubles("PointData/U")), "7. 8. 0. - - - 5. 6. 0.");
    EXPECT_EQ(Text(file.Doubles("PointData/NT")), "10. 20. -");
    EXPECT_EQ(file.Labels("PointData/NT"), "");
}

TEST_F(ExportFields, SymmetricTensorsHaveTheOrderOfViewers) {
    for (std::vector<int> const& components :
         {ResultBuilder::Tensor(),
          std::vector<int>{zdm_Component_C_11, zdm_Component_C_12_21, zdm_Component_C_13_31,
                           zdm_Component_C_22, zdm_Component_C_23_32, zdm_Component_C_33}}) {
        Build(kBars, [&](ResultBuilder& r) {
            KOVSimPosition const step = r.Step("Load");
            r.Whole(step, r.Frame(step, 1, 1, 1), "S0", zdm_Algebraic_TENSOR2_SYMMETRIC,
                    schema::Grid_Node(), {1}, components, {11, 12, 13, 22, 23, 33});
        });
        VtuFile const file = File();
        EXPECT_EQ(Text(file.Doubles("PointData/S")),
                  "- - - - - - 11. 22. 33. 12. 23. 13. - - - - - -");
        EXPECT_EQ(file.Labels("PointData/S"), "S11 S22 S33 S12 S23 S13 ");
    }
}

TEST_F(ExportFields, WholeElementsAreCellData) {
    Build(kBars, [&](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        r.Whole(step, r.Frame(step, 1, 1, 1), "EVOL", zdm_Algebraic_SCALAR, schema::Grid_Element(),
                {1}, ResultBuilder::Scalar(), {4});
    });
    EXPECT_EQ(Text(File().Doubles("CellData/EVOL")), "- 4.");
}

TEST_F(ExportFields, FieldsAreChosenByNameLabelOrComponent) {
    Build(kBars, [](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const frame = r.Frame(step, 1, 1, 1);
        for (char const* const name : {"U_D", "RF_D", "V_D"}) {
            r.Whole(step, frame, name, zdm_Algebraic_VECTOR, schema::Grid_Node(), {0},
                    ResultBuilder::Vector(), {1, 2, 3});
        }
    });
    VtuFile const file = File({"--fields", "u2,RF_D"});
    EXPECT_TRUE(file.Has("PointData/U"));
    EXPECT_TRUE(file.Has("PointData/RF"));
    EXPECT_FALSE(file.Has("PointData/V"));
    EXPECT_EQ(Made({"--fields", "U,RFF"}), "no field 'RFF' there; did you mean 'RF'?\n");
}

TEST_F(ExportFields, EqualLabelsOnSeveralGridsAreToldApart) {
    Build(kBars, [](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const frame = r.Frame(step, 1, 1, 1);
        r.Whole(step, frame, "S0", zdm_Algebraic_TENSOR2_SYMMETRIC, schema::Grid_Node(), {0},
                ResultBuilder::Tensor(), {1, 2, 3, 4, 5, 6});
        KOVSimPosition const points = r.Field(step, frame, "S0", zdm_Algebraic_TENSOR2_SYMMETRIC,
                                              schema::Grid_IntegrationPoint());
        r.Drawer(points, r.Serial(points, 1), {0}, ResultBuilder::Tensor(), {1, 0, 0, 0, 0, 0});
    });
    VtuFile const file = File();
    EXPECT_TRUE(file.Has("PointData/S_nodes"));
    EXPECT_TRUE(file.Has("PointData/S_integration_points"));
    EXPECT_FALSE(file.Has("PointData/S"));
    EXPECT_THAT(file.Head(), HasSubstr("CarriedFromIntegrationPoints"));
}

TEST_F(ExportFields, AFieldKeepsItsNameBesideASetOfThatName) {
    Build("*NODE, NSET=U\n10, 0, 0, 0\n", [](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        r.Whole(step, r.Frame(step, 1, 1, 1), "U_D", zdm_Algebraic_VECTOR, schema::Grid_Node(), {0},
                ResultBuilder::Vector(), {1, 2, 3});
    });
    VtuFile const file = File();
    EXPECT_EQ(file.Doubles("PointData/U").size(), 3U);
    EXPECT_TRUE(file.Has("PointData/U_2"));
}

TEST_F(ExportFields, FieldsOutsideOfFramesAreShownWhereThereAreNoFrames) {
    Build(kBars, [](ResultBuilder& r) {
        r.Whole(r.Step("Load"), {}, "NT", zdm_Algebraic_SCALAR, schema::Grid_Node(), {0, 1, 2},
                ResultBuilder::Scalar(), {1, 2, 3});
    });
    EXPECT_THAT(Made({}), HasSubstr("step Load: NT\n"));
    VtuFile const file(work / "f.vtu");
    EXPECT_THAT(file.Doubles("PointData/NT"), ElementsAre(1, 2, 3));
    EXPECT_EQ(file.Number("TimeValue"), "");
}

// ---- integration points ----

// The deck of one element of the type, its nodes at the given places.
std::string ElementDeck(std::string const& type, std::vector<std::array<double, 3>> const& nodes) {
    std::string deck = "*NODE\n";
    std::string element = "1";
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        std::string const label = std::to_string(i + 1);
        deck += label;
        for (double const x : nodes[i]) deck += ", " + std::to_string(x);
        deck += "\n";
        element += ", " + label;
    }
    return deck + "*ELEMENT, TYPE=" + type + "\n" + element + "\n";
}

// Two hexahedra, 1 to 8 and 5 to 12, the second of them above the first.
std::string Hexahedra(std::string const& type) {
    std::string deck = "*NODE\n";
    int label = 0;
    for (int z = 0; z < 3; ++z) {
        for (auto const& [x, y] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}}) {
            deck += std::to_string(++label) + ", " + std::to_string(x) + ", " + std::to_string(y) +
                    ", " + std::to_string(z) + "\n";
        }
    }
    return deck + "*ELEMENT, TYPE=" + type + "\n1,1,2,3,4,5,6,7,8\n2,5,6,7,8,9,10,11,12\n";
}

TEST_F(ExportFields, AConstantAtIntegrationPointsIsThatAtTheNodes) {
    Build(Hexahedra("C3D8"), [](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const field = r.Field(step, r.Frame(step, 1, 1, 1), "PEEQ",
                                             zdm_Algebraic_SCALAR, schema::Grid_IntegrationPoint());
        for (int point = 1; point <= 8; ++point) {
            r.Drawer(field, r.Serial(field, point), {0, 1}, ResultBuilder::Scalar(), {7, 3});
        }
    });
    std::string const made = Made({});
    EXPECT_THAT(made, HasSubstr("\nnote: PEEQ carried from integration points, whose numbers are "
                                "taken to run along the first direction of an element fastest, and "
                                "from corner to corner of triangles and tetrahedra\n"));
    EXPECT_THAT(made, Not(HasSubstr("not carried")));
    std::vector<double> const values = VtuFile(work / "f.vtu").Doubles("PointData/PEEQ");
    ASSERT_EQ(values.size(), 12U);
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_NEAR(values[i], i < 4 ? 7 : i < 8 ? 5 : 3, 1e-5) << i;
    }
}

// 2 + 3 x - y + 0.5 z in the coordinates of the parent element of a hexahedron, which are those of
// its nodes here.
TEST_F(ExportFields, ALinearFieldAtIntegrationPointsIsExactAtTheNodes) {
    std::vector<std::array<double, 3>> const corners = {{-1, -1, -1}, {1, -1, -1}, {1, 1, -1},
                                                        {-1, 1, -1},  {-1, -1, 1}, {1, -1, 1},
                                                        {1, 1, 1},    {-1, 1, 1}};
    auto const at = [](double x, double y, double z) { return 2 + 3 * x - y + 0.5 * z; };
    Build(ElementDeck("C3D8", corners), [&](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const field = r.Field(step, r.Frame(step, 1, 1, 1), "PEEQ",
                                             zdm_Algebraic_SCALAR, schema::Grid_IntegrationPoint());
        double const g = 1 / std::sqrt(3.0);
        for (int point = 0; point < 8; ++point) {
            double const x = point % 2 == 0 ? -g : g;
            double const y = point / 2 % 2 == 0 ? -g : g;
            double const z = point / 4 == 0 ? -g : g;
            r.Drawer(field, r.Serial(field, point + 1), {0}, ResultBuilder::Scalar(),
                     {at(x, y, z)});
        }
    });
    std::vector<double> const values = File().Doubles("PointData/PEEQ");
    for (std::size_t i = 0; i < 8; ++i) {
        EXPECT_NEAR(values[i], at(corners[i][0], corners[i][1], corners[i][2]), 2e-6) << i;
    }
}

TEST_F(ExportFields, ElementsThatLackAPointAreNotCarried) {
    Build(Hexahedra("C3D8"), [](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const field = r.Field(step, r.Frame(step, 1, 1, 1), "PEEQ",
                                             zdm_Algebraic_SCALAR, schema::Grid_IntegrationPoint());
        for (int point = 1; point <= 8; ++point) {
            KOVSimPosition const serial = r.Serial(field, point);
            r.Drawer(field, serial, {0}, ResultBuilder::Scalar(), {7});
            if (point != 5) r.Drawer(field, serial, {1}, ResultBuilder::Scalar(), {3});
        }
    });
    EXPECT_THAT(Made({}), HasSubstr("\nnote: PEEQ: 1 element of type C3D8 without all 8 points not "
                                    "carried\n"));
    std::vector<double> const values = VtuFile(work / "f.vtu").Doubles("PointData/PEEQ");
    for (std::size_t i = 0; i < 12; ++i) {
        if (i < 8) {
            EXPECT_NEAR(values[i], 7, 1e-5) << i;
        } else {
            EXPECT_TRUE(std::isnan(values[i])) << i;
        }
    }
}

TEST_F(ExportFields, PointsWithoutARuleAreNotCarried) {
    Build(Hexahedra("C3D8"), [](ResultBuilder& r) {
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const field = r.Field(step, r.Frame(step, 1, 1, 1), "PEEQ",
                                             zdm_Algebraic_SCALAR, schema::Grid_IntegrationPoint());
        for (int point = 1; point <= 5; ++point) {
            r.Drawer(field, r.Serial(field, point), {0, 1}, ResultBuilder::Scalar(), {7, 3});
        }
    });
    EXPECT_THAT(Made({}), HasSubstr("time 1: no fields\n"
                                    "note: PEEQ: 2 elements of type C3D8 with 5 points not "
                                    "carried: no rule for that\n"));
    EXPECT_FALSE(VtuFile(work / "f.vtu").Has("PointData/PEEQ"));
}

}  // namespace
}  // namespace kov::test
