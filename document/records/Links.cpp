#include "document/records/Links.h"

#include "document/records/Identity.h"
#include "document/records/ReverseLinks.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"
#include "document/store/Reference.h"

namespace kov::records {

using store::Statement;

namespace {

void ToBigEndian(std::int64_t value, char* bytes) {
    for (int i = 7; i >= 0; --i, value >>= 8) bytes[i] = static_cast<char>(value & 0xff);
}

// Numbers stand before texts, and texts before blobs, in every tree of the catalogue: each
// container is one range of keys.
constexpr char SelectVector[] =
    "SELECT key,target,target_type FROM links WHERE owner=? AND member=? AND key>=1 AND key<'' "
    "ORDER BY key";
constexpr char SelectMap[] =
    "SELECT key,target,target_type FROM links WHERE owner=? AND member=? AND key>='' AND key<x'' "
    "ORDER BY key";
constexpr char SelectSet[] =
    "SELECT key,target,target_type FROM links WHERE owner=? AND member=? AND key>=x'' ORDER BY key";
constexpr char CountVector[] =
    "SELECT count(*) FROM links WHERE owner=? AND member=? AND key>=1 AND key<''";
constexpr char CountMap[] =
    "SELECT count(*) FROM links WHERE owner=? AND member=? AND key>='' AND key<x''";
constexpr char CountSet[] = "SELECT count(*) FROM links WHERE owner=? AND member=? AND key>=x''";

char const* Pick(Container container, char const* vector, char const* map, char const* set) {
    return container == Container::Vector ? vector : container == Container::Map ? map : set;
}

}  // namespace

LinkKey LinkKey::Text(std::string_view text) {
    LinkKey key(0);
    key.m_kind = Kind::Text;
    key.m_text = text;
    return key;
}

LinkKey LinkKey::OfSet(std::int64_t target) {
    LinkKey key(0);
    key.m_kind = Kind::Bytes;
    ToBigEndian(target, key.m_bytes);
    return key;
}

LinkKey LinkKey::Of(Statement const& row, int column) {
    LinkKey key(0);
    switch (row.KindOf(column)) {
        case Statement::Kind::Integer:
            return LinkKey(row.Int(column));
        case Statement::Kind::Text:
            return Text(row.Text(column));
        default: {
            std::string_view const bytes = row.Blob(column);
            key.m_kind = Kind::Bytes;
            bytes.copy(key.m_bytes, sizeof key.m_bytes);
            return key;
        }
    }
}

void LinkKey::BindTo(Statement& statement) const {
    switch (m_kind) {
        case Kind::Number:
            statement.Bind(m_number);
            break;
        case Kind::Text:
            statement.BindText(m_text);
            break;
        case Kind::Bytes:
            statement.BindBlob(m_bytes, sizeof m_bytes);
            break;
    }
}

std::string LinkKey::Sortable() const {
    if (m_kind == Kind::Text) return std::string(1, 't').append(m_text);
    if (m_kind == Kind::Bytes) return std::string(1, 'u').append(m_bytes, sizeof m_bytes);
    char bytes[9] = {'n'};
    ToBigEndian(m_number, bytes + 1);
    return std::string(bytes, sizeof bytes);
}

std::optional<KOVSimDynamicID> FindLink(store::Context& context, std::int64_t owner,
                                        std::int64_t member, LinkKey const& key) {
    Statement select(context.Cat(),
                     "SELECT target,target_type FROM links WHERE owner=? AND member=? AND key=?");
    key.BindTo(select.Bind(owner).Bind(member));
    if (!select.Step()) return std::nullopt;
    return store::FromReference(select.Int(0), context.ID(),
                                static_cast<KOVSimTypeID>(select.Int(1)));
}

void PutLink(store::Context& context, std::int64_t owner, std::int64_t member, LinkKey const& key,
             KOVSimDynamicID const& target) {
    auto& reverse = context.Part<ReverseLinks>();
    if (reverse.Tracks(member)) {
        if (auto const old = FindLink(context, owner, member, key)) {
            reverse.Remove(member, owner, key, store::ToReference(*old));
        }
    }
    std::int64_t const reference = store::ToReference(target);
    Statement insert(
        context.Cat(),
        "INSERT OR REPLACE INTO links(owner,member,key,target,target_type) VALUES(?,?,?,?,?)");
    key.BindTo(insert.Bind(owner).Bind(member));
    insert.Bind(reference).Bind(target.type).Run();
    if (reverse.Tracks(member)) reverse.Add(member, owner, key, reference);
}

void DropLink(store::Context& context, std::int64_t owner, std::int64_t member,
              LinkKey const& key) {
    auto& reverse = context.Part<ReverseLinks>();
    if (reverse.Tracks(member)) {
        if (auto const old = FindLink(context, owner, member, key)) {
            reverse.Remove(member, owner, key, store::ToReference(*old));
        }
    }
    Statement drop(context.Cat(), "DELETE FROM links WHERE owner=? AND member=? AND key=?");
    key.BindTo(drop.Bind(owner).Bind(member));
    drop.Run();
}

LinkScan::LinkScan(store::Context& context, std::int64_t owner, std::int64_t member,
                   Container container)
    : m_context(context),
      m_rows(context.Cat(), Pick(container, SelectVector, SelectMap, SelectSet)) {
    m_rows.Bind(owner).Bind(member);
}

bool LinkScan::Next() { return m_rows.Step(); }

KOVSimDynamicID LinkScan::Target() const {
    return store::FromReference(m_rows.Int(1), m_context.ID(),
                                static_cast<KOVSimTypeID>(m_rows.Int(2)));
}

int CountLinks(store::Context& context, std::int64_t owner, std::int64_t member,
               Container container) {
    Statement count(context.Cat(), Pick(container, CountVector, CountMap, CountSet));
    count.Bind(owner).Bind(member).Step();
    return static_cast<int>(count.Int(0));
}

std::int64_t LastPlace(store::Context& context, std::int64_t owner, std::int64_t member) {
    Statement last(context.Cat(),
                   "SELECT key FROM links WHERE owner=? AND member=? AND key>=1 AND key<'' ORDER "
                   "BY key DESC LIMIT 1");
    last.Bind(owner).Bind(member);
    return last.Step() ? last.Int(0) : 0;
}

std::int64_t PlaceAt(store::Context& context, std::int64_t owner, std::int64_t member, int index) {
    Statement at(context.Cat(),
                 "SELECT key FROM links WHERE owner=? AND member=? AND key>=1 AND key<'' ORDER BY "
                 "key LIMIT 1 OFFSET ?");
    at.Bind(owner).Bind(member).Bind(index);
    return at.Step() ? at.Int(0) : 0;
}

}  // namespace kov::records
