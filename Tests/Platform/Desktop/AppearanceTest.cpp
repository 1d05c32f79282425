#include "Platform/Desktop/Appearance.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/WaitUntil.h"

#include <QDBusConnectionInterface>
#include <QDBusVirtualObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{
/// A program of the desktop with one setting, which it tells whoever asks and whenever it changes.
class SettingService : public QDBusVirtualObject
{
public:
    SettingService(const PrivateBus &bus, const char *name, const char *path, QStringList key,
                   const std::optional<QVariant> &value)
        : m_client(bus), m_path(QLatin1String(path)), m_key(std::move(key)), m_value(value)
    {
        EXPECT_TRUE(m_client.connection().registerVirtualObject(m_path, this));
        EXPECT_TRUE(m_client.connection().registerService(QLatin1String(name)));
    }

    void change(const char *interface, const char *signal, const QVariant &value)
    {
        QDBusMessage message =
            QDBusMessage::createSignal(m_path, QLatin1String(interface), QLatin1String(signal));
        message << m_key[0] << m_key[1] << QVariant::fromValue(QDBusVariant(value));
        EXPECT_TRUE(m_client.connection().send(message));
    }

    [[nodiscard]] QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        const bool isKnown =
            m_value && message.arguments() == QVariantList{QVariant(m_key[0]), QVariant(m_key[1])};
        connection.send(isKnown ? message.createReply(QVariant::fromValue(QDBusVariant(*m_value)))
                                : message.createErrorReply(
                                      QStringLiteral("org.xfce.Xfconf.Error.PropertyNotFound"), QString()));
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

const QStringList Scheme{QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme")};
const QStringList PanelKey{QStringLiteral("xfce4-panel"), QStringLiteral("/panels/dark-mode")};
} // namespace

TEST(Appearance, ThePanelAndTheWindowsAreAskedForApart)
{
    const struct {
        const char *name, *desktop;
        uint scheme; ///< 1 dark, 2 light
        std::optional<QVariant> xfcePanel;
        bool panel, windows;
    } rows[] = {
        {"a bar that is always dark, light windows", "ubuntu:GNOME", 2, {}, true, false},
        {"the same, dark windows", "GNOME", 1, {}, true, true},
        {"a dark panel, light windows", "XFCE", 2, true, true, false},
        {"a light panel, dark windows", "XFCE", 1, false, false, true},
        {"a panel that nobody has set", "XFCE", 2, {}, true, false},
        {"one scheme for both, dark", "KDE", 1, {}, true, true},
        {"one scheme for both, light", "KDE", 2, {}, false, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const QTemporaryDir folder;
        const PrivateBus bus(folder.path());
        SettingService portal(bus, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", Scheme,
                              row.scheme);
        SettingService panel(bus, "org.xfce.Xfconf", "/org/xfce/Xfconf", PanelKey, row.xfcePanel);
        const BusClient client(bus);
        const Appearance appearance(
            QLatin1String(row.desktop), [] {}, [] {}, client.connection());
        EXPECT_TRUE(waitUntil([&] { return appearance.isDark() == row.panel && portal.asked == 1; }));
        EXPECT_TRUE(waitUntil([&] { return appearance.isDesktopDark() == row.windows; }));
    }
}

TEST(Appearance, EachChangeIsToldToThoseWhomItConcerns)
{
    const QTemporaryDir folder;
    const PrivateBus bus(folder.path());
    SettingService portal(bus, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", Scheme, 2u);
    SettingService panel(bus, "org.xfce.Xfconf", "/org/xfce/Xfconf", PanelKey, true);
    const BusClient client(bus);
    int panelChanges = 0, windowChanges = 0;
    const Appearance appearance(
        QStringLiteral("XFCE"), [&] { ++panelChanges; }, [&] { ++windowChanges; }, client.connection());
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
}
