// An ordered map with one key a node, over keys that have an operation Compare.
//
// Of the same shape as KOVSimBtree but for removal beside a missing child, where the depth of the
// parent is kept fresh. A look-up goes through the root: Root()->Find(key).
#pragma once

#include <utility>

#include "omi_BtreeNode.h"

template <class K, class V>
class omi_Btree : public mem_AllocationOperators {
  public:
    using Node = omi_BtreeNode<K, V>;

    omi_Btree() : m_nullValue(GetNullValue()) {}
    omi_Btree(omi_Btree const& other)
        : m_root(other.m_root ? new Node(*other.m_root) : nullptr),
          m_count(other.m_count),
          m_nullValue(other.m_nullValue) {}
    omi_Btree& operator=(omi_Btree const& other) {
        if (this != &other) {
            Node* const copy = other.m_root ? new Node(*other.m_root) : nullptr;
            delete m_root;
            m_root = copy;
            m_count = other.m_count;
            m_nullValue = other.m_nullValue;
        }
        return *this;
    }
    ~omi_Btree() { delete m_root; }

    /// Adds the pair and answers true; a key that is there keeps its value, and the answer is
    /// false.
    bool Insert(K const& key, V const& value) {
        if (!m_root) {
            m_root = new Node(key, value);
        } else {
            if (!m_root->Insert(key, value)) return false;
            KOVBtreeShape<Node>::BalanceAt(m_root);
        }
        ++m_count;
        return true;
    }

    /// Answers whether the key was there.
    bool Remove(K const& key) {
        if (!m_root) return false;
        // The caller's key may be the one in the node that goes.
        K const sought(key);
        // The root hangs on a node of its own for the time, so that it is removed like any other.
        Node above{K(), m_nullValue};
        above.m_left = m_root;
        bool const removed = m_root->Remove(sought, &above);
        m_root = std::exchange(above.m_left, nullptr);
        if (!removed) return false;
        --m_count;
        if (m_root) KOVBtreeShape<Node>::BalanceAt(m_root);
        return true;
    }

    /// The value that means none: a default-built one, for identities the null identity.
    static V GetNullValue() { return V(); }

    /// A new tree on the heap, which the caller deletes.
    omi_Btree* Copy() const { return new omi_Btree(*this); }

    int NumberOfKeys() const { return m_count; }
    /// Null when the tree is empty.
    Node const* Root() const { return m_root; }
    Node* Root() { return m_root; }

  private:
    Node* m_root = nullptr;
    int m_count = 0;
    V m_nullValue;
};
