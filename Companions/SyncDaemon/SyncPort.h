#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QVariantList>

#include <chrono>

/// The daemon's end of the pair of named ports: receives the monitor's messages, and calls the monitor's port.
class SyncPort : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.halvernet.Corvane.MessageSendingProtocol")

public:
    /// How the monitor's calls are answered. With `delay` the answer comes so much later.
    struct Manners {
        bool hangs = false;
        std::chrono::milliseconds delay{0};
    };

    /// Port names as both sides build them from the machine and the user.
    SyncPort(QString ownName, QString peerName, QObject *parent = nullptr);

    /// Takes the name on the session bus. False when there is no bus or somebody else has it.
    [[nodiscard]] bool open();

    void setManners(Manners manners) { m_manners = manners; }

    /// Sends a text with its number in the usual form.
    void send(const QString &text, int number);
    /// Sends an array as it is, whatever is in it.
    void sendArray(const QVariantList &array);

Q_SIGNALS:
    void received(const QVariantList &array);
    /// How a call to the monitor ended; `failure` is empty when it was taken.
    void sent(const QString &failure);

public Q_SLOTS:
    Q_SCRIPTABLE void didReceiveDataFromOtherProcess(const QVariantList &array);

private:
    const QString m_ownName;
    const QString m_peerName;
    QDBusConnection m_bus = QDBusConnection::sessionBus();
    Manners m_manners;
};

/// The bus name of a named port.
[[nodiscard]] QString portBusName(const QString &port);
