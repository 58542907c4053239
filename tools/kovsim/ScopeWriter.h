// ScopeWriter: puts what the scopes of a deck hold into a document, behind its mesh: sets,
// surfaces, orientations, the records of the instances, and labels.
#pragma once

#include "ModelWriter.h"
#include "Scope.h"

namespace kov::tool {

/// Writes all scopes but their labels, in the transaction of `model`. Their sets are taken out of
/// them on the way, so that the memory never holds both.
void WriteScopes(ModelWriter& model, Scopes& scopes);

/// Writes the labels, likewise: nothing can be told by its label behind that.
void WriteLabels(ModelWriter& model, Scopes& scopes);

}  // namespace kov::tool
