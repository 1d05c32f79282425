#include "Platform/SessionBus/NamedPort.h"
#include "Platform/SessionBus/PortName.h"
#include "Tests/Controller/MonitorFixture.h"
#include "Tests/Support/Inbox.h"
#include "Tests/Support/PrivateBus.h"
#include "Utility/QNUtility.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace
{
using Origin = IpcMessage::Origin;

class DispatchTest : public MonitorFixture
{
protected:
    void SetUp() override { start(); }

    /// The message lines that the trace has gained since the last call, but of what is still missing.
    QStringList news()
    {
        const QStringList lines = trace().split(u" \n"_s, Qt::SkipEmptyParts);
        QStringList messages;
        for (const QString &line : lines.mid(m_seen))
            messages.append(line.section(u" : "_s, 1));
        m_seen = lines.size();
        messages.removeIf([](const QString &line) { return line.startsWith("Not available in this"_L1); });
        return messages;
    }

private:
    qsizetype m_seen = 0;
};

/// There before the monitor, which makes its connections as soon as it is made.
struct BusAround {
    QTemporaryDir folder;
    PrivateBus bus{folder.path()};
};

/// A monitor and its sync daemon on a bus of their own.
class SessionTest : public BusAround, public MonitorFixture
{
protected:
    void SetUp() override
    {
        setSync(User, true);
        start();
    }

    /// The sync daemon's call of the monitor's port.
    void call(const QString &text, const char *number)
    {
        auto message = QDBusMessage::createMethodCall(
            u"com.halvernet.Corvane.Port."_s + names.monitor, u"/port"_s,
            u"com.halvernet.Corvane.MessageSendingProtocol"_s, u"didReceiveDataFromOtherProcess"_s);
        message << QVariant(QVariantList{text, QLatin1StringView(number), names.syncDaemon, names.monitor});
        EXPECT_EQ(daemon.connection().call(message).type(), QDBusMessage::ReplyMessage);
    }

    QString ownerOfPort() const
    {
        return daemon.connection().interface()->serviceOwner(PortName::busName(names.monitor)).value();
    }

    /// Whether an announcement goes round once `act` has been done; its other listeners have heard it by then.
    [[nodiscard]] bool isAnnounced(const QString &announcement, const std::function<void()> &act)
    {
        bool isHeard = false;
        const auto ear = notifications.observe(announcement, [&](auto &&, auto &&) { isHeard = true; });
        act();
        return waitUntil([&] { return isHeard; });
    }
    void announce(const QString &announcement)
    {
        EXPECT_TRUE(isAnnounced(announcement, [&] { notifications.post(announcement); }));
    }

    const SyncPortNames names = syncPortNames(QNUtility::machineID(), consoleUser().value_or(QString()));
    const BusClient daemon{bus};
};
} // namespace

TEST_F(SessionTest, LinesAndOrdersGoBothWaysThroughThePorts)
{
    Inbox heard;
    const auto port = NamedPort::open(names.syncDaemon, [&](const QVariantList &array) { heard.add(array); });
    ASSERT_TRUE(port && port->isReachable());
    call(u"Uploading"_s, "500");
    EXPECT_TRUE(waitUntil([&] { return item.toolTip().endsWith(u"Cloud Drive: Uploading"_s); }));
    EXPECT_TRUE(iconMoves());

    call(QString(), "515");
    EXPECT_EQ(heard.at(0).mid(0, 2), QVariantList({QString(), u"515"_s}));
    controller.sync().recalQuotaForSync();
    EXPECT_EQ(heard.at(1).value(1), u"508"_s);
    controller.loclaizationSetup({{u"language"_s, u"en"_s}});
    EXPECT_EQ(heard.at(2).mid(0, 2), QVariantList({u"en"_s, u"5001"_s}));

    const QString before = ownerOfPort();
    controller.sync().enableCorvaneSync();
    EXPECT_NE(ownerOfPort(), before) << "each enable takes the port anew";
    call(u"Downloading"_s, "500");
    EXPECT_TRUE(waitUntil([&] { return item.toolTip().endsWith(u"Cloud Drive: Downloading"_s); }));
}

