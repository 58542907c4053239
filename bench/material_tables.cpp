// A table of a material behaviour: saved, appended to, and read as rows.
//
//   --rows 100000 --singles 1000
//
// A row has the 9 constants of an orthotropic solid, the temperature and two field variables.
// Appended are as many rows as were saved, in ten blocks, and then some one at a time. Beside it
// stands a plain file with the same bytes, made lasting or read into rows.
#include <vector>

#include "KOVObjDocument.h"
#include "KOVSimCollection.h"
#include "KOVSimSchema.h"
#include "KOVSimTransaction.h"
#include "KOVSrvFsmMaterialTable.h"
#include "bench/support/Measure.h"

namespace {

constexpr int kColumns = 12;
int const kTypes[] = {schema::MaterialTable_dependentData(), -1};
int const kMembers[] = {1};
int const kLengths[] = {9};

KOVSrvFsmMaterialTable Orthotropic() {
    return {kTypes,
            kMembers,
            kLengths,
            true,
            schema::MaterialTable_temperatureData(),
            1,
            schema::MaterialTable_fieldVariableData(),
            1};
}

// Rows of a caller, each where it happens to lie.
struct Rows {
    explicit Rows(int count) {
        for (int r = 0; r < count; ++r) {
            std::vector<double>& row = content.emplace_back(kColumns);
            for (int c = 0; c < kColumns; ++c) {
                row[static_cast<std::size_t>(c)] = 0.125 * r + c;
            }
        }
        for (std::vector<double> const& row : content) pointers.push_back(row.data());
    }
    std::vector<std::vector<double>> content;
    std::vector<double const*> pointers;
};

struct Behaviour {
    explicit Behaviour(KOVObjDocument const& document) {
        KOVSimTransaction transaction(document.ContextID());
        position = document.CreateDataRecord(schema::MaterialBehavior()).Pos();
        rows = position.CreateTypedCollection(0, schema::MaterialTableRowCollection());
        columns = position.CreateTypedCollection(0, schema::MaterialTableColumnCollection());
        fields = position.CreateTypedCollection(0, schema::MaterialTableColumnCollection());
        transaction.Commit();
    }
    KOVSimPosition position;
    KOVSimCollectionID rows, columns, fields;
};

void Append(KOVSimTransaction& transaction, Behaviour& behaviour, double const** rows, int count) {
    Orthotropic().Append(transaction, behaviour.position, behaviour.rows, behaviour.columns,
                         behaviour.fields, rows, count, true, 2);
}

double SecondsToRead(KOVObjDocument const& document, KOVSimPosition behaviour, Rows const& rows) {
    KOVSimDynamicID id = behaviour.ID();
    id.context = document.ContextID();
    double** read = nullptr;
    int rowCount = 0, columnCount = 0, fieldVariableCount = 0;
    bool hasTemperature = false;
    double const seconds = bench::Seconds([&] {
        Orthotropic().FillPointer(id, read, rowCount, columnCount, hasTemperature,
                                  fieldVariableCount);
    });
    bool right = columnCount == kColumns && rowCount >= 2 * static_cast<int>(rows.content.size());
    for (std::size_t r = 0; right && r < rows.content.size(); ++r) {
        right = std::equal(rows.content[r].begin(), rows.content[r].end(), read[r]) &&
                std::equal(rows.content[r].begin(), rows.content[r].end(),
                           read[r + rows.content.size()]);
    }
    if (!right) throw std::runtime_error("material_tables: not what was written");
    for (int r = 0; r < rowCount; ++r) mem_Free(read[r]);
    mem_Free(read);
    return seconds;
}

void Plain(std::string const& path, Rows const& rows) {
    std::size_t const row = kColumns * sizeof(double);
    bench::Report("tables.save", "plain file", bench::Seconds([&] {
                      std::FILE* const file = std::fopen(path.c_str(), "wb");
                      if (!file) throw std::runtime_error("cannot write " + path);
                      for (double const* from : rows.pointers) std::fwrite(from, 1, row, file);
                      std::fclose(file);
                      bench::SyncFile(path);
                  }));
    std::vector<std::vector<double>> read;
    bench::Report("tables.read", "plain file", bench::Seconds([&] {
                      std::FILE* const file = std::fopen(path.c_str(), "rb");
                      if (!file) throw std::runtime_error("cannot read " + path);
                      for (int pass = 0; pass < 2; ++pass) {
                          std::rewind(file);
                          for (std::size_t r = 0; r < rows.pointers.size(); ++r) {
                              read.emplace_back(kColumns);
                              if (std::fread(read.back().data(), 1, row, file) != row)
                                  throw std::runtime_error("cannot read " + path);
                          }
                      }
                      std::fclose(file);
                  }));
    std::filesystem::remove_all(path);
}

void Run(bench::Options const& options) {
    int const count = options.Int("rows", 100'000), singles = options.Int("singles", 1000);
    std::string const path = bench::FreshPath(options, "tables.ksd");
    Rows rows(count);
    KOVObjDocument document = KOVObjDocument::Create(path.c_str());
    Behaviour behaviour(document);
    bench::Report("tables.save", "ours", bench::Seconds([&] {
                      KOVSimTransaction transaction(document.ContextID());
                      Orthotropic().Save(transaction, behaviour.position, behaviour.rows,
                                         behaviour.columns, behaviour.fields, rows.pointers.data(),
                                         count, true, 2, true);
                      transaction.Commit();
                  }));
    bench::Report("tables.append", "ours", bench::Seconds([&] {
                      KOVSimTransaction transaction(document.ContextID());
                      for (int block = 0; block < 10; ++block) {
                          int const first = static_cast<int>(1LL * count * block / 10);
                          int const end = static_cast<int>(1LL * count * (block + 1) / 10);
                          Append(transaction, behaviour, rows.pointers.data() + first, end - first);
                      }
                      transaction.Commit();
                  }));
    bench::Report("tables.single", "ours", bench::Seconds([&] {
                                               KOVSimTransaction transaction(document.ContextID());
                                               for (int r = 0; r < singles; ++r) {
                                                   Append(transaction, behaviour,
                                                          rows.pointers.data() + r % count, 1);
                                               }
                                               transaction.Commit();
                                           }) / singles);
    document.Close();
    Plain(path + ".plain", rows);
    document = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadOnly);
    bench::Report("tables.read", "ours, the first time",
                  SecondsToRead(document, behaviour.position, rows));
    bench::Report("tables.read", "ours", SecondsToRead(document, behaviour.position, rows));
    document.Close();
    std::filesystem::remove_all(path);
}

}  // namespace

int main(int argc, char** argv) { return bench::Main(argc, argv, &Run); }
