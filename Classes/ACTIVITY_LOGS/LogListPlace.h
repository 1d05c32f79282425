#pragma once

#include "Classes/ACTIVITY_LOGS/LogNode.h"

#include <unordered_set>

class LogTableView;

/// Records are the same where everything is that tells them apart, also when they were read at different times.
struct SameRecord {
    [[nodiscard]] std::size_t operator()(const LogNodePtr &record) const;
    [[nodiscard]] bool operator()(const LogNodePtr &a, const LogNodePtr &b) const;
};
using RecordSet = std::unordered_set<LogNodePtr, SameRecord, SameRecord>;

/// What of a list is selected and in view, told by records rather than rows, so that it can be found again in
/// one that was read anew.
class LogListPlace
{
public:
    LogListPlace() = default;
    [[nodiscard]] static LogListPlace of(const LogTableView &table);

    /// Selects and scrolls as it was, as far as the records are there. False when none of the selected is.
    bool restore(LogTableView &table) const;

private:
    RecordSet m_selected;
    LogNodePtr m_current; ///< the one that the keyboard was at
    LogNodePtr m_top;     ///< the first in view; none at the top of the list, which is kept in view
    int m_offset = 0;     ///< pixels of it that were out of view
};
