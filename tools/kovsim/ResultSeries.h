// ResultSeries: what grows by one number with each frame of a step: its times, its frequencies, or
// the eigenvalues of its modes. Each is a collection with a member for each number, a distribution
// over it with the numbers, and the set of the members, which the step names.
#pragma once

#include "KOVSimPosition.h"

namespace kov::tool {

/// Each appends one number to those of `step`, and makes what is missing; in a transaction. They
/// throw DocumentFault where the step's are laid out in another way.
void AppendTime(KOVSimPosition const& step, double time);
void AppendFrequency(KOVSimPosition const& step, double frequency);
/// A mode of the step's modal system.
void AppendMode(KOVSimPosition const& step, double eigenvalue);

}  // namespace kov::tool
