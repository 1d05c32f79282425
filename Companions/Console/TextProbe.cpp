#include "Companions/Console/TextProbe.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <functional>

namespace
{
constexpr int CallTimeoutMs = 2000;
constexpr int MostNodes = 2000; ///< a window with more has gone astray
const QString AccessibleInterface = QStringLiteral("org.a11y.atspi.Accessible");

struct Node {
    QString service;
    QString path;
};

QDBusMessage call(const QDBusConnection &bus, const Node &node, const QString &interface, const QString &method,
                  const QVariantList &arguments = {})
{
    QDBusMessage message = QDBusMessage::createMethodCall(node.service, node.path, interface, method);
    message.setArguments(arguments);
    return bus.call(message, QDBus::Block, CallTimeoutMs);
}

/// The bus of the screen readers; not connected when the session has none.
QDBusConnection accessibilityBus()
{
    const QString name = QStringLiteral("accessibility");
    if (QDBusConnection known(name); known.isConnected())
        return known;
    const Node launcher{QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus")};
    const QDBusConnection session = QDBusConnection::sessionBus();
    // Programs offer their contents only while somebody says that they are read.
    call(session, launcher, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"),
         {QStringLiteral("org.a11y.Status"), QStringLiteral("IsEnabled"),
          QVariant::fromValue(QDBusVariant(true))});
    const QDBusMessage address = call(session, launcher, launcher.service, QStringLiteral("GetAddress"));
    QDBusConnection::disconnectFromBus(name);
    return QDBusConnection::connectToBus(address.arguments().value(0).toString(), name);
}

QString nameOf(const QDBusConnection &bus, const Node &node)
{
    const QDBusMessage answer = call(bus, node, QStringLiteral("org.freedesktop.DBus.Properties"),
                                     QStringLiteral("Get"), {AccessibleInterface, QStringLiteral("Name")});
    return answer.arguments().value(0).value<QDBusVariant>().variant().toString();
}

bool isShowing(const QDBusConnection &bus, const Node &node)
{
    constexpr quint32 ShowingBit = quint32(1) << 25;
    const QDBusMessage answer = call(bus, node, AccessibleInterface, QStringLiteral("GetState"));
    const auto words = qdbus_cast<QList<quint32>>(answer.arguments().value(0));
    return (words.value(0) & ShowingBit) != 0;
}

QList<Node> childrenOf(const QDBusConnection &bus, const Node &node)
{
    const QDBusMessage answer = call(bus, node, AccessibleInterface, QStringLiteral("GetChildren"));
    QList<Node> children;
    if (answer.signature() != QLatin1StringView("a(so)"))
        return children;
    const auto argument = answer.arguments().constFirst().value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QString service;
        QDBusObjectPath path;
        argument.beginStructure();
        argument >> service >> path;
        argument.endStructure();
        children.append({service, path.path()});
    }
    argument.endArray();
    return children;
}

/// Goes through what is shown in the windows of the processes until `visit` says that it has seen enough.
void walk(const QDBusConnection &bus, const QList<qint64> &processes,
          const std::function<bool(const Node &, const QString &name)> &visit)
{
    const Node registry{QStringLiteral("org.a11y.atspi.Registry"),
                        QStringLiteral("/org/a11y/atspi/accessible/root")};
    QList<Node> waiting;
    for (const Node &program : childrenOf(bus, registry)) {
        const QDBusReply<uint> pid = bus.interface()->servicePid(program.service);
        if (pid.isValid() && processes.contains(pid.value()))
            waiting += childrenOf(bus, program);
    }
    for (int seen = 0; !waiting.isEmpty() && seen < MostNodes; ++seen) {
        const Node node = waiting.takeFirst();
        if (!isShowing(bus, node))
            continue;
        if (visit(node, nameOf(bus, node)))
            return;
        waiting = childrenOf(bus, node) + waiting; // depth first: in the order of the contents
    }
}
} // namespace

QStringList TextProbe::texts(const QList<qint64> &processes)
{
    QStringList found;
    if (const QDBusConnection bus = accessibilityBus(); bus.isConnected()) {
        walk(bus, processes, [&found](const Node &, const QString &name) {
            if (!name.isEmpty())
                found.append(name);
            return false;
        });
    }
    return found;
}

bool TextProbe::press(const QList<qint64> &processes, const QString &name)
{
    const QDBusConnection bus = accessibilityBus();
    if (!bus.isConnected())
        return false;
    bool pressed = false;
    walk(bus, processes, [&](const Node &node, const QString &text) {
        // Texts may carry blanks that set them off from an image.
        if (text.trimmed() == name) {
            const QDBusMessage answer =
                call(bus, node, QStringLiteral("org.a11y.atspi.Action"), QStringLiteral("DoAction"), {0});
            pressed = answer.type() == QDBusMessage::ReplyMessage && answer.arguments().value(0).toBool();
        }
        return pressed;
    });
    return pressed;
}
