#include "document/facades/OrdinalOwners.h"

#include <algorithm>
#include <cstddef>

namespace kov::facades {

namespace {

// Beyond so many runs a page's table is smaller, or at least searched faster.
constexpr std::size_t MostRuns = 8192;

}  // namespace

OrdinalOwners::OrdinalOwners(std::vector<sets::IndexSetPtr> sets) : m_sets(std::move(sets)) {
    int highest = -1;
    for (sets::IndexSetPtr const& set : m_sets) highest = std::max(highest, set->Highest());
    if (highest >= 0) m_pages.resize(static_cast<std::size_t>(highest >> PageBits) + 1);
}

std::unique_ptr<OrdinalOwners::Page> OrdinalOwners::Resolve(int number) const {
    auto page = std::make_unique<Page>();
    std::int64_t const begin = std::int64_t{number} << PageBits;
    std::int64_t const end = begin + PageSize;
    std::vector<int> candidates;
    for (std::size_t i = 0; i < m_sets.size(); ++i) {
        sets::IndexSet const& set = *m_sets[i];
        if (set.IsEmpty() || set.Lowest() >= end || set.Highest() < begin) continue;
        candidates.push_back(static_cast<int>(i));
    }
    std::vector<int> owners(PageSize, -1);
    // The first of several owners is written last, and stays.
    for (auto owner = candidates.rbegin(); owner != candidates.rend(); ++owner) {
        sets::IndexSetPtr const& set = m_sets[static_cast<std::size_t>(*owner)];
        auto const window = sets::IndexSet::Range(
            static_cast<int>(begin),
            static_cast<int>(std::min(end, std::int64_t{sets::kHighestMember} + 1) - begin));
        sets::Intersection(set, window)->ForEachRun([&](int first, int count) {
            std::fill_n(owners.begin() + (first - begin), count, *owner);
        });
    }
    for (int i = 0; i < PageSize && page->runs.size() <= MostRuns; ++i) {
        int const owner = owners[static_cast<std::size_t>(i)];
        if (i == 0 || owner != page->runs.back().owner) page->runs.push_back(Run{i, owner});
    }
    if (page->runs.size() > MostRuns) {
        page->runs.clear();
        page->owners = std::move(owners);
    }
    page->runs.shrink_to_fit();
    return page;
}

int OrdinalOwners::Find(int ordinal) {
    if (ordinal < 0 || static_cast<std::size_t>(ordinal >> PageBits) >= m_pages.size()) return -1;
    std::unique_ptr<Page>& page = m_pages[static_cast<std::size_t>(ordinal >> PageBits)];
    if (!page) page = Resolve(ordinal >> PageBits);
    int const within = ordinal & (PageSize - 1);
    if (page->runs.empty()) return page->owners[static_cast<std::size_t>(within)];
    auto const after =
        std::upper_bound(page->runs.begin(), page->runs.end(), within,
                         [](int sought, Run const& run) { return sought < run.first; });
    return (after - 1)->owner;
}

}  // namespace kov::facades
