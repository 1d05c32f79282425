#pragma once

#include "Companions/Common/ScheduleArchive.h"

#include <QString>

/// The archive of all scheduled jobs of this machine, as the application edits it. The daemon changes it too,
/// so each operation reads it anew.
class ScheduleBook
{
public:
    explicit ScheduleBook(QString path);

    /// A job with every field that the application sets.
    [[nodiscard]] static ScheduleRecord makeJob(const QString &account, const QString &login,
                                                const QDateTime &time, Frequency frequency);

    bool add(const ScheduleRecord &job);

    /// Leaves an archive with no jobs.
    bool clear();

    /// Replaces all jobs by a set as a shared machine has it: several accounts and login names, each kind of
    /// repetition, a restore, jobs of an hour ago that nobody here waits for. `account` gets a daily job at
    /// 02:30.
    bool fillWithDemoSet(const QString &account, const QString &login, const QDateTime &now);

    /// One line for each job.
    [[nodiscard]] QStringList describe() const;

private:
    QString m_path;
};

/// The frequency that a word names ("daily"); empty for any other word.
[[nodiscard]] std::optional<Frequency> frequencyFromWord(const QString &word);
