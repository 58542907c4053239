#include "Translation.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "ConditionWriter.h"
#include "Distributions.h"
#include "Failure.h"
#include "Interrupt.h"
#include "Keywords.h"
#include "Names.h"
#include "ScopeWriter.h"
#include "SectionResolver.h"
#include "SectionWriter.h"
#include "ShellLayers.h"

namespace kov::tool {
namespace {

// Each file that is open costs a descriptor and a stream buffer.
constexpr std::size_t kDeepest = 64;

// So many keywords are named whose elements are in no section.
constexpr std::size_t kMostSectionless = 10;
// So many sections that are given to elements of another kind.
constexpr std::size_t kMostMisfits = 10;

constexpr char kChanged[] = "the file has changed while it was read; expected the same lines";

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
    CheckEnds(*this);
    m_pass = Pass::Second;
    for (Deferred& block : m_deferredElements) ReadDeferred(block);
    for (std::size_t i = 0; i < m_deferred.size(); ++i) ReadDeferred(m_deferred[i]);
    m_scope = &m_scopes.Root();
    m_repeats.Check(m_model);

    m_summary.nodes = m_model.NodeCount();
    m_summary.elements = m_model.ElementCount();
    for (TypeElements const& elements : m_model.Types()) {
        m_summary.types.push_back({std::string(elements.type->name), elements.count});
    }
    CountNames();
    ResolveSections();
    m_model.Finish(m_heading);
    WriteScopes(m_model, m_scopes);
    Distributions distributions(m_model, m_scopes);
    SectionWriter(m_model, distributions, m_sections).Write();
    m_shares.Make(m_sections, m_model, distributions);
    m_summary.initialConditions =
        ConditionWriter(m_model, m_scopes, m_files, m_sections.files).Write(m_conditions);
    WriteLabels(m_model, m_scopes);
    return m_summary;
}

void Translation::CountNames() {
    for (Scope const& scope : m_scopes.All()) {
        m_summary.nodeSets += scope.nodeSets.Size();
        m_summary.elementSets += scope.elementSets.Size();
        m_summary.surfaces += scope.surfaces.Size();
        m_summary.orientations += scope.orientations.Size();
        m_summary.distributions += scope.distributions.Size();
    }
    m_summary.parts = m_assembly.parts.size();
    m_summary.instances = m_scopes.All().size() - 1;
    for (Part const& part : m_assembly.parts) {
        if (part.instances == 0) ++m_summary.notes["parts without an instance, which gave nothing"];
    }
    m_summary.materials = m_sections.materials.All().size();
    m_summary.sections = m_sections.sections.size();
    m_summary.plies = m_sections.plies.size();
}

void Translation::ResolveSections() {
    int const elements = m_model.ElementCount();
    ElementMarks const marks = SectionResolver(m_sections, m_scopes).Resolve(elements);
    m_summary.sectionless =
        m_blocks.Unmarked(marks, elements, m_scopes, m_sections.files, kMostSectionless,
                          m_summary.sectionlessBlocks, m_summary.sectionlessElements);
    m_summary.misfits = FindMisfits(m_sections, m_blocks, elements, m_scopes, kMostMisfits);
}

void Translation::WriteLayers() { WriteShellLayers(m_model.Document(), m_sections, m_shares); }

int Translation::MentionPly(std::string const& name, DeckReader const& reader) {
    NameTable<NamedPly>& plies = m_scope->plies;
    if (NamedPly const* const known = plies.Find(name)) return known->number;
    std::string const same = m_scopes.SameKey(
        *m_scope, name, [](Scope& scope, std::string_view other) -> std::string const* {
            NamedPly const* const ply = scope.plies.Find(other);
            return ply == nullptr ? nullptr : &ply->name;
        });
    if (!same.empty()) FailKey("ply ", name, same, reader, reader.LineNumber());
    NamedPly& ply = plies.Make(name);
    ply.number = static_cast<int>(m_sections.plies.size());
    m_sections.plies.emplace_back(m_scope, &ply);
    return ply.number;
}

void Translation::Register(DeckReader& reader) {
    for (KeywordEntry const& entry : KeywordTable()) {
        reader.Parser().Register(KOVString(entry.name), entry.callback);
    }
    reader.Parser().RegisterUnknownKeywordCallback(&UnknownKeyword);
    reader.Parser().RegisterAmbiguousKeywordCallback(&AmbiguousKeyword);
}

void Translation::ReadFile(std::string const& path) {
    DeckReader reader(m_files, path, {}, nullptr);
    if (!m_quiet) ++m_summary.files;
    Register(reader);
    if (reader.NextData()) {
        reader.Fail("a data line before the first keyword; expected a keyword line, such as *NODE");
    }
    while (reader.SkipToKeyword()) TakeKeyword(reader);
}

void Translation::TakeKeyword(DeckReader& reader) {
    KeywordLine keyword;
    KOVSrvKeywordCallback const callback = reader.TakeKeyword(keyword, &UnknownKeyword);
    if (callback == &UnknownKeyword) {
        NoteUnknown(reader, keyword);
    } else if (callback == &AmbiguousKeyword) {
        reader.FailAt(keyword.line, "keyword " + ShownKeyword(keyword) +
                                        " fits several; expected one written out");
    } else {
        if (!KeepsMaterial(callback)) m_material = {};
        KeywordCall call{*this, reader, &keyword};
        callback(keyword.keyword, keyword.parameters, reader.Parser(), &call);
    }
    Breathe(reader);
}

void Translation::NoteUnknown(DeckReader& reader, KeywordLine const& keyword) {
    if (m_quiet) return;
    if (m_options.strict) {
        reader.FailAt(keyword.line,
                      "keyword " + keyword.typed + " is not known; expected known keywords only");
    }
    std::string const& typed =
        m_unknown.try_emplace(Plain(keyword.keyword), keyword.typed).first->second;
    ++m_summary.unknownKeywords[typed];
}

void Translation::Note(std::string const& what) {
    if (!m_quiet) ++m_summary.notes[what];
}

void Translation::ReadPart(Part& part) {
    try {
        m_open.push_back(m_files.Identity(part.path));
        DeckReader reader(m_files, part.path, part.body, nullptr);
        Register(reader);
        m_part = &part;
        m_body = &reader;
        m_quiet = part.instances++ > 0;
        while (m_body != nullptr && reader.SkipToKeyword()) TakeKeyword(reader);
        if (m_body != nullptr) reader.Fail(kChanged);
        m_part = nullptr;
        m_quiet = false;
        m_open.pop_back();
    } catch (DeckError const&) {
        throw;
    } catch (Interruption const&) {
        throw;
    } catch (Failure const& error) {
        throw Failure(part.path + ": " + error.what());
    }
}

bool Translation::EndPart(DeckReader const& reader) {
    if (m_body != &reader) return false;
    m_body = nullptr;
    return true;
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

void Translation::Add(Entity const& entity, NamedSet& set, int first, int count, int stride) {
    (m_scope->*entity.sets).Add(set, first, count, stride, [&]() -> KOVSimCollection const& {
        return m_model.Collection(entity);
    });
}

void Translation::AddNodes(NamedSet* set, int first, int count, int stride) {
    if (set != nullptr) Add(kNodeEntity, *set, first, count, stride);
}

void Translation::AddElements(NamedSet* set, int first, int count, int stride) {
    if (set != nullptr) Add(kElementEntity, *set, first, count, stride);
}

void Translation::Join(Entity const& entity, NamedSet& set, NamedSet const& other) {
    (m_scope->*entity.sets).Join(set, other, [&]() -> KOVSimCollection const& {
        return m_model.Collection(entity);
    });
}

void Translation::FailKey(std::string const& what, std::string const& name, std::string const& same,
                          DeckReader const& reader, int line) const {
    reader.FailAt(line, what + ShownIn(*m_scope, name) + " and " + what + same +
                            " both have the key '" + Shown(m_scope->Key(name)) +
                            "'; expected names that differ");
}

NamedSet& Translation::MakeSet(Entity const& entity, std::string const& name, bool internal,
                               DeckReader const& reader, int line) {
    SetTable& sets = m_scope->*entity.sets;
    NamedSet* const found = sets.Find(name);
    if (found != nullptr) {
        found->internal = found->internal && internal;
        return *found;
    }
    std::string const same = m_scopes.SameKey(
        *m_scope, name, [&entity](Scope& scope, std::string_view other) -> std::string const* {
            NamedSet const* const set = (scope.*entity.sets).Find(other);
            return set == nullptr ? nullptr : &set->name;
        });
    if (!same.empty()) FailKey(std::string(entity.name) + " set ", name, same, reader, line);
    NamedSet& set = sets.FindOrMake(name);
    set.internal = internal;
    return set;
}

// A pipe could not even be opened again.
void Translation::AskForFile(DeckReader const& reader) {
    if (reader.Size() < 0) {
        reader.Fail(
            "refers to what is not defined before; expected a regular file, which can be read "
            "twice");
    }
}

void Translation::Defer(DeckReader const& reader, DeckPlace place, NamedSet* set,
                        std::function<void(Translation&, DeckReader&)> read) {
    AskForFile(reader);
    if (set != nullptr) set->deferred.push_back(m_deferred.size());
    m_deferred.push_back({reader.Path(), place, set, m_scope, std::move(read)});
}

void Translation::DeferElements(DeckReader const& reader, DeckPlace place,
                                std::function<void(Translation&, DeckReader&)> read) {
    AskForFile(reader);
    m_deferredElements.push_back({reader.Path(), place, nullptr, m_scope, std::move(read)});
}

void Translation::ReadDeferred(Deferred& block) {
    if (block.done) return;
    block.done = true;
    if (block.set != nullptr) block.set->resolving = true;
    Scope* const before = m_scope;
    m_scope = block.scope;
    try {
        DeckReader reader(m_files, block.path, block.place, nullptr);
        block.read(*this, reader);
        m_scope = before;
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
