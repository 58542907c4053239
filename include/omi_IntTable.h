// A table from int keys to values: one table for keys below 0, under their absolute value, and one
// for all others.
#pragma once

#include <cstring>
#include <new>

#include "mem.h"
#include "omi_UintTable.h"

template <class V, class Allocator>
class omi_IntTable : public mem_AllocationOperators {
  public:
    using Table = omi_UintTable<V, Allocator>;

    omi_IntTable() : m_negative(MakeTable()) {
        // The first table must not be lost if there is no memory for the second.
        struct Guard {
            Table*& table;
            bool done = false;
            ~Guard() {
                if (!done) EndTable(table);
            }
        } guard{m_negative};
        m_natural = MakeTable();
        guard.done = true;
    }
    omi_IntTable(omi_IntTable const&) = delete;
    omi_IntTable& operator=(omi_IntTable const&) = delete;
    virtual ~omi_IntTable() {
        EndTable(m_negative);
        EndTable(m_natural);
    }

    /// Adds the pair and answers true. A key that exists keeps its value, and the answer is false.
    bool Insert(int key, V const& value) {
        return key < 0 ? m_negative->Insert(Absolute(key), value)
                       : m_natural->Insert(static_cast<unsigned>(key), value);
    }

    /// The value under `key`, or null. Valid until the next Insert.
    V const* Find(int key) const {
        return key < 0 ? m_negative->Find(Absolute(key))
                       : m_natural->Find(static_cast<unsigned>(key));
    }

  private:
    /// Also for the lowest int, which has no absolute value among the ints.
    static unsigned Absolute(int key) { return 0U - static_cast<unsigned>(key); }

    static Table* MakeTable() {
        void* const memory = mem_Malloc(sizeof(Table));
        if (!memory) throw std::bad_alloc();
        std::memset(memory, 0, sizeof(Table));
        return ::new (memory) Table;
    }
    static void EndTable(Table* table) {
        table->~Table();
        mem_Free(table);
    }

    Table* m_negative = nullptr;
    Table* m_natural = nullptr;
};
