// SectionFields: the numbered fields of sections and layers in a document, and the names of their
// regions. Persisted; do not change them.
#pragma once

namespace kov::tool {

// Of a section.
inline constexpr int kSectionLayers = 0;       ///< integer; a homogeneous shell has one
inline constexpr int kSectionOffset = 1;       ///< real, shells: in thicknesses, along the normal
inline constexpr int kSectionIntegration = 2;  ///< integer, shells: 0 Simpson, 1 Gauss
inline constexpr int kSectionName = 3;         ///< string: profile of a beam, layup of a composite
inline constexpr int kSectionDimensions = 4;   ///< reals: of a beam; area or thickness
inline constexpr int kSectionDirection = 5;    ///< 3 reals, beams: the first axis
inline constexpr int kSectionPoints = 6;       ///< reals, beams: integration points, whole numbers
/// Integer, composites: 0 not given, 1 to 3, 4 by the orientation.
inline constexpr int kSectionStackDirection = 7;
inline constexpr int kSectionComposite = 9;  ///< symbol, shells: 0 homogeneous, 1 composite

// Of a layer of a solid section.
inline constexpr int kLayerThickness = 0;  ///< real: share of the whole, in any unit
inline constexpr int kLayerPoints = 1;     ///< integer: section points
inline constexpr int kLayerAngle = 2;      ///< real: degrees

/// The region of a section has this in front of the key of its element set.
inline constexpr char kSectionRegionPrefix[] = "INP2SIM_ELSET_";

}  // namespace kov::tool
