// SetTable: the named sets of nodes, or of elements, while a deck is read. Names compare without
// regard to case; a set keeps the case in which its name came first, and its members may come from
// several keywords.
//
// Members are gathered as runs of ordinals, so that a generated set of any size is one entry. Where
// runs become many they are packed to about two bytes a member.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "KOVSimCSet.h"
#include "KOVSimCSetIterator.h"
#include "KOVSimCollection.h"

namespace kov::tool {

/// The ordinals first, first + stride, ...
struct OrdinalRun {
    int first;
    int count;
    int stride;
};

/// Members of one collection, gathered in any order.
///
/// What was gathered is kept as it came until Fold() packs it: ascending runs as gaps and lengths
/// of one or two bytes each, or, for a great many scattered members, a set of the collection. A set
/// of 100 members anywhere in a large mesh takes some 250 bytes, of 10 million in a row a few.
class SetMembers {
  public:
    void Add(int ordinal) { Add(ordinal, 1, 1); }
    void Add(int first, int count, int stride);
    /// Adds all members of another set.
    void Add(SetMembers const& other);

    /// Runs that are not folded.
    std::size_t Runs() const { return m_runs.size(); }
    /// Calls f(first, count, stride) for runs that together are all members; some may come twice.
    template <class F>
    void ForRuns(F&& f) const;
    /// Packs what was gathered. The members must lie inside the collection.
    void Fold(KOVSimCollection const& collection);
    /// All members, as a set without an ID.
    KOVSimCSet All(KOVSimCollection const& collection) const;
    /// A stored set of all members; in a transaction.
    KOVSimCSetID Store(KOVSimCollection& collection);

  private:
    struct Span {
        int first;
        int last;
    };

    void Scatter(std::vector<Span>& spans, KOVSimCollection const& collection);
    std::vector<Span> Unpack() const;
    void Pack(std::vector<Span> const& spans);
    void Join(KOVSimCSet const& set);

    std::vector<OrdinalRun> m_runs;
    std::string m_packed;  ///< ascending runs: gap to the one before, length - 1, as varints
    std::unique_ptr<KOVSimCSet> m_scattered;  ///< further members; null for none
};

struct NamedSet {
    std::string name;  ///< as it was typed first
    SetMembers members;
    std::vector<std::size_t>
        deferred;  ///< numbers of the blocks of members that wait for the second pass
    bool resolving =
        false;  ///< such a block is being read: a reference to the set leads back to itself
    bool internal = false;  ///< marked so by all keywords that built it
    KOVSimCSetID stored;    ///< in the document, once it is written; its members are gone then
};

class SetTable;

/// What several tables of sets of one collection share: the runs that all of them may hold before
/// these are packed.
class SetPool {
  public:
    // 3 MB over all sets, and as much again while they grow.
    static constexpr std::size_t kMostRuns = 250'000;

    void Count(SetTable& table, std::size_t runs);
    bool IsFull() const { return m_runs > kMostRuns; }
    void FoldAll(KOVSimCollection const& collection);

  private:
    std::size_t m_runs = 0;
    std::vector<SetTable*> m_tables;  ///< those that hold runs
};

class SetTable {
  public:
    /// `pool` outlives the table.
    explicit SetTable(SetPool& pool) : m_pool(pool) {}
    SetTable(SetTable const&) = delete;
    SetTable& operator=(SetTable const&) = delete;

    /// The set of that name; null if there is none.
    NamedSet* Find(std::string_view name);
    /// The same, made if there is none.
    NamedSet& FindOrMake(std::string_view name);
    /// A further set, which no name finds.
    NamedSet& MakeUnnamed() { return m_sets.emplace_back(); }

    /// Adds members to a set, in bounded memory over all sets: `collection` holds all ordinals
    /// given so far.
    template <class Collection>
    void Add(NamedSet& set, int first, int count, int stride, Collection&& collection) {
        std::size_t const before = set.members.Runs();
        set.members.Add(first, count, stride);
        CountRuns(set.members.Runs() - before, collection);
    }
    /// Adds all members of one set to another.
    template <class Collection>
    void Join(NamedSet& set, NamedSet const& other, Collection&& collection) {
        std::size_t const before = set.members.Runs();
        set.members.Add(other.members);
        CountRuns(set.members.Runs() - before, collection);
    }

    std::size_t Size() const { return m_sets.size(); }
    /// All sets, in the order in which they came first.
    std::deque<NamedSet>& Sets() { return m_sets; }
    std::deque<NamedSet> const& Sets() const { return m_sets; }

  private:
    friend class SetPool;

    template <class Collection>
    void CountRuns(std::size_t runs, Collection&& collection) {
        if (runs == 0) return;
        m_pool.Count(*this, runs);
        if (m_pool.IsFull()) m_pool.FoldAll(collection());
    }
    void FoldAll(KOVSimCollection const& collection);

    SetPool& m_pool;
    std::deque<NamedSet> m_sets;
    std::unordered_map<std::string, NamedSet*> m_byName;  ///< key: the name in lower case
    std::size_t m_runs = 0;                               ///< since they were packed last
};

template <class F>
void SetMembers::ForRuns(F&& f) const {
    for (OrdinalRun const& run : m_runs) f(run.first, run.count, run.stride);
    for (Span const& span : Unpack()) f(span.first, span.last - span.first + 1, 1);
    if (m_scattered == nullptr) return;
    KOVSimCSetIterator at(*m_scattered);
    for (at.First(); !at.IsDone(); at.Next()) f(at.CurrentValue(), 1, 1);
}

}  // namespace kov::tool
