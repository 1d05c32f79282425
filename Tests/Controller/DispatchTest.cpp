#include "Tests/Controller/MonitorFixture.h"

using namespace std::chrono_literals;

namespace
{
using Origin = CorvaneMonitorController::Origin;

class DispatchTest : public MonitorFixture
{
protected:
    void SetUp() override { start(); }

    void receive(const QVariantList &array, Origin origin = Origin::SyncDaemon)
    {
        controller.didReceiveIPCMessage(array, origin);
    }

    /// The message lines that the trace has gained since the last call.
    QStringList news()
    {
        const QStringList lines = trace().split(QStringLiteral(" \n"), Qt::SkipEmptyParts);
        QStringList messages;
        for (const QString &line : lines.mid(m_seen))
            messages.append(line.section(QStringLiteral(" : "), 1));
        m_seen = lines.size();
        return messages;
    }

    static QVariantList port(const QString &text, const QString &number)
    {
        return {text, number, QStringLiteral("SyncDM"), QStringLiteral("SyncMD")};
    }

private:
    qsizetype m_seen = 0;
};

const QString Later = QStringLiteral("Not available in this version: ");
} // namespace

TEST_F(DispatchTest, EachRowIsReachedByItsNumberOrItsName)
{
    const struct {
        const char *name;
        QVariantList array;
        QStringList expected;
    } rows[] = {
        {"resume",
         {QStringLiteral("SetResumeState"), QString()},
         {Later + QStringLiteral("SCpauseresume: resume")}},
        {"pause",
         {QStringLiteral("SetPauseState"), QString()},
         {Later + QStringLiteral("SCpauseresume: pause")}},
        {"pause by number",
         port(QStringLiteral("x"), QStringLiteral("7")),
         {Later + QStringLiteral("SCpauseresume: pause")}},
        {"re-initialised",
         port(QStringLiteral("x"), QStringLiteral("516")),
         {QStringLiteral("Re-initialization completed")}},
        {"quota recalculated",
         port(QStringLiteral("x"), QStringLiteral("508")),
         {QStringLiteral("ReCalQuotaForSync message received")}},
        {"unlinked",
         port(QStringLiteral("x"), QStringLiteral("507")),
         {QStringLiteral(R"(Sync unlinked message obtained, inArray = ["x","507","SyncDM","SyncMD"])"),
          Later + QStringLiteral("unlinkSync")}},
        {"folder deleted",
         port(QStringLiteral("x"), QStringLiteral("512")),
         {QStringLiteral("SyncFolderDeleted Received in CorvaneMonitor"),
          Later + QStringLiteral("disableSync")}},
        {"selective sync",
         port(QStringLiteral("x"), QStringLiteral("513")),
         {QStringLiteral("Got the SelectiveSyncModified msg")}},
        {"password",
         port(QStringLiteral("x"), QStringLiteral("509")),
         {Later + QStringLiteral("syncPasswordChanged")}},
        {"pause state",
         port(QStringLiteral("x"), QStringLiteral("503")),
         {Later + QStringLiteral("updatePauseResumeSyncMenu")}},
        {"pause or resume",
         port(QStringLiteral("x"), QStringLiteral("5000")),
         {Later + QStringLiteral("pauseResumeSync")}},
        {"machine deleted",
         {QStringLiteral("logoutOnMachineDelete"), QVariantMap()},
         {Later + QStringLiteral("disableSync")}},
        {"full disk access",
         {QStringLiteral("FDAMessage"), QVariantMap()},
         {Later + QStringLiteral("checkDaemonFullDiskAccess")}},
        {"update",
         {QStringLiteral("AutoUpdate"), QVariantMap()},
         {Later + QStringLiteral("performAutoUpdateWithoutDateCheck")}},
        {"install",
         {QStringLiteral("RemoteManage"),
          QVariantMap{{QStringLiteral("ChannelType"), QStringLiteral("remoteInstall")}}},
         {QStringLiteral("remote install condition IPC"), QStringLiteral("remote install if condition"),
          Later + QStringLiteral("checkforupdatewithscript")}},
        {"install, without a channel", {QStringLiteral("RemoteManage"), QVariantMap()}, {}},
        {"shutdown, alone",
         {QStringLiteral("Shutdown")},
         {QStringLiteral("----- ShutDown timer alert -------"), Later + QStringLiteral("showShutdownPopup")}},
        {"old progress",
         {QStringLiteral("Progress"), QVariantMap()},
         {Later + QStringLiteral("showscheduleprogress")}},
        {"bandwidth",
         {pathValue(QLatin1String("updateBandwidthMacInUseValue"))},
         {Later + QStringLiteral("updateBandwidthMacInUseValueReceivedFromRM")}},
        {"an id and a row",
         port(QStringLiteral("T1019"), QStringLiteral("507")),
         {Later + QStringLiteral("enableUnlinkStatusAndPostNotification"),
          QStringLiteral(R"(Sync unlinked message obtained, inArray = ["T1019","507","SyncDM","SyncMD"])"),
          Later + QStringLiteral("unlinkSync")}},
        {"reset from the web",
         {QStringLiteral("N1037")},
         {QStringLiteral(R"(Notify DisableSync : ["N1037"])"), Later + QStringLiteral("disableSync")}},
        {"no row", {QStringLiteral("PingMessage"), QVariantMap()}, {}},
        {"no name", {QStringLiteral("Nonsense"), QVariantMap()}, {}},
        {"sent, never taken", port(QStringLiteral("x"), QStringLiteral("502")), {}},
    };
    news();
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        receive(row.array);
        EXPECT_EQ(news(), row.expected);
    }
}

