#include "Platform/Desktop/ApplicationService.h"

#include "Platform/Desktop/Applications.h"

#include <QDBusConnectionInterface>

ApplicationService::ApplicationService(QString identifier, std::function<void()> activated, QDBusConnection bus)
    : m_identifier(std::move(identifier)), m_activated(std::move(activated)), m_bus(std::move(bus))
{
}

ApplicationService::~ApplicationService()
{
    if (!m_bus.isConnected())
        return;
    m_bus.interface()->unregisterService(m_identifier);
    m_bus.unregisterObject(Applications::objectPath(m_identifier));
}

bool ApplicationService::start()
{
    // The object first: who waits for the name calls as soon as it appears.
    if (!m_bus.isConnected() || !m_bus.registerObject(Applications::objectPath(m_identifier), this,
                                                      QDBusConnection::ExportScriptableSlots))
        return false;
    const auto reply = m_bus.interface()->registerService(m_identifier, QDBusConnectionInterface::QueueService,
                                                          QDBusConnectionInterface::DontAllowReplacement);
    return reply.value() == QDBusConnectionInterface::ServiceRegistered;
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
