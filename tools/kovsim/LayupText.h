// LayupText: a layup as a table for people.
//
//     section SKIN: composite shell of 2 layers
//       elements     120, in 1 assignment
//       offset       0.5 of the thickness, towards the top
//       integration  Simpson's rule
//       thickness    0.3
//       from         -0.3 (bottom) to 0 (top), from the reference surface
//       layer  ply   material  orientation  points  thickness  angle  from .. to
//           1  P-1   CFRP      -                 3        0.1     45  -0.3 .. -0.2
//           2  P-2   CFRP      -                 3        0.2    -45  -0.2 .. 0
//       layer 1 is the bottom one
#pragma once

#include <string>

#include "Layup.h"
#include "MeshLabels.h"
#include "TextOut.h"

namespace kov::tool {

std::string LayupText(Layup const& layup);

/// The numbers of each element of `layup.elements`, a line for each; nothing where none varies.
void PrintLayupValues(TextOut& out, Layup const& layup, MeshLabels const& labels);

}  // namespace kov::tool
