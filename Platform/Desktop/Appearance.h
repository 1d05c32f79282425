#pragma once

#include <QDBusVariant>
#include <QObject>

#include <functional>
#include <optional>

/// Whether the desktop is set to dark: asked of the desktop's settings portal over the session bus, without waiting
/// for it; until it answers, and where there is none, the palette of the application tells.
/// Source: XDG Desktop Portal, interface org.freedesktop.portal.Settings, org.freedesktop.appearance color-scheme.
class Appearance : public QObject
{
    Q_OBJECT

public:
    /// `changed` is called on the main thread when the answer becomes another one.
    explicit Appearance(std::function<void()> changed);

    [[nodiscard]] bool isDark() const;

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask();
    void take(const QVariant &scheme);

    std::function<void()> m_changed;
    std::optional<bool> m_portalSaysDark;
};
