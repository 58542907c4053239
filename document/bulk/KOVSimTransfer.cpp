#include "KOVSimTransfer.h"

#include <climits>
#include <optional>
#include <string>
#include <vector>

#include "KOVSimCollection.h"
#include "KOVSimException.h"
#include "document/bulk/DrawerStore.h"
#include "document/bulk/View.h"

using kov::bulk::Drawer;
using kov::bulk::DrawerStore;
using kov::bulk::View;
using kov::sets::IndexSet;
using kov::sets::IndexSetPtr;

/// What the setters gave, and what CheckView made of it.
struct KOVSimTransfer::Plan {
    enum class Direction { None, Read, Write };

    KOVSimDistribution distribution;
    Direction direction = Direction::None;
    std::optional<KOVSimDrawerID> drawer;
    std::optional<KOVSimCSet> dims[2];
    std::optional<KOVSimCSet> extension;
    bool autoExtend = false;
    bool make = false;
    std::vector<int> chunks;
    int growing = -1;
    KOVSimTypeKey bufferType = 0;

    bool checked = false;
    int generation = 0;  // of the drawers, when the view was checked
    View view;
    int target = 0;  // number of the drawer that is written; 0: to be made
    void* buffer = nullptr;
    bool readOnlyBuffer = false;
    KOVSimDrawerID made;

    kov::store::Context& Context() const {
        return kov::store::Context::Of(distribution.ID().ContextID());
    }
    DrawerStore& Drawers() const { return DrawerStore::Of(Context()); }
    KOVSimDrawerID DrawerID(int number) const;

    [[noreturn]] void Refuse(std::string const& why) const;
    void Change();
    void Check();
    void CheckAgain();
    void CheckDim(int dim);
    void CheckChunks() const;
    void CheckTarget();
    void CheckHeld(Drawer& target) const;
    int HolderOfAll() const;
    void Make();
    void ReadConverted(Drawer& from, double* out) const;
};

using Plan = KOVSimTransfer::Plan;

KOVSimDrawerID Plan::DrawerID(int number) const {
    KOVSimDynamicDataID data;
    data.parent = distribution.ID().Minor();
    data.minor = number;
    return KOVSimDrawerID(KOVSimDynamicID(KOVSimCategoryDrawer, distribution.ID().ContextID(), data,
                                          distribution.ID().TypeID(), 0));
}

void Plan::Refuse(std::string const& why) const {
    std::string text = direction == Direction::Read    ? "read"
                       : direction == Direction::Write ? "write"
                                                       : "transfer";
    if (make) text = "make a drawer";
    text = "cannot " + text + ": distribution " + std::to_string(distribution.ID().Minor());
    if (drawer) text += ", drawer " + std::to_string(drawer->Minor());
    KOVSimException::ThrowText((text + ": " + why).c_str());
}

void Plan::Change() {
    if (checked) Refuse("the view has been checked already; a setter must come before CheckView");
}

namespace {

std::string Describe(IndexSet const& members) {
    if (members.IsEmpty()) return "no member";
    std::string text = members.Size() == 1
                           ? "member "
                           : std::to_string(members.Size()) + " members, the first of them ";
    return text + std::to_string(members.Lowest());
}

}  // namespace

void Plan::CheckDim(int dim) {
    std::string const name = "dimension " + std::to_string(dim);
    if (!dims[dim]) Refuse(name + " of the view was not set");
    KOVSimCollectionID const grid = distribution.Grid().Collections().ConstGet(dim);
    KOVSimCSet const& set = *dims[dim];
    if (set.CollectionID().IsNull()) {
        if (!set.IsEmpty()) Refuse("the set given for " + name + " is tied to no collection");
    } else if (set.CollectionID() != grid) {
        Refuse("the set given for " + name + " is of collection " +
               std::to_string(set.CollectionID().Minor()) + ", and the grid has collection " +
               std::to_string(grid.Minor()));
    }
    view.dims[dim] = set.Storage();
    if (!set.IsEmpty() && set.Storage()->Highest() >= KOVSimCollection(grid).Space())
        Refuse("the set given for " + name + " names member " +
               std::to_string(set.Storage()->Highest()) + " of " +
               std::to_string(KOVSimCollection(grid).Space()));
    if (direction != Direction::Read && !set.IsAscending() &&
        set.Storage()->Ascending()->Size() != set.Size())
        Refuse("the set given for " + name + " names a member twice");
}

