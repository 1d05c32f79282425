#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <functional>

/// Makes this program an application that others can call to the front by its identifier: it owns that name on
/// the session bus and answers org.freedesktop.Application. A later start of the program hands over by the same
/// call.
class ApplicationService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// `activated` is called on the main thread.
    ApplicationService(QString identifier, std::function<void()> activated,
                       QDBusConnection bus = QDBusConnection::sessionBus());
    ~ApplicationService() override;

    /// False without a bus, or while another program owns the name (it comes here when that ends).
    bool start();

    // The names and arguments are the interface's.
public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(const QString &name, const QVariantList &parameter,
                                     const QVariantMap &platformData);

private:
    QString m_identifier;
    std::function<void()> m_activated;
    QDBusConnection m_bus;
};
