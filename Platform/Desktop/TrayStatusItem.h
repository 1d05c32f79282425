#pragma once

#include "Platform/Desktop/StatusItem.h"

#include <QHash>
#include <QIcon>
#include <QSystemTrayIcon>

#include <optional>

/// The status item in the desktop's panel: a StatusNotifierItem where the desktop has a host for them, an
/// XEmbed window otherwise.
class TrayStatusItem : public StatusItem
{
public:
    explicit TrayStatusItem(QString imageFolder);

    /// Puts the item into the panel; a panel that comes later takes it then.
    void show() { m_item.show(); }

    void setImage(const QString &name) override;
    [[nodiscard]] QString imageName() const override { return m_imageName; }
    void setToolTip(const QString &text) override;
    [[nodiscard]] QString toolTip() const override { return m_item.toolTip(); }

    [[nodiscard]] QSystemTrayIcon &item() { return m_item; }

private:
    [[nodiscard]] QIcon load(const QString &name) const;

    QString m_imageFolder;
    QString m_imageName;
    QHash<QString, QIcon> m_images;
    QSystemTrayIcon m_item;
};
