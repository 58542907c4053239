// Scoped names: from the name that a user wrote to the object of a model.
//
// A user writes `Wing-1.Skin`, `"Left wing".Skin` or plain `Skin`; a model keeps its sets, surfaces
// and orientations in maps under flattened keys, whose scopes are joined by `_`. These functions
// try the forms of key one after the other, each by one look-up in the map, byte for byte and
// without folding of case. With N the name, M the model's name (the text in field 0 of its record)
// and I the instance, both names without their quotes:
//
//     with an instance      I_N, or M_I_N where the model has a name; no other
//     without               N
//                           N with each scope separator replaced by `_`, as in all further forms
//     and where the model   M_N
//     has a name            K, where N is M_K
//                           INP2SIM_ELSET_K, then INP2SIM_NSET_K, in Model_regions only: surfaces
//                           that a translator made from a set of elements or nodes
//                           all of it once more, with each piece between `_` freed of its quotes
//
// Quotes are taken away in pairs and at the beginning only: `"My Part".Set` becomes `My Part.Set`.
// A quote that is never closed stays. Nothing is written; no transaction is needed.
#pragma once

#include "KOVExport.h"
#include "KOVSimPosition.h"
#include "KOVString.h"

/// The object that `name` means in the map `mapMember` of the model of `focus`; null if there is
/// none, and for an empty name, for which the document is not looked at. `scopeSeparator`: what
/// stands between the scopes in `name`, such as "."; `instanceName`: the instance to which the name
/// belongs. Either may be empty; a null one is refused with KOVSimException. `retry`: whether
/// quotes inside the name are looked for when no form fits.
KOV_EXPORT KOVSimPosition KOVSrvGetIDFromScopedName(KOVSimPosition const& focus,
                                                    KOVString const& name, int mapMember,
                                                    char const* scopeSeparator,
                                                    char const* instanceName, bool retry);

/// The surface or region of that name, from Model_regions; null if there is none.
KOV_EXPORT KOVSimPosition KOVSrvGetSurfaceIDFromScopedName(KOVSimPosition const& focus,
                                                           KOVString const& name,
                                                           char const* scopeSeparator,
                                                           char const* instanceName);
/// The orientation of that name, from Model_orientationsByName; null if there is none.
KOV_EXPORT KOVSimPosition KOVSrvGetOrientationIDFromScopedName(KOVSimPosition const& focus,
                                                               KOVString const& name,
                                                               char const* scopeSeparator,
                                                               char const* instanceName);

/// The element set of that name, from Model_elementSets or else from Model_otherElementSets. A name
/// that is not found, or that stands for something other than a set, is a failed assertion, which
/// ends the process: ask KOVSrvGetIDFromScopedName where a name may be unknown.
KOV_EXPORT KOVSimPosition KOVSrvGetElementSetIDFromScopedName(KOVSimPosition const& focus,
                                                              KOVString const& name,
                                                              char const* scopeSeparator,
                                                              char const* instanceName);
/// The same for node sets, from Model_nodeSets or else from Model_otherNodeSets.
KOV_EXPORT KOVSimPosition KOVSrvGetNodeSetIDFromScopedName(KOVSimPosition const& focus,
                                                           KOVString const& name,
                                                           char const* scopeSeparator,
                                                           char const* instanceName);
