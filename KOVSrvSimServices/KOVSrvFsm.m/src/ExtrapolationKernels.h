// The loops of the extrapolation, on plain arrays: a small matrix applied to many small blocks.
//
// A block has few components, so that a loop over them leaves most lanes of a vector idle. Here the
// lanes run over all outputs of a block alike: the output at (point, component) = p needs the
// coefficient of p's point and the source value of p's component, and the components of successive
// lanes come round again and again. The coefficients are therefore spread over the lanes once for a
// call; of each source point, the components are written down once more behind themselves, so that
// whatever component a vector of lanes begins with, the ones that it wants lie side by side. Four
// blocks are worked at a time, to load each coefficient once for all of them.
//
// Every output is summed from 0 in ascending order of the source points, with a rounding after each
// product and each sum: the values are those of the plain loop, bit by bit. This needs a compiler
// that does not fuse the two (see CMakeLists.txt).
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>

#include "mem.h"

namespace kov::fsm {

/// The sizes of one call.
struct ExtrapolationShape {
    std::size_t sourcePoints, targetPoints, components, blocks;
};

/// Vectors of the width that every machine of the architecture has. Wider ones gain little: there
/// are few components, and ever more of the vectors have to be put together.
template <class Value>
struct ExtrapolationLanes {
    typedef Value Vector __attribute__((vector_size(16)));
    static constexpr std::size_t kCount = 16 / sizeof(Value);

    static Vector Load(Value const* from) {
        Vector lanes;
        std::memcpy(&lanes, from, sizeof lanes);
        return lanes;
    }
    static void Store(Value* to, Vector const& lanes) { std::memcpy(to, &lanes, sizeof lanes); }
};

template <std::size_t... kPlace>
struct ExtrapolationPlaces {};

/// The outputs of one point side by side in the lanes: for many components.
template <class Value>
class ExtrapolateAlongComponents {
  public:
    ExtrapolateAlongComponents(ExtrapolationShape const& shape, float const* coefficients)
        : m_shape(shape), m_coefficients(coefficients) {}

    void Run(Value const* source, Value* target) const {
        for (std::size_t b = 0; b < m_shape.blocks; ++b) {
            for (std::size_t o = 0; o < m_shape.targetPoints; ++o) {
                float const* const row = m_coefficients + o * m_shape.sourcePoints;
                std::size_t c = Vectors(row, 0, source, target, ExtrapolationPlaces<0, 1, 2, 3>());
                c = Vectors(row, c, source, target, ExtrapolationPlaces<0>());
                for (; c < m_shape.components; ++c) target[c] = Sum(row, source + c);
                target += m_shape.components;
            }
            source += m_shape.sourcePoints * m_shape.components;
        }
    }

  private:
    using L = ExtrapolationLanes<Value>;

    Value Sum(float const* row, Value const* source) const {
        Value sum = 0;
        for (std::size_t i = 0; i < m_shape.sourcePoints; ++i) {
            Value const product = static_cast<Value>(row[i]) * source[i * m_shape.components];
            sum += product;
        }
        return sum;
    }

    /// One output point from component `c` on, as long as so many vectors fit; answers where it
    /// stopped.
    template <std::size_t... kPlace>
    std::size_t Vectors(float const* row, std::size_t c, Value const* source, Value* target,
                        ExtrapolationPlaces<kPlace...>) const {
        constexpr std::size_t kStep = sizeof...(kPlace) * L::kCount;
        for (; c + kStep <= m_shape.components; c += kStep) {
            typename L::Vector sums[sizeof...(kPlace)] = {};
            for (std::size_t i = 0; i < m_shape.sourcePoints; ++i) {
                Value const coefficient = static_cast<Value>(row[i]);
                Value const* const from = source + i * m_shape.components + c;
                ((sums[kPlace] += coefficient * L::Load(from + kPlace * L::kCount)), ...);
            }
            (L::Store(target + c + kPlace * L::kCount, sums[kPlace]), ...);
        }
        return c;
    }

    ExtrapolationShape m_shape;
    float const* m_coefficients;
};

/// All outputs of a block side by side in the lanes: for few components.
template <class Value>
class ExtrapolateAlongOutputs {
  public:
    ExtrapolateAlongOutputs(ExtrapolationShape const& shape, float const* coefficients)
        : m_shape(shape),
          m_sourceValues(shape.sourcePoints * shape.components),
          m_outputs(shape.targetPoints * shape.components),
          m_vectors((m_outputs + L::kCount - 1) / L::kCount),
          m_repeats(shape.components % L::kCount != 0),
          m_row(m_repeats ? shape.components + 2 * L::kCount : shape.components),
          m_spread(NewTable(m_vectors * shape.sourcePoints * L::kCount)),
          m_repeated(NewTable(m_repeats ? kTile * shape.sourcePoints * m_row : 1)) {
        if (IsReady()) Spread(coefficients);
    }

