#include "Platform/Desktop/Applications.h"
#include "Platform/Desktop/ApplicationService.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

namespace
{
const QString Identifier = QStringLiteral("com.example.Some-App");

/// A session bus for this test alone, with two connections to it.
class Bus
{
public:
    Bus()
    {
        m_daemon.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                       QStringLiteral("--print-address")});
        EXPECT_TRUE(m_daemon.waitForReadyRead());
        m_address = QString::fromUtf8(m_daemon.readLine().trimmed());
    }
    ~Bus()
    {
        for (const QString &name : m_names)
            QDBusConnection::disconnectFromBus(name);
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    QDBusConnection connection(const QString &name)
    {
        m_names.append(name);
        return QDBusConnection::connectToBus(m_address, name);
    }

private:
    QProcess m_daemon;
    QString m_address;
    QStringList m_names;
};

QString script(const TemporaryHome &home, const QString &name)
{
    const QString file = home.path(name);
    home.write(file, "#!/bin/sh\npwd > answer.part\nmv answer.part answer\n");
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return file;
}
} // namespace

TEST(Applications, ObjectPathOfAnIdentifier)
{
    EXPECT_EQ(Applications::objectPath(Identifier), QStringLiteral("/com/example/Some_App"));
}

TEST(Applications, ActivationReachesTheOwnerOfTheName)
{
    Bus bus;
    int activations = 0;
    const QDBusConnection caller = bus.connection(QStringLiteral("caller"));
    {
        ApplicationService service(
            Identifier, [&activations] { ++activations; }, bus.connection(QStringLiteral("owner")));
        ASSERT_TRUE(service.start());
        EXPECT_TRUE(Applications::activate(Identifier, caller));
        EXPECT_TRUE(QTest::qWaitFor([&] { return activations == 1; }));

        ApplicationService second(
            Identifier, [] {}, bus.connection(QStringLiteral("second")));
        EXPECT_FALSE(second.start()) << "the name is the first one's";
    }
    EXPECT_FALSE(caller.interface()->isServiceRegistered(Identifier));
    EXPECT_TRUE(Applications::activate(Identifier, caller)) << "sent, though nobody answers";
    EXPECT_EQ(activations, 1);
}

TEST(Applications, NoBusAndNoName)
{
    const QDBusConnection none(QStringLiteral("never connected"));
    EXPECT_FALSE(Applications::activate(Identifier, none));
    EXPECT_FALSE(ApplicationService(
                     Identifier, [] {}, none)
                     .start());
    Bus bus;
    const QDBusConnection caller = bus.connection(QStringLiteral("caller"));
    for (const char *name : {"", "word", ".a.b", "a..b", "a.b.", "a b.c", ":1.2", "a.1b", "a.b\n"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(Applications::activate(QString::fromUtf8(name), caller));
    }
}

TEST(Applications, StartsByPathAndByName)
{
    const TemporaryHome home;
    const QString file = script(home, QStringLiteral("an application"));
    const QString answer = home.path(QStringLiteral("answer"));
    EXPECT_TRUE(Applications::open(file));
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(answer); }));
    QFile::remove(answer);

    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(home.path(QString())) + ":" + path);
    EXPECT_TRUE(Applications::launch(QStringLiteral("an application")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(answer); }));
    qputenv("PATH", path);
}

TEST(Applications, WhatCannotBeStarted)
{
    const TemporaryHome home;
    home.write(QStringLiteral("text"), "no program");
    EXPECT_FALSE(Applications::open(home.path(QStringLiteral("missing"))));
    EXPECT_FALSE(Applications::open(home.path(QStringLiteral("text"))));
    EXPECT_FALSE(Applications::open(home.path(QString())));
    EXPECT_FALSE(Applications::open(QString()));
    EXPECT_FALSE(Applications::launch(QStringLiteral("no-such-program-anywhere")));
    EXPECT_FALSE(Applications::launch(QString()));
}
