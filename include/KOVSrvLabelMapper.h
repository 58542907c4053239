// KOVSrvLabelMapper: relates the mesh of one document to the mesh of another.
//
// Two documents of one model number their nodes and elements independently; what they share is the
// user's view, the name of an instance and the label within it. The mapper matches both meshes on
// that pair, once for nodes and once for elements, and keeps a plain table of those present in
// both, by which sets of the primary document are translated into sets of the secondary. An index
// into the table is a mapping ordinal.
//
// A table is made when it is first needed and stays as it is, whatever becomes of the documents;
// both must be open then, and whenever a set is translated. One thread at a time may use a mapper.
#pragma once

#include "KOVExport.h"
#include "KOVObjLabeler.h"
#include "KOVSimArray.h"
#include "KOVSimCSet.h"
#include "KOVSimPosition.h"
#include "KOVSimTypedIDs.h"
#include "KOVString.h"

/// One row of a label mapping. Plain ints, so that rows can be searched with a lone ordinal as key.
struct KOVSrvLabelMapperQuad {
    int primaryOrdinal;    ///< in the primary document; the user label while labels are read
    int secondaryOrdinal;  ///< in the secondary document; in the labeler's while labels are read
    int instanceIndex;  ///< of the instance among the primary's; no meaning while labels are read
    int userLabel;
};

class KOV_EXPORT KOVSrvLabelMapper {
  public:
    using Ordinals = KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>;

    /// `primary`, `secondary`: the focus of the document whose sets are given, and of the one into
    /// which they are translated. Nothing is read yet.
    KOVSrvLabelMapper(KOVSimPosition const& primary, KOVSimPosition const& secondary);
    ~KOVSrvLabelMapper();
    KOVSrvLabelMapper(KOVSrvLabelMapper const&) = delete;
    KOVSrvLabelMapper& operator=(KOVSrvLabelMapper const&) = delete;

    /// @name Translating sets
    /// Table indices of the set's members in the set's own order; members without a row are left
    /// out. `set`: on the primary's elements or nodes; a null ID counts as the empty set.
    /// @{
    Ordinals GetMappingFromPrimaryElementSet(KOVSimCSetID set);
    Ordinals GetMappingFromPrimaryNodeSet(KOVSimCSetID set);
    /// @}

    /// The elements or nodes that both documents have: a volatile set of the primary's collection,
    /// or of the secondary's.
    KOVSimCSet GetCommonPrimaryElementSet();
    KOVSimCSet GetCommonPrimaryNodeSet();
    KOVSimCSet GetCommonSecondaryElementSet();
    KOVSimCSet GetCommonSecondaryNodeSet();

    /// The set translated: a volatile set of the secondary's collection, without the members that
    /// have no row. With `unordered` false it keeps the order in which the given set has its
    /// members; with true it is ascending. A set that lies on the secondary's own collection fails
    /// a checked assertion.
    KOVSimCSet GetSecondaryElementSet(KOVSimCSetID const& primaryElementSet, bool unordered);
    KOVSimCSet GetSecondaryNodeSet(KOVSimCSetID const& primaryNodeSet, bool unordered);

    /// Label and instance name of a row. The table must have been made by one of the operations
    /// above, and `mappingOrdinal` must be below the number of its rows: checked assertions. It
    /// must not be negative either, which is not checked.
    int GetElementMappingOrdinalUserLabel(int mappingOrdinal) const;
    int GetNodeMappingOrdinalUserLabel(int mappingOrdinal) const;
    KOVString GetElementMappingOrdinalInstanceName(int mappingOrdinal) const;
    KOVString GetNodeMappingOrdinalInstanceName(int mappingOrdinal) const;

    /// @name Building blocks
    /// Tables that they give are the caller's, and freed with mem_Free; they are never null, also
    /// without rows. `count` is set to the number of rows.
    /// @{

    /// The labels of an instance, ascending, each in the first and the last field, and its ordinal
    /// in the second. None for an instance that the labeler does not have.
    KOVSrvLabelMapperQuad* ReadLabels(KOVObjLabeler const& labeler, KOVString const& instance,
                                      int& count);
    /// The rows of one instance, by ascending label: labels that both labelers have in it.
    KOVSrvLabelMapperQuad* RemapInstanceBasedOnUserLabels(KOVObjLabeler const& primary,
                                                          KOVObjLabeler const& secondary,
                                                          KOVString const& instance,
                                                          int instanceIndex, int& count);
    /// The whole table, by ascending primary ordinal: the rows of all instances of the primary.
    /// Reads both documents, and takes over the instance names of the primary.
    KOVSrvLabelMapperQuad* RemapBasedOnUserLabels(KOVObjLabelerType type, int& count);

    /// As GetMappingFromPrimaryNodeSet, with a table of `count` rows by ascending primary ordinal.
    Ordinals GetMappingFromPrimarySet(KOVSrvLabelMapperQuad* quads, int count, KOVSimCSetID set);
    /// The primary, or the secondary, ordinals of all rows as a volatile set of `collection`.
    KOVSimCSet GetCommonPrimarySet(KOVSrvLabelMapperQuad* quads, int count,
                                   KOVSimCollectionID collection);
    KOVSimCSet GetCommonSecondarySet(KOVSrvLabelMapperQuad* quads, int count,
                                     KOVSimCollectionID collection);
    /// As GetSecondaryNodeSet, onto the given collection, which is not compared with the set's.
    KOVSimCSet MapSet(KOVSrvLabelMapperQuad* quads, int count, KOVSimCSetID set,
                      KOVSimCollectionID collection, bool unordered);
    /// The collection under a member of the mesh of `position`'s model; null if there is none.
    KOVSimCollectionID GetCollection(KOVSimPosition const& position, int meshMember) const;
    /// -1, 0 or 1 by the first int of both items, as qsort and bsearch want it; either may be a
    /// lone int. Null items fail a checked assertion.
    static int IntQuadCompare(void const* itemA, void const* itemB);
    /// @}

  private:
    void NeedElements();
    void NeedNodes();

    KOVSimPosition m_primary;
    KOVSimPosition m_secondary;
    int m_nnodes = 0;
    int m_nelements = 0;
    KOVSrvLabelMapperQuad* m_nodes = nullptr;
    KOVSrvLabelMapperQuad* m_elements = nullptr;
    using Names = KOVSimArray<KOVString, KOVSimArrayClassPolicy<KOVString>>;
    Names m_occurrences;  // as last read
    // As they were when the tables were made: an instance may have nodes and no elements.
    Names m_nodeOccurrences;
    Names m_elementOccurrences;
};