    /// False if there was no memory for the tables: Run may not be called then.
    bool IsReady() const { return m_spread.get() && m_repeated.get(); }

    void Run(Value const* source, Value* target) {
        // Repeating a row reads a vector of lanes, which may reach into the rows that follow; the
        // last rows of all have too few behind them.
        std::size_t const behind = m_shape.components < L::kCount ? L::kCount : 0;
        std::size_t b = 0;
        for (; (b + kTile) * m_sourceValues + behind <= m_shape.blocks * m_sourceValues;
             b += kTile) {
            RunTile(source, target, ExtrapolationPlaces<0, 1, 2, 3>(), true);
            source += kTile * m_sourceValues;
            target += kTile * m_outputs;
        }
        for (; b < m_shape.blocks; ++b) {
            RunTile(source, target, ExtrapolationPlaces<0>(), false);
            source += m_sourceValues;
            target += m_outputs;
        }
    }

  private:
    using L = ExtrapolationLanes<Value>;
    static constexpr std::size_t kTile = 4;

    struct FreeTable {
        void operator()(Value* table) const noexcept { mem_Free(table); }
    };
    using Table = std::unique_ptr<Value[], FreeTable>;
    static Table NewTable(std::size_t count) {
        return Table(static_cast<Value*>(mem_Malloc(count * sizeof(Value))));
    }

    /// Vector v, source point i: the coefficient that each lane of the output wants.
    void Spread(float const* coefficients) {
        Value* to = m_spread.get();
        for (std::size_t v = 0; v < m_vectors; ++v) {
            for (std::size_t i = 0; i < m_shape.sourcePoints; ++i) {
                for (std::size_t lane = 0; lane < L::kCount; ++lane) {
                    std::size_t const point = (v * L::kCount + lane) / m_shape.components;
                    bool const used = point < m_shape.targetPoints;
                    *to++ = used
                                ? static_cast<Value>(coefficients[point * m_shape.sourcePoints + i])
                                : Value{0};
                }
            }
        }
    }

    /// Each of `rows` source points with its first components behind the last one: as many as a
    /// vector of lanes can want there. `quick`: a vector may be read at each of the rows.
    void Repeat(Value const* source, std::size_t rows, bool quick) {
        std::size_t const components = m_shape.components;
        std::size_t const wanted = components + L::kCount - 1;
        Value* to = m_repeated.get();
        for (; rows > 0; --rows) {
            if (components > L::kCount) {
                std::size_t c = 0;
                for (; c + L::kCount < components; c += L::kCount) {
                    L::Store(to + c, L::Load(source + c));
                }
                L::Store(to + components - L::kCount, L::Load(source + components - L::kCount));
                L::Store(to + components, L::Load(source));
            } else if (components == 1) {
                L::Store(to, typename L::Vector{} + source[0]);
            } else if (quick) {
                // What a store writes beyond the components is written over by the next one.
                typename L::Vector const lanes = L::Load(source);
                for (std::size_t c = 0; c < wanted; c += components) L::Store(to + c, lanes);
            } else {
                for (std::size_t c = 0; c < wanted; ++c) to[c] = source[c % components];
            }
            to += m_row;
            source += components;
        }
    }

    template <std::size_t... kPlace>
    void RunTile(Value const* source, Value* target, ExtrapolationPlaces<kPlace...>, bool quick) {
        std::size_t const points = m_shape.sourcePoints;
        std::size_t const components = m_shape.components;
        if (m_repeats) {
            Repeat(source, sizeof...(kPlace) * points, quick);
            source = m_repeated.get();
        }
        std::size_t const apart = points * m_row;
        Value const* coefficient = m_spread.get();
        std::size_t first = 0;
        for (std::size_t at = 0; at < m_outputs; at += L::kCount) {
            Value const* from = source + first;
            typename L::Vector sums[sizeof...(kPlace)] = {};
            for (std::size_t i = 0; i < points; ++i) {
                typename L::Vector const spread = L::Load(coefficient);
                ((sums[kPlace] += spread * L::Load(from + kPlace * apart)), ...);
                coefficient += L::kCount;
                from += m_row;
            }
            if (at + L::kCount <= m_outputs) {
                (L::Store(target + kPlace * m_outputs + at, sums[kPlace]), ...);
            } else {
                std::size_t const bytes = (m_outputs - at) * sizeof(Value);
                (std::memcpy(target + kPlace * m_outputs + at, &sums[kPlace], bytes), ...);
            }
            first += L::kCount;
            while (first >= components) first -= components;
        }
    }

    ExtrapolationShape m_shape;
    std::size_t m_sourceValues, m_outputs;  ///< of a block
    std::size_t m_vectors;                  ///< that hold the outputs of a block
    bool m_repeats;                         ///< whether vectors run over the last component
    std::size_t m_row;                      ///< from one source point to the next
    Table m_spread, m_repeated;
};

}  // namespace kov::fsm
