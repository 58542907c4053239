// ScopeWriter: puts what the scopes of a deck hold into a document, behind its mesh: sets,
// surfaces, orientations, labels and the records of the instances.
#pragma once

#include "ModelWriter.h"
#include "Scope.h"

namespace kov::tool {

/// Writes all scopes, in the transaction of `model`. Their sets and labels are taken out of them on
/// the way, so that the memory never holds both.
void WriteScopes(ModelWriter& model, Scopes& scopes);

}  // namespace kov::tool
