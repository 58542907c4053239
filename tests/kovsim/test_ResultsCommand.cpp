// `kovsim results`: files of results on their way into a document.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "CommandFixture.h"
#include "FrdText.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "ResultSamples.h"
#include "zdm_ComponentSymbols.h"

namespace kov::test {
namespace {

class ResultsCommand : public CommandTest {
  protected:
    ResultsCommand() : CommandTest("results") {}

    void SetUp() override {
        WriteFile(
            work / "d.inp",
            "*NODE\n10, 0, 0\n20, 1, 0\n30, 2, 0\n*ELEMENT, TYPE=T3D2\n1, 10, 20\n2, 20, 30\n");
        ASSERT_EQ(work.Run({"translate", "d.inp", "-o", "m.ksd"}).status, 0);
    }
    /// Increments from 1 on, each with a temperature and an error estimate.
    static FrdText Frames(int count, std::vector<int> const& labels = {10, 20, 30}) {
        FrdText frd;
        for (int increment = 1; increment <= count; ++increment) {
            for (char const* const name : {"NDTEMP", "ERROR"}) {
                frd.Header(1, increment, std::to_string(increment) + ".5",
                           static_cast<long>(labels.size()));
                frd.Scalar(name, "T");
                for (int const label : labels) frd.Row(label, {std::to_string(label * increment)});
                frd.EndRows();
            }
        }
        return frd;
    }
    std::string Failure(std::vector<std::string> const& arguments) const {
        Workshop::Result const result = Ask(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        return result.errors;
    }
    int FrameCount() const {
        KOVObjDocument const document =
            KOVObjDocument::Open((work / "m.ksd").c_str(), KOVObjDocument::ReadOnly);
        ResultLook const look(document);
        int count = 0;
        for (KOVSimPosition const& step : look.Steps()) {
            count += static_cast<int>(ResultLook::Frames(step).size());
        }
        document.Close();
        return count;
    }
};

TEST_F(ResultsCommand, TellsWhatItAdded) {
    WriteFile(work / "r.frd", Frames(2).End());
    Workshop::Result const result = Ask({"--add", "r.frd"});
    EXPECT_EQ(result.status, 0) << result.errors;
    std::string const expected =
        "r.frd -> m.ksd\n"
        "steps made                          1\n"
        "frames added                        2\n"
        "fields                              4\n"
        "  NT as NT                          2\n"
        "  ERROR as ERROR                    2\n"
        "values                             12\n"
        "variable 'ERROR' is not known, and stands under its own name\n"
        "seconds";
    EXPECT_EQ(result.output.substr(0, expected.size()), expected);
    EXPECT_EQ(work.Run({"verify", "m.ksd"}).status, 0);
}

TEST_F(ResultsCommand, LongNamesWidenTheColumn) {
    FrdText frd;
    frd.Header(1, 1, "1.", 1).Scalar("ENER", "ENER").Row(10, {"2."}).EndRows();
    frd.Header(1, 1, "1.", 1).Scalar("NDTEMP", "T").Row(10, {"3."}).EndRows();
    WriteFile(work / "r.frd", frd.End());
    std::string const output = Ask({"--add", "r.frd"}).output;
    std::string const expected =
        "r.frd -> m.ksd\n"
        "steps made                                  1\n"
        "frames added                                1\n"
        "fields                                      2\n"
        "  SENER as STRAIN_ENERGY_DENSITY            1\n"
        "  NT as NT                                  1\n"
        "values                                      2\n"
        "seconds";
    EXPECT_EQ(output.substr(0, expected.size()), expected);
}

TEST_F(ResultsCommand, TellsItAsJson) {
    WriteFile(work / "r.frd", Frames(2, {10, 99}).End());
    Workshop::Result const result = Ask({"--add", "r.frd", "--json", "--skip-unknown"});
    ASSERT_EQ(result.status, 0) << result.errors;
    JsonValue const json = ParseJson(result.output);
    EXPECT_EQ(json["document"].text, "m.ksd");
    EXPECT_EQ(json["framesAdded"].number, 2);
    EXPECT_EQ(json["framesThere"].number, 0);
    EXPECT_EQ(json["stepsMade"].number, 1);
    EXPECT_EQ(json["fields"].number, 4);
    EXPECT_EQ(json["values"].number, 4);
    EXPECT_EQ(json["skippedRows"].number, 4);
    EXPECT_EQ(json["variables"][0]["label"].text, "NT");
    EXPECT_EQ(json["variables"][0]["fields"][0]["name"].text, "NT");
    EXPECT_EQ(json["variables"][0]["firstSkipped"][0].number, 99);
}

TEST_F(ResultsCommand, AGrowingFileIsAddedAgainAndAgainAndReadersSeeEachFrame) {
    KOVObjDocument const reader =
        KOVObjDocument::Open((work / "m.ksd").c_str(), KOVObjDocument::ReadOnly);
    EXPECT_TRUE(ResultLook(reader).Steps().empty());
    for (int count = 1; count <= 3; ++count) {
        WriteFile(work / "r.frd", Frames(count).End());
        Workshop::Result const result = Ask({"--add", "r.frd"});
        EXPECT_EQ(result.status, 0) << result.errors;
        EXPECT_TRUE(reader.Refresh());
        std::vector<KOVSimPosition> const frames =
            ResultLook::Frames(ResultLook(reader).Steps().at(0));
        ASSERT_EQ(frames.size(), static_cast<std::size_t>(count));
        FieldValues values = ResultLook::Values(ResultLook::Field(frames.back(), "NT"));
        EXPECT_EQ(values[34][0][2], 30.0 * count);
    }
    reader.Close();
}

// While another process adds frames this one sees them, whole, before that process ends.
TEST_F(ResultsCommand, ReadersSeeWholeFramesWhileOthersAreAddedAndAnInterruptLeavesThem) {
    constexpr int kFrames = 4000;
    WriteFile(work / "r.frd", Frames(kFrames).End());
    KOVObjDocument const reader =
        KOVObjDocument::Open((work / "m.ksd").c_str(), KOVObjDocument::ReadOnly);
    auto const seen = [&] {
        reader.Refresh();
        std::vector<KOVSimPosition> const steps = ResultLook(reader).Steps();
        return steps.empty() ? std::vector<KOVSimPosition>() : ResultLook::Frames(steps[0]);
    };
    Process process(work.Folder(), {"results", "m.ksd", "--add", "r.frd"});
    std::size_t frames = 0;
    int times = 0;  // that there were more
    auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (times < 3 && std::chrono::steady_clock::now() < end) {
        std::vector<KOVSimPosition> const now = seen();
        if (now.size() == frames) continue;
        EXPECT_GT(now.size(), frames);
        frames = now.size();
        ++times;
        EXPECT_EQ(now.back().GetSet(schema::Frame_fields()).Size(), 2);
        for (char const* const name : {"NT", "ERROR"}) {
            FieldValues values = ResultLook::Values(ResultLook::Field(now.back(), name));
            EXPECT_EQ(values[zdm_Component_C_SCALAR][0][2], 30.0 * static_cast<double>(frames));
        }
    }
    process.Signal(SIGTERM);
    EXPECT_EQ(process.Wait(), 1000 + SIGTERM);
    EXPECT_EQ(times, 3);
    std::size_t const left = seen().size();
    reader.Close();
    EXPECT_GE(left, frames);
    EXPECT_LT(left, static_cast<std::size_t>(kFrames));
    EXPECT_NE(process.Errors().find("; " + std::to_string(left) + " frames were added before"),
              std::string::npos)
        << process.Errors();
    EXPECT_EQ(work.Run({"verify", "m.ksd"}).status, 0);
}

TEST_F(ResultsCommand, SeveralFilesAreAddedInTheirOrder) {
    WriteFile(work / "a.frd", Frames(1).End());
    WriteFile(work / "b.frd", Frames(3).End());
    Workshop::Result const result = Ask({"--add", "a.frd", "b.frd"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_NE(result.output.find("frames added                        3\n"
                                 "frames already there                1\n"),
              std::string::npos)
        << result.output;
}

TEST_F(ResultsCommand, AnErrorTellsHowMuchIsThere) {
    FrdText frd = Frames(2);
    WriteFile(work / "r.frd", frd.text + "oops\n");
    EXPECT_EQ(Failure({"--add", "r.frd"}),
              "kovsim: r.frd:34: 'oops' begins no record of an .frd file; 1 frame was added "
              "before\n");
    EXPECT_EQ(FrameCount(), 1);
    EXPECT_EQ(Failure({"--add", "r.frd"}),
              "kovsim: r.frd:34: 'oops' begins no record of an .frd file; no frame was added\n");
    EXPECT_EQ(FrameCount(), 1);
}

TEST_F(ResultsCommand, AFileThatIsCutIsAnErrorUnlessItGrows) {
    WriteFile(work / "r.frd", Frames(2).text);
    EXPECT_EQ(Failure({"--add", "r.frd"}),
              "kovsim: r.frd:33: the file ends without 9999, so that its last frame may not be "
              "complete; 1 frame was added before\n");
    Workshop::Result const result = Ask({"--add", "r.frd", "--growing"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(FrameCount(), 1);
}

TEST_F(ResultsCommand, UnknownLabelsAreToldWithTheirPlace) {
    WriteFile(work / "r.frd", Frames(1, {10, 11, 20}).End());
    EXPECT_EQ(Failure({"--add", "r.frd"}),
              "kovsim: r.frd:3: 1 of 3 nodes of field 'NT' are not in the model: 11; expected "
              "labels of the model, or --skip-unknown; no frame was added\n");
    EXPECT_EQ(FrameCount(), 0);
}

TEST_F(ResultsCommand, WhatCannotBeOpenedIsTold) {
    WriteFile(work / "r.frd", Frames(1).End());
    WriteFile(work / "x.frd", "hello");
    WriteFile(work / "empty.frd", "");
    EXPECT_EQ(Failure({"--add", "none.frd"}),
              "kovsim: none.frd: cannot be opened: No such file or directory\n");
    EXPECT_EQ(Failure({"--add", "."}), "kovsim: .: cannot be read: Is a directory\n");
    EXPECT_EQ(Failure({"--add", "x.frd"}).substr(0, 46),
              "kovsim: x.frd: is no file of results; expected");
    EXPECT_EQ(Failure({"--add", "empty.frd"}).substr(0, 35), "kovsim: empty.frd: is empty; expect");
    ASSERT_EQ(mkfifo((work / "pipe.frd").c_str(), 0600), 0);
    EXPECT_EQ(Failure({"--add", "pipe.frd"}),
              "kovsim: pipe.frd: is a pipe or a device; expected a file\n");
    EXPECT_NE(Failure({}).find("--add is required"), std::string::npos);
    Workshop::Result const result = work.Run({"results", "none.ksd", "--add", "r.frd"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors, "kovsim: none.ksd: cannot be opened: No such file or directory\n");
    EXPECT_EQ(work.Run({"results", "r.frd", "--add", "r.frd"}).errors,
              "kovsim: r.frd: is no document; expected a folder such as MODEL.ksd\n");
}

TEST_F(ResultsCommand, AnotherWriterIsTold) {
    WriteFile(work / "r.frd", Frames(1).End());
    KOVObjDocument const writer =
        KOVObjDocument::Open((work / "m.ksd").c_str(), KOVObjDocument::ReadWrite);
    std::string const error = Failure({"--add", "r.frd"});
    writer.Close();
    EXPECT_EQ(error, "kovsim: cannot open m.ksd for writing: another writer has it open\n");
    EXPECT_EQ(FrameCount(), 0);
}

TEST_F(ResultsCommand, ADocumentWithoutMeshIsRefused) {
    Make([](KOVObjDocument const&) {});
    WriteFile(work / "r.frd", Frames(1).End());
    EXPECT_EQ(Failure({"--add", "r.frd"}),
              "kovsim: m.ksd: it has no mesh that results could belong to; no frame was added\n");
}

}  // namespace
}  // namespace kov::test
