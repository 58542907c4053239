// KOVSrvElementLayerProperty: one property that is defined for each element and each section layer,
// whose value is a record: a sparse table over (elements, section layers) of member indices of one
// collection.
//
// The table is cut by the sets of layers that occur. All elements that have exactly the same layers
// share one drawer, which grows by elements; a tree over the bit vectors of the layer sets finds
// it. Elements of different numbers of layers thus take no more room than their own. The mesh knows
// the table as a DSet under an association, by which a later object finds it again. Which property
// an object stands for is told by the numbers given to it.
//
// Values of identities and a tree of them: nothing in the document goes with the object. `Add` and
// `Save` need a transaction of the caller's. An object that made a table or a drawer in a
// transaction that was dropped refuses to use it from then on: build a new one. Preconditions are
// checked assertions, which end the process. Whatever the document refuses throws KOVSimException.
// For one thread at a time.
#pragma once

#include "KOVExport.h"
#include "KOVSimCSet.h"
#include "KOVSimPosition.h"
#include "KOVSimTransaction.h"
#include "KOVSimTypedIDs.h"
#include "mem.h"
#include "omi_BlkBitVect.h"
#include "omi_Btree.h"

class KOV_EXPORT KOVSrvElementLayerProperty : public mem_AllocationOperators {
  public:
    /// Finds the table that was saved under (`linkType`, `linkMember`) on the mesh, if there is
    /// one. `focus`: the root object of the document. `valueCollection`: the collection of the
    /// values. `dsetType`: the schema index of the type of the DSet that `Save` makes.
    /// `elementChunkSize`: the chunk of the element dimension of every drawer made here; given to
    /// the store as it is.
    KOVSrvElementLayerProperty(KOVSimPosition const& focus,
                               KOVSimCollectionID const& valueCollection, int dsetType,
                               int linkType, int linkMember, int elementChunkSize);
    virtual ~KOVSrvElementLayerProperty();

    /// Gives every pair of an element and a layer the member `value` of the value collection; pairs
    /// that have a value get it anew. Both sets are ascending. The first call of a property without
    /// a table makes that, over the collections of these two sets; the first call for these very
    /// layers makes their drawer. A value that is no member is kept as -1.
    virtual void Add(KOVSimCSetID const& elsetID, KOVSimCSetID const& layersID,
                     KOVSimDynamicID const& value);

    /// The section layers that these elements have, volatile and ascending: those of every drawer
    /// that holds one of the elements. The empty set of the layers if no drawer does.
    virtual KOVSimCSet GetElementLayers(KOVSimCSetID const& elements) const;

    /// The collections of the mesh's elements and of the document's section layers.
    virtual KOVSimCollectionID GetElementCollection() const;
    virtual KOVSimCollectionID GetSectionLayerCollection() const;

    /// Makes the table known to the mesh: makes the DSet and its association, or brings the DSet
    /// that is there up to date with the table of this object. May be repeated after further
    /// calls of `Add`. Nothing happens as long as there is no table.
    virtual void Save(KOVSimTransaction& transaction);

    /// Reads values as member indices of the value collection. `values`: (elements, layers),
    /// row-major, in the order of the two sets; owned by the caller. Pairs that no drawer holds
    /// keep what the caller put there; where drawers overlap, the one made last serves the pair.
    /// Answers the number of pairs. Throws KOVSimException if there is no table.
    virtual int Lookup(KOVSimCSet const& elements, KOVSimCSet const& layers, int* values) const;

    /// A new table without drawers: a distribution over the two collections, in this order, of
    /// member indices of the value collection. This object does not take it up.
    KOVSimDistributionID CreateDistribution(KOVSimCollectionID const& first,
                                            KOVSimCollectionID const& second);
    /// A new drawer of this object's table, which grows by elements; its entries read as 0. This
    /// object's own calls of `Add` do not look for it.
    KOVSimDrawerID CreateDrawer(KOVSimCSetID const& elements, KOVSimCSetID const& layers);

  private:
    KOVSimPosition Mesh() const;

    KOVSimPosition m_focus;
    KOVSimCollectionID m_valueCollection;
    int m_dsetType;
    int m_linkType;
    int m_linkMember;
    int m_elementChunkSize;
    omi_Btree<omi_BlkBitVect, KOVSimDynamicID> m_drawersByLayers;
    KOVSimDistributionID m_distribution;
};
