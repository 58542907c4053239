#include "ConditionTable.h"

#include <algorithm>
#include <cstddef>

#include "FieldScanner.h"

namespace kov::tool {

int FindConditionLine(DeckFiles& files, FileNames const& names, Scopes& scopes,
                      ConditionEntry const& entry, int ordinal) {
    DeckReader reader(files, names.Path(entry.at), entry.data, nullptr);
    if (reader.Size() < 0) return 0;
    ScopedName name;
    while (reader.NextData()) {
        FieldScanner fields(reader.Line(), reader.LineEnd());
        int label = 0;
        int found = LabelTable::None;
        auto const result = fields.ReadInt(label);
        if (result == FieldScanner::Result::Value) {
            found = (entry.scope->*entry.Of().labels).Find(label);
        } else if (result == FieldScanner::Result::Wrong && name.Read(fields)) {
            found = FindScopedLabel(scopes, *entry.scope, entry.Of(), name);
        }
        if (found != ordinal) continue;
        if (entry.kind->number != ConditionKind::Number::Dof) return reader.LineNumber();
        int number = 0;
        if (fields.ReadInt(number) == FieldScanner::Result::Value && number == entry.number)
            return reader.LineNumber();
    }
    return 0;
}

std::string ShownOrdinal(Scopes const& scopes, Entity const& entity, int ordinal) {
    bool const nodes = &entity == &kNodeEntity;
    for (Scope const& scope : scopes.All()) {
        int const first = nodes ? scope.firstNode : scope.firstElement;
        int const count = nodes ? scope.nodes : scope.elements;
        bool const begun = !scope.IsRoot() && ordinal >= first;
        if (begun && (count < 0 || ordinal - first < count)) {
            return ShownLabel(scope, entity, (scope.*entity.labels).LabelOf(ordinal));
        }
    }
    Scope const& root = scopes.All().front();
    return ShownLabel(root, entity, (root.*entity.labels).LabelOf(ordinal));
}

void ReadConditionValues(ConditionEntry const& entry, KOVSimCSet const& members,
                         std::vector<double>& values) {
    auto const columns = static_cast<std::size_t>(entry.columns);
    auto const rows = static_cast<std::size_t>(members.Size());
    values.resize(rows * columns);
    if (rows == 0) return;
    if (!entry.IsUniform()) return ReadRows(entry.field, members, entry.columns, values.data());
    for (std::size_t row = 0; row < rows; ++row) {
        std::copy(entry.values.begin(), entry.values.end(),
                  values.begin() + static_cast<std::ptrdiff_t>(row * columns));
    }
}

}  // namespace kov::tool
