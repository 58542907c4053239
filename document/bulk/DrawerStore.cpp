#include "document/bulk/DrawerStore.h"

#include <climits>

#include "KOVSimException.h"
#include "document/sets/SetStore.h"
#include "document/store/Catalogue.h"

namespace kov::bulk {

using sets::IndexSet;
using sets::IndexSetPtr;

namespace {
constexpr std::size_t MaxGatheredBytes = std::size_t{64} << 20;

[[noreturn]] void NoSuch(char const* kind, int number) {
    KOVSimException::ThrowText(
        ("there is no " + std::string(kind) + " number " + std::to_string(number)).c_str());
}

[[noreturn]] void Damaged(std::string const& what, std::string const& error = {}) {
    KOVSimException::ThrowText(
        (what + ": its description is damaged" + (error.empty() ? "" : ": " + error)).c_str());
}

// Numbers of a row, none of which may be cut to 32 bits unseen.
class Numbers {
  public:
    explicit Numbers(store::Statement const& row) : m_row(row) {}
    int At(int column, std::int64_t least) {
        using Kind = store::Statement::Kind;
        std::int64_t const value = m_row.Int(column);  // of a null: 0
        Kind const kind = m_row.KindOf(column);
        m_sound = m_sound && value >= least && value <= INT_MAX &&
                  (kind == Kind::Integer || kind == Kind::Null);
        return m_sound ? static_cast<int>(value) : 0;
    }
    bool Sound() const { return m_sound; }

