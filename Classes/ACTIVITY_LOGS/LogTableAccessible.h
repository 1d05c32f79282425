#pragma once

class QModelIndex;

/// Puts every LogTableView on the accessibility bus as a table whose children are the titles of the columns and
/// then, row by row, the cells in the order of LogColumn; the last of a row is a button. Once a process.
void makeLogTablesAccessible();

/// The number of a cell among the children of its table.
[[nodiscard]] int accessibleChildOf(const QModelIndex &index);
