#pragma once

#include <QString>

#include <memory>
#include <optional>
#include <vector>

/// One finished or running job, as a day file tells it. All texts are as they stand in the file; an element
/// that is missing or empty is an empty text. Records compare by identity: see LogNodePtr.
struct LogNode {
    QString datetime;    ///< when the job ran, in any of the forms that LogDates reads
    QString uname;       ///< the account; empty for a job of nobody
    QString files;       ///< how many files, as text
    QString filesinsync; ///< files that were in sync already, as text
    QString status;      ///< the result's word, a key of the string table
    QString duration;    ///< `--:--:--` when it isn't known
    QString optype;      ///< the operation's number, as decimal text
    QString content;     ///< kept, never shown
    QString lpath;       ///< kept, never shown
    QString logfile;     ///< absolute path of the job's session log; empty where it has none
    QString logname;     ///< what the record calls its day; kept, never used as a path
    QString dayKey;      ///< base name of the day file that the record was read from; no element of it
    int place = 0;       ///< how many records stood before it in that file; no element either

    /// The record's block of a day file: see DayFile. XML's own characters are escaped, those that XML cannot
    /// hold are left out. Nothing only where there would be no record, which does not happen.
    [[nodiscard]] std::optional<QString> flattenSelfToXML() const;
};

using LogNodePtr = std::shared_ptr<LogNode>;
using LogNodes = std::vector<LogNodePtr>;
