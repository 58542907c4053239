// Table fields against plain maps: fields over sets of every shape, read back in views of every
// shape and as values of shell layers. The seed is printed with a failure; KOV_SEED sets it.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>
#include <string>

#include "KOVSimFTable.h"
#include "KOVSrvFieldServices.h"
#include "services/ShellFixture.h"

namespace kov::test {
namespace {

unsigned Seed() {
    char const* const text = std::getenv("KOV_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
}

class TableFieldsAgainstModel : public ShellTest {
  protected:
    static constexpr int kElements = 100;
    static constexpr double kUntouched = -1;

    TableFieldsAgainstModel() : trace(__FILE__, __LINE__, "KOV_SEED=" + std::to_string(seed)) {}

    struct Model {
        KOVSimDynamicID id;
        std::vector<std::string> names;
        std::vector<double> table;
        std::map<std::pair<int, int>, double> values;  // by element and column
    };

    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    std::vector<double> Numbers(std::size_t n) {
        std::vector<double> numbers(n);
        for (double& number : numbers) number = Below(1000000);
        return numbers;
    }
    // A range or scattered elements, ascending or shuffled; now and then none.
    std::vector<int> AnyElements() {
        std::vector<int> picked, all = Range(0, kElements);
        if (Below(2)) {
            int const first = Below(kElements);
            picked = Range(first, Below(kElements - first + 1));
        } else {
            std::sample(all.begin(), all.end(), std::back_inserter(picked), Below(60), random);
        }
        if (Below(2)) std::shuffle(picked.begin(), picked.end(), random);
        return picked;
    }
    KOVSimCSet AsSet(std::vector<int> const& members) {
        int const n = static_cast<int>(members.size());
        if (Below(2)) return mesh.elements.CreateVolatileOrderedCSet(members.data(), n);
        return mesh.Ordered(mesh.elements, members);
    }

    Model Create() {
        Model model;
        int const columns = 1 + Below(6);
        KOVSrvFieldServices::Strings names(columns);
        for (int i = 0; i < columns; ++i) {
            model.names.push_back("column " + std::to_string(Below(4)));
            names.Get(i) = model.names.back().c_str();
        }
        model.table = Numbers(static_cast<std::size_t>(columns * (1 + Below(3))));
        std::vector<int> const members = AnyElements();
        std::vector<double> data = Numbers(members.size() * model.names.size());
        for (std::size_t i = 0; i < data.size(); ++i) {
            model.values[{members[i / model.names.size()], static_cast<int>(i) % columns}] =
                data[i];
        }
        model.id = KOVSrvFieldServices::CreateFieldFTable(mesh.document, names, model.table.data(),
                                                          static_cast<int>(model.table.size()),
                                                          AsSet(members), data.data(), Below(9))
                       .ID();
        return model;
    }
    KOVSimPosition Field(Model const& model) const {
        KOVSimDynamicID id = model.id;
        id.context = mesh.document.ContextID();
        return id;
    }

    void ExpectTable(Model const& model) const {
        KOVSimFTable const table(Field(model).GetPosition(schema::FieldFTable_table()).GetFTable());
        std::vector<std::string> names;
        for (int i = 0; i < table.ColumnCount(); ++i)
            names.emplace_back(table.ColumnLabel(i).TextOrEmpty());
        EXPECT_EQ(names, model.names);
        std::vector<double> values(model.table.size());
        ASSERT_EQ(table.RowCount() * table.ColumnCount(), static_cast<int>(values.size()));
        table.GetData(values.data(), static_cast<int>(values.size()));
        EXPECT_EQ(values, model.table);
    }
    void ExpectView(Model const& model) {
        std::vector<int> const elements = AnyElements();
        std::vector<int> columns = Range(0, static_cast<int>(model.names.size()));
        std::shuffle(columns.begin(), columns.end(), random);
        columns.resize(1 + static_cast<std::size_t>(Below(static_cast<int>(columns.size()))));
        KOVSimTransfer read{KOVSimDistribution(
            Field(model).GetPosition(schema::FieldFTable_distribution()).GetDistribution())};
        KOVSimCollection const fieldColumns(mesh.FieldColumns().GetCollection());
        read.SetRead().SetBufferPadding(false);
        read.SetDim(0, AsSet(elements)).SetDim(1, mesh.Ordered(fieldColumns, columns)).CheckView();
        std::vector<double> values(elements.size() * columns.size(), kUntouched);
        read.SetBuffer(0, values.data(), values.size() * sizeof(double)).ExecRead();
        read.RelinquishBuffers();
        std::vector<double> expected;
        for (int element : elements) {
            for (int column : columns) {
                auto const found = model.values.find({element, column});
                expected.push_back(found == model.values.end() ? kUntouched : found->second);
            }
        }
        EXPECT_EQ(values, expected);
    }
    // Where a layer's element has no value of the field, the first one of the table serves.
    void ExpectLayerValues(Model const& model) {
        if (model.names.size() != 1) return;
        std::vector<int> asked = AnyElements();
        KOVSimPosition set;
        InTransaction([&] { set = mesh.ElementSet(asked); });
        KOVBasMap<int, double> map;
        Bulk().ReadFieldData(set, Field(model), map);
        std::map<int, double> values, expected;
        for (auto const& [element, value] : map) values[element] = value;
        for (int element : asked) {
            auto const found = model.values.find({element, 0});
            expected[element] = found == model.values.end() ? model.table[0] : found->second;
        }
        EXPECT_EQ(values, expected);
    }

    unsigned const seed = Seed();
    testing::ScopedTrace const trace;
    std::mt19937 random{seed};
};
INSTANTIATE_TEST_SUITE_P(Documents, TableFieldsAgainstModel,
                         testing::Values(Medium::Memory, Medium::Disk), MediumName);

TEST_P(TableFieldsAgainstModel, AllFieldsReadBack) {
    std::vector<Model> models;
    for (int round = 0; round < 30 && !HasFailure(); ++round) {
        models.push_back(Create());
        if (Below(10) == 0) mesh.Reopen();
        Model const& any = models[static_cast<std::size_t>(Below(round + 1))];
        ExpectTable(any);
        ExpectView(any);
        ExpectLayerValues(any);
    }
    mesh.Reopen();
    for (Model const& model : models) {
        ExpectTable(model);
        ExpectView(model);
        ExpectLayerValues(model);
    }
    std::string findings;
    EXPECT_TRUE(mesh.document.Verify([&](char const* text) { findings += text; })) << findings;
}

}  // namespace
}  // namespace kov::test