TEST_F(SessionTest, WhatConcernsOthersIsAnnounced)
{
    const Row<QVariantList, const char *> rows[] = {
        {"permission", {u"SetPermisson"_s, QVariantMap()}, "com.halvernet.Corvane.GotPermissionInfo"},
        {"quota", {u"x"_s, u"508"_s}, "com.halvernet.Corvane.RecalQuotaForSyncDone"},
        {"folder deleted", {u"x"_s, u"512"_s}, "com.halvernet.Corvane.SyncFolderDeleted"},
        {"selective sync", {u"x"_s, u"514"_s}, "com.halvernet.Corvane.UpdateSelectiveSyncUI"},
        {"folder may change", {u"x"_s, u"511"_s}, "com.halvernet.Corvane.EnableModifyButtonToChooseThePath"},
        {"reset from the web", {u"N1037"_s}, "accountResetFromWeb"},
    };
    forEachRow(rows, [&](const auto &row) {
        EXPECT_TRUE(isAnnounced(QLatin1StringView(row.expected), [&] { receive(row.given); }));
    });
}

TEST_F(SessionTest, AMoveOfTheFolderIsToldFromItsStartToItsEnd)
{
    controller.board().setSyncEnabled(false); // it is told all the same
    announce(u"moveStarted"_s);
    EXPECT_TRUE(item.toolTip().endsWith(u"\nCloud Drive: Moving"_s)) << item.toolTip().toStdString();
    controller.board().setSyncEnabled(true);
    announce(u"moveCompleted"_s);
    EXPECT_TRUE(item.toolTip().endsWith(u"\nCloud Drive: Processing"_s)) << item.toolTip().toStdString();
    controller.board().setSyncEnabled(false);
    syncLine(u"Uploading"_s);
    EXPECT_EQ(item.toolTip(), next) << "the move is over";
}

TEST_F(SessionTest, FiguresAfterAnAnnouncementShowWhatHasChangedBeforeIt)
{
    setJob(1);
    report(1);
    ASSERT_TRUE(showsSoon(running));
    setPaused(true); // and no report of it gets through
    announce(u"ActivityLogsFromMonitor"_s);
    report(1);
    settle();
    EXPECT_EQ(item.toolTip(), paused);
}

TEST_F(DispatchTest, RowsAreReachedByNumberOrNameAndLeaveTheirTrace)
{
    home.writeList(home.path(u".local/share/Corvane/mona/InProcessState.plist"_s),
                   QVariantMap{{u"Notify"_s, u"1"_s}});
    const auto port = [](const QString &text, const char *number) {
        return QVariantList{text, QLatin1StringView(number), u"SyncDM"_s, u"SyncMD"_s};
    };
    const Row<QVariantList, QString> rows[] = {
        {"re-initialised", port(u"x"_s, "516"), u"Re-initialization completed"_s},
        {"selective sync", port(u"x"_s, "513"), u"Got the SelectiveSyncModified msg"_s},
        {"push note", port(u"x"_s, "501"), u"Notification message received"_s},
        {"an id and a row", port(u"T1019"_s, "507"),
         uR"(Sync unlinked message obtained, inArray = ["T1019","507","SyncDM","SyncMD"])"_s},
        {"install",
         {u"RemoteManage"_s, QVariantMap{{u"ChannelType"_s, u"remoteInstall"_s}}},
         u"remote install if condition"_s},
        {"install, without a channel", {u"RemoteManage"_s, QVariantMap()}, {}},
        {"shutdown, alone", {u"Shutdown"_s}, u"----- ShutDown timer alert -------"_s},
        {"no row", {u"PingMessage"_s, QVariantMap()}, {}},
        {"no name", {u"Nonsense"_s, QVariantMap()}, {}},
        {"sent, never taken", port(u"x"_s, "502"), {}},
    };
    news();
    forEachRow(rows, [&](const auto &row) {
        receive(row.given, Origin::SyncDaemon);
        const QStringList lines = news();
        EXPECT_EQ(lines.isEmpty() ? QString() : lines.last(), row.expected);
    });
}

