#include "SetTable.h"

#include <algorithm>
#include <numeric>

#include "Names.h"

namespace kov::tool {
namespace {

// A run of so many members is joined as a range; shorter ones are written out and joined together.
constexpr int kLongRun = 1 << 16;
constexpr std::size_t kBatch = std::size_t{1} << 20;

}  // namespace

void SetMembers::Add(int first, int count, int stride) {
    if (!m_runs.empty()) {
        OrdinalRun& last = m_runs.back();
        int const step = last.count == 1 ? stride : last.stride;
        if ((count == 1 || stride == step) &&
            first - last.first == static_cast<long long>(step) * last.count) {
            last.stride = step;
            last.count += count;
            return;
        }
    }
    m_runs.push_back({first, count, stride});
}

void SetMembers::Add(KOVSimCSet const& set) { m_folded = m_folded.Union(set); }

KOVSimCSet const& SetMembers::Fold(KOVSimCollection const& collection) {
    std::vector<int> members;
    auto const join = [&] {
        if (members.empty()) return;
        m_folded = m_folded.Union(
            collection.CreateVolatileCSet(members.data(), static_cast<int>(members.size()), false));
        members.clear();
    };
    for (OrdinalRun const& run : m_runs) {
        if (run.count >= kLongRun) {
            m_folded = m_folded.Union(
                collection.CreateVolatileCSetStrided(run.first, run.count, run.stride, 1));
            continue;
        }
        for (int i = 0; i < run.count; ++i) members.push_back(run.first + i * run.stride);
        if (members.size() >= kBatch) join();
    }
    join();
    m_runs = {};
    if (m_folded.CollectionID().IsNull()) m_folded = KOVSimCSet(collection.ID());
    return m_folded;
}

KOVSimCSetID SetMembers::Store(KOVSimCollection& collection) {
    if (m_runs.size() == 1 && m_folded.IsEmpty()) {
        OrdinalRun const& run = m_runs.front();
        return collection.CreateCSetStrided(run.first, run.count, run.stride, 1);
    }
    KOVSimCSet set = Fold(collection);
    return set.RegisterWithCollection();
}

NamedSet* SetTable::Find(std::string_view name) {
    auto const found = m_byName.find(LowerCase(name));
    return found == m_byName.end() ? nullptr : found->second;
}

NamedSet& SetTable::FindOrMake(std::string_view name) {
    NamedSet*& set = m_byName[LowerCase(name)];
    if (set == nullptr) {
        m_sets.emplace_back().name = name;
        set = &m_sets.back();
    }
    return *set;
}

void SetTable::FoldAll(KOVSimCollection const& collection) {
    for (NamedSet& set : m_sets) {
        if (set.members.Runs() > 0) set.members.Fold(collection);
    }
    m_runs = 0;
}

}  // namespace kov::tool
