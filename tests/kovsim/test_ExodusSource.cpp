#include "ExodusSource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "NetcdfWriter.h"
#include "ResultReading.h"
#include "support/TempFolder.h"

namespace kov::tool {
namespace {

using test::FrameRead;
using test::NetcdfWriter;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

using Values = std::vector<double>;

constexpr double kFill = NC_FILL_DOUBLE;

struct Reading {
    std::vector<FrameRead> frames;
    std::vector<std::string> notes;
    std::string error;
};

class ExodusSourceTest : public ::testing::Test {
  protected:
    static Reading Read(std::string const& path) {
        Reading reading;
        try {
            ExodusSource source(path);
            reading.frames = test::ReadAll(source);
            reading.notes = source.Notes();
            EXPECT_EQ(source.Done(), 1.0);
        } catch (Failure const& failure) {
            reading.error = failure.what();
            EXPECT_EQ(reading.error.substr(0, path.size() + 2), path + ": ");
        }
        return reading;
    }
    // Four nodes and five elements in blocks of two, none and three, at two times.
    template <class Fill>
    Reading ReadMade(Fill const& fill, int form = NC_64BIT_OFFSET) {
        std::string const path = m_folder / "made.e";
        {
            NetcdfWriter file(path, form);
            file.Dimension("time_step", 0);
            file.Dimension("num_dim", 3);
            file.Dimension("num_nodes", 4);
            file.Dimension("num_elem", 5);
            file.Dimension("num_el_blk", 3);
            file.Dimension("num_el_in_blk1", 2);
            file.Dimension("num_el_in_blk3", 3);
            file.Integers("eb_prop1", {"num_el_blk"}, {10, 20, 30});
            file.Reals("time_whole", {"time_step"}, m_times);
            fill(file);
        }
        return Read(path);
    }

