#include "Companions/Console/LogTable.h"

#include <QDBusArgument>

#include <algorithm>

using namespace Qt::StringLiterals;

using AccessibleTree::Node;

namespace
{
const QString Table = u"Table"_s;

bool saidYes(const QDBusMessage &answer)
{
    return answer.type() == QDBusMessage::ReplyMessage && answer.arguments().value(0).toBool();
}
} // namespace

LogTable::LogTable(QDBusConnection bus, Node node) : m_bus(std::move(bus)), m_node(std::move(node))
{
}

std::optional<LogTable> LogTable::find(const QList<qint64> &processes)
{
    std::optional<LogTable> found;
    if (const QDBusConnection bus = AccessibleTree::bus(); bus.isConnected()) {
        AccessibleTree::walk(bus, processes, [&](const Node &node, const QString &) {
            if (AccessibleTree::hasRole(bus, node, AccessibleTree::Role::Table))
                found = LogTable(bus, node);
            return found.has_value();
        });
    }
    return found;
}

int LogTable::rows() const
{
    return AccessibleTree::property(m_bus, m_node, Table, u"NRows"_s).toInt();
}

int LogTable::columns() const
{
    return AccessibleTree::property(m_bus, m_node, Table, u"NColumns"_s).toInt();
}

Node LogTable::cell(int number, int column) const
{
    return AccessibleTree::nodeIn(
        AccessibleTree::call(m_bus, m_node, Table, u"GetAccessibleAt"_s, {number - 1, column}));
}

std::optional<QString> LogTable::row(int number) const
{
    if (number < 1 || number > rows())
        return std::nullopt;
    QStringList texts;
    for (int column = 0; column < columns(); ++column)
        texts.append(AccessibleTree::nameOf(m_bus, cell(number, column)));
    return texts.join(u" | "_s);
}

bool LogTable::select(const QList<int> &numbers) const
{
    const QDBusMessage answer = AccessibleTree::call(m_bus, m_node, Table, u"GetSelectedRows"_s);
    for (const int row : qdbus_cast<QList<int>>(answer.arguments().value(0))) {
        if (!numbers.contains(row + 1) &&
            !saidYes(AccessibleTree::call(m_bus, m_node, Table, u"RemoveRowSelection"_s, {row})))
            return false;
    }
    return std::all_of(numbers.begin(), numbers.end(), [this](int number) {
        return saidYes(AccessibleTree::call(m_bus, m_node, Table, u"AddRowSelection"_s, {number - 1}));
    });
}

bool LogTable::pressButton(int number) const
{
    const Node button = cell(number, columns() - 1);
    return !button.service.isEmpty() && AccessibleTree::press(m_bus, button);
}

std::optional<ComboEntry> findComboEntry(const QList<qint64> &processes, const QString &name)
{
    std::optional<ComboEntry> found;
    const QDBusConnection bus = AccessibleTree::bus();
    if (!bus.isConnected())
        return found;
    AccessibleTree::walk(bus, processes, [&](const Node &box, const QString &) {
        if (!AccessibleTree::hasRole(bus, box, AccessibleTree::Role::ComboBox))
            return false;
        // The list lies below the box even while it is not shown.
        for (const Node &list : AccessibleTree::childrenOf(bus, box)) {
            QStringList names;
            for (const Node &entry : AccessibleTree::childrenOf(bus, list))
                names.append(AccessibleTree::nameOf(bus, entry));
            names.removeAll(QString()); // a line between entries, which the keys pass over
            if (const qsizetype place = names.indexOf(name); place >= 0)
                found = ComboEntry{box, static_cast<int>(place), AccessibleTree::isShowing(bus, list)};
        }
        return found.has_value();
    });
    return found;
}
