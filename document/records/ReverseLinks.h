// ReverseLinks: who links to an object through a member. The catalogue keeps links by owner only,
// so that a link costs one tree insert; the way back is an index in memory, one for each member
// that was asked about, built by a single scan at the first question, kept up to date by this
// process's own writing, and dropped when a transaction is undone or the reader moves to another
// commit.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>

#include "document/store/Context.h"

namespace kov::records {

class LinkKey;

class ReverseLinks : public store::ContextPart {
  public:
    /// One link seen from its target. Orders by target, then owner, then key: the referrers of an
    /// object are neighbours.
    struct Entry {
        std::int64_t target;
        std::int64_t owner;
        std::string key;  // LinkKey::Sortable

        friend bool operator<(Entry const& a, Entry const& b) {
            if (a.target != b.target) return a.target < b.target;
            if (a.owner != b.owner) return a.owner < b.owner;
            return a.key < b.key;
        }
        bool HasTextKey() const { return !key.empty() && key[0] == 't'; }
    };
    using Index = std::set<Entry>;

    explicit ReverseLinks(store::Context& context) : m_context(context) {}

    bool Tracks(std::int64_t member) const {
        return !m_indices.empty() && m_indices.count(member) != 0;
    }
    void Add(std::int64_t member, std::int64_t owner, LinkKey const& key, std::int64_t target);
    void Remove(std::int64_t member, std::int64_t owner, LinkKey const& key, std::int64_t target);

    /// Calls `visit(Entry const&)` for each link to `target` through `member`, until it answers
    /// false.
    template <class Visit>
    void ForEach(std::int64_t member, std::int64_t target, Visit&& visit) {
        Index const& index = IndexOf(member);
        for (auto at = index.lower_bound({target, INT64_MIN, {}});
             at != index.end() && at->target == target; ++at) {
            if (!visit(*at)) return;
        }
    }

    void AfterRollback() override { m_indices.clear(); }
    void AfterRefresh() override { m_indices.clear(); }

  private:
    Index& IndexOf(std::int64_t member);

    store::Context& m_context;
    std::unordered_map<std::int64_t, Index> m_indices;
};

}  // namespace kov::records
