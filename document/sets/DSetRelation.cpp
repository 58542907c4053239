// What a dataset answers from the entries of a relational distribution. Entries are read in blocks
// of a bounded size, by transfers as any caller's, so that drawers that overlap and entries that
// were never written count as they do for readers.
#include <algorithm>
#include <cstdint>

#include "KOVSimTransfer.h"
#include "document/sets/DSetContent.h"
#include "document/sets/IndexSet.h"

namespace kov::sets {

namespace {

constexpr std::size_t BlockEntries = std::size_t{1} << 18;

/// Members as bits, for entries that come in any order.
class MemberBits {
  public:
    void Add(IndexSet const& set) {
        if (set.IsEmpty()) return;
        Reserve(set.Highest());
        set.ForEachRun([this](int first, int count) {
            for (int member = first; member != first + count; ++member) Add(member);
        });
    }
    void Add(int member) {
        if (member < 0) return;
        Reserve(member);
        m_words[Place(member)] |= Bit(member);
    }
    bool Has(int member) const {
        return member >= 0 && Place(member) < m_words.size() &&
               (m_words[Place(member)] & Bit(member)) != 0;
    }
    IndexSetPtr Set() const {
        std::vector<Run> runs;
        for (std::size_t word = 0; word < m_words.size(); ++word) {
            for (std::uint64_t bits = m_words[word]; bits != 0; bits &= bits - 1) {
                int const member = static_cast<int>(word * 64) + __builtin_ctzll(bits);
                if (!runs.empty() && runs.back().end == member)
                    ++runs.back().end;
                else
                    runs.push_back({member, member + 1});
            }
        }
        return IndexSet::FromRuns(runs.data(), runs.size());
    }

  private:
    static std::size_t Place(int member) { return static_cast<std::size_t>(member) / 64; }
    static std::uint64_t Bit(int member) { return std::uint64_t{1} << (member % 64); }
    void Reserve(int member) {
        if (Place(member) >= m_words.size())
            m_words.resize(std::max(Place(member) + 1, m_words.size() * 2));
    }
    std::vector<std::uint64_t> m_words;
};

/// Calls `visit(entries, firstRow, rows, columns)` for the entries of a piece, block of rows by
/// block of rows; `firstRow` is the location of the first of them in the piece's set of rows.
template <class Visit>
void ForEachBlock(KOVSimDistribution const& relation, KOVSimCompartment const& piece,
                  Visit&& visit) {
    IndexSet const& all = *piece.CSet(0).Storage();
    std::size_t const columns =
        piece.Size() > 1 ? static_cast<std::size_t>(piece.CSet(1).Size()) : 1;
    if (columns == 0) return;
    int const step = static_cast<int>(std::max<std::size_t>(1, BlockEntries / columns));
    std::vector<int> entries;
    std::vector<int> members;
    for (int first = 0; first < all.Size(); first += std::min(step, all.Size() - first)) {
        int const count = std::min(step, all.Size() - first);
        members.resize(static_cast<std::size_t>(count));
        all.CopyStored(first, count, members.data());
        entries.assign(static_cast<std::size_t>(count) * columns, -1);
        KOVSimTransfer transfer(relation);
        transfer.SetRead().SetBufferPadding(false);
        transfer.SetDim(0, KOVSimCSet(piece.CSet(0).CollectionID(),
                                      IndexSet::FromOrdered(members.data(), members.size())));
        if (piece.Size() > 1) transfer.SetDim(1, piece.CSet(1));
        transfer.CheckView();
        transfer.SetBuffer(0, entries.data(), entries.size() * sizeof(int))
            .ExecRead()
            .RelinquishBuffers();
        visit(entries, first, count, columns);
    }
}

}  // namespace

KOVSimCtation ConfinePieces(KOVSimDSet::Content const& content) {
    MemberBits wanted;
    wanted.Add(*content.range.Storage());
    std::vector<KOVSimCompartment> confined;
    for (KOVSimCompartment const& piece : content.Ctation().Compartments()) {
        std::vector<int> rows;
        MemberBits columnPlaces;
        ForEachBlock(
            *content.relation, piece,
            [&](std::vector<int> const& entries, int first, int count, std::size_t columns) {
                for (int row = 0; row < count; ++row) {
                    bool hit = false;
                    int const* const entry =
                        entries.data() + static_cast<std::size_t>(row) * columns;
                    for (std::size_t column = 0; column < columns; ++column) {
                        if (!wanted.Has(entry[column])) continue;
                        hit = true;
                        columnPlaces.Add(static_cast<int>(column));
                    }
                    if (hit) rows.push_back(piece.CSet(0)[first + row]);
                }
            });
        if (rows.empty()) continue;
        KOVBasVector<KOVSimCSet> sets;
        sets.PushBack(KOVSimCSet(piece.CSet(0).CollectionID(),
                                 IndexSet::FromMembers(rows.data(), rows.size())));
        if (piece.Size() > 1) {
            std::vector<int> columns;
            columnPlaces.Set()->ForEachRun([&](int first, int count) {
                for (int place = first; place != first + count; ++place)
                    columns.push_back(piece.CSet(1)[place]);
            });
            sets.PushBack(KOVSimCSet(piece.CSet(1).CollectionID(),
                                     IndexSet::FromMembers(columns.data(), columns.size())));
        }
        confined.emplace_back(sets);
    }
    KOVSimCtation::Array compartments(static_cast<int>(confined.size()));
    for (std::size_t i = 0; i < confined.size(); ++i)
        compartments.Get(static_cast<int>(i)) = confined[i];
    return KOVSimCtation(compartments);
}

KOVSimCSet CollectRange(KOVSimDSet::Content const& content) {
    MemberBits found;
    for (KOVSimCompartment const& piece : content.Ctation().Compartments()) {
        ForEachBlock(*content.relation, piece,
                     [&](std::vector<int> const& entries, int, int, std::size_t) {
                         for (int const entry : entries) found.Add(entry);
                     });
    }
    KOVSimCSet const all(content.relation->Range().Collection(), found.Set());
    return content.confined ? all.Intersection(content.range) : all;
}

}  // namespace kov::sets
