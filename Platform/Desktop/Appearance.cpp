#include "Platform/Desktop/Appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QPalette>

namespace
{
/// An object on the session bus that keeps settings, and one setting of it.
struct Setting {
    QString service, path, interface, group, key;

    [[nodiscard]] QDBusMessage question(const QString &method) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
        message << group << key;
        message.setAutoStartService(
            false); // who has such a service runs it; none is started for an icon's colour
        return message;
    }
};

const Setting PortalScheme{QStringLiteral("org.freedesktop.portal.Desktop"),
                           QStringLiteral("/org/freedesktop/portal/desktop"),
                           QStringLiteral("org.freedesktop.portal.Settings"),
                           QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme")};
const Setting XfcePanel{QStringLiteral("org.xfce.Xfconf"), QStringLiteral("/org/xfce/Xfconf"),
                        QStringLiteral("org.xfce.Xfconf"), QStringLiteral("xfce4-panel"),
                        QStringLiteral("/panels/dark-mode")};

bool paletteIsDark()
{
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

/// The portal wraps its answer in one variant or two, by its version.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

std::optional<bool> booleanIn(const QVariant &value)
{
    return value.metaType() == QMetaType::fromType<bool>() ? std::optional(value.toBool()) : std::nullopt;
}
} // namespace

Appearance::Appearance(const QString &desktop, std::function<void()> changed) : m_changed(std::move(changed))
{
    const QStringList names = desktop.split(u':');
    if (names.contains(QLatin1String("GNOME"))) {
        m_panelIsDark = true;
        return;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    if (names.contains(QLatin1String("XFCE"))) {
        bus.connect(XfcePanel.service, XfcePanel.path, XfcePanel.interface, QStringLiteral("PropertyChanged"),
                    this, SLOT(panelSettingChanged(QString, QString, QDBusVariant)));
        ask(
            XfcePanel.question(QStringLiteral("GetProperty")),
            [this](const QVariant &value) { take(m_panelIsDark, booleanIn(value)); },
            [this](const QString &error) {
                // How its panel looks as long as nobody has set it.
                if (error == QLatin1String("org.xfce.Xfconf.Error.PropertyNotFound"))
                    take(m_panelIsDark, true);
            });
        return;
    }
    bus.connect(PortalScheme.service, PortalScheme.path, PortalScheme.interface,
                QStringLiteral("SettingChanged"), this,
                SLOT(portalSettingChanged(QString, QString, QDBusVariant)));
    ask(PortalScheme.question(QStringLiteral("Read")),
        [this](const QVariant &value) { takePortalScheme(value); });
}

bool Appearance::isDark() const
{
    if (m_panelIsDark)
        return *m_panelIsDark;
    return m_portalSaysDark ? *m_portalSaysDark : paletteIsDark();
}

void Appearance::ask(const QDBusMessage &question, std::function<void(const QVariant &)> answer,
                     std::function<void(const QString &)> failure)
{
    auto *call = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
            [answer = std::move(answer), failure = std::move(failure)](QDBusPendingCallWatcher *finished) {
                const QDBusPendingReply<QDBusVariant> reply = *finished;
                if (!reply.isError())
                    answer(unwrapped(reply.value().variant()));
                else if (failure)
                    failure(reply.error().name());
                finished->deleteLater();
            });
}

void Appearance::portalSettingChanged(const QString &group, const QString &key, const QDBusVariant &value)
{
    if (group == PortalScheme.group && key == PortalScheme.key)
        takePortalScheme(unwrapped(value.variant()));
}

void Appearance::panelSettingChanged(const QString &channel, const QString &property, const QDBusVariant &value)
{
    if (channel == XfcePanel.group && property == XfcePanel.key)
        take(m_panelIsDark, booleanIn(unwrapped(value.variant())));
}

void Appearance::takePortalScheme(const QVariant &scheme)
{
    constexpr uint PrefersDark = 1;
    constexpr uint PrefersLight = 2;
    const uint value = scheme.toUInt();
    const bool known = value == PrefersDark || value == PrefersLight;
    take(m_portalSaysDark, known ? std::optional(value == PrefersDark) : std::nullopt);
}

void Appearance::take(std::optional<bool> &answer, std::optional<bool> dark)
{
    const bool before = isDark();
    answer = dark;
    if (isDark() != before)
        m_changed();
}
