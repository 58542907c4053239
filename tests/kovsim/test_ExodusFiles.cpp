// Files that other writers of Exodus II made: tests/kovsim/exodus/make.sh makes them again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ExodusSource.h"
#include "KOVSimDocument.h"
#include "Process.h"
#include "ResultReading.h"

namespace kov::tool {
namespace {

using test::FieldRead;
using test::FrameRead;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

using Values = std::vector<double>;

std::string FileOf(char const* name) {
    return std::string(std::getenv("KOV_SOURCE_DIR")) + "/tests/kovsim/exodus/" + name;
}

// What library.c writes for a variable, counted from 1, of item i of a block; 0: the nodes.
double Written(int step, int variable, int block, int i) {
    return step * 100 + variable * 20 + block + i / 7.0;
}

TEST(ExodusFiles, OfTheLibraryOfTheFormat) {
    ExodusSource source(FileOf("library.e"));
    std::vector<FrameRead> const frames = test::ReadAll(source);
    ASSERT_EQ(frames.size(), 3u);
    for (int step = 1; step <= 3; ++step) {
        FrameRead const& frame = frames[static_cast<std::size_t>(step - 1)];
        EXPECT_EQ(frame.head.increment, step);
        EXPECT_EQ(frame.head.totalTime, step / 3.0);
        EXPECT_THAT(frame.Labels(), ElementsAre("U", "NT", "S", "DENSITY"));
        auto const u = frame.Field("U").ByLabel(), nt = frame.Field("NT").ByLabel();
        ASSERT_EQ(u.size(), 12u);
        for (int i = 0; i < 12; ++i) {
            EXPECT_EQ(u.at(1000 - i), (Values{Written(step, 1, 0, i), Written(step, 2, 0, i),
                                              Written(step, 3, 0, i)}));
            EXPECT_EQ(nt.at(1000 - i), Values{Written(step, 4, 0, i)});
        }
        FieldRead const s = frame.Field("S");
        EXPECT_EQ(s.head.place, ResultPlace::IntegrationPoint);
        EXPECT_THAT(s.head.components, ElementsAre("S11", "S22"));
        for (auto const& block : s.blocks) EXPECT_EQ(block.points, 2);
        auto const stress = [&](int block) {
            return Values{Written(step, 1, block, 0), Written(step, 2, block, 0),
                          Written(step, 3, block, 0), Written(step, 4, block, 0)};
        };
        EXPECT_THAT(s.ByLabel(), ElementsAre(Pair(100, stress(5)), Pair(400, stress(7))));
        FieldRead const density = frame.Field("DENSITY");
        EXPECT_EQ(density.head.place, ResultPlace::Element);
        EXPECT_THAT(density.ByLabel(), ElementsAre(Pair(200, Values{Written(step, 5, 3, 1)}),
                                                   Pair(300, Values{Written(step, 5, 3, 0)}),
                                                   Pair(400, Values{Written(step, 5, 7, 0)})));
    }
    EXPECT_THAT(source.Notes(), ElementsAre("1 global variable passed over: KE"));
}

TEST(ExodusFiles, OfVtk) {
    ExodusSource source(FileOf("vtk.e"));
    std::vector<FrameRead> const frames = test::ReadAll(source);
    ASSERT_EQ(frames.size(), 1u);
    EXPECT_THAT(frames[0].Labels(), ElementsAre("chi", "V", "S", "DENSITY"));
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(frames[0].Field("chi").ByLabel()[i + 1], Values{i / 3.0});
        EXPECT_EQ(frames[0].Field("V").ByLabel()[i + 1],
                  (Values{3 * i / 7.0, (3 * i + 1) / 7.0, (3 * i + 2) / 7.0}));
        // That writer takes the columns of an array of six for XX, XY, XZ, YY, YZ, ZZ.
        EXPECT_EQ(frames[0].Field("S").ByLabel()[i + 1],
                  (Values{6 * i / 11.0, (6 * i + 3) / 11.0, (6 * i + 5) / 11.0, (6 * i + 1) / 11.0,
                          (6 * i + 2) / 11.0, (6 * i + 4) / 11.0}));
    }
    // The triangle makes the first block.
    EXPECT_THAT(frames[0].Field("DENSITY").ByLabel(),
                ElementsAre(Pair(1, Values{2 / 3.0}), Pair(2, Values{1 / 3.0})));
    EXPECT_THAT(source.Notes(), IsEmpty());
}

TEST(ExodusFiles, OfMeshio) {
    ExodusSource source(FileOf("meshio.e"));
    std::vector<FrameRead> const frames = test::ReadAll(source);
    ASSERT_EQ(frames.size(), 1u);
    EXPECT_THAT(frames[0].Labels(), ElementsAre("chi", "U"));
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(frames[0].Field("chi").ByLabel()[i + 1], Values{i / 3.0});
        EXPECT_EQ(frames[0].Field("U").ByLabel()[i + 1],
                  (Values{3 * i / 7.0, (3 * i + 1) / 7.0, (3 * i + 2) / 7.0}));
    }
}

