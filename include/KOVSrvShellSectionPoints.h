// KOVSrvShellSectionPoints: how many section points each layer of each shell section of a document
// has.
//
// The whole store that KOVSrvBulkShellLayers wrote is read on the first query, one transfer for
// each layer number, and kept in a map: later changes of the document are not seen, and a query
// touches the document no more. The counts of several sections for one layer are independent of
// each other. An object shares the database of its document for as long as it lives. For one thread
// at a time, the const operation included.
#pragma once

#include "KOVBasMap.h"
#include "KOVExport.h"
#include "KOVObjDocument.h"
#include "KOVSimPosition.h"

class KOV_EXPORT KOVSrvShellSectionPoints {
  public:
    /// Reads nothing.
    explicit KOVSrvShellSectionPoints(KOVObjDocument document);
    ~KOVSrvShellSectionPoints();
    KOVSrvShellSectionPoints(KOVSrvShellSectionPoints const& other);
    KOVSrvShellSectionPoints& operator=(KOVSrvShellSectionPoints const& other);

    /// The number of section points of one layer, counted from 0, of one section, a member of
    /// Model_bulkSections; 0 for a section or layer that is not known. Reads the document as
    /// UpdateMap does if that has not settled yet; never again after a call that returned.
    int GetNumSectionPoints(KOVSimPosition section, int layer) const;

    /// Adds one count. A count that is there for this section and layer stays, so that one given
    /// before the document is read wins over the document's.
    void AddPoints(KOVSimPosition section, int layer, int count);

    /// Reads the counts from the document, once. A bulk record that has no store of section points,
    /// or one without content, leaves the matter open: a further call looks again. Throws
    /// KOVBasAssertException at a drawer that does not hold exactly one layer; what was read before
    /// it stays, and a further call reads again.
    void UpdateMap();

  private:
    using PointsByLayer = KOVBasMap<int, int>;

    void Add(KOVSimPosition const& section, int layer, int count) const;
    void Fill() const;

    KOVObjDocument m_document;
    mutable KOVBasMap<KOVSimPosition, PointsByLayer> m_pointsBySection;
    mutable bool m_mapRead = false;
};
