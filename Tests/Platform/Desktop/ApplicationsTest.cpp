#include "Platform/Desktop/Applications.h"
#include "Platform/Desktop/ApplicationService.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
const QString Identifier = u"com.example.Some-App"_s;

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
    EXPECT_EQ(Applications::objectPath(Identifier), u"/com/example/Some_App"_s);
}

TEST(Applications, ActivationReachesTheOwnerOfTheName)
{
    const TemporaryHome home;
    const PrivateBus bus(home.path(QString()));
    const BusClient caller(bus), owner(bus), other(bus);
    int activations = 0;
    {
        ApplicationService service(
            Identifier, [&activations] { ++activations; }, owner.connection());
        ASSERT_TRUE(service.start());
        EXPECT_TRUE(Applications::activate(Identifier, caller.connection()));
        EXPECT_TRUE(QTest::qWaitFor([&] { return activations == 1; }));
        EXPECT_FALSE(ApplicationService(
                         Identifier, [] {}, other.connection())
                         .start())
            << "the name is the first one's";
    }
    EXPECT_FALSE(caller.connection().interface()->isServiceRegistered(Identifier));
    EXPECT_TRUE(Applications::activate(Identifier, caller.connection())) << "sent, though nobody answers";
    EXPECT_EQ(activations, 1);
}

TEST(Applications, NoBusAndNoName)
{
    const QDBusConnection none(u"never connected"_s);
    EXPECT_FALSE(Applications::activate(Identifier, none));
    EXPECT_FALSE(ApplicationService(
                     Identifier, [] {}, none)
                     .start());
    const TemporaryHome home;
    const PrivateBus bus(home.path(QString()));
    const BusClient caller(bus);
    for (const char *name : {"", "word", ".a.b", "a..b", "a.b.", "a b.c", ":1.2", "a.1b", "a.b\n"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(Applications::activate(QString::fromUtf8(name), caller.connection()));
    }
}

TEST(Applications, StartsByPathAndByName)
{
    const TemporaryHome home;
    const QString file = script(home, u"an application"_s);
    const QString answer = home.path(u"answer"_s);
    EXPECT_TRUE(Applications::open(file));
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(answer); }));
    QFile::remove(answer);

    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(home.path(QString())) + ":" + path);
    EXPECT_TRUE(Applications::launch(u"an application"_s));
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(answer); }));
    qputenv("PATH", path);
}

TEST(Applications, WhatCannotBeStarted)
{
    const TemporaryHome home;
    home.write(u"text"_s, "no program");
    EXPECT_FALSE(Applications::open(home.path(u"missing"_s)));
    EXPECT_FALSE(Applications::open(home.path(u"text"_s)));
    EXPECT_FALSE(Applications::open(home.path(QString())));
    EXPECT_FALSE(Applications::open(QString()));
    EXPECT_FALSE(Applications::launch(u"no-such-program-anywhere"_s));
    EXPECT_FALSE(Applications::launch(QString()));
}
