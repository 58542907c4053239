// The searches of the field services against answers that one pass over the table collects: for
// every label, for every field, component and grid, and for texts that nearly are labels. The seed
// is printed with a failure; KOV_SEED sets it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "KOVSrvFieldServices.h"
#include "KOVSrvVariableMap.h"

namespace {

using Fields = KOVSrvFieldServices;

struct Row {
    std::string label, field;
    int component, grid;
};

std::vector<Row> const& Table() {
    static std::vector<Row> const rows = [] {
        std::vector<Row> table;
        for (int i = 0; KOVSrvVariableMap::GetEntry(i)->label; ++i) {
            KOVSrvVariableMapEntry const& row = *KOVSrvVariableMap::GetEntry(i);
            table.push_back({row.label, row.fieldName, row.component, row.gridType});
        }
        return table;
    }();
    return rows;
}

// Answers by what is asked; of several rows that fit the first one has been kept.
struct Model {
    std::map<std::string, std::vector<std::size_t>> rowsOfLabel;
    std::map<std::tuple<std::string, int, int>, std::string> labelOnGrid;
    std::map<std::tuple<std::string, int>, std::string> labelAnywhere;
    std::map<std::tuple<std::string, int>, std::vector<std::string>> componentsOnGrid;
    std::set<std::string> labels, fields;
    std::set<int> grids{-2, -1, 0};
    std::set<int> components{-1, 34, 39};  // and all that occur

