#include "KOVSrvVariableMap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVSimSchema.h"
#include "KOVSimTransaction.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using Rows = std::vector<KOVSrvVariableMapEntry>;

constexpr int kClosingRow = 5471;

// Taken before main, as soon as a program of the library's can.
KOVSrvVariableMapEntry const firstAtLoad = *KOVSrvVariableMap::GetEntry(0);
KOVSrvVariableMapEntry const lastAtLoad = *KOVSrvVariableMap::GetEntry(kClosingRow - 1);

Rows AllRows() {
    Rows rows;
    for (int i = 0; KOVSrvVariableMap::GetEntry(i)->label; ++i)
        rows.push_back(*KOVSrvVariableMap::GetEntry(i));
    return rows;
}

Rows RowsOf(std::string const& label) {
    Rows rows;
    for (KOVSrvVariableMapEntry const& row : AllRows()) {
        if (row.label == label) rows.push_back(row);
    }
    return rows;
}

std::vector<int> GridsOf(Rows const& rows) {
    std::vector<int> grids;
    for (KOVSrvVariableMapEntry const& row : rows) grids.push_back(row.gridType);
    return grids;
}

using OnGrid = std::pair<int, int>;
std::vector<OnGrid> ComponentsOf(Rows const& rows) {
    std::vector<OnGrid> components;
    for (KOVSrvVariableMapEntry const& row : rows)
        components.emplace_back(row.gridType, row.component);
    return components;
}

void ExpectRow(KOVSrvVariableMapEntry const& row, char const* label, int component,
               char const* field, int grid) {
    EXPECT_STREQ(row.label, label);
    EXPECT_EQ(row.component, component);
    EXPECT_STREQ(row.fieldName, field);
    EXPECT_EQ(row.gridType, grid);
}

int const point = schema::Grid_IntegrationPoint();
int const pointLayer = schema::Grid_IntegrationPointLayer();
int const element = schema::Grid_Element();
int const elementLayer = schema::Grid_ElementLayer();
int const elementNode = schema::Grid_ElementNode();
int const elementNodeLayer = schema::Grid_ElementNodeLayer();

}  // namespace

TEST(VariableMap, HasAllRowsLabelsFieldsAndGrids) {
    std::set<std::string> labels, fields;
    std::set<int> grids;
    for (KOVSrvVariableMapEntry const& row : AllRows()) {
        labels.insert(row.label);
        fields.insert(row.fieldName);
        grids.insert(row.gridType);
    }
    EXPECT_THAT(AllRows(), SizeIs(5471));
    EXPECT_THAT(labels, SizeIs(1688));
    EXPECT_THAT(fields, SizeIs(707));
    EXPECT_THAT(grids, SizeIs(19));
}

TEST(VariableMap, BeginsWithAAndEndsWithSndflg) {
    ExpectRow(*KOVSrvVariableMap::GetEntry(0), "A", 38, "A_D", schema::Grid_Node());
    ExpectRow(*KOVSrvVariableMap::GetEntry(5470), "SNDFLG", 38, "PROCESSOR", element);
}

TEST(VariableMap, ClosingRowHasNoLabelAndAnUndefinedField) {
    KOVSrvVariableMapEntry const& closing = *KOVSrvVariableMap::GetEntry(kClosingRow);
    EXPECT_EQ(closing.label, nullptr);
    EXPECT_EQ(closing.component, 38);
    EXPECT_STREQ(closing.fieldName, "UNDEFINED");
    EXPECT_EQ(closing.gridType, 0);
}

TEST(VariableMap, RowsStandSideBySideAndStayWhereTheyAre) {
    KOVSrvVariableMapEntry const* const first = KOVSrvVariableMap::GetEntry(0);
    for (int i : {0, 1, 4000, kClosingRow}) EXPECT_EQ(KOVSrvVariableMap::GetEntry(i), first + i);
}

TEST(VariableMap, IsCompleteOnceTheLibraryIsLoaded) {
    ExpectRow(firstAtLoad, "A", 38, "A_D", schema::Grid_Node());
    ExpectRow(lastAtLoad, "SNDFLG", 38, "PROCESSOR", element);
}

TEST(VariableMap, EachGridIsATypeOfGridsInTheSchema) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory();
    KOVSimTransaction const transaction(document.ContextID());
    std::set<int> grids;
    for (KOVSrvVariableMapEntry const& row : AllRows()) grids.insert(row.gridType);
    for (int grid : grids) {
        KOVSimPosition const record = document.CreateDataRecord(grid).Pos();
        EXPECT_EQ(record.TypePosition(), grid);
        EXPECT_TRUE(record.IsA(schema::Grid())) << grid;
    }
}

TEST(VariableMap, EachLabelBelongsToOneField) {
    std::map<std::string, std::set<std::string>> fields;
    for (KOVSrvVariableMapEntry const& row : AllRows()) fields[row.label].insert(row.fieldName);
    for (auto const& [label, names] : fields) EXPECT_THAT(names, SizeIs(1)) << label;
}

