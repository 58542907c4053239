// KOVObjDocument: a shared handle on an open document, and the way to make, open, verify and close
// one.
//
// A document is a folder `NAME.ksd` (see docs/format.md), or lives in memory. One writer and any
// number of readers may have it open, also from other processes. A reader sees one commit from
// `Open` or `Refresh()` to the next `Refresh()`.
#pragma once

#include <cstdint>
#include <functional>

#include "KOVExport.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDatabase.h"
#include "KOVSimPosition.h"
#include "KOVString.h"

class KOVSimGrid;
class KOVSimRangeType;

/// Sizes of a document, for inspectors.
struct KOVObjDocumentStatistics {
    std::int64_t catalogueBytes = 0;   ///< size of the catalogue
    std::int64_t bulkBytes = 0;        ///< bytes in the segments
    std::int64_t liveBulkBytes = 0;    ///< bytes of blocks in use
    std::int64_t supersededBytes = 0;  ///< bytes that overwrites and merges have left behind
    std::int64_t segments = 0;
    std::int64_t blocks = 0;
    std::int64_t records = 0;
    std::int64_t collections = 0;
    std::int64_t sets = 0;
    std::int64_t distributions = 0;
    std::int64_t drawers = 0;
    std::int64_t datasets = 0;
    std::int64_t tables = 0;
    std::int64_t links = 0;
    std::int64_t commits = 0;  ///< committed transactions since the document was made
};

class KOV_EXPORT KOVObjDocument {
  public:
    enum Access { ReadOnly = 0, ReadWrite = 1 };
    enum BareTag { Bare = 0 };

    /// A handle without a document.
    KOVObjDocument() = default;
    KOVObjDocument(KOVSimDatabase const& database) : m_database(database) {}

    /// Makes a document on disk with the skeleton of a model and a mesh, open for writing. Throws
    /// if `path` exists.
    static KOVObjDocument Create(KOVString const& path);
    /// The same in memory.
    static KOVObjDocument CreateInMemory();
    /// In memory with a focus and nothing else.
    static KOVObjDocument CreateInMemory(BareTag);
    /// Opens a document. A path that is open in this process already shares its context, or is
    /// refused when the access differs. Throws if it is no document, damaged, cut short, written by
    /// a newer version, or in use by another writer.
    static KOVObjDocument Open(KOVString const& path, Access access);
    /// Closes the document for all handles; an open transaction is dropped. Nothing happens if it
    /// is closed.
    void Close() const;
    /// Moves a reader to the latest commit, and answers whether anything changed. Throws while a
    /// transaction is open.
    bool Refresh() const;

    /// True if the database has gone, or the handle has none.
    bool IsClosed() const { return m_database.IsClosed(); }
    KOVSimContextID ContextID() const { return m_database.ContextID(); }
    KOVSimDatabase const& Database() const { return m_database; }
    /// The path it was created or opened under; empty in memory.
    KOVString Path() const;
    bool IsReadOnly() const;

    /// Checks every page of every block and every invariant of the catalogue, and calls `finding`
    /// with a text for each fault. Answers whether there was none.
    bool Verify(std::function<void(char const* finding)> const& finding) const;
    KOVObjDocumentStatistics Statistics() const;
    /// Writes a copy without superseded bytes to a new path; throws if it exists. The identities'
    /// numbers stay.
    void WriteCompacted(KOVString const& path) const;

    /// The root record.
    KOVSimPosition Focus() const;
    KOVSimPosition GetModel() const;
    void SetModel(KOVSimPosition const& position) const;
    KOVSimPosition GetMesh() const;
    void SetMesh(KOVSimPosition const& position) const;
    /// The results root; null until set.
    KOVSimPosition GetResults() const;
    void SetResults(KOVSimPosition const& position) const;
    KOVSimPosition GetComponentCollection() const;
    void SetComponentCollection(KOVSimPosition const& position) const;
    KOVSimPosition GetDofTypeCollection() const;
    void SetDofTypeCollection(KOVSimPosition const& position) const;
    KOVSimPosition GetShapeCollection() const;
    void SetShapeCollection(KOVSimPosition const& position) const;
    KOVSimPosition GetElementSpecCollection() const;
    void SetElementSpecCollection(KOVSimPosition const& position) const;
    KOVSimPosition GetMaterialCollection() const;
    void SetMaterialCollection(KOVSimPosition const& position) const;
    KOVSimPosition GetPointCollection() const;
    void SetPointCollection(KOVSimPosition const& position) const;

    KOVSimDataRecord CreateDataRecord(int type) const;
    KOVSimDistributionID CreateDistribution(KOVSimGrid const& grid, KOVSimRangeType const& range,
                                            KOVSimTypeID type) const;
    KOVSimDynamicID GetRecord(KOVSimCollectionID const& collection, int index) const;
    int GetCMemberIndex(KOVSimPosition const& record) const;
    /// The symbol of that name and type in the collection; throws if there is none.
    KOVSimDynamicID GetSymbol(int type, KOVString const& name,
                              KOVSimCollectionID const& collection) const;

  private:
    KOVSimDatabase m_database;
};
