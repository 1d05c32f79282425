#pragma once

#include "Platform/SessionBus/BusLink.h"

#include <QDBusMessage>
#include <QDBusVariant>

#include <functional>
#include <optional>

/// Whether the desktop's panel is dark, and whether its windows are, as the desktop says: asked over the
/// session bus without waiting for an answer; until it comes, and where there is none, the palette of the
/// application tells.
///
/// Sources: the XDG Desktop Portal's org.freedesktop.portal.Settings, key org.freedesktop.appearance
/// color-scheme; the panel of Xfce has a switch of its own, channel xfce4-panel, property /panels/dark-mode of
/// org.xfce.Xfconf; the top bar of GNOME is dark in either scheme.
class Appearance : public QObject
{
    Q_OBJECT

public:
    /// `desktop` is what XDG_CURRENT_DESKTOP names; `changed` is called on the main thread when isDark()
    /// becomes another answer, `desktopChanged` when isDesktopDark() does. `bus` outlives the object; whenever
    /// it comes anew the desktop is asked anew.
    Appearance(const QString &desktop, std::function<void()> changed, std::function<void()> desktopChanged,
               BusLink &bus);
    ~Appearance() override;

    [[nodiscard]] bool isDark() const;        ///< the panel
    [[nodiscard]] bool isDesktopDark() const; ///< the windows

private Q_SLOTS:
    void portalSettingChanged(const QString &group, const QString &key, const QDBusVariant &value);
    void panelSettingChanged(const QString &channel, const QString &property, const QDBusVariant &value);

private:
    void connectToBus();
    void ask(const QDBusMessage &question, std::function<void(const QVariant &)> answer,
             std::function<void(const QString &)> failure = {});
    void take(std::optional<bool> &answer, std::optional<bool> dark);
    void takePortalScheme(const QVariant &scheme);

    const QStringList m_desktop;
    BusLink &m_bus;
    std::function<void()> m_changed;
    std::function<void()> m_desktopChanged;
    std::optional<bool> m_panelIsDark; ///< the panel's own word, before all others
    std::optional<bool> m_portalSaysDark;
};
