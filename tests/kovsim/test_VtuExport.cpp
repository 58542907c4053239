#include "VtuExport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "InMemory.h"
#include "KOVSimMap.h"
#include "VtuFile.h"
#include "support/TempFolder.h"

namespace kov::test {
namespace {

VtuFile Export(InMemory const& deck, tool::VtuExportOptions options = {}) {
    TempFolder folder;
    tool::VtuExport(deck.document, options).Write(folder / "f.vtu");
    return VtuFile(folder / "f.vtu");
}

using Bytes = std::vector<std::uint8_t>;
using Int32s = std::vector<std::int32_t>;

TEST(VtuExport, WritesPointsCellsLabelsAndSets) {
    InMemory deck(
        "*NODE, NSET=N\n10, 0, 0, 0\n20, 1, 0, 0\n*NODE\n30, 1, 1, 0\n*ELEMENT, TYPE=S3, "
        "ELSET=\"a<b\"\n"
        "7, 10, 20, 30\n*ELEMENT, TYPE=B32\n5, 10, 30, 20\n*ELEMENT, TYPE=S3\n6, 30, 20, 10\n");
    VtuFile const file = Export(deck.Translate());
    EXPECT_EQ(file.Array<double>("Points/Points", "Float64"),
              (std::vector<double>{0, 0, 0, 1, 0, 0, 1, 1, 0}));
    EXPECT_EQ(file.Array<std::int32_t>("Cells/connectivity", "Int32"),
              (Int32s{0, 1, 2, 0, 1, 2, 2, 1, 0}));
    EXPECT_EQ(file.Array<std::int32_t>("Cells/offsets", "Int32"), (Int32s{3, 6, 9}));
    EXPECT_EQ(file.Array<std::uint8_t>("Cells/types", "UInt8"), (Bytes{5, 21, 5}));
    EXPECT_EQ(file.Array<std::int32_t>("PointData/NodeLabel", "Int32"), (Int32s{10, 20, 30}));
    EXPECT_EQ(file.Array<std::int32_t>("CellData/ElementLabel", "Int32"), (Int32s{7, 5, 6}));
    EXPECT_EQ(file.Array<std::int32_t>("CellData/ElementType", "Int32"), (Int32s{0, 1, 0}));
    EXPECT_EQ(file.Array<std::uint8_t>("PointData/N", "UInt8"), (Bytes{1, 1, 0}));
    EXPECT_EQ(file.Array<std::uint8_t>("CellData/a&lt;b", "UInt8"), (Bytes{1, 0, 0}));
    EXPECT_NE(file.Head().find(
                  "ElementTypeNames\" NumberOfTuples=\"2\" format=\"ascii\"> 83 51 0 66 51 50 0<"),
              std::string::npos);
    EXPECT_NE(file.Head().find("NumberOfPoints=\"3\" NumberOfCells=\"3\""), std::string::npos);
}

TEST(VtuExport, TellsTheInstanceOfPointsAndCells) {
    InMemory deck(
        "*PART, NAME=P\n*NODE, NSET=N\n1\n2, 1\n*ELEMENT, TYPE=T3D2\n5, 1, 2\n*END "
        "PART\n*ASSEMBLY\n"
        "*INSTANCE, NAME=Left, PART=P\n*END INSTANCE\n*NODE\n9, 5, 5, 5\n"
        "*INSTANCE, NAME=A, PART=P\n0, 1, 0\n*END INSTANCE\n*ELEMENT, TYPE=SPRING2\n1, Left.2, "
        "A.1\n"
        "*NSET, NSET=_I, INTERNAL\nA.1\n*END ASSEMBLY\n");
    VtuFile const file = Export(deck.Translate());
    EXPECT_EQ(file.Array<std::int32_t>("PointData/NodeLabel", "Int32"), (Int32s{1, 2, 9, 1, 2}));
    EXPECT_EQ(file.Array<std::int32_t>("PointData/Instance", "Int32"), (Int32s{1, 1, -1, 0, 0}));
    EXPECT_EQ(file.Array<std::int32_t>("CellData/Instance", "Int32"), (Int32s{1, 0, -1}));
    EXPECT_EQ(file.Array<std::int32_t>("Cells/connectivity", "Int32"), (Int32s{0, 1, 3, 4, 1, 3}));
    EXPECT_EQ(file.Array<std::uint8_t>("PointData/Left_N", "UInt8"), (Bytes{1, 1, 0, 0, 0}));
    EXPECT_FALSE(file.Has("PointData/_I"));
    EXPECT_NE(file.Head().find("InstanceNames"), std::string::npos);
    EXPECT_FALSE(Export(InMemory("*NODE\n1\n").Translate()).Has("PointData/Instance"));
}

TEST(VtuExport, LeavesOutSetsOnRequest) {
    InMemory deck("*NODE, NSET=N\n1\n");
    VtuFile const file = Export(deck.Translate(), {.sets = false, .progress = {}});
    EXPECT_FALSE(file.Has("PointData/N"));
    EXPECT_TRUE(file.Has("PointData/NodeLabel"));
}

TEST(VtuExport, AnEmptyModelIsAnEmptyGrid) {
    InMemory deck("");
    VtuFile const file = Export(deck.Translate());
    EXPECT_EQ(file.Count(), 4U);
    EXPECT_TRUE(file.Array<double>("Points/Points", "Float64").empty());
    EXPECT_TRUE(file.Array<std::uint8_t>("Cells/types", "UInt8").empty());
}

TEST(VtuExport, SetsNamedAsOtherArraysGetANumber) {
    InMemory deck("*NODE, NSET=NodeLabel\n1\n");
    VtuFile const file = Export(deck.Translate());
    EXPECT_EQ(file.Array<std::int32_t>("PointData/NodeLabel", "Int32"), Int32s{1});
    EXPECT_EQ(file.Array<std::uint8_t>("PointData/NodeLabel_2", "UInt8"), Bytes{1});
}

// Several blocks, types mixed at random: cells stand in the order of the elements.
TEST(VtuExport, StreamsManyBlocks) {
    int const count = 250000;
    std::string text = "*NODE\n";
    for (int i = 1; i <= 1000; ++i) text += std::to_string(i) + "," + std::to_string(i) + "\n";
    Int32s connectivity;
    Int32s offsets;
    Bytes types;
    Bytes third(static_cast<std::size_t>(count), 0);
    std::string set = "*ELSET, ELSET=THIRD\n";
    for (int e = 0; e < count; ++e) {
        bool const beam = e % 11 < 4;
        if (e % 11 == 0) text += "*ELEMENT, TYPE=B31\n";
        if (e % 11 == 4) text += "*ELEMENT, TYPE=S4R\n";
        text += std::to_string(e + 1);
        for (int k = 0; k < (beam ? 2 : 4); ++k) {
            int const node = (e * 13 + k) % 1000;
            text += "," + std::to_string(node + 1);
            connectivity.push_back(node);
        }
        text += "\n";
        offsets.push_back(static_cast<std::int32_t>(connectivity.size()));
        types.push_back(beam ? 3 : 9);
        if (e % 3 == 0) {
            set += std::to_string(e + 1) + "\n";
            third[static_cast<std::size_t>(e)] = 1;
        }
    }
    InMemory deck(text + set);
    VtuFile const file = Export(deck.Translate());
    EXPECT_TRUE(file.Array<std::int32_t>("Cells/connectivity", "Int32") == connectivity);
    EXPECT_TRUE(file.Array<std::int32_t>("Cells/offsets", "Int32") == offsets);
    EXPECT_TRUE(file.Array<std::uint8_t>("Cells/types", "UInt8") == types);
    EXPECT_TRUE(file.Array<std::uint8_t>("CellData/THIRD", "UInt8") == third);
    std::vector<double> const points = file.Array<double>("Points/Points", "Float64");
    ASSERT_EQ(points.size(), 3000U);
    EXPECT_EQ(points[3 * 999], 1000.0);
}

TEST(VtuExport, ADocumentWithoutAModelIsAnEmptyGrid) {
    InMemory deck("");
    deck.document = KOVObjDocument::CreateInMemory(KOVObjDocument::Bare);
    EXPECT_EQ(Export(deck).Count(), 4U);
}

TEST(VtuExport, ANodeThatIsNotThereIsRefused) {
    InMemory deck("*NODE\n1\n2\n*ELEMENT, TYPE=B31\n1, 1, 2\n");
    deck.Translate();
    KOVSimTransaction transaction(deck.document.ContextID());
    KOVSimCollection elements = deck.Elements();
    elements.ExtendSpace(2);
    KOVSimDSet const dset(deck.Mesh().GetConnectivity());
    KOVSimDistribution const distribution(dset.GetRelationalDistributionID());
    KOVSimCollection positions(distribution.Grid().Collections().ConstGet(1));
    int const nodes[] = {0, 5};
    KOVSrvElementConnectivity(deck.Mesh().GetConnectivity(), 10)
        .Append(transaction, deck.document.Focus().ID(), elements.CreateTempCSetStrided(1, 1, 1, 1),
                positions.CreateTempCSetStrided(0, 2, 1, 1), nodes);
    transaction.Commit();
    EXPECT_THROW(Export(deck), std::exception);
}

}  // namespace
}  // namespace kov::test
