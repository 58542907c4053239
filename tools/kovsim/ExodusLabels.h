// ExodusLabels: the user labels of the nodes or elements of an Exodus II file, from its number map.
//
// The map is read in pieces along with the values: a file as a solver writes it costs no memory in
// proportion to the model.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "NetcdfFile.h"

namespace kov::tool {

class ExodusLabels {
  public:
    ExodusLabels() = default;
    /// `map`: name of the number map; without one in the file the labels are 1, 2, ... `count`.
    /// Throws Failure for labels that are not from 1 to the largest int, and for labels that
    /// repeat.
    ExodusLabels(NetcdfFile const& file, std::string const& map, std::size_t count);

    std::size_t Count() const { return m_count; }
    /// The labels of items [first, first + count).
    void Read(NetcdfFile const& file, std::size_t first, std::size_t count,
              std::vector<int>& labels) const;

  private:
    std::size_t m_count = 0;
    std::optional<NetcdfFile::Variable> m_map;
};

}  // namespace kov::tool