TEST(VariableMap, RowsOfALabelStandTogetherButForThoseOfMises) {
    std::map<std::string, int> runs;
    std::string last;
    for (KOVSrvVariableMapEntry const& row : AllRows()) {
        if (row.label != last) ++runs[row.label];
        last = row.label;
    }
    for (auto const& [label, count] : runs) EXPECT_EQ(count, label == "MISES" ? 2 : 1) << label;
    EXPECT_THAT(GridsOf(RowsOf("MISES")),
                ElementsAre(point, pointLayer, elementLayer, elementNode, elementNodeLayer));
}

TEST(VariableMap, SameTextMayBeALabelAndTheNameOfAField) {
    ExpectRow(RowsOf("ALPHA1")[0], "ALPHA1", 38, "ALPHA1", point);
    ExpectRow(RowsOf("ALPHA11")[0], "ALPHA11", 1, "ALPHA", point);
    ExpectRow(RowsOf("ALPHA1_11")[0], "ALPHA1_11", 1, "ALPHA1", point);
    ExpectRow(RowsOf("U")[0], "U", 38, "U_D", schema::Grid_Node());
}

TEST(VariableMap, OffDiagonalTermHasTwoRowsAGridInBlocks) {
    EXPECT_THAT(
        ComponentsOf(RowsOf("S12")),
        ElementsAre(Pair(point, 5), Pair(point, 9), Pair(pointLayer, 5), Pair(pointLayer, 9),
                    Pair(element, 5), Pair(elementLayer, 5), Pair(element, 9),
                    Pair(elementLayer, 9), Pair(elementNode, 5), Pair(elementNodeLayer, 5),
                    Pair(elementNode, 9), Pair(elementNodeLayer, 9)));
    for (KOVSrvVariableMapEntry const& row : RowsOf("S12")) EXPECT_STREQ(row.fieldName, "S0");
}

TEST(VariableMap, Er13HasOnePairOfRowsTurnedRound) {
    EXPECT_THAT(
        ComponentsOf(RowsOf("ER13")),
        ElementsAre(Pair(point, 10), Pair(point, 11), Pair(pointLayer, 11), Pair(pointLayer, 10),
                    Pair(element, 10), Pair(elementLayer, 10), Pair(element, 11),
                    Pair(elementLayer, 11), Pair(elementNode, 10), Pair(elementNodeLayer, 10),
                    Pair(elementNode, 11), Pair(elementNodeLayer, 11)));
    for (std::string const label : {"EE13", "RE13", "ER12", "ER23", "SNET11_13"}) {
        Rows const rows = RowsOf(label);
        ASSERT_THAT(rows, SizeIs(12)) << label;
        EXPECT_LT(rows[2].component, rows[3].component) << label;
    }
}

TEST(VariableMap, OffDiagonalTermOnGridsWithoutPartnersGoesGridByGrid) {
    int const node = schema::Grid_Node();
    EXPECT_THAT(ComponentsOf(RowsOf("CRSTS12")),
                ElementsAre(Pair(point, 5), Pair(point, 9), Pair(pointLayer, 5),
                            Pair(pointLayer, 9), Pair(node, 5), Pair(node, 9)));
    int const whole = schema::Grid_WholeModel();
    EXPECT_THAT(ComponentsOf(RowsOf("RI23")), ElementsAre(Pair(whole, 18), Pair(whole, 19)));
}

TEST(VariableMap, LabelWithABlankHasSevenGrids) {
    EXPECT_THAT(GridsOf(RowsOf("AC YIELD")),
                ElementsAre(schema::Grid_SectionPoint(), point, pointLayer, elementNode,
                            elementNodeLayer, element, elementLayer));
}

TEST(VariableMap, GridOfALabelMayRecur) {
    EXPECT_THAT(GridsOf(RowsOf("DG31")),
                ElementsAre(point, pointLayer, element, elementLayer, element));
}

