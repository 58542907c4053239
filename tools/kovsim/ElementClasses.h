// ElementClasses: the classification of a document's elements by shape, as every translated
// document has it.
#pragma once

#include "KOVObjDocument.h"

namespace kov::tool {

/// Groups the elements by shape, and gives each class the set of its elements. Commits transactions
/// of its own: none may be open. Gives the number of classes; 0, with nothing written, for a
/// document without elements.
int ClassifyElements(KOVObjDocument const& document);

/// Links each class to the sections of its elements, in the order of the model's assignments.
/// Commits a transaction of its own: none may be open. Nothing happens without a classification.
void LinkSectionsToClasses(KOVObjDocument const& document);

/// The number of element classes of a document.
int CountElementClasses(KOVObjDocument const& document);

}  // namespace kov::tool
