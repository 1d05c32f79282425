// The module and the stand-in for the sync daemon, which share no code, at the two ends of one bus.
#include "Messaging/MessageSendingModule.h"
#include "Platform/Home.h"
#include "Platform/PropertyList.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryHome.h"

#include <QCoreApplication>
#include <QSysInfo>
#include <QTest>

#include <gtest/gtest.h>

#include <mutex>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Deadline = 30'000; // milliseconds; only a failing test waits so long

class Received : public MessageSendingDelegate
{
public:
    void didReceiveIPCMessage(const QVariantList &array) override
    {
        const std::lock_guard lock(m_mutex);
        m_arrays.push_back(array);
    }
    /// Waits for the array that comes at `place`, and gives it.
    QVariantList at(std::size_t place) const
    {
        const auto count = [this] {
            const std::lock_guard lock(m_mutex);
            return m_arrays.size();
        };
        if (!QTest::qWaitFor([&] { return count() > place; }, Deadline))
            return {u"nothing came"_s};
        const std::lock_guard lock(m_mutex);
        return m_arrays[place];
    }

private:
    mutable std::mutex m_mutex;
    std::vector<QVariantList> m_arrays;
};

class SyncDaemonPair : public testing::Test
{
protected:
    SyncDaemonPair()
    {
        const QString root = QCoreApplication::applicationDirPath() + u"/.."_s;
        EXPECT_TRUE(m_daemon.start(root + u"/bin/companions/corvane-sync-daemon"_s,
                                   {u"--table"_s, root + u"/share/corvane-monitor/Localizable.plist"_s}));
        home.writeList(u".local/share/Corvane/Sync/SyncState.plist"_s, QVariantMap{{u"other"_s, true}});
        module.setupConnection(names.monitor, names.syncDaemon);
    }
    ~SyncDaemonPair() override { m_daemon.finish(); }

    void command(const char *line) const { m_daemon.write(QByteArray(line) + '\n'); }

    /// Waits until the daemon has printed a line that holds `text`.
    bool prints(const QByteArray &text)
    {
        return QTest::qWaitFor(
            [&] {
                m_printed += m_daemon.read(0);
                return m_printed.contains(text);
            },
            Deadline);
    }

    QVariantMap list(const QString &path) const
    {
        return PropertyList::readDictionary(home.path(path)).value_or(QVariantMap());
    }

    TemporaryHome home;
    PrivateBus bus{home.path(QString())};
    const SyncPortNames names =
        syncPortNames(QString::fromLatin1(QSysInfo::machineUniqueId()), consoleUser().value_or(QString()));
    std::shared_ptr<Received> received = std::make_shared<Received>();
    MessageSendingModule module{received};

private:
    ChildProgram m_daemon;
    QByteArray m_printed;
};
} // namespace

TEST_F(SyncDaemonPair, ExchangeTheirMessages)
{
    ASSERT_TRUE(prints("ok SyncDM"));
    command("status Uploading a \"b\" (1 of 2)");
    EXPECT_EQ(received->at(0),
              (QVariantList{u"Uploading a \"b\" (1 of 2)"_s, u"500"_s, names.syncDaemon, names.monitor}));
    command("number 514");
    EXPECT_EQ(received->at(1), (QVariantList{QString(), u"514"_s, names.syncDaemon, names.monitor}));
    command("raw [1, {\"deep\": [true]}, []]");
    EXPECT_EQ(received->at(2).size(), 3);
    EXPECT_EQ(received->at(2).value(1), QVariant(QVariantMap{{u"deep"_s, QVariantList{true}}}));

    module.sendIPCMessage(u"Pause Sync"_s, 502, false);
    EXPECT_TRUE(prints("received \"Pause Sync\" \"502\" \"" + names.monitor.toUtf8() + "\""));
    module.sendIPCMessage(QVariantMap{{u"Username"_s, u"Ann"_s}, {u"Password"_s, u"hidden"_s}}, 506, false);
    EXPECT_TRUE(prints("received {Password, Username} \"506\""));
    module.sendIPCMessage(u"SyncRecalculateQuota"_s, 508, false);
    EXPECT_EQ(received->at(3).value(1), u"508"_s);
}

TEST_F(SyncDaemonPair, KeepTheSharedFilesOfPauseAndState)
{
    ASSERT_TRUE(prints("ok SyncDM"));
    command("enable Ann");
    ASSERT_TRUE(prints("\nok\n"));
    EXPECT_EQ(list(u".local/share/Corvane/Sync/SyncState.plist"_s),
              (QVariantMap{{u"ann"_s, true}, {u"other"_s, true}}));
    EXPECT_EQ(list(u".local/share/Corvane/Sync/LoggedSyncDetails.plist"_s),
              (QVariantMap{{u"Pause"_s, u"0"_s}, {u"Re-initialize"_s, false}}));
    EXPECT_EQ(list(u".local/share/Corvane/Ann/SyncDetails.plist"_s).value(u"Pause"_s), u"0"_s);
    command("pause");
    ASSERT_TRUE(prints("error nobody is signed in"));

    home.writeList(u".local/share/Corvane/LastUserLoginDetails.plist"_s,
                   QVariantMap{{u"Username"_s, u"Ann"_s}});
    command("pause");
    EXPECT_EQ(received->at(0).value(1), u"503"_s);
    EXPECT_EQ(received->at(1).value(0), u"Paused"_s);
    EXPECT_EQ(list(u".local/share/Corvane/Sync/LoggedSyncDetails.plist"_s).value(u"Pause"_s), u"1"_s);
    EXPECT_EQ(list(u".local/share/Corvane/Ann/SyncDetails.plist"_s).value(u"Pause"_s), u"1"_s);

    command("disable");
    command("number 507"); // what follows it has been done
    EXPECT_EQ(received->at(2).value(1), u"507"_s);
    EXPECT_EQ(list(u".local/share/Corvane/Sync/SyncState.plist"_s).value(u"ann"_s), false);
}
