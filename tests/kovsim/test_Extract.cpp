// kovsim extract, run as its users run it.

#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <string>

#include "KOVObjDocument.h"
#include "Process.h"
#include "RandomModel.h"

namespace kov::test {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

class Extract : public ::testing::Test {
  protected:
    Extract() {
        RandomModel const model(3, {}, KOVObjDocument::Create((work / "m.ksd").c_str()));
        elements = model.Elements();
        model.document.Close();
        // The sets of a deck, with elements that are known.
        WriteFile(
            work / "deck.inp",
            "*HEADING\nplate\n*NODE, NSET=N\n1, 0, 0\n2, 1, 0\n3, 1, 1\n4, 0, 1\n5, 2, 0\n6, 2, "
            "1\n*ELEMENT, TYPE=S4R, ELSET=LEFT\n10, 1, 2, 3, 4\n*ELEMENT, TYPE=S4R, "
            "ELSET=RIGHT\n20, 2, 5, 6, 3\n*ELSET, ELSET=BOTH\nLEFT, RIGHT\n");
        auto const result = work.Run({"translate", "deck.inp", "-o", "d.ksd"});
        EXPECT_EQ(result.status, 0) << result.errors;
    }
    Workshop::Result Run(std::string const& document, std::string const& set,
                         std::string const& output) const {
        return work.Run({"extract", document, "--set", set, "-o", output});
    }
    // Refused with that text; nothing is left behind.
    void ExpectRefused(std::string const& document, std::string const& set,
                       std::string const& output, std::string const& text) {
        Names const before = Entries(work.Folder());
        auto const result = Run(document, set, output);
        EXPECT_EQ(result.status, 2);
        EXPECT_NE(result.errors.find(text), std::string::npos) << result.errors;
        EXPECT_EQ(result.errors.find("assert"), std::string::npos) << result.errors;
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(Entries(work.Folder()), before);
    }
    template <class Body>
    void Damage(char const* name, Body body) {
        KOVObjDocument const document =
            KOVObjDocument::Open((work / name).c_str(), KOVObjDocument::ReadWrite);
        KOVSimTransaction transaction(document.ContextID());
        body(document);
        transaction.Commit();
        document.Close();
    }

    Workshop work;
    int elements = 0;
};

TEST_F(Extract, MakesASoundDocumentOfTheSet) {
    auto const result = Run("d.ksd", "RIGHT", "r.ksd");
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output.substr(0, 17), "d.ksd -> r.ksd\nno");
    EXPECT_NE(result.output.find("nodes                               4 of 6\n"), std::string::npos)
        << result.output;
    EXPECT_NE(result.output.find("element sets                        2 of 3\n"), std::string::npos)
        << result.output;
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(work.Run({"verify", "r.ksd"}).output, "r.ksd: sound\n");
    auto const info = work.Run({"info", "r.ksd"});
    EXPECT_NE(info.output.find("plate"), std::string::npos);
    EXPECT_NE(info.output.find("S4R                              1"), std::string::npos)
        << info.output;
    EXPECT_EQ(work.Run({"map", "r.ksd", "d.ksd", "--set", "BOTH"}).output,
              "element set BOTH: 1 in A, 1 of them in B\n  \"\": 20\n");
}

TEST_F(Extract, AllElementsGiveTheSameModelAgain) {
    ASSERT_EQ(Run("d.ksd", "BOTH", "b.ksd").status, 0);
    EXPECT_EQ(work.Run({"map", "b.ksd", "d.ksd"}).status, 0);
    EXPECT_EQ(work.Run({"translate", "deck.inp", "-o", "again.ksd"}).status, 0);
    auto const a = work.Run({"export", "b.ksd", "-o", "b.vtu"});
    auto const b = work.Run({"export", "again.ksd", "-o", "a.vtu"});
    EXPECT_EQ(a.status + b.status, 0);
    EXPECT_TRUE(ReadFile(work / "b.vtu") == ReadFile(work / "a.vtu"));
}

