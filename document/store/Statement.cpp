#include <sqlite3.h>

#include "document/store/Catalogue.h"
#include "document/store/Errors.h"
#include "document/store/StatementSlot.h"

namespace kov::store {

namespace {

// SQLite asks for a pointer of an empty text or blob too: null would bind a null.
void const* NotNull(void const* data) { return data ? data : ""; }

}  // namespace

Statement::Statement(Catalogue& catalogue, char const* sql)
    : m_catalogue(catalogue), m_slot(catalogue.Find(sql)), m_statement(m_slot->statement) {
    m_slot->inUse = true;
}

Statement::~Statement() {
    // A catalogue that was closed meanwhile has finished the statement and cleared the slot.
    if (m_slot->statement) sqlite3_reset(m_slot->statement);
    m_slot->inUse = false;
    if (m_slot->passing) [[unlikely]]
        m_catalogue.Drop(m_slot);
}

Statement& Statement::Bind(std::int64_t value) {
    int const code = sqlite3_bind_int64(m_statement, m_next++, value);
    if (code != SQLITE_OK) [[unlikely]]
        m_catalogue.Raise(code, m_slot->writes);
    return *this;
}

Statement& Statement::BindText(std::string_view value) {
    auto const life = m_slot->writes ? SQLITE_STATIC : SQLITE_TRANSIENT;
    int const code =
        sqlite3_bind_text64(m_statement, m_next++, static_cast<char const*>(NotNull(value.data())),
                            value.size(), life, SQLITE_UTF8);
    if (code != SQLITE_OK) [[unlikely]]
        m_catalogue.Raise(code, m_slot->writes);
    return *this;
}

Statement& Statement::BindBlob(void const* data, std::size_t bytes) {
    auto const life = m_slot->writes ? SQLITE_STATIC : SQLITE_TRANSIENT;
    int const code = sqlite3_bind_blob64(m_statement, m_next++, NotNull(data), bytes, life);
    if (code != SQLITE_OK) [[unlikely]]
        m_catalogue.Raise(code, m_slot->writes);
    return *this;
}

Statement& Statement::BindNull() {
    int const code = sqlite3_bind_null(m_statement, m_next++);
    if (code != SQLITE_OK) [[unlikely]]
        m_catalogue.Raise(code, m_slot->writes);
    return *this;
}

void Statement::Rebind() {
    if (m_slot->statement) sqlite3_reset(m_statement);
    m_next = 1;
    m_done = false;
}

bool Statement::Step() {
    if (m_done) return false;
    if (!m_slot->statement) [[unlikely]]
        Fail(m_catalogue.Document() + ": the document was closed meanwhile");
    // SQLite drops a transaction by itself after some failures; what followed would be committed
    // alone.
    if (m_catalogue.m_inTransaction ? sqlite3_get_autocommit(m_catalogue.m_db) != 0
                                    : m_slot->writes) [[unlikely]] {
        if (!m_catalogue.m_inTransaction)
            Fail(m_catalogue.Document() +
                 ": cannot write to the catalogue: no transaction is open");
        if (m_catalogue.m_writing)
            Fail(m_catalogue.Document() + ": the transaction has failed and can only be dropped");
        m_catalogue.Resume();
    }
    int const code = sqlite3_step(m_statement);
    if (code == SQLITE_ROW) return true;
    if (code != SQLITE_DONE) [[unlikely]]
        m_catalogue.Raise(code, m_slot->writes);
    m_done = true;
    return false;
}

void Statement::Run() {
    while (Step()) {
    }
    Rebind();
}

std::int64_t Statement::Int(int column) const { return sqlite3_column_int64(m_statement, column); }

std::string_view Statement::Text(int column) const {
    auto const* const text =
        reinterpret_cast<char const*>(sqlite3_column_text(m_statement, column));
    return text ? std::string_view(
                      text, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column)))
                : std::string_view();
}

std::string_view Statement::Blob(int column) const {
    auto const* const data = static_cast<char const*>(sqlite3_column_blob(m_statement, column));
    return data ? std::string_view(
                      data, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column)))
                : std::string_view();
}

bool Statement::IsNull(int column) const {
    return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
}

Statement::Kind Statement::KindOf(int column) const {
    switch (sqlite3_column_type(m_statement, column)) {
        case SQLITE_INTEGER:
            return Kind::Integer;
        case SQLITE_TEXT:
            return Kind::Text;
        case SQLITE_BLOB:
            return Kind::Blob;
        case SQLITE_FLOAT:
            return Kind::Real;
        default:
            return Kind::Null;
    }
}

}  // namespace kov::store
