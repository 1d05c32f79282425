#include "Companions/Console/MenuProbe.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDateTime>

using namespace Qt::StringLiterals;

namespace
{
constexpr int CallTimeoutMs = 2000;
constexpr int Root = 0;
constexpr int DeepestMenu = 8; ///< a menu that nests deeper is no menu of ours

QDBusMessage call(const BusAddress &menu, const QString &method, const QVariantList &arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(menu.service, menu.path, u"com.canonical.dbusmenu"_s, method);
    message.setArguments(arguments);
    return QDBusConnection::sessionBus().call(message, QDBus::Block, CallTimeoutMs);
}

MenuEntry entryOf(int id, int depth, const QVariantMap &properties)
{
    MenuEntry entry;
    entry.id = id;
    entry.depth = depth;
    entry.isSeparator = properties.value(u"type"_s) == u"separator"_s;
    entry.isEnabled = properties.value(u"enabled"_s, true).toBool();
    entry.title = MenuProbe::titleOfLabel(properties.value(u"label"_s).toString());
    if (!properties.value(u"toggle-type"_s).toString().isEmpty()) {
        const bool isOn = properties.value(u"toggle-state"_s).toInt() == 1;
        entry.tick = isOn ? MenuEntry::Tick::On : MenuEntry::Tick::Off;
    }
    return entry;
}

/// Appends what the item at `argument`, signature (ia{sv}av), shows; its children are one deeper.
void collect(const QDBusArgument &argument, int depth, bool isShown, QList<MenuEntry> &entries)
{
    int id = 0;
    QVariantMap properties;
    argument.beginStructure();
    argument >> id >> properties;
    isShown = isShown && properties.value(u"visible"_s, true).toBool();
    if (isShown && id != Root)
        entries.append(entryOf(id, depth, properties));
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        const auto layout = child.variant().value<QDBusArgument>();
        if (depth < DeepestMenu && layout.currentSignature() == "(ia{sv}av)"_L1)
            collect(layout, depth + 1, isShown, entries);
    }
    argument.endArray();
    argument.endStructure();
}
} // namespace

QString MenuEntry::line() const
{
    if (isSeparator)
        return u"---"_s;
    QString text = title;
    if (tick != Tick::None)
        text.prepend(tick == Tick::On ? u"[x] "_s : u"[ ] "_s);
    return isEnabled ? text : text + u" (off)"_s;
}

QString MenuProbe::titleOfLabel(const QString &label)
{
    QString title;
    for (qsizetype i = 0; i < label.size(); ++i) {
        if (label[i] == u'_' && i + 1 < label.size())
            ++i;
        title.append(label[i]);
    }
    return title;
}

std::optional<QList<MenuEntry>> MenuProbe::open(const BusAddress &menu)
{
    if (call(menu, u"AboutToShow"_s, {Root}).type() != QDBusMessage::ReplyMessage)
        return std::nullopt;
    const QDBusMessage answer = call(menu, u"GetLayout"_s, {Root, -1, QStringList()});
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != "u(ia{sv}av)"_L1)
        return std::nullopt;
    QList<MenuEntry> entries;
    collect(answer.arguments().at(1).value<QDBusArgument>(), -1, true, entries);
    return entries;
}

bool MenuProbe::click(const BusAddress &menu, int id)
{
    const auto now = static_cast<uint>(QDateTime::currentSecsSinceEpoch());
    const QDBusMessage answer =
        call(menu, u"Event"_s, {id, u"clicked"_s, QVariant::fromValue(QDBusVariant(QString())), now});
    // An item that asks a question answers when the question is answered.
    return answer.type() == QDBusMessage::ReplyMessage || QDBusError(answer).type() == QDBusError::NoReply;
}