// The fields of a document frame by the names of their types: for each integration point, or 0,
// the rows that have values with these.
using Rows = std::map<int, Values>;
std::map<std::string, std::map<int, Rows>> FieldsOf(KOVObjDocument const& document,
                                                    KOVSimPosition const& frame) {
    std::map<std::string, std::map<int, Rows>> fields;
    KOVSimMap const types = document.Focus()
                                .GetPosition(schema::Focus_fieldTypes())
                                .GetMap(schema::zdm_FieldTypeLib_fieldTypes());
    for (auto at = frame.GetSet(schema::Frame_fields()).Begin(); at.NotDone(); ++at) {
        KOVSimPosition const field = *at;
        KOVSimPosition const type = field.GetPosition(schema::Field_fieldType());
        std::string name;
        for (KOVSimMapiterator entry = types.Begin(); entry.NotDone(); ++entry) {
            if (entry.Value().ID().Equal(type.ID())) name = entry.Key().Text();
        }
        for (auto s = field.GetSet(schema::Field_serialFields()).Begin(); s.NotDone(); ++s) {
            int point = -1;
            (*s).GetDataRecord().GetInt(0, point);
            for (auto d = (*s).GetSet(schema::SerialField_drawers()).Begin(); d.NotDone(); ++d) {
                KOVSimDrawer const drawer((*d).GetDrawer());
                auto const& sets = drawer.Description()->compartment;
                KOVSimCSet const items(sets.CSet(0)), columns(sets.CSet(1));
                auto const width = static_cast<std::size_t>(columns.Size());
                Values values(static_cast<std::size_t>(items.Size()) * width);
                KOVSimTransfer transfer{KOVSimDistribution(drawer.DistributionID())};
                transfer.SetRead().SetBufferPadding(false).SetDrawer(drawer.ID());
                transfer.SetDim(0, items).SetDim(1, columns);
                transfer.CheckView();
                transfer.SetBuffer(0, values.data(), values.size() * sizeof(double));
                transfer.ExecRead().RelinquishBuffers();
                std::vector<int> members(static_cast<std::size_t>(items.Size()));
                items.Members(members.data());
                for (std::size_t i = 0; i < members.size(); ++i) {
                    auto const first = values.begin() + static_cast<std::ptrdiff_t>(i * width);
                    fields[name][point][members[i]] =
                        Values(first, first + static_cast<std::ptrdiff_t>(width));
                }
            }
        }
    }
    return fields;
}

// Nodes and elements of the deck stand in the order of the file, not of their labels.
constexpr char const* kDeck =
    "*NODE\n1000, 0, 0, 0\n999, 1, 0, 0\n998, 0, 1, 0\n997, 1, 1, 0\n"
    "996, 0, 0, 1\n995, 1, 0, 1\n994, 0, 1, 1\n993, 1, 1, 1\n"
    "992, 0, 0, 2\n991, 1, 0, 2\n990, 0, 1, 2\n989, 1, 1, 2\n"
    "*ELEMENT, TYPE=C3D8\n400, 1000, 999, 997, 998, 996, 995, 993, 994\n"
    "*ELEMENT, TYPE=S4\n300, 1000, 999, 997, 998\n200, 992, 991, 989, 990\n"
    "*ELEMENT, TYPE=C3D8\n100, 996, 995, 993, 994, 992, 991, 989, 990\n";

TEST(ExodusFiles, ComeIntoADocumentBitForBit) {
    test::Workshop const work;
    test::WriteFile(work / "d.inp", kDeck);
    auto result = work.Run({"translate", "d.inp", "-o", "m.ksd"});
    ASSERT_EQ(result.status, 0) << result.errors;
    result = work.Run({"results", "m.ksd", "--add", FileOf("library.e")});
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("1 global variable passed over: KE"));

    KOVObjDocument const document =
        KOVObjDocument::Open((work / "m.ksd").c_str(), KOVObjDocument::ReadOnly);
    KOVSimVector const steps = document.GetModel().GetVector(schema::Model_stepSequence());
    ASSERT_EQ(steps.Size(), 1);
    int step = 0;
    for (auto at = (*steps.Begin()).GetVector(schema::Task_frames()).Begin(); at.NotDone(); ++at) {
        ++step;
        double time = -1;
        int increment = -1;
        (*at).GetDataRecord().GetInt(0, increment);
        (*at).GetDataRecord().GetDouble(2, time);
        EXPECT_EQ(increment, step);
        EXPECT_EQ(time, step / 3.0);
        auto const fields = FieldsOf(document, *at);
        ASSERT_EQ(fields.size(), 4u);
        Rows u, nt;
        for (int i = 0; i < 12; ++i) {
            u[i] = {Written(step, 1, 0, i), Written(step, 2, 0, i), Written(step, 3, 0, i)};
            nt[i] = {Written(step, 4, 0, i)};
        }
        auto const stress = [&](int point) {
            auto const of = [&](int block) {
                return Values{Written(step, 2 * point - 1, block, 0),
                              Written(step, 2 * point, block, 0)};
            };
            return Rows{{0, of(7)}, {3, of(5)}};
        };
        Rows const density = {{0, {Written(step, 5, 7, 0)}},
                              {1, {Written(step, 5, 3, 0)}},
                              {2, {Written(step, 5, 3, 1)}}};
        EXPECT_THAT(fields.at("U_D"), ElementsAre(Pair(0, u)));
        EXPECT_THAT(fields.at("NT"), ElementsAre(Pair(0, nt)));
        EXPECT_THAT(fields.at("S0"), ElementsAre(Pair(1, stress(1)), Pair(2, stress(2))));
        EXPECT_THAT(fields.at("DENSITY"), ElementsAre(Pair(0, density)));
    }
    EXPECT_EQ(step, 3);
    document.Close();
}

}  // namespace
}  // namespace kov::tool
