// KOVSimSet: a view of unordered links, either those under one member of an object (writable) or
// the referrers of an object (read only). Two views of one member see the same content. An iterator
// walks the links as they stood at `Begin()`.
#pragma once

#include <memory>
#include <vector>

#include "KOVExport.h"
#include "KOVSimPosition.h"

class KOV_EXPORT KOVSimSetiterator {
  public:
    KOVSimSetiterator() = default;
    explicit KOVSimSetiterator(std::shared_ptr<std::vector<KOVSimPosition> const> links)
        : m_links(std::move(links)) {}

    bool Done() const { return !NotDone(); }
    bool NotDone() const { return m_links != nullptr && m_at < m_links->size(); }
    KOVSimPosition operator*() const { return (*m_links)[m_at]; }
    KOVSimSetiterator& operator++() {
        ++m_at;
        return *this;
    }

  private:
    std::shared_ptr<std::vector<KOVSimPosition> const> m_links;
    std::size_t m_at = 0;
};

class KOV_EXPORT KOVSimSet {
  public:
    KOVSimSet() = default;
    /// The links under `member` of `owner`.
    KOVSimSet(KOVSimPosition const& owner, int member) : m_owner(owner), m_member(member) {}
    /// The objects that link to `target` through `member`, one entry for each link.
    static KOVSimSet Referrers(KOVSimPosition const& target, int member);

    KOVSimSetiterator Begin() const;
    bool Empty() const { return Size() == 0; }
    int Size() const;
    /// Adds a link; one that is there already stays single. Throws on a null `target`, on the set
    /// of a null position and on a set of referrers.
    void Insert(KOVSimPosition const& target) const;
    /// Takes the link to `target` away; nothing happens if there is none.
    void Remove(KOVSimPosition const& target) const;

  private:
    KOVSimPosition m_owner;
    int m_member = -1;
    bool m_referrers = false;
};