TEST_F(DispatchTest, ArraysOfAnyShapeAreHarmless)
{
    QVariantList many;
    for (int i = 0; i < 10'000; ++i)
        many.append(QStringLiteral("x"));
    const QVariantList arrays[] = {
        {},
        {QVariant()},
        {1, 2, 3},
        {QVariantList{QVariantList{}}, QVariantMap{}},
        {QStringLiteral("SetToolTip"), QVariantList{1}},
        {QStringLiteral("ShowDesktopNotification"), QVariantList{}},
        {QStringLiteral("RemoteManage"), QVariantMap{{QStringLiteral("ChannelType"), 5}}},
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
    const QVariantList command{QStringLiteral("OpenWindowToViewFile"),
                               QVariantList{QStringLiteral("xdg-open"), QStringLiteral("/a b")}};
    receive(command, Origin::BackupDaemon);
    EXPECT_EQ(done, QStringList(QStringLiteral("shell xdg-open /a b")));
    done.clear();
    receive(command, Origin::SyncDaemon);
    daemonIsTrusted = false;
    receive(command, Origin::BackupDaemon);
    daemonIsTrusted = true;
    receive({QStringLiteral("OpenWindowToViewFile"), QVariantList{QStringLiteral("rm"), 5}},
            Origin::BackupDaemon);
    receive({QStringLiteral("OpenWindowToViewFile"), QStringLiteral("6")}, Origin::BackupDaemon);
    EXPECT_EQ(done, QStringList());
    receive({QStringLiteral("OpenWindowforUpgrade"), QVariantList()}, Origin::BackupDaemon);
    EXPECT_EQ(done, QStringList(QStringLiteral("shell "))) << "an empty array is an empty command line";
}

TEST_F(DispatchTest, SyncLinesReachTheToolTip)
{
    home.writeList(path("LoggedSyncDetailsUserPath"),
                   QVariantMap{{QStringLiteral("Pause"), QStringLiteral("0")},
                               {QStringLiteral("Re-initialize"), QStringLiteral("0")}});
    const auto shown = [&] { return item.toolTip().section(u'\n', 2); };
    receive(port(QStringLiteral("Uploading"), QStringLiteral("500")));
    EXPECT_EQ(shown(), QString()) << "sync is not enabled";
    controller.enableDisbleSync({{QStringLiteral("any key"), QStringLiteral("EnableSync")}});
    receive(port(QStringLiteral("Uploading"), QStringLiteral("500")));
    EXPECT_EQ(shown(), QStringLiteral("Cloud Drive: Uploading"));
    EXPECT_TRUE(item.imageName().startsWith(QStringLiteral("sync_menubw")));
    receive(port(QStringLiteral("T1001"), QStringLiteral("500")));
    EXPECT_EQ(shown(), QStringLiteral("Cloud Drive: All files are synced"));
    EXPECT_EQ(item.imageName(), QStringLiteral("menu_app"));
    receive(port(QStringLiteral("x"), QStringLiteral("505")));
    EXPECT_TRUE(item.toolTip().contains(QStringLiteral("Upgrade Storage")));
    receive(port(QStringLiteral("x"), QStringLiteral("504")));
    EXPECT_FALSE(item.toolTip().contains(QStringLiteral("Upgrade Storage")));
}

TEST_F(DispatchTest, ADeletedDeviceLeavesNothingToTell)
{
    receive({QStringLiteral("ShowDesktopNotification"),
             QVariantMap{{QStringLiteral("ErrorMessage"), QStringLiteral("Device deleted from account.")},
                         {QStringLiteral("x"), 1}}});
    EXPECT_EQ(item.toolTip(), QStringLiteral("Corvane 9.2.1"));
}
