#include "Classes/Progress/ThrottleStore.h"
#include "Platform/PropertyList.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/Paths/PathTable.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <gtest/gtest.h>

#include <future>
#include <limits>
#include <unistd.h>

namespace
{
const auto Enable = QStringLiteral("EnableBandwidthThrottleKey");
const auto Manual = QStringLiteral("BandwidthThrottleKey");
const auto Active = QStringLiteral("BandwidthThrottleAutoPauseKey");
const auto Idle = QStringLiteral("BandwidthThrottleForIdleKey");
const auto User = QStringLiteral("ann@example.org");

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

/// A list as the daemon may leave it: of `inside` and the settings of one account, with whatever else beside.
QByteArray daemonList(const QByteArray &inside)
{
    return "<plist><dict><key>ann@example.org</key><dict><key>EnableBandwidthThrottleKey</key><true/>"
           "<key>BandwidthThrottleAutoPauseKey</key><integer>20</integer>" +
           inside + "</dict><key>other</key><string>kept</string></dict></plist>";
}

class ThrottleStoreTest : public testing::Test
{
protected:
    /// Saves 55 percent for the user.
    static std::optional<QString> save()
    {
        return ThrottleStore::savePlistData(SettingCategory::ThrottleSettings, User, {{Active, text("55")}});
    }
    [[nodiscard]] QVariantMap stored() const
    {
        return PropertyList::readDictionary(m_path).value_or(QVariantMap());
    }

    TemporaryHome m_home;
    QString m_path = pathValue(QLatin1String("DeamonPreferencePath"), {});
};
} // namespace

TEST(ThrottleSettingsTest, TheSliderShowsWhatTheModeReads)
{
    const auto on = [](const QVariant &active, const QVariant &idle) {
        return QVariantMap{{Enable, true}, {Manual, 10LL}, {Active, active}, {Idle, idle}};
    };
    const struct {
        const char *name;
        QVariantMap settings;
        ThrottleDisplay shown;
        QString changes;
    } rows[] = {
        {"off", {{Enable, false}, {Manual, text("50")}, {Active, 70LL}}, {50}, Manual},
        {"off, above every threshold", {{Enable, false}, {Manual, 100LL}}, {100}, Manual},
        {"on", on(50LL, text("70")), {50, true, true}, Active},
        {"both 100", on(100LL, 100LL), {100, true, false}, Active},
        {"both 91", on(text("91"), 91LL), {91, true, false}, Active},
        {"active 90", on(90LL, 100LL), {90, true, true}, Active},
        {"idle 90", on(91LL, text("90")), {91, true, true}, Active},
        {"no figures", {{Enable, true}}, {0, true, true}, Active},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(throttleDisplay(row.settings), row.shown);
        EXPECT_EQ(throttleEntry(row.settings, -7), (QVariantMap{{row.changes, text("-7")}}));
    }
    EXPECT_EQ(throttleDisplay({{Manual, 50LL}}), std::nullopt);
    EXPECT_EQ(throttleEntry({{Manual, 50LL}}, 7), QVariantMap());
}

TEST(ThrottleSettingsTest, OnlyTrueAndTheTextOneAreOn)
{
    EXPECT_TRUE(throttleDisplay({{Enable, true}})->autoPause);
    EXPECT_TRUE(throttleDisplay({{Enable, text("1")}})->autoPause);
    for (const QVariant &off :
         {QVariant(text("0")), QVariant(text("true")), QVariant(text("01")), QVariant(text(" 1")),
          QVariant(false), QVariant(1LL), QVariant(1.0), QVariant(QByteArray("1"))})
        EXPECT_FALSE(throttleDisplay({{Enable, off}})->autoPause)
            << off.typeName() << ' ' << qPrintable(off.toString());
}

TEST(ThrottleSettingsTest, FiguresAreTextsOrIntegersOfThirtyTwoBits)
{
    const auto shown = [](const QVariant &value) {
        return throttleDisplay({{Enable, false}, {Manual, value}})->percent;
    };
    EXPECT_EQ(shown(text("50")), 50);
    EXPECT_EQ(shown(50LL), 50);
    EXPECT_EQ(shown(text("+007")), 7);
    EXPECT_EQ(shown(text("-2147483648")), -2147483647 - 1);
    EXPECT_EQ(shown(2147483647LL), 2147483647);
    for (const char *none : {"2147483648", "abc", "", "+", "+-5", " 50", "50 ", "50%", "5.0", "0x10", "\u0665"})
        EXPECT_EQ(shown(QString::fromUtf8(none)), 0) << none;
    for (const QVariant &none :
         {QVariant(2147483648LL), QVariant(-2147483649LL), QVariant(50.0), QVariant(true),
          QVariant(18446744073709551615ULL), QVariant(QVariantList{50LL})})
        EXPECT_EQ(shown(none), 0) << none.typeName();
}

