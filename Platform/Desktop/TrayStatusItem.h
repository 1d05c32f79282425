#pragma once

#include "Platform/Desktop/PanelWatch.h"
#include "Platform/Desktop/StatusItem.h"

#include <QHash>
#include <QIcon>
#include <QRect>
#include <QSystemTrayIcon>
#include <QTimer>

#include <functional>
#include <memory>

class QMenu;

/// What becomes of the status item, by the panel that stands there and the kind of item that was made.
namespace TrayRules
{
enum class Step {
    Rest,
    Make,     ///< the item, for the panel that stands
    MoveOver, ///< to a panel of the other kind, which takes another process
};
/// `made` is the kind of panel for which the item was made; None where there is no item yet.
[[nodiscard]] Step nextStep(PanelWatch::Host made, PanelWatch::Host standing, bool mayHaveWatcher);
} // namespace TrayRules

/// The status item in the desktop's panel: a StatusNotifierItem where the desktop has a host for them, an
/// XEmbed window otherwise. The library settles which of the two once a process, when it makes its first item;
/// so none is made before there is a panel.
class TrayStatusItem : public StatusItem
{
public:
    /// `panels` outlives the item.
    TrayStatusItem(QString imageFolder, PanelWatch &panels);
    ~TrayStatusItem() override;

    /// The menu that a click opens, with either button; it outlives the item.
    void setMenu(QMenu &menu);

    void show() override;
    /// Has the item made anew, when the bus by which the panel knew it is another one: as soon as that bus has
    /// told what stands there.
    void renew() { m_isStale = m_item != nullptr; }

    /// True once a panel has got the item.
    [[nodiscard]] bool isInPanel() const { return m_made != PanelWatch::Host::None; }
    /// `taken` is called when the first panel gets the item, be it within show() or later.
    void setTaken(std::function<void()> taken) { m_taken = std::move(taken); }
    /// `otherPanel` is called when a host of StatusNotifierItems has stood for a while beside an embedded item,
    /// or for a longer while a panel that embeds where the host has gone with all that belongs to it; and again
    /// as long as that is so. A process that starts then makes its item there.
    void setOtherPanel(std::function<void()> otherPanel) { m_otherPanel = std::move(otherPanel); }
    static constexpr std::chrono::milliseconds BetterStandsFor{2000};
    static constexpr std::chrono::milliseconds OlderStandsFor{10'000}; ///< one that restarts shows it first
    /// `moved` is called when another panel, or the same anew, has come to take an item that was made before.
    void setMoved(std::function<void()> moved) { m_moved = std::move(moved); }

    void setImage(const QString &name) override;
    [[nodiscard]] QString imageName() const override { return m_imageName; }
    void setToolTip(const QString &text) override;
    [[nodiscard]] QString toolTip() const override { return m_toolTip; }

    /// The item's place on the desktop; empty where the panel doesn't tell it.
    [[nodiscard]] QRect geometry() const { return m_item ? m_item->geometry() : QRect(); }

private:
    [[nodiscard]] QIcon load(const QString &name) const;
    void settle();
    void make();

    QString m_imageFolder;
    PanelWatch &m_panels;
    std::function<void()> m_taken = [] {};
    std::function<void()> m_otherPanel = [] {};
    std::function<void()> m_moved = [] {};
    bool m_hasLost = false; ///< the panel that took the item has gone
    QString m_imageName;
    QString m_toolTip;
    QHash<QString, QIcon> m_images;
    QMenu *m_menu = nullptr;
    bool m_isWanted = false;
    bool m_isStale = false; ///< made for a bus that is another one now
    PanelWatch::Host m_made = PanelWatch::Host::None;
    std::unique_ptr<QSystemTrayIcon> m_item;
    QTimer m_otherStands;
};
