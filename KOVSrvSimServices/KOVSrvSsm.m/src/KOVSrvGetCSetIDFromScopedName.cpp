#include "KOVSrvGetCSetIDFromScopedName.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "KOVAssert.h"
#include "KOVSimDataRecord.h"
#include "KOVSimException.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"

namespace {

// What joins the scopes of a stored key.
constexpr char kJoiner = '_';
constexpr char const* kJoinerText = "_";

// Names are cut byte by byte. Quotes and joiners are single bytes in UTF-8, and a name in another
// encoding loses nothing that way.
std::string_view View(KOVString const& text) {
    return {text.TextOrEmpty(), static_cast<std::size_t>(text.GetLengthInByte())};
}

KOVString Text(std::string_view bytes) {
    KOVString text;
    text.BuildFromUTF8(bytes.data(), static_cast<int>(bytes.size()));
    return text;
}

// Takes away a quote at the beginning, and the one that closes it. What follows the closing quote
// stays, and so does a quote that is never closed.
KOVString StripQuotes(KOVString const& name) {
    std::string_view const text = View(name);
    if (text.empty() || text.front() != '"') return name;
    int const nameLen = name.GetLengthInByte();
    std::size_t const closing = text.find('"', 1);
    int const endQuotePos = closing == std::string_view::npos ? -1 : static_cast<int>(closing);
    KOV_UTT_ASSERT(endQuotePos < nameLen);
    if (endQuotePos < 0) return name;
    return Text(text.substr(1, closing - 1)) + Text(text.substr(closing + 1));
}

// Strips the quotes of each piece between joiners on its own.
KOVString StripQuotesOfPieces(KOVString const& name) {
    std::string_view rest = View(name);
    if (rest.find('"') == std::string_view::npos) return name;
    std::string joined;
    for (;;) {
        std::size_t const end = rest.find(kJoiner);
        joined += View(StripQuotes(Text(rest.substr(0, end))));
        if (end == std::string_view::npos) return Text(joined);
        joined += kJoiner;
        rest.remove_prefix(end + 1);
    }
}

// The map in which a name is looked up, and what the forms of key are made of.
class Scope {
  public:
    Scope(KOVSimPosition const& focus, int mapMember, char const* separator, char const* instance)
        : m_model(focus.GetPosition(schema::Focus_model())),
          m_map(m_model.GetMap(mapMember)),
          m_ofRegions(mapMember == schema::Model_regions()),
          m_separator(separator),
          m_instance(StripQuotes(instance)) {}

    KOVSimPosition Resolve(KOVString const& name, bool retry);

  private:
    KOVSimPosition ResolveInModel(KOVString const& key, KOVString const& head) const;
    KOVString const& ModelName() {
        if (!m_modelName) m_modelName = m_model.GetDataRecord().ReturnString(0);
        return *m_modelName;
    }

    KOVSimPosition m_model;
    KOVSimMap m_map;
    bool m_ofRegions;
    KOVString m_separator;
    KOVString m_instance;
    // Read when a form needs it: most names are found without.
    std::optional<KOVString> m_modelName;
};

KOVSimPosition Scope::Resolve(KOVString const& name, bool retry) {
    // A name of nothing but quoted pieces may be empty when it is tried again.
    if (name.IsEmpty()) return {};
    KOVString key = StripQuotes(name);
    if (!m_instance.IsEmpty()) {
        KOVString const inInstance = m_instance + kJoinerText + key;
        KOVString const& modelName = ModelName();
        return m_map.Find(modelName.IsEmpty() ? inInstance : modelName + kJoinerText + inInstance);
    }

    KOVSimPosition found = m_map.Find(key);
    if (!found.IsNull()) return found;
    KOVString const asWritten = key;
    key.ReplaceAll(m_separator, kJoinerText);
    if (key != asWritten) {
        found = m_map.Find(key);
        if (!found.IsNull()) return found;
    }
    KOVString const& modelName = ModelName();
    if (modelName.IsEmpty()) return found;

    found = ResolveInModel(key, modelName + kJoinerText);
    if (!found.IsNull() || !retry) return found;
    KOVString const rebuilt = StripQuotesOfPieces(key);
    return rebuilt == key ? found : Resolve(rebuilt, false);
}

// The forms of key that have the model's name, or lack it where `key` has it. `head`: that name and
// the joiner.
KOVSimPosition Scope::ResolveInModel(KOVString const& key, KOVString const& head) const {
    KOVSimPosition found = m_map.Find(head + key);
    if (!found.IsNull() || View(key).substr(0, View(head).size()) != View(head)) return found;
    KOVString const bare = Text(View(key).substr(View(head).size()));
    found = m_map.Find(bare);
    if (!found.IsNull() || !m_ofRegions) return found;
    found = m_map.Find("INP2SIM_ELSET_" + bare);
    return found.IsNull() ? m_map.Find("INP2SIM_NSET_" + bare) : found;
}

// A set that may stand in either of two maps.
KOVSimPosition SetOfEither(KOVSimPosition const& focus, KOVString const& name, int firstMap,
                           int secondMap, char const* scopeSeparator, char const* instanceName) {
    KOVSimPosition setPos =
        KOVSrvGetIDFromScopedName(focus, name, firstMap, scopeSeparator, instanceName, true);
    if (setPos.IsNull()) {
        setPos =
            KOVSrvGetIDFromScopedName(focus, name, secondMap, scopeSeparator, instanceName, true);
    }
    KOV_UTT_ASSERT(KOVSimCSetID::CanBeConverted(setPos.ID()));
    return setPos;
}

}  // namespace

KOVSimPosition KOVSrvGetIDFromScopedName(KOVSimPosition const& focus, KOVString const& name,
                                         int mapMember, char const* scopeSeparator,
                                         char const* instanceName, bool retry) {
    if (name.IsEmpty()) return {};
    if (scopeSeparator == nullptr) {
        KOVSimException::ThrowText(
            "cannot resolve a scoped name: the scope separator is null; it may be empty");
    }
    if (instanceName == nullptr) {
        KOVSimException::ThrowText(
            "cannot resolve a scoped name: the instance name is null; it may be empty");
    }
    return Scope(focus, mapMember, scopeSeparator, instanceName).Resolve(name, retry);
}

KOVSimPosition KOVSrvGetSurfaceIDFromScopedName(KOVSimPosition const& focus, KOVString const& name,
                                                char const* scopeSeparator,
                                                char const* instanceName) {
    return KOVSrvGetIDFromScopedName(focus, name, schema::Model_regions(), scopeSeparator,
                                     instanceName, true);
}

KOVSimPosition KOVSrvGetOrientationIDFromScopedName(KOVSimPosition const& focus,
                                                    KOVString const& name,
                                                    char const* scopeSeparator,
                                                    char const* instanceName) {
    return KOVSrvGetIDFromScopedName(focus, name, schema::Model_orientationsByName(),
                                     scopeSeparator, instanceName, true);
}

KOVSimPosition KOVSrvGetElementSetIDFromScopedName(KOVSimPosition const& focus,
                                                   KOVString const& name,
                                                   char const* scopeSeparator,
                                                   char const* instanceName) {
    return SetOfEither(focus, name, schema::Model_elementSets(), schema::Model_otherElementSets(),
                       scopeSeparator, instanceName);
}

KOVSimPosition KOVSrvGetNodeSetIDFromScopedName(KOVSimPosition const& focus, KOVString const& name,
                                                char const* scopeSeparator,
                                                char const* instanceName) {
    return SetOfEither(focus, name, schema::Model_nodeSets(), schema::Model_otherNodeSets(),
                       scopeSeparator, instanceName);
}
