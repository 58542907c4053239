// kovsim map, run as its users run it.

#include <gtest/gtest.h>

#include <string>

#include "KOVSimContext.h"
#include "Process.h"
#include "RandomModel.h"

namespace kov::test {
namespace {

class MapCommand : public ::testing::Test {
  protected:
    MapCommand() {
        Translate("a.ksd", "10, 0, 0\n20, 1, 0\n30, 1, 1\n40, 0, 1\n", "N", "10, 20, 40");
        Translate("b.ksd", "40, 0, 1\n20, 1, 0\n10, 0, 0\n50, 1, 1\n", "N", "50");
    }
    void Translate(char const* name, std::string const& nodes, std::string const& set,
                   std::string const& members) {
        WriteFile(work / "d.inp", "*NODE\n" + nodes + "*NSET, NSET=" + set + "\n" + members +
                                      "\n*ELEMENT, TYPE=B31, ELSET=" + set + "\n1, 10, 20\n");
        auto const result = work.Run({"translate", "d.inp", "-o", name});
        EXPECT_EQ(result.status, 0) << result.errors;
    }
    // Gives A an ordered set.
    void AddOrderedSet(Ints const& members) {
        Change("a.ksd", [&](KOVObjDocument const& document) {
            KOVSimCollection const nodes =
                tool::CollectionAt(KOVObjMesh(document.GetMesh()).GetNodeCollection());
            KOVSimCSet set =
                nodes.CreateVolatileOrderedCSet(members.data(), static_cast<int>(members.size()));
            document.GetModel()
                .GetMap(schema::Model_nodeSets())
                .Insert("PATH", set.RegisterWithCollection());
        });
    }
    template <class Body>
    void Change(char const* name, Body body) {
        KOVObjDocument const document =
            KOVObjDocument::Open((work / name).c_str(), KOVObjDocument::ReadWrite);
        KOVSimTransaction transaction(document.ContextID());
        body(document);
        transaction.Commit();
        document.Close();
    }
    void ExpectRefused(std::vector<std::string> const& arguments, std::string const& text) {
        auto const result = work.Run(arguments);
        EXPECT_EQ(result.status, 2) << result.output;
        EXPECT_NE(result.errors.find(text), std::string::npos) << result.errors;
        EXPECT_EQ(result.errors.find("assert"), std::string::npos) << result.errors;
    }

