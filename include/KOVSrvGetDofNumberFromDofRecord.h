// Degrees of freedom and components by the small numbers under which the rest of the world knows
// them, and back to their records.
//
//     number    degree of freedom    position    component    position
//     1         DISPLACEMENT_1       2           C_1          0
//     2         DISPLACEMENT_2       3           C_2          12
//     3         DISPLACEMENT_3       4           C_3          20
//     4         ROTATION_ANGLE_1     9
//     5         ROTATION_ANGLE_2     10
//     6         ROTATION_ANGLE_3     11
//
// Records are members of the document's collections of degree-of-freedom and component symbols.
// None of these functions needs a transaction.
#pragma once

#include "KOVExport.h"
#include "KOVObjDocument.h"
#include "KOVSimPosition.h"

/// The number of the degree of freedom; -1 for any other, and for what is no symbol.
KOV_EXPORT int KOVSrvGetDofNumberFromDofRecord(KOVSimPosition const& record);

/// The number of the component. Anything other than C_2 and C_3 counts as 1.
KOV_EXPORT int KOVSrvGetComponentNumberFromComponentRecord(KOVSimPosition const& record);

/// The record of degree of freedom `number`. Any other number asks for the symbol with the empty
/// name; KOVSimException is thrown where the document's collection does not have the symbol.
KOV_EXPORT KOVSimPosition KOVSrvGetDofRecordFromDofNumber(KOVObjDocument const& document,
                                                          int number);

/// The record of component `number`, a null position for any other number. Throws KOVSimException
/// where the document's collection lacks the symbol.
KOV_EXPORT KOVSimPosition KOVSrvGetComponentRecordFromDofNumber(KOVObjDocument const& document,
                                                                int number);

/// A new temporary set on the document's component collection, whose one member is the number of
/// the component (and not its index). Throws KOVSimException for a record other than C_1, C_2 and
/// C_3, which has no number.
KOV_EXPORT KOVSimPosition KOVSrvGetComponentCSetFromComponentRecord(KOVObjDocument const& document,
                                                                    KOVSimPosition const& record);