TEST_F(ThrottleStoreTest, ASaveChangesItsEntryAndNothingElse)
{
    const QVariantMap foreign{
        {text("far date"), QDateTime(QDate(4001, 1, 1), QTime(0, 0), Qt::UTC)},
        {text("old date"), QDateTime(QDate(1900, 2, 28), QTime(1, 2, 3), Qt::UTC)},
        {text("data"), QByteArray("\0\xFF<", 3)},
        {text("real"), 0.1},
        {text("whole real"), 3.0},
        {text("big"), std::numeric_limits<qulonglong>::max()},
        {text("least"), std::numeric_limits<qlonglong>::min()},
        {text("one"), 1LL},
        {text("true"), true},
        {QStringLiteral(" <&\">\r\n é"), QStringLiteral(" a\r\n\t<é&\U0001F600> ")},
        {text("nested"), QVariantList{QVariantMap(), QVariantList{QString(), QVariantMap{{QString(), 2LL}}}}},
    };
    QVariantMap settings = foreign;
    settings.insert({{Enable, text("1")}, {Active, 20LL}, {Manual, 40LL}});
    const QVariantMap before{
        {User, settings}, {text("otto"), settings}, {text("version"), foreign}, {text("n"), 1LL}};
    settings.insert(Active, text("55"));
    QVariantMap after = before;
    after.insert(User, settings);
    for (const auto format : {PropertyList::Format::Xml, PropertyList::Format::Binary}) {
        m_home.write(m_path, PropertyList::serialize(before, format).value());
        EXPECT_EQ(save(), std::nullopt);
        EXPECT_EQ(PropertyList::readDictionary(m_path), after);
        // The bytes too: variants of different number types can be equal.
        EXPECT_EQ(m_home.read(m_path), PropertyList::serialize(after, PropertyList::Format::Xml));
        EXPECT_EQ(ThrottleStore::fetchSavedthrottleDataFromPlist(), after);
    }
}

TEST_F(ThrottleStoreTest, TheConsoleTellsWhatCannotBeRead)
{
    const struct {
        const char *name;
        QByteArray content;
        const char *printed;
    } rows[] = {
        {"missing", {}, "Error reading plist: cannot be read\n"},
        {"empty", "", "Error reading plist: no property list\n"},
        {"cut", daemonList("").chopped(10), "Error reading plist: no property list\n"},
        {"no dictionary", "<plist><array/></plist>", ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        if (!row.content.isNull())
            m_home.write(m_path, row.content);
        testing::internal::CaptureStdout();
        EXPECT_EQ(ThrottleStore::fetchSavedthrottleDataFromPlist(), std::nullopt);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), row.printed);
        EXPECT_NE(save(), std::nullopt);
        EXPECT_EQ(m_home.read(m_path), row.content);
    }
}

TEST_F(ThrottleStoreTest, ASaveThatFailsLeavesTheFile)
{
    EXPECT_EQ(save(), u"cannot be read") << "no folder";
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(m_path).path()));
    const std::pair<QByteArray, const char *> rows[] = {
        {daemonList("<key>bell</key><string>&#7;</string>"), "text with an unwritable character"},
        {daemonList("<key>number</key><integer>99999999999999999999</integer>"), "no property list"},
        {"<plist><dict><key>otto</key><dict/></dict></plist>", "no settings of the account"},
        {"<plist><dict><key>ann@example.org</key><string>x</string></dict></plist>",
         "no settings of the account"},
    };
    for (const auto &[content, reason] : rows) {
        m_home.write(m_path, content);
        EXPECT_EQ(save(), text(reason));
        EXPECT_EQ(m_home.read(m_path), content);
    }
    // A folder in which nothing can be made fails the replacement; root can always make something.
    if (geteuid() == 0)
        return;
    m_home.write(m_path, daemonList(""));
    const QString folder = QFileInfo(m_path).path();
    ASSERT_TRUE(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    EXPECT_EQ(save(), u"cannot be written");
    EXPECT_EQ(m_home.read(m_path), daemonList(""));
    ASSERT_TRUE(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

TEST_F(ThrottleStoreTest, TwoWritersNeverLeaveATornFile)
{
    constexpr int Rounds = 500;
    const auto padding = "<key>padding</key><data>" + QByteArray(200'000, 'x').toBase64() + "</data>";
    m_home.write(m_path, daemonList(padding));
    // The daemon: its own key, whole writes, and a look at whatever lies there.
    auto daemon = std::async(std::launch::async, [&path = m_path, &padding] {
        int torn = 0;
        for (int round = 0; round < Rounds; ++round) {
            QFile seen(path);
            torn += !seen.open(QIODevice::ReadOnly) || !seen.readAll().trimmed().endsWith("</plist>");
            QSaveFile next(path);
            next.open(QIODevice::WriteOnly);
            next.write(
                daemonList(padding + "<key>round</key><integer>" + QByteArray::number(round) + "</integer>"));
            torn += !next.commit();
        }
        return torn;
    });
    int failures = 0;
    for (int round = 0; round < Rounds; ++round)
        failures += save().has_value() || stored().value(text("other")) != text("kept");
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(daemon.get(), 0);
    EXPECT_EQ(save(), std::nullopt);
    const auto settings = stored().value(User).toMap();
    EXPECT_EQ(settings.value(Active), text("55"));
    EXPECT_EQ(settings.value(text("padding")).toByteArray(), QByteArray(200'000, 'x'));
}