    Workshop work;
};

TEST_F(MapCommand, ComparesByInstanceAndLabel) {
    auto const result = work.Run({"map", "a.ksd", "b.ksd"});
    EXPECT_EQ(result.status, 1) << result.errors;
    EXPECT_EQ(result.output,
              "A a.ksd\nB b.ksd\n"
              "                                in A          in B       in both\n"
              "nodes                              4             4             3\n"
              "  \"\"                               4             4             3\n"
              "elements                           1             1             1\n"
              "  \"\"                               1             1             1\n");
}

TEST_F(MapCommand, TheSameDocumentTwiceIsTheSame) {
    auto const result = work.Run({"map", "a.ksd", "./a.ksd"});
    EXPECT_EQ(result.status, 0) << result.errors;
    auto const set = work.Run({"map", "a.ksd", "a.ksd", "--set", "N", "--kind", "nodes"});
    EXPECT_EQ(set.status, 0) << set.errors;
    EXPECT_EQ(set.output, "node set N: 3 in A, 3 of them in B\n  \"\": 10, 20, 40\n");
}

TEST_F(MapCommand, ASetIsFoundInTheOtherDocument) {
    auto const found =
        work.Run({"map", "a.ksd", "b.ksd", "--set", "N", "--kind", "nodes", "--ordinals"});
    EXPECT_EQ(found.status, 0) << found.errors;
    EXPECT_EQ(found.output,
              "node set N: 3 in A, 3 of them in B\n  \"\": 10, 20, 40\n  ordinals: 0-2\n");
    auto const missing = work.Run({"map", "b.ksd", "a.ksd", "--set", "N", "--kind", "nodes"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.output, "node set N: 1 in A, 0 of them in B\nnot in B\n  \"\": 50\n");
}

TEST_F(MapCommand, ANameOfBothKindsShowsBoth) {
    auto const result = work.Run({"map", "a.ksd", "b.ksd", "--set", "N"});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.output.find("node set N"), std::string::npos);
    EXPECT_NE(result.output.find("element set N: 1 in A, 1 of them in B\n  \"\": 1\n"),
              std::string::npos)
        << result.output;
}

TEST_F(MapCommand, AnOrderedSetKeepsItsSequenceOnRequest) {
    AddOrderedSet({3, 0, 1, 2});
    EXPECT_EQ(
        work.Run({"map", "a.ksd", "b.ksd", "--set", "PATH", "--ordered", "--ordinals"}).output,
        "node set PATH: 4 in A, 3 of them in B\n  \"\": 40\n  \"\": 10, 20\n  ordinals: 0, 2, 1\n"
        "not in B\n  \"\": 30\n");
    EXPECT_EQ(work.Run({"map", "a.ksd", "b.ksd", "--set", "PATH"}).output,
              "node set PATH: 4 in A, 3 of them in B\n  \"\": 10, 20, 40\nnot in B\n  \"\": 30\n");
}

TEST_F(MapCommand, TellsItAsJson) {
    auto const both = work.Run({"map", "a.ksd", "b.ksd", "--json"});
    EXPECT_EQ(both.status, 1);
    EXPECT_NE(both.output.find("\"same\": false"), std::string::npos) << both.output;
    EXPECT_NE(both.output.find("{\"name\": \"\", \"inA\": 4, \"inB\": 4, \"inBoth\": 3}"),
              std::string::npos)
        << both.output;
    AddOrderedSet({3, 0, 1, 2});
    auto const set =
        work.Run({"map", "a.ksd", "b.ksd", "--set", "PATH", "--ordered", "--ordinals", "--json"});
    EXPECT_NE(set.output.find("\"allFound\": false"), std::string::npos) << set.output;
    EXPECT_NE(set.output.find("[40, 40, 1]"), std::string::npos) << set.output;
    EXPECT_NE(set.output.find("[30, 30, 1]"), std::string::npos) << set.output;
}

TEST_F(MapCommand, InstancesOnOneSideAreTold) {
    RandomModel const model(4, {}, KOVObjDocument::Create((work / "m.ksd").c_str()));
    model.document.Close();
    auto const result = work.Run({"map", "m.ksd", "a.ksd"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.output.find("only in A"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("(no label)"), std::string::npos) << result.output;
    auto const json = work.Run({"map", "m.ksd", "a.ksd", "--json"});
    EXPECT_NE(json.output.find("\"only\": \"A\""), std::string::npos) << json.output;
}

TEST_F(MapCommand, RefusesWhatItCannotFind) {
    ExpectRefused({"map", "a.ksd", "none.ksd"}, "none.ksd: cannot be opened");
    ExpectRefused({"map", "a.ksd", "b.ksd", "--set", "M"}, "kovsim: a.ksd: no set named 'M'");
    ExpectRefused({"map", "a.ksd", "b.ksd", "--set", "\"M"}, "are not in pairs");
    ExpectRefused({"map", "a.ksd", "b.ksd", "--ordered"}, "--set");
    ExpectRefused({"map", "a.ksd"}, "required");
}

// ------------------------------------------------------------------------ damaged and foreign

TEST_F(MapCommand, ADocumentWithoutAMeshHasNothingInCommon) {
    Change("b.ksd", [](KOVObjDocument const& document) { document.SetMesh(KOVSimPosition()); });
    EXPECT_EQ(work.Run({"map", "a.ksd", "b.ksd"}).status, 1);
    ExpectRefused({"map", "a.ksd", "b.ksd", "--set", "N"}, "has no nodes");
    ExpectRefused({"map", "b.ksd", "a.ksd", "--set", "N"}, "is not one of the nodes of the mesh");
}

TEST_F(MapCommand, ADocumentWithoutAModelHasNothingInCommon) {
    Change("b.ksd", [](KOVObjDocument const& document) { document.SetModel(KOVSimPosition()); });
    EXPECT_EQ(work.Run({"map", "a.ksd", "b.ksd"}).status, 1);
    EXPECT_EQ(work.Run({"map", "b.ksd", "b.ksd"}).status, 1);
    ExpectRefused({"map", "b.ksd", "a.ksd", "--set", "N"}, "no set named 'N'");
}

TEST_F(MapCommand, ADocumentWithoutLabelsHasNothingInCommon) {
    Change("b.ksd", [](KOVObjDocument const& document) {
        document.Focus().GetMap(schema::Focus_nodeLabels()).Remove("");
    });
    EXPECT_EQ(work.Run({"map", "a.ksd", "b.ksd"}).status, 1);
    auto const set = work.Run({"map", "a.ksd", "b.ksd", "--set", "N", "--kind", "nodes"});
    EXPECT_EQ(set.status, 1) << set.errors;
    EXPECT_EQ(set.output.substr(0, 35), "node set N: 3 in A, 0 of them in B\n");
}

TEST_F(MapCommand, AnEntryThatIsNoSetIsRefused) {
    Change("a.ksd", [](KOVObjDocument const& document) {
        document.GetModel().GetMap(schema::Model_nodeSets()).Insert("ODD", document.GetModel());
        document.GetModel()
            .GetMap(schema::Model_nodeSets())
            .Insert("WRONG", document.GetModel().GetMap(schema::Model_elementSets()).Find("N"));
    });
    ExpectRefused({"map", "a.ksd", "b.ksd", "--set", "ODD"}, "'ODD' is no set");
    ExpectRefused({"map", "a.ksd", "b.ksd", "--set", "WRONG"}, "is not one of the nodes");
}

// Label records of every wrong kind, in either document.
TEST_F(MapCommand, LabelsOfAnotherKindNeverReachAnAssertion) {
    for (int kind = 0; kind < 5; ++kind) {
        for (char const* const name : {"a.ksd", "b.ksd"}) {
            SCOPED_TRACE(std::string(name) + ", kind " + std::to_string(kind));
            Change(name, [&](KOVObjDocument const& document) {
                KOVObjMesh const mesh(document.GetMesh());
                KOVSimPosition const labels =
                    document.Focus().GetMap(schema::Focus_nodeLabels()).Find("");
                KOVSimGrid::CollectionArray grid(kind == 1 ? 2 : 1);
                grid.Get(0) = kind == 2 ? mesh.GetElementCollection().GetCollection()
                                        : mesh.GetNodeCollection().GetCollection();
                if (kind == 1) grid.Get(1) = document.GetComponentCollection().GetCollection();
                KOVSimDistributionID const odd = document.Focus().CreateTypedDistribution(
                    KOVSimGrid(grid), schema::LabelDistribution(),
                    KOVSimRangeType(kind == 3 ? KOVSimTypeKeyDouble : KOVSimTypeKeyInt));
                if (kind != 4) {
                    KOVSimTransfer make{KOVSimDistribution(odd)};
                    make.SetMakeNewDrawer().SetBufferPadding(false);
                    for (int i = 0; i < grid.Size(); ++i) {
                        make.SetDim(
                            i, KOVSimCollection(grid.Get(i)).CreateVolatileCSetStrided(0, 1, 1, 1));
                    }
                    make.CheckView().ExecMake();
                }
                labels.SetPosition(schema::Labels_distribution(), odd);
            });
            for (std::vector<std::string> const& arguments :
                 {std::vector<std::string>{"map", "a.ksd", "b.ksd"},
                  {"map", "a.ksd", "b.ksd", "--set", "N"},
                  {"map", "b.ksd", "a.ksd", "--set", "N", "--ordered", "--json"}}) {
                auto const result = work.Run(arguments);
                EXPECT_TRUE(result.status == 1 || result.status == 2) << result.status;
                EXPECT_EQ(result.errors.find("ssert"), std::string::npos) << result.errors;
            }
        }
    }
}

}  // namespace
}  // namespace kov::test
