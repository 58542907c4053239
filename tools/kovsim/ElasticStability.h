// ElasticStability: whether the numbers of an elastic behaviour give a material that stores energy
// however it is strained. Decks hold such numbers all the same, measured ones above all, so these
// are findings and no errors.
#pragma once

#include <string>

namespace kov::tool {

// Each takes the numbers of one row in the order of the behaviour's columns, and answers what is
// wrong with them; an empty text if nothing is.

/// E1, E2, nu12, G12, G13, G23.
std::string LaminaFinding(double const* values);
/// E1, E2, E3, nu12, nu13, nu23, G12, G13, G23.
std::string EngineeringFinding(double const* values);
/// The 9 numbers of an orthotropic stiffness.
std::string OrthotropicFinding(double const* values);
/// The 21 numbers of an anisotropic stiffness.
std::string AnisotropicFinding(double const* values);

}  // namespace kov::tool
