// The loops of the extrapolation, on plain arrays: a small matrix applied to many small blocks.
//
// The lanes of a vector run over the components of a point. Four target points are summed at a
// time, so that each vector of the source is loaded once for all of them. Where there are fewer
// components than lanes, the lanes that are left over take part all the same: they read into the
// next point, and what they write there is written over when its turn comes; the last blocks of
// all, behind which nothing may be read or written, are left to the plain loop. A single component
// leaves too many lanes over: there they run over the target points, four blocks at a time.
//
// One million elements with 6 components at 8 points, to 8 nodes, took 17 ms of a core in single
// and 27 ms in double precision with the vectors that are picked on a machine with AVX-512, and 36
// and 52 ms with vectors of 16 bytes; a plain copy of the same bytes took 11 and 20 ms.
//
// Every output is summed from 0 in ascending order of the source points, with a rounding after each
// product and each sum: the values are those of the plain loop, bit by bit. This needs a compiler
// that does not fuse the two (see CMakeLists.txt).
//
// This header is compiled for several machines. Everything in it is private to the source that
// includes it, and nothing of the standard library's templates is used: what two sources share, the
// linker takes from either.
#pragma once

#include <cstddef>
#include <cstring>

#include "Extrapolation.h"
#include "mem.h"

namespace kov::fsm {
namespace {  // NOLINT(google-build-namespaces): see above

template <std::size_t... kPlace>
struct Places {};
using One = Places<0>;
using Four = Places<0, 1, 2, 3>;

template <class Value, std::size_t kBytes>
class Extrapolation {
  public:
    Extrapolation(ExtrapolationShape const& shape, float const* coefficients)
        : m_points(shape.sourcePoints),
          m_nodes(shape.targetPoints),
          m_components(shape.components),
          m_blocks(shape.blocks),
          m_stride(m_components == 1 ? m_nodes + kLanes : m_nodes),
          m_columns(static_cast<Value*>(mem_Malloc(m_points * m_stride * sizeof(Value)))) {
        if (!m_columns) return;
        for (std::size_t i = 0; i < m_points; ++i) {
            for (std::size_t o = 0; o < m_stride; ++o) {
                m_columns[i * m_stride + o] =
                    o < m_nodes ? static_cast<Value>(coefficients[o * m_points + i]) : Value{0};
            }
        }
    }
    ~Extrapolation() { mem_Free(m_columns); }
    Extrapolation(Extrapolation const&) = delete;
    Extrapolation& operator=(Extrapolation const&) = delete;

    /// Answers how many blocks are done.
    std::size_t Run(Value const* source, Value* target) const {
        if (!m_columns) return 0;
        return m_components == 1 ? RunScalars(source, target) : RunVectors(source, target);
    }

  private:
    static constexpr std::size_t kLanes = kBytes / sizeof(Value);
    typedef Value Vector __attribute__((vector_size(kBytes)));

    /// How many blocks must lie behind one, for its lanes that are left over to stay inside the
    /// arrays.
    std::size_t Behind() const {
        std::size_t const read = m_points * m_components, written = m_nodes * m_components;
        // Lanes along the target points read what is theirs alone.
        bool const alongNodes = m_components == 1;
        std::size_t const used = alongNodes ? m_nodes : m_components;
        std::size_t const least = alongNodes || written < read ? written : read;
        std::size_t blocks = 0;
        for (std::size_t reach = used; reach < kLanes; reach += least) ++blocks;
        return blocks;
    }

    std::size_t RunVectors(Value const* source, Value* target) const {
        std::size_t const behind = Behind();
        std::size_t b = 0;
        for (; b + behind < m_blocks; ++b) {
            std::size_t o = 0;
            for (; o + 4 <= m_nodes; o += 4) SumNodes(o, source, target + o * m_components, Four());
            for (; o < m_nodes; ++o) SumNodes(o, source, target + o * m_components, One());
            source += m_points * m_components;
            target += m_nodes * m_components;
        }
        return b;
    }

    /// The target points from `first` on of one block.
    template <std::size_t... kPlace>
    void SumNodes(std::size_t first, Value const* source, Value* target, Places<kPlace...>) const {
        std::size_t c = 0;
        while (true) {
            Vector sums[sizeof...(kPlace)] = {};
            Value const* from = source + c;
            Value const* column = m_columns + first;
            for (std::size_t i = 0; i < m_points; ++i) {
                Vector values;
                std::memcpy(&values, from, sizeof values);
                ((sums[kPlace] += column[kPlace] * values), ...);
                from += m_components;
                column += m_stride;
            }
            (std::memcpy(target + kPlace * m_components + c, &sums[kPlace], sizeof(Vector)), ...);
            if (!Advance(c, m_components)) return;
        }
    }

    std::size_t RunScalars(Value const* source, Value* target) const {
        std::size_t const behind = Behind();
        std::size_t b = 0;
        for (; b + 3 + behind < m_blocks; b += 4) {
            SumBlocks(source + b * m_points, target + b * m_nodes, Four());
        }
        for (; b + behind < m_blocks; ++b) {
            SumBlocks(source + b * m_points, target + b * m_nodes, One());
        }
        return b;
    }

    /// Some blocks of one component.
    template <std::size_t... kPlace>
    void SumBlocks(Value const* source, Value* target, Places<kPlace...>) const {
        std::size_t o = 0;
        while (true) {
            Vector sums[sizeof...(kPlace)] = {};
            Value const* column = m_columns + o;
            for (std::size_t i = 0; i < m_points; ++i) {
                Vector coefficients;
                std::memcpy(&coefficients, column, sizeof coefficients);
                ((sums[kPlace] += coefficients * source[kPlace * m_points + i]), ...);
                column += m_stride;
            }
            (std::memcpy(target + kPlace * m_nodes + o, &sums[kPlace], sizeof(Vector)), ...);
            if (!Advance(o, m_nodes)) return;
        }
    }

    /// To the next vector of `count` values; the last one lies so that it ends with them. False
    /// behind it.
    static bool Advance(std::size_t& at, std::size_t count) {
        if (at + kLanes >= count) return false;
        at = at + 2 * kLanes <= count ? at + kLanes : count - kLanes;
        return true;
    }

    std::size_t m_points, m_nodes, m_components, m_blocks;
    std::size_t m_stride;  ///< from one source point to the next in m_columns
    Value* m_columns;      ///< the coefficients of each source point, side by side
};

}  // namespace
}  // namespace kov::fsm
