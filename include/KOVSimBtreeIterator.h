// Walks a KOVSimBtree in the order of its keys.
//
// A new iterator stands nowhere: First or Last comes before all else. It does not outlive a change
// of its tree.
#pragma once

#include "KOVSimBtree.h"

template <class K, class V>
class KOVSimBtreeIterator {
  public:
    using Node = KOVSimBtreeNode<K, V>;

    explicit KOVSimBtreeIterator(KOVSimBtree<K, V> const& tree) : m_tree(&tree) {}

    void First() { m_path.First(m_tree->Root()); }
    void Last() { m_path.Last(m_tree->Root()); }
    void Next() { m_path.Next(); }
    void Previous() { m_path.Previous(); }

    /// Whether there is no current key.
    bool IsDone() const { return m_path.IsEmpty(); }
    /// The current key and value; they throw KOVSimException when there is none.
    K const& CurrentKey() const { return m_path.Current().Key(); }
    V const& CurrentValue() const { return m_path.Current().Value(); }

    /// The stack of nodes from the root to the current one.
    void Push(Node const* node) { m_path.Push(node); }
    Node const* Pop() { return m_path.Pop(); }
    void ClearStack() { m_path.ClearStack(); }

  private:
    KOVSimBtree<K, V> const* m_tree;
    KOVBtreePath<Node> m_path;
};
