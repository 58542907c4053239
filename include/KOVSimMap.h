// KOVSimMap: a writable view of the links under one member of an object, each under a text key.
// Keys compare byte for byte, and iteration is in that order. Two views of one member see the same
// content.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "KOVExport.h"
#include "KOVSimPosition.h"

class KOV_EXPORT KOVSimMapiterator {
  public:
    using Entries = std::vector<std::pair<KOVString, KOVSimPosition>>;
    KOVSimMapiterator() = default;
    explicit KOVSimMapiterator(std::shared_ptr<Entries const> entries)
        : m_entries(std::move(entries)) {}

    bool NotDone() const { return m_entries != nullptr && m_at < m_entries->size(); }
    KOVString Key() const { return (*m_entries)[m_at].first; }
    KOVSimPosition Value() const { return (*m_entries)[m_at].second; }
    KOVSimMapiterator& operator++() {
        ++m_at;
        return *this;
    }

  private:
    std::shared_ptr<Entries const> m_entries;
    std::size_t m_at = 0;
};

class KOV_EXPORT KOVSimMap {
  public:
    KOVSimMap() = default;
    KOVSimMap(KOVSimPosition const& owner, int member) : m_owner(owner), m_member(member) {}

    KOVSimMapiterator Begin() const;
    int Size() const;
    /// The position under exactly this key; null if there is none.
    KOVSimPosition Find(KOVString const& key) const;
    /// Puts `target` under `key`, replacing what was there. Throws on a null `target`, and on the
    /// map of a null position.
    void Insert(KOVString const& key, KOVSimPosition const& target) const;
    /// Takes the entry away; nothing happens if there is none.
    void Remove(KOVString const& key) const;

  private:
    KOVSimPosition m_owner;
    int m_member = -1;
};
