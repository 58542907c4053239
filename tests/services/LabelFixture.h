// Recording of instance labels in a mesh document, for the tests of the label services.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "KOVObjLabeler.h"
#include "services/MeshFixture.h"

namespace kov::test {

/// Labels and their ordinals, in any order.
using LabelPairs = std::vector<std::pair<int, int>>;

/// In a transaction of its own.
inline void RecordLabels(MeshDocument const& mesh, KOVObjLabelerType type, std::string const& name,
                         LabelPairs const& pairs) {
    KOVBasVector<int> labels;
    KOVBasVector<int> ordinals;
    for (auto const& [label, ordinal] : pairs) {
        labels.PushBack(label);
        ordinals.PushBack(ordinal);
    }
    auto const transaction = mesh.Write();
    KOVObjLabeler(mesh.document, type).SetInstance(name.c_str(), labels, ordinals);
    transaction->Commit();
}
inline void RecordNodes(MeshDocument const& mesh, std::string const& name,
                        LabelPairs const& pairs) {
    RecordLabels(mesh, KOVObjLabelerNodes, name, pairs);
}
inline void RecordElements(MeshDocument const& mesh, std::string const& name,
                           LabelPairs const& pairs) {
    RecordLabels(mesh, KOVObjLabelerElements, name, pairs);
}

}  // namespace kov::test
