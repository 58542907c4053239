// KOVSrvGlobalLabelMap: from a label that is unique in the whole model, as older kinds of output
// have it, to the ordinal in the flat mesh, and from there to the instance and the label within it.
//
// Build it, initialise it once, ask. A loaded map may be asked by several threads as far as the
// document may.
#pragma once

#include "KOVBasOmiDefaultAllocator.h"
#include "KOVExport.h"
#include "KOVSimPosition.h"
#include "KOVSrvLabelerType.h"
#include "KOVString.h"
#include "omi_IntTable.h"

class KOV_EXPORT KOVSrvGlobalLabelMap {
  public:
    using Table = omi_IntTable<int, KOVBasOmiDefaultAllocator>;

    /// `focus`: of the document whose instances are asked. Nothing is read yet.
    KOVSrvGlobalLabelMap(KOVSimPosition focus, KOVSrvLabelerType type);
    ~KOVSrvGlobalLabelMap();
    KOVSrvGlobalLabelMap(KOVSrvGlobalLabelMap const&) = delete;
    KOVSrvGlobalLabelMap& operator=(KOVSrvGlobalLabelMap const&) = delete;

    KOVSimPosition Focus() const;

    /// Loads a new table from the distribution at `labels`; see LoadGlobalLabels. If that throws,
    /// the map stays as it was.
    void Initialize(KOVSimPosition labels);
    /// Takes `table` over as it stands, without a copy: it must have been made by `new`, and
    /// belongs to the map from then on.
    void Initialize(Table const& table);

    /// Adds the global labels at `labels` to `table`: a distribution of one dimension, the nodes or
    /// elements, with an int for each. Its first drawer is read, any other ignored; without a
    /// drawer nothing is added. Of a label that stands twice the first ordinal is kept.
    void LoadGlobalLabels(KOVSimPosition labels, Table& table);

    /// Sets `instance` and `label` from the global label; false, with both left alone, if the label
    /// is unknown or no instance has its ordinal. A null focus is a fatal assertion. As
    /// KOVSrvGetInstanceInfo, which it ends in, it reads anew which instances there are. To be
    /// called after Initialize.
    bool GetInstanceLabel(int globalLabel, KOVString& instance, int& label) const;

  private:
    KOVSimPosition m_focus;
    KOVSrvLabelerType m_type;
    Table* m_table = nullptr;
};