void Plan::CheckChunks() const {
    if (chunks.empty()) {
        if (growing >= 0) Refuse("only a chunked drawer can grow");
        return;
    }
    if (static_cast<int>(chunks.size()) != distribution.NumDimensions())
        Refuse(std::to_string(chunks.size()) + " chunk sizes were given for " +
               std::to_string(distribution.NumDimensions()) + " dimensions");
    for (int chunk : chunks)
        if (chunk < 0) Refuse("a chunk size is negative");
    if (growing >= distribution.NumDimensions())
        Refuse("dimension " + std::to_string(growing) + " cannot grow: the grid has " +
               std::to_string(distribution.NumDimensions()));
}

void Plan::CheckHeld(Drawer& to) const {
    for (int dim = 0; dim < view.dimensions; ++dim) {
        bool const rowDim = dim == to.Info().RowDim();
        if (rowDim && to.Info().growing >= 0 && (autoExtend || extension)) continue;
        IndexSetPtr const held = rowDim ? to.RowMembers() : to.Columns();
        IndexSetPtr const missing = kov::sets::Difference(view.dims[dim]->Ascending(), held);
        if (!missing->IsEmpty())
            Refuse("dimension " + std::to_string(dim) + " of the drawer does not hold " +
                   Describe(*missing) +
                   (to.Info().growing == dim ? ", and the write was not told to extend it"
                                             : ", and it cannot grow there"));
    }
}

int Plan::HolderOfAll() const {
    std::vector<int> const& drawers = Drawers().DrawersOf(distribution.ID().Minor());
    for (std::size_t i = drawers.size(); i-- > 0;) {
        Drawer& candidate = Drawers().Get(drawers[i]);
        bool holds = true;
        for (int dim = 0; dim < view.dimensions && holds; ++dim) {
            IndexSetPtr const held =
                dim == candidate.Info().RowDim() ? candidate.RowMembers() : candidate.Columns();
            holds = kov::sets::IsSubset(*view.dims[dim]->Ascending(), *held);
        }
        if (holds) return drawers[i];
    }
    return 0;
}

void Plan::CheckTarget() {
    if (make) {
        if (drawer) Refuse("a drawer was named although one is to be made");
        CheckChunks();
        return;
    }
    if (drawer) {
        if (drawer->IsNull() || drawer->Parent() != distribution.ID().Minor())
            Refuse("the drawer belongs to another distribution");
        target = drawer->Minor();
        Drawer& named = Drawers().Get(target);
        if (named.Info().distribution != distribution.ID().Minor())
            Refuse("the drawer belongs to another distribution");
        if (direction == Direction::Write) CheckHeld(named);
        return;
    }
    if (direction != Direction::Write) return;
    target = HolderOfAll();
    if (target == 0) Refuse("no single drawer holds the view, and none was named");
}

void Plan::Make() {
    std::vector<IndexSetPtr> members;
    for (int dim = 0; dim < view.dimensions; ++dim) members.push_back(view.dims[dim]->Ascending());
    target = Drawers().Create(distribution.ID().Minor(), members, chunks, growing).Info().number;
    made = DrawerID(target);
}

// Integers into a buffer of doubles: through a buffer of integers preset with a mark for each entry
// that a drawer holds.
void Plan::ReadConverted(Drawer& from, double* out) const {
    auto const n = static_cast<std::size_t>(view.Entries());
    std::vector<int> low(n, INT_MIN);
    std::vector<int> high(n, INT_MAX);
    kov::bulk::Gather(view, from, reinterpret_cast<char*>(low.data()));
    kov::bulk::Gather(view, from, reinterpret_cast<char*>(high.data()));
    for (std::size_t i = 0; i < n; ++i)
        if (low[i] == high[i]) out[i] = low[i];
}

KOVSimTransfer::KOVSimTransfer(KOVSimDistribution distribution) : m_plan(std::make_unique<Plan>()) {
    m_plan->distribution = std::move(distribution);
}

KOVSimTransfer::~KOVSimTransfer() = default;

KOVSimTransfer& KOVSimTransfer::SetRead() {
    m_plan->Change();
    m_plan->direction = Plan::Direction::Read;
    return *this;
}

KOVSimTransfer& KOVSimTransfer::SetWrite() {
    m_plan->Change();
    m_plan->direction = Plan::Direction::Write;
    return *this;
}

KOVSimTransfer& KOVSimTransfer::SetBufferPadding(bool padding) {
    m_plan->Change();
    if (padding) m_plan->Refuse("buffer padding is not to be had: preset the buffer instead");
    return *this;
}

