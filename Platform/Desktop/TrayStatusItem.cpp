#include "Platform/Desktop/TrayStatusItem.h"

#include "Platform/Desktop/TrayImage.h"
#include "Platform/DisplayLine.h"
#include "Platform/Ending.h"

#include <QCursor>
#include <QFileInfo>
#include <QMenu>

#include <utility>

using namespace Qt::StringLiterals;

using Host = PanelWatch::Host;

TrayRules::Step TrayRules::nextStep(Host made, Host standing, bool mayHaveWatcher)
{
    if (standing == Host::Unknown || standing == Host::None || standing == made)
        return Step::Rest;
    if (made == Host::None)
        return Step::Make;
    // As long as there is a watcher its host may come back.
    return standing == Host::Notifier || !mayHaveWatcher ? Step::MoveOver : Step::Rest;
}

TrayStatusItem::TrayStatusItem(QString imageFolder, PanelWatch &panels)
    : m_imageFolder(std::move(imageFolder)), m_panels(panels)
{
    QObject::connect(&m_otherStands, &QTimer::timeout, &m_otherStands, [this] {
        settle();
        if (m_otherStands.isActive())
            m_otherPanel();
    });
    QObject::connect(&m_panels, &PanelWatch::changed, &m_otherStands, [this] { settle(); });
}

TrayStatusItem::~TrayStatusItem()
{
    // To take an item away is a call that waits for the bus; at the end of the process the panel finds out.
    // What is kept in sight like this is no leak.
    [[maybe_unused]] static QSystemTrayIcon *volatile left = nullptr;
    if (Ending::hasBegun())
        left = m_item.release();
}

void TrayStatusItem::setMenu(QMenu &menu)
{
    m_menu = &menu;
    if (!m_item)
        return;
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
    m_isWanted = true;
    settle();
}

void TrayStatusItem::settle()
{
    if (!m_isWanted)
        return;
    const Host standing = m_panels.host();
    const TrayRules::Step step = TrayRules::nextStep(m_made, standing, m_panels.mayHaveWatcher());
    if (step != TrayRules::Step::MoveOver)
        m_otherStands.stop();
    if (standing == Host::Unknown) // the next answer settles it
        return;
    if (step == TrayRules::Step::Make) {
        m_made = standing;
        make();
        m_taken();
        return;
    }
    if (step == TrayRules::Step::MoveOver && !m_otherStands.isActive())
        m_otherStands.start(standing == Host::Notifier ? BetterStandsFor : OlderStandsFor);
    if (std::exchange(m_isStale, false)) {
        make();
        m_moved();
    }
    // An embedding panel may still stand beside a host of the better kind.
    if (standing == Host::None || (m_made == Host::Notifier && standing != m_made))
        m_hasLost = true;
    else if (standing == m_made && std::exchange(m_hasLost, false))
        m_moved();
}

void TrayStatusItem::make()
{
    m_item = std::make_unique<QSystemTrayIcon>(m_images.value(m_imageName));
    m_item->setToolTip(DisplayLine::plainTip(m_toolTip));
    if (m_menu)
        setMenu(*m_menu);
    m_item->show();
}

QIcon TrayStatusItem::load(const QString &name) const
{
    if (name.isEmpty())
        return {};
    for (const QLatin1StringView suffix : {".svg"_L1, ".png"_L1}) {
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
    if (m_item)
        m_item->setIcon(*image);
}

void TrayStatusItem::setToolTip(const QString &text)
{
    if (text == m_toolTip)
        return;
    m_toolTip = text;
    if (m_item)
        m_item->setToolTip(DisplayLine::plainTip(text));
}
