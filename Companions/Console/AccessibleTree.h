#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QString>
#include <QVariantList>

#include <functional>

/// What programs offer to a screen reader, over the accessibility bus, which is switched on in the session.
namespace AccessibleTree
{
struct Node {
    QString service;
    QString path;
};

/// The roles that are looked for, by their numbers on that bus.
enum class Role : quint32 { ComboBox = 11, Table = 55, Text = 61, Link = 88 };

/// The bus of the screen readers; not connected when the session has none.
[[nodiscard]] QDBusConnection bus();

/// Calls a method of a node and waits; an error message where that fails. `interface` goes behind
/// "org.a11y.atspi.".
[[nodiscard]] QDBusMessage call(const QDBusConnection &bus, const Node &node, const QString &interface,
                                const QString &method, const QVariantList &arguments = {});

/// A property of a node; invalid where it has none of that name.
[[nodiscard]] QVariant property(const QDBusConnection &bus, const Node &node, const QString &interface,
                                const QString &name);

[[nodiscard]] QString nameOf(const QDBusConnection &bus, const Node &node);
[[nodiscard]] bool isShowing(const QDBusConnection &bus, const Node &node);
[[nodiscard]] bool hasRole(const QDBusConnection &bus, const Node &node, Role role);
[[nodiscard]] QList<Node> childrenOf(const QDBusConnection &bus, const Node &node);

/// The node that an answer names; without service where it names none.
[[nodiscard]] Node nodeIn(const QDBusMessage &answer);

/// Does what a click on the node would. False when it takes no click.
[[nodiscard]] bool press(const QDBusConnection &bus, const Node &node);

/// Goes through what is shown in the windows of the processes, in the order of their contents, until `visit`
/// says that it has seen enough. Of a table come the titles of its columns and no more: it may have very many
/// cells. A link of a text counts as shown although the text has been scrolled away from it.
void walk(const QDBusConnection &bus, const QList<qint64> &processes,
          const std::function<bool(const Node &, const QString &name)> &visit);
} // namespace AccessibleTree
