// SPDX-License-Identifier: MIT
#pragma once

namespace holdwise {

class TStringGrid;

/// Sorts the rows of a grid by the texts of a column, with a quicksort whose pivot is the middle row's cell; equal
/// texts end in whatever order it leaves them. With `numeric` texts are compared as numbers (no number counts as 0, and
/// an empty cell that is met becomes "0"), else byte by byte. Above 5000 rows the grid's cursor is an hourglass
/// meanwhile. Remarks stay at their places. User-interface thread.
void GridQuickSort(TStringGrid& grid, int column, bool ascending, bool numeric);

}  // namespace holdwise
