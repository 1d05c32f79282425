#include "Companions/Common/Notifications.h"

#include <QDBusConnection>
#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace
{
const QString Path = u"/com/halvernet/Corvane/DistributedNotifications"_s;
const QString Interface = u"com.halvernet.Corvane.DistributedNotifications"_s;
const QString Signal = u"Posted"_s;
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
