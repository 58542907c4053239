// zdm.h: the one function that turns a schema pair into a schema index.
//
// A type or a member of the schema is a pair of small numbers: a fragment, and a number inside it.
// Every operation that takes a type index or a member index takes what this function makes of a
// pair. Write pairs by their names, from KOVSimSchema.h; the function itself serves those names and
// tables of pairs that are held as data.
#pragma once

#include "KOVExport.h"

/// The schema index of a pair: the same in every process, and unique to the pair. It depends on its
/// arguments only, so that it may be called from static initialisers, before anything is brought
/// up. Indices are positive and at least 4096; they are stored in documents, and never change their
/// meaning.
///
/// `fragment` and `member`: 0 to 4095 each. Anything outside names no pair and answers -1.
KOV_EXPORT int zdm_CoreFragmentTypeIndex(int fragment, int member) noexcept;
