#pragma once

#include "Companions/BackupDaemon/SessionLogText.h"
#include "Companions/Common/ScheduleArchive.h"

#include <QJsonObject>
#include <QString>

#include <chrono>
#include <optional>

/// What a report tells ("progressType").
enum class ReportKind {
    Started = 0,
    Figures = 1,
    Enumerated = 2,
    Retrying = 3,
    Paused = 4,
    Resumed = 5,
    Complete = 6
};

/// One job: how far it has come, and the reports that say so. It knows no clock and no socket: whoever owns it
/// says how much time has passed.
class BackupJob
{
public:
    enum class Origin { Interactive = 0, Schedule = 1 };

    /// What is to be done. `length` is the time that it takes over the whole line, the list of files not
    /// counted.
    struct Order {
        QString account;
        Origin origin = Origin::Schedule;
        JobKind kind = JobKind::OnlineBackup;
        std::chrono::milliseconds length{20'000};
    };

    explicit BackupJob(Order order);

    [[nodiscard]] const QString &account() const;
    [[nodiscard]] Origin origin() const;
    [[nodiscard]] JobKind kind() const;
    [[nodiscard]] bool isPreparing() const; ///< it lists its files, and has no figures yet
    [[nodiscard]] bool isPaused() const;
    [[nodiscard]] bool isFinished() const;

    /// How long it has worked so far, pauses not counted; how many files it has done, and those of them that
    /// its reports have named.
    [[nodiscard]] std::chrono::milliseconds elapsed() const;
    [[nodiscard]] qint64 doneFiles() const;
    [[nodiscard]] std::vector<LoggedFile> namedFiles() const;

    /// The number that the activity logs have for jobs of that kind and origin.
    [[nodiscard]] int operationNumber() const;

    void setPaused(bool paused);

    /// Sets how long the list of files still takes.
    void setPreparation(std::chrono::milliseconds left);

    /// Sets the part of the line that the job has, 1 to 100 percent; only an online backup heeds it.
    void setBandwidth(int percent);

    /// The text that figures give in the place of their own; with none their own again.
    void setFileName(std::optional<QString> name);
    void setPercentage(std::optional<QString> text);

    /// Work goes on for `by`, unless the job is paused.
    void advance(std::chrono::milliseconds by);

    /// The whole message of one report. Kinds with no figures carry none.
    [[nodiscard]] QJsonObject report(ReportKind kind) const;

    /// A message of the older form: the phase is its `State`, the figures are its `data`. An empty destination
    /// is left out.
    [[nodiscard]] QJsonObject olderReport(const QString &phase, const QString &destination) const;

private:
    [[nodiscard]] qint64 share(qint64 whole) const; ///< of what the work done so far is
    [[nodiscard]] QJsonObject figures() const;

    Order m_order;
    std::chrono::milliseconds m_preparation{0}; ///< left of it
    std::chrono::milliseconds m_elapsed{0};     ///< since the start, pauses not counted
    std::chrono::milliseconds m_worked{0};      ///< of the order's length
    int m_bandwidth = 100;
    bool m_paused = false;
    std::optional<QString> m_fileName;
    std::optional<QString> m_percentage;
};

/// `count` files of the account's owner, as its jobs name them.
[[nodiscard]] std::vector<LoggedFile> backupSetOf(const QString &account, qint64 count);

/// Hours, minutes and seconds, two digits each.
[[nodiscard]] QString clockText(std::chrono::milliseconds span);

/// A rate as it is shown: "840 KB/s", "4.7 MB/s".
[[nodiscard]] QString speedText(double kilobytesPerSecond);
