// KOVObjLabeler: the labels that users gave to nodes or elements, instance by instance. An
// instance's labels are unique in it; ordinals are members of the flat mesh's node or element
// collection. Build it, then `Read()` before asking. It then answers for the instances as they were
// at `Read()`, and keeps what it has read of those that were asked: a labeler is for many
// questions. One thread at a time may ask it or a copy of it. Of a document that was closed it
// knows the names only, and throws KOVSimException for all else.
#pragma once

#include <memory>

#include "KOVBasVector.h"
#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimCSet.h"
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
    /// The ordinals of an instance, ascending, without reading its labels; the empty set tied to no
    /// collection for an unknown name, and for an instance that was recorded without labels.
    KOVSimCSet GetInstanceOrdinals(KOVString const& name) const;
    /// All labels of an instance, ascending, and their ordinals at the same places. Both come back
    /// empty for an unknown name.
    void GetInstanceLabelsAndOrdinals(KOVString const& name, KOVBasVector<int>& labels,
                                      KOVBasVector<int>& ordinals) const;
    /// The instance to which an ordinal of the flat mesh belongs; false, with `name` left alone, if
    /// there is none.
    bool GetOccurrenceForFlatMeshOrdinal(int ordinal, KOVString& name) const;
    /// The user label of an ordinal; -1 if the instance does not hold it.
    int GetInstanceLabel(KOVString const& name, int ordinal) const;
    /// The ordinal of a user label; -1 if the instance does not hold it. The first question about
    /// an instance reads all its labels.
    int GetInstanceOrdinal(KOVString const& name, int label) const;

    /// Records an instance's labels, in any order; in a transaction. `labels` and `ordinals` are of
    /// equal size, and neither may hold a value twice. Labels recorded before under that name are
    /// replaced.
    void SetInstance(KOVString const& name, KOVBasVector<int> const& labels,
                     KOVBasVector<int> const& ordinals);

    struct Instances;

  private:
    KOVSimPosition m_focus;
    KOVObjLabelerType m_type;
    std::shared_ptr<Instances> m_instances;
};
