#include "KOVSimCMemberMap.h"

#include <algorithm>
#include <string>
#include <vector>

#include "document/records/Identity.h"
#include "document/sets/IndexSet.h"

using namespace kov;
using sets::IndexSet;
using sets::IndexSetPtr;

struct KOVSimCMemberMap::Pairing {
    KOVSimCSet target;
    KOVSimCSet source;
};

KOVSimCMemberMap KOVSimCMemberMap::Create(KOVSimCSet const& target, KOVSimCSet const& source) {
    if (target.Size() != source.Size()) {
        records::Refuse({"pair two sets"}, "the target has " + std::to_string(target.Size()) +
                                               " members, the source " +
                                               std::to_string(source.Size()));
    }
    KOVSimCMemberMap map;
    map.m_pairing = std::make_shared<Pairing const>(Pairing{target, source});
    return map;
}

KOVSimCSet KOVSimCMemberMap::Map(KOVSimCSet set) const {
    if (!m_pairing) return {};
    IndexSetPtr const& source = m_pairing->source.Storage();
    IndexSetPtr const& target = m_pairing->target.Storage();
    KOVSimCollectionID const collection = m_pairing->target.CollectionID();
    IndexSetPtr const held = set.Intersection(m_pairing->source).Storage();
    if (source->IsRange() && target->IsRange()) {
        // Both contiguous: runs are shifted as they are.
        std::vector<sets::Run> runs;
        int const shift = target->Lowest() - source->Lowest();
        held->ForEachRun([&](int first, int count) {
            runs.push_back({first + shift, first + shift + count});
        });
        return KOVSimCSet(collection, IndexSet::FromRuns(runs.data(), runs.size()));
    }
    std::vector<int> places;
    places.reserve(static_cast<std::size_t>(held->Size()));
    held->ForEachRun([&](int first, int count) {
        for (int member = first; member != first + count; ++member)
            places.push_back(source->LocationOf(member));
    });
    if (!source->IsAscending()) std::sort(places.begin(), places.end());
    for (int& place : places) place = target->At(place);
    return KOVSimCSet(collection, IndexSet::FromOrdered(places.data(), places.size()));
}
