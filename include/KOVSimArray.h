// A growable array whose policy says how its elements are made, copied and destroyed.
//
// Copies are deep. The elements stand side by side from Ptr() on, in memory of the mem_ family; a
// growing array moves them. Element accesses by index are checked; loops over bulk data go through
// Ptr(). Sizes are ints at this boundary, byte counts inside are 64-bit.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "KOVSimException.h"
#include "mem.h"

/// Plain numbers: copied as bytes, new elements are zero.
template <class T>
struct KOVSimArrayBuiltinPolicy {
    static_assert(std::is_trivially_copyable<T>::value, "plain numbers only");
    static void Build(T* to, std::size_t count) {
        if (count) std::memset(static_cast<void*>(to), 0, count * sizeof(T));
    }
    static void Copy(T* to, T const* from, std::size_t count) {
        if (count) std::memcpy(static_cast<void*>(to), from, count * sizeof(T));
    }
    static void Move(T* to, T* from, std::size_t count) { Copy(to, from, count); }
    static void Destroy(T*, std::size_t) {}
};

/// Small value classes, copied by their copy constructor.
template <class T>
struct KOVSimArrayCopyClassPolicy {
    static void Build(T* to, std::size_t count) { std::uninitialized_value_construct_n(to, count); }
    static void Copy(T* to, T const* from, std::size_t count) {
        std::uninitialized_copy_n(from, count, to);
    }
    /// Leaves [from, from + count) without elements.
    static void Move(T* to, T* from, std::size_t count) {
        if constexpr (std::is_nothrow_move_constructible<T>::value) {
            std::uninitialized_move_n(from, count, to);
        } else {
            Copy(to, from, count);
        }
        std::destroy_n(from, count);
    }
    static void Destroy(T* from, std::size_t count) { std::destroy_n(from, count); }
};

/// Classes that own something: text, sets, descriptions.
template <class T>
struct KOVSimArrayClassPolicy : KOVSimArrayCopyClassPolicy<T> {};

template <class T, class Policy>
class KOVSimArray {
  public:
    KOVSimArray() = default;
    /// `size` new elements. The second argument has no meaning and is 0 by custom.
    explicit KOVSimArray(int size, int = 0) { SetSize(size); }

    KOVSimArray(KOVSimArray const& other) {
        Block block(other.m_size);
        Policy::Copy(block.data, other.m_data, static_cast<std::size_t>(other.m_size));
        Take(block, other.m_size);
    }
    KOVSimArray(KOVSimArray&& other) noexcept { Swap(other); }
    KOVSimArray& operator=(KOVSimArray const& other) {
        if (this != &other) {
            KOVSimArray copy(other);
            Swap(copy);
        }
        return *this;
    }
    KOVSimArray& operator=(KOVSimArray&& other) noexcept {
        Swap(other);
        return *this;
    }
    ~KOVSimArray() {
        Policy::Destroy(m_data, static_cast<std::size_t>(m_size));
        mem_Free(m_data);
    }

    int Size() const { return m_size; }

    /// Element `index`, in [0, Size()); throws KOVSimException outside.
    T& Get(int index) {
        CheckIndex(index);
        return m_data[index];
    }
    T const& ConstGet(int index) const {
        CheckIndex(index);
        return m_data[index];
    }

    /// Keeps the elements below `size`, destroys those above, adds new ones at the end. Growing one
    /// by one costs amortised constant time. Throws KOVSimException on a negative size.
    void SetSize(int size) {
        if (size < 0) KOVSimException::ThrowText("KOVSimArray::SetSize: the size is negative");
        if (size > m_capacity) Grow(size);
        if (size > m_size) {
            Policy::Build(m_data + m_size, static_cast<std::size_t>(size - m_size));
        } else {
            Policy::Destroy(m_data + size, static_cast<std::size_t>(m_size - size));
        }
        m_size = size;
    }

    /// The elements, side by side; null may be given when there are none. Valid until the size
    /// changes.
    T* Ptr() { return m_data; }
    T const* Ptr() const { return m_data; }

    T* begin() { return m_data; }
    T* end() { return m_data + m_size; }
    T const* begin() const { return m_data; }
    T const* end() const { return m_data + m_size; }

    void Swap(KOVSimArray& other) noexcept {
        std::swap(m_data, other.m_data);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
    }

  private:
    /// Raw memory that is freed unless it is taken.
    struct Block {
        explicit Block(int capacity)
            : data(capacity ? static_cast<T*>(mem_OperatorNewThrow(
                                  static_cast<std::size_t>(capacity) * sizeof(T)))
                            : nullptr) {}
        Block(Block const&) = delete;
        Block& operator=(Block const&) = delete;
        ~Block() { mem_Free(data); }
        T* data;
    };

    void Take(Block& block, int size) {
        std::swap(m_data, block.data);
        m_size = size;
        m_capacity = size;
    }

    void Grow(int size) {
        int capacity = m_capacity > 0x7fffffff / 2 ? 0x7fffffff : m_capacity * 2;
        if (capacity < size) capacity = size;
        Block block(capacity);
        Policy::Move(block.data, m_data, static_cast<std::size_t>(m_size));
        std::swap(m_data, block.data);
        m_capacity = capacity;
    }

    void CheckIndex(int index) const {
        if (static_cast<unsigned>(index) >= static_cast<unsigned>(m_size)) {
            KOVSimException::ThrowIndex("KOVSimArray", index, m_size);
        }
    }

    T* m_data = nullptr;
    int m_size = 0;
    int m_capacity = 0;
};