    Model() {
        for (std::size_t i = 0; i < Table().size(); ++i) {
            Row const& row = Table()[i];
            rowsOfLabel[row.label].push_back(i);
            labelOnGrid.emplace(std::make_tuple(row.field, row.component, row.grid), row.label);
            labelAnywhere.emplace(std::make_tuple(row.field, row.component), row.label);
            if (row.component != 38)
                componentsOnGrid[std::make_tuple(row.field, row.grid)].push_back(row.label);
            labels.insert(row.label);
            fields.insert(row.field);
            grids.insert(row.grid);
            components.insert(row.component);
        }
        fields.insert({"NOSUCH", "UNDEFINED"});
    }
    std::string Label(std::string const& field, int component, int grid) const {
        if (grid == -1) {
            auto const found = labelAnywhere.find({field, component});
            return found == labelAnywhere.end() ? "" : found->second;
        }
        auto const found = labelOnGrid.find({field, component, grid});
        return found == labelOnGrid.end() ? "" : found->second;
    }
};

Model const& TheModel() {
    static Model const model;
    return model;
}

KOVString Text(std::string const& bytes) {
    KOVString text;
    text.BuildFromUTF8(bytes.data(), static_cast<int>(bytes.size()));
    return text;
}
std::string Plain(KOVString const& text) { return text.TextOrEmpty(); }

void ExpectAnswersForLabel(std::string const& bytes) {
    SCOPED_TRACE("label '" + bytes + "'");
    KOVString const label = Text(bytes);
    auto const found = TheModel().rowsOfLabel.find(bytes);
    std::vector<std::size_t> const none;
    std::vector<std::size_t> const& rows =
        found == TheModel().rowsOfLabel.end() ? none : found->second;

    std::vector<int> walked, grids;
    for (std::size_t row : rows) grids.push_back(Table()[row].grid);
    int grid = Fields::GetGridTypeFromVariableLabel(label, false);
    for (; grid != -1 && walked.size() <= rows.size();
         grid = Fields::GetGridTypeFromVariableLabel(label, true))
        walked.push_back(grid);
    EXPECT_EQ(walked, grids);

    std::vector<std::string> components, expected;
    for (KOVString const& each : Fields::GetComponents(label)) components.push_back(Plain(each));
    if (rows.empty()) {
        EXPECT_EQ(Plain(Fields::GetFieldType(label)), "UNDEFINED");
        EXPECT_EQ(Fields::GetComponent(label, false), 38);
        EXPECT_EQ(Fields::GetComponent(label, true), 38);
    } else {
        Row const& first = Table()[rows[0]];
        EXPECT_EQ(Plain(Fields::GetFieldType(label)), first.field);
        EXPECT_EQ(Fields::GetComponent(label, false), first.component);
        bool const followed = rows.size() > 1 && rows[1] == rows[0] + 1;
        EXPECT_EQ(Fields::GetComponent(label, true),
                  followed ? Table()[rows[1]].component : first.component);
        auto const family = TheModel().componentsOnGrid.find({first.field, first.grid});
        if (family != TheModel().componentsOnGrid.end()) expected = family->second;
    }
    EXPECT_EQ(components, expected);
}

unsigned Seed() {
    char const* const text = std::getenv("KOV_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
}

}  // namespace

TEST(FieldSearchesAgainstModel, EveryLabel) {
    for (std::string const& label : TheModel().labels) ExpectAnswersForLabel(label);
}

TEST(FieldSearchesAgainstModel, FlagOfAComponentMattersForLabelsWithPairsOfRowsOnly) {
    int changed = 0;
    for (std::string const& label : TheModel().labels) {
        int const first = Fields::GetComponent(Text(label), false);
        int const second = Fields::GetComponent(Text(label), true);
        if (first == second) continue;
        ++changed;
        EXPECT_TRUE((first == 5 && second == 9) || (first == 10 && second == 11) ||
                    (first == 18 && second == 19))
            << label;
    }
    std::set<std::string> paired;
    for (Row const& row : Table()) {
        if (row.component == 9 || row.component == 11 || row.component == 19)
            paired.insert(row.label);
    }
    EXPECT_EQ(changed, static_cast<int>(paired.size()));
}

TEST(FieldSearchesAgainstModel, EveryFieldComponentAndGrid) {
    int hits = 0;
    for (std::string const& field : TheModel().fields) {
        KOVString const name = Text(field);
        for (int grid : TheModel().grids) {
            ASSERT_EQ(Plain(Fields::GetVariableLabel(name, grid)),
                      TheModel().Label(field, 38, grid))
                << field << " on " << grid;
            for (int component : TheModel().components) {
                auto const symbol = static_cast<zdm_ComponentSymbolsEnm>(component);
                std::string const expected = TheModel().Label(field, component, grid);
                ASSERT_EQ(Plain(Fields::GetComponentLabel(name, symbol, grid)), expected)
                    << field << " " << component << " on " << grid;
                hits += !expected.empty();
            }
        }
    }
    EXPECT_GT(hits, 5471 / 2);
}

// Fields are asked by the names of labels too, and labels by the names of fields.
TEST(FieldSearchesAgainstModel, LabelsAndFieldsAreNotTakenForEachOther) {
    for (std::string const& label : TheModel().labels) {
        EXPECT_EQ(Plain(Fields::GetVariableLabel(Text(label), -1)), TheModel().Label(label, 38, -1))
            << label;
    }
    for (std::string const& field : TheModel().fields) ExpectAnswersForLabel(field);
}

TEST(FieldSearchesAgainstModel, TextsThatNearlyAreLabels) {
    unsigned const seed = Seed();
    testing::ScopedTrace const trace(__FILE__, __LINE__, "KOV_SEED=" + std::to_string(seed));
    std::mt19937 random(seed);
    auto const below = [&](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
    };
    std::vector<std::string> const labels(TheModel().labels.begin(), TheModel().labels.end());
    for (int round = 0; round < 1500 && !testing::Test::HasFailure(); ++round) {
        std::string text = labels[below(labels.size())];
        switch (below(6)) {
            case 0: {
                char& c = text[below(text.size())];
                c = static_cast<char>(c ^ 0x20);
                break;
            }
            case 1:
                text.resize(below(text.size() + 1));
                break;
            case 2:
                text += labels[below(labels.size())];
                break;
            case 3:
                text.insert(below(text.size() + 1), 1, static_cast<char>(below(256)));
                break;
            case 4:
                text[below(text.size())] = "0123456789_ "[below(12)];
                break;
            default:
                text.insert(below(text.size() + 1), 1, '\0');
                break;
        }
        ExpectAnswersForLabel(text);
        KOVString const name = Text(text);
        std::string const plain = Plain(name);
        EXPECT_EQ(Plain(Fields::GetVariableLabel(name, -1)),
                  plain.empty() ? "UNDEFINED" : TheModel().Label(plain, 38, -1));
    }
}
