// OrdinalRows: rows of numbers by ordinal on their way from a deck into the document, in the order
// of the deck, each with its line.
//
// Blocks that overlap are stored in pieces, so that rows in any order are gathered for longer than
// those that ascend.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "TableField.h"

namespace kov::tool {

class OrdinalRows {
  public:
    explicit OrdinalRows(int columns)
        : m_columns(static_cast<std::size_t>(columns)),
          m_most(static_cast<std::size_t>(RowsInBlock(columns))) {}

    /// True once it is time to write and clear them.
    bool IsFull() const { return m_ordinals.size() >= (m_ascending ? m_most : kUnsorted * m_most); }
    std::size_t Size() const { return m_ordinals.size(); }
    std::vector<int> const& Ordinals() const { return m_ordinals; }
    int Line(std::size_t row) const { return m_lines[row]; }
    double const* Values(std::size_t row = 0) const { return m_values.data() + row * m_columns; }

    void Add(int ordinal, int line, double const* values) {
        m_ascending = m_ascending && (m_ordinals.empty() || ordinal > m_ordinals.back());
        m_ordinals.push_back(ordinal);
        m_lines.push_back(line);
        m_values.insert(m_values.end(), values, values + m_columns);
    }
    void Clear() {
        m_ordinals.clear();
        m_lines.clear();
        m_values.clear();
        m_ascending = true;
    }
    /// By ascending ordinals, those of one ordinal by their lines.
    void Sort() {
        if (m_ascending) return;
        // The ordinal above the place: lines ascend with the places already.
        std::vector<std::uint64_t> order(m_ordinals.size());
        for (std::size_t i = 0; i < order.size(); ++i) {
            order[i] = static_cast<std::uint64_t>(m_ordinals[i]) << 32U | i;
        }
        std::sort(order.begin(), order.end());
        std::vector<std::size_t> places(order.size());
        std::transform(order.begin(), order.end(), places.begin(), [](std::uint64_t each) {
            return static_cast<std::size_t>(each & 0xffffffffU);
        });
        Keep(places);
    }
    /// The rows at these places alone, in their order.
    void Keep(std::vector<std::size_t> const& places) {
        std::vector<int> ordinals(places.size());
        std::vector<int> lines(places.size());
        std::vector<double> values(places.size() * m_columns);
        for (std::size_t i = 0; i < places.size(); ++i) {
            ordinals[i] = m_ordinals[places[i]];
            lines[i] = m_lines[places[i]];
            std::copy_n(Values(places[i]), m_columns, values.data() + i * m_columns);
        }
        m_ordinals.swap(ordinals);
        m_lines.swap(lines);
        m_values.swap(values);
    }

  private:
    static constexpr std::size_t kUnsorted = 8;

    std::size_t m_columns;
    std::size_t m_most;
    std::vector<int> m_ordinals;
    std::vector<int> m_lines;
    std::vector<double> m_values;
    bool m_ascending = true;
};

}  // namespace kov::tool
