// KOVSimVector: a writable view of the ordered links under one member of an object. Two views of
// one member see the same content. An iterator walks the links as they stood at `Begin()`.
#pragma once

#include <memory>
#include <vector>

#include "KOVExport.h"
#include "KOVSimPosition.h"

class KOV_EXPORT KOVSimVectoriterator {
  public:
    KOVSimVectoriterator() = default;
    explicit KOVSimVectoriterator(std::shared_ptr<std::vector<KOVSimPosition> const> links)
        : m_links(std::move(links)) {}

    bool NotDone() const { return m_links != nullptr && m_at < m_links->size(); }
    KOVSimPosition operator*() const { return (*m_links)[m_at]; }
    KOVSimVectoriterator& operator++() {
        ++m_at;
        return *this;
    }

  private:
    std::shared_ptr<std::vector<KOVSimPosition> const> m_links;
    std::size_t m_at = 0;
};

class KOV_EXPORT KOVSimVector {
  public:
    KOVSimVector() = default;
    KOVSimVector(KOVSimPosition const& owner, int member) : m_owner(owner), m_member(member) {}

    KOVSimVectoriterator Begin() const;
    int Size() const;
    /// Appends a link; throws on a null `target`, and on the vector of a null position.
    void PushBack(KOVSimPosition const& target) const;
    /// Takes the link at `index` (from 0) away; those behind it move up. Throws outside 0 to
    /// `Size()` - 1.
    void Remove(int index) const;

  private:
    KOVSimPosition m_owner;
    int m_member = -1;
};
