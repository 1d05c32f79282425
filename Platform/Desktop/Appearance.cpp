#include "Platform/Desktop/Appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPalette>

namespace
{
const QString Service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString Path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString Interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString Group = QStringLiteral("org.freedesktop.appearance");
const QString Key = QStringLiteral("color-scheme");

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
} // namespace

Appearance::Appearance(std::function<void()> changed) : m_changed(std::move(changed))
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(Service, Path, Interface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask();
}

bool Appearance::isDark() const { return m_portalSaysDark.value_or(paletteIsDark()); }

void Appearance::ask()
{
    QDBusMessage question = QDBusMessage::createMethodCall(Service, Path, Interface, QStringLiteral("Read"));
    question << Group << Key;
    question.setAutoStartService(false); // a desktop that has a portal runs it; none is started for an icon's colour
    auto *answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *call) {
        const QDBusPendingReply<QVariant> reply = *call;
        if (!reply.isError())
            take(unwrapped(reply.value()));
        call->deleteLater();
    });
}

void Appearance::settingChanged(const QString &group, const QString &key, const QDBusVariant &value)
{
    if (group == Group && key == Key)
        take(unwrapped(value.variant()));
}

void Appearance::take(const QVariant &scheme)
{
    const bool before = isDark();
    constexpr uint PrefersDark = 1;
    constexpr uint PrefersLight = 2;
    const uint value = scheme.toUInt();
    if (value == PrefersDark || value == PrefersLight)
        m_portalSaysDark = value == PrefersDark;
    else
        m_portalSaysDark.reset();
    if (isDark() != before)
        m_changed();
}