  private:
    store::Statement const& m_row;
    bool m_sound = true;
};
}  // namespace

DrawerStore::DrawerStore(store::Context& context) : m_context(context) {
    sets::SetStore::Of(context).SetGrowingMembers([this](int set) { return GrowingMembers(set); });
}

DistributionInfo const& DrawerStore::Distribution(int number) {
    auto const found = m_distributions.find(number);
    if (found != m_distributions.end()) return found->second;
    m_context.RequireNumber(number);
    store::Statement query(m_context.Cat(),
                           "SELECT o.type, d.key, d.range, d.dim0, d.dim1 FROM distributions d "
                           "JOIN objects o USING(number) "
                           "WHERE number = ?");
    query.Bind(number);
    if (!query.Step()) NoSuch("distribution", number);
    DistributionInfo info;
    info.number = number;
    Numbers numbers(query);
    info.type = numbers.At(0, -1);
    info.key = numbers.At(1, 0);
    info.range = numbers.At(2, 0);
    info.dimensions = query.IsNull(4) ? 1 : 2;
    info.collections[0] = numbers.At(3, 1);
    info.collections[1] = numbers.At(4, info.dimensions - 1);
    if (!numbers.Sound()) Damaged("distribution " + std::to_string(number));
    if (info.key != 2 && info.key != 4 && info.key != 7)
        KOVSimException::ThrowText(("distribution " + std::to_string(number) +
                                    ": unknown entry type " + std::to_string(info.key))
                                       .c_str());
    return m_distributions.emplace(number, info).first->second;
}

int DrawerStore::CreateDistribution(KOVSimTypeID type, int key, int range,
                                    std::vector<int> const& collections) {
    m_context.RequireTransaction("create a distribution");
    int const number = m_context.NewNumber();
    store::Statement object(m_context.Cat(), "INSERT INTO objects VALUES(?, ?, ?, NULL)");
    object.Bind(number).Bind(KOVSimCategoryDistribution).Bind(type).Run();
    store::Statement insert(m_context.Cat(), "INSERT INTO distributions VALUES(?, ?, ?, ?, ?)");
    insert.Bind(number).Bind(key);
    if (range != 0)
        insert.Bind(range);
    else
        insert.BindNull();
    insert.Bind(collections[0]);
    if (collections.size() > 1)
        insert.Bind(collections[1]);
    else
        insert.BindNull();
    insert.Run();
    return number;
}

std::vector<int>& DrawerStore::DrawerList(int distribution) {
    auto const found = m_drawersOf.find(distribution);
    if (found != m_drawersOf.end()) return found->second;
    Distribution(distribution);
    std::vector<int> drawers;
    store::Statement query(m_context.Cat(),
                           "SELECT number FROM drawers WHERE distribution = ? ORDER BY number");
    query.Bind(distribution);
    while (query.Step()) drawers.push_back(static_cast<int>(query.Int(0)));
    return m_drawersOf.emplace(distribution, std::move(drawers)).first->second;
}

Drawer& DrawerStore::Get(int number) {
    auto const found = m_drawers.find(number);
    if (found != m_drawers.end()) return *found->second;
    if (!m_loading.insert(number).second) Damaged("drawer " + std::to_string(number));
    try {
        std::unique_ptr<Drawer> loaded = Load(number);
        m_loading.erase(number);
        return *(m_drawers[number] = std::move(loaded));
    } catch (...) {
        m_loading.erase(number);
        throw;
    }
}

std::unique_ptr<Drawer> DrawerStore::Load(int number) {
    m_context.RequireNumber(number);
    store::Statement query(m_context.Cat(),
                           "SELECT distribution, growing, chunk0, chunk1, set0, set1, row_bytes, "
                           "rows, unwritten FROM drawers "
                           "WHERE number = ?");
    query.Bind(number);
    if (!query.Step()) NoSuch("drawer", number);
    DrawerInfo info;
    info.number = number;
    Numbers numbers(query);
    info.distribution = numbers.At(0, 1);
    info.growing = numbers.At(1, -1);
    info.chunked = !query.IsNull(2);
    info.chunks[0] = numbers.At(2, 0);
    info.chunks[1] = numbers.At(3, 0);
    info.sets[0] = numbers.At(4, 0);
    info.sets[1] = numbers.At(5, 0);
    std::int64_t const rowBytes = query.Int(6);
    int const rows = numbers.At(7, 0);
    std::string const name =
        "drawer " + std::to_string(number) + " of distribution " + std::to_string(query.Int(0));
    if (!numbers.Sound()) Damaged(name);
    DistributionInfo const& distribution = Distribution(info.distribution);
    info.dimensions = distribution.dimensions;
    info.entryBytes = distribution.EntryBytes();
    std::string error;
    std::string_view const blob = query.Blob(8);
    IndexSetPtr const unwritten =
        blob.empty() ? IndexSet::Empty() : sets::Decode(blob.data(), blob.size(), &error);
    if (info.growing >= info.dimensions || !unwritten) Damaged(name, error);
    sets::SetStore& setStore = sets::SetStore::Of(m_context);
    IndexSetPtr const rowMembers = info.growing < 0 ? setStore.Load(info.sets[0]) : nullptr;
    IndexSetPtr const columns =
        info.dimensions == 1 ? IndexSet::Range(0, 1) : setStore.Load(info.sets[1 - info.RowDim()]);
    // A drawer is made with ascending sets.
    if (!columns->IsAscending() || !unwritten->IsAscending() ||
        (rowMembers && !rowMembers->IsAscending()))
        Damaged(name, "a set of it is not ascending");
    if (info.growing >= 0) m_growingSets[info.sets[info.growing]] = number;
    return std::make_unique<Drawer>(m_context, info, rowMembers, columns, rows, rowBytes,
                                    unwritten);
}

Drawer& DrawerStore::Create(int distribution, std::vector<IndexSetPtr> const& members,
                            std::vector<int> const& chunks, int growing) {
    m_context.RequireTransaction("create a drawer");
    DistributionInfo const& owner = Distribution(distribution);
    std::vector<int>& drawers = DrawerList(distribution);
    sets::SetStore& setStore = sets::SetStore::Of(m_context);
    DrawerInfo info;
    info.number = m_context.NewNumber();
    info.distribution = distribution;
    info.growing = growing;
    info.chunked = !chunks.empty();
    info.dimensions = owner.dimensions;
    info.entryBytes = owner.EntryBytes();
    for (int d = 0; d < info.dimensions; ++d) {
        auto const at = static_cast<std::size_t>(d);
        if (info.chunked) info.chunks[d] = chunks[at];
        info.sets[d] = d == growing ? setStore.CreateGrowing(owner.collections[d])
                                    : setStore.Create(owner.collections[d], members[at]);
    }
    IndexSetPtr const& rowMembers = members[static_cast<std::size_t>(info.RowDim())];
    IndexSetPtr const columns = info.dimensions == 1
                                    ? IndexSet::Range(0, 1)
                                    : members[static_cast<std::size_t>(1 - info.RowDim())];
    auto drawer = std::make_unique<Drawer>(m_context, info, rowMembers, columns);

    store::Statement insert(m_context.Cat(),
                            "INSERT INTO drawers VALUES(?, ?, ?, ?, ?, ?, ?, ?, 0, x'')");
    insert.Bind(info.number).Bind(distribution).Bind(growing);
    for (int d = 0; d < 2; ++d) {
        if (info.chunked && d < info.dimensions)
            insert.Bind(info.chunks[d]);
        else
            insert.BindNull();
    }
    insert.Bind(info.sets[0]);
    if (info.dimensions > 1)
        insert.Bind(info.sets[1]);
    else
        insert.BindNull();
    insert.Bind(drawer->RowBytes()).Run();

    Drawer& made = *(m_drawers[info.number] = std::move(drawer));
    if (growing >= 0) m_growingSets[info.sets[growing]] = info.number;
    Writing(made);
    drawers.push_back(info.number);
    return made;
}

IndexSetPtr DrawerStore::GrowingMembers(int set) {
    auto const found = m_growingSets.find(set);
    if (found != m_growingSets.end()) return Get(found->second).RowMembers();
    store::Statement query(
        m_context.Cat(),
        "SELECT number FROM drawers WHERE growing = 0 AND set0 = ?1 OR growing = 1 AND set1 = ?1");
    query.Bind(set);
    if (!query.Step()) NoSuch("drawer that owns set", set);
    Numbers numbers(query);
    int const drawer = numbers.At(0, 1);
    if (!numbers.Sound()) NoSuch("drawer that owns set", set);
    m_growingSets[set] = drawer;
    return Get(drawer).RowMembers();
}

void DrawerStore::Writing(Drawer& drawer) {
    m_gathering.try_emplace(drawer.Info().number, Gathering{&drawer, 0});
}

void DrawerStore::Written(Drawer& drawer) {
    Gathering& entry = m_gathering.at(drawer.Info().number);
    m_gatheredBytes += drawer.Blocks().PendingBytes() - entry.bytes;
    entry.bytes = drawer.Blocks().PendingBytes();
    if (m_gatheredBytes <= MaxGatheredBytes) return;
    for (auto& each : m_gathering) {
        each.second.drawer->Flush();
        each.second.bytes = 0;
    }
    m_gatheredBytes = 0;
}

void DrawerStore::BeforeCommit() {
    for (auto const& entry : m_gathering) entry.second.drawer->Save();
    m_gathering.clear();
    m_gatheredBytes = 0;
}

void DrawerStore::AfterRollback() {
    ++m_generation;
    m_gathering.clear();
    m_gatheredBytes = 0;
    m_drawers.clear();
    m_drawersOf.clear();
    m_distributions.clear();
    m_growingSets.clear();
}

void DrawerStore::AfterRefresh() { AfterRollback(); }

void DrawerStore::Verify(std::function<void(std::string const&)> const& finding) {
    std::vector<int> numbers;
    {
        store::Statement query(m_context.Cat(), "SELECT number FROM drawers ORDER BY number");
        while (query.Step()) numbers.push_back(static_cast<int>(query.Int(0)));
    }
    for (int number : numbers) {
        try {
            Get(number).Check(finding);
        } catch (KOVSimException const& fault) {
            finding(fault.what());
        }
    }
}

}  // namespace kov::bulk
