// KOVSimDynamicID: the value identity of any object of a document, and the plain words it is made
// of.
//
// Identities are copied by plain assignment, kept in arrays and compared; they own nothing and
// never dangle. The context word names an open document; once that document is closed every use of
// the identity throws KOVSimException. Numbering: a record, collection, dataset, distribution or
// function table has `parent` 0 and its number in `minor`; a set, member or drawer carries its
// owner's number in `parent` and its own in `minor`, and has the type of its owner.
#pragma once

#include <cstdint>

#include "KOVExport.h"
#include "KOVSimTypes.h"

/// What kind of object an identity names. The numbers are persisted with links; do not change them.
enum KOVSimCategory : int {
    KOVSimCategoryNull = 0,
    KOVSimCategoryRecord = 1,
    KOVSimCategoryDistribution = 2,
    KOVSimCategoryDSet = 3,
    KOVSimCategoryCollection = 4,
    KOVSimCategoryCSet = 5,
    KOVSimCategoryDrawer = 6,
    KOVSimCategoryFTable = 7,
    KOVSimCategoryMember = 13,
};

/// Names one open document of this process: a number that is handed out once and goes stale when
/// the document closes.
struct KOVSimContextID {
    std::uintptr_t value = 0;

    /// True for the handle that names no document.
    bool IsNull() const { return value == 0; }
    friend bool operator==(KOVSimContextID a, KOVSimContextID b) { return a.value == b.value; }
    friend bool operator!=(KOVSimContextID a, KOVSimContextID b) { return a.value != b.value; }
};

/// The three numbers of an identity.
struct KOVSimDynamicDataID {
    KOVSimIDMinor reserved = 0;  ///< not used
    KOVSimIDMinor parent = -1;   ///< number of the owner; 0 without an owner; -1 in a null identity
    KOVSimIDMinor minor = -1;  ///< the object's own number within its owner; -1 in a null identity
};

struct KOV_EXPORT KOVSimDynamicID {
    int category = KOVSimCategoryNull;
    KOVSimContextID context;
    KOVSimDynamicDataID data;
    KOVSimTypeID type = -1;

    /// The null identity: category 0, no context, `parent`, `minor` and type -1.
    KOVSimDynamicID() = default;
    /// An identity from its words. The last argument is always 0.
    KOVSimDynamicID(int category_, KOVSimContextID context_, KOVSimDynamicDataID data_,
                    KOVSimTypeID type_, int)
        : category(category_), context(context_), data(data_), type(type_) {}

    /// True if the category is 0, or the context is null, or `minor` is -1.
    bool IsNull() const { return category == 0 || context.IsNull() || data.minor == -1; }
    int Category() const { return category; }
    /// True if both name the same object. The type takes no part: it follows from the object.
    bool Equal(KOVSimDynamicID const& other) const { return Compare(other) == 0; }
    /// A total order over all identities: negative, zero or positive as this one stands before, at
    /// or behind `other`.
    int Compare(KOVSimDynamicID const& other) const;

    friend bool operator==(KOVSimDynamicID const& a, KOVSimDynamicID const& b) {
        return a.Equal(b);
    }
    friend bool operator!=(KOVSimDynamicID const& a, KOVSimDynamicID const& b) {
        return !a.Equal(b);
    }
};

/// The order of identities as keys of KOVSimBtree: positive if the sought key `b` stands behind the
/// node's key `a`.
KOV_EXPORT int KOVSimBtreeCompare(KOVSimDynamicID const& a, KOVSimDynamicID const& b);
