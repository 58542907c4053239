// ResultRecords: the records of results, the same for what writes and what reads them: the numbers
// of their fields, and what the value of a frame is.
#pragma once

#include <cstddef>

#include "KOVSimPosition.h"
#include "KOVSimSchema.h"

namespace kov::tool {

// Persisted; do not change the numbers.
inline constexpr int kFrameIncrement = 0;  ///< int
inline constexpr int kFrameValue = 1;      ///< double: time within the step, frequency, load factor
inline constexpr int kFrameTotalTime = 2;  ///< double: from the start of the analysis
inline constexpr int kFrameText = 3;       ///< string: the solver's remark

inline constexpr int kFieldGridType = 0;           ///< type: of the grid of a meshed field
inline constexpr int kFieldTypeAlgebraicType = 0;  ///< symbol: a zdm_AlgebraicTypeEnm
inline constexpr int kSerialFieldPoint = 0;        ///< int: of the integration point, from 1; or 0

/// What the value of a frame is, by the type of its step.
enum class FrameValue { Time, Frequency, LoadFactor };

/// "time", "frequency" or "load factor".
inline char const* FrameValueName(FrameValue value) {
    constexpr char const* kNames[] = {"time", "frequency", "load factor"};
    return kNames[static_cast<std::size_t>(value)];
}

/// "times", "frequencies" or "load factors".
inline char const* FrameValuesName(FrameValue value) {
    constexpr char const* kNames[] = {"times", "frequencies", "load factors"};
    return kNames[static_cast<std::size_t>(value)];
}

/// Of the frames of a step.
inline FrameValue FrameValueOf(KOVSimPosition const& step) {
    for (int const type : {schema::Step_Lin_Frequency(), schema::Step_Lin_ComplexFrequency(),
                           schema::Step_Lin_SteadyState(), schema::Step_Lin_RandomResponse()}) {
        if (step.IsA(type)) return FrameValue::Frequency;
    }
    return step.IsA(schema::Step_Lin_Buckle()) ? FrameValue::LoadFactor : FrameValue::Time;
}

}  // namespace kov::tool
