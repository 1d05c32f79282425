#pragma once

#include "Platform/AtomicFile.h"
#include "Platform/Home.h"
#include "Source/Controller/CorvaneMonitorController.h"
#include "Tests/Messaging/TestPeer.h"
#include "Tests/Platform/ArchiveMaker.h"
#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/RecordingStatusItem.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"
#include "Utility/CVSingletonForBackup.h"
#include "Utility/Paths/PathTable.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

inline const QString User = u"mona"_s;

inline QString path(const char *key)
{
    return pathValue(QLatin1StringView(key), {User});
}

/// A signed-in user with a job for tomorrow, a daemon that listens, and a monitor that has not started yet.
class MonitorFixture : public testing::Test
{
protected:
    MonitorFixture()
    {
        CVSingletonForBackup::shared().scheduleBackupRunning = false;
        setRecord(User);
        home.writeList(path("UserDetailsPath"),
                       QVariantMap{{u"TOTALQUOTASIZE"_s, u"bdbd"_s}, {u"USEDQUOTASIZE"_s, u"bb"_s}});
        home.writeList(path("TCPPortFile"), QVariantMap{{u"port"_s, qlonglong(listener.port())}});
        home.write(path("SchedulerStatusInfoPath"), "1");
        setJob(0);
    }

    /// The archive with one daily job of this user; `status` 1 means that it runs.
    void setJob(int status)
    {
        ArchiveMaker maker;
        const QDateTime reference(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
        const auto time = maker.date(double(reference.secsTo(clock.now().addDays(1))));
        home.write(path("SchedulerSettingsFile"),
                   maker.schedules({maker.record({{u"corvaneUserName"_s, User},
                                                  {u"profileName"_s, *consoleUser()},
                                                  {u"scheduleTime"_s, QVariant::fromValue(time)},
                                                  {u"frequency"_s, 2},
                                                  {u"status"_s, status}})}));
    }

    /// The record of the last sign-in.
    void setRecord(const QString &user)
    {
        home.writeList(path("LastUserLoginDetailsFilePath"), QVariantMap{{u"Username"_s, user}});
    }
    static void removeRecord() { QFile::remove(path("LastUserLoginDetailsFilePath")); }

    /// Sync as `user` has it, in the lists of the sync daemon.
    void setSync(const QString &user, bool isOn, const char *pause = "0")
    {
        home.writeList(path("SyncStateFilePath"), QVariantMap{{user.toLower(), isOn}});
        home.writeList(pathValue(QLatin1StringView("LoggedSyncDetailsUserPath"), {user}),
                       QVariantMap{{u"Pause"_s, QString::fromLatin1(pause)}, {u"Re-initialize"_s, u"0"_s}});
    }

    void setPaused(bool isPaused)
    {
        home.write(QFileInfo(path("BandwidthThrottleFilePathForTql")).path() + u"/pause.txt"_s,
                   isPaused ? "1" : "0");
    }

    void start()
    {
        controller.awakeFromNib();
        peer = listener.accept();
        ASSERT_TRUE(peer);
        ping = peer->receiveFrame();
    }

    /// Starts beside a scheduled job of which the monitor has heard.
    void startWithJob()
    {
        setJob(1);
        start();
        report(0);
        ASSERT_TRUE(waitUntil([] { return CVSingletonForBackup::shared().scheduleBackupRunning; }));
    }

    /// `startType` is 1 for a scheduled job, and 0 for one that the user has started.
    void report(int type, const QString &user = User, int startType = 1)
    {
        peer->send(TestPeer::frame(
            QStringLiteral(
                R"({"type":"operationProgress","userName":"%1","operationStartType":%3,"progressType":%2})")
                .arg(user)
                .arg(type)
                .arg(startType)
                .toUtf8()));
    }

    /// Returns when all that was sent so far has been taken.
    void settle()
    {
        done.clear();
        peer->send(TestPeer::frame(R"({"type":"OpenWindowToViewFile","data":["settled"]})"));
        ASSERT_TRUE(waitUntil([&] { return done.contains(u"shell settled"_s); }));
    }

    void receive(const QVariantList &array, IpcMessage::Origin origin = IpcMessage::Origin::BackupDaemon)
    {
        controller.didReceiveIPCMessage(array, origin);
    }
    /// A message of the sync daemon.
    void receive(const QString &text, const char *number)
    {
        receive({text, QString::fromLatin1(number), u"SyncDM"_s, u"SyncMD"_s}, IpcMessage::Origin::SyncDaemon);
    }
    void syncLine(const QString &line) { receive(line, "500"); }

    /// What the item shows: its image and its tool tip.
    [[nodiscard]] QString shown() const { return item.imageName() + u": "_s + item.toolTip(); }
    [[nodiscard]] bool iconMoves() const
    {
        return item.imageName().startsWith(QLatin1StringView("sync_menubw"));
    }

    void click(MenuItem menuItem)
    {
        controller.menu().action(menuItem)->trigger();
        clock.advance(0ms); // what a click asks comes after it
    }

    [[nodiscard]] bool showsSoon(const QString &text)
    {
        return waitUntil([&] { return item.toolTip() == text; });
    }

    [[nodiscard]] QString switchText() const
    {
        return QString::fromUtf8(home.read(path("SchedulerStatusInfoPath")));
    }

    TemporaryHome home;
    TestListener listener;
    ManualClock clock{QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7))};
    RecordingStatusItem item;
    bool dark = false;        ///< the panel
    bool desktopDark = false; ///< the windows
    DistributedNotificationCenter notifications;
    CorvaneMonitorController controller{
        {.statusItem = item,
         .clock = clock,
         .notifications = notifications,
         .desktop = desktopActions(),
         .peers = {[this](quint16, quint16) { return daemonUser; }, [this](quint16) { return daemonUser; }}}};

    /// What the controller has done, one line an action.
    QStringList done;
    int answer = 0; ///< to a question; 1 is its first button
    bool panelIsVisible = true;
    std::optional<uid_t> daemonUser = getuid();

    DesktopActions desktopActions()
    {
        DesktopActions actions;
        const auto note = [this](const char *what, const QString &detail) {
            done.append(QString(QLatin1StringView(what) + u' ' + detail).trimmed());
        };
        actions.isDark = [this] { return dark; };
        actions.isDesktopDark = [this] { return desktopDark; };
        actions.refreshWindowColours = [this] { done.append(u"colours"_s); };
        actions.panelIsVisible = [this] { return panelIsVisible; };
        actions.showPopover = [note](const QString &text) { note("popover", text); };
        actions.showAlert = [note](const QString &text) { note("alert", text); };
        actions.ask = [this, note](const DesktopActions::Question &question) {
            note("ask", question.text);
            return answer;
        };
        actions.runHelper = [note](const QString &path, const QStringList &) { note("helper", path); };
        actions.openUrl = [note](const QUrl &url) { note("url", url.toString()); };
        actions.openProgram = [note](const QString &) { return note("open", {}), false; };
        actions.launchProgram = [note](const QString &name) { return note("launch", name), true; };
        actions.relaunch = [note] { return note("relaunch", {}), std::optional<QString>(); };
        actions.quit = [note] { note("quit", {}); };
        actions.runShell = [note](const QString &command) { return note("shell", command), true; };
        return actions;
    }

    [[nodiscard]] QString trace() const
    {
        return QString::fromUtf8(
            home.read(standardizedPath(pathValue(QLatin1StringView("MonitorTraceFilePath")))));
    }
    std::unique_ptr<TestPeer> peer;
    QByteArray ping;

    const QString bare = u"Corvane 9.2.1"_s;
    const QString next = u"Corvane 9.2.1\nYour next scheduled job will start on 03-05-2026 05:06"_s;
    const QString running = u"Corvane 9.2.1\nScheduled Backup is in progress."_s;
    const QString paused = u"Corvane 9.2.1\nYour Scheduled job is paused."_s;
};
