// KOVObjLabeler: the labels that users gave to nodes or elements, instance by instance. An
// instance's labels are unique in it; ordinals are members of the flat mesh's node or element
// collection. Build it, then `Read()` before asking.
#pragma once

#include <memory>

#include "KOVBasVector.h"
#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimPosition.h"
#include "KOVString.h"

class KOVObjDocument;

enum KOVObjLabelerType : int { KOVObjLabelerNodes = 0, KOVObjLabelerElements = 1 };

class KOV_EXPORT KOVObjLabeler {
  public:
    using NameArray = KOVSimArray<KOVString, KOVSimArrayClassPolicy<KOVString>>;

    KOVObjLabeler(KOVObjDocument const& document, KOVObjLabelerType type);
    /// Of the document that holds `position`.
    KOVObjLabeler(KOVSimPosition const& position, KOVObjLabelerType type);

    /// Reads which instances there are; nothing in proportion to their labels.
    void Read();
    /// The names of all instances, ascending.
    NameArray Occurrences() const;
    bool IsInstanceValid(KOVString const& name) const;
    /// All labels of an instance, ascending, and their ordinals at the same places. Both come back
    /// empty for an unknown name.
    void GetInstanceLabelsAndOrdinals(KOVString const& name, KOVBasVector<int>& labels,
                                      KOVBasVector<int>& ordinals) const;
    /// The instance to which an ordinal of the flat mesh belongs; false, with `name` left alone, if
    /// there is none.
    bool GetOccurrenceForFlatMeshOrdinal(int ordinal, KOVString& name) const;
    /// The user label of an ordinal; -1 if the instance does not hold it.
    int GetInstanceLabel(KOVString const& name, int ordinal) const;

    /// Records an instance's labels, in any order; in a transaction. `labels` and `ordinals` are of
    /// equal size, and neither may hold a value twice. Labels recorded before under that name are
    /// replaced.
    void SetInstance(KOVString const& name, KOVBasVector<int> const& labels,
                     KOVBasVector<int> const& ordinals);

    struct Instances;

  private:
    KOVSimPosition m_focus;
    KOVObjLabelerType m_type;
    std::shared_ptr<Instances const> m_instances;
};
