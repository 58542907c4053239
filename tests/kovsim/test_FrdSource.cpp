// .frd files, byte by byte.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "FrdSource.h"
#include "FrdText.h"

namespace kov::test {
namespace {

using tool::FrdSource;
using tool::ResultBlock;
using tool::ResultField;
using tool::ResultFrame;
using tool::StepKind;

std::unique_ptr<FrdSource> Open(std::string const& text) {
    std::FILE* const file = std::tmpfile();
    std::fwrite(text.data(), 1, text.size(), file);
    std::rewind(file);
    return std::make_unique<FrdSource>(std::make_unique<tool::TextLines>("r.frd", file));
}

struct ReadField {
    ResultField field;
    std::vector<int> labels;
    std::vector<double> values;
};
struct ReadFrame {
    ResultFrame frame;
    std::vector<ReadField> fields;
};

std::vector<ReadFrame> ReadAll(std::string const& text) {
    std::vector<ReadFrame> frames;
    auto const source = Open(text);
    ResultFrame frame;
    while (source->NextFrame(frame)) {
        ReadFrame& read = frames.emplace_back();
        read.frame = frame;
        ResultField field;
        while (source->NextField(field)) {
            ReadField& made = read.fields.emplace_back();
            made.field = field;
            ResultBlock block;
            while (source->NextBlock(block)) {
                EXPECT_EQ(block.points, 1);
                made.labels.insert(made.labels.end(), block.labels.begin(), block.labels.end());
                made.values.insert(made.values.end(), block.values.begin(), block.values.end());
            }
        }
    }
    return frames;
}

std::string Error(std::string const& text) {
    try {
        ReadAll(text);
    } catch (tool::UnfinishedResults const& failure) {
        return std::string("unfinished: ") + failure.what();
    } catch (tool::Failure const& failure) {
        return failure.what();
    }
    return "";
}

FrdText OneScalar(std::string const& value = "1.0") {
    FrdText frd;
    frd.Header(1, 1, "1.0", 1).Scalar("NDTEMP", "T").Row(7, {value}).EndRows();
    return frd;
}

TEST(FrdSource, FramesHaveFieldsWithRows) {
    FrdText frd;
    frd.Header(1, 1, "0.25", 2).Vector("DISP", "D");
    frd.Row(7, {"1.00000E+00", "2.5", "-3"}).Row(3, {"4", "5", "6"}).EndRows();
    frd.Header(1, 1, "0.25", 1).Tensor("STRESS", "S");
    frd.Row(7, {"11", "22", "33", "12", "23", "31"}).EndRows();
    frd.Header(1, 2, "0.5", 1).Scalar("NDTEMP", "T").Row(3, {"20"}).EndRows();
    std::vector<ReadFrame> const frames = ReadAll(frd.End());
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_EQ(frames[0].frame.step, 1);
    EXPECT_EQ(frames[0].frame.increment, 1);
    EXPECT_EQ(frames[0].frame.kind, StepKind::Static);
    EXPECT_EQ(frames[0].frame.value, 0.25);
    EXPECT_EQ(frames[0].frame.totalTime, 0.25);
    ASSERT_EQ(frames[0].fields.size(), 2U);
    ReadField const& u = frames[0].fields[0];
    EXPECT_EQ(u.field.label, "U");
    EXPECT_EQ(u.field.place, tool::ResultPlace::Node);
    EXPECT_EQ(u.field.components, (std::vector<std::string>{"U1", "U2", "U3"}));
    EXPECT_EQ(u.labels, (std::vector<int>{7, 3}));
    EXPECT_EQ(u.values, (std::vector<double>{1, 2.5, -3, 4, 5, 6}));
    ReadField const& s = frames[0].fields[1];
    EXPECT_EQ(s.field.label, "S");
    EXPECT_EQ(s.field.components,
              (std::vector<std::string>{"S11", "S22", "S33", "S12", "S23", "S13"}));
    EXPECT_EQ(s.values, (std::vector<double>{11, 22, 33, 12, 23, 31}));
    EXPECT_EQ(frames[1].frame.increment, 2);
    ASSERT_EQ(frames[1].fields.size(), 1U);
    EXPECT_EQ(frames[1].fields[0].field.components, (std::vector<std::string>{"NT"}));
}

TEST(FrdSource, FramesThatNobodyReadsArePassedOver) {
    FrdText frd;
    for (int increment = 1; increment <= 3; ++increment) {
        for (int field = 0; field < 2; ++field) {
            frd.Header(1, increment, std::to_string(increment), 2);
            frd.Scalar(field == 0 ? "NDTEMP" : "RFL", "T").Row(1, {"1"}).Row(2, {"2"}).EndRows();
        }
    }
    auto const source = Open(frd.End());
    ResultFrame frame;
    ASSERT_TRUE(source->NextFrame(frame));
    ASSERT_TRUE(source->NextFrame(frame));
    EXPECT_EQ(frame.increment, 2);
    ResultField field;
    ASSERT_TRUE(source->NextField(field));
    ASSERT_TRUE(source->NextField(field));
    EXPECT_EQ(field.label, "RFL");
    ASSERT_TRUE(source->NextFrame(frame));
    EXPECT_EQ(frame.increment, 3);
    EXPECT_FALSE(source->NextFrame(frame));
    EXPECT_FALSE(source->NextFrame(frame));
}

TEST(FrdSource, NumbersTouchEachOther) {
    FrdText frd;
    frd.Header(1, 1, "1.0", 1).Vector("DISP", "D");
    frd.Row(1234567890, {"-1.00000E-05", "-2.00000E+05", "-3.00000E+00"}).EndRows();
    ReadField const field = ReadAll(frd.End())[0].fields[0];
    EXPECT_EQ(field.labels[0], 1234567890);
    EXPECT_EQ(field.values, (std::vector<double>{-1e-5, -2e5, -3}));
}

TEST(FrdSource, NumbersAreReadToTheLastBit) {
    struct Sample {
        char const* text;
        double value;
    };
    for (Sample const& sample :
         {Sample{"0.1", 0.1}, Sample{"1.41877E-10", 1.41877e-10}, Sample{"-0.0", -0.0},
          Sample{"0.1-105", 0.1e-105}, Sample{"-.25+101", -.25e101}, Sample{"1.5D+03", 1500.0},
          Sample{"1.5d-3", 1.5e-3}, Sample{"+1.5E+00", 1.5}, Sample{"4.9E-324", 4.9e-324},
          Sample{"1E-400", 0.0}, Sample{"Inf", INFINITY}, Sample{"-Infinity", -INFINITY},
          Sample{"123", 123.0}}) {
        double const value = ReadAll(OneScalar(sample.text).End())[0].fields[0].values[0];
        EXPECT_EQ(value, sample.value) << sample.text;
        EXPECT_EQ(std::signbit(value), std::signbit(sample.value)) << sample.text;
    }
    EXPECT_TRUE(std::isnan(ReadAll(OneScalar("NaN").End())[0].fields[0].values[0]));
    for (char const* const wrong :
         {"1E999", "************", "1.0.0", "0x10", "E5", "1-", "--1", "1 2", "e", "abc"}) {
        EXPECT_EQ(Error(OneScalar(wrong).End()),
                  "r.frd:6: '" + std::string(wrong) + "' is no real number");
    }
}

TEST(FrdSource, MoreThanSixValuesGoOnInTheNextLine) {
    FrdText frd;
    frd.Header(1, 1, "1.0", 2).Line(" -4  MANY        8    1");
    std::vector<std::string> labels;
    for (int i = 1; i <= 8; ++i) {
        frd.Component("C" + std::to_string(i), 1, i, 0);
        labels.push_back("MANY-C" + std::to_string(i));
    }
    frd.Row(1, {"1", "2", "3", "4", "5", "6", "7", "8"});
    frd.Row(2, {"9", "10", "11", "12", "13", "14", "15", "16"}).EndRows();
    ReadField const field = ReadAll(frd.End())[0].fields[0];
    EXPECT_EQ(field.field.components, labels);
    EXPECT_EQ(field.labels, (std::vector<int>{1, 2}));
    ASSERT_EQ(field.values.size(), 16U);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(field.values[static_cast<std::size_t>(i)], i + 1);
}

TEST(FrdSource, ShortLabelsHaveFiveColumns) {
    FrdText frd;
    frd.Header(1, 1, "1.0", 1, 0, 0).Scalar("NDTEMP", "T");
    frd.Line(" -112345-1.00000E-05").EndRows();
    ReadField const field = ReadAll(frd.End())[0].fields[0];
    EXPECT_EQ(field.labels[0], 12345);
    EXPECT_EQ(field.values[0], -1e-5);
}

TEST(FrdSource, TheMeshIsPassedOver) {
    FrdText frd;
    frd.Line("    1UUSER").Line("    1UMAT    1M");
    frd.Line("    2C                             2                                     1");
    frd.Line(" -1         1 0.0 0.0 0.0").Line(" -1         2 0.0 0.0 0.0").Line(" -3");
    frd.Line("    3C                             1                                     1");
    frd.Line(" -1         1    1    0    1").Line(" -2         1         2").Line(" -3");
    frd.Header(1, 1, "1.0", 1).Scalar("NDTEMP", "T").Row(7, {"1"}).EndRows();
    auto const source = Open(frd.End());
    ResultFrame frame;
    EXPECT_TRUE(source->NextFrame(frame));
    EXPECT_EQ(source->Notes(),
              (std::vector<std::string>{
                  "r.frd: the mesh of the file is not looked at, 2 nodes and 1 element"}));
    EXPECT_EQ(source->Where(), "r.frd:13");
    FrdText wrong;
    wrong.Line("    2C                             3                                     1");
    wrong.Line(" -1         1 0.0 0.0 0.0").Line(" -3");
    EXPECT_EQ(Error(wrong.End()), "r.frd:4: 1 nodes where the header says 3");
}

TEST(FrdSource, BinaryFilesAreRefused) {
    FrdText mesh;
    mesh.Line("    2C                             2                                     2");
    EXPECT_EQ(Error(mesh.text), "r.frd:2: the mesh is binary; expected an ASCII .frd file");
    FrdText values;
    values.Header(1, 1, "1.0", 1, 0, 2).Scalar("NDTEMP", "T");
    EXPECT_EQ(Error(values.text), "r.frd:3: the values are binary; expected an ASCII .frd file");
}

TEST(FrdSource, CarriageReturnsEndLinesToo) {
    FrdText frd;
    frd.text.clear();
    frd.newline = "\r\n";
    frd.Line("    1C").Header(1, 1, "1.0", 1).Scalar("NDTEMP", "T").Row(7, {"1.5"}).EndRows();
    EXPECT_EQ(ReadAll(frd.End())[0].fields[0].values[0], 1.5);
}

TEST(FrdSource, TheLastLineMayHaveNoNewline) {
    std::string text = OneScalar().End();
    text.pop_back();
    EXPECT_EQ(ReadAll(text).size(), 1U);
}

TEST(FrdSource, TimesWithinASecondStepAreDifferencesOfDecimals) {
    FrdText frd;
    for (auto const& [step, value] : std::vector<std::pair<int, std::string>>{
             {1, "5.00000E-01"}, {1, "1.100000000"}, {2, "1.300000000"}, {2, "2.100000000"}}) {
        frd.Header(step, value[0] == '2' ? 2 : 1, value, 1).Scalar("DISP", "D").Row(1, {"1"});
        frd.EndRows();
    }
    std::vector<ReadFrame> const frames = ReadAll(frd.End());
    ASSERT_EQ(frames.size(), 4U);
    EXPECT_EQ(frames[1].frame.value, 1.1);
    EXPECT_EQ(frames[2].frame.value, 0.2);  // 1.3 - 1.1 is 0.19999999999999996
    EXPECT_EQ(frames[2].frame.totalTime, 1.3);
    EXPECT_EQ(frames[3].frame.value, 1.0);
}

TEST(FrdSource, ModesHaveFrequencies) {
    FrdText frd;
    for (int mode = 1; mode <= 2; ++mode) {
        frd.Line("    1PSTEP                         1           1           1");
        frd.Line("    1PMODE                        " + std::to_string(mode));
        frd.Value(std::to_string(mode) + ".5", 1, 2, mode, "MODAL").Scalar("DISP", "D");
        frd.Row(1, {"1"}).EndRows();
    }
    std::vector<ReadFrame> const frames = ReadAll(frd.End());
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_EQ(frames[1].frame.kind, StepKind::Frequency);
    EXPECT_EQ(frames[1].frame.increment, 2);
    EXPECT_EQ(frames[1].frame.value, 2.5);
    EXPECT_EQ(frames[1].frame.totalTime, 0.0);
    EXPECT_EQ(frames[1].frame.text, "MODAL");
}

// As the solver writes them: the steps are 1 in the file, and come behind step 1.
TEST(FrdSource, BucklingStepsComeBehindTheStepBeforeThem) {
    FrdText frd;
    struct Set {
        int step;
        int type;
        char const* value;
    };
    for (Set const& set : {Set{1, 0, "1.0"}, Set{1, 4, "0.0"}, Set{1, 4, "21.5"}, Set{1, 4, "27.5"},
                           Set{1, 4, "0.00000E+00"}, Set{1, 4, "30.0"}, Set{4, 0, "2.0"}}) {
        frd.Header(set.step, 1, set.value, 1, set.type).Scalar("DISP", "D").Row(1, {"1"}).EndRows();
    }
    std::vector<int> steps;
    std::vector<int> increments;
    for (ReadFrame const& frame : ReadAll(frd.End())) {
        steps.push_back(frame.frame.step);
        increments.push_back(frame.frame.increment);
        EXPECT_EQ(frame.frame.totalTime, frame.frame.step == 4 ? 2.0 : 1.0);
    }
    EXPECT_EQ(steps, (std::vector<int>{1, 2, 2, 2, 3, 3, 4}));
    EXPECT_EQ(increments, (std::vector<int>{1, 0, 1, 2, 0, 1, 1}));
}

TEST(FrdSource, KindsOfStepsAreToldByWhatTheyHave) {
    auto const kind = [](int type, int increment, char const* field) {
        FrdText frd;
        frd.Header(1, increment, "1.0", 1, type).Scalar(field, "A").Row(1, {"1"}).EndRows();
        return ReadAll(frd.End())[0].frame.kind;
    };
    EXPECT_EQ(kind(0, 1, "DISP"), StepKind::Static);
    EXPECT_EQ(kind(0, 1, "NDTEMP"), StepKind::HeatTransfer);
    EXPECT_EQ(kind(1, 1, "NDTEMP"), StepKind::HeatTransfer);
    EXPECT_EQ(kind(1, 1, "DISP"), StepKind::Dynamic);
    EXPECT_EQ(kind(1, 0, "PDISP"), StepKind::SteadyState);
    EXPECT_EQ(kind(3, 1, "DISP"), StepKind::Unknown);
}

TEST(FrdSource, FieldsWithoutATableRowKeepTheirNames) {
    FrdText frd;
    frd.Header(1, 1, "1.0", 1).Tensor("ZZSTR", "S");
    frd.Row(1, {"1", "2", "3", "4", "5", "6"}).EndRows();
    frd.Header(1, 1, "1.0", 1).Vector("DISPI", "D").Row(1, {"1", "2", "3"}).EndRows();
    frd.Header(1, 1, "1.0", 1).Scalar("ERROR", "STR(%)").Row(1, {"1"}).EndRows();
    frd.Header(1, 1, "1.0", 1).Line(" -4  CONTACT     6    1");
    for (char const* const name : {"COPEN", "CSLIP1", "CSLIP2", "CPRESS", "CSHEAR1", "CSHEAR2"}) {
        frd.Component(name, 4, 1, 1);
    }
    frd.Row(1, {"1", "2", "3", "4", "5", "6"}).EndRows();
    std::vector<ReadField> const fields = ReadAll(frd.End())[0].fields;
    ASSERT_EQ(fields.size(), 4U);
    EXPECT_EQ(fields[0].field.components[5], "ZZSTR13");
    EXPECT_EQ(fields[1].field.components[2], "DISPI3");
    EXPECT_EQ(fields[2].field.components, (std::vector<std::string>{"ERROR"}));
    EXPECT_EQ(fields[3].field.label, "CONTACT");
    EXPECT_EQ(fields[3].field.components[3], "CPRESS");
}

TEST(FrdSource, WhatIsDamagedIsToldByItsLine) {
    EXPECT_EQ(Error(OneScalar().Line("hello").End()),
              "r.frd:8: 'hello' begins no record of an .frd file");
    FrdText count;
    count.Header(1, 1, "1.0", 3).Scalar("NDTEMP", "T").Row(7, {"1"}).EndRows();
    EXPECT_EQ(Error(count.End()), "r.frd:7: 1 rows in field 'NDTEMP' where the header says 3");
    FrdText few;
    few.Header(1, 1, "1.0", 1).Vector("DISP", "D").Row(7, {"1", "2"}).EndRows();
    EXPECT_EQ(Error(few.End()), "r.frd:9: 2 numbers in the row; expected 3");
    FrdText many;
    many.Header(1, 1, "1.0", 1).Scalar("NDTEMP", "T").Row(7, {"1", "2"}).EndRows();
    EXPECT_EQ(Error(many.End()), "r.frd:6: more than 1 number in the row");
    FrdText label;
    label.Header(1, 1, "1.0", 1).Scalar("NDTEMP", "T").Row(0, {"1"}).EndRows();
    EXPECT_EQ(Error(label.End()), "r.frd:6: '0' is no label of a node");
    FrdText row;
    row.Header(1, 1, "1.0", 1).Scalar("NDTEMP", "T").Line(" -7").EndRows();
    EXPECT_EQ(Error(row.End()),
              "r.frd:6: expected a row that begins with -1, or -3 behind the last");
    FrdText names;
    names.Header(1, 1, "1.0", 1).Line(" -4  DISP        4    1").Component("D1", 2, 1, 0).EndRows();
    EXPECT_EQ(Error(names.End()), "r.frd:6: 1 names of components where the header says 4");
    FrdText place;
    place.Header(1, 1, "1.0", 1).Line(" -4  DISP        1    2");
    EXPECT_EQ(Error(place.End()), "r.frd:4: field 'DISP' is not one of values at nodes");
    FrdText value;
    value.Header(1, 1, "x", 1);
    EXPECT_EQ(Error(value.End()),
              "r.frd:3: expected value, count, kind, number and format behind 100C");
    for (std::string const text : {"NaN", "-inf"}) {
        FrdText time;
        time.Header(1, 1, text, 1);
        EXPECT_EQ(Error(time.End()),
                  "r.frd:3: '" + text + "' is no time, frequency or load factor");
    }
    FrdText step;
    step.Line("    1PSTEP");
    EXPECT_EQ(Error(step.End()), "r.frd:2: no step and increment behind 1PSTEP");
    EXPECT_EQ(Error("    1C\n" + std::string(70'000, ' ') + "\n"),
              "r.frd:2: a line of more than 65536 bytes is no text");
}

TEST(FrdSource, EveryCutIsAnUnfinishedFile) {
    FrdText frd;
    frd.Line("    2C                             1                                     1");
    frd.Line(" -1         1 0.0 0.0 0.0").Line(" -3");
    frd.Header(1, 1, "1.0", 1).Vector("DISP", "D").Row(7, {"1", "2", "3"}).EndRows();
    frd.Header(1, 2, "2.0", 1).Tensor("STRESS", "S");
    frd.Row(7, {"1", "2", "3", "4", "5", "6"}).EndRows();
    std::string const text = frd.End();
    EXPECT_EQ(Error(text), "");
    for (std::size_t size = 0; size + 2 < text.size(); ++size) {
        std::string const error = Error(text.substr(0, size));
        EXPECT_EQ(error.substr(0, 18), "unfinished: r.frd:") << size << " " << error;
    }
}

TEST(FrdSource, AreKnownByTheirStart) {
    EXPECT_TRUE(tool::LooksLikeFrd("    1C\n"));
    EXPECT_FALSE(tool::LooksLikeFrd("   1C\n"));
    EXPECT_FALSE(tool::LooksLikeFrd(""));
    EXPECT_FALSE(tool::LooksLikeFrd("CDF\x01"));
}

}  // namespace
}  // namespace kov::test
