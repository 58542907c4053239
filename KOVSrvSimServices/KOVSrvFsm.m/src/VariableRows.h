// The expansion of the variable map's notation (KOVSrvVariableMap.inc) into rows, when the map is
// compiled: a slip in the notation is an error of the compiler, and the rows are static data.
//
// A label gives one row for each grid of its set, in the set's order. A label of an off-diagonal
// term gives blocks: a grid alone, or one of the two pairs of grids that belong together; within a
// block first the rows of the first component, then those of the second. Texts stand one behind the
// other in one array, each once for all rows of its label. For the variable map.
#pragma once

#include <cstddef>

#include "zdm_ComponentSymbols.h"

namespace kov::fsm {

struct VariableRow {
    int label;      ///< offset in the texts
    int component;  ///< zdm_ComponentSymbolsEnm
    int field;      ///< offset in the texts
    int grid;       ///< as PackedGrid
};

/// A schema pair as one number, which may stand where the schema index will.
constexpr int PackedGrid(int fragment, int member) { return fragment * 4096 + member; }
constexpr int GridFragment(int grid) { return grid / 4096; }
constexpr int GridMember(int grid) { return grid % 4096; }

/// Texts one behind the other; each ends with a zero byte.
template <std::size_t capacity>
struct VariableTexts {
    char bytes[capacity]{};
    int count = 0;
};

template <std::size_t rowCapacity, std::size_t textCapacity>
struct VariableRows {
    VariableRow rows[rowCapacity]{};
    int rowCount = 0;
    VariableTexts<textCapacity> texts;
};

template <std::size_t rowCapacity, std::size_t textCapacity>
class VariableRowsExpansion {
  public:
    using Result = VariableRows<rowCapacity, textCapacity>;

    constexpr Result Expand(char const* notation) {
        m_at = notation;
        while (*m_at != '\0') {
            if (Take('\n')) continue;
            Require(Take('G'));
            int const set = Number();
            Require(set >= 1 && set <= kSets);
            if (Take(' ')) {
                Grids(m_sets[set - 1]);
            } else {
                Require(Take(':') && Take(' '));
                m_set = &m_sets[set - 1];
                do Field();
                while (TakeSeparator(';'));
            }
            Require(Take('\n'));
        }
        return m_result;
    }

  private:
    static constexpr int kSets = 34;
    struct GridSet {
        int grids[8]{};
        int count = 0;
    };
    /// A piece of the notation.
    struct Name {
        char const* text;
        int length;
    };

    /// Throwing in a constant expression is an error of the compiler.
    static constexpr void Require(bool fine) {
        if (!fine) throw "the notation of the variable map is broken here";
    }

    constexpr bool Take(char c) {
        if (*m_at != c) return false;
        ++m_at;
        return true;
    }
    constexpr bool TakeSeparator(char c) {
        if (!Take(c)) return false;
        Require(Take(' '));
        return true;
    }
    constexpr int Number() {
        Require(*m_at >= '0' && *m_at <= '9');
        int number = 0;
        while (*m_at >= '0' && *m_at <= '9') number = number * 10 + (*m_at++ - '0');
        return number;
    }
    constexpr Name TakeName() {
        char const* const begin = m_at;
        while ((*m_at >= 'A' && *m_at <= 'Z') || (*m_at >= '0' && *m_at <= '9') || *m_at == '_' ||
               *m_at == '-' || (*m_at == ' ' && m_at[1] != '='))
            ++m_at;
        Require(m_at != begin);
        return {begin, static_cast<int>(m_at - begin)};
    }

    /// " = 14:9, 14:11", behind the first blank.
    constexpr void Grids(GridSet& set) {
        Require(Take('=') && Take(' ') && set.count == 0);
        do {
            int const fragment = Number();
            Require(Take(':'));
            set.grids[set.count++] = PackedGrid(fragment, Number());
        } while (TakeSeparator(','));
    }

    /// "FIELD = label, label" or "FIELD".
    constexpr void Field() {
        Name const name = TakeName();
        m_field = AddText(name, "");
        if (!Take(' ')) {
            Require(m_set->count > 0);
            AddRows(m_field, zdm_Component_NONE);
            return;
        }
        Require(Take('=') && Take(' ') && m_set->count > 0);
        do Label();
        while (TakeSeparator(','));
    }

