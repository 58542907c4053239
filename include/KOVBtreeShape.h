// What the two families of binary search trees have in common: depths, rotations, removal, paths.
//
// A node keeps `m_maxDepth`: 0 for a leaf, else 1 more than the larger one of its children. Trees
// are kept roughly balanced by single rotations only, and the exact shape follows from the rules
// here; the two families rely on them. For the tree classes, not for callers.
#pragma once

#include "KOVSimException.h"
#include "mem.h"

template <class Node>
struct KOVBtreeShape {
    /// An absent child does not count.
    static void Refresh(Node& node) {
        int depth = 0;
        if (node.m_left) depth = node.m_left->m_maxDepth + 1;
        if (node.m_right && node.m_right->m_maxDepth >= depth) depth = node.m_right->m_maxDepth + 1;
        node.m_maxDepth = depth;
    }

    /// Rotates once if the children differ by 2 or more, and gives the new root of the subtree;
    /// null if there was nothing to do. Here an absent child weighs as much as a leaf.
    static Node* Balance(Node& node) {
        int const left = node.m_left ? node.m_left->m_maxDepth : 0;
        int const right = node.m_right ? node.m_right->m_maxDepth : 0;
        Node* top = nullptr;
        if (right - left >= 2) {
            top = node.m_right;
            node.m_right = top->m_left;
            top->m_left = &node;
        } else if (right - left <= -2) {
            top = node.m_left;
            node.m_left = top->m_right;
            top->m_right = &node;
        } else {
            return nullptr;
        }
        Refresh(node);
        Refresh(*top);
        return top;
    }

    /// Balances the subtree that `link` holds.
    static void BalanceAt(Node*& link) {
        if (Node* const top = Balance(*link)) link = top;
    }

    /// Takes `node` out of its subtree, leaves it without children, and gives what stands in its
    /// place: its only child, or its successor. Nodes between the right child and the successor's
    /// parent keep their depth as it was.
    static Node* TakeOut(Node& node) {
        Node* replacement = nullptr;
        if (!node.m_right) {
            replacement = node.m_left;
        } else if (!node.m_left) {
            replacement = node.m_right;
        } else {
            Node* parent = nullptr;
            replacement = node.m_right;
            while (replacement->m_left) {
                parent = replacement;
                replacement = replacement->m_left;
            }
            if (parent) {
                parent->m_left = replacement->m_right;
                replacement->m_right = node.m_right;
                Refresh(*parent);
            }
            replacement->m_left = node.m_left;
            Refresh(*replacement);
        }
        node.m_left = nullptr;
        node.m_right = nullptr;
        return replacement;
    }
};

/// The path from the root of a tree to the current node, which is on top of a stack. An empty stack
/// means that there is no current node.
template <class Node>
class KOVBtreePath {
  public:
    KOVBtreePath() = default;
    KOVBtreePath(KOVBtreePath const&) = delete;
    KOVBtreePath& operator=(KOVBtreePath const&) = delete;
    ~KOVBtreePath() { ClearStack(); }

    bool IsEmpty() const { return m_top == nullptr; }
    /// The current node; throws KOVSimException if there is none.
    Node const& Current() const {
        if (!m_top) KOVSimException::ThrowText("Btree iterator: there is no current node");
        return *m_top->node;
    }

    void Push(Node const* node) { m_top = new Step(node, m_top); }
    /// The node that was on top, or null.
    Node const* Pop() {
        if (!m_top) return nullptr;
        Step* const step = m_top;
        Node const* const node = step->node;
        m_top = step->next;
        delete step;
        return node;
    }
    void ClearStack() {
        while (Pop()) {
        }
    }

    void First(Node const* root) {
        ClearStack();
        for (; root; root = root->Left()) Push(root);
    }
    void Last(Node const* root) {
        ClearStack();
        for (; root; root = root->Right()) Push(root);
    }
    void Next() {
        if (!m_top) return;
        if (Node const* down = m_top->node->Right()) {
            for (; down; down = down->Left()) Push(down);
            return;
        }
        Node const* done = Pop();
        while (m_top && m_top->node->Right() == done) done = Pop();
    }
    void Previous() {
        if (!m_top) return;
        if (Node const* down = m_top->node->Left()) {
            for (; down; down = down->Right()) Push(down);
            return;
        }
        Node const* done = Pop();
        while (m_top && m_top->node->Left() == done) done = Pop();
    }

  private:
    struct Step : mem_AllocationOperators {
        Node const* node;
        Step* next;
        Step(Node const* at, Step* below) : node(at), next(below) {}
    };
    Step* m_top = nullptr;
};
