// A model whose maps hold keys; answers are read as the keys under which the objects found stand.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "KOVObjMesh.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSrvGetCSetIDFromScopedName.h"
#include "services/NamesFixture.h"

namespace kov::test {

/// What a look-up that found nothing is read as.
constexpr char const* kNothing = "(nothing)";

inline KOVString Text(std::string const& bytes) {
    KOVString text;
    text.BuildFromUTF8(bytes.data(), static_cast<int>(bytes.size()));
    return text;
}

class ScopedNamesTest : public NamesTest {
  protected:
    /// Puts a set under each key of the map; the sets name the keys. In a transaction.
    void Put(KOVObjDocument const& document, int map, std::vector<std::string> const& keys) {
        KOVSimCollection nodes(KOVObjMesh(document.GetMesh()).GetNodeCollection().GetCollection());
        for (std::string const& key : keys) {
            int const number = static_cast<int>(m_stored.size());
            if (nodes.Space() <= number) nodes.ExtendSpace(2 * number + 100);
            m_stored.emplace_back(map, key);
            document.GetModel().GetMap(map).Insert(Text(key), nodes.CreateCSet(&number, 1, false));
        }
    }
    static void SetModelName(KOVObjDocument const& document, std::string const& name) {
        document.GetModel().GetDataRecord().SetString(0, Text(name));
    }
    /// A model of that name with these keys in one map, open for reading.
    void MakeModel(std::string const& name, int map, std::vector<std::string> const& keys) {
        Write([&] {
            SetModelName(Document(), name);
            Put(Document(), map, keys);
        });
        Reopen(KOVObjDocument::ReadOnly);
    }
    void MakeModel(std::string const& name, std::vector<std::string> const& keys) {
        MakeModel(name, schema::Model_elementSets(), keys);
    }

    std::pair<int, std::string> MapAndKey(KOVSimPosition const& found) const {
        if (found.IsNull()) return {-1, kNothing};
        return m_stored.at(static_cast<std::size_t>(found.CSet()[0]));
    }
    std::string Key(KOVSimPosition const& found) const { return MapAndKey(found).second; }

    /// The key that a name leads to in a map.
    std::string FindIn(int map, std::string const& name, char const* separator = "",
                       char const* instance = "", bool retry = true) const {
        KOVSimPosition const found = KOVSrvGetIDFromScopedName(Document().Focus(), Text(name), map,
                                                               separator, instance, retry);
        EXPECT_EQ(MapAndKey(found).first, found.IsNull() ? -1 : map);
        return Key(found);
    }
    std::string Find(std::string const& name, char const* separator = "",
                     char const* instance = "") const {
        return FindIn(schema::Model_elementSets(), name, separator, instance);
    }

  private:
    std::vector<std::pair<int, std::string>> m_stored;
};

}  // namespace kov::test
