// A prepared statement in a catalogue's cache. Private to Catalogue and Statement.
#pragma once

struct sqlite3_stmt;

namespace kov::store {

struct StatementSlot {
    char const* key = nullptr;  // the address of the literal
    sqlite3_stmt* statement = nullptr;
    bool inUse = false;
    bool writes = false;
    bool passing = false;  // a nested use: ends with its Statement
};

}  // namespace kov::store
