#include "SectionTable.h"

#include "Failure.h"
#include "Names.h"

namespace kov::tool {

DeckLine FileNames::At(std::string const& path, int line) {
    if (m_last < 0 || m_paths[static_cast<std::size_t>(m_last)] != path) {
        auto const [at, isNew] = m_numbers.try_emplace(path, static_cast<int>(m_paths.size()));
        if (isNew) m_paths.push_back(path);
        m_last = at->second;
    }
    return {m_last, line};
}

void FileNames::Fail(DeckLine const& at, std::string const& text) const {
    throw DeckError(Path(at), at.line, text);
}

std::string FileNames::Shown(DeckLine const& at, DeckLine const& from) const {
    return (at.file == from.file ? "line " : Path(at) + ":") + std::to_string(at.line);
}

int MaterialTable::Mention(std::string_view name, DeckLine const& at) {
    if (m_last != kNone && name == m_lastName) return m_last;
    auto const [found, isNew] =
        m_byName.try_emplace(LowerCase(name), static_cast<int>(m_all.size()));
    if (isNew) m_all.push_back({std::string(name), at, {}, {}});
    m_lastName = name;
    m_last = found->second;
    return m_last;
}

int MentionTable::Number(Scope& scope, ScopedName const& name, DeckLine const& at) {
    Scope const* const address = &scope;
    m_key.assign(reinterpret_cast<char const*>(&address), sizeof address);
    m_key += name.quoted ? '"' : ' ';
    // Quotes may stand around some dots of a name.
    if (name.quoted) {
        for (std::size_t const dot : name.dots) m_key += std::to_string(dot) + '.';
        m_key += '"';
    }
    m_key += LowerCase(name.text);
    auto const [found, isNew] = m_numbers.try_emplace(m_key, static_cast<int>(m_all.size()));
    if (isNew) {
        Mention& mention = m_all.emplace_back();
        mention.scope = &scope;
        mention.name = name;
        mention.first = at;
    }
    return found->second;
}

char const* SectionEntry::Words() const noexcept {
    constexpr char const* kWords[] = {"shell section", "solid section", "membrane section",
                                      "beam section"};
    return kWords[static_cast<int>(kind)];
}

void SectionTable::DropLayersBefore(std::size_t place) {
    for (; m_dropped < place; ++m_dropped) m_layers.pop_front();
}

}  // namespace kov::tool
