#include "Tests/Support/PrivateBus.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr int StartLimit = 30'000; // milliseconds

QByteArray configuration(const QString &address)
{
    return "<busconfig><type>session</type><listen>" + address.toUtf8() +
           "</listen><policy context=\"default\"><allow user=\"*\"/><allow own=\"*\"/>"
           "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/></policy></busconfig>";
}
} // namespace

PrivateBus::PrivateBus(const QString &folder, Begin begin)
    : m_address(u"unix:path=%1/bus"_s.arg(folder)), m_configuration(folder + u"/bus.conf"_s),
      m_addressBefore(qgetenv("DBUS_SESSION_BUS_ADDRESS")),
      m_hadAddress(qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"))
{
    QFile file(m_configuration);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(configuration(m_address)) > 0 && file.flush());
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toUtf8());
    if (begin == Begin::Running)
        start();
}

PrivateBus::~PrivateBus()
{
    stop();
    if (m_hadAddress)
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_addressBefore);
    else
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
}

void PrivateBus::start()
{
    ASSERT_TRUE(m_daemon.start(u"dbus-daemon"_s, {u"--config-file="_s + m_configuration, u"--nofork"_s,
                                                  u"--nopidfile"_s, u"--nosyslog"_s, u"--print-address"_s}));
    ASSERT_FALSE(m_daemon.read(StartLimit).isEmpty()) << "the bus prints its address when it listens";
}

void PrivateBus::stop()
{
    m_daemon.kill();
    QFile::remove(m_address.section(u'=', 1));
}

BusClient::BusClient(const PrivateBus &bus)
{
    static int made = 0;
    m_label = u"test-client-%1"_s.arg(++made);
    EXPECT_TRUE(QDBusConnection::connectToBus(bus.address(), m_label).isConnected());
}

BusClient::~BusClient()
{
    leave();
}

void BusClient::leave()
{
    QDBusConnection::disconnectFromBus(m_label);
}
