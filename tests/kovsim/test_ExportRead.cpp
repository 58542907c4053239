// Exported results as VTK's own reader finds them.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "ResultCommandFixture.h"

namespace kov::test {
namespace {

class ExportRead : public ResultCommandTest {
  protected:
    ExportRead() : ResultCommandTest("export") {}

    void SetUp() override {
        if (work.Shell("/usr/bin/python3 -c 'import vtk'").status != 0)
            GTEST_SKIP() << "python3-vtk9 is not installed";
    }
    JsonValue Read(std::string const& file) const {
        Workshop::Result const result =
            work.Shell("/usr/bin/python3 -B \"$KOV_SOURCE_DIR/tests/kovsim/print-vtk.py\" " + file);
        EXPECT_EQ(result.status, 0) << result.errors;
        return ParseJson(result.output);
    }
    static std::vector<std::string> Labels(JsonValue const& array) {
        std::vector<std::string> labels;
        for (JsonValue const& label : array["labels"].items) labels.push_back(label.text);
        return labels;
    }

    // Two steps: U at some nodes, S at the points of the bars, EVOL in one of them.
    void BuildTwoSteps() const {
        Build(kBars, [](ResultBuilder& r) {
            for (int i = 1; i <= 2; ++i) {
                KOVSimPosition const step = r.Step(i == 1 ? "One" : "Two");
                KOVSimPosition const frame = r.Frame(step, 1, 0.1, i == 1 ? 0.1 : 1e10 / 3);
                r.Whole(step, frame, "U_D", zdm_Algebraic_VECTOR, schema::Grid_Node(), {0, 2},
                        ResultBuilder::Vector(), {0.1 * i, 1e-300, -2, 1e300, 5, 1.0 / 3});
                KOVSimPosition const stress =
                    r.Field(step, frame, "S0", zdm_Algebraic_TENSOR2_SYMMETRIC,
                            schema::Grid_IntegrationPoint());
                r.Drawer(stress, r.Serial(stress, 1), {0, 1}, ResultBuilder::Tensor(),
                         {11, 12, 13, 22, 23, 33, 111, 112, 113, 122, 123, 133});
                r.Whole(step, frame, "EVOL", zdm_Algebraic_SCALAR, schema::Grid_Element(), {1},
                        ResultBuilder::Scalar(), {4});
            }
        });
    }
};

TEST_F(ExportRead, AFileHasEveryNumber) {
    BuildTwoSteps();
    ASSERT_EQ(Ask({"-o", "f.vtu"}).status, 0);
    JsonValue const read = Read("f.vtu");
    JsonValue const& file = read[0];
    EXPECT_EQ(file["points"].Int(), 3);
    EXPECT_EQ(file["cells"].Int(), 2);
    JsonValue const& u = file["point"]["U"];
    EXPECT_EQ(Labels(u), (std::vector<std::string>{"U1", "U2", "U3"}));
    EXPECT_EQ(u["rows"][0].Numbers(), (std::vector<double>{0.2, 1e-300, -2}));
    EXPECT_EQ(u["rows"][2].Numbers(), (std::vector<double>{1e300, 5, 1.0 / 3}));
    EXPECT_TRUE(u["rows"][1][0].IsNull());
    JsonValue const& s = file["point"]["S"];
    EXPECT_EQ(Labels(s), (std::vector<std::string>{"S11", "S22", "S33", "S12", "S23", "S13"}));
    EXPECT_EQ(s["rows"][0].Numbers(), (std::vector<double>{11, 22, 33, 12, 23, 13}));
    EXPECT_EQ(s["rows"][1].Numbers(), (std::vector<double>{61, 72, 83, 62, 73, 63}));
    EXPECT_TRUE(file["cell"]["EVOL"]["rows"][0][0].IsNull());
    EXPECT_EQ(file["cell"]["EVOL"]["rows"][1].Numbers(), (std::vector<double>{4}));
    EXPECT_EQ(file["file"]["TimeValue"]["rows"][0].Numbers(), (std::vector<double>{1e10 / 3}));
}

TEST_F(ExportRead, ASeriesHasEveryTime) {
    BuildTwoSteps();
    ASSERT_EQ(Ask({"-o", "s.pvd"}).status, 0);
    JsonValue const read = Read("s.pvd");
    ASSERT_EQ(read.Size(), 2U);
    EXPECT_EQ(read[0]["time"].number, 0.1);
    EXPECT_EQ(read[1]["time"].number, 1e10 / 3);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(read[i]["file"]["TimeValue"]["rows"][0].Numbers(),
                  std::vector<double>{read[i]["time"].number});
        EXPECT_EQ(read[i]["point"]["U"]["rows"][0][0].number, 0.1 * (i + 1));
    }
}

}  // namespace
}  // namespace kov::test
