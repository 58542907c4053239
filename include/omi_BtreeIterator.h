// Walks an omi_Btree in the order of its keys.
//
// A new iterator stands nowhere: First or Last comes before all else. It does not outlive a change
// of its tree.
#pragma once

#include "omi_Btree.h"

template <class K, class V>
class omi_BtreeIterator {
  public:
    explicit omi_BtreeIterator(omi_Btree<K, V> const& tree) : m_tree(&tree) {}

    void First() { m_path.First(m_tree->Root()); }
    void Last() { m_path.Last(m_tree->Root()); }
    void Next() { m_path.Next(); }
    void Previous() { m_path.Previous(); }

    /// Whether there is no current key.
    bool IsDone() const { return m_path.IsEmpty(); }
    /// The current key and value; they throw KOVSimException when there is none.
    K const& CurrentKey() const { return m_path.Current().Key(); }
    V const& CurrentValue() const { return m_path.Current().Value(); }

  private:
    omi_Btree<K, V> const* m_tree;
    KOVBtreePath<omi_BtreeNode<K, V>> m_path;
};
