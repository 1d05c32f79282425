#pragma once

#include "Platform/AtomicFile.h"
#include "Platform/Home.h"
#include "Source/Controller/CorvaneMonitorController.h"
#include "Tests/Messaging/TestPeer.h"
#include "Tests/Platform/ArchiveMaker.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/RecordingStatusItem.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"
#include "Utility/Paths/PathTable.h"

#include <QFileInfo>

#include <gtest/gtest.h>

inline const QString User = QStringLiteral("mona");

inline QString path(const char *key)
{
    return pathValue(QLatin1String(key), {User});
}

/// A signed-in user with a job for tomorrow, a daemon that listens, and a monitor that has not started yet.
class MonitorFixture : public testing::Test
{
protected:
    MonitorFixture()
    {
        home.writeList(path("LastUserLoginDetailsFilePath"), QVariantMap{{QStringLiteral("Username"), User}});
        home.writeList(path("UserDetailsPath"),
                       QVariantMap{{QStringLiteral("TOTALQUOTASIZE"), QStringLiteral("bdbd")},
                                   {QStringLiteral("USEDQUOTASIZE"), QStringLiteral("bb")}});
        home.writeList(path("TCPPortFile"), QVariantMap{{QStringLiteral("port"), qlonglong(listener.port())}});
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
                   maker.schedules({maker.record({{QStringLiteral("corvaneUserName"), User},
                                                  {QStringLiteral("profileName"), *consoleUser()},
                                                  {QStringLiteral("scheduleTime"), QVariant::fromValue(time)},
                                                  {QStringLiteral("frequency"), 2},
                                                  {QStringLiteral("status"), status}})}));
    }

    void setPaused(bool isPaused)
    {
        home.write(QFileInfo(path("BandwidthThrottleFilePathForTql")).path() + QStringLiteral("/pause.txt"),
                   isPaused ? "1" : "0");
    }

    void start()
    {
        controller.awakeFromNib();
        peer = listener.accept();
        ASSERT_TRUE(peer);
        ping = peer->receiveFrame();
    }

    void report(int type, const QString &user = User)
    {
        peer->send(TestPeer::frame(
            QStringLiteral(
                R"({"type":"operationProgress","userName":"%1","operationStartType":1,"progressType":%2})")
                .arg(user)
                .arg(type)
                .toUtf8()));
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
        {.statusItem = item, .clock = clock, .notifications = notifications, .desktop = desktopActions()}};

    /// What the controller has done, one line an action.
    QStringList done;
    int answer = 0; ///< to a question; 1 is its first button
    bool panelIsVisible = true;
    bool daemonIsTrusted = true;

    DesktopActions desktopActions()
    {
        DesktopActions actions;
        const auto note = [this](const char *what, const QString &detail) {
            done.append(QString(QLatin1String(what) + u' ' + detail).trimmed());
        };
        actions.isDark = [this] { return dark; };
        actions.isDesktopDark = [this] { return desktopDark; };
        actions.refreshWindowColours = [this] { done.append(QStringLiteral("colours")); };
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
        actions.runShell = [note](const QString &command) { note("shell", command); };
        actions.isListenerTrusted = [this](quint16 port) { return daemonIsTrusted && port == listener.port(); };
        return actions;
    }

    [[nodiscard]] QString trace() const
    {
        return QString::fromUtf8(home.read(standardizedPath(pathValue(QLatin1String("MonitorTraceFilePath")))));
    }
    std::unique_ptr<TestPeer> peer;
    QByteArray ping;

    const QString next =
        QStringLiteral("Corvane 9.2.1\nYour next scheduled job will start on 03-05-2026 05:06");
    const QString running = QStringLiteral("Corvane 9.2.1\nScheduled Backup is in progress.");
    const QString paused = QStringLiteral("Corvane 9.2.1\nYour Scheduled job is paused.");
};
