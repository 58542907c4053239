// Translation: one deck on its way into a document. It holds what the keyword classes share, walks
// the files of the deck, and comes back to those blocks that refer to things defined further on.
//
// Two passes, and the second only over what has to be read again: a block of elements is deferred
// from the first element on whose nodes are not all known, a block of set members from the first
// line on that names something unknown. Ordinals are given in the first pass all the same, in the
// order of first appearance.
//
// Parts: the body of a part is passed over where it stands, and read again for each of its
// instances under the scope of that instance. All keyword classes ask the current scope, and serve
// flat decks, parts and assemblies alike; a block that is put off remembers its scope.
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
#include <unordered_map>
#include <vector>

#include "ConditionTable.h"
#include "DeckReader.h"
#include "ElementBlocks.h"
#include "LayerShares.h"
#include "ModelWriter.h"
#include "NodeRepeats.h"
#include "Scope.h"
#include "SectionFit.h"
#include "SectionTable.h"

namespace kov::tool {

struct TranslationOptions {
    bool strict = false;  ///< an unknown keyword is an error
    /// Called now and then with the bytes read of the main deck and its size, if that is known.
    std::function<void(double done, double total)> progress;
};

/// Rows of elastic behaviours whose numbers give no stable material.
struct UnstableRows {
    struct Row {
        std::string path;
        int line;
        std::string material;  ///< as its name was typed first
        std::string text;      ///< what is wrong
    };
    std::vector<Row> first;  ///< in the order of the deck
    long rows = 0;           ///< in all
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
    std::size_t surfaces = 0;
    std::size_t orientations = 0;
    std::size_t distributions = 0;
    std::size_t materials = 0;
    std::size_t sections = 0;
    std::size_t plies = 0;
    std::size_t initialConditions = 0;
    std::size_t parts = 0;
    std::size_t instances = 0;
    int files = 0;
    long repeatedNodes = 0;                       ///< defined again with the same data
    std::map<std::string, long> unknownKeywords;  ///< how often each came
    std::map<std::string, long> notes;            ///< what was passed over, and how often
    std::vector<Sectionless> sectionless;         ///< elements that are in no section; the first
    long sectionlessBlocks = 0;                   ///< keywords that gave any such
    long sectionlessElements = 0;
    Misfits misfits;  ///< sections given to elements of another kind
    UnstableRows unstable;
};

/// The keywords with an end of their own that are open, and the parts of the deck.
struct Assembly {
    std::deque<Part> parts;
    std::unordered_map<std::string, Part*> byName;  ///< key: the name in lower case
    std::string path;                               ///< of the file with *ASSEMBLY
    int line = 0;                                   ///< of *ASSEMBLY; 0 before it
    bool open = false;
    Scope* instance = nullptr;  ///< whose *INSTANCE is open
};

/// The material to which behaviours belong at this point of the deck.
struct MaterialAtHand {
    int number = MaterialTable::kNone;
    bool again = false;  ///< it is read another time, for a further instance of its part
};

class Translation {
  public:
    enum class Pass { First, Second };

    /// `document` has the skeleton of a model without nodes and elements; `transaction` is open on
    /// it and is left for the caller to commit.
    Translation(DeckFiles& files, KOVObjDocument const& document, KOVSimTransaction& transaction,
                TranslationOptions options);

    /// Reads the deck and writes the document but for the layers of its shells. Throws DeckError or
    /// Failure.
    TranslationSummary Run(std::string const& deck);
    /// Once, behind the commit of what Run() wrote: writes the layers of the shells, in a
    /// transaction of its own.
    void WriteLayers();

    // ---- for the keyword classes ----

    ModelWriter& Model() { return m_model; }
    /// What names and labels stand for at this point of the deck.
    Scope& Current() { return *m_scope; }
    void Enter(Scope& scope) { m_scope = &scope; }
    Scopes& AllScopes() { return m_scopes; }
    DeckFiles& Files() { return m_files; }
    SectionTable& Sections() { return m_sections; }
    ConditionTable& Conditions() { return m_conditions; }
    MaterialAtHand& Material() { return m_material; }
    ElementBlocks& Blocks() { return m_blocks; }
    bool IsStrict() const { return m_options.strict; }
    /// True while the body of a part is read for an instance that is not its first.
    bool IsRepeated() const { return m_quiet; }
    /// The number of the ply of that name in the current scope; it is new where there is none.
    /// Throws at the reader's line if another scope has one with the same key.
    int MentionPly(std::string const& name, DeckReader const& reader);
    Assembly& Parts() { return m_assembly; }
    /// True where nodes of instances may be named, which may stand further on.
    bool NamesInstances() const { return m_scope->IsRoot() && m_assembly.line != 0; }
    NodeRepeats& Repeats() { return m_repeats; }
    std::string& Heading() { return m_heading; }
    TranslationSummary& Summary() { return m_summary; }
    /// Counts a thing that was passed over; for a part once, not for each of its instances.
    void Note(std::string const& what);

