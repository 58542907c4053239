// View: which entries of a grid a transfer names, as locations in a caller's buffer: one index set
// for each dimension.
#pragma once

#include <cstdint>
#include <vector>

#include "document/bulk/Drawer.h"
#include "document/sets/IndexSet.h"

namespace kov::bulk {

struct View {
    int dimensions = 1;
    int entryBytes = 0;
    sets::IndexSetPtr dims[2];  // dims[1] of a one-dimensional view is the single member 0

    std::int64_t Entries() const { return std::int64_t{dims[0]->Size()} * dims[1]->Size(); }
    std::int64_t Bytes() const { return Entries() * entryBytes; }
};

/// How the buffer of a view and the rows of a drawer meet.
struct Layout {
    Layout(View const& view, Drawer& drawer);

    int rowDim;
    sets::IndexSet const* rows;  // of the view
    std::int64_t entryBytes;
    std::int64_t rowBytes;    // of the drawer
    int width;                // columns of the view
    std::int64_t rowStep;     // bytes in the buffer from one row location to the next
    std::int64_t columnStep;  // and from one column location to the next
    std::vector<int>
        column;  // of the drawer, for each column location of the view; -1: the drawer has none
    bool whole;  // a row of the buffer is a row of the drawer, byte for byte
    bool anyColumn;
};

/// Reads what `drawer` holds of the view into `buffer`: stored rows, and zero for members that were
/// never written. Entries that the drawer does not hold are left alone.
void Gather(View const& view, Drawer& drawer, char* buffer);

/// Writes the view from `buffer` to `drawer`, which holds or may take up all of it. No member may
/// stand twice in the view.
void Scatter(View const& view, Drawer& drawer, char const* buffer);

}  // namespace kov::bulk
