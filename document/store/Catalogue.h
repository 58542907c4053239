// Catalogue: the transactional part of a document, one SQLite database: everything but bulk
// numbers. This is the only place that calls SQLite; the rooms above speak to it through Statement,
// a prepared statement that is compiled once for each catalogue and reused.
//
// A value that a Statement gives back is valid until the statement is stepped or reset. Errors of
// SQLite become KOVSimException with the document's path and what was being done; a page whose
// checksum fails says so.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "KOVSimException.h"

struct sqlite3;
struct sqlite3_stmt;

namespace kov::store {

class Catalogue;
struct StatementSlot;

/// Raised where the disk had no room for what SQLite wanted to write; reading asks for some, too,
/// for the index by which readers and a writer make room for each other.
class NoRoom : public KOVSimException {
  public:
    using KOVSimException::KOVSimException;
    void Throw(char const* sourcePath, int line) override;
};

/// A use of a cached prepared statement: bound, stepped, and reset when it goes out of scope. A
/// statement that is in use already (a nested use of the same text) is compiled anew for the inner
/// use.
class Statement {
  public:
    Statement(Catalogue& catalogue,
              char const* sql);  // `sql`: a literal; its address is the key of the cache
    ~Statement();
    Statement(Statement const&) = delete;
    Statement& operator=(Statement const&) = delete;

    // Binding: parameters count from 1, in order of the calls to Bind when no index is given.
    Statement& Bind(std::int64_t value);
    // Text and blobs of a statement that writes must live until it has been stepped; those of a
    // query are copied.
    Statement& BindText(std::string_view value);
    Statement& BindBlob(void const* data,
                        std::size_t bytes);  // likewise; null data with 0 bytes is an empty blob
    Statement& BindNull();
    void Rebind();  // resets for another round of Bind and Step

    bool Step();  // true: a row is at hand; false: done
    void Run();   // steps to the end, ignoring rows, and resets for another round

    std::int64_t Int(int column) const;
    std::string_view Text(int column) const;
    std::string_view Blob(int column) const;
    bool IsNull(int column) const;
    enum class Kind { Null, Integer, Text, Blob, Real };
    Kind KindOf(int column) const;

  private:
    Catalogue& m_catalogue;
    StatementSlot* m_slot;
    sqlite3_stmt* m_statement;
    int m_next = 1;
    bool m_done = false;
};

/// The connection. Rooms above the store only hand it to Statement.
///
/// A transaction that SQLite itself has dropped (a full disk, a failing one) is remembered: no
/// statement runs until the caller has rolled back, so that nothing is ever committed by halves.
/// Statements that write are refused outside a transaction.
class Catalogue {
  public:
    enum class Mode { Create, Write, Read, Immutable };

    /// `document`: the path for texts; empty in memory.
    explicit Catalogue(std::string document);
    ~Catalogue();
    Catalogue(Catalogue const&) = delete;
    Catalogue& operator=(Catalogue const&) = delete;

    void OpenMemory();
    /// Opens `file`; `Create` makes it, with the log switched on and without tables.
    void OpenFile(std::string const& file, Mode mode);
    /// Closes. The last connection to a file writes the log back and removes it, unless `keepLog`.
    void Close(bool keepLog);
    bool IsOpen() const { return m_db != nullptr; }
    /// Lets go of the connection without any call: for a child that has inherited it.
    void Abandon();

    void Begin();
    /// A read transaction, which stands on one commit until it is rolled back.
    void BeginRead();
    /// Which commit that is. SQLite ends a read transaction by itself after a read error; the next
    /// statement then goes on where it is still the latest commit, and is refused otherwise.
    void SetSnapshot(std::int64_t commits) { m_snapshot = commits; }
    void Commit();
    /// Ends a transaction of either kind without writing; never throws.
    void Rollback() noexcept;
    bool InTransaction() const { return m_inTransaction; }
    /// Whether a statement is half-way through its rows.
    bool IsBusy() const;

    /// Runs statements without parameters and rows.
    void Execute(char const* sql);
    /// Moves committed pages of the log into the catalogue file, as far as readers allow, where the
    /// log has grown long.
    void CheckpointIfLong() noexcept;
    /// The same for all of it; the log is empty afterwards. Throws where that fails.
    void CheckpointAll();
    /// At how many pages a log is long: 32 MiB. Pages that many commits change reach the catalogue
    /// file once then, and a log of that size is recovered in less than 0.1 s.
    void SetLongLog(int pages) { m_longLog = pages; }

    sqlite3* Handle() const { return m_db; }
    std::string const& Document() const { return m_document; }
    void SetDocument(std::string document) { m_document = std::move(document); }
    /// Raises what SQLite's result `code` means.
    [[noreturn]] void Raise(int code, bool writing) const;

  private:
    friend class Statement;

    void Open(char const* name, int flags);
    void Configure(Mode mode);
    void SwitchLogOn();
    StatementSlot* Find(char const* sql);
    StatementSlot* Compile(char const* sql);
    void Drop(StatementSlot* slot);
    void Grow();
    void RunSimple(char const* sql);
    void Resume();

    std::string m_document;
    sqlite3* m_db = nullptr;
    std::vector<StatementSlot*> m_slots;    // a table by address, open addressing, a power of two
    std::vector<StatementSlot*> m_passing;  // nested uses, which end with their Statement
    std::size_t m_used = 0;
    bool m_inTransaction = false;
    bool m_writing = false;  // the transaction is one that writes
    int m_logFrames = 0;
    int m_longLog = 4000;
    std::int64_t m_snapshot = 0;
};

}  // namespace kov::store
