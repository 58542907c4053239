// Context: one open document: its catalogue, its segments, its transaction, and what the rooms
// above keep for it. Handles hold it by shared pointer; identities name it by KOVSimContextID,
// which goes stale when it closes.
//
// Invariants (CheckInvariants):
//  1. A context is open, or closed for good; a closed one has no catalogue and no segments.
//  2. A transaction is open only on a writable context, and at most one.
//  3. `failed` (a sync or commit has failed) admits no transaction.
//  4. No number is handed out twice in the life of the process's context, rolled back or not.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "KOVSimDynamicID.h"

namespace kov::store {

class Catalogue;
class BlockStore;
struct SegmentLength;

/// What a room above keeps for a context: caches, and work that is gathered until the commit.
class ContextPart {
  public:
    virtual ~ContextPart() = default;
    /// Writes what was gathered; runs inside the transaction, before segments are synced and the
    /// catalogue commits. It is called for all parts in the order in which they were made, and then
    /// once more, for what a later part has handed down.
    virtual void BeforeCommit() {}
    /// The transaction is gone: forget everything that may stem from it.
    virtual void AfterRollback() {}
    /// The reader stands on another commit: forget everything that was read.
    virtual void AfterRefresh() {}
    /// Reports each broken invariant of the stored content, for verification.
    virtual void Verify(std::function<void(std::string const&)> const&) {}
};

class Context : public std::enable_shared_from_this<Context> {
  public:
    enum class Access { ReadOnly, ReadWrite };

    /// A new document at `path`, made under a temporary name, filled by `fill` inside its first
    /// transaction, synced, and renamed without replacing. Throws if `path` exists.
    static std::shared_ptr<Context> Create(std::string const& path,
                                           std::function<void(Context&)> const& fill);
    static std::shared_ptr<Context> CreateInMemory(std::function<void(Context&)> const& fill);
    static std::shared_ptr<Context> Open(std::string const& path, Access access);
    ~Context();

    /// The open context of that name. Throws KOVSimException for a null, closed or forked one, and
    /// says which.
    static Context& Of(KOVSimContextID id);
    /// The same, or null where `Of` would throw.
    static Context* Find(KOVSimContextID id);

    KOVSimContextID ID() const { return m_id; }
    std::string const& Path() const { return m_path; }
    /// Bytes of the catalogue's file and its log.
    std::int64_t CatalogueBytes();
    bool IsClosed() const { return m_closed; }
    bool IsReadOnly() const { return m_access == Access::ReadOnly; }
    void Close();
    bool Refresh();

    Catalogue& Cat();
    BlockStore& Blocks();

    // Transactions.
    void Begin();
    void Commit();
    void Rollback();
    bool InTransaction() const { return m_inTransaction; }
    /// Throws unless a transaction is open; `what` completes "cannot ...: no transaction is open".
    void RequireTransaction(char const* what);

    /// The next number for an object, set or drawer. Throws when 32 bits are used up.
    KOVSimIDMinor NewNumber();
    /// Throws if `number` was handed out by a transaction that was dropped, or never.
    void RequireNumber(KOVSimIDMinor number);
    KOVSimIDMinor NewTemporaryNumber();
    /// The number of the focus record.
    KOVSimIDMinor Focus() const { return m_focus; }
    void SetFocus(KOVSimIDMinor number);

    /// The part of type T, made on first use by T(Context&).
    template <class T>
    T& Part() {
        std::size_t const number = PartNumber<T>;
        if (number < m_parts.size() && m_parts[number]) [[likely]]
            return static_cast<T&>(*m_parts[number]);
        auto part = std::make_unique<T>(*this);
        T& made = *part;
        AddPart(number, std::move(part));
        return made;
    }

    /// Every checksum and invariant of the store; parts that exist add theirs. Calls `finding` for
    /// each fault.
    void Verify(std::function<void(std::string const&)> const& finding);
    /// Copies the committed document to a new path, with each drawer's rows in fresh blocks. `path`
    /// must not exist.
    void WriteCompacted(std::string const& path);
    void CheckInvariants() const;

  private:
    Context();

    struct Opened;  // what makes it: lock, catalogue, segments

    static std::size_t NextPartNumber();
    template <class T>
    static inline std::size_t const PartNumber = NextPartNumber();
    void AddPart(std::size_t number, std::unique_ptr<ContextPart> part);

    void RequireUsable() const;
    std::string Name() const;
    static std::shared_ptr<Context> BuildAt(std::string const& path,
                                            std::function<void(Context&)> const& fill);
    void Build(std::string const& folder, std::function<void(Context&)> const& fill);
    void MakeTables();
    void FillFirst(std::function<void(Context&)> const& fill);
    void FillFrom(Context& source);
    void MoveInto();
    void OpenExisting(Access access);
    void OpenForWriting();
    void OpenForReading();
    void ReadMeta();
    void OpenSegments();
    void SaveState(std::vector<SegmentLength> const& lengths);
    void Drop() noexcept;
    void DestroyParts() noexcept;
    void Abandon() noexcept;

    KOVSimContextID m_id;
    std::string m_path;
    Access m_access = Access::ReadWrite;
    unsigned m_forks = 0;
    bool m_closed = false;
    bool m_inTransaction = false;
    bool m_failed = false;
    Catalogue* m_catalogue = nullptr;  // null where it cannot be used
    std::unique_ptr<Opened> m_opened;
    std::vector<std::unique_ptr<ContextPart>> m_parts;  // by part number
    std::vector<ContextPart*> m_partsInOrder;
    KOVSimIDMinor m_nextNumber = 1;
    KOVSimIDMinor m_nextTemporary = -2;
    KOVSimIDMinor m_focus = 0;
    KOVSimIDMinor m_focusBefore = 0;  // the transaction
    std::int64_t m_commits = 0;
    std::vector<std::pair<KOVSimIDMinor, KOVSimIDMinor>>
        m_dropped;  // half-open ranges of numbers, ascending
    KOVSimIDMinor m_transactionStart = 0;
};

}  // namespace kov::store
