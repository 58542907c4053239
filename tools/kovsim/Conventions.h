// Conventions: what kovsim writes where the schema leaves the place open, for all subcommands that
// read it back.
#pragma once

namespace kov::tool {

/// String field of the model's record that holds the heading of the deck. Field 0 is the model's
/// name.
constexpr int kHeadingField = 1;

}  // namespace kov::tool
