#include "Companions/Common/Notifications.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace
{
const QString Path = QStringLiteral("/com/halvernet/Corvane/DistributedNotifications");
const QString Interface = QStringLiteral("com.halvernet.Corvane.DistributedNotifications");
const QString Signal = QStringLiteral("Posted");
} // namespace

bool postNotification(const QString &name, const QString &object, const QVariantMap &userInfo)
{
    QDBusMessage posted = QDBusMessage::createSignal(Path, Interface, Signal);
    posted << name << object << userInfo;
    return QDBusConnection::sessionBus().send(posted);
}

bool hearNotifications(QObject *receiver, const char *slot)
{
    return QDBusConnection::sessionBus().connect(QString(), Path, Interface, Signal, receiver, slot);
}
