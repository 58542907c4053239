// The same trees, written once more by their rules with plain indices: what the shapes of the two
// families are compared with.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

/// How the two families differ: whether removing a child that leaves nothing behind refreshes the
/// depth of its parent.
enum class BtreeFamily { KeepsDepthAtEmptiedLink, RefreshesDepthAtEmptiedLink };

class BtreeModel {
  public:
    explicit BtreeModel(BtreeFamily family) : m_family(family) {}

    bool Insert(int key) {
        bool done = false;
        m_root = Insert(m_root, key, done);
        if (done) m_root = Balanced(m_root);
        return done;
    }

    bool Remove(int key) {
        bool done = false;
        m_root = Remove(m_root, key, done);
        if (done && m_root >= 0) m_root = Balanced(m_root);
        return done;
    }

    /// "(left key:depth right)" with "." for no child.
    std::string Shape() const { return Shape(m_root); }

  private:
    struct Node {
        int key;
        int left = -1;
        int right = -1;
        int depth = 0;
    };

    int Depth(int at, int absent) const { return at < 0 ? absent : m_nodes[Index(at)].depth; }
    static std::size_t Index(int at) { return static_cast<std::size_t>(at); }
    Node& At(int at) { return m_nodes[Index(at)]; }

    void Refresh(int at) {
        At(at).depth = 1 + std::max(Depth(At(at).left, -1), Depth(At(at).right, -1));
    }

    int Balanced(int at) {
        int const lean = Depth(At(at).right, 0) - Depth(At(at).left, 0);
        if (lean < 2 && lean > -2) return at;
        int Node::*const heavy = lean > 0 ? &Node::right : &Node::left;
        int Node::*const light = lean > 0 ? &Node::left : &Node::right;
        int const top = At(at).*heavy;
        At(at).*heavy = At(top).*light;
        At(top).*light = at;
        Refresh(at);
        Refresh(top);
        return top;
    }

    int Insert(int at, int key, bool& done) {
        if (at < 0) {
            m_nodes.push_back(Node{key});
            done = true;
            return static_cast<int>(m_nodes.size()) - 1;
        }
        if (At(at).key == key) return at;
        int Node::*const side = key > At(at).key ? &Node::right : &Node::left;
        bool const isNew = At(at).*side < 0;
        int const child = Insert(At(at).*side, key, done);
        At(at).*side = child;
        if (!done) return at;
        if (!isNew) {
            int const balanced = Balanced(child);
            At(at).*side = balanced;
        }
        Refresh(at);
        return at;
    }

    int Remove(int at, int key, bool& done) {
        if (at < 0) return at;
        if (At(at).key == key) {
            done = true;
            return Replacement(at);
        }
        int Node::*const side = key > At(at).key ? &Node::right : &Node::left;
        int const before = At(at).*side;
        bool const isChild = before >= 0 && At(before).key == key;
        int const child = Remove(before, key, done);
        At(at).*side = child;
        if (!done) return at;
        if (isChild && m_family == BtreeFamily::RefreshesDepthAtEmptiedLink) Refresh(at);
        if (child < 0) return at;
        int const balanced = Balanced(child);
        At(at).*side = balanced;
        Refresh(at);
        return at;
    }

    int Replacement(int at) {
        Node const gone = At(at);
        if (gone.right < 0) return gone.left;
        if (gone.left < 0) return gone.right;
        int parent = -1;
        int successor = gone.right;
        while (At(successor).left >= 0) {
            parent = successor;
            successor = At(successor).left;
        }
        if (parent >= 0) {
            At(parent).left = At(successor).right;
            At(successor).right = gone.right;
            Refresh(parent);
        }
        At(successor).left = gone.left;
        Refresh(successor);
        return successor;
    }

    std::string Shape(int at) const {
        if (at < 0) return ".";
        Node const& node = m_nodes[Index(at)];
        return "(" + Shape(node.left) + " " + std::to_string(node.key) + ":" +
               std::to_string(node.depth) + " " + Shape(node.right) + ")";
    }

    BtreeFamily m_family;
    std::vector<Node> m_nodes;
    int m_root = -1;
};