KOVSimTransfer& KOVSimTransfer::SetDrawer(KOVSimDrawerID const& drawer) {
    m_plan->Change();
    m_plan->drawer = drawer;
    return *this;
}

KOVSimTransfer& KOVSimTransfer::SetDim(int dim, KOVSimCSet const& members) {
    m_plan->Change();
    if (dim < 0 || dim >= m_plan->distribution.NumDimensions())
        m_plan->Refuse("there is no dimension " + std::to_string(dim) + " in a grid of " +
                       std::to_string(m_plan->distribution.NumDimensions()));
    m_plan->dims[dim] = members;
    return *this;
}

KOVSimTransfer& KOVSimTransfer::SetDim(int dim, KOVSimCSetID const& members) {
    return SetDim(dim, KOVSimCSet(members));
}

KOVSimTransfer& KOVSimTransfer::SetDimExtension(KOVSimCSetID const& members) {
    m_plan->Change();
    m_plan->extension = KOVSimCSet(members);
    return *this;
}

KOVSimTransfer& KOVSimTransfer::SetAutoExtend() {
    m_plan->Change();
    m_plan->autoExtend = true;
    return *this;
}

KOVSimTransfer& KOVSimTransfer::SetMakeNewDrawer() {
    m_plan->Change();
    m_plan->make = true;
    m_plan->chunks.clear();
    return *this;
}

KOVSimTransfer& KOVSimTransfer::SetMakeNewDrawerChunked(
    KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> const& chunks) {
    m_plan->Change();
    m_plan->make = true;
    m_plan->chunks.clear();
    for (int i = 0; i < chunks.Size(); ++i) m_plan->chunks.push_back(chunks.ConstGet(i));
    if (m_plan->chunks.empty()) m_plan->Refuse("no chunk sizes were given for a chunked drawer");
    return *this;
}

KOVSimTransfer& KOVSimTransfer::SetExtendableDim(int dim) {
    m_plan->Change();
    if (dim < 0) m_plan->Refuse("dimension " + std::to_string(dim) + " cannot grow");
    m_plan->growing = dim;
    return *this;
}

KOVSimTransfer& KOVSimTransfer::SetBufferType(KOVSimTypeKey key) {
    m_plan->Change();
    m_plan->bufferType = key;
    return *this;
}

void Plan::Check() {
    if (distribution.ID().IsNull()) Refuse("the distribution is null");
    if (direction == Direction::None && !make)
        Refuse("neither reading nor writing nor making was asked for");
    if (direction == Direction::Read && make) Refuse("a read makes no drawer");
    kov::bulk::DistributionInfo const& info = Drawers().Distribution(distribution.ID().Minor());
    view = View();
    view.dimensions = info.dimensions;
    view.entryBytes = info.EntryBytes();
    view.dims[1] = IndexSet::Range(0, 1);
    if (extension) {
        if (!drawer || direction != Direction::Write)
            Refuse("an extension needs a write to a named drawer");
        if (drawer->Parent() != distribution.ID().Minor())
            Refuse("the drawer belongs to another distribution");
        Drawer const& extended = Drawers().Get(drawer->Minor());
        int const dimension = extended.Info().growing;
        if (dimension < 0) Refuse("the drawer cannot grow, and an extension was given");
        dims[dimension] = extension;
        // The other dimension defaults to all that the drawer has there.
        for (int dim = 0; dim < info.dimensions; ++dim)
            if (!dims[dim])
                dims[dim] =
                    KOVSimCSet(distribution.Grid().Collections().ConstGet(dim), extended.Columns());
    }
    for (int dim = 0; dim < info.dimensions; ++dim) CheckDim(dim);
    int const bufferEntry = bufferType == KOVSimTypeKeyDouble ? 8 : view.entryBytes;
    if (bufferType != 0 && bufferType != info.key &&
        !(bufferType == KOVSimTypeKeyDouble && direction == Direction::Read))
        Refuse("entries of type " + std::to_string(info.key) +
               " cannot be moved through a buffer of type " + std::to_string(bufferType));
    if (view.Entries() > INT_MAX / bufferEntry)
        Refuse("the view has " + std::to_string(view.Entries()) + " entries of " +
               std::to_string(bufferEntry) +
               " bytes, and one transfer moves less than 2 GiB: take fewer members at a time");
    CheckTarget();
    generation = Drawers().Generation();
    checked = true;
}

// Drawers and members that the view was checked against may have gone with a dropped transaction.
void Plan::CheckAgain() {
    if (generation == Drawers().Generation()) return;
    target = 0;
    Check();
}

