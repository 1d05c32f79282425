#include "Companions/SyncDaemon/SyncPort.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{
const QString PortObject = u"/port"_s;

/// Dictionaries and arrays come wrapped; the daemon looks into them one level deep.
QVariant unwrapped(const QVariant &value)
{
    if (value.typeId() != qMetaTypeId<QDBusArgument>())
        return value;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentType() == QDBusArgument::MapType)
        return qdbus_cast<QVariantMap>(argument);
    return argument.currentType() == QDBusArgument::ArrayType ? qdbus_cast<QVariantList>(argument) : QVariant();
}
} // namespace

QString portBusName(const QString &port)
{
    QString name = u"com.halvernet.Corvane.Port."_s;
    for (const char c : port.toUtf8()) {
        const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        name += plain ? QString(QLatin1Char(c)) : QString::asprintf("_%02x", static_cast<unsigned char>(c));
    }
    return name;
}

SyncPort::SyncPort(QString ownName, QString peerName, QObject *parent)
    : QObject(parent), m_ownName(std::move(ownName)), m_peerName(std::move(peerName))
{
}

bool SyncPort::open()
{
    return m_bus.registerObject(PortObject, this, QDBusConnection::ExportScriptableSlots) &&
           m_bus.registerService(portBusName(m_ownName));
}

void SyncPort::send(const QString &text, int number)
{
    sendArray({text, QString::number(number), m_ownName, m_peerName});
}

void SyncPort::sendArray(const QVariantList &array)
{
    QDBusMessage call = QDBusMessage::createMethodCall(portBusName(m_peerName), PortObject,
                                                       u"com.halvernet.Corvane.MessageSendingProtocol"_s,
                                                       u"didReceiveDataFromOtherProcess"_s);
    call << QVariant(array);
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, 3000), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        Q_EMIT sent(watcher->isError() ? watcher->error().message() : QString());
    });
}

void SyncPort::didReceiveDataFromOtherProcess(const QVariantList &array)
{
    if (m_manners.hangs || m_manners.delay.count() > 0)
        setDelayedReply(true);
    if (!m_manners.hangs && m_manners.delay.count() > 0) {
        QTimer::singleShot(m_manners.delay, this,
                           [bus = m_bus, answer = message().createReply()] { bus.send(answer); });
    }
    QVariantList plain;
    for (const QVariant &element : array)
        plain.append(unwrapped(element));
    Q_EMIT received(plain);
}
