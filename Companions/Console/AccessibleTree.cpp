#include "Companions/Console/AccessibleTree.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace
{
using AccessibleTree::Node;

constexpr int CallTimeoutMs = 2000;
constexpr int MostNodes = 2000; ///< a window with more has gone astray
const QString Family = u"org.a11y.atspi."_s;

QDBusMessage callAny(const QDBusConnection &bus, const Node &node, const QString &interface,
                     const QString &method, const QVariantList &arguments = {})
{
    QDBusMessage message = QDBusMessage::createMethodCall(node.service, node.path, interface, method);
    message.setArguments(arguments);
    return bus.call(message, QDBus::Block, CallTimeoutMs);
}

Node readNode(const QDBusArgument &argument)
{
    QString service;
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> service >> path;
    argument.endStructure();
    return {service, path.path()};
}

QList<Node> titlesOf(const QDBusConnection &bus, const Node &table)
{
    const int columns = AccessibleTree::property(bus, table, u"Table"_s, u"NColumns"_s).toInt();
    QList<Node> titles;
    for (int column = 0; column < columns; ++column)
        titles.append(AccessibleTree::nodeIn(
            AccessibleTree::call(bus, table, u"Accessible"_s, u"GetChildAtIndex"_s, {column})));
    return titles;
}
} // namespace

QDBusConnection AccessibleTree::bus()
{
    const QString name = u"accessibility"_s;
    if (QDBusConnection known(name); known.isConnected())
        return known;
    const Node launcher{u"org.a11y.Bus"_s, u"/org/a11y/bus"_s};
    const QDBusConnection session = QDBusConnection::sessionBus();
    // Programs offer their contents only while somebody says that they are read.
    callAny(session, launcher, u"org.freedesktop.DBus.Properties"_s, u"Set"_s,
            {u"org.a11y.Status"_s, u"IsEnabled"_s, QVariant::fromValue(QDBusVariant(true))});
    const QDBusMessage address = callAny(session, launcher, launcher.service, u"GetAddress"_s);
    QDBusConnection::disconnectFromBus(name);
    return QDBusConnection::connectToBus(address.arguments().value(0).toString(), name);
}

QDBusMessage AccessibleTree::call(const QDBusConnection &bus, const Node &node, const QString &interface,
                                  const QString &method, const QVariantList &arguments)
{
    return callAny(bus, node, Family + interface, method, arguments);
}

QVariant AccessibleTree::property(const QDBusConnection &bus, const Node &node, const QString &interface,
                                  const QString &name)
{
    const QDBusMessage answer =
        callAny(bus, node, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {Family + interface, name});
    return answer.arguments().value(0).value<QDBusVariant>().variant();
}

QString AccessibleTree::nameOf(const QDBusConnection &bus, const Node &node)
{
    return property(bus, node, u"Accessible"_s, u"Name"_s).toString();
}

bool AccessibleTree::isShowing(const QDBusConnection &bus, const Node &node)
{
    constexpr quint32 ShowingBit = quint32(1) << 25;
    const QDBusMessage answer = call(bus, node, u"Accessible"_s, u"GetState"_s);
    const auto words = qdbus_cast<QList<quint32>>(answer.arguments().value(0));
    return (words.value(0) & ShowingBit) != 0;
}

bool AccessibleTree::hasRole(const QDBusConnection &bus, const Node &node, Role role)
{
    const QDBusMessage answer = call(bus, node, u"Accessible"_s, u"GetRole"_s);
    return answer.arguments().value(0).toUInt() == static_cast<quint32>(role);
}

QList<Node> AccessibleTree::childrenOf(const QDBusConnection &bus, const Node &node)
{
    const QDBusMessage answer = call(bus, node, u"Accessible"_s, u"GetChildren"_s);
    QList<Node> children;
    if (answer.signature() != "a(so)"_L1)
        return children;
    const auto argument = answer.arguments().constFirst().value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd())
        children.append(readNode(argument));
    argument.endArray();
    return children;
}

Node AccessibleTree::nodeIn(const QDBusMessage &answer)
{
    return answer.signature() == "(so)"_L1 ? readNode(answer.arguments().constFirst().value<QDBusArgument>())
                                           : Node();
}

bool AccessibleTree::press(const QDBusConnection &bus, const Node &node)
{
    const QDBusMessage answer = call(bus, node, u"Action"_s, u"DoAction"_s, {0});
    return answer.type() == QDBusMessage::ReplyMessage && answer.arguments().value(0).toBool();
}

void AccessibleTree::walk(const QDBusConnection &bus, const QList<qint64> &processes,
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
        if (!isShowing(bus, node) && !hasRole(bus, node, Role::Link))
            continue;
        if (visit(node, nameOf(bus, node)))
            return;
        // Depth first: in the order of the contents.
        waiting = (hasRole(bus, node, Role::Table) ? titlesOf(bus, node) : childrenOf(bus, node)) + waiting;
    }
}
