// Decks with sections, translated into a document in memory or on disk, and what the services say
// of the sections and their layers.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ElementClasses.h"
#include "InMemory.h"
#include "KOVObjElementClass.h"
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSet.h"
#include "KOVSimVector.h"
#include "KOVSrvShellSection.h"
#include "support/DocumentFixture.h"

namespace kov::test {

using Ints = std::vector<int>;
using Texts = std::vector<std::string>;
using Reals = std::vector<double>;

/// Nodes 1 to 12 in two rows, and five elements between them, labels 11 to 15: 10 lines. Sets LEFT
/// (11, 12), RIGHT (13, 14) and LAST (15).
inline std::string const kStrip =
    "*NODE\n1, 0\n2, 1\n3, 2\n4, 3\n5, 4\n6, 5\n7, 0, 1\n8, 1, 1\n9, 2, 1\n10, 3, 1\n11, 4, 1\n"
    "12, 5, 1\n*ELEMENT, TYPE=S4R\n11, 1, 2, 8, 7\n12, 2, 3, 9, 8\n13, 3, 4, 10, 9\n"
    "14, 4, 5, 11, 10\n15, 5, 6, 12, 11\n*ELSET, ELSET=LEFT\n11, 12\n*ELSET, ELSET=RIGHT\n13, 14\n"
    "*ELSET, ELSET=LAST\n15\n";
inline int const kStripLines = 25;

inline std::string NameOf(KOVSimPosition const& position) { return tool::Plain(position.Name(-1)); }
inline Ints MembersOf(KOVSimPosition const& set) {
    KOVSimCSet const cset(set);
    Ints members(static_cast<std::size_t>(cset.Size()));
    if (!members.empty()) cset.Members(members.data());
    return members;
}
inline Texts KeysOf(KOVSimMap const& map) {
    Texts keys;
    for (auto at = map.Begin(); at.NotDone(); ++at) keys.push_back(tool::Plain(at.Key()));
    return keys;
}

/// A test body that runs on a document in memory, and on one that is opened again.
class SectionDecks : public DocumentTest {
  protected:
    void Translate(std::string const& deck) {
        files.texts["deck.inp"] = deck;
        KOVSimTransaction transaction(Document().ContextID());
        tool::Translation translation(files, Document(), transaction, options);
        summary = translation.Run("deck.inp");
        transaction.Commit();
        translation.WriteLayers();
        tool::ClassifyElements(Document());
        tool::LinkSectionsToClasses(Document());
        Reopen(KOVObjDocument::ReadOnly);
    }

    KOVSimPosition Model() const { return Document().GetModel(); }
    std::vector<KOVSimPosition> Assignments() const {
        std::vector<KOVSimPosition> all;
        KOVSimVector const vector = Model().GetVector(schema::Model_sectionAssignments());
        for (auto at = vector.Begin(); at.NotDone(); ++at) all.push_back(*at);
        return all;
    }
    KOVSimPosition Assignment(int i = 0) const {
        return Assignments().at(static_cast<std::size_t>(i));
    }
    KOVSimPosition Section(int i = 0) const {
        return Assignment(i).GetPosition(schema::SectionAssignment_section());
    }
    KOVSimPosition Region(int i = 0) const {
        return Assignment(i).GetPosition(schema::SectionAssignment_region());
    }
    int IntField(KOVSimPosition const& position, int field) const {
        int value = -99;
        position.GetDataRecord().GetInt(field, value);
        return value;
    }
    int SymbolField(KOVSimPosition const& position, int field) const {
        int value = -99;
        position.GetDataRecord().GetSymb(field, value);
        return value;
    }
    double RealField(KOVSimPosition const& position, int field) const {
        double value = -99;
        position.GetDataRecord().GetDouble(field, value);
        return value;
    }
    Reals RealsField(KOVSimPosition const& position, int field, int n) const {
        Reals values(static_cast<std::size_t>(n), -99);
        position.GetDataRecord().GetDouble(field, values.data(), n);
        return values;
    }
    std::string TextField(KOVSimPosition const& position, int field) const {
        return tool::Plain(position.GetDataRecord().ReturnString(field));
    }
    /// The names of positions; "-" for a null position.
    template <class Positions>
    Texts Names(Positions const& positions) const {
        Texts names;
        for (KOVSimPosition const& position : positions) {
            names.push_back(position.IsNull() ? "-" : NameOf(position));
        }
        return names;
    }

    tool::MemoryFiles files;
    tool::TranslationOptions options;
    tool::TranslationSummary summary;
};

template <class Vector>
auto Plainly(Vector const& vector) {
    return std::vector<std::decay_t<decltype(*vector.begin())>>(vector.begin(), vector.end());
}

}  // namespace kov::test
