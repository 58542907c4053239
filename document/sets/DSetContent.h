// DSetContent: what a dataset object holds: compartments, or pieces of a relational distribution.
// Read when first asked for, and kept while the object or a copy of it lives. Private to the
// datasets.
//
// A relational distribution of grid (A, B) and range C is a relation of tuples (a, b, c). A piece
// is the part of one drawer within a set of each dimension; a selection keeps pieces, and the
// members of C that it is confined to, if any.
#pragma once

#include <optional>
#include <vector>

#include "KOVSimDSet.h"
#include "KOVSimDistribution.h"

struct KOVSimDSet::Content {
    std::optional<KOVSimDistribution> relation;
    KOVSimCSet range;  // a selection's members of the range; only if `confined`
    bool confined = false;

    /// The compartments, or of a relation the sets of its pieces.
    KOVSimCtation const& Ctation() const;
    void SetCtation(KOVSimCtation ctation) { m_ctation = std::move(ctation); }
    /// Of a stored dataset: its compartments are read when they are first asked for.
    void SetStored(KOVSimDSetID const& id) { m_stored = id; }

  private:
    KOVSimDSetID m_stored;
    mutable std::optional<KOVSimCtation> m_ctation;
};

namespace kov::sets {

/// The content of a stored dataset. Throws if there is none of that number or it is damaged.
std::shared_ptr<KOVSimDSet::Content const> LoadContent(KOVSimDSetID const& id);
/// The number of the distribution behind a stored dataset; 0 if it is not relational. Throws if
/// there is no such dataset.
KOVSimIDMinor RelationOf(KOVSimDSetID const& id);

/// The part of each compartment that touches members of `set`.
KOVSimCtation SelectCompartments(KOVSimCtation const& ctation, KOVSimCSet const& set);
/// The part of a relation whose entries are members of `content.range`: pieces without one go, the
/// others shrink to rows and columns that have some.
KOVSimCtation ConfinePieces(KOVSimDSet::Content const& content);
/// The members of the range collection that stand in the entries of all pieces.
KOVSimCSet CollectRange(KOVSimDSet::Content const& content);

}  // namespace kov::sets
