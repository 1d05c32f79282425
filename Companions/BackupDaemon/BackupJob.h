#pragma once

#include <QJsonObject>
#include <QString>

#include <chrono>

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

/// One backup: how far it has come, and the reports that say so. It knows no clock and no socket: whoever owns
/// it says how much time has passed.
class BackupJob
{
public:
    enum class Origin { Interactive = 0, Schedule = 1 };

    BackupJob(QString account, Origin origin, std::chrono::milliseconds length);

    [[nodiscard]] const QString &account() const;
    [[nodiscard]] Origin origin() const;
    [[nodiscard]] bool isPaused() const;
    [[nodiscard]] bool isFinished() const;

    void setPaused(bool paused);

    /// Work goes on for `by`, unless the job is paused.
    void advance(std::chrono::milliseconds by);

    /// The whole message of one report. Kinds with no figures carry none.
    [[nodiscard]] QJsonObject report(ReportKind kind) const;

private:
    [[nodiscard]] QJsonObject figures() const;
    [[nodiscard]] int percentage() const;

    QString m_account;
    Origin m_origin;
    std::chrono::milliseconds m_length;
    std::chrono::milliseconds m_elapsed{0};
    bool m_paused = false;
};
