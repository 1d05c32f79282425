#include "Companions/Common/Notifications.h"

#include <QDBusConnection>
#include <QDBusMessage>

bool postNotification(const QString &name, const QString &object, const QVariantMap &userInfo)
{
    QDBusMessage posted = QDBusMessage::createSignal(
        QStringLiteral("/com/halvernet/Corvane/DistributedNotifications"),
        QStringLiteral("com.halvernet.Corvane.DistributedNotifications"), QStringLiteral("Posted"));
    posted << name << object << userInfo;
    return QDBusConnection::sessionBus().send(posted);
}
