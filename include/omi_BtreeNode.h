// A node of an omi_Btree: one key, one value, two subtrees that it owns.
//
// A key type has `int Compare(K const&) const`, positive if it stands behind the other key.
#pragma once

#include "KOVBtreeShape.h"
#include "mem.h"

template <class K, class V>
class omi_Btree;

template <class K, class V>
class omi_BtreeNode : public mem_AllocationOperators {
  public:
    omi_BtreeNode(K const& key, V const& value) : m_value(value), m_key(key) {}
    /// Copies the whole subtree, depths included.
    omi_BtreeNode(omi_BtreeNode const& other) : m_value(other.m_value), m_key(other.m_key) {
        Subtrees copies;
        if (other.m_left) copies.left = new omi_BtreeNode(*other.m_left);
        if (other.m_right) copies.right = new omi_BtreeNode(*other.m_right);
        m_left = copies.left;
        m_right = copies.right;
        m_maxDepth = other.m_maxDepth;
        copies = Subtrees();
    }
    omi_BtreeNode& operator=(omi_BtreeNode const&) = delete;
    ~omi_BtreeNode() {
        delete m_left;
        delete m_right;
    }

    K const& Key() const { return m_key; }
    V const& Value() const { return m_value; }
    V& Value() { return m_value; }
    omi_BtreeNode const* Left() const { return m_left; }
    omi_BtreeNode const* Right() const { return m_right; }
    int MaxDepth() const { return m_maxDepth; }

    /// The node of `key` in this subtree, or null.
    omi_BtreeNode const* Find(K const& key) const {
        omi_BtreeNode const* node = this;
        while (node) {
            int const order = key.Compare(node->m_key);
            if (order == 0) return node;
            node = order > 0 ? node->m_right : node->m_left;
        }
        return nullptr;
    }
    omi_BtreeNode* Find(K const& key) {
        return const_cast<omi_BtreeNode*>(static_cast<omi_BtreeNode const*>(this)->Find(key));
    }

    /// Adds the pair to this subtree and answers true; a key that is there keeps its value, and the
    /// answer is false.
    bool Insert(K const& key, V const& value) {
        int const order = key.Compare(m_key);
        if (order == 0) return false;
        omi_BtreeNode*& child = order > 0 ? m_right : m_left;
        if (!child) {
            child = new omi_BtreeNode(key, value);
        } else {
            if (!child->Insert(key, value)) return false;
            Shape::BalanceAt(child);
        }
        Shape::Refresh(*this);
        return true;
    }

    /// Takes `key` out of this subtree, which hangs on `parent`, and answers whether it was there.
    /// `key` must not be the key of the node itself.
    bool Remove(K const& key, omi_BtreeNode* parent) {
        int const order = key.Compare(m_key);
        if (order == 0) {
            parent->RemoveNode(this, Shape::TakeOut(*this));
            return true;
        }
        omi_BtreeNode*& child = order > 0 ? m_right : m_left;
        if (!child) return false;
        bool const removed = child->Remove(key, this);
        if (child && removed) {
            Shape::BalanceAt(child);
            Shape::Refresh(*this);
        }
        return removed;
    }

    /// Puts `replacement` in the link that holds the child `node`, and destroys that child.
    void RemoveNode(omi_BtreeNode* node, omi_BtreeNode* replacement) {
        (m_right == node ? m_right : m_left) = replacement;
        delete node;
        Shape::Refresh(*this);
    }

  private:
    using Shape = KOVBtreeShape<omi_BtreeNode>;
    friend Shape;
    friend class omi_Btree<K, V>;

    /// Frees what has been copied so far if a copy throws.
    struct Subtrees {
        omi_BtreeNode* left = nullptr;
        omi_BtreeNode* right = nullptr;
        ~Subtrees() {
            delete left;
            delete right;
        }
    };

    V m_value;
    K m_key;
    omi_BtreeNode* m_left = nullptr;
    omi_BtreeNode* m_right = nullptr;
    int m_maxDepth = 0;
};
