// The typed identities: a KOVSimDynamicID behind a thin class for each kind of object, so that a
// signature says which kind it wants. They are plain words like the identity inside, null when
// default-built, and convert to it.
#pragma once

#include "KOVSimDynamicID.h"

/// What all typed identities share: the identity inside, and its words.
class KOV_EXPORT KOVSimTypedID {
  public:
    KOVSimTypedID() = default;

    operator KOVSimDynamicID const&() const { return m_id; }
    KOVSimDynamicID const& ID() const { return m_id; }
    /// True if the category is 0, or the context is null, or `minor` is -1.
    bool IsNull() const { return m_id.IsNull(); }
    KOVSimContextID ContextID() const { return m_id.context; }
    KOVSimIDMinor Parent() const { return m_id.data.parent; }
    KOVSimIDMinor Minor() const { return m_id.data.minor; }
    KOVSimTypeID TypeID() const { return m_id.type; }
    bool Equal(KOVSimTypedID const& other) const { return m_id.Equal(other.m_id); }
    int Compare(KOVSimTypedID const& other) const { return m_id.Compare(other.m_id); }

    friend bool operator==(KOVSimTypedID const& a, KOVSimTypedID const& b) { return a.Equal(b); }
    friend bool operator!=(KOVSimTypedID const& a, KOVSimTypedID const& b) { return !a.Equal(b); }

  protected:
    explicit KOVSimTypedID(KOVSimDynamicID const& id) : m_id(id) {}

  private:
    KOVSimDynamicID m_id;
};

/// Identity of a collection: an array of like members.
class KOV_EXPORT KOVSimCollectionID : public KOVSimTypedID {
  public:
    KOVSimCollectionID() = default;
    explicit KOVSimCollectionID(KOVSimDynamicID const& id) : KOVSimTypedID(id) {}
    /// The collection number `minor` of `context`. The last argument is always 0.
    KOVSimCollectionID(KOVSimContextID context, KOVSimIDMinor minor, KOVSimTypeID type, int);
};

/// Identity of a registered set of members of one collection, persistent or temporary.
class KOV_EXPORT KOVSimCSetID : public KOVSimTypedID {
  public:
    KOVSimCSetID() = default;
    explicit KOVSimCSetID(KOVSimDynamicID const& id) : KOVSimTypedID(id) {}
    /// True if `id` has the category of a set.
    static bool CanBeConverted(KOVSimDynamicID const& id) {
        return id.category == KOVSimCategoryCSet;
    }
    /// The collection whose members the set names; null for a null identity.
    KOVSimCollectionID CollectionID() const;
};

/// Identity of a dataset: a stored relation.
class KOV_EXPORT KOVSimDSetID : public KOVSimTypedID {
  public:
    KOVSimDSetID() = default;
    explicit KOVSimDSetID(KOVSimDynamicID const& id) : KOVSimTypedID(id) {}
};

/// Identity of a distribution: a typed array over a grid of collections.
class KOV_EXPORT KOVSimDistributionID : public KOVSimTypedID {
  public:
    KOVSimDistributionID() = default;
    explicit KOVSimDistributionID(KOVSimDynamicID const& id) : KOVSimTypedID(id) {}
};

/// Identity of a drawer: one rectangular block of a distribution.
class KOV_EXPORT KOVSimDrawerID : public KOVSimTypedID {
  public:
    KOVSimDrawerID() = default;
    explicit KOVSimDrawerID(KOVSimDynamicID const& id) : KOVSimTypedID(id) {}
};

/// Identity of a function table.
class KOV_EXPORT KOVSimFTableID : public KOVSimTypedID {
  public:
    KOVSimFTableID() = default;
    explicit KOVSimFTableID(KOVSimDynamicID const& id) : KOVSimTypedID(id) {}
};

/// Identity of one member of a collection.
class KOV_EXPORT KOVSimCMemberID : public KOVSimTypedID {
  public:
    KOVSimCMemberID() = default;
    explicit KOVSimCMemberID(KOVSimDynamicID const& id) : KOVSimTypedID(id) {}
};
