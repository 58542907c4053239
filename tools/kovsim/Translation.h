// Translation: one deck on its way into a document. It holds what the keyword classes share, walks
// the files of the deck, and comes back to those blocks that refer to things defined further on.
//
// Two passes, and the second only over what has to be read again: a block of elements is deferred
// from the first element on whose nodes are not all known, a block of set members from the first
// line on that names something unknown. Ordinals are given in the first pass all the same, in the
// order of first appearance.
//
// A new keyword class is a function of its own in a file Keyword....cpp and one row in
// Keywords.cpp.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "DeckReader.h"
#include "LabelTable.h"
#include "ModelWriter.h"
#include "NodeRepeats.h"
#include "SetTable.h"

namespace kov::tool {

struct TranslationOptions {
    bool strict = false;  ///< an unknown keyword is an error
    /// Called now and then with the bytes read of the main deck and its size, if that is known.
    std::function<void(double done, double total)> progress;
};

/// What was translated.
struct TranslationSummary {
    struct Type {
        std::string name;
        int count;
    };
    int nodes = 0;
    int elements = 0;
    std::vector<Type> types;  ///< in the order of their first appearance
    std::size_t nodeSets = 0;
    std::size_t elementSets = 0;
    int files = 0;
    long repeatedNodes = 0;                       ///< defined again with the same data
    std::map<std::string, long> unknownKeywords;  ///< how often each came
    std::map<std::string, long> notes;            ///< what was passed over, and how often
};

class Translation {
  public:
    enum class Pass { First, Second };

    /// `document` has the skeleton of a model without nodes and elements; `transaction` is open on
    /// it and is left for the caller to commit.
    Translation(DeckFiles& files, KOVObjDocument const& document, KOVSimTransaction& transaction,
                TranslationOptions options);

    /// Reads the deck and writes the document. Throws DeckError or Failure.
    TranslationSummary Run(std::string const& deck);

    // ---- for the keyword classes ----

    ModelWriter& Model() { return m_model; }
    LabelTable& NodeLabels() { return m_nodeLabels; }
    LabelTable& ElementLabels() { return m_elementLabels; }
    SetTable& NodeSets() { return m_nodeSets; }
    SetTable& ElementSets() { return m_elementSets; }
    NodeRepeats& Repeats() { return m_repeats; }
    std::string& Heading() { return m_heading; }
    TranslationSummary& Summary() { return m_summary; }

    /// Reads a further file, as `from` asks for it.
    void Include(DeckReader& from, std::string const& path);
    /// Adds the elements of a block to a set when the block is known; the same for nodes. Null sets
    /// are left alone.
    void AddNodes(NamedSet* set, int first, int count, int stride);
    void AddElements(NamedSet* set, int first, int count, int stride);

    /// Adds all members of a set to another.
    void JoinNodeSet(NamedSet& set, NamedSet const& other);
    void JoinElementSet(NamedSet& set, NamedSet const& other);

    /// Reads on at `place` in the second pass: `read` takes data lines up to the next keyword.
    /// Blocks of members of a set name that set, so that a reference to it waits for them.
    void Defer(DeckReader const& reader, DeckPlace place, NamedSet* set,
               std::function<void(Translation&, DeckReader&)> read);
    /// Reads what is deferred for a set, because something refers to it. Throws at `reader`'s line
    /// if that leads back to the set itself.
    void Resolve(NamedSet& set, DeckReader const& reader);
    Pass CurrentPass() const { return m_pass; }
    /// Now and then: shows progress, and ends if the user asks for it.
    void Breathe(DeckReader const& reader);

  private:
    struct Deferred {
        std::string path;
        DeckPlace place;
        NamedSet* set;
        std::function<void(Translation&, DeckReader&)> read;
        bool done = false;
    };

    void ReadFile(std::string const& path);
    void TakeKeyword(DeckReader& reader);
    void NoteUnknown(DeckReader& reader, std::string const& keyword, int line);
    void ReadDeferred(Deferred& block);

    DeckFiles& m_files;
    TranslationOptions m_options;
    ModelWriter m_model;
    LabelTable m_nodeLabels;
    LabelTable m_elementLabels;
    SetTable m_nodeSets;
    SetTable m_elementSets;
    NodeRepeats m_repeats;
    std::string m_heading;
    TranslationSummary m_summary;
    std::deque<Deferred> m_deferred;
    std::vector<std::string>
        m_open;  ///< identities of the files that are being read, the main deck first
    Pass m_pass = Pass::First;
    std::size_t m_resolving = 0;  ///< depth of the references between deferred sets
};

}  // namespace kov::tool
