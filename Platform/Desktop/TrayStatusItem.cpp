#include "Platform/Desktop/TrayStatusItem.h"

#include "Platform/Desktop/TrayImage.h"

#include <QCursor>
#include <QFileInfo>
#include <QMenu>

TrayStatusItem::TrayStatusItem(QString imageFolder)
    : m_imageFolder(std::move(imageFolder)), m_item(std::make_unique<QSystemTrayIcon>())
{
}

void TrayStatusItem::setMenu(QMenu &menu)
{
    m_menu = &menu;
    m_item->setContextMenu(m_menu);
    // The panel opens the menu itself for the other button.
    QObject::connect(m_item.get(), &QSystemTrayIcon::activated, m_menu,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger)
                             m_menu->popup(QCursor::pos());
                     });
}

void TrayStatusItem::show()
{
    m_item->show();
}

void TrayStatusItem::renew()
{
    const QIcon icon = m_item->icon();
    const QString text = m_item->toolTip();
    m_item = std::make_unique<QSystemTrayIcon>(icon);
    m_item->setToolTip(text);
    if (m_menu)
        setMenu(*m_menu);
    show();
}

QIcon TrayStatusItem::load(const QString &name) const
{
    if (name.isEmpty())
        return {};
    for (const QLatin1String suffix : {QLatin1String(".svg"), QLatin1String(".png")}) {
        const QString path = m_imageFolder + u'/' + name + suffix;
        if (QFileInfo::exists(path))
            return trayImage(path);
    }
    return {};
}

void TrayStatusItem::setImage(const QString &name)
{
    if (name == m_imageName)
        return;
    auto image = m_images.constFind(name);
    if (image == m_images.cend())
        image = m_images.insert(name, load(name));
    if (image->isNull())
        return;
    m_imageName = name;
    m_item->setIcon(*image);
}

void TrayStatusItem::setToolTip(const QString &text)
{
    if (text != m_item->toolTip())
        m_item->setToolTip(text);
}
