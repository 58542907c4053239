#include "ConditionWriter.h"

#include <algorithm>

#include "Interrupt.h"
#include "KOVSimDataRecord.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "Names.h"
#include "SetBlocks.h"

namespace kov::tool {

std::size_t ConditionWriter::Write(ConditionTable const& table) {
    if (table.empty()) return 0;
    KOVSimPosition const model = m_model.Document().GetModel();
    KOVSimSet const entries = model.GetSet(schema::Model_fieldEntries());
    long done = 0;
    for (ConditionEntry const& entry : table) {
        if (++done % 1000 == 0) ThrowIfInterrupted();
        KOVSimCSetID const region = Region(entry);
        Check(entry, KOVSimCSet(region));
        KOVSimDataRecord const record = model.CreateDataRecord(schema::FieldEntry());
        record.SetString(kConditionName, ToKOVString(ConditionName(*entry.kind, entry.number)));
        record.SetInt(kConditionValues, entry.columns);
        record.Pos().SetPosition(schema::FieldEntry_owner(), KOVSimPosition(region));
        record.Pos().SetPosition(schema::FieldEntry_field(), WriteField(entry));
        entries.Insert(record.Pos());
    }
    return table.size();
}

KOVSimCSetID ConditionWriter::Region(ConditionEntry const& entry) {
    if (!entry.IsUniform()) {
        KOVSimCSet members = entry.members;
        return members.RegisterWithCollection();
    }
    Reference const found = FindReference(m_scopes, *entry.scope, entry.Of(), entry.name,
                                          m_names.Path(entry.at), entry.at.line);
    if (found.set != nullptr) return found.set->stored;
    if (found.ordinal == LabelTable::None) {
        m_names.Fail(entry.at,
                     UnknownReference(m_scopes, *entry.scope, entry.Of(), entry.name, nullptr));
    }
    return m_model.Collection(entry.Of()).CreateCSet(&found.ordinal, 1, false);
}

KOVSimPosition ConditionWriter::WriteField(ConditionEntry const& entry) {
    KOVSimPosition const model = m_model.Document().GetModel();
    if (entry.IsUniform()) {
        if (entry.values.size() == 1) {
            KOVSimDataRecord const field = model.CreateDataRecord(schema::Field_UniformScalar());
            field.SetDouble(0, entry.values.front());
            return field.Pos();
        }
        KOVSimDataRecord const field = model.CreateDataRecord(schema::Field_UniformValues());
        field.SetDouble(0, entry.values.data(), entry.columns);
        return field.Pos();
    }
    std::string words = entry.kind->word;
    for (int i = 1; i < entry.columns; ++i) words += std::string(" ") + entry.kind->word;
    SetDefaults(entry.field, words, false,
                std::vector<double>(static_cast<std::size_t>(entry.columns), 0.0));
    return entry.field.field;
}

// Many sets with one value may share members, such as the nodes where they meet, which is found
// out without a look at each of them.
void ConditionWriter::Check(ConditionEntry const& entry, KOVSimCSet const& region) {
    if (region.IsEmpty()) return;
    Given& given = m_given[{entry.kind, entry.number}];
    KOVSimCSet const again = given.all.IsEmpty() ? given.all : given.all.Intersection(region);
    KOVSimCSet* same = nullptr;
    if (entry.IsUniform()) same = &given.uniform[entry.values];
    bool const known =
        again.IsEmpty() || (same != nullptr && !same->IsEmpty() && (again - *same).IsEmpty());
    for (Placed const& before : given.entries) {
        if (known) break;
        KOVSimCSet const common = again.Intersection(before.region);
        if (common.IsEmpty()) continue;
        int const ordinal = FirstDifferent(entry, *before.entry, common);
        if (ordinal >= 0) FailTwice(entry, *before.entry, ordinal);
    }
    if (same != nullptr) *same = same->IsEmpty() ? region : same->Union(region);
    given.all = given.all.IsEmpty() ? region : given.all.Union(region);
    given.entries.push_back({&entry, region});
}

int ConditionWriter::FirstDifferent(ConditionEntry const& a, ConditionEntry const& b,
                                    KOVSimCSet const& common) {
    if (a.columns != b.columns) return common[0];
    if (a.IsUniform() && b.IsUniform()) return a.values == b.values ? -1 : common[0];
    int found = -1;
    std::vector<double> ofA;
    std::vector<double> ofB;
    ForSetBlocks(common, RowsInBlock(a.columns), [&](KOVSimCSet const& block) {
        if (found >= 0) return;
        ReadConditionValues(a, block, ofA);
        ReadConditionValues(b, block, ofB);
        auto const at = std::mismatch(ofA.begin(), ofA.end(), ofB.begin()).first - ofA.begin();
        if (at < static_cast<std::ptrdiff_t>(ofA.size())) {
            found = block[static_cast<int>(at) / a.columns];
        }
    });
    return found;
}

void ConditionWriter::FailTwice(ConditionEntry const& entry, ConditionEntry const& before,
                                int ordinal) {
    auto const line = [&](ConditionEntry const& of) {
        int const found =
            of.IsUniform() ? 0 : FindConditionLine(m_files, m_names, m_scopes, of, ordinal);
        return DeckLine{of.at.file, found > 0 ? found : of.at.line};
    };
    DeckLine const second = line(entry);
    m_names.Fail(second, "a second initial " + ConditionText(*entry.kind, entry.number) + " of " +
                             ShownOrdinal(m_scopes, entry.Of(), ordinal) +
                             ", which differs from that of " + m_names.Shown(line(before), second) +
                             "; expected one");
}

}  // namespace kov::tool
