#include "document/store/Context.h"

#include <algorithm>
#include <atomic>
#include <limits>

#include "document/store/CatalogueVfs.h"
#include "document/store/ContextOpened.h"
#include "document/store/Errors.h"
#include "document/store/Forks.h"
#include "document/store/Reference.h"

namespace kov::store {

Context::Context() : m_forks(ForkGeneration()) {}

Context::~Context() { Close(); }

Context* Context::Find(KOVSimContextID id) {
    Context* const context = Registered(id);
    return context && context->m_forks == ForkGeneration() ? context : nullptr;
}

Context& Context::Of(KOVSimContextID id) {
    if (Context* const context = Find(id)) [[likely]]
        return *context;
    if (id.IsNull()) Fail("the identity belongs to no document");
    if (Registered(id)) {
        Fail(Registered(id)->Name() +
             " was opened by the process that this one was forked from, and cannot be used here");
    }
    Fail(WasRegistered(id) ? "the document of the identity is closed"
                           : "the identity belongs to no document of this process");
}

std::string Context::Name() const { return m_path.empty() ? "the document in memory" : m_path; }

void Context::RequireUsable() const {
    if (m_closed) Fail(Name() + " is closed");
    if (m_forks != ForkGeneration()) {
        Fail(Name() +
             " was opened by the process that this one was forked from, and cannot be used here");
    }
    if (!m_catalogue)
        Fail(Name() + " cannot be used any more: an earlier failure has taken its catalogue away");
}

Catalogue& Context::Cat() {
    if (!m_catalogue) [[unlikely]]
        RequireUsable();
    return *m_catalogue;
}

BlockStore& Context::Blocks() {
    if (!m_catalogue) [[unlikely]]
        RequireUsable();
    return *m_opened->blocks;
}

std::int64_t Context::CatalogueBytes() {
    std::int64_t const bytes = RawFileBytes(Cat().Handle());
    if (bytes >= 0) return bytes + LogBytes(m_opened->folder);
    Statement pages(*m_catalogue, "PRAGMA page_count");
    return pages.Step() ? pages.Int(0) * CataloguePageBytes : 0;
}

std::size_t Context::NextPartNumber() {
    static std::atomic<std::size_t> next{0};
    return next.fetch_add(1);
}

void Context::AddPart(std::size_t number, std::unique_ptr<ContextPart> part) {
    if (m_parts.size() <= number) m_parts.resize(number + 1);
    m_partsInOrder.push_back(part.get());
    m_parts[number] = std::move(part);
}

void Context::Begin() {
    RequireUsable();
    if (IsReadOnly())
        Fail("cannot open a transaction on " + Name() + ": it is open for reading only");
    if (m_failed) {
        Fail("cannot open a transaction on " + Name() +
             ": an earlier commit has failed; it must be closed and opened again");
    }
    if (m_inTransaction) Fail("cannot open a transaction on " + Name() + ": one is open already");
    m_catalogue->Begin();
    m_inTransaction = true;
    m_transactionStart = m_nextNumber;
    m_focusBefore = m_focus;
    CheckInvariants();
}

void Context::Commit() {
    RequireUsable();
    if (!m_inTransaction) Fail("cannot commit to " + Name() + ": no transaction is open");
    BlockStore& blocks = *m_opened->blocks;
    try {
        // Parts may be made meanwhile.
        for (int round = 0; round < 2; ++round) {
            for (std::size_t i = 0; i < m_partsInOrder.size(); ++i)
                m_partsInOrder[i]->BeforeCommit();
        }
        if (blocks.HasFailed())
            Fail("cannot commit to " + Name() + ": bulk numbers could not be written");
    } catch (...) {
        Rollback();
        throw;
    }
    try {
        SaveState(blocks.Seal());
        m_catalogue->Commit();
    } catch (...) {
        m_failed = true;
        Drop();
        throw;
    }
    blocks.AfterCommit();
    m_inTransaction = false;
    ++m_commits;
    m_catalogue->CheckpointIfLong();
    CheckInvariants();
}

void Context::SaveState(std::vector<SegmentLength> const& lengths) {
    Statement segment(*m_catalogue, "INSERT OR REPLACE INTO segments(number, bytes) VALUES(?, ?)");
    for (SegmentLength const& length : lengths) {
        segment.Bind(length.number).Bind(length.bytes).Run();
    }
    Statement meta(*m_catalogue, "UPDATE meta SET value = ? WHERE name = ?");
    meta.Bind(m_commits + 1).BindText("commits").Run();
    if (m_nextNumber != m_transactionStart) meta.Bind(m_nextNumber).BindText("next_number").Run();
    if (m_focus != m_focusBefore) meta.Bind(m_focus).BindText("focus").Run();
}

void Context::Rollback() {
    if (!m_inTransaction) return;
    if (m_forks != ForkGeneration()) return;
    Drop();
}

void Context::Drop() noexcept {
    m_inTransaction = false;
    m_opened->catalogue.Rollback();
    m_opened->blocks->Rollback(m_failed);
    m_focus = m_focusBefore;
    if (m_nextNumber > m_transactionStart) {
        if (!m_dropped.empty() && m_dropped.back().second == m_transactionStart) {
            m_dropped.back().second = m_nextNumber;
        } else {
            m_dropped.emplace_back(m_transactionStart, m_nextNumber);
        }
    }
    for (std::size_t i = 0; i < m_partsInOrder.size(); ++i) m_partsInOrder[i]->AfterRollback();
}

void Context::RequireTransaction(char const* what) {
    if (m_inTransaction) [[likely]]
        return;
    RequireUsable();
    std::string const asked = std::string("cannot ") + what + " in " + Name() + ": ";
    Fail(asked + (IsReadOnly() ? "it is open for reading only" : "no transaction is open"));
}

KOVSimIDMinor Context::NewNumber() {
    RequireTransaction("make an object");
    // Numbers of owners have 28 bits in a reference.
    if (m_nextNumber >= MaxParent)
        Fail("cannot make an object in " + Name() + ": its numbers are used up");
    return m_nextNumber++;
}

void Context::RequireNumber(KOVSimIDMinor number) {
    if (number > 0 && number < m_nextNumber) [[likely]] {
        if (m_dropped.empty()) [[likely]]
            return;
        auto const after =
            std::upper_bound(m_dropped.begin(), m_dropped.end(), number,
                             [](KOVSimIDMinor n, auto const& range) { return n < range.first; });
        if (after == m_dropped.begin() || number >= std::prev(after)->second) return;
        Fail("object " + std::to_string(number) + " of " + Name() +
             " belongs to a transaction that was dropped");
    }
    if (number <= -2 && number > m_nextTemporary) return;
    Fail("there is no object " + std::to_string(number) + " in " + Name());
}

KOVSimIDMinor Context::NewTemporaryNumber() {
    if (m_nextTemporary == std::numeric_limits<KOVSimIDMinor>::min()) {
        Fail("cannot make a temporary set in " + Name() + ": its numbers are used up");
    }
    return m_nextTemporary--;
}

void Context::SetFocus(KOVSimIDMinor number) {
    RequireTransaction("set the focus");
    m_focus = number;
}

bool Context::Refresh() {
    RequireUsable();
    if (m_inTransaction) Fail("cannot refresh " + Name() + ": a transaction is open");
    if (!IsReadOnly() || m_opened->immutable) return false;
    Catalogue& catalogue = *m_catalogue;
    if (catalogue.IsBusy()) Fail("cannot refresh " + Name() + ": something is being read from it");
    std::int64_t const before = m_commits;
    // Should the new snapshot fail, there is none to read from.
    m_catalogue = nullptr;
    catalogue.Rollback();
    catalogue.BeginRead();
    m_catalogue = &catalogue;
    try {
        ReadMeta();
        if (m_commits == before) return false;
        OpenSegments();
    } catch (...) {
        m_catalogue = nullptr;
        throw;
    }
    for (std::size_t i = 0; i < m_partsInOrder.size(); ++i) m_partsInOrder[i]->AfterRefresh();
    return true;
}

void Context::Close() {
    if (m_closed) return;
    if (m_forks != ForkGeneration()) {
        Abandon();
        return;
    }
    std::lock_guard const lock(OpenMutex());
    if (m_inTransaction) Drop();
    m_closed = true;
    Unregister(m_id);
    DestroyParts();
    m_catalogue = nullptr;
    if (!m_opened) return;
    // A reader writes no log back: it only clears away an empty one.
    bool const keepLog = m_failed || (IsReadOnly() && LogBytes(m_opened->folder) > 0);
    m_opened->catalogue.Close(keepLog);
    m_opened->blocks.reset();
    if (m_opened->announced) Withdraw(m_opened->identity);
    m_opened->lock.Release();
    // The catalogue's shell stays: a statement may be on the stack of the caller.
}

/// Later parts may lean on earlier ones.
void Context::DestroyParts() noexcept {
    while (!m_partsInOrder.empty()) {
        ContextPart* const last = m_partsInOrder.back();
        m_partsInOrder.pop_back();
        for (auto& part : m_parts) {
            if (part.get() == last) part.reset();
        }
    }
}

void Context::Abandon() noexcept {
    m_closed = true;
    m_catalogue = nullptr;
    DestroyParts();
    if (!m_opened) return;
    m_opened->catalogue.Abandon();
    if (m_opened->blocks) m_opened->blocks->Abandon();
    m_opened->lock.Abandon();
}

void Context::CheckInvariants() const {
#ifndef NDEBUG
    bool const open = m_opened && m_opened->catalogue.IsOpen();
    if (m_closed && open) Fail("invariant 1: a closed context has a catalogue");
    if (m_inTransaction && (IsReadOnly() || m_closed))
        Fail("invariant 2: a transaction is open where none may be");
    if (m_inTransaction && m_failed) Fail("invariant 3: a transaction is open after a failure");
    for (std::size_t i = 0; i < m_dropped.size(); ++i) {
        if (m_dropped[i].first >= m_dropped[i].second || m_dropped[i].second > m_nextNumber ||
            (i > 0 && m_dropped[i - 1].second >= m_dropped[i].first)) {
            Fail("invariant 4: dropped ranges are out of order");
        }
    }
#endif
}

}  // namespace kov::store
