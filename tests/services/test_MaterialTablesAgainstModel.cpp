// Material tables against plain rows: random descriptions, saved, appended to and read, in
// transactions that are committed or dropped, with the document opened anew now and then. The seed
// is printed with a failure; KOV_SEED sets it.
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "services/TableFixture.h"

namespace kov::test {
namespace {

unsigned Seed() {
    char const* const text = std::getenv("KOV_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
}

// One table as it should be.
struct Model {
    Description description{{}};
    bool withTemperature = false;
    int fieldVariables = 0;
    bool extendable = false;
    Rows rows;
    KOVSimPosition behaviour;
};

class MaterialTablesAgainstModel : public testing::TestWithParam<Medium> {
  protected:
    MaterialTablesAgainstModel() : trace(__FILE__, __LINE__, "KOV_SEED=" + std::to_string(seed)) {}

    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }

    // What a table of the model keeps of a row.
    std::size_t Width(Model const& model) const {
        int width = model.fieldVariables +
                    (model.description.hasTemperature && model.withTemperature ? 1 : 0);
        for (int const length : model.description.lengths) width += length;
        return static_cast<std::size_t>(width);
    }
    // Rows that are now and then longer than what is taken of them.
    Rows NewRows(Model const& model) {
        Rows rows(static_cast<std::size_t>(Below(4) ? 1 + Below(6) : 50 + Below(300)));
        for (Row& row : rows) {
            row.resize(Width(model) + static_cast<std::size_t>(Below(3)));
            for (double& value : row) value = std::uniform_real_distribution<>(-1, 1)(random);
        }
        return rows;
    }
    void Keep(Model& model, Rows const& rows) const {
        for (Row const& row : rows) {
            model.rows.emplace_back(row.begin(),
                                    row.begin() + static_cast<std::ptrdiff_t>(Width(model)));
        }
    }

    void SaveNew() {
        Model model;
        std::vector<int> lengths(static_cast<std::size_t>(1 + Below(4)));
        for (int& length : lengths) length = Below(8);
        model.description = Description(lengths, Below(3) > 0);
        model.withTemperature = Below(2);
        model.fieldVariables = Below(2) ? Below(5) : 0;
        model.extendable = Below(4) > 0;
        auto const transaction = mesh.Write();
        model.behaviour = mesh.document.CreateDataRecord(schema::MaterialBehavior()).Pos();
        Rows const rows = NewRows(model);
        RowPointers pointers(rows);
        KOVSimCSet const set = model.description.Table().Save(
            *transaction, model.behaviour, mesh.RowCollection().ID(), mesh.Columns().ID(),
            mesh.Fields().ID(), pointers.Get(), pointers.Count(), model.withTemperature,
            model.fieldVariables, model.extendable);
        EXPECT_EQ(Members(set), Range(0, pointers.Count()));
        if (Below(5) == 0) return;
        transaction->Commit();
        Keep(model, rows);
        models.push_back(model);
    }
    void AppendTo(Model& model) {
        auto const transaction = mesh.Write();
        Rows const rows = NewRows(model);
        RowPointers pointers(rows);
        auto const append = [&] {
            return model.description.Table().Append(
                *transaction, model.behaviour, mesh.RowCollection().ID(), mesh.Columns().ID(),
                mesh.Fields().ID(), pointers.Get(), pointers.Count(), model.withTemperature,
                model.fieldVariables);
        };
        if (!model.extendable) {
            EXPECT_THROW(append(), KOVSimException);
            return;
        }
        EXPECT_EQ(Members(append()), Range(static_cast<int>(model.rows.size()), pointers.Count()));
        if (Below(5) == 0) return;
        transaction->Commit();
        Keep(model, rows);
    }
    void Check(Model const& model) {
        KOVSrvFsmMaterialTable const table = model.description.Table();
        mesh.behaviour = model.behaviour;
        TableRead const read = mesh.Read(table);
        ASSERT_EQ(read.rows, model.rows);
        EXPECT_EQ(read.columnCount, static_cast<int>(Width(model)));
        EXPECT_EQ(read.hasTemperature, model.description.hasTemperature && model.withTemperature);
        EXPECT_EQ(read.fieldVariableCount, model.fieldVariables);
        EXPECT_EQ(table.IsTemperatureDependent(model.behaviour), read.hasTemperature);
        EXPECT_EQ(table.NumberFieldVariables(model.behaviour), model.fieldVariables);
    }
    void Reopen() {
        mesh.Reopen();
        for (Model& model : models) {
            KOVSimDynamicID id = model.behaviour.ID();
            id.context = mesh.document.ContextID();
            model.behaviour = id;
        }
    }

    unsigned const seed = Seed();
    std::mt19937 random{seed};
    testing::ScopedTrace trace;
    TableDocument mesh{GetParam()};
    std::vector<Model> models;
};
INSTANTIATE_TEST_SUITE_P(Media, MaterialTablesAgainstModel,
                         testing::Values(Medium::Memory, Medium::Disk), MediumName);

TEST_P(MaterialTablesAgainstModel, HoldWhatWasSavedAndAppended) {
    for (int turn = 0; turn < 150; ++turn) {
        if (models.empty() || Below(5) == 0) {
            SaveNew();
        } else {
            AppendTo(models[static_cast<std::size_t>(Below(static_cast<int>(models.size())))]);
        }
        if (Below(15) == 0) Reopen();
        if (!models.empty()) {
            Check(models[static_cast<std::size_t>(Below(static_cast<int>(models.size())))]);
        }
        if (HasFatalFailure()) return;
    }
    Reopen();
    for (Model const& model : models) Check(model);
}

}  // namespace
}  // namespace kov::test
