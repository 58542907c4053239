// ShellLayers: hands the layers of all shell sections of a deck to the services, which write them
// in one go.
#pragma once

#include "KOVObjDocument.h"
#include "LayerShares.h"
#include "SectionTable.h"

namespace kov::tool {

/// Writes the layers of the shell sections into `document`, in a transaction of its own: none may
/// be open. The sections are in the document. The layers are taken out of the table on the way, so
/// that the memory never holds both. Throws a DeckError at a section whose layers end beyond the
/// range of numbers.
void WriteShellLayers(KOVObjDocument const& document, SectionTable& table,
                      LayerShares const& shares);

}  // namespace kov::tool
