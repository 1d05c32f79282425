#pragma once

#include <QDate>
#include <QString>

#include <optional>

/// The names of day files and session logs. Their three forms are the same in every language: digits of ASCII,
/// each number at its full width.
///
///     MM-dd-yyyy.xml, MM-dd-yyyy_cdp.xml, MM-dd-yyyy_sync.xml    day files
///     MM-dd-yyyy                                                 a day
///     MM-dd-yyyy-HH-mm-ss                                        a session log
namespace LogFileNames
{
/// The day that a day file's name tells; none for any other name.
[[nodiscard]] std::optional<QDate> parseDateFromFileName(const QString &name);

/// The plain name of a day's continuous protection and sync files, so that the three files of a day have one
/// name. A name with neither ending comes back as it is.
[[nodiscard]] QString adjustFileNameForCDPAndSync(const QString &name);

/// The date that the whole name of a session log tells, in the same form; none where it tells none.
[[nodiscard]] std::optional<QString> getLogDate(const std::optional<QString> &name);

/// A day as the names of its files begin.
[[nodiscard]] QString dayName(QDate day);

/// Where the session log is that a record names `path`. A path below a user's folder is taken as it is, whether
/// or not a file is there, and so is one at which something stands. Any other is meant below the home folder.
/// Nothing stays nothing.
[[nodiscard]] QString sessionLogPath(const QString &path);
/// The same path read as one below the home folder.
[[nodiscard]] QString belowHome(const QString &path);
} // namespace LogFileNames
