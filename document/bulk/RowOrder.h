// Stretches of stored rows with their places in a buffer, and the sort that brings them into the
// order of the rows.
#pragma once

#include <vector>

namespace kov::bulk {

/// `count` stored rows from `row`, wanted at `location` of the view's row dimension and behind.
struct RowRun {
    int row;
    int count;
    int location;
};

/// Sorts by row; nothing is done if they are in order. Linear in the number of runs: by radix,
/// where there are many.
void SortByRow(std::vector<RowRun>& runs);

}  // namespace kov::bulk
