#include "Companions/Console/TextProbe.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{
constexpr int CallTimeoutMs = 2000;
constexpr int MostNodes = 2000; ///< a window with more has gone astray
const QString AccessibleInterface = u"org.a11y.atspi.Accessible"_s;

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
    const QString name = u"accessibility"_s;
    if (QDBusConnection known(name); known.isConnected())
        return known;
    const Node launcher{u"org.a11y.Bus"_s, u"/org/a11y/bus"_s};
    const QDBusConnection session = QDBusConnection::sessionBus();
    // Programs offer their contents only while somebody says that they are read.
    call(session, launcher, u"org.freedesktop.DBus.Properties"_s, u"Set"_s,
         {u"org.a11y.Status"_s, u"IsEnabled"_s, QVariant::fromValue(QDBusVariant(true))});
    const QDBusMessage address = call(session, launcher, launcher.service, u"GetAddress"_s);
    QDBusConnection::disconnectFromBus(name);
    return QDBusConnection::connectToBus(address.arguments().value(0).toString(), name);
}

QString nameOf(const QDBusConnection &bus, const Node &node)
{
    const QDBusMessage answer =
        call(bus, node, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {AccessibleInterface, u"Name"_s});
    return answer.arguments().value(0).value<QDBusVariant>().variant().toString();
}

bool isShowing(const QDBusConnection &bus, const Node &node)
{
    constexpr quint32 ShowingBit = quint32(1) << 25;
    const QDBusMessage answer = call(bus, node, AccessibleInterface, u"GetState"_s);
    const auto words = qdbus_cast<QList<quint32>>(answer.arguments().value(0));
    return (words.value(0) & ShowingBit) != 0;
}

QList<Node> childrenOf(const QDBusConnection &bus, const Node &node)
{
    const QDBusMessage answer = call(bus, node, AccessibleInterface, u"GetChildren"_s);
    QList<Node> children;
    if (answer.signature() != "a(so)"_L1)
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
    const Node registry{u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s};
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
            const QDBusMessage answer = call(bus, node, u"org.a11y.atspi.Action"_s, u"DoAction"_s, {0});
            pressed = answer.type() == QDBusMessage::ReplyMessage && answer.arguments().value(0).toBool();
        }
        return pressed;
    });
    return pressed;
}