// How many labels have rows on which grids, in which order. Of two rows for one grid the first
// component's counts, and MISES counts twice: its rows stand in two places.
TEST(VariableMap, LabelsShareThirtyFourSequencesOfGrids) {
    struct Run {
        std::string label;
        int component;
        std::vector<int> grids;
    };
    std::vector<Run> runs;
    for (KOVSrvVariableMapEntry const& row : AllRows()) {
        if (runs.empty() || runs.back().label != row.label)
            runs.push_back({row.label, row.component, {}});
        if (runs.back().component == row.component) runs.back().grids.push_back(row.gridType);
    }
    std::map<std::vector<int>, std::pair<std::string, int>> sharing;
    for (Run const& run : runs)
        ++sharing.emplace(run.grids, std::pair(run.label, 0)).first->second.second;
    std::map<std::string, int> byFirstLabel;
    for (auto const& each : sharing) byFirstLabel.insert(each.second);
    EXPECT_THAT(sharing, SizeIs(34));
    std::map<std::string, int> const expected{
        {"AC YIELD1", 534}, {"BF", 361},       {"A", 279},      {"ALLAE", 200},  {"AC BUCKL", 111},
        {"AVNSQ", 36},      {"DBS", 26},       {"CNF1", 25},    {"DMENER", 19},  {"NCURS", 18},
        {"AVGVEL", 16},     {"NTRACTION", 12}, {"CRSTS", 8},    {"AVGPRESS", 7}, {"CFL", 5},
        {"HFL", 4},         {"VORTICITY", 4},  {"BDSTAT", 3},   {"BURNF", 2},    {"CD", 2},
        {"DG31", 2},        {"EM", 2},         {"TIME", 2},     {"AC YIELD", 1}, {"ACYIELD", 1},
        {"CENER", 1},       {"COORD", 1},      {"CYCLEINI", 1}, {"EIGVAL", 1},   {"HFLA", 1},
        {"MISES", 1},       {"RMISES", 1},     {"TEMP", 1},     {"TSHR13", 1}};
    EXPECT_EQ(byFirstLabel, expected);
}

TEST(VariableMap, WholeModelEnergiesLiveOnTheGridOfTheWholeModel) {
    EXPECT_THAT(GridsOf(RowsOf("ALLKE")), ElementsAre(schema::Grid_WholeModel()));
    EXPECT_THAT(GridsOf(RowsOf("AVGVEL")), ElementsAre(schema::Grid_SurfaceVector()));
    EXPECT_THAT(GridsOf(RowsOf("AVGPRESS")), ElementsAre(schema::Grid_SurfaceScalar()));
}

// Which fields use the components beside those of vectors and tensors.
TEST(VariableMap, RotationsAndPrincipalValuesBelongToTheirFields) {
    std::map<int, std::set<std::string>> fields;
    for (KOVSrvVariableMapEntry const& row : AllRows()) fields[row.component].insert(row.fieldName);
    for (int i : {31, 32, 33}) {
        EXPECT_THAT(fields[i], ElementsAre("CCU_R", "CDMG_R", "CFAILST_R", "CP_R", "CUE_R",
                                           "CUPEQ_R", "CUP_R", "CU_R", "UC_R", "U_R"));
    }
    for (int i : {24, 25, 26}) EXPECT_THAT(fields[i], ElementsAre("S0"));
    for (int i : {35, 36, 37}) {
        EXPECT_THAT(fields[i],
                    ElementsAre("ALPHA", "CE", "E0", "EE", "ER", "IE", "LE", "NE", "PE", "THE"));
    }
    for (int i : {13, 21, 22}) EXPECT_THAT(fields[i], ElementsAre("DG"));
    for (int i : {2, 3, 4, 6, 7, 8, 15, 16, 17, 27, 28, 29, 30, 34})
        EXPECT_THAT(fields[i], IsEmpty()) << i;
}

TEST(VariableMap, SeriesNumberTheirLabels) {
    auto const components = [](std::vector<std::string> const& labels) {
        std::vector<int> first;
        for (std::string const& label : labels) first.push_back(RowsOf(label)[0].component);
        return first;
    };
    EXPECT_THAT(components({"U1", "U2", "U3"}), ElementsAre(0, 12, 20));
    EXPECT_THAT(components({"S11", "S12", "S13", "S22", "S23", "S33"}),
                ElementsAre(1, 5, 10, 14, 18, 23));
    EXPECT_THAT(components({"DG21", "DG31", "DG32"}), ElementsAre(13, 21, 22));
    EXPECT_THAT(components({"SP1", "SP2", "SP3"}), ElementsAre(24, 25, 26));
    EXPECT_THAT(components({"UR1", "UR2", "UR3"}), ElementsAre(31, 32, 33));
    EXPECT_THAT(components({"CFAILST4", "CFAILST5", "CFAILST6"}), ElementsAre(31, 32, 33));
    EXPECT_THAT(components({"EP1", "EP2", "EP3"}), ElementsAre(35, 36, 37));
}

TEST(VariableMap, MayBeReadFromManyThreads) {
    Rows const rows = AllRows();
    std::vector<std::thread> readers;
    std::vector<char> same(4, 0);
    for (char& each : same) {
        readers.emplace_back([&each, &rows] {
            Rows const seen = AllRows();
            bool equal = seen.size() == rows.size();
            for (std::size_t i = 0; equal && i < rows.size(); ++i) {
                equal = seen[i].label == rows[i].label && seen[i].gridType == rows[i].gridType;
            }
            each = equal;
        });
    }
    for (std::thread& reader : readers) reader.join();
    EXPECT_THAT(same, testing::Each(1));
}
