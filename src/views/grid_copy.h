#pragma once
// The text a list window's copy puts on the clipboard: the cells of a range of
// its grid, each followed by a tab, each row by "\r".
#include <string>
#include <vector>

namespace recscope {

// A grid as the window shows it: row 0 holds the titles, the rows from 1 the data.
using GridRows = std::vector<std::vector<std::string>>;

// The cells of rows `row1`..`row2` and columns `col1`..`col2` (either pair may be
// given in any order: a selection made upwards or leftwards is put in order), each
// followed by "\t", each row by "\r". With `withTitle`, row 0 over the same
// columns comes first. A cell beyond a short row is empty.
std::string GridCopyText(const GridRows &grid, int row1, int col1, int row2, int col2,
                         bool withTitle);

// The whole grid, title row first: what a copy with titles of all rows gives.
std::string WholeGridText(const GridRows &grid);

// The copy text as a terminal shows it: every "\r" turned into "\n".
std::string WithNewlines(std::string text);

}  // namespace recscope
