// Links: rows of the table `links`, read and written through. One row is one link: owner, member,
// key, target. The key tells the kind of container, and so keeps containers under one member apart:
//
//   0                 a link to one, and associations
//   1, 2, ...         places of a vector, ascending; a removed place leaves a gap
//   text              keys of a map, byte for byte
//   blob of 8 bytes   members of a set: the target's reference, big-endian, so that sets stand in
//   order of their references
//
// Each write costs one tree insert, and tells the reverse index of the member if there is one. For
// the records alone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "KOVSimDynamicID.h"
#include "document/store/Catalogue.h"

namespace kov::store {
class Context;
}

namespace kov::records {

/// The key of one link.
class LinkKey {
  public:
    static LinkKey One() { return LinkKey(0); }
    static LinkKey Place(std::int64_t place) { return LinkKey(place); }
    /// `text` must outlive the key.
    static LinkKey Text(std::string_view text);
    static LinkKey OfSet(std::int64_t target);
    /// The key in a column of a row at hand; its text ends with the row.
    static LinkKey Of(store::Statement const& row, int column);

    void BindTo(store::Statement& statement) const;
    /// Orders as the catalogue does: a letter for the kind, and the bytes of the key.
    std::string Sortable() const;

  private:
    enum class Kind { Number, Text, Bytes };
    explicit LinkKey(std::int64_t number) : m_number(number) {}

    Kind m_kind = Kind::Number;
    std::int64_t m_number = 0;
    std::string_view m_text;
    char m_bytes[8] = {};
};

/// The member word of an association.
inline std::int64_t AssociationMember(int type, int member) {
    return ((static_cast<std::int64_t>(type) + 1) << 32) | static_cast<std::uint32_t>(member);
}
inline constexpr std::int64_t FirstAssociation = std::int64_t{1} << 32;

std::optional<KOVSimDynamicID> FindLink(store::Context& context, std::int64_t owner,
                                        std::int64_t member, LinkKey const& key);
/// Puts a link, replacing one with that key.
void PutLink(store::Context& context, std::int64_t owner, std::int64_t member, LinkKey const& key,
             KOVSimDynamicID const& target);
/// Takes a link away; nothing happens if there is none.
void DropLink(store::Context& context, std::int64_t owner, std::int64_t member, LinkKey const& key);

enum class Container { Vector, Map, Set };

/// Goes through the links of one container in the order of their keys.
class LinkScan {
  public:
    LinkScan(store::Context& context, std::int64_t owner, std::int64_t member, Container container);
    bool Next();
    /// The key of a map's entry; valid until `Next`.
    std::string_view TextKey() const { return m_rows.Text(0); }
    KOVSimDynamicID Target() const;

  private:
    store::Context& m_context;
    store::Statement m_rows;
};

/// How many links a container holds.
int CountLinks(store::Context& context, std::int64_t owner, std::int64_t member,
               Container container);
/// The last place that a vector has used; 0 for none.
std::int64_t LastPlace(store::Context& context, std::int64_t owner, std::int64_t member);
/// The place of the link at `index` (from 0); 0 if there are not so many.
std::int64_t PlaceAt(store::Context& context, std::int64_t owner, std::int64_t member, int index);

}  // namespace kov::records