    /// Reads the body of a part under the current scope.
    void ReadPart(Part& part);
    /// The part whose body is read; null outside.
    Part const* CurrentPart() const { return m_part; }
    /// *END PART: ends the body that `reader` reads. False if it reads none.
    bool EndPart(DeckReader const& reader);

    /// Reads a further file, as `from` asks for it.
    void Include(DeckReader& from, std::string const& path);
    /// Adds nodes or elements to a set; a null set is left alone.
    void AddNodes(NamedSet* set, int first, int count, int stride);
    void AddElements(NamedSet* set, int first, int count, int stride);
    void Add(Entity const& entity, NamedSet& set, int first, int count, int stride);
    /// Adds all members of a set to another.
    void Join(Entity const& entity, NamedSet& set, NamedSet const& other);
    /// The set of that name in the current scope, made if there is none. Throws at line `line` if
    /// another scope has a set with the same key. A set is internal if all keywords say so.
    NamedSet& MakeSet(Entity const& entity, std::string const& name, bool internal,
                      DeckReader const& reader, int line);

    /// A new object of the current scope. Throws at line `line` if the scope has one of that name.
    /// `what`: "surface" or the like.
    template <class Object>
    Object& MakeFirst(char const* what, NameTable<Object> Scope::*table, std::string const& name,
                      DeckReader const& reader, int line);
    /// The same for what has a key in the document. Throws too if another scope has an object with
    /// the same key.
    template <class Object>
    Object& MakeOnce(char const* what, NameTable<Object> Scope::*table, std::string const& name,
                     DeckReader const& reader, int line);

    /// Reads on at `place` in the second pass: `read` takes data lines up to the next keyword.
    /// Blocks of members of a set name that set, so that a reference to it waits for them.
    void Defer(DeckReader const& reader, DeckPlace place, NamedSet* set,
               std::function<void(Translation&, DeckReader&)> read);
    /// The same for a block of elements. These come first, so that all elements have their nodes
    /// when anything else is read on.
    void DeferElements(DeckReader const& reader, DeckPlace place,
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
        Scope* scope;
        std::function<void(Translation&, DeckReader&)> read;
        bool done = false;
    };

    [[noreturn]] void FailKey(std::string const& what, std::string const& name,
                              std::string const& same, DeckReader const& reader, int line) const;
    void CountNames();
    void ResolveSections();
    void ReadFile(std::string const& path);
    void Register(DeckReader& reader);
    void TakeKeyword(DeckReader& reader);
    void NoteUnknown(DeckReader& reader, KeywordLine const& keyword);
    void ReadDeferred(Deferred& block);
    static void AskForFile(DeckReader const& reader);

    DeckFiles& m_files;
    TranslationOptions m_options;
    ModelWriter m_model;
    Scopes m_scopes;
    Scope* m_scope = &m_scopes.Root();
    Assembly m_assembly;
    Part const* m_part = nullptr;
    DeckReader const* m_body = nullptr;  ///< the reader of the part's file; null once it has ended
    bool m_quiet = false;                ///< what is noted here was noted for another instance
    NodeRepeats m_repeats;
    SectionTable m_sections;
    ConditionTable m_conditions;
    MaterialAtHand m_material;
    LayerShares m_shares;
    ElementBlocks m_blocks;
    std::string m_heading;
    TranslationSummary m_summary;
    std::deque<Deferred> m_deferred;
    std::deque<Deferred> m_deferredElements;
    std::map<std::string, std::string> m_unknown;  ///< unknown keywords as they were typed first
    std::vector<std::string>
        m_open;  ///< identities of the files that are being read, the main deck first
    Pass m_pass = Pass::First;
    std::size_t m_resolving = 0;  ///< depth of the references between deferred sets
};

template <class Object>
Object& Translation::MakeFirst(char const* what, NameTable<Object> Scope::*table,
                               std::string const& name, DeckReader const& reader, int line) {
    NameTable<Object>& objects = m_scope->*table;
    if (Object const* const first = objects.Find(name)) {
        reader.FailAt(line, std::string(what) + " " + ShownIn(*m_scope, name) +
                                " is defined a second time, first at " +
                                reader.At(first->path, first->line) + "; expected each name once");
    }
    Object& object = objects.Make(name);
    object.path = reader.Path();
    object.line = line;
    return object;
}

template <class Object>
Object& Translation::MakeOnce(char const* what, NameTable<Object> Scope::*table,
                              std::string const& name, DeckReader const& reader, int line) {
    Object& made = MakeFirst(what, table, name, reader, line);
    std::string const same = m_scopes.SameKey(
        *m_scope, name, [table](Scope& scope, std::string_view other) -> std::string const* {
            Object const* const object = (scope.*table).Find(other);
            return object == nullptr ? nullptr : &object->name;
        });
    if (!same.empty()) FailKey(std::string(what) + " ", name, same, reader, line);
    return made;
}

}  // namespace kov::tool
