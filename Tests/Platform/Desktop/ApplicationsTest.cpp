#include "Platform/Desktop/Applications.h"
#include "Platform/Desktop/ApplicationService.h"
#include "Platform/Home.h"
#include "Platform/Umask.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QTest>

#include <csignal>

#include <sys/stat.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
const QString Identifier = u"com.example.Some-App"_s;

bool isOwned(const BusLink &link)
{
    const auto connection = link.connection();
    return connection && connection->bus().interface()->isServiceRegistered(Identifier);
}

QString script(const TemporaryHome &home, const QString &name)
{
    const QString file = home.path(name);
    home.write(
        file,
        "#!/bin/sh\n{ pwd; umask; sed -n 's/^SigIgn:\t//p' /proc/$$/status; echo \"$*\"; } > answer.part\n"
        "mv answer.part answer\n");
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return file;
}
} // namespace

TEST(Applications, ActivationReachesTheOwnerOfTheName)
{
    const TemporaryHome home;
    const PrivateBus bus(home.path(QString()));
    BusLink link, otherLink;
    link.start();
    otherLink.start();
    int activations = 0, inherited = 0;
    ApplicationService heir(
        Identifier, [&] { ++inherited; }, otherLink);
    {
        ApplicationService service(
            Identifier, [&activations] { ++activations; }, link);
        service.start();
        ASSERT_TRUE(QTest::qWaitFor([&] { return isOwned(link); }));
        heir.start();
        EXPECT_TRUE(Applications::activate(Identifier, otherLink));
        EXPECT_TRUE(QTest::qWaitFor([&] { return activations == 1; }));
    }
    EXPECT_TRUE(Applications::activate(Identifier, link));
    EXPECT_TRUE(QTest::qWaitFor([&] { return inherited == 1; }));
    EXPECT_EQ(activations, 1);
}

TEST(Applications, NoBusAndNoName)
{
    const TemporaryHome home;
    PrivateBus bus(home.path(QString()), PrivateBus::Begin::Stopped);
    BusLink link(std::chrono::milliseconds(5));
    link.start();
    EXPECT_FALSE(Applications::activate(Identifier, link));
    int activations = 0, refusals = 0;
    ApplicationService service(
        Identifier, [&] { ++activations; }, link);
    service.start();
    ApplicationService nameless(
        u"no name"_s, [] {}, link, [&](const QString &) { ++refusals; });
    nameless.start();
    for (const int lives : {1, 2}) { // of the bus
        bus.start();
        ASSERT_TRUE(QTest::qWaitFor([&] { return isOwned(link); })) << lives;
        EXPECT_TRUE(Applications::activate(Identifier, link));
        EXPECT_TRUE(QTest::qWaitFor([&] { return activations == lives; })) << lives;
        if (lives == 1)
            bus.stop();
        ASSERT_TRUE(QTest::qWaitFor([&] { return (link.connection() == nullptr) == (lives == 1); }));
    }
    EXPECT_EQ(refusals, 1) << "like ones are told once";
    for (const char *name : {"", "word", ".a.b", "a..b", "a.b.", "a b.c", ":1.2", "a.1b", "a.b\n"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(Applications::activate(QString::fromUtf8(name), link));
    }
}

TEST(Applications, StartsByPathAndByName)
{
    const TemporaryHome home;
    const QString file = script(home, u"an application"_s);
    const QString answer = home.path(u"answer"_s);
    // What this process has set for itself is not for those that it starts.
    const mode_t session = umask(022);
    Umask::keepPrivate();
    std::signal(SIGXFSZ, SIG_IGN);
    EXPECT_TRUE(Applications::open(file, {u"it's $1"_s, u"two"_s}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(answer); }));
    EXPECT_EQ(home.read(u"answer"_s).split('\n'),
              (QByteArrayList{homeDirectory().toUtf8(), "0022", "0000000000000000", "it's $1 two", ""}));
    QFile::remove(answer);
    std::signal(SIGXFSZ, SIG_DFL);
    umask(session);
    Umask::keepPrivate();
    umask(session);

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
