#pragma once

#include <QString>
#include <QVariantMap>

class StatusBoard;
struct IpcMessage;

/// What the daemons have told for the notification panel, the failed-backup watch and push notes. Main thread
/// only.
class DesktopNotes
{
public:
    explicit DesktopNotes(StatusBoard &board) : m_board(board) {}

    /// Takes a job's result, or a change of the sync status alone.
    void didReceiveDesktopNotification(const IpcMessage &message);
    /// What a note says of sync.
    void setSyncStatus(const QString &line) { dictFordesktopNotif.insert(QStringLiteral("SyncStatus"), line); }
    /// Takes whether the account's administrator wants notes shown.
    void takeSettings(const QString &user);
    /// A panel that opens shows no log of a job that ended before.
    void forgetSessionLog() { mSessionLogScheduledBackup.clear(); }

private:
    StatusBoard &m_board;
    QVariantMap dictFordesktopNotif;
    QString mSessionLogScheduledBackup;
    bool shouldDisplayDesktopNotification = true;
};