    constexpr void Label() {
        Name const name = TakeName();
        if (Take('#')) {
            int const label = AddText(name, "");
            int const first = Number();
            if (Take('+')) {
                AddPairs(label, first, Number(), false);
            } else {
                AddRows(label, first);
            }
        } else if (Take('~')) {
            Series(name, *m_at++);
        } else {
            AddRows(AddText(name, ""), zdm_Component_NONE);
        }
    }

    constexpr void Series(Name stem, char shape) {
        switch (shape) {
            case 'V':
                return Three(stem, zdm_Component_C_1, zdm_Component_C_2, zdm_Component_C_3);
            case 'P':
                return Three(stem, zdm_Component_C_TP1, zdm_Component_C_TP2, zdm_Component_C_TP3);
            case 'Q':
                return Three(stem, zdm_Component_C_P1, zdm_Component_C_P2, zdm_Component_C_P3);
            case 'R':
                return Three(stem, zdm_Component_C_R1, zdm_Component_C_R2, zdm_Component_C_R3);
            case 'T':
                return Tensor(stem);
            default:
                Require(false);
        }
    }
    constexpr void Tensor(Name stem) {
        // One pair of rows of ER13 stands the other way round in the table that callers know.
        bool const turned = stem.length == 2 && stem.text[0] == 'E' && stem.text[1] == 'R';
        AddRows(AddText(stem, "11"), zdm_Component_C_11);
        AddPairs(AddText(stem, "12"), zdm_Component_C_12, zdm_Component_C_12_21, false);
        AddPairs(AddText(stem, "13"), zdm_Component_C_13, zdm_Component_C_13_31, turned);
        AddRows(AddText(stem, "22"), zdm_Component_C_22);
        AddPairs(AddText(stem, "23"), zdm_Component_C_23, zdm_Component_C_23_32, false);
        AddRows(AddText(stem, "33"), zdm_Component_C_33);
    }
    constexpr void Three(Name stem, int first, int second, int third) {
        AddRows(AddText(stem, "1"), first);
        AddRows(AddText(stem, "2"), second);
        AddRows(AddText(stem, "3"), third);
    }

    constexpr int AddText(Name stem, char const* tail) {
        VariableTexts<textCapacity>& texts = m_result.texts;
        int const offset = texts.count;
        for (int i = 0; i < stem.length; ++i) texts.bytes[texts.count++] = stem.text[i];
        while (*tail != '\0') texts.bytes[texts.count++] = *tail++;
        texts.bytes[texts.count++] = '\0';
        return offset;
    }
    constexpr void AddRow(int label, int component, int grid) {
        m_result.rows[m_result.rowCount++] = {label, component, m_field, grid};
    }
    constexpr void AddRows(int label, int component) {
        for (int i = 0; i < m_set->count; ++i) AddRow(label, component, m_set->grids[i]);
    }
    /// The two rows of an off-diagonal term; `turned`: on one grid the second stands first.
    constexpr void AddPairs(int label, int first, int second, bool turned) {
        GridSet const& set = *m_set;
        for (int i = 0; i < set.count; ++i) {
            int const grid = set.grids[i];
            if (turned && grid == PackedGrid(14, 11)) {
                AddRow(label, second, grid);
                AddRow(label, first, grid);
                continue;
            }
            int const next = i + 1 < set.count ? set.grids[i + 1] : 0;
            bool const together = (grid == PackedGrid(24, 20) && next == PackedGrid(14, 14)) ||
                                  (grid == PackedGrid(24, 28) && next == PackedGrid(14, 13));
            AddRow(label, first, grid);
            if (together) AddRow(label, first, next);
            AddRow(label, second, grid);
            if (together) AddRow(label, second, next);
            if (together) ++i;
        }
    }

    char const* m_at = nullptr;
    GridSet m_sets[kSets]{};
    GridSet const* m_set = nullptr;
    int m_field = 0;
    Result m_result{};
};

}  // namespace kov::fsm
