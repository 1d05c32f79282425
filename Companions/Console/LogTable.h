#pragma once

#include "Companions/Console/AccessibleTree.h"

#include <QStringList>

#include <optional>

/// The first table in the windows of a program, as a screen reader has it. Rows count from 1, as a person does.
class LogTable
{
public:
    /// None when no table is shown.
    [[nodiscard]] static std::optional<LogTable> find(const QList<qint64> &processes);

    [[nodiscard]] int rows() const;

    /// The texts of a row's cells, " | " between them; none where there is no such row.
    [[nodiscard]] std::optional<QString> row(int number) const;

    /// Makes these rows the selection. False where one of them cannot be selected.
    [[nodiscard]] bool select(const QList<int> &numbers) const;

    /// Presses the button at the end of a row. False where there is none, or it takes no press.
    [[nodiscard]] bool pressButton(int number) const;

private:
    LogTable(QDBusConnection bus, AccessibleTree::Node node);

    [[nodiscard]] AccessibleTree::Node cell(int number, int column) const;
    [[nodiscard]] int columns() const;

    QDBusConnection m_bus;
    AccessibleTree::Node m_node;
};

/// An entry of a combo box in the windows of a program.
struct ComboEntry {
    AccessibleTree::Node box;
    int place = 0;       ///< of the entry, from 0
    bool isOpen = false; ///< the list of entries is shown
};

/// The first entry of that name; none when there is no combo box that has one.
[[nodiscard]] std::optional<ComboEntry> findComboEntry(const QList<qint64> &processes, const QString &name);
