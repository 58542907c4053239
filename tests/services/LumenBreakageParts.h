// The parts of the table of breakages, and what several of them do.
#pragma once

#include "services/LumenBreakages.h"

namespace kov::test {

std::vector<Breakage> MeshBreakages();
std::vector<Breakage> RegionBreakages();
std::vector<Breakage> StepBreakages();
std::vector<Breakage> HistoryBreakages();
std::vector<Breakage> FieldBreakages();
std::vector<Breakage> OutputBreakages();
std::vector<Breakage> SectionBreakages();

/// A record that is none of what a link may lead to.
inline KOVSimPosition SomeRecord(LumenDocument const& d) { return d.Record(schema::Region()); }

inline void RemoveFromSet(KOVSimPosition const& owner, int member, KOVSimPosition const& target) {
    owner.GetSet(member).Remove(target);
}

inline void EmptySet(KOVSimPosition const& owner, int member) {
    KOVSimSet const set = owner.GetSet(member);
    for (KOVSimSetiterator at = set.Begin(); at.NotDone(); ++at) set.Remove(*at);
}

}  // namespace kov::test
