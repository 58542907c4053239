// Skeleton: what a new document holds before anyone writes to it. For the document facade.
#pragma once

namespace kov::store {
class Context;
}

namespace kov::facades {

/// The focus, and nothing else. In a transaction.
void MakeFocus(store::Context& context);
/// The focus with a model, a mesh without nodes and elements, and the shared collections:
/// docs/documents.md lists them. In a transaction.
void MakeSkeleton(store::Context& context);

}  // namespace kov::facades
