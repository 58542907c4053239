// Faces: what the faces and edges of elements are called, and which of them an element type has.
//
// The order of the names is the order of the members of a document's face and edge collections; do
// not change it.
#pragma once

#include <string>
#include <string_view>

#include "ElementTypes.h"

namespace kov::tool {

/// Number of a face: 0 to 5 `S1` to `S6`, 6 `SPOS`, 7 `SNEG`, then from kFirstEdge on `E1` to `E4`.
inline constexpr int kFirstEdge = 8;
inline constexpr int kFaceNames = 12;

/// The name of a face or edge, in capitals.
char const* FaceName(int face) noexcept;
/// The face or edge of that name, in any case; -1 if there is none.
int FindFace(std::string_view name) noexcept;

/// Solids have S1 and so on by their shape, plane and axisymmetric elements likewise their edges;
/// shells, membranes and rigid faces have SPOS and SNEG, and so have axisymmetric shells and rigid
/// lines; shells have E1 and so on beside.
bool HasFace(ElementType const& type, int face) noexcept;

/// "S1, S2 or S3" for a message; "no faces" if the type has none.
std::string FacesOf(ElementType const& type);

}  // namespace kov::tool
