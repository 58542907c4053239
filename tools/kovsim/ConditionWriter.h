// ConditionWriter: puts the initial conditions of a deck into the document of its model, when the
// sets that they name are there in full, and sees to it that no node or element has two values of
// a kind.
#pragma once

#include <map>
#include <utility>
#include <vector>

#include "ConditionTable.h"
#include "DeckFile.h"
#include "ModelWriter.h"

namespace kov::tool {

class ConditionWriter {
  public:
    /// The sets of the scopes are in the document; their labels are not yet taken out of them.
    ConditionWriter(ModelWriter& model, Scopes& scopes, DeckFiles& files, FileNames const& names)
        : m_model(model), m_scopes(scopes), m_files(files), m_names(names) {}

    /// Writes all of them in the transaction of the model, and gives their count. Throws a
    /// DeckError at the line of a name that stands for nothing, or of a second value.
    std::size_t Write(ConditionTable const& table);

  private:
    struct Placed {
        ConditionEntry const* entry;
        KOVSimCSet region;
    };
    // What was given of one kind and number so far.
    struct Given {
        KOVSimCSet all;
        std::map<std::vector<double>, KOVSimCSet> uniform;  ///< by value
        std::vector<Placed> entries;
    };

    KOVSimCSetID Region(ConditionEntry const& entry);
    void Check(ConditionEntry const& entry, KOVSimCSet const& region);
    static int FirstDifferent(ConditionEntry const& a, ConditionEntry const& b,
                              KOVSimCSet const& common);
    [[noreturn]] void FailTwice(ConditionEntry const& entry, ConditionEntry const& before,
                                int ordinal);
    KOVSimPosition WriteField(ConditionEntry const& entry);

    ModelWriter& m_model;
    Scopes& m_scopes;
    DeckFiles& m_files;
    FileNames const& m_names;
    std::map<std::pair<ConditionKind const*, int>, Given> m_given;
};

}  // namespace kov::tool
