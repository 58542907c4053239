// Series of files for viewers that `kovsim export` makes of all frames.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <filesystem>
#include <limits>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "ResultCommandFixture.h"
#include "VtuFile.h"

namespace kov::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using Names = std::set<std::string>;

// A frame of one step, by the kind of the step and the time in it, and overall.
struct FrameAt {
    char const* step;
    int type;
    double value;
    double total;
};

class ExportSeries : public ResultCommandTest {
  protected:
    ExportSeries() : ResultCommandTest("export") {}

    // Displacements in each frame: the number of the frame, over all steps.
    void BuildFrames(std::vector<FrameAt> const& frames, std::string const& deck = kBars) const {
        Build(deck, [&](ResultBuilder& r) {
            KOVSimPosition step;
            std::string name;
            int increment = 0;
            for (std::size_t i = 0; i < frames.size(); ++i) {
                FrameAt const& each = frames[i];
                if (name != each.step) {
                    step = r.Step(each.step, each.type);
                    name = each.step;
                    increment = 0;
                }
                double const n = static_cast<double>(i) + 1;
                r.Whole(step, r.Frame(step, ++increment, each.value, each.total), "U_D",
                        zdm_Algebraic_VECTOR, schema::Grid_Node(), {0, 1, 2},
                        ResultBuilder::Vector(), {n, 0, 0, n, 0, 0, n, 0, 0});
            }
        });
    }
    // The times in the collection s.pvd, in its order, with the names of its files.
    std::string Times() const {
        std::string const text = ReadFile(work / "s.pvd");
        std::regex const tag("timestep=\"([^\"]*)\" group=\"\" part=\"0\" file=\"([^\"]*)\"");
        std::string times;
        for (std::sregex_iterator at(text.begin(), text.end(), tag), end; at != end; ++at) {
            times += (*at)[1].str() + " " + (*at)[2].str() + "\n";
        }
        return times;
    }
    std::string Made(std::vector<std::string> arguments = {}) const {
        fs::remove_all(work / "s.pvd");
        fs::remove_all(work / "s");
        arguments.insert(arguments.end(), {"-o", "s.pvd"});
        return Show(arguments);
    }

    int const kStatic = schema::Step_Gen_Static();
    int const kFrequency = schema::Step_Lin_Frequency();
};

TEST_F(ExportSeries, EachFrameIsAFileOfItsTime) {
    BuildFrames({{"Load", kStatic, 0.5, 0.5}, {"Load", kStatic, 1, 1}, {"Hold", kStatic, 2, 3}});
    EXPECT_EQ(Made(),
              "m.ksd -> s.pvd\n3 points, 2 cells, 0 node sets, 0 element sets\n"
              "3 frames, times 0.5 to 3: U\n");
    EXPECT_EQ(Times(), "0.5 s/s_0001.vtu\n1 s/s_0002.vtu\n3 s/s_0003.vtu\n");
    EXPECT_EQ(Entries(work / "s"), (Names{"s_0001.vtu", "s_0002.vtu", "s_0003.vtu"}));
    EXPECT_EQ(Entries(work.Folder()), (Names{"d.inp", "m.ksd", "s", "s.pvd"}));
    for (int i = 1; i <= 3; ++i) {
        VtuFile const file(work.Folder() + "/s/s_000" + std::to_string(i) + ".vtu");
        EXPECT_EQ(file.Doubles("PointData/U")[0], i);
        EXPECT_EQ(file.Number("TimeValue"), i == 1 ? "0.5" : i == 2 ? "1" : "3");
    }
    EXPECT_EQ(ReadFile(work / "s.pvd").substr(0, 22), "<?xml version=\"1.0\"?>\n");
}

TEST_F(ExportSeries, StepAndFramesAreChosen) {
    BuildFrames({{"Load", kStatic, 0.5, 0.5}, {"Load", kStatic, 1, 1}, {"Hold", kStatic, 2, 3}});
    Made({"--step", "Load"});
    EXPECT_EQ(Times(), "0.5 s/s_0001.vtu\n1 s/s_0002.vtu\n");
    Made({"--frame", "last"});
    EXPECT_EQ(Times(), "1 s/s_0001.vtu\n3 s/s_0002.vtu\n");
    Made({"--frame", "2"});
    EXPECT_EQ(Times(), "1 s/s_0001.vtu\n");
}

// A viewer takes files of one time for parts of one.
TEST_F(ExportSeries, AStepThatBeginsWhereTheLastEndedIsSetApart) {
    BuildFrames({{"A", kStatic, 1, 1}, {"B", kStatic, 0, 1}, {"B", kStatic, 1, 2}});
    Made();
    EXPECT_EQ(Times(), "1 s/s_0001.vtu\n1.0000000000000002 s/s_0002.vtu\n2 s/s_0003.vtu\n");
}

TEST_F(ExportSeries, FrequenciesAreTheTimesOfModes) {
    BuildFrames({{"M", kFrequency, 12.5, 0}, {"M", kFrequency, 80, 0}});
    EXPECT_THAT(Made(), testing::Not(HasSubstr("note")));
    EXPECT_EQ(Times(), "12.5 s/s_0001.vtu\n80 s/s_0002.vtu\n");
}

