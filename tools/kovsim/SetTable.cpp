#include "SetTable.h"

#include <algorithm>
#include <utility>

#include "Names.h"

namespace kov::tool {
namespace {

// Runs of so many members become sets of the collection as ranges; what is shorter is written out.
constexpr long long kLongRun = 1 << 16;
// More spans than these are better kept by a set of the collection.
constexpr std::size_t kMostPacked = 100'000;
constexpr std::size_t kBatch = std::size_t{1} << 20;

void PutNumber(std::string& bytes, unsigned number) {
    for (; number >= 0x80; number >>= 7U) bytes += static_cast<char>(number | 0x80U);
    bytes += static_cast<char>(number);
}

unsigned TakeNumber(char const*& at) {
    unsigned number = 0;
    for (unsigned shift = 0;; shift += 7) {
        auto const byte = static_cast<unsigned char>(*at++);
        number |= (byte & 0x7fU) << shift;
        if (byte < 0x80) return number;
    }
}

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

void SetMembers::Add(SetMembers const& other) {
    m_runs.insert(m_runs.end(), other.m_runs.begin(), other.m_runs.end());
    for (Span const& span : other.Unpack()) {
        m_runs.push_back({span.first, span.last - span.first + 1, 1});
    }
    if (other.m_scattered != nullptr) Join(*other.m_scattered);
}

void SetMembers::Join(KOVSimCSet const& set) {
    if (m_scattered == nullptr) {
        m_scattered = std::make_unique<KOVSimCSet>(set);
    } else {
        *m_scattered = m_scattered->Union(set);
    }
}

std::vector<SetMembers::Span> SetMembers::Unpack() const {
    std::vector<Span> spans;
    char const* at = m_packed.data();
    char const* const end = at + m_packed.size();
    int next = 0;
    while (at != end) {
        int const first = next + static_cast<int>(TakeNumber(at));
        int const last = first + static_cast<int>(TakeNumber(at));
        spans.push_back({first, last});
        next = last;
    }
    return spans;
}

void SetMembers::Pack(std::vector<Span> const& spans) {
    std::string packed;
    int next = 0;
    for (Span const& span : spans) {
        PutNumber(packed, static_cast<unsigned>(span.first - next));
        PutNumber(packed, static_cast<unsigned>(span.last - span.first));
        next = span.last;
    }
    packed.shrink_to_fit();
    m_packed = std::move(packed);
}

// Moves spans into a set of the collection.
void SetMembers::Scatter(std::vector<Span>& spans, KOVSimCollection const& collection) {
    std::vector<int> members;
    auto const join = [&] {
        if (members.empty()) return;
        int const count = static_cast<int>(members.size());
        Join(collection.CreateVolatileCSet(members.data(), count, false));
        members.clear();
    };
    for (Span const& span : spans) {
        int const count = span.last - span.first + 1;
        if (count >= kLongRun) {
            Join(collection.CreateVolatileCSetStrided(span.first, count, 1, 1));
            continue;
        }
        for (int i = 0; i < count; ++i) members.push_back(span.first + i);
        if (members.size() >= kBatch) join();
    }
    join();
    spans.clear();
}

void SetMembers::Fold(KOVSimCollection const& collection) {
    std::vector<Span> spans = Unpack();
    for (OrdinalRun const& run : m_runs) {
        if (run.stride == 1) {
            spans.push_back({run.first, run.first + run.count - 1});
        } else if (run.count >= kLongRun) {
            Join(collection.CreateVolatileCSetStrided(run.first, run.count, run.stride, 1));
        } else {
            for (int i = 0; i < run.count; ++i) {
                int const member = run.first + i * run.stride;
                spans.push_back({member, member});
            }
        }
        if (spans.size() >= 2 * kBatch) Scatter(spans, collection);
    }
    std::vector<OrdinalRun>().swap(m_runs);
    std::sort(spans.begin(), spans.end(),
              [](Span const& a, Span const& b) { return a.first < b.first; });
    std::size_t kept = 0;
    for (Span const& span : spans) {
        if (kept > 0 && span.first <= static_cast<long long>(spans[kept - 1].last) + 1) {
            spans[kept - 1].last = std::max(spans[kept - 1].last, span.last);
        } else {
            spans[kept++] = span;
        }
    }
    spans.resize(kept);
    if (spans.size() > kMostPacked) Scatter(spans, collection);
    Pack(spans);
}

KOVSimCSet SetMembers::All(KOVSimCollection const& collection) const {
    if (m_runs.size() == 1 && m_packed.empty() && m_scattered == nullptr) {
        OrdinalRun const& run = m_runs.front();
        return collection.CreateVolatileCSetStrided(run.first, run.count, run.stride, 1);
    }
    SetMembers copy;
    copy.Add(*this);
    copy.Fold(collection);
    std::vector<Span> spans = copy.Unpack();
    copy.Scatter(spans, collection);
    return copy.m_scattered == nullptr ? KOVSimCSet(collection.ID()) : *copy.m_scattered;
}

KOVSimCSetID SetMembers::Store(KOVSimCollection& collection) {
    if (m_runs.size() == 1 && m_packed.empty() && m_scattered == nullptr) {
        OrdinalRun const& run = m_runs.front();
        return collection.CreateCSetStrided(run.first, run.count, run.stride, 1);
    }
    Fold(collection);
    std::vector<Span> spans = Unpack();
    if (m_scattered == nullptr) {
        long long count = 0;
        for (Span const& span : spans) count += span.last - span.first + 1;
        if (count < kLongRun) {
            std::vector<int> members;
            members.reserve(static_cast<std::size_t>(count));
            for (Span const& span : spans) {
                for (int i = span.first; i <= span.last; ++i) members.push_back(i);
            }
            return collection.CreateCSet(members.data(), static_cast<int>(count), false);
        }
    }
    Scatter(spans, collection);
    m_packed.clear();
    return m_scattered->RegisterWithCollection();
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

void SetPool::Count(SetTable& table, std::size_t runs) {
    if (table.m_runs == 0) m_tables.push_back(&table);
    table.m_runs += runs;
    m_runs += runs;
}

void SetPool::FoldAll(KOVSimCollection const& collection) {
    for (SetTable* const table : m_tables) table->FoldAll(collection);
    m_tables.clear();
    m_runs = 0;
}

void SetTable::FoldAll(KOVSimCollection const& collection) {
    for (NamedSet& set : m_sets) {
        if (set.members.Runs() > 0) set.members.Fold(collection);
    }
    m_runs = 0;
}

}  // namespace kov::tool
