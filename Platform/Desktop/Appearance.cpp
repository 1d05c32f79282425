#include "Platform/Desktop/Appearance.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QPalette>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::milliseconds SettingPatience{5000};

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
    [[nodiscard]] BusConnection::Signal change(const char *name) const
    {
        return {.path = path,
                .interface = interface,
                .name = QLatin1StringView(name),
                .firstArguments = {},
                .signature = {}};
    }
};

const Setting PortalScheme{u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
                           u"org.freedesktop.portal.Settings"_s, u"org.freedesktop.appearance"_s,
                           u"color-scheme"_s};
const Setting XfcePanel{u"org.xfce.Xfconf"_s, u"/org/xfce/Xfconf"_s, u"org.xfce.Xfconf"_s, u"xfce4-panel"_s,
                        u"/panels/dark-mode"_s};

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

Appearance::Appearance(const QString &desktop, std::function<void()> changed,
                       std::function<void()> desktopChanged, BusLink &bus)
    : m_desktop(desktop.split(u':')), m_bus(bus), m_changed(std::move(changed)),
      m_desktopChanged(std::move(desktopChanged))
{
    if (m_desktop.contains("GNOME"_L1))
        m_panelIsDark = true;
    connect(&m_bus, &BusLink::connected, this, &Appearance::connectToBus);
    connectToBus();
}

Appearance::~Appearance()
{
    if (const auto connection = m_bus.connection())
        connection->unsubscribeFor(this);
}

void Appearance::connectToBus()
{
    const auto connection = m_bus.connection();
    if (!connection)
        return;
    connection->subscribe(PortalScheme.change("SettingChanged"), this,
                          SLOT(portalSettingChanged(QString, QString, QDBusVariant)));
    ask(PortalScheme.question(u"Read"_s), [this](const QVariant &value) { takePortalScheme(value); });
    if (!m_desktop.contains("XFCE"_L1))
        return;
    connection->subscribe(XfcePanel.change("PropertyChanged"), this,
                          SLOT(panelSettingChanged(QString, QString, QDBusVariant)));
    ask(
        XfcePanel.question(u"GetProperty"_s),
        [this](const QVariant &value) { take(m_panelIsDark, booleanIn(value)); },
        [this](const QString &error) {
            // How its panel looks as long as nobody has set it.
            if (error == "org.xfce.Xfconf.Error.PropertyNotFound"_L1)
                take(m_panelIsDark, true);
        });
}

bool Appearance::isDark() const
{
    return m_panelIsDark ? *m_panelIsDark : isDesktopDark();
}

bool Appearance::isDesktopDark() const
{
    return m_portalSaysDark ? *m_portalSaysDark : paletteIsDark();
}

void Appearance::ask(const QDBusMessage &question, std::function<void(const QVariant &)> answer,
                     std::function<void(const QString &)> failure)
{
    auto *call = new QDBusPendingCallWatcher(
        m_bus.connection()->bus().asyncCall(question, static_cast<int>(SettingPatience.count())), this);
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
    const bool panelBefore = isDark();
    const bool desktopBefore = isDesktopDark();
    answer = dark;
    if (isDark() != panelBefore)
        m_changed();
    if (isDesktopDark() != desktopBefore)
        m_desktopChanged();
}
