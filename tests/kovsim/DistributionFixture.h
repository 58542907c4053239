// Decks with distributions, and what their table fields hold in the document.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "DeckFile.h"
#include "DocumentReader.h"
#include "KOVBasMap.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimFTable.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
#include "KOVSrvBulkShellLayers.h"
#include "Names.h"
#include "Translation.h"
#include "support/DocumentFixture.h"

namespace kov::test {

/// Values by element ordinal, as many for each as the field has columns.
using FieldValues = std::map<int, std::vector<double>>;

/// All that a table field holds.
struct StoredField {
    FieldValues values;
    std::vector<double> defaults;
    int hasDefault = -1;
    std::string words;
    std::vector<std::string> columnLabels;

    bool operator==(StoredField const& other) const {
        return values == other.values && defaults == other.defaults &&
               hasDefault == other.hasDefault && words == other.words &&
               columnLabels == other.columnLabels;
    }
};

inline StoredField Stored(KOVSimPosition const& field) {
    StoredField stored;
    KOVSimDataRecord const record = field.GetDataRecord();
    record.GetInt(0, stored.hasDefault);
    stored.words = tool::Plain(record.ReturnString(1));
    KOVSimFTable const table(field.GetPosition(schema::FieldFTable_table()).GetFTable());
    EXPECT_EQ(table.RowCount(), 1);
    stored.defaults.resize(static_cast<std::size_t>(table.ColumnCount()));
    table.GetData(stored.defaults.data(), table.ColumnCount());
    for (int column = 0; column < table.ColumnCount(); ++column) {
        stored.columnLabels.push_back(tool::Plain(table.ColumnLabel(column)));
    }

    KOVSimDistribution const values(
        field.GetPosition(schema::FieldFTable_distribution()).GetDistribution());
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>
        drawers(1, 0);
    values.QueryDrawers(drawers);
    EXPECT_EQ(drawers.Size(), 1);
    EXPECT_EQ(drawers.ConstGet(0).extendableDim, 0);
    KOVSimCSet const elements = drawers.ConstGet(0).compartment.CSet(0);
    KOVSimCSet const columns = drawers.ConstGet(0).compartment.CSet(1);
    EXPECT_EQ(columns.Size(), table.ColumnCount());
    if (elements.IsEmpty()) return stored;
    EXPECT_EQ(columns[0], 0);
    EXPECT_EQ(columns[columns.Size() - 1], columns.Size() - 1);
    auto const width = static_cast<std::size_t>(columns.Size());
    std::vector<double> numbers(static_cast<std::size_t>(elements.Size()) * width, -1);
    KOVSimTransfer read(values);
    read.SetRead().SetBufferPadding(false).SetDim(0, elements).SetDim(1, columns).CheckView();
    read.SetBuffer(0, numbers.data(), numbers.size() * sizeof(double)).ExecRead();
    read.RelinquishBuffers();
    for (int i = 0; i < elements.Size(); ++i) {
        auto const first = numbers.begin() + static_cast<std::ptrdiff_t>(i) * columns.Size();
        stored.values[elements[i]].assign(first, first + columns.Size());
    }
    return stored;
}

/// The values of elements 0, 1, ... as the layers of shells take them.
inline std::vector<double> ReadByElement(KOVObjDocument const& document,
                                         KOVSimPosition const& field) {
    KOVSimCollection elements(
        KOVObjMesh(document.GetMesh()).GetElementCollection().GetCollection());
    KOVSimCSetID const all = elements.CreateTempCSetStrided(0, elements.Space(), 1, 1);
    KOVBasMap<int, double> read;
    omi_Singleton<KOVSrvBulkShellLayers>::Instance()->ReadFieldData(KOVSimPosition(all), field,
                                                                    read);
    std::vector<double> values;
    for (auto const& [element, value] : read) {
        EXPECT_EQ(element, static_cast<int>(values.size()));
        values.push_back(value);
    }
    return values;
}

class DistributionTest : public DocumentTest {
  protected:
    /// Translates a deck named "deck.inp"; on disk the document is closed and opened again.
    void Translate(std::string const& deck) {
        files["deck.inp"] = deck;
        tool::MemoryFiles source;
        source.texts = files;
        KOVSimTransaction transaction(Document().ContextID());
        summary = tool::Translation(source, Document(), transaction, {}).Run("deck.inp");
        transaction.Commit();
        Reopen();
    }
    KOVSimPosition Field(char const* key) const {
        return Document().GetModel().GetMap(schema::Model_distributions()).Find(key);
    }
    StoredField Stored(char const* key = "D") const {
        KOVSimPosition const field = Field(key);
        EXPECT_FALSE(field.IsNull()) << key;
        EXPECT_EQ(tool::Plain(field.Name(-1)), key);
        EXPECT_TRUE(field.IsA(schema::Field_FTable()));
        return test::Stored(field);
    }
    std::vector<double> ReadByElement(char const* key = "D") const {
        return test::ReadByElement(Document(), Field(key));
    }

    std::map<std::string, std::string> files;  ///< further ones
    tool::TranslationSummary summary;
};

}  // namespace kov::test