TEST_F(Extract, TellsItAsJson) {
    auto const result = work.Run({"extract", "d.ksd", "--set", "LEFT", "-o", "l.ksd", "--json"});
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_NE(result.output.find("\"set\": \"LEFT\""), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("\"before\": 6"), std::string::npos) << result.output;
}

TEST_F(Extract, CutsAModelOfSeveralInstances) {
    auto const result = Run("m.ksd", "S-1", "s.ksd");
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_NE(result.output.find("surfaces"), std::string::npos) << result.output;
    EXPECT_EQ(work.Run({"verify", "s.ksd"}).output, "s.ksd: sound\n");
    auto const back = work.Run({"map", "s.ksd", "m.ksd"});
    EXPECT_EQ(back.status, 1);
    EXPECT_NE(back.output.find("  I-1"), std::string::npos) << back.output;
}

TEST_F(Extract, RefusesNamesWithAHint) {
    ExpectRefused(
        "d.ksd", "RIHGT", "x.ksd",
        "kovsim: d.ksd: no element set or surface named 'RIHGT'; did you mean 'RIGHT'?\n");
    ExpectRefused("d.ksd", "N", "x.ksd",
                  "kovsim: d.ksd: 'N' is a node set; expected an element set");
    ExpectRefused("d.ksd", "", "x.ksd", "no element set or surface named ''");
    ExpectRefused("d.ksd", "\"RIGHT", "x.ksd", "are not in pairs");
}

TEST_F(Extract, RefusesASetWithoutElements) {
    ExpectRefused("m.ksd", "E1", "x.ksd", "the element set 'E1' has no elements");
}

TEST_F(Extract, RefusesOutputsThatExistOrLieInTheSource) {
    ExpectRefused("d.ksd", "LEFT", "m.ksd", "m.ksd: exists already");
    ExpectRefused("d.ksd", "LEFT", "d.ksd", "d.ksd: exists already");
    ExpectRefused("d.ksd", "LEFT", "d.ksd/bulk/x.ksd", "lies inside the document ");
    ExpectRefused("d.ksd", "LEFT", "d.ksd/../d.ksd/x.ksd", "lies inside the document ");
    fs::create_directory_symlink(work / "d.ksd", work / "link");
    ExpectRefused("d.ksd", "LEFT", "link/x.ksd", "lies inside the document ");
    EXPECT_EQ(work.Run({"verify", "d.ksd"}).output, "d.ksd: sound\n");
    ExpectRefused("d.ksd", "LEFT", "none/x.ksd", "there is no folder none");
    ExpectRefused("none.ksd", "LEFT", "x.ksd", "none.ksd: cannot be opened");
}

TEST_F(Extract, TheSourceMayBeWrittenByAnotherProcess) {
    KOVObjDocument const writer =
        KOVObjDocument::Open((work / "d.ksd").c_str(), KOVObjDocument::ReadWrite);
    EXPECT_EQ(Run("d.ksd", "LEFT", "l.ksd").status, 0);
    writer.Close();
}

TEST_F(Extract, AnInterruptedRunLeavesNothing) {
    // Enough for a run to be met in the middle of it.
    std::string deck = "*NODE\n";
    int const nodes = 400'000;
    for (int i = 1; i <= nodes; ++i) deck += std::to_string(i) + "," + std::to_string(i) + "\n";
    deck += "*ELEMENT, TYPE=B31, ELSET=E\n";
    for (int i = 1; i < nodes; ++i) {
        deck += std::to_string(i) + "," + std::to_string(i) + "," + std::to_string(i + 1) + "\n";
    }
    WriteFile(work / "big.inp", deck);
    ASSERT_EQ(work.Run({"translate", "big.inp", "-o", "big.ksd"}).status, 0);
    Names const before = Entries(work.Folder());
    bool met = false;
    for (int attempt = 0; attempt < 10 && !met; ++attempt) {
        Process process(work.Folder(), {"extract", "big.ksd", "--set", "E", "-o", "cut.ksd"});
        // The run is in the middle once its output is being made.
        while (Entries(work.Folder()) == before) usleep(200);
        process.Signal(SIGTERM);
        int const status = process.Wait();
        met = status == 1000 + SIGTERM && process.Errors() == "kovsim: interrupted\n";
        if (status == 0) fs::remove_all(work / "cut.ksd");
        EXPECT_EQ(Entries(work.Folder()), before) << "status " << status;
    }
    EXPECT_TRUE(met) << "no run was interrupted in the middle";
}

