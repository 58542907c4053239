// A node of a KOVSimBtree: one key, one value, two subtrees that it owns.
//
// Keys are ordered by KOVSimBtreeCompare, an overload of which stands beside each key type.
#pragma once

#include "KOVBtreeShape.h"
#include "KOVSimBtreeCompare.h"
#include "mem.h"

template <class K, class V>
class KOVSimBtree;

template <class K, class V>
class KOVSimBtreeNode : public mem_AllocationOperators {
  public:
    KOVSimBtreeNode(K const& key, V const& value) : m_value(value), m_key(key) {}
    /// Copies the whole subtree, depths included.
    KOVSimBtreeNode(KOVSimBtreeNode const& other) : m_value(other.m_value), m_key(other.m_key) {
        Subtrees copies;
        if (other.m_left) copies.left = new KOVSimBtreeNode(*other.m_left);
        if (other.m_right) copies.right = new KOVSimBtreeNode(*other.m_right);
        m_left = copies.left;
        m_right = copies.right;
        m_maxDepth = other.m_maxDepth;
        copies = Subtrees();
    }
    KOVSimBtreeNode& operator=(KOVSimBtreeNode const&) = delete;
    ~KOVSimBtreeNode() {
        delete m_left;
        delete m_right;
    }

    K const& Key() const { return m_key; }
    V const& Value() const { return m_value; }
    V& Value() { return m_value; }
    KOVSimBtreeNode const* Left() const { return m_left; }
    KOVSimBtreeNode const* Right() const { return m_right; }
    int MaxDepth() const { return m_maxDepth; }

    /// The node of `key` in this subtree, or null.
    KOVSimBtreeNode const* Find(K const& key) const {
        KOVSimBtreeNode const* node = this;
        while (node) {
            int const order = KOVSimBtreeCompare(node->m_key, key);
            if (order == 0) return node;
            node = order > 0 ? node->m_right : node->m_left;
        }
        return nullptr;
    }

    /// Adds the pair to this subtree and answers true. For a key that is there already the answer
    /// is false, and its value is replaced if `overwrite` says so.
    bool Insert(K const& key, V const& value, bool overwrite) {
        int const order = KOVSimBtreeCompare(m_key, key);
        if (order == 0) {
            if (overwrite) m_value = value;
            return false;
        }
        KOVSimBtreeNode*& child = order > 0 ? m_right : m_left;
        if (!child) {
            child = new KOVSimBtreeNode(key, value);
        } else {
            if (!child->Insert(key, value, overwrite)) return false;
            Shape::BalanceAt(child);
        }
        Shape::Refresh(*this);
        return true;
    }

    /// Takes `key` out of this subtree, which `link` holds, and answers whether it was there. `key`
    /// must not be the key of the node itself.
    bool Remove(K const& key, KOVSimBtreeNode*& link) {
        int const order = KOVSimBtreeCompare(m_key, key);
        if (order == 0) {
            link = Shape::TakeOut(*this);
            delete this;
            return true;
        }
        KOVSimBtreeNode*& child = order > 0 ? m_right : m_left;
        if (!child) return false;
        bool const removed = child->Remove(key, child);
        if (child && removed) {
            Shape::BalanceAt(child);
            Shape::Refresh(*this);
        }
        return removed;
    }

  private:
    using Shape = KOVBtreeShape<KOVSimBtreeNode>;
    friend Shape;
    friend class KOVSimBtree<K, V>;

    /// Frees what has been copied so far if a copy throws.
    struct Subtrees {
        KOVSimBtreeNode* left = nullptr;
        KOVSimBtreeNode* right = nullptr;
        ~Subtrees() {
            delete left;
            delete right;
        }
    };

    V m_value;
    K m_key;
    KOVSimBtreeNode* m_left = nullptr;
    KOVSimBtreeNode* m_right = nullptr;
    int m_maxDepth = 0;
};
