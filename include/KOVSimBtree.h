// An ordered map with one key a node, over any key type that KOVSimBtreeCompare orders.
//
// Roughly balanced: its exact shape follows from the rules of KOVBtreeShape. Copies are deep and
// keep the shape. Pointers to values stay valid until their key is removed.
#pragma once

#include <utility>

#include "KOVSimBtreeNode.h"

template <class K, class V>
class KOVSimBtree {
  public:
    using Node = KOVSimBtreeNode<K, V>;

    KOVSimBtree() = default;
    KOVSimBtree(KOVSimBtree const& other)
        : m_root(other.m_root ? new Node(*other.m_root) : nullptr), m_count(other.m_count) {}
    KOVSimBtree& operator=(KOVSimBtree const& other) {
        if (this != &other) {
            KOVSimBtree copy(other);
            Swap(copy);
        }
        return *this;
    }
    ~KOVSimBtree() { delete m_root; }

    /// Adds the pair and answers true. For a key that is there already the answer is false, and its
    /// value is replaced if `overwrite` says so.
    bool Insert(K const& key, V const& value, bool overwrite) {
        if (!m_root) {
            m_root = new Node(key, value);
        } else {
            if (!m_root->Insert(key, value, overwrite)) return false;
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
        if (!m_root->Remove(sought, m_root)) return false;
        --m_count;
        if (m_root) KOVBtreeShape<Node>::BalanceAt(m_root);
        return true;
    }

    bool IsMember(K const& key) const { return Find(key) != nullptr; }

    /// The value under `key`, or null.
    V const* Find(K const& key) const {
        Node const* const node = m_root ? m_root->Find(key) : nullptr;
        return node ? &node->Value() : nullptr;
    }
    V* Find(K const& key) { return const_cast<V*>(std::as_const(*this).Find(key)); }

    /// The value under `key`, which has to be there; throws KOVSimException if it is not.
    V const& Get(K const& key) const {
        V const* const value = Find(key);
        if (!value) KOVSimException::ThrowText("KOVSimBtree::Get: the key is not in the tree");
        return *value;
    }
    V& Get(K const& key) { return const_cast<V&>(std::as_const(*this).Get(key)); }

    void Clear() {
        delete m_root;
        m_root = nullptr;
        m_count = 0;
    }

    void Swap(KOVSimBtree& other) noexcept {
        std::swap(m_root, other.m_root);
        std::swap(m_count, other.m_count);
    }

    int NumberOfKeys() const { return m_count; }
    /// Null when the tree is empty.
    Node const* Root() const { return m_root; }

  private:
    Node* m_root = nullptr;
    int m_count = 0;
};