TEST_F(DispatchTest, ArraysOfAnyShapeAreHarmless)
{
    QVariantList many;
    for (int i = 0; i < 10'000; ++i)
        many.append(u"x"_s);
    const QVariantList arrays[] = {
        {},
        {QVariant()},
        {1, 2, 3},
        {QVariantList{QVariantList{}}, QVariantMap{}},
        {u"SetToolTip"_s, QVariantList{1}},
        {u"SetToolTip"_s, u"x"_s},
        {u"SetToolTip"_s, QVariantMap{{u"message"_s, 5}}},
        {u"ShowDesktopNotification"_s, QVariantList{}},
        {u"RemoteManage"_s, QVariantMap{{u"ChannelType"_s, 5}}},
        {QString(1 << 20, u'x'), QString(1 << 20, u'5')},
        many,
    };
    const QString before = item.toolTip();
    for (const QVariantList &array : arrays) {
        receive(array, Origin::BackupDaemon);
        receive(array, Origin::SyncDaemon);
    }
    EXPECT_EQ(item.toolTip(), before);
    EXPECT_TRUE(done.isEmpty());
}

TEST_F(DispatchTest, AShellCommandRunsOnlyForATrustedBackupDaemon)
{
    const QVariantList command{u"OpenWindowToViewFile"_s, QVariantList{u"xdg-open"_s, u"/a b"_s}};
    receive(command, Origin::BackupDaemon);
    EXPECT_EQ(done, QStringList(u"shell xdg-open /a b"_s));
    done.clear();
    receive(command, Origin::SyncDaemon);
    receive({u"OpenWindowToViewFile"_s, QVariantList{u"rm"_s, 5}}, Origin::BackupDaemon);
    receive({u"OpenWindowToViewFile"_s, u"6"_s}, Origin::BackupDaemon);
    EXPECT_EQ(done, QStringList());
    receive({u"OpenWindowforUpgrade"_s, QVariantList()}, Origin::BackupDaemon);
    EXPECT_EQ(done, QStringList(u"shell"_s)) << "an empty array is an empty command line";
    done.clear();

    // The daemon goes and a stranger takes its port: the next connection is his, and what the file says is no
    // help.
    daemonUser = getuid() + 1;
    peer.reset();
    ASSERT_TRUE(waitUntil([&] { return news().contains(u"Lost the connection to the backup daemon"_s); }));
    receive(command, Origin::BackupDaemon);
    clock.advance(100ms);
    peer = listener.accept();
    EXPECT_TRUE(peer->receiveFrame().contains("PingFromMonitor"));
    for (int i = 0; i < 3; ++i)
        receive(command, Origin::BackupDaemon);
    EXPECT_EQ(done, QStringList());
    const QString refused =
        u"A command was not run: whoever sent it is neither root's daemon nor this user's"_s;
    EXPECT_EQ(news(), QStringList(u"A command was not run: the system doesn't tell who sent it"_s))
        << "the other was traced a moment ago";
    clock.advance(20s);
    EXPECT_EQ(news().filter(refused), QStringList(refused + u" (3 more)"_s));
}

TEST_F(DispatchTest, SyncLinesReachTheToolTip)
{
    setSync(User, true);
    const auto shown = [&] { return item.toolTip().section(u'\n', 2); };
    syncLine(u"Uploading"_s);
    EXPECT_EQ(shown(), QString()) << "sync is not enabled";
    controller.sync().enableDisbleSync({{u"any key"_s, u"EnableSync"_s}});
    syncLine(u"Uploading"_s);
    EXPECT_EQ(shown(), u"Cloud Drive: Uploading"_s);
    receive(u"x"_s, "505");
    EXPECT_TRUE(item.toolTip().contains(u"Upgrade Storage"_s));
    receive(u"x"_s, "504");
    EXPECT_FALSE(item.toolTip().contains(u"Upgrade Storage"_s));
}

TEST_F(DispatchTest, AJobWhoseLogGrowsCanBeShown)
{
    ASSERT_FALSE(controller.menu().isEnabled(MenuItem::ShowProgress));
    receive({u"InProgressLog"_s, QVariantMap()});
    EXPECT_TRUE(controller.menu().isEnabled(MenuItem::ShowProgress));
}
