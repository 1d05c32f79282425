#include "Companions/Console/StatusItemProbe.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFile>
#include <QFileInfo>

namespace
{
constexpr int CallTimeoutMs = 1000;

/// A property by the standard interface; invalid when the peer is away, slow or has no such property.
QVariant property(const QString &service, const QString &path, const QString &interface, const QString &name)
{
    QDBusMessage get = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << interface << name;
    const QDBusMessage answer = QDBusConnection::sessionBus().call(get, QDBus::Block, CallTimeoutMs);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty())
        return {};
    return answer.arguments().constFirst().value<QDBusVariant>().variant();
}

/// The texts of a tool tip, signature (sa(iiay)ss): its title and its description, one below the other.
QString textOfToolTip(const QDBusArgument &argument)
{
    QString iconName;
    QString title;
    QString description;
    argument.beginStructure();
    argument >> iconName;
    argument.beginArray();
    while (!argument.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray pixels;
        argument.beginStructure();
        argument >> width >> height >> pixels;
        argument.endStructure();
    }
    argument.endArray();
    argument >> title >> description;
    argument.endStructure();
    return description.isEmpty() ? title : title + u'\n' + description;
}
} // namespace

StatusItemProbe::StatusItemProbe(QString program) : m_program(QFileInfo(program).canonicalFilePath())
{
}

std::optional<QString> StatusItemProbe::toolTip() const
{
    const auto item = findItem();
    if (!item)
        return std::nullopt;
    const QVariant value = property(item->service, item->path, QStringLiteral("org.kde.StatusNotifierItem"),
                                    QStringLiteral("ToolTip"));
    if (!value.canConvert<QDBusArgument>())
        return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1StringView("(sa(iiay)ss)"))
        return std::nullopt;
    return textOfToolTip(argument);
}

std::optional<BusAddress> StatusItemProbe::menu() const
{
    const auto item = findItem();
    if (!item)
        return std::nullopt;
    const QVariant value = property(item->service, item->path, QStringLiteral("org.kde.StatusNotifierItem"),
                                    QStringLiteral("Menu"));
    const QString path = value.value<QDBusObjectPath>().path();
    return path.isEmpty() ? std::nullopt : std::optional(BusAddress{item->service, path});
}

std::optional<BusAddress> StatusItemProbe::findItem() const
{
    const QVariant items = property(
        QStringLiteral("org.kde.StatusNotifierWatcher"), QStringLiteral("/StatusNotifierWatcher"),
        QStringLiteral("org.kde.StatusNotifierWatcher"), QStringLiteral("RegisteredStatusNotifierItems"));
    // A host lists an item as its bus name with the object path behind it, or as the name alone.
    for (const QString &item : items.toStringList()) {
        const qsizetype slash = item.indexOf(u'/');
        const QString service = slash < 0 ? item : item.left(slash);
        if (belongsToProgram(service))
            return BusAddress{service, slash < 0 ? QStringLiteral("/StatusNotifierItem") : item.mid(slash)};
    }
    return std::nullopt;
}

bool StatusItemProbe::belongsToProgram(const QString &service) const
{
    const QDBusReply<uint> pid = QDBusConnection::sessionBus().interface()->servicePid(service);
    return pid.isValid() && QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(pid.value())) == m_program;
}
