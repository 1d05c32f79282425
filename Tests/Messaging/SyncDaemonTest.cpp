// The module and the stand-in for the sync daemon, which share no code, at the two ends of one bus.
#include "Messaging/MessageSendingModule.h"
#include "Platform/Home.h"
#include "Tests/Support/Inbox.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryHome.h"

#include <QCoreApplication>
#include <QSysInfo>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
class Received : public MessageSendingDelegate, public Inbox
{
public:
    void didReceiveIPCMessage(const QVariantList &array) override { add(array); }
};

class SyncDaemonPair : public testing::Test
{
protected:
    SyncDaemonPair()
    {
        const QString root = QCoreApplication::applicationDirPath() + u"/.."_s;
        EXPECT_TRUE(m_daemon.start(root + u"/bin/companions/corvane-sync-daemon"_s,
                                   {u"--table"_s, root + u"/share/corvane-monitor/Localizable.plist"_s}));
        module.setupConnection(names.monitor, names.syncDaemon);
    }
    ~SyncDaemonPair() override { m_daemon.finish(); }

    void command(const char *line) const { m_daemon.write(QByteArray(line) + '\n'); }

    /// Waits until the daemon has printed a line that holds `text`.
    bool prints(const QByteArray &text)
    {
        return waitUntil([&] {
            m_printed += m_daemon.read(0);
            return m_printed.contains(text);
        });
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
