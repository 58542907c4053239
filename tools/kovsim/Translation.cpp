#include "Translation.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "Failure.h"
#include "Interrupt.h"
#include "Keywords.h"
#include "Names.h"

namespace kov::tool {
namespace {

// Each file that is open costs a descriptor and a stream buffer.
constexpr std::size_t kDeepest = 64;

// Stand for keywords without a class of their own; never called.
void Unknown(KOVString const&, KOVSrvKeywordParser::Parameters const&, KOVSrvKeywordParser&,
             void*) {}
void Ambiguous(KOVString const&, KOVSrvKeywordParser::Parameters const&, KOVSrvKeywordParser&,
               void*) {}

}  // namespace

Translation::Translation(DeckFiles& files, KOVObjDocument const& document,
                         KOVSimTransaction& transaction, TranslationOptions options)
    : m_files(files), m_options(std::move(options)), m_model(document, transaction) {}

TranslationSummary Translation::Run(std::string const& deck) {
    try {
        m_open.push_back(m_files.Identity(deck));
        ReadFile(deck);
    } catch (DeckError const&) {
        throw;
    } catch (Interruption const&) {
        throw;
    } catch (Failure const& error) {
        throw Failure(deck + ": " + error.what());
    }
    m_open.clear();
    m_pass = Pass::Second;
    for (std::size_t i = 0; i < m_deferred.size(); ++i) ReadDeferred(m_deferred[i]);
    m_repeats.Check(m_model);

    m_summary.nodes = m_model.NodeCount();
    m_summary.elements = m_model.ElementCount();
    for (TypeElements const& elements : m_model.Types()) {
        m_summary.types.push_back({std::string(elements.type->name), elements.count});
    }
    m_summary.nodeSets = m_nodeSets.Size();
    m_summary.elementSets = m_elementSets.Size();
    m_model.Finish(m_heading, m_nodeSets, m_elementSets, m_nodeLabels, m_elementLabels);
    return m_summary;
}

void Translation::ReadFile(std::string const& path) {
    DeckReader reader(m_files, path, {}, nullptr);
    ++m_summary.files;
    for (KeywordEntry const& entry : KeywordTable()) {
        reader.Parser().Register(KOVString(entry.name), entry.callback);
    }
    reader.Parser().RegisterUnknownKeywordCallback(&Unknown);
    reader.Parser().RegisterAmbiguousKeywordCallback(&Ambiguous);
    if (reader.NextData()) {
        reader.Fail("a data line before the first keyword; expected a keyword line, such as *NODE");
    }
    while (reader.SkipToKeyword()) TakeKeyword(reader);
}

void Translation::TakeKeyword(DeckReader& reader) {
    KeywordLine keyword;
    KOVSrvKeywordCallback const callback = reader.TakeKeyword(keyword, &Unknown);
    if (callback == &Unknown) {
        NoteUnknown(reader, Plain(keyword.keyword), keyword.line);
    } else if (callback == &Ambiguous) {
        reader.FailAt(keyword.line, "keyword " + ShownKeyword(keyword) +
                                        " fits several; expected one written out");
    } else {
        KeywordCall call{*this, reader, &keyword};
        callback(keyword.keyword, keyword.parameters, reader.Parser(), &call);
    }
    Breathe(reader);
}

void Translation::NoteUnknown(DeckReader& reader, std::string const& keyword, int line) {
    KeywordLine shown;
    shown.keyword = ToKOVString(keyword);
    if (m_options.strict) {
        reader.FailAt(
            line, "keyword " + ShownKeyword(shown) + " is not known; expected known keywords only");
    }
    ++m_summary.unknownKeywords[ShownKeyword(shown)];
}

void Translation::Include(DeckReader& from, std::string const& path) {
    int const line = from.LineNumber();
    std::filesystem::path const base = std::filesystem::path(from.Path()).parent_path();
    std::string const resolved = (base / path).lexically_normal().string();
    std::string const name = "included file '" + Shown(path) + "'";
    std::string identity;
    try {
        identity = m_files.Identity(resolved);
        if (std::find(m_open.begin(), m_open.end(), identity) != m_open.end()) {
            from.FailAt(line, name + " includes itself; expected no cycle");
        }
        if (m_open.size() == kDeepest) {
            from.FailAt(line, name + " lies more than 64 files deep; expected fewer");
        }
        m_open.push_back(identity);
        ReadFile(resolved);
        m_open.pop_back();
    } catch (DeckError const&) {
        throw;
    } catch (Interruption const&) {
        throw;
    } catch (Failure const& error) {
        from.FailAt(line, name + " " + error.what());
    }
}

void Translation::AddNodes(NamedSet* set, int first, int count, int stride) {
    if (set == nullptr) return;
    m_nodeSets.Add(*set, first, count, stride,
                   [this]() -> KOVSimCollection const& { return m_model.NodeCollection(); });
}

void Translation::AddElements(NamedSet* set, int first, int count, int stride) {
    if (set == nullptr) return;
    m_elementSets.Add(*set, first, count, stride,
                      [this]() -> KOVSimCollection const& { return m_model.ElementCollection(); });
}

void Translation::JoinNodeSet(NamedSet& set, NamedSet const& other) {
    m_nodeSets.Join(set, other,
                    [this]() -> KOVSimCollection const& { return m_model.NodeCollection(); });
}

void Translation::JoinElementSet(NamedSet& set, NamedSet const& other) {
    m_elementSets.Join(set, other,
                       [this]() -> KOVSimCollection const& { return m_model.ElementCollection(); });
}

void Translation::Defer(DeckReader const& reader, DeckPlace place, NamedSet* set,
                        std::function<void(Translation&, DeckReader&)> read) {
    // A pipe could not even be opened again.
    if (reader.Size() < 0) {
        reader.Fail(
            "refers to what is not defined before; expected a regular file, which can be read "
            "twice");
    }
    if (set != nullptr) set->deferred.push_back(m_deferred.size());
    m_deferred.push_back({reader.Path(), place, set, std::move(read)});
}

void Translation::ReadDeferred(Deferred& block) {
    if (block.done) return;
    block.done = true;
    if (block.set != nullptr) block.set->resolving = true;
    try {
        DeckReader reader(m_files, block.path, block.place, nullptr);
        block.read(*this, reader);
    } catch (DeckError const&) {
        throw;
    } catch (Interruption const&) {
        throw;
    } catch (Failure const& error) {
        throw Failure(block.path + ": " + error.what());
    }
    if (block.set != nullptr) block.set->resolving = false;
}

void Translation::Resolve(NamedSet& set, DeckReader const& reader) {
    if (set.resolving) {
        reader.Fail("set '" + Shown(set.name) + "' is defined by itself; expected no cycle");
    }
    // Each level holds a file open.
    if (m_resolving == kDeepest) {
        reader.Fail("set '" + Shown(set.name) +
                    "' is reached through more than 64 sets defined later; expected fewer");
    }
    ++m_resolving;
    for (std::size_t const block : set.deferred) ReadDeferred(m_deferred[block]);
    --m_resolving;
    set.deferred.clear();
}

void Translation::Breathe(DeckReader const& reader) {
    ThrowIfInterrupted();
    if (m_options.progress && m_open.size() == 1) {
        m_options.progress(static_cast<double>(reader.Offset()),
                           static_cast<double>(reader.Size()));
    }
}

}  // namespace kov::tool