// ------------------------------------------------------------------------ damaged and foreign

TEST_F(Extract, ADocumentWithoutAModelIsRefused) {
    Damage("d.ksd", [](KOVObjDocument const& document) { document.SetModel(KOVSimPosition()); });
    ExpectRefused("d.ksd", "LEFT", "x.ksd", "no element set or surface named 'LEFT'");
}

TEST_F(Extract, ADocumentWithoutNodesOrElementsIsRefused) {
    Damage("d.ksd", [](KOVObjDocument const& document) {
        KOVObjMesh(document.GetMesh()).SetNodeCollection(KOVSimPosition());
    });
    ExpectRefused("d.ksd", "LEFT", "x.ksd", "the document has no nodes");
    Damage("d.ksd", [](KOVObjDocument const& document) {
        KOVObjMesh(document.GetMesh()).SetElementCollection(KOVSimPosition());
    });
    ExpectRefused("d.ksd", "LEFT", "x.ksd", "is not that of the mesh's elements");
    Damage("d.ksd", [](KOVObjDocument const& document) { document.SetMesh(KOVSimPosition()); });
    ExpectRefused("d.ksd", "LEFT", "x.ksd", "is not that of the mesh's elements");
}

TEST_F(Extract, OneCollectionForNodesAndElementsIsRefused) {
    Damage("d.ksd", [](KOVObjDocument const& document) {
        KOVObjMesh const mesh(document.GetMesh());
        mesh.SetNodeCollection(mesh.GetElementCollection());
    });
    ExpectRefused("d.ksd", "LEFT", "x.ksd", "one collection for both nodes and elements");
}

TEST_F(Extract, AnEntryThatIsNoSetIsRefused) {
    Damage("d.ksd", [](KOVObjDocument const& document) {
        document.GetModel().GetMap(schema::Model_elementSets()).Insert("ODD", document.GetModel());
    });
    ExpectRefused("d.ksd", "ODD", "x.ksd", "the element set 'ODD' has no elements");
}

TEST_F(Extract, WithoutLabelsCoordinatesAndTypesItStillWorks) {
    Damage("d.ksd", [](KOVObjDocument const& document) {
        KOVObjMesh const mesh(document.GetMesh());
        mesh.SetCoordinates(KOVSimPosition());
        mesh.SetElementSpecAssignment(KOVSimPosition());
        document.SetComponentCollection(KOVSimPosition());
        for (int const map : {schema::Focus_nodeLabels(), schema::Focus_elementLabels()}) {
            document.Focus().GetMap(map).Remove("");
        }
    });
    ASSERT_EQ(Run("d.ksd", "LEFT", "l.ksd").status, 0);
    EXPECT_EQ(work.Run({"verify", "l.ksd"}).output, "l.ksd: sound\n");
}

TEST_F(Extract, DamagedBulkNumbersAreAnErrorThatNamesThem) {
    for (auto const& entry : fs::directory_iterator(work / "m.ksd/bulk")) {
        std::string bytes = ReadFile(entry.path().string());
        for (std::size_t i = 0; i < bytes.size(); i += 64) bytes[i] = static_cast<char>(~bytes[i]);
        WriteFile(entry.path().string(), bytes);
    }
    ExpectRefused("m.ksd", "S-1", "x.ksd", "kovsim: m.ksd: ");
}

}  // namespace
}  // namespace kov::test
