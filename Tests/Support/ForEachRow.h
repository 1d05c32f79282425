#pragma once

#include <gtest/gtest.h>

/// A row of a table that pairs what is given with what is to come of it.
template<class Given, class Expected>
struct Row {
    const char *name;
    Given given;
    Expected expected;
};

/// Checks each row of a table; a failure is shown with the row's `name`. An ASSERT ends its own row, the others
/// follow.
template<class Rows, class Check>
void forEachRow(const Rows &rows, Check check)
{
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        check(row);
    }
}
