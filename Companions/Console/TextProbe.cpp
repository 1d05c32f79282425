#include "Companions/Console/TextProbe.h"

#include "Companions/Console/AccessibleTree.h"

using AccessibleTree::Node;

QStringList TextProbe::texts(const QList<qint64> &processes)
{
    QStringList found;
    if (const QDBusConnection bus = AccessibleTree::bus(); bus.isConnected()) {
        AccessibleTree::walk(bus, processes, [&found](const Node &, const QString &name) {
            if (!name.isEmpty())
                found.append(name);
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
