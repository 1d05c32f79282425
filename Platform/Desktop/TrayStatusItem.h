#pragma once

#include "Platform/Desktop/StatusItem.h"

#include <QHash>
#include <QIcon>
#include <QRect>
#include <QSystemTrayIcon>

#include <memory>

class QMenu;

/// The status item in the desktop's panel: a StatusNotifierItem where the desktop has a host for them, an
/// XEmbed window otherwise.
class TrayStatusItem : public StatusItem
{
public:
    explicit TrayStatusItem(QString imageFolder);

    /// The menu that a click opens, with either button; it outlives the item.
    void setMenu(QMenu &menu);

    /// Puts the item into the panel; a panel that comes later, or anew, takes it then.
    void show();
    /// Makes the item anew, when the bus by which the panel knew it is another one.
    void renew();

    void setImage(const QString &name) override;
    [[nodiscard]] QString imageName() const override { return m_imageName; }
    void setToolTip(const QString &text) override;
    [[nodiscard]] QString toolTip() const override { return m_item->toolTip(); }

    /// The item's place on the desktop; empty where the panel doesn't tell it.
    [[nodiscard]] QRect geometry() const { return m_item->geometry(); }

private:
    [[nodiscard]] QIcon load(const QString &name) const;

    QString m_imageFolder;
    QString m_imageName;
    QHash<QString, QIcon> m_images;
    QMenu *m_menu = nullptr;
    std::unique_ptr<QSystemTrayIcon> m_item;
};
