// A value vector. Its elements stand side by side from Data() on, so that bulk operations may be
// handed the data as they are.
//
// Elements are copied and destroyed by functions chosen for their type: plain types as bytes, all
// others by their own constructors and destructor. operator[] is not checked.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>

#include "KOVSimException.h"
#include "mem.h"

/// Builds copies of [from, from + count) in the raw memory at `to`.
template <class T>
void KOVBasStandardCopy(T* to, T const* from, std::size_t count) {
    std::uninitialized_copy_n(from, count, to);
}

/// The same for plain types, as bytes.
template <class T>
void KOVBasPODCopy(T* to, T const* from, std::size_t count) {
    static_assert(std::is_trivially_copyable<T>::value, "plain types only");
    if (count) std::memcpy(static_cast<void*>(to), from, count * sizeof(T));
}

/// Destroys [first, first + count) and leaves raw memory.
template <class T>
void KOVBasStandardDestroy(T* first, std::size_t count) {
    std::destroy_n(first, count);
}

template <class T>
class KOVBasVector {
  public:
    KOVBasVector() = default;
    /// `size` new elements: zeros, null values or default-built objects.
    explicit KOVBasVector(int size) { Resize(size); }
    KOVBasVector(KOVBasVector const& other) {
        KOVBasVector copy;
        copy.Reserve(other.m_size);
        Copy(copy.m_data, other.m_data, other.m_size);
        copy.m_size = other.m_size;
        swap(copy);
    }
    KOVBasVector(KOVBasVector&& other) noexcept { swap(other); }
    KOVBasVector& operator=(KOVBasVector const& other) {
        if (this != &other) {
            KOVBasVector copy(other);
            swap(copy);
        }
        return *this;
    }
    KOVBasVector& operator=(KOVBasVector&& other) noexcept {
        swap(other);
        return *this;
    }
    ~KOVBasVector() {
        Resize(0);
        mem_Free(m_data);
    }

    int Size() const { return m_size; }

    /// Element `index`, in [0, Size()).
    T& operator[](int index) { return m_data[index]; }
    T const& operator[](int index) const { return m_data[index]; }

    /// The elements; null may be given when there are none. Valid until the vector grows.
    T* Data() { return m_data; }
    T const* Data() const { return m_data; }

    T* begin() { return m_data; }
    T* end() { return m_data + m_size; }
    T const* begin() const { return m_data; }
    T const* end() const { return m_data + m_size; }

    /// Adds a copy of `value`, which may be an element of this vector, at the end.
    void PushBack(T const& value) {
        if (m_size == m_capacity) {
            T copy(value);
            Grow(static_cast<long long>(m_size) + 1);
            ::new (static_cast<void*>(m_data + m_size)) T(std::move(copy));
        } else {
            ::new (static_cast<void*>(m_data + m_size)) T(value);
        }
        ++m_size;
    }

    /// Keeps the elements below `size`, destroys those above, adds new ones at the end. Throws
    /// KOVSimException on a negative size.
    void Resize(int size) {
        if (size < 0) KOVSimException::ThrowText("KOVBasVector::Resize: the size is negative");
        if (size > m_capacity) Grow(size);
        if (size > m_size) {
            std::uninitialized_value_construct_n(m_data + m_size, size - m_size);
        } else {
            Destroy(m_data + size, m_size - size);
        }
        m_size = size;
    }

    /// Room for `capacity` elements without a further move.
    void Reserve(int capacity) {
        if (capacity > m_capacity) Move(capacity);
    }

    void swap(KOVBasVector& other) noexcept {
        std::swap(m_data, other.m_data);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
    }

  private:
    static void Copy(T* to, T const* from, int count) {
        if constexpr (std::is_trivially_copyable<T>::value) {
            KOVBasPODCopy(to, from, static_cast<std::size_t>(count));
        } else {
            KOVBasStandardCopy(to, from, static_cast<std::size_t>(count));
        }
    }
    static void Destroy(T* first, int count) {
        if constexpr (!std::is_trivially_destructible<T>::value) {
            KOVBasStandardDestroy(first, static_cast<std::size_t>(count));
        }
    }

    void Grow(long long size) {
        long long const most = 0x7fffffff;
        if (size > most) KOVSimException::ThrowText("KOVBasVector: more than 2147483647 elements");
        long long capacity = 2LL * m_capacity;
        if (capacity < size) capacity = size;
        Move(static_cast<int>(capacity < most ? capacity : most));
    }

    void Move(int capacity) {
        KOVBasVector moved;
        moved.m_data =
            static_cast<T*>(mem_OperatorNewThrow(static_cast<std::size_t>(capacity) * sizeof(T)));
        moved.m_capacity = capacity;
        if constexpr (!std::is_trivially_copyable<T>::value &&
                      std::is_nothrow_move_constructible<T>::value) {
            std::uninitialized_move_n(m_data, m_size, moved.m_data);
        } else {
            Copy(moved.m_data, m_data, m_size);
        }
        moved.m_size = m_size;
        swap(moved);
    }

    T* m_data = nullptr;
    int m_size = 0;
    int m_capacity = 0;
};

template <class T>
void swap(KOVBasVector<T>& a, KOVBasVector<T>& b) noexcept {
    a.swap(b);
}
