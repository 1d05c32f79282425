#include "Platform/Desktop/ApplicationService.h"

#include "Platform/Desktop/Applications.h"
#include "Platform/Ending.h"

#include <QDBusPendingCallWatcher>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::milliseconds NameLimit{3000};

// As in the D-Bus specification, "Message Bus Messages": wait in line, let nobody take the name away.
constexpr uint NoFlags = 0;
constexpr uint PrimaryOwner = 1;
constexpr uint InQueue = 2;
constexpr uint AlreadyOwner = 4;
} // namespace

ApplicationService::ApplicationService(QString identifier, std::function<void()> activated, BusLink &bus,
                                       std::function<void(const QString &)> trace)
    : m_identifier(std::move(identifier)), m_activated(std::move(activated)), m_trace(std::move(trace)),
      m_bus(bus)
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(BusLink::RetryPace);
    connect(&m_retry, &QTimer::timeout, this, &ApplicationService::ask);
}

ApplicationService::~ApplicationService()
{
    const auto connection = m_bus.connection();
    if (!connection || Ending::hasBegun())
        return;
    connection->bus().unregisterObject(Applications::objectPath(m_identifier));
    connection->bus().send(BusConnection::busMethod(u"ReleaseName"_s, {m_identifier}));
}

void ApplicationService::start()
{
    connect(&m_bus, &BusLink::connected, this, &ApplicationService::ask);
    ask();
}

void ApplicationService::ask()
{
    const auto connection = m_bus.connection();
    if (!connection)
        return;
    // The object first: who waits for the name calls as soon as it appears. It stays from an earlier question.
    connection->bus().registerObject(Applications::objectPath(m_identifier), this,
                                     QDBusConnection::ExportScriptableSlots);
    const QDBusMessage question = BusConnection::busMethod(u"RequestName"_s, {m_identifier, NoFlags});
    auto *call = new QDBusPendingCallWatcher(
        connection->bus().asyncCall(question, static_cast<int>(NameLimit.count())), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *finished) {
        takeAnswer(finished->reply());
        finished->deleteLater();
    });
}

void ApplicationService::takeAnswer(const QDBusMessage &answer)
{
    const uint place = answer.arguments().value(0).toUInt();
    if (answer.type() == QDBusMessage::ReplyMessage && (place == PrimaryOwner || place == AlreadyOwner)) {
        m_traced.clear();
    } else if (answer.type() == QDBusMessage::ReplyMessage && place == InQueue) {
        traceOnce(u"another process has the name %1; it comes here next"_s.arg(m_identifier));
    } else if (m_bus.connection()) { // without one, the next asks by itself
        traceOnce(u"the session bus did not give the name %1"_s.arg(m_identifier));
        m_retry.start();
    }
}

void ApplicationService::traceOnce(const QString &reason)
{
    if (m_traced == reason)
        return;
    m_traced = reason;
    m_trace(reason);
}

void ApplicationService::Activate(const QVariantMap &)
{
    m_activated();
}

void ApplicationService::Open(const QStringList &, const QVariantMap &)
{
    m_activated();
}

void ApplicationService::ActivateAction(const QString &, const QVariantList &, const QVariantMap &)
{
    m_activated();
}
