// LayupPicture: the stack of one section as an SVG picture.
//
// The bands of the stack are to scale (thin ones are kept visible, and marked), hatched in the
// direction of their plies and coloured by material; a line of text beside each says what it is.
// With them stand the z axis, the middle and the reference surface, the directions of the plies
// and a legend. Where thicknesses or angles vary between elements, the left edge shows the least
// and the right edge the greatest. The same layup always gives the same text.
#pragma once

#include <string>

#include "Layup.h"

namespace kov::tool {

/// An SVG document: well-formed XML without scripts and references to anything outside.
std::string LayupPicture(Layup const& layup);

}  // namespace kov::tool
