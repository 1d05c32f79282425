#include "Companions/Console/TextProbe.h"

#include "Companions/Console/AccessibleTree.h"

using namespace Qt::StringLiterals;

using AccessibleTree::Node;

QStringList TextProbe::texts(const QList<qint64> &processes)
{
    QStringList found;
    if (const QDBusConnection bus = AccessibleTree::bus(); bus.isConnected()) {
        AccessibleTree::walk(bus, processes, [&](const Node &node, const QString &name) {
            if (!name.isEmpty())
                found.append(name);
            if (AccessibleTree::hasRole(bus, node, AccessibleTree::Role::Text)) {
                constexpr int End = -1;
                const QDBusMessage text = AccessibleTree::call(bus, node, u"Text"_s, u"GetText"_s, {0, End});
                found.append(text.arguments().value(0).toString());
            }
            return false;
        });
    }
    return found;
}

bool TextProbe::press(const QList<qint64> &processes, const QString &name)
{
    const QDBusConnection bus = AccessibleTree::bus();
    if (!bus.isConnected())
        return false;
    bool pressed = false;
    AccessibleTree::walk(bus, processes, [&](const Node &node, const QString &text) {
        // Texts may carry blanks that set them off from an image.
        if (text.trimmed() == name)
            pressed = AccessibleTree::press(bus, node);
        return pressed;
    });
    return pressed;
}
