// KOVSimSchema.h: the schema by its names.
//
// schema::Task_modes() and its like give the index that position operations take for a type or a
// member. Each name asks zdm_CoreFragmentTypeIndex afresh, so that it may be used from static
// initialisers too. The names, their numbers and what they hold stand in KOVSimSchemaTable.inc, and
// as a page in docs/schema.md. No other code writes the numbers of a pair.
#pragma once

#include "zdm.h"

namespace schema {

#define KOV_SCHEMA_TYPE(fragment, member, name, base, text) \
    inline int name() noexcept { return zdm_CoreFragmentTypeIndex(fragment, member); }
#define KOV_SCHEMA_MEMBER(fragment, member, name, kind, text) \
    inline int name() noexcept { return zdm_CoreFragmentTypeIndex(fragment, member); }
#include "KOVSimSchemaTable.inc"  // IWYU pragma: export

/// Member numbers of the associations that belong to the schema, for Follow and Associate beside
/// the type index: from the focus with FocusRecord() to its surface output, and from there with
/// SurfaceOutputRecord() to the DSet of the regions.
constexpr int FocusRecord_surfaceOutput = 1;
constexpr int SurfaceOutputRecord_regions = 0;

}  // namespace schema
