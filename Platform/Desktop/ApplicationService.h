#pragma once

#include "Platform/SessionBus/BusLink.h"

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
    /// `activated` is called on the main thread. `trace` is told why the name could not be had. `bus` outlives
    /// the service.
    ApplicationService(
        QString identifier, std::function<void()> activated, BusLink &bus,
        std::function<void(const QString &reason)> trace = [](const QString &) {});
    ~ApplicationService() override;

    /// Asks for the name, now where there is a bus, and again whenever one comes; waits for no answer. Where
    /// another program owns the name it comes here when that ends; where the bus doesn't answer it is asked
    /// again at the pace of the link.
    void start();

    // The names and arguments are the interface's.
public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(const QString &name, const QVariantList &parameter,
                                     const QVariantMap &platformData);

private:
    void ask();
    void takeAnswer(const QDBusMessage &answer);
    void traceOnce(const QString &reason);

    QString m_identifier;
    std::function<void()> m_activated;
    std::function<void(const QString &)> m_trace;
    BusLink &m_bus;
    QTimer m_retry;
    QString m_traced; ///< the last reason, until the name is ours
};
