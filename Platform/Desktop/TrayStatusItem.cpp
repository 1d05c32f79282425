#include "Platform/Desktop/TrayStatusItem.h"

#include "Platform/Desktop/TrayImage.h"

#include <QFileInfo>

TrayStatusItem::TrayStatusItem(QString imageFolder) : m_imageFolder(std::move(imageFolder))
{
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
    m_item.setIcon(*image);
}

void TrayStatusItem::setToolTip(const QString &text)
{
    if (text != m_item.toolTip())
        m_item.setToolTip(text);
}
