#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <vector>

/// A day that is still to be read: the name of its plain day file, whether that file is there or only one
/// beside it, and its date.
struct UnparsedLog {
    QString name;
    QDate date;
    friend bool operator==(const UnparsedLog &, const UnparsedLog &) = default;
};

/// Which day files are read, and in which order; rules over names.
namespace LogListing
{
/// The days of a folder's file names, newest first; days of one date keep their order. A day's three files are
/// one entry, a name without a date is none.
[[nodiscard]] std::vector<UnparsedLog> newestFirst(const QStringList &names);

/// The base names under which every file of the folder is read, those without a date too: in the order of the
/// names, a day once.
[[nodiscard]] QStringList everyBase(const QStringList &names);

/// How many of `unparsed` days the page reads, from the front. Pages count from 1 and hold `perPage` days; the
/// arithmetic is that of a list that never shrinks, so a late page of one that does may be shorter.
[[nodiscard]] std::size_t pageLength(int page, std::size_t unparsed, std::size_t perPage);

/// The base names of all days from `from` to `to`, both included; none where the period has no end or no begin.
[[nodiscard]] QStringList daysOf(QDate from, QDate to);
} // namespace LogListing
