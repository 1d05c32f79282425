#include "Platform/Desktop/Appearance.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/WaitUntil.h"

#include <QDBusConnectionInterface>
#include <QDBusVirtualObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
/// A program of the desktop with one setting, which it tells whoever asks and whenever it changes.
class SettingService : public QDBusVirtualObject
{
public:
    SettingService(const PrivateBus &bus, const char *name, const char *path, QStringList key,
                   const std::optional<QVariant> &value)
        : m_client(bus), m_path(QLatin1StringView(path)), m_key(std::move(key)), m_value(value)
    {
        EXPECT_TRUE(m_client.connection().registerVirtualObject(m_path, this));
        EXPECT_TRUE(m_client.connection().registerService(QLatin1StringView(name)));
    }

    void change(const char *interface, const char *signal, const QVariant &value)
    {
        QDBusMessage message =
            QDBusMessage::createSignal(m_path, QLatin1StringView(interface), QLatin1StringView(signal));
        message << m_key[0] << m_key[1] << QVariant::fromValue(QDBusVariant(value));
        EXPECT_TRUE(m_client.connection().send(message));
    }

    [[nodiscard]] QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        const bool isKnown =
            m_value && message.arguments() == QVariantList{QVariant(m_key[0]), QVariant(m_key[1])};
        connection.send(isKnown
                            ? message.createReply(QVariant::fromValue(QDBusVariant(*m_value)))
                            : message.createErrorReply(u"org.xfce.Xfconf.Error.PropertyNotFound"_s, QString()));
        ++asked;
        return true;
    }

    int asked = 0;

private:
    BusClient m_client;
    QString m_path;
    QStringList m_key;
    std::optional<QVariant> m_value;
};

const QStringList Scheme{u"org.freedesktop.appearance"_s, u"color-scheme"_s};
const QStringList PanelKey{u"xfce4-panel"_s, u"/panels/dark-mode"_s};
} // namespace

TEST(Appearance, ThePanelAndTheWindowsAreAskedForApart)
{
    const std::tuple<const char *, uint, std::optional<QVariant>, bool, bool> rows[] = {
        {"ubuntu:GNOME", 2, {}, true, false}, // a bar that is always dark
        {"XFCE", 2, true, true, false},       {"XFCE", 1, false, false, true},
        {"XFCE", 2, {}, true, false}, // a panel that nobody has set
        {"KDE", 2, {}, false, false}, // one scheme for both
    };
    for (const auto &[desktop, scheme, xfcePanel, isPanelDark, areWindowsDark] : rows) {
        const QTemporaryDir folder;
        const PrivateBus bus(folder.path());
        SettingService portal(bus, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", Scheme,
                              scheme);
        SettingService panel(bus, "org.xfce.Xfconf", "/org/xfce/Xfconf", PanelKey, xfcePanel);
        BusLink link;
        link.start();
        const Appearance look(
            QLatin1StringView(desktop), [] {}, [] {}, link);
        EXPECT_TRUE(waitUntil([&] { return portal.asked == 1 && look.isDark() == isPanelDark; })) << desktop;
        EXPECT_TRUE(waitUntil([&] { return look.isDesktopDark() == areWindowsDark; })) << desktop;
    }
}

TEST(Appearance, EachChangeIsToldToThoseWhomItConcerns)
{
    const QTemporaryDir folder;
    PrivateBus bus(folder.path());
    SettingService portal(bus, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", Scheme, 2u);
    SettingService panel(bus, "org.xfce.Xfconf", "/org/xfce/Xfconf", PanelKey, true);
    BusLink link(std::chrono::milliseconds(5));
    link.start();
    int panelChanges = 0, windowChanges = 0;
    const Appearance appearance(
        u"XFCE"_s, [&] { ++panelChanges; }, [&] { ++windowChanges; }, link);
    // Only the panel's own answer makes it dark, so it has come by then; the portal's goes before its next
    // word.
    ASSERT_TRUE(waitUntil([&] { return appearance.isDark() && portal.asked == 1; }));
    panelChanges = windowChanges = 0;

    portal.change("org.freedesktop.portal.Settings", "SettingChanged", 1u);
    EXPECT_TRUE(waitUntil([&] { return appearance.isDesktopDark(); }));
    EXPECT_TRUE(appearance.isDark());
    EXPECT_EQ(panelChanges, 0);
    EXPECT_EQ(windowChanges, 1);

    panel.change("org.xfce.Xfconf", "PropertyChanged", false);
    EXPECT_TRUE(waitUntil([&] { return !appearance.isDark(); }));
    EXPECT_EQ(panelChanges, 1);
    EXPECT_EQ(windowChanges, 1);

    bus.stop();
    ASSERT_TRUE(waitUntil([&] { return !link.connection(); }));
    bus.start();
    ASSERT_TRUE(waitUntil([&] { return link.connection() != nullptr; }));
    SettingService portalAgain(bus, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", Scheme,
                               {});
    portalAgain.change("org.freedesktop.portal.Settings", "SettingChanged", 2u);
    EXPECT_TRUE(waitUntil([&] { return !appearance.isDesktopDark(); })) << "on the bus that has come back";
}