TEST_F(ExportSeries, FramesAreCountedWhereTheirTimesDoNotAscend) {
    std::string const note =
        "note: the times of the frames do not ascend, or are of several sorts: the series counts "
        "its frames from 1\n";
    std::string const counted = "1 s/s_0001.vtu\n2 s/s_0002.vtu\n";
    double const nan = std::numeric_limits<double>::quiet_NaN();
    for (auto const& frames : {
             // Two modes of a round bar; a static step and a mode; a clock that begins again; no
             // times at all; no number.
             std::vector<FrameAt>{{"M", kFrequency, 80, 0}, {"M", kFrequency, 80, 0}},
             {{"A", kStatic, 1, 1}, {"M", kFrequency, 80, 0}},
             {{"A", kStatic, 1, 1}, {"B", kStatic, 0.5, 0.5}},
             {{"A", kStatic, 0, 0}, {"A", kStatic, 0, 0}},
             {{"A", kStatic, 0, 0}, {"A", kStatic, nan, nan}},
         }) {
        BuildFrames(frames);
        EXPECT_THAT(Made(), HasSubstr(note));
        EXPECT_EQ(Times(), counted);
        EXPECT_EQ(VtuFile(work / "s/s_0002.vtu").Number("TimeValue"), "2");
    }
}

TEST_F(ExportSeries, TheSummaryAsJsonNamesTheFiles) {
    BuildFrames({{"Load", kStatic, 0.5, 0.5}, {"Load", kStatic, 1, 1}});
    JsonValue const json = Json({"-o", "s.pvd"});
    EXPECT_EQ(json["frames"][1]["file"].text, "s/s_0002.vtu");
    EXPECT_EQ(json["frames"][1]["step"].text, "Load");
    EXPECT_EQ(json["frames"][1]["frame"].Int(), 2);
    EXPECT_EQ(json["frames"][1]["time"].number, 1.0);
    EXPECT_EQ(json["fields"][0].text, "U");
    EXPECT_EQ(json["notes"].Size(), 0U);
}

TEST_F(ExportSeries, CapitalsInTheEndingMakeASeriesToo) {
    BuildFrames({{"Load", kStatic, 0.5, 0.5}, {"Load", kStatic, 1, 1}});
    EXPECT_EQ(Ask({"-o", "S.PVD"}).status, 0);
    EXPECT_EQ(Entries(work.Folder()), (Names{"S", "S.PVD", "d.inp", "m.ksd"}));
    EXPECT_EQ(Entries(work / "S"), (Names{"S_0001.vtu", "S_0002.vtu"}));
}

TEST_F(ExportSeries, NothingThatExistsIsReplaced) {
    BuildFrames({{"Load", kStatic, 1, 1}});
    WriteFile(work / "s.pvd", "mine");
    auto result = Ask({"-o", "s.pvd"});
    EXPECT_EQ(result.errors, "kovsim: s.pvd: exists already; remove it, or choose another name\n");
    fs::remove(work / "s.pvd");
    WriteFile(work / "s", "mine");
    result = Ask({"-o", "s.pvd"});
    EXPECT_EQ(result.errors, "kovsim: s: exists already; remove it, or choose another name\n");
    EXPECT_EQ(ReadFile(work / "s"), "mine");
    EXPECT_EQ(Entries(work.Folder()), (Names{"d.inp", "m.ksd", "s"}));
}

TEST_F(ExportSeries, WhatCannotBeMadeLeavesNothing) {
    BuildFrames({{"Load", kStatic, 1, 1}});
    EXPECT_EQ(Made({"--fields", "U_DD"}), "no field 'U_DD' there; did you mean 'U_D'?\n");
    EXPECT_EQ(Made({"--frame", "7"}), "no frame 7: step Load has 1 frame\n");
    Build(kBars, [](ResultBuilder& r) { r.Step("Empty"); });
    EXPECT_EQ(Made(), "no frames to make a series of\n");
    auto const all = Ask({"-o", "s.vtu", "--frame", "all"});
    EXPECT_EQ(all.errors, "kovsim: s.vtu: holds one frame; expected -o FILE.pvd for all of them\n");
    EXPECT_EQ(Entries(work.Folder()), (Names{"d.inp", "m.ksd"}));
}

TEST_F(ExportSeries, AnInterruptedRunLeavesNothing) {
    std::string deck = "*NODE\n";
    for (int i = 1; i <= 100000; ++i) deck += std::to_string(i) + ", 1, 2, 3\n";
    std::vector<FrameAt> frames;
    for (int i = 1; i <= 400; ++i) frames.push_back({"Load", kStatic, 1.0 * i, 1.0 * i});
    BuildFrames(frames, deck);
    Process process(work.Folder(), {"export", "m.ksd", "-o", "s.pvd"});
    // Until some of the files are there.
    bool begun = false;
    for (int i = 0; i < 20000 && !begun; ++i) {
        for (std::string const& name : Entries(work.Folder())) {
            begun = begun || fs::exists(work.Folder() + "/" + name + "/s/s_0003.vtu");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ASSERT_TRUE(begun);
    process.Signal(SIGTERM);
    EXPECT_EQ(process.Wait(), 1000 + SIGTERM);
    EXPECT_EQ(Entries(work.Folder()), (Names{"d.inp", "m.ksd"}));
}

}  // namespace
}  // namespace kov::test
