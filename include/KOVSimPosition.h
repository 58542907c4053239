// KOVSimPosition: a plain value handle on one object of a document, from which schema links are
// followed.
//
// It holds the object's identity and nothing that needs a destructor. Reading through a null
// position is no error: it gives null positions, empty containers and null identities; writing
// through one throws KOVSimException. Everything that writes needs an open KOVSimTransaction on the
// document. `member` and `type` are schema indices (KOVSimSchema.h).
#pragma once

#include "KOVBasVector.h"
#include "KOVExport.h"
#include "KOVSimDatabase.h"
#include "KOVSimDynamicID.h"
#include "KOVSimTypedIDs.h"
#include "KOVString.h"

class KOVSimContext;
class KOVSimSet;
class KOVSimVector;
class KOVSimMap;
class KOVSimDataRecord;
class KOVSimCSet;
class KOVSimDSet;
class KOVSimCtation;
class KOVSimGrid;
class KOVSimRangeType;

class KOV_EXPORT KOVSimPosition {
  public:
    /// The null position.
    KOVSimPosition() = default;
    /// The position on the object that `id` names; a typed identity converts.
    KOVSimPosition(KOVSimDynamicID const& id) : m_id(id) {}
    KOVSimPosition(KOVSimTypedID const& id) : m_id(id.ID()) {}

    /// True if the category is 0 or the context is null. The number is not looked at.
    bool IsNull() const { return m_id.category == 0 || m_id.context.IsNull(); }
    KOVSimDynamicID ID() const { return m_id; }
    /// A strong share of the database that holds the object; an empty handle for a null position.
    KOVSimDatabase Doc() const;
    KOVSimContext Context() const;
    /// The root object of the document.
    KOVSimPosition Focus() const;
    /// True if the object's type is `type` or derives from it. Of a member that was made a record,
    /// the record's type counts.
    bool IsA(int type) const;
    /// The type index of the object's exact type; -1 for a null position or an object of no
    /// particular type.
    int TypePosition() const;

    /// With -1 the object's own name; with a schema member its key in the map `member` that holds
    /// it. Empty if there is none.
    KOVString Name(int member) const;
    /// Gives the object its own name, which `Name(-1)` gives back.
    void SetName(KOVString const& name) const;

    /// The target of a link to one; null if unset.
    KOVSimPosition GetPosition(int member) const;
    /// Sets the link; a null `target` takes it away.
    void SetPosition(int member, KOVSimPosition const& target) const;
    /// The target of the association that `Associate` made under the same pair; null if none.
    KOVSimPosition Follow(int type, int member) const;
    /// Attaches an association under (type, member), replacing one that exists; a null `target`
    /// takes it away.
    void Associate(int type, int member, KOVSimPosition const& target) const;

    /// The object that holds this one under `member`, the first of them if several do; null if none
    /// does.
    KOVSimPosition Parent(int member) const;
    /// All objects that link here through `member`, one entry for each link; empty if none.
    KOVSimSet ReferrersSet(int member) const;
    /// The key under which this object is held in the map `member` of its referrer; empty if it is
    /// in none.
    KOVString GetReferenceKey(int member) const;
    /// The schema members that are set on this object, ascending. Associations are not among them.
    KOVBasVector<int> Members() const;

    /// Writable views of the links under `member`: ordered, unordered, keyed by text.
    KOVSimVector GetVector(int member) const;
    KOVSimSet GetSet(int member) const;
    KOVSimMap GetMap(int member) const;

    /// The record at this position; the two are synonyms. Members and other objects carry record
    /// fields too.
    KOVSimDataRecord GetDataRecord() const;
    KOVSimDataRecord DataRecord() const;

    /// The identity as that of the kind named; null if the object is of another kind.
    KOVSimCollectionID GetCollection() const;
    KOVSimCSetID GetCSet() const;
    KOVSimDSetID GetDSet() const;
    KOVSimDistributionID GetDistribution() const;
    KOVSimDrawerID GetDrawer() const;
    KOVSimFTableID GetFTable() const;
    /// The same as set and dataset objects.
    KOVSimCSet CSet() const;
    KOVSimDSet DSet() const;

    /// The number of the symbol that this member stands for, in its symbol collection; -1 if it is
    /// no symbol.
    int GetSymbolPosition() const;
    /// The symbol's name, such as "C_1"; empty if it is no symbol.
    KOVString GetSymbolName() const;
    /// On a collection: appends a member that stands for the symbol number `symbol` of that name,
    /// as a record of `type`, and gives its position.
    KOVSimPosition AddSymbol(KOVString const& name, int symbol, int type) const;

    /// On a collection: makes member `index` a record of `type` and gives its position (the
    /// identity stays that of the member). Throws if `index` lies outside the collection.
    KOVSimPosition CreateMember(int index, int type) const;
    /// On a collection: raises `Space()` by one and makes the new member a record of `type`.
    KOVSimPosition AppendMember(int type) const;

    /// A new record of `type` in this position's document.
    KOVSimDataRecord CreateDataRecord(int type) const;
    /// A new collection of `size` members of `type`.
    KOVSimCollectionID CreateTypedCollection(int size, int type) const;
    /// A new dataset of `type` with the content of `ctation`.
    KOVSimDSetID CreateTypedDSet(KOVSimCtation const& ctation, int type) const;
    /// A new distribution of `type` over `grid`, without drawers.
    KOVSimDistributionID CreateTypedDistribution(KOVSimGrid const& grid, int type,
                                                 KOVSimRangeType const& range) const;
    /// A new function table of `rows` rows. `data`: `count` doubles, row by row; copied. They fill
    /// the columns of `columnLabels`, or those of `labels` and then `columnLabels`; else refused.
    KOVSimFTableID CreateFTable(int type, int rows, KOVBasVector<KOVString> const& labels,
                                KOVBasVector<KOVString> const& columnLabels, double const* data,
                                int count) const;

  private:
    KOVSimDynamicID m_id;
};

template <class K>
struct KOVBasStandardComparitor;

/// Positions as keys of a KOVBasMap are ordered by their identities.
template <>
struct KOVBasStandardComparitor<KOVSimPosition> {
    static int Compare(KOVSimPosition const& a, KOVSimPosition const& b) {
        return a.ID().Compare(b.ID());
    }
};
