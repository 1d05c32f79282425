#include "Tests/Controller/MonitorFixture.h"

using namespace Qt::StringLiterals;
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
        const QStringList lines = trace().split(u" \n"_s, Qt::SkipEmptyParts);
        QStringList messages;
        for (const QString &line : lines.mid(m_seen))
            messages.append(line.section(u" : "_s, 1));
        m_seen = lines.size();
        return messages;
    }

    static QVariantList port(const QString &text, const QString &number)
    {
        return {text, number, u"SyncDM"_s, u"SyncMD"_s};
    }

private:
    qsizetype m_seen = 0;
};

const QString Later = u"Not available in this version: "_s;
} // namespace

TEST_F(DispatchTest, EachRowIsReachedByItsNumberOrItsName)
{
    const std::tuple<const char *, QVariantList, QStringList> rows[] = {
        {"re-initialised", port(u"x"_s, u"516"_s), {u"Re-initialization completed"_s}},
        {"quota recalculated", port(u"x"_s, u"508"_s), {u"ReCalQuotaForSync message received"_s}},
        {"unlinked",
         port(u"x"_s, u"507"_s),
         {uR"(Sync unlinked message obtained, inArray = ["x","507","SyncDM","SyncMD"])"_s,
          Later + u"unlinkSync"_s}},
        {"folder deleted",
         port(u"x"_s, u"512"_s),
         {u"SyncFolderDeleted Received in CorvaneMonitor"_s, Later + u"disableSync"_s}},
        {"selective sync", port(u"x"_s, u"513"_s), {u"Got the SelectiveSyncModified msg"_s}},
        {"password", port(u"x"_s, u"509"_s), {Later + u"syncPasswordChanged"_s}},
        {"pause state", port(u"x"_s, u"503"_s), {Later + u"updatePauseResumeSyncMenu"_s}},
        {"pause or resume", port(u"x"_s, u"5000"_s), {Later + u"pauseResumeSync"_s}},
        {"machine deleted", {u"logoutOnMachineDelete"_s, QVariantMap()}, {Later + u"disableSync"_s}},
        {"full disk access", {u"FDAMessage"_s, QVariantMap()}, {Later + u"checkDaemonFullDiskAccess"_s}},
        {"update", {u"AutoUpdate"_s, QVariantMap()}, {Later + u"performAutoUpdateWithoutDateCheck"_s}},
        {"install",
         {u"RemoteManage"_s, QVariantMap{{u"ChannelType"_s, u"remoteInstall"_s}}},
         {u"remote install condition IPC"_s, u"remote install if condition"_s,
          Later + u"checkforupdatewithscript"_s}},
        {"install, without a channel", {u"RemoteManage"_s, QVariantMap()}, {}},
        {"shutdown, alone",
         {u"Shutdown"_s},
         {u"----- ShutDown timer alert -------"_s, Later + u"showShutdownPopup"_s}},
        {"an id and a row",
         port(u"T1019"_s, u"507"_s),
         {Later + u"enableUnlinkStatusAndPostNotification"_s,
          uR"(Sync unlinked message obtained, inArray = ["T1019","507","SyncDM","SyncMD"])"_s,
          Later + u"unlinkSync"_s}},
        {"reset from the web",
         {u"N1037"_s},
         {uR"(Notify DisableSync : ["N1037"])"_s, Later + u"disableSync"_s}},
        {"no row", {u"PingMessage"_s, QVariantMap()}, {}},
        {"no name", {u"Nonsense"_s, QVariantMap()}, {}},
        {"sent, never taken", port(u"x"_s, u"502"_s), {}},
    };
    news();
    for (const auto &[name, array, expected] : rows) {
        SCOPED_TRACE(name);
        receive(array);
        EXPECT_EQ(news(), expected);
    }
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
    daemonIsTrusted = false;
    receive(command, Origin::BackupDaemon);
    daemonIsTrusted = true;
    receive({u"OpenWindowToViewFile"_s, QVariantList{u"rm"_s, 5}}, Origin::BackupDaemon);
    receive({u"OpenWindowToViewFile"_s, u"6"_s}, Origin::BackupDaemon);
    EXPECT_EQ(done, QStringList());
    receive({u"OpenWindowforUpgrade"_s, QVariantList()}, Origin::BackupDaemon);
    EXPECT_EQ(done, QStringList(u"shell"_s)) << "an empty array is an empty command line";
}

TEST_F(DispatchTest, SyncLinesReachTheToolTip)
{
    home.writeList(path("LoggedSyncDetailsUserPath"),
                   QVariantMap{{u"Pause"_s, u"0"_s}, {u"Re-initialize"_s, u"0"_s}});
    const auto shown = [&] { return item.toolTip().section(u'\n', 2); };
    receive(port(u"Uploading"_s, u"500"_s));
    EXPECT_EQ(shown(), QString()) << "sync is not enabled";
    controller.enableDisbleSync({{u"any key"_s, u"EnableSync"_s}});
    receive(port(u"Uploading"_s, u"500"_s));
    EXPECT_EQ(shown(), u"Cloud Drive: Uploading"_s);
    EXPECT_TRUE(item.imageName().startsWith(u"sync_menubw"_s));
    receive(port(u"T1001"_s, u"500"_s));
    EXPECT_EQ(shown(), u"Cloud Drive: All files are synced"_s);
    EXPECT_EQ(item.imageName(), u"menu_app"_s);
    receive(port(u"x"_s, u"505"_s));
    EXPECT_TRUE(item.toolTip().contains(u"Upgrade Storage"_s));
    receive(port(u"x"_s, u"504"_s));
    EXPECT_FALSE(item.toolTip().contains(u"Upgrade Storage"_s));
}

TEST_F(DispatchTest, ADeletedDeviceLeavesNothingToTell)
{
    receive({u"ShowDesktopNotification"_s,
             QVariantMap{{u"ErrorMessage"_s, u"Device deleted from account."_s}, {u"x"_s, 1}}});
    EXPECT_EQ(item.toolTip(), u"Corvane 9.2.1"_s);
}
