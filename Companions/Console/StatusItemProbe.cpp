#include "Companions/Console/StatusItemProbe.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{
constexpr int CallTimeoutMs = 1000;

/// A property by the standard interface; invalid when the peer is away, slow or has no such property.
QVariant property(const QString &service, const QString &path, const QString &interface, const QString &name)
{
    QDBusMessage get =
        QDBusMessage::createMethodCall(service, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
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
    const QVariant value = property(item->service, item->path, u"org.kde.StatusNotifierItem"_s, u"ToolTip"_s);
    if (!value.canConvert<QDBusArgument>())
        return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != "(sa(iiay)ss)"_L1)
        return std::nullopt;
    return textOfToolTip(argument);
}

std::optional<BusAddress> StatusItemProbe::menu() const
{
    const auto item = findItem();
    if (!item)
        return std::nullopt;
    const QVariant value = property(item->service, item->path, u"org.kde.StatusNotifierItem"_s, u"Menu"_s);
    const QString path = value.value<QDBusObjectPath>().path();
    return path.isEmpty() ? std::nullopt : std::optional(BusAddress{item->service, path});
}

std::optional<BusAddress> StatusItemProbe::findItem() const
{
    const QVariant items = property(u"org.kde.StatusNotifierWatcher"_s, u"/StatusNotifierWatcher"_s,
                                    u"org.kde.StatusNotifierWatcher"_s, u"RegisteredStatusNotifierItems"_s);
    // A host lists an item as its bus name with the object path behind it, or as the name alone.
    for (const QString &item : items.toStringList()) {
        const qsizetype slash = item.indexOf(u'/');
        const QString service = slash < 0 ? item : item.left(slash);
        if (belongsToProgram(service))
            return BusAddress{service, slash < 0 ? u"/StatusNotifierItem"_s : item.mid(slash)};
    }
    return std::nullopt;
}

bool StatusItemProbe::belongsToProgram(const QString &service) const
{
    const QDBusReply<uint> pid = QDBusConnection::sessionBus().interface()->servicePid(service);
    return pid.isValid() && QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(pid.value())) == m_program;
}
