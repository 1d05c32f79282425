#pragma once

#include "Companions/BackupDaemon/LogBook.h"

#include <QStringList>

/// Activity logs that nobody should have to read: one of each kind of damage. Each damaged day file has a day
/// of its own, counted back from yesterday.
class HostileLogs
{
public:
    explicit HostileLogs(PathTable table);

    /// Puts them all in place, over what these days held. The names of the kinds that could not be made.
    [[nodiscard]] QStringList write(const QString &account, const QDateTime &now) const;

    /// The files outside the log folders that the records point at, by crooked ways, and that are gone or
    /// changed since.
    [[nodiscard]] QStringList lostVictims() const;

private:
    [[nodiscard]] QString victimFolder() const;
    [[nodiscard]] bool writeVictims() const;
    [[nodiscard]] LogRecords crookedRecords(const QString &account, const QDateTime &day) const;
    [[nodiscard]] bool writeCrookedTargets() const;

    LogBook m_logs;
};
