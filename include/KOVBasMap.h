// A sorted map with unique keys over a balanced tree. Iteration goes by ascending key.
//
// The order is KOVBasStandardComparitor<K>::Compare. A class that wants an order of its own
// specialises that template in the header that declares the class.
#pragma once

#include <cstddef>
#include <iterator>
#include <set>
#include <utility>

#include "KOVBasPair.h"
#include "mem.h"

/// The order of keys: Compare is negative, 0 or positive as a stands before, with or behind b. The
/// general form asks operator<.
template <class K>
struct KOVBasStandardComparitor {
    static int Compare(K const& a, K const& b) { return a < b ? -1 : b < a ? 1 : 0; }
};

/// Lets standard containers allocate through the mem_ family.
template <class T>
struct KOVBasStandardAllocator {
    using value_type = T;
    KOVBasStandardAllocator() = default;
    template <class U>
    KOVBasStandardAllocator(KOVBasStandardAllocator<U> const&) noexcept {}
    T* allocate(std::size_t count) {
        return static_cast<T*>(mem_OperatorNewThrow(count * sizeof(T)));
    }
    void deallocate(T* place, std::size_t) noexcept { mem_Free(place); }
    template <class U>
    bool operator==(KOVBasStandardAllocator<U> const&) const noexcept {
        return true;
    }
    template <class U>
    bool operator!=(KOVBasStandardAllocator<U> const&) const noexcept {
        return false;
    }
};

template <class K, class V>
class KOVBasMap {
  public:
    using Pair = KOVBasPair<K, V>;

  private:
    struct Before {
        using is_transparent = void;
        bool operator()(Pair const& a, Pair const& b) const {
            return KOVBasStandardComparitor<K>::Compare(a.first, b.first) < 0;
        }
        bool operator()(Pair const& a, K const& b) const {
            return KOVBasStandardComparitor<K>::Compare(a.first, b) < 0;
        }
        bool operator()(K const& a, Pair const& b) const {
            return KOVBasStandardComparitor<K>::Compare(a, b.first) < 0;
        }
    };
    using Tree = std::set<Pair, Before, KOVBasStandardAllocator<Pair>>;

    // The tree holds whole pairs and shows them as constant to protect its order. The pairs
    // themselves are not constant objects, and the order depends on the key alone: the value may be
    // written.
    template <class P>
    class Cursor {
      public:
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = Pair;
        using difference_type = std::ptrdiff_t;
        using pointer = P*;
        using reference = P&;

        Cursor() = default;
        explicit Cursor(typename Tree::const_iterator at) : m_at(at) {}
        template <class Q>
        Cursor(Cursor<Q> const& other) : m_at(other.At()) {}

        P& operator*() const { return const_cast<P&>(*m_at); }
        P* operator->() const { return const_cast<P*>(&*m_at); }
        Cursor& operator++() {
            ++m_at;
            return *this;
        }
        Cursor operator++(int) { return Cursor(m_at++); }
        Cursor& operator--() {
            --m_at;
            return *this;
        }
        Cursor operator--(int) { return Cursor(m_at--); }
        friend bool operator==(Cursor const& a, Cursor const& b) { return a.m_at == b.m_at; }
        friend bool operator!=(Cursor const& a, Cursor const& b) { return a.m_at != b.m_at; }

        typename Tree::const_iterator At() const { return m_at; }

      private:
        typename Tree::const_iterator m_at;
    };

  public:
    /// Through an iterator the `second` of a pair may be written, the `first` may not.
    using iterator = Cursor<Pair>;
    using const_iterator = Cursor<Pair const>;

    /// Adds the pair and answers true; a key that exists keeps its value, and the answer is false.
    bool InsertUnique(K const& key, V const& value) {
        auto const at = m_tree.lower_bound(key);
        if (at != m_tree.end() && KOVBasStandardComparitor<K>::Compare(key, at->first) == 0) {
            return false;
        }
        m_tree.emplace_hint(at, key, value);
        return true;
    }

    /// The value under `key`, or null. Valid until the pair goes.
    V* Find(K const& key) {
        auto const at = m_tree.find(key);
        return at == m_tree.end() ? nullptr : const_cast<V*>(&at->second);
    }
    V const* Find(K const& key) const {
        auto const at = m_tree.find(key);
        return at == m_tree.end() ? nullptr : &at->second;
    }

    void Clear() { m_tree.clear(); }
    int Size() const { return static_cast<int>(m_tree.size()); }

    iterator begin() { return iterator(m_tree.begin()); }
    iterator end() { return iterator(m_tree.end()); }
    const_iterator begin() const { return const_iterator(m_tree.begin()); }
    const_iterator end() const { return const_iterator(m_tree.end()); }

  private:
    Tree m_tree;
};