KOVSimTransfer& KOVSimTransfer::CheckView() {
    m_plan->Check();
    return *this;
}

int KOVSimTransfer::RequiredBufferSize(int) const {
    if (!m_plan->checked) m_plan->Refuse("CheckView must come before RequiredBufferSize");
    int const entry = m_plan->bufferType == KOVSimTypeKeyDouble ? 8 : m_plan->view.entryBytes;
    return static_cast<int>(m_plan->view.Entries() * entry);
}

KOVSimTransfer& KOVSimTransfer::SetBuffer(int buffer, void* data, unsigned long bytes) {
    SetBuffer(buffer, static_cast<void const*>(data), bytes);
    m_plan->readOnlyBuffer = false;
    return *this;
}

KOVSimTransfer& KOVSimTransfer::SetBuffer(int buffer, void const* data, unsigned long bytes) {
    auto const required = static_cast<unsigned long>(RequiredBufferSize(buffer));
    if (bytes != required)
        m_plan->Refuse("the buffer has " + std::to_string(bytes) + " bytes, and the view takes " +
                       std::to_string(required));
    if (!data && bytes > 0) m_plan->Refuse("the buffer is null");
    m_plan->buffer = const_cast<void*>(data);
    m_plan->readOnlyBuffer = true;
    return *this;
}

KOVSimTransfer& KOVSimTransfer::ExecRead() {
    Plan& plan = *m_plan;
    if (!plan.checked || plan.direction != Plan::Direction::Read)
        plan.Refuse("ExecRead needs SetRead and CheckView");
    plan.CheckAgain();
    if (plan.view.Entries() == 0) return *this;
    if (!plan.buffer || plan.readOnlyBuffer) plan.Refuse("no buffer was set to read into");
    DrawerStore& drawers = plan.Drawers();
    int const key = drawers.Distribution(plan.distribution.ID().Minor()).key;
    bool const convert = plan.bufferType == KOVSimTypeKeyDouble && key != KOVSimTypeKeyDouble;
    auto read = [&](Drawer& drawer) {
        if (!kov::sets::Intersects(*plan.view.dims[drawer.Info().RowDim()]->Ascending(),
                                   *drawer.RowMembers()))
            return;
        if (convert)
            plan.ReadConverted(drawer, static_cast<double*>(plan.buffer));
        else
            kov::bulk::Gather(plan.view, drawer, static_cast<char*>(plan.buffer));
    };
    if (plan.drawer) {
        read(drawers.Get(plan.target));
        return *this;
    }
    // In order of making, so that of overlapping drawers the last one serves.
    std::vector<int> const numbers = drawers.DrawersOf(plan.distribution.ID().Minor());
    for (int number : numbers) read(drawers.Get(number));
    return *this;
}

KOVSimTransfer& KOVSimTransfer::ExecMake() {
    Plan& plan = *m_plan;
    if (!plan.checked || !plan.make)
        plan.Refuse("ExecMake needs SetMakeNewDrawer or SetMakeNewDrawerChunked, and CheckView");
    if (plan.target != 0) plan.Refuse("the drawer was made already");
    plan.CheckAgain();
    plan.Make();
    return *this;
}

KOVSimTransfer& KOVSimTransfer::ExecWrite() {
    Plan& plan = *m_plan;
    if (!plan.checked || plan.direction != Plan::Direction::Write)
        plan.Refuse("ExecWrite needs SetWrite and CheckView");
    plan.Context().RequireTransaction("write bulk numbers");
    plan.CheckAgain();
    if (plan.view.Entries() > 0 && !plan.buffer) plan.Refuse("no buffer was set to write from");
    if (plan.target == 0) plan.Make();
    Drawer& drawer = plan.Drawers().Get(plan.target);
    plan.Drawers().Writing(drawer);
    if (drawer.Info().growing >= 0 && plan.view.Entries() == 0)
        drawer.Extend(plan.view.dims[drawer.Info().RowDim()]->Ascending());
    else
        kov::bulk::Scatter(plan.view, drawer, static_cast<char const*>(plan.buffer));
    plan.Drawers().Written(drawer);
    plan.made = plan.DrawerID(plan.target);
    return *this;
}

KOVSimDrawerID KOVSimTransfer::DrawerID() const { return m_plan->made; }

KOVSimTransfer& KOVSimTransfer::RelinquishBuffers() {
    m_plan->buffer = nullptr;
    return *this;
}
