// A table from unsigned keys to plain values: ascending stretches of keys as runs, all others
// hashed.
//
// What is kept under line numbers and labels mostly ascends without gaps. Such a stretch is one run
// with an array of values, or with a single value where all are equal, so that a table over
// millions of lines stays small and is filled by appending. Keys that fit no run go to a hash table
// with open addressing. Keys are never taken out. Values may be read by several threads, and
// written by one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

template <class V, class Allocator>
class omi_UintTable {
    static_assert(std::is_trivially_copyable<V>::value, "values are kept as bytes");

  public:
    omi_UintTable() = default;
    omi_UintTable(omi_UintTable const&) = delete;
    omi_UintTable& operator=(omi_UintTable const&) = delete;
    ~omi_UintTable() = default;

    /// Adds the pair and answers true. A key that exists keeps its value, and the answer is false.
    bool Insert(unsigned key, V const& value) {
        bool const behind = m_runs.size == 0 || key > m_runs.Last().last;
        if (!behind && FindInRuns(key)) return false;
        if (m_hashed && FindInSlots(key)) return false;
        if (!behind || !(Extend(key, value) || Open(key, value))) Hash(key, value);
        return true;
    }

    /// The value under `key`, or null. Valid until the next Insert.
    V const* Find(unsigned key) const {
        V const* const value = FindInRuns(key);
        return value || !m_hashed ? value : FindInSlots(key);
    }

    std::int64_t Size() const { return m_inRuns + static_cast<std::int64_t>(m_hashed); }

  private:
    /// Keys [first, last]; their values begin at `values`, and are one value if `same` says so.
    struct Run {
        unsigned first;
        unsigned last;
        std::size_t values;
        bool same;
    };
    struct Slot {
        unsigned key;
        V value;
    };

    template <class T>
    struct Store {
        Store() = default;
        Store(Store const&) = delete;
        Store& operator=(Store const&) = delete;
        ~Store() { Allocator::Free(data); }
        void Push(T const& value) {
            if (size == capacity) {
                T const kept = value;
                std::size_t const more = capacity ? capacity * 2 : 4;
                T* const moved = static_cast<T*>(Allocator::Allocate(more * sizeof(T)));
                if (size) std::memcpy(static_cast<void*>(moved), data, size * sizeof(T));
                Allocator::Free(data);
                data = moved;
                capacity = more;
                data[size++] = kept;
            } else {
                data[size++] = value;
            }
        }
        T& Last() { return data[size - 1]; }
        T* data = nullptr;
        std::size_t size = 0;
        std::size_t capacity = 0;
    };

    // Marks a slot without a key; as a key it is the largest of all, and so always fits a run.
    static constexpr unsigned kFree = 0xFFFFFFFFU;
    // A run of one value pays from this length on.
    static constexpr unsigned kLongSame = 64;

    static bool Equal(V const& a, V const& b) {
        if constexpr (std::is_arithmetic<V>::value) {
            return !(a < b) && !(b < a);
        } else {
            return false;
        }
    }

    /// Makes `key` the next key of the last run, if it is that.
    bool Extend(unsigned key, V const& value) {
        if (m_runs.size == 0 || m_runs.Last().last + 1 != key) return false;
        Run& run = m_runs.Last();
        bool const repeats = Equal(m_values.Last(), value);
        m_repeats = repeats ? m_repeats + 1 : 1;
        if (run.same && !repeats) {
            unsigned const length = run.last - run.first + 1;
            if (length >= kLongSame) return false;
            V const first = m_values.Last();
            for (unsigned i = 1; i < length; ++i) m_values.Push(first);
            run.same = false;
        }
        if (!run.same) {
            if (m_repeats >= kLongSame) return false;
            m_values.Push(value);
        }
        run.last = key;
        ++m_inRuns;
        return true;
    }

    /// Begins a run at `key`, which lies behind all others. Runs are found by halving, so that
    /// there are many only if they are long.
    bool Open(unsigned key, V const& value) {
        if (m_runs.size >= 64 && m_inRuns / 8 < static_cast<std::int64_t>(m_runs.size) &&
            key != kFree) {
            return false;
        }
        m_values.Push(value);
        m_runs.Push(Run{key, key, m_values.size - 1, true});
        m_repeats = 1;
        ++m_inRuns;
        return true;
    }

    V const* FindInRuns(unsigned key) const {
        std::size_t low = 0;
        std::size_t high = m_runs.size;
        while (low < high) {
            std::size_t const middle = (low + high) / 2;
            Run const& run = m_runs.data[middle];
            if (key < run.first) {
                high = middle;
            } else if (key > run.last) {
                low = middle + 1;
            } else {
                return m_values.data + run.values + (run.same ? 0U : key - run.first);
            }
        }
        return nullptr;
    }

    std::size_t Home(unsigned key) const {
        return static_cast<std::size_t>((key * std::uint64_t{0x9E3779B97F4A7C15U}) >> m_shift);
    }

    V const* FindInSlots(unsigned key) const {
        std::size_t const mask = m_slots.size - 1;
        for (std::size_t at = Home(key);; at = (at + 1) & mask) {
            if (m_slots.data[at].key == key)
                return key == kFree ? nullptr : &m_slots.data[at].value;
            if (m_slots.data[at].key == kFree) return nullptr;
        }
    }

    void Put(unsigned key, V const& value) {
        std::size_t const mask = m_slots.size - 1;
        std::size_t at = Home(key);
        while (m_slots.data[at].key != kFree) at = (at + 1) & mask;
        m_slots.data[at] = Slot{key, value};
    }

    void Hash(unsigned key, V const& value) {
        if (m_hashed + 1 > m_slots.size / 8 * 5) {
            Store<Slot> old;
            Swap(old, m_slots);
            std::size_t const capacity = old.size ? old.size * 2 : 64;
            m_slots.data = static_cast<Slot*>(Allocator::Allocate(capacity * sizeof(Slot)));
            m_slots.size = capacity;
            m_slots.capacity = capacity;
            m_shift = 64;
            for (std::size_t i = capacity; i > 1; i /= 2) --m_shift;
            for (std::size_t i = 0; i < capacity; ++i) m_slots.data[i] = Slot{kFree, V()};
            for (std::size_t i = 0; i < old.size; ++i) {
                if (old.data[i].key != kFree) Put(old.data[i].key, old.data[i].value);
            }
        }
        Put(key, value);
        ++m_hashed;
    }

    template <class T>
    static void Swap(Store<T>& a, Store<T>& b) {
        T* const data = a.data;
        std::size_t const size = a.size;
        std::size_t const capacity = a.capacity;
        a.data = b.data;
        a.size = b.size;
        a.capacity = b.capacity;
        b.data = data;
        b.size = size;
        b.capacity = capacity;
    }

    Store<Run> m_runs;
    Store<V> m_values;
    Store<Slot> m_slots;
    std::int64_t m_inRuns = 0;
    std::size_t m_hashed = 0;
    unsigned m_shift = 64;
    unsigned m_repeats = 0;
};
