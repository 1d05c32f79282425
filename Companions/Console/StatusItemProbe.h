#pragma once

#include <QString>

#include <optional>

/// An object of another program on the session bus.
struct BusAddress {
    QString service;
    QString path;
};

/// What the desktop's host is told of the status item of a program: read over the session bus, the way the host
/// itself reads it.
class StatusItemProbe
{
public:
    /// `program` is the executable whose item is meant.
    explicit StatusItemProbe(QString program);

    /// The text of the item's tool tip; empty optional when the program has no item at a host.
    [[nodiscard]] std::optional<QString> toolTip() const;

    /// Where the item says that its menu is; empty when there is no item, or none with a menu.
    [[nodiscard]] std::optional<BusAddress> menu() const;

private:
    [[nodiscard]] std::optional<BusAddress> findItem() const;
    [[nodiscard]] bool belongsToProgram(const QString &service) const;

    QString m_program;
};
