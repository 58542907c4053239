// Catalogue: the transactional part of a document, one SQLite database: everything but bulk numbers. This is the only place
// that calls SQLite; the rooms above speak to it through Statement, a prepared statement that is compiled once for each
// catalogue and reused.
//
// A value that a Statement gives back is valid until the statement is stepped or reset. Errors of SQLite become
// KOVSimException with the document's path and what was being done; a page whose checksum fails says so.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace kov::store {

class Catalogue;

/// A use of a cached prepared statement: bound, stepped, and reset when it goes out of scope. A statement that is in use
/// already (a nested use of the same text) is compiled anew for the inner use.
class Statement {
public:
    Statement(Catalogue& catalogue, char const* sql);  // `sql`: a literal; its address is the key of the cache
    ~Statement();
    Statement(Statement const&) = delete;
    Statement& operator=(Statement const&) = delete;

    // Binding: parameters count from 1, in order of the calls to Bind when no index is given.
    Statement& Bind(std::int64_t value);
    Statement& BindText(std::string_view value);              // copied by SQLite only if stepped later; must live until Step
    Statement& BindBlob(void const* data, std::size_t bytes);  // likewise; null data with 0 bytes is an empty blob
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
    sqlite3_stmt* m_statement;
    int m_next = 1;
    void* m_slot;
};

}  // namespace kov::store
