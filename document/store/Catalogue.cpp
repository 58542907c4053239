#include "document/store/Catalogue.h"

#include <sqlite3.h>

#include <cassert>
#include <cerrno>
#include <cstring>

#include "document/store/CatalogueVfs.h"
#include "document/store/Errors.h"
#include "document/store/StatementSlot.h"

namespace kov::store {

namespace {

constexpr int BusyMilliseconds = 5000;

// secure_delete: a page that is set free is written as well, so that the file never holds a page
// without a checksum.
constexpr char Settings[] =
    "PRAGMA cache_size=-24576; PRAGMA temp_store=MEMORY; PRAGMA mmap_size=0;"
    "PRAGMA cell_size_check=ON; PRAGMA secure_delete=ON; PRAGMA synchronous=FULL;"
    "PRAGMA journal_size_limit=67108864; PRAGMA wal_autocheckpoint=0;";

std::size_t Place(char const* key, std::size_t slots) {
    auto const address = reinterpret_cast<std::uintptr_t>(key);
    return static_cast<std::size_t>((address * 0x9E3779B97F4A7C15u) >> 32) & (slots - 1);
}

std::string EncodedUri(std::string const& file) {
    static constexpr char Digits[] = "0123456789ABCDEF";
    std::string uri = "file:";
    for (char const c : file) {
        auto const byte = static_cast<unsigned char>(c);
        if (c == '%' || c == '?' || c == '#' || byte < 0x21) {
            uri += '%';
            uri += Digits[byte >> 4];
            uri += Digits[byte & 15];
        } else {
            uri += c;
        }
    }
    return uri + "?immutable=1";
}

}  // namespace

Catalogue::Catalogue(std::string document) : m_document(std::move(document)), m_slots(64) {}

Catalogue::~Catalogue() {
    Close(false);
    for (StatementSlot* const slot : m_slots) delete slot;
}

void Catalogue::OpenMemory() {
    Open(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_MEMORY);
    Configure(Mode::Create);
}

void Catalogue::OpenFile(std::string const& file, Mode mode) {
    // A name that begins with ':' or "file:" must stay a name.
    std::string const name = file.empty() || file[0] != '/' ? "./" + file : file;
    switch (mode) {
        case Mode::Create:
            Open(name.c_str(), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
            break;
        case Mode::Write:
            Open(name.c_str(), SQLITE_OPEN_READWRITE);
            break;
        case Mode::Read:
            // The last reader to leave clears away the log's files, which it could not do
            // otherwise.
            Open(name.c_str(), SQLITE_OPEN_READWRITE);
            break;
        case Mode::Immutable:
            Open(EncodedUri(name).c_str(), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
            break;
    }
    Configure(mode);
    if (mode == Mode::Create) SwitchLogOn();
    if (mode == Mode::Read) Execute("PRAGMA query_only=ON;");
}

void Catalogue::SwitchLogOn() {
    bool on = false;
    auto const see = [](void* seen, int, char** values, char**) {
        *static_cast<bool*>(seen) = values[0] && std::strcmp(values[0], "wal") == 0;
        return 0;
    };
    int const code = sqlite3_exec(m_db, "PRAGMA journal_mode=WAL", see, &on, nullptr);
    if (code != SQLITE_OK) Raise(code, true);
    if (!on) Fail("cannot create " + m_document + ": its file system cannot hold a log");
}

void Catalogue::Open(char const* name, int flags) {
    RegisterCatalogueVfs();
    TakeCatalogueFault();
    int const code = sqlite3_open_v2(
        name, &m_db, flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE | SQLITE_OPEN_EXRESCODE,
        CatalogueVfsName);
    if (code == SQLITE_OK) return;
    try {
        Raise(code, false);
    } catch (...) {
        sqlite3_close_v2(m_db);
        m_db = nullptr;
        throw;
    }
}

void Catalogue::Configure(Mode mode) {
    static constexpr int Options[][2] = {
        {SQLITE_DBCONFIG_DEFENSIVE, 1},   {SQLITE_DBCONFIG_DQS_DML, 0},
        {SQLITE_DBCONFIG_DQS_DDL, 0},     {SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
        {SQLITE_DBCONFIG_ENABLE_VIEW, 0}, {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
        {SQLITE_DBCONFIG_ENABLE_FKEY, 0},
    };
    for (auto const& option : Options) sqlite3_db_config(m_db, option[0], option[1], nullptr);
    sqlite3_busy_timeout(m_db, BusyMilliseconds);
    if (mode == Mode::Create) {
        int reserved = CatalogueReservedBytes;
        sqlite3_file_control(m_db, "main", SQLITE_FCNTL_RESERVE_BYTES, &reserved);
        Execute(("PRAGMA page_size=" + std::to_string(CataloguePageBytes) + ";").c_str());
    }
    Execute(Settings);
    sqlite3_wal_hook(
        m_db,
        [](void* self, sqlite3*, char const*, int frames) {
            static_cast<Catalogue*>(self)->m_logFrames = frames;
            return SQLITE_OK;
        },
        this);
}

void Catalogue::Close(bool keepLog) {
    if (!m_db) return;
    for (sqlite3_stmt* next = nullptr; (next = sqlite3_next_stmt(m_db, nullptr)) != nullptr;) {
        sqlite3_finalize(next);
    }
    for (StatementSlot*& slot : m_slots) {
        if (!slot) continue;
        slot->statement = nullptr;
        // A slot in use is freed by its Statement.
        if (slot->inUse) {
            slot->passing = true;
            m_passing.push_back(slot);
        } else {
            delete slot;
        }
        slot = nullptr;
    }
    for (StatementSlot* const slot : m_passing) slot->statement = nullptr;
    m_used = 0;
    if (keepLog) sqlite3_db_config(m_db, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    sqlite3_close_v2(m_db);
    m_db = nullptr;
    m_inTransaction = m_writing = false;
}

void Catalogue::Abandon() {
    m_db = nullptr;
    for (StatementSlot* const slot : m_slots) {
        if (slot) slot->statement = nullptr;
    }
    for (StatementSlot* const slot : m_passing) slot->statement = nullptr;
}

void Catalogue::Begin() {
    RunSimple("BEGIN IMMEDIATE");
    m_inTransaction = m_writing = true;
}

void Catalogue::BeginRead() {
    RunSimple("BEGIN");
    m_inTransaction = true;
}

void Catalogue::Resume() {
    RunSimple("BEGIN");
    std::int64_t commits = -1;
    {
        Statement query(*this, "SELECT value FROM meta WHERE name = 'commits'");
        if (query.Step()) commits = query.Int(0);
    }
    if (commits == m_snapshot) return;
    RunSimple("ROLLBACK");
    Fail(m_document +
         ": after a read error the commit that was being read is gone; it must be refreshed");
}

void Catalogue::Commit() {
    if (sqlite3_get_autocommit(m_db))
        Fail(m_document + ": the transaction has failed and can only be dropped");
    RunSimple("COMMIT");
    m_inTransaction = m_writing = false;
}

void Catalogue::Rollback() noexcept {
    m_inTransaction = m_writing = false;
    if (m_db && !sqlite3_get_autocommit(m_db))
        sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
}

bool Catalogue::IsBusy() const {
    for (sqlite3_stmt* s = sqlite3_next_stmt(m_db, nullptr); s; s = sqlite3_next_stmt(m_db, s)) {
        if (sqlite3_stmt_busy(s)) return true;
    }
    return false;
}

void Catalogue::Execute(char const* sql) {
    int const code = sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) Raise(code, false);
}

void Catalogue::RunSimple(char const* sql) {
    StatementSlot* const slot = Find(sql);
    int const code = sqlite3_step(slot->statement);
    if (code != SQLITE_DONE && code != SQLITE_ROW) {
        try {
            Raise(code, true);
        } catch (...) {
            sqlite3_reset(slot->statement);
            throw;
        }
    }
    sqlite3_reset(slot->statement);
}

void Catalogue::CheckpointIfLong() noexcept {
    if (m_logFrames < m_longLog) return;
    m_logFrames = 0;
    sqlite3_wal_checkpoint_v2(m_db, "main", SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
}

void Catalogue::CheckpointAll() {
    int const code =
        sqlite3_wal_checkpoint_v2(m_db, "main", SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
    if (code != SQLITE_OK) Raise(code, true);
    m_logFrames = 0;
}

StatementSlot* Catalogue::Find(char const* sql) {
    std::size_t place = Place(sql, m_slots.size());
    while (StatementSlot* const slot = m_slots[place]) {
        if (slot->key == sql) {
            assert(std::strcmp(sqlite3_sql(slot->statement), sql) == 0);
            if (!slot->inUse) return slot;
            StatementSlot* const passing = Compile(sql);
            passing->passing = true;
            m_passing.push_back(passing);
            return passing;
        }
        place = (place + 1) & (m_slots.size() - 1);
    }
    StatementSlot* const slot = Compile(sql);
    if (++m_used * 2 > m_slots.size()) Grow();
    place = Place(sql, m_slots.size());
    while (m_slots[place]) place = (place + 1) & (m_slots.size() - 1);
    m_slots[place] = slot;
    return slot;
}

void Catalogue::Grow() {
    std::vector<StatementSlot*> larger(m_slots.size() * 2);
    for (StatementSlot* const slot : m_slots) {
        if (!slot) continue;
        std::size_t place = Place(slot->key, larger.size());
        while (larger[place]) place = (place + 1) & (larger.size() - 1);
        larger[place] = slot;
    }
    m_slots.swap(larger);
}

void Catalogue::Drop(StatementSlot* slot) {
    sqlite3_finalize(slot->statement);
    std::erase(m_passing, slot);
    delete slot;
}

StatementSlot* Catalogue::Compile(char const* sql) {
    if (!m_db) Fail(m_document + ": the document is closed");
    sqlite3_stmt* statement = nullptr;
    int const code =
        sqlite3_prepare_v3(m_db, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (code != SQLITE_OK) Raise(code, false);
    auto* const slot = new StatementSlot;
    slot->key = sql;
    slot->statement = statement;
    slot->writes = !sqlite3_stmt_readonly(statement);
    return slot;
}

void NoRoom::Throw(char const* sourcePath, int line) {
    SetPlace(sourcePath, line);
    throw *this;
}

void Catalogue::Raise(int code, bool writing) const {
    CatalogueFault const fault = TakeCatalogueFault();
    std::string const where = m_document.empty() ? "the document in memory" : m_document;
    if (fault.damagedPage) {
        Fail(where + ": page " + std::to_string(fault.damagedPage) +
             " of catalog.sqlite is damaged: its checksum does not fit");
    }
    if (fault.missingPage && code == SQLITE_IOERR_DATA) {
        Fail(where + ": catalog.sqlite has been cut short: page " +
             std::to_string(fault.missingPage) + " is missing");
    }
    std::string text = std::string("cannot ") + (writing ? "write" : "read") +
                       " the catalogue of " + where + ": " +
                       (m_db ? sqlite3_errmsg(m_db) : sqlite3_errstr(code));
    int const error = fault.error ? fault.error : m_db ? sqlite3_system_errno(m_db) : 0;
    if (error && ((code & 0xff) == SQLITE_IOERR || (code & 0xff) == SQLITE_CANTOPEN ||
                  (code & 0xff) == SQLITE_FULL)) {
        text += " (" + ErrnoText(error) + ")";
        if (error == ENOSPC || error == EDQUOT || error == EFBIG) throw NoRoom(text.c_str());
    }
    if ((code & 0xff) == SQLITE_CORRUPT || (code & 0xff) == SQLITE_NOTADB) {
        text = where + ": the catalogue is damaged: " +
               (m_db ? sqlite3_errmsg(m_db) : sqlite3_errstr(code));
    }
    Fail(text);
}

}  // namespace kov::store
