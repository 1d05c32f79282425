#pragma once

#include "Classes/ACTIVITY_LOGS/LogNode.h"

#include <optional>

/// How a read of day files has ended.
enum class LogReadEnd {
    Whole, ///< every file of it was handed over, those that can't be read as an absent list
    Failed ///< the folder could not be listed, so nothing was
};

/// What the log store asks of its owner. All calls come on the main thread; the owner may read anew, replace or
/// destroy the store inside each of them.
class LogMaster
{
public:
    virtual ~LogMaster() = default;

    /// The records of one day file, in file order; absent when it can't be read, empty when a read found no
    /// file at all. The store's isParsed and currentLog tell of this list. The owner counts it in
    /// currentParseCount.
    virtual void xmlParsed(const std::optional<LogNodes> &list) = 0;
    /// After the last xmlParsed() of a fetch, of a page, and of a file that was asked for alone: nothing comes
    /// any more until the owner asks again. A read that another fetch has cancelled does not end.
    virtual void readEnded(LogReadEnd end) = 0;

    /// Whether a deletion ordered from the web waits for its record: fetchAllLogs() then reads every day at
    /// once.
    [[nodiscard]] virtual bool isDeleteFromWeb() const = 0;
    /// Called with false before readEnded() of such a read, whether the record was found or not.
    virtual void setDeleteFromWeb(bool ordered) = 0;
};