    test::TempFolder m_folder;
    Values m_times = {0.25, 0.5};
};

void AddNodal(NetcdfWriter& file, std::vector<std::string> const& names, int type = NC_DOUBLE) {
    file.Texts("name_nod_var", "num_nod_var", names);
    for (std::size_t i = 0; i < names.size(); ++i) {
        Values values;
        for (int k = 0; k < 8; ++k) values.push_back(static_cast<double>(i) * 100 + k + 0.1);
        file.Reals("vals_nod_var" + std::to_string(i + 1), {"time_step", "num_nodes"}, values,
                   type);
    }
}

class ExodusForm : public ExodusSourceTest, public ::testing::WithParamInterface<int> {};

TEST_P(ExodusForm, AFrameForEachTime) {
    Reading const reading = ReadMade(
        [](NetcdfWriter& file) {
            AddNodal(file, {"disp_x", "disp_y", "chi"});
        },
        GetParam());
    EXPECT_EQ(reading.error, "");
    ASSERT_EQ(reading.frames.size(), 2u);
    FrameRead const& last = reading.frames[1];
    EXPECT_EQ(last.head.step, 1);
    EXPECT_EQ(last.head.kind, StepKind::Unknown);
    EXPECT_EQ(last.head.increment, 2);
    EXPECT_EQ(last.head.value, 0.5);
    EXPECT_EQ(last.head.totalTime, 0.5);
    EXPECT_EQ(last.head.text, "");
    EXPECT_THAT(last.Labels(), ElementsAre("U", "chi"));
    EXPECT_EQ(last.Field("U").head.place, ResultPlace::Node);
    EXPECT_THAT(last.Field("U").head.components, ElementsAre("U1", "U2"));
    EXPECT_THAT(last.Field("U").ByLabel(),
                ElementsAre(Pair(1, Values{4.1, 104.1}), Pair(2, Values{5.1, 105.1}),
                            Pair(3, Values{6.1, 106.1}), Pair(4, Values{7.1, 107.1})));
    EXPECT_THAT(reading.notes, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Forms, ExodusForm,
                         ::testing::Values(0, NC_64BIT_OFFSET, NC_64BIT_DATA, NC_NETCDF4,
                                           NC_NETCDF4 | NC_CLASSIC_MODEL));

TEST_F(ExodusSourceTest, SinglePrecisionIsWidenedExactly) {
    Reading const reading = ReadMade([](NetcdfWriter& file) { AddNodal(file, {"chi"}, NC_FLOAT); });
    EXPECT_EQ(reading.frames[0].Field("chi").ByLabel()[3][0], double{2.1f});
}

TEST_F(ExodusSourceTest, NodesAndElementsGoByTheirNumberMaps) {
    Reading const reading = ReadMade([](NetcdfWriter& file) {
        file.Integers("node_num_map", {"num_nodes"}, {40, 10, 2147483647, 7});
        file.Integers("elem_num_map", {"num_elem"}, {5, 4, 3, 2, 1});
        file.Integers("elem_map", {"num_elem"}, {2, 3, 4, 5, 1});
        AddNodal(file, {"chi"});
        file.Texts("name_elem_var", "num_elem_var", {"xi"});
        file.Reals("vals_elem_var1eb1", {"time_step", "num_el_in_blk1"}, {1, 2, 3, 4});
        file.Reals("vals_elem_var1eb3", {"time_step", "num_el_in_blk3"}, {5, 6, 7, 8, 9, 10});
    });
    EXPECT_THAT(reading.frames[0].Field("chi").ByLabel(),
                ElementsAre(Pair(7, Values{3.1}), Pair(10, Values{1.1}), Pair(40, Values{0.1}),
                            Pair(2147483647, Values{2.1})));
    test::FieldRead const xi = reading.frames[1].Field("xi");
    EXPECT_EQ(xi.head.place, ResultPlace::Element);
    EXPECT_EQ(xi.blocks.size(), 2u);
    EXPECT_THAT(xi.ByLabel(),
                ElementsAre(Pair(1, Values{10}), Pair(2, Values{9}), Pair(3, Values{8}),
                            Pair(4, Values{4}), Pair(5, Values{3})));
}

TEST_F(ExodusSourceTest, LabelsOf64BitsAreTakenWhereTheyFit) {
    for (long long const label : {2147483648LL, 0LL, -3LL}) {
        Reading const reading = ReadMade(
            [&](NetcdfWriter& file) {
                file.Integers("node_num_map", {"num_nodes"}, {1, 2, label, 4}, NC_INT64);
                AddNodal(file, {"chi"});
            },
            NC_64BIT_DATA);
        EXPECT_THAT(reading.error,
                    HasSubstr("node_num_map: has the label " + std::to_string(label) + ","));
    }
    Reading const reading = ReadMade(
        [](NetcdfWriter& file) {
            file.Integers("node_num_map", {"num_nodes"}, {1, 2, 2147483647, 4}, NC_INT64);
            AddNodal(file, {"chi"});
        },
        NC_NETCDF4);
    EXPECT_EQ(reading.frames[0].Field("chi").ByLabel().count(2147483647), 1u);
}

TEST_F(ExodusSourceTest, LabelsThatRepeatAreRefused) {
    Reading const reading = ReadMade([](NetcdfWriter& file) {
        file.Integers("node_num_map", {"num_nodes"}, {4, 2, 9, 4});
        AddNodal(file, {"chi"});
    });
    EXPECT_THAT(reading.error, HasSubstr("node_num_map: has the label 4 twice"));
}

TEST_F(ExodusSourceTest, OldFilesHaveAllVariablesInOneTable) {
    Reading const reading = ReadMade([](NetcdfWriter& file) {
        file.Texts("name_nod_var", "num_nod_var", {"DISPLX", "DISPLY"}, ' ');
        file.Reals("vals_nod_var", {"time_step", "num_nod_var", "num_nodes"},
                   {1, 2, 3, 4, 5, 6, 7, 8, 11, 12, 13, 14, 15, 16, 17, 18});
        file.Texts("name_elem_var", "num_elem_var", {"xi", "chi"}, ' ');
        file.Integers("elem_var_tab", {"num_el_blk", "num_elem_var"}, {1, 1, 1, 1, 0, 1});
        file.Reals("vals_elem_var", {"time_step", "num_elem_var", "num_elem"},
                   {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20});
    });
    EXPECT_EQ(reading.error, "");
    EXPECT_EQ(reading.frames[1].Field("U").ByLabel()[2], (Values{12, 16}));
    EXPECT_THAT(reading.frames[1].Field("xi").ByLabel(),
                ElementsAre(Pair(1, Values{11}), Pair(2, Values{12})));
    EXPECT_EQ(reading.frames[1].Field("chi").ByLabel()[5], Values{20});
}

TEST_F(ExodusSourceTest, NumbersOfElementVariablesCountIntegrationPoints) {
    Reading const reading = ReadMade([](NetcdfWriter& file) {
        file.Texts("name_elem_var", "num_elem_var",
                   {"stress_xx_1", "stress_yy_1", "stress_xx_2", "stress_yy_2"});
        file.Integers("elem_var_tab", {"num_el_blk", "num_elem_var"},
                      {1, 1, 1, 1, 0, 0, 0, 0, 1, 1, 0, 0});
        for (int i = 1; i <= 4; ++i) {
            double const v = 10 * i;
            file.Reals("vals_elem_var" + std::to_string(i) + "eb1", {"time_step", "num_el_in_blk1"},
                       {v + 1, v + 2, v + 3, v + 4});
            if (i > 2) continue;
            file.Reals("vals_elem_var" + std::to_string(i) + "eb3", {"time_step", "num_el_in_blk3"},
                       {v + 5, v + 6, v + 7, v + 8, v + 9, v + 10});
        }
    });
    EXPECT_EQ(reading.error, "");
    test::FieldRead const s = reading.frames[0].Field("S");
    EXPECT_EQ(s.head.place, ResultPlace::IntegrationPoint);
    ASSERT_EQ(s.blocks.size(), 2u);
    EXPECT_EQ(s.blocks[0].points, 2);
    EXPECT_EQ(s.blocks[0].values, (Values{11, 21, 31, 41, 12, 22, 32, 42}));
    EXPECT_EQ(s.blocks[1].points, 1);
    EXPECT_EQ(s.blocks[1].values, (Values{15, 25, 16, 26, 17, 27}));
}

TEST_F(ExodusSourceTest, RowsThatWereNeverWrittenAreLeftOut) {
    Reading const reading = ReadMade([](NetcdfWriter& file) {
        file.Texts("name_nod_var", "num_nod_var", {"disp_x", "disp_y", "chi"});
        file.Reals("vals_nod_var1", {"time_step", "num_nodes"}, {1, kFill, kFill, 4, 5, 6, 7, 8});
        file.Reals("vals_nod_var2", {"time_step", "num_nodes"}, {1, 2, kFill, 4, 5, 6, 7, 8});
        double const none = -1;
        file.Reals("vals_nod_var3", {"time_step", "num_nodes"}, {-1, -1, -1, -1, 5, -1, kFill, 8},
                   NC_DOUBLE, &none);
    });
    EXPECT_EQ(reading.error, "");
    EXPECT_THAT(reading.frames[0].Labels(), ElementsAre("U")) << "none of chi was written";
    EXPECT_THAT(reading.frames[0].Field("U").ByLabel(),
                ElementsAre(Pair(1, Values{1, 1}), Pair(4, Values{4, 4})));
    EXPECT_THAT(reading.frames[1].Field("chi").ByLabel(),
                ElementsAre(Pair(1, Values{5}), Pair(3, Values{kFill}), Pair(4, Values{8})));
    EXPECT_THAT(reading.notes,
                ElementsAre("U: 2 rows that were never written are left out, 1 of them with some "
                            "values",
                            "chi: 5 rows that were never written are left out"));
}

TEST_F(ExodusSourceTest, InfinitiesAndNotANumberAreValues) {
    double const nan = std::numeric_limits<double>::quiet_NaN();
    Reading const reading = ReadMade([&](NetcdfWriter& file) {
        file.Texts("name_nod_var", "num_nod_var", {"chi"});
        file.Reals("vals_nod_var1", {"time_step", "num_nodes"}, {nan, HUGE_VAL, -0.0, 4});
    });
    auto const values = reading.frames[0].Field("chi").ByLabel();
    EXPECT_TRUE(std::isnan(values.at(1)[0]));
    EXPECT_EQ(values.at(2)[0], HUGE_VAL);
    EXPECT_TRUE(std::signbit(values.at(3)[0]));
}

TEST_F(ExodusSourceTest, ColumnsBehindTheItemsAreComponents) {
    Reading const reading = ReadMade([](NetcdfWriter& file) {
        file.Texts("name_nod_var", "num_nod_var", {"disp"});
        file.Reals("vals_nod_var1", {"time_step", "num_nodes", "num_dim"},
                   {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    });
    EXPECT_EQ(reading.error, "");
    EXPECT_EQ(reading.frames[0].Field("U").ByLabel()[2], (Values{4, 5, 6}));
}

TEST_F(ExodusSourceTest, LargeFieldsComeInBoundedBlocks) {
    std::string const path = m_folder / "large.e";
    std::size_t const nodes = ExodusSource::kMostRows + 5;
    {
        NetcdfWriter file(path, NC_64BIT_OFFSET);
        file.Dimension("time_step", 0);
        file.Dimension("num_dim", 3);
        file.Dimension("num_nodes", nodes);
        file.Reals("time_whole", {"time_step"}, {1});
        file.Texts("name_nod_var", "num_nod_var", {"chi"});
        Values values(nodes);
        for (std::size_t i = 0; i < nodes; ++i) values[i] = static_cast<double>(i);
        file.Reals("vals_nod_var1", {"time_step", "num_nodes"}, values);
    }
    Reading const reading = Read(path);
    test::FieldRead const chi = reading.frames[0].Field("chi");
    ASSERT_EQ(chi.blocks.size(), 2u);
    EXPECT_EQ(chi.blocks[0].labels.size(), ExodusSource::kMostRows);
    EXPECT_EQ(chi.blocks[1].labels.back(), static_cast<int>(nodes));
    EXPECT_EQ(chi.blocks[1].values.back(), static_cast<double>(nodes - 1));
}

TEST_F(ExodusSourceTest, FieldsAndBlocksMayBePassedOver) {
    ReadMade([](NetcdfWriter& file) { AddNodal(file, {"chi", "xi"}); });
    ExodusSource source(m_folder / "made.e");
    ResultFrame frame;
    ResultField field;
    ResultBlock block;
    EXPECT_FALSE(source.NextField(field)) << "no frame yet";
    EXPECT_FALSE(source.NextBlock(block));
    ASSERT_TRUE(source.NextFrame(frame));
    EXPECT_FALSE(source.NextBlock(block)) << "no field yet";
    ASSERT_TRUE(source.NextField(field));
    ASSERT_TRUE(source.NextField(field));
    EXPECT_EQ(field.label, "xi");
    ASSERT_TRUE(source.NextBlock(block));
    EXPECT_EQ(block.values[0], 100.1);
    EXPECT_FALSE(source.NextBlock(block));
    ASSERT_TRUE(source.NextFrame(frame));
    ASSERT_TRUE(source.NextField(field));
    ASSERT_TRUE(source.NextBlock(block));
    EXPECT_EQ(block.values[0], 4.1);
    EXPECT_FALSE(source.NextFrame(frame));
    EXPECT_FALSE(source.NextField(field));
}

TEST_F(ExodusSourceTest, AFileWithoutTimesHasNoFrames) {
    m_times = {};
    Reading const reading = ReadMade([](NetcdfWriter&) {});
    EXPECT_THAT(reading.frames, IsEmpty());
    EXPECT_THAT(reading.notes, ElementsAre("it has no time steps, and so no results"));
}

TEST_F(ExodusSourceTest, TimesMayDescend) {
    m_times = {2, 1};
    Reading const reading = ReadMade([](NetcdfWriter& file) { AddNodal(file, {"chi"}); });
    EXPECT_EQ(reading.frames[1].head.totalTime, 1);
    EXPECT_THAT(reading.notes, ElementsAre(HasSubstr("times do not ascend: time step 2")));
}

TEST_F(ExodusSourceTest, ATimeThatIsNoNumberIsRefused) {
    for (double const time : {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, kFill}) {
        m_times = {1, time};
        Reading const reading = ReadMade([](NetcdfWriter& file) { AddNodal(file, {"chi"}); });
        EXPECT_THAT(reading.error, HasSubstr("time_whole: time step 2 has no time"));
    }
}

TEST_F(ExodusSourceTest, OtherKindsOfVariablesAreTold) {
    Reading const reading = ReadMade(
        [](NetcdfWriter& file) {
            AddNodal(file, {"chi"});
            file.Texts("name_glo_var", "num_glo_var", {"KE", "IE"});
            file.Texts("name_sset_var", "num_sset_var",
                       {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"});
            file.Texts("name_nset_var", "num_nset_var", {"r"});
            file.Group("other");
        },
        NC_NETCDF4);
    EXPECT_THAT(
        reading.notes,
        ElementsAre("2 global variables passed over: KE, IE", "1 node set variable passed over: r",
                    "10 side set variables passed over: a, b, c, d, e, f, g, h and 2 more",
                    "1 group below the root of the file passed over"));
}

TEST_F(ExodusSourceTest, NamesThatAreEmptyOrRepeatAreMadeUp) {
    Reading const reading = ReadMade([](NetcdfWriter& file) {
        AddNodal(file, {"chi", "", "chi", "  "});
    });
    EXPECT_THAT(reading.frames[0].Labels(),
                ElementsAre("chi", "nodal_variable_2", "chi (3)", "nodal_variable_4"));
    EXPECT_EQ(reading.notes.size(), 3u);
    EXPECT_THAT(reading.notes[1], HasSubstr("several 'chi' in name_nod_var"));
}

TEST_F(ExodusSourceTest, NamesMustBeText) {
    EXPECT_THAT(ReadMade([](NetcdfWriter& file) { AddNodal(file, {"a\xff"}); }).error,
                HasSubstr("name_nod_var: name 1 is not UTF-8"));
    EXPECT_THAT(ReadMade([](NetcdfWriter& file) {
                    AddNodal(file, {"a", "b\x1b"});
                }).error,
                HasSubstr("name_nod_var: name 2 has a control character"));
    EXPECT_EQ(
        ReadMade([](NetcdfWriter& file) { AddNodal(file, {"\xcf\x83"}); }).frames[0].Labels()[0],
        "\xcf\x83");
}

TEST_F(ExodusSourceTest, TheTruthTableSaysWhatBlocksHave) {
    auto const make = [](std::vector<long long> const& table) {
        return [table](NetcdfWriter& file) {
            file.Texts("name_elem_var", "num_elem_var", {"xi", "chi"});
            file.Integers("elem_var_tab", {"num_el_blk", "num_elem_var"}, table);
            file.Reals("vals_elem_var1eb1", {"time_step", "num_el_in_blk1"}, {1, 2, 3, 4});
            file.Reals("vals_elem_var1eb3", {"time_step", "num_el_in_blk3"}, {5, 6, 7, 8, 9, 10});
        };
    };
    Reading const denied = ReadMade(make({1, 0, 0, 0, 0, 0}));
    EXPECT_THAT(denied.frames[0].Field("xi").ByLabel(),
                ElementsAre(Pair(1, Values{1}), Pair(2, Values{2})));
    EXPECT_THAT(denied.notes, UnorderedElementsAre(HasSubstr("vals_elem_var1eb3 is passed over"),
                                                   HasSubstr("'chi' has no values")));
    EXPECT_THAT(ReadMade(make({1, 1, 0, 0, 1, 0})).error,
                HasSubstr("vals_elem_var2eb1 is missing"));
    EXPECT_EQ(ReadMade(make({1, 0, 1, 1, 1, 0})).error, "") << "a block without elements";
}

struct BadFile {
    char const* message;
    std::function<void(NetcdfWriter&)> fill;
};

TEST_F(ExodusSourceTest, WhatContradictsTheFormatIsRefused) {
    BadFile const files[] = {
        {"vals_nod_var1: has 2 x 3 values, where 2 x 4 were expected",
         [](NetcdfWriter& file) {
             file.Texts("name_nod_var", "num_nod_var", {"chi"});
             file.Reals("vals_nod_var1", {"time_step", "num_dim"}, {1, 2, 3, 4, 5, 6});
         }},
        {"vals_nod_var1: has 4 values, where 2 x 4 were expected",
         [](NetcdfWriter& file) {
             file.Texts("name_nod_var", "num_nod_var", {"chi"});
             file.Reals("vals_nod_var1", {"num_nodes"}, {1, 2, 3, 4});
         }},
        {"vals_nod_var1: its values are not real numbers",
         [](NetcdfWriter& file) {
             file.Texts("name_nod_var", "num_nod_var", {"chi"});
             file.Integers("vals_nod_var1", {"time_step", "num_nodes"}, {1, 2, 3, 4});
         }},
        {"name_nod_var: no table of characters",
         [](NetcdfWriter& file) {
             file.Reals("name_nod_var", {"num_nodes"}, {1, 2, 3, 4});
         }},
        {"node_num_map: is not a list of 4 whole numbers",
         [](NetcdfWriter& file) {
             file.Reals("node_num_map", {"num_nodes"}, {1, 2, 3, 4});
         }},
        {"elem_num_map: is not a list of 5 whole numbers",
         [](NetcdfWriter& file) {
             file.Integers("elem_num_map", {"num_nodes"}, {1, 2, 3, 4});
         }},
        {"elem_var_tab: is not a table of 3 element blocks and 1 variable",
         [](NetcdfWriter& file) {
             file.Texts("name_elem_var", "num_elem_var", {"chi"});
             file.Integers("elem_var_tab", {"num_el_blk"}, {1, 1, 1});
         }},
        {"num_elem is 5, and the element blocks have 6 elements",
         [](NetcdfWriter& file) { file.Dimension("num_el_in_blk2", 1); }},
        {"vals_elem_var1eb1: has a third dimension",
         [](NetcdfWriter& file) {
             file.Texts("name_elem_var", "num_elem_var", {"chi"});
             file.Reals("vals_elem_var1eb1", {"time_step", "num_el_in_blk1", "num_dim"},
                        Values(12, 1.0));
         }},
    };
    for (BadFile const& file : files) {
        EXPECT_THAT(ReadMade(file.fill).error, HasSubstr(file.message));
    }
}

TEST_F(ExodusSourceTest, FilesOfOtherKindsAreRefused) {
    std::string const path = m_folder / "other";
    EXPECT_THAT(Read(path).error, HasSubstr("there is no such file"));
    EXPECT_THAT(Read(m_folder.Path().string()).error, HasSubstr("is not a file"));
    std::ofstream(path) << "CDX";
    EXPECT_THAT(Read(path).error, HasSubstr("is not a netCDF file"));
    std::ofstream(path) << "\x89HDF\r\n\x1a\n" << std::string(100, 'x');
    EXPECT_THAT(Read(path).error, HasSubstr("cannot be read as a netCDF file"));
    { NetcdfWriter const file(path, NC_NETCDF4); }
    EXPECT_THAT(Read(path).error,
                HasSubstr("is not an Exodus II file: it has no dimension num_dim"));
}

TEST_F(ExodusSourceTest, OfAFileThatIsCutShortTheWholeTimeStepsAreRead) {
    for (int const form : {0, NC_64BIT_OFFSET, NC_64BIT_DATA}) {
        ReadMade([](NetcdfWriter& file) { AddNodal(file, {"chi"}); }, form);
        std::string const path = m_folder / "made.e";
        // Behind the data there may be more.
        bool whole = true;
        for (std::uintmax_t size = std::filesystem::file_size(path); whole && size > 0;) {
            size -= std::min<std::uintmax_t>(size, 7);
            std::filesystem::resize_file(path, size);
            whole = Read(path).error.empty();
        }
        ExodusSource source(path);
        ResultFrame frame;
        ResultField field;
        ResultBlock block;
        ASSERT_TRUE(source.NextFrame(frame));
        ASSERT_TRUE(source.NextField(field));
        ASSERT_TRUE(source.NextBlock(block));
        EXPECT_EQ(block.values[3], 3.1);
        EXPECT_THROW(source.NextFrame(frame), UnfinishedResults);
    }
}

// A cut takes away what lies behind the data, or it is noticed: nothing is made up.
TEST_F(ExodusSourceTest, EveryCutOfAClassicFileIsNoticed) {
    auto const values = [](Reading const& reading) {
        std::vector<std::map<int, Values>> all;
        for (FrameRead const& frame : reading.frames) all.push_back(frame.Field("chi").ByLabel());
        return all;
    };
    auto const whole = values(ReadMade([](NetcdfWriter& file) {
        file.Integers("node_num_map", {"num_nodes"}, {5, 6, 7, 8});
        AddNodal(file, {"chi"});
    }));
    ASSERT_EQ(whole.size(), 2u);
    std::string const path = m_folder / "made.e", cut = m_folder / "cut.e";
    std::filesystem::copy_file(path, cut);
    int refused = 0;
    for (std::uintmax_t size = std::filesystem::file_size(path); size > 0;) {
        size -= std::min<std::uintmax_t>(size, 5);
        std::filesystem::resize_file(cut, size);
        Reading const reading = Read(cut);
        if (reading.error.empty()) {
            EXPECT_EQ(values(reading), whole) << size;
            EXPECT_EQ(refused, 0) << size;
        } else {
            ++refused;
        }
    }
    EXPECT_GT(refused, 50);
}

// Bytes of the header at random: refused or read, and the process lives.
TEST_F(ExodusSourceTest, DamagedClassicFilesEndNothing) {
    std::random_device device;
    unsigned const seed = device();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int const form : {0, NC_64BIT_OFFSET, NC_64BIT_DATA}) {
        ReadMade(
            [](NetcdfWriter& file) {
                file.Integers("node_num_map", {"num_nodes"}, {5, 6, 7, 8});
                AddNodal(file, {"disp_x", "disp_y"});
                file.Texts("name_elem_var", "num_elem_var", {"xi"});
                file.Reals("vals_elem_var1eb1", {"time_step", "num_el_in_blk1"}, {1, 2, 3, 4});
            },
            form);
        std::ifstream in(m_folder / "made.e", std::ios::binary);
        std::string const whole{std::istreambuf_iterator<char>(in), {}};
        std::string const path = m_folder / "damaged.e";
        for (int i = 0; i < 200; ++i) {
            std::string bytes = whole;
            for (unsigned n = 1 + random() % 4; n > 0; --n) {
                std::size_t const at = 4 + random() % (bytes.size() - 4);
                bytes[at] = static_cast<char>(random() % 2 ? random() : 0xffu * (random() % 2));
            }
            std::ofstream(path, std::ios::binary) << bytes;
            try {
                ExodusSource source(path);
                ResultFrame frame;
                ResultField field;
                ResultBlock block;
                for (int f = 0; f < 3 && source.NextFrame(frame); ++f) {
                    while (source.NextField(field)) {
                        for (int b = 0; b < 3 && source.NextBlock(block); ++b) {
                            EXPECT_EQ(block.values.size(),
                                      block.labels.size() * static_cast<std::size_t>(block.points) *
                                          field.components.size());
                        }
                    }
                }
            } catch (Failure const& failure) {
                EXPECT_THAT(failure.what(), HasSubstr(path + ": "));
            }
        }
    }
}

}  // namespace
}  // namespace kov::tool
