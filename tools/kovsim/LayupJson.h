// LayupJson: a layup as a JSON object.
#pragma once

#include "Json.h"
#include "Layup.h"
#include "MeshLabels.h"
#include "TextOut.h"

namespace kov::tool {

/// Writes the object. With `labels`, those of the elements, also the numbers of each element of
/// `layup.elements`; what is written is printed on the way.
void PrintLayup(TextOut& out, Json& json, Layup const& layup, MeshLabels const* labels);

}  // namespace kov::tool
