#include "Classes/Progress/ThrottleStore.h"
#include "Platform/PropertyList.h"
#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/Paths/PathTable.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace
{
const QString Enable = u"EnableBandwidthThrottleKey"_s;
const QString Manual = u"BandwidthThrottleKey"_s;
const QString Active = u"BandwidthThrottleAutoPauseKey"_s;
const QString Idle = u"BandwidthThrottleForIdleKey"_s;
const QString User = u"ann@example.org"_s;

class ThrottleStoreTest : public testing::Test
{
protected:
    /// Saves 55 percent for the user.
    static std::optional<QString> save()
    {
        return ThrottleStore::savePlistData(SettingCategory::ThrottleSettings, User, {{Active, u"55"_s}});
    }

    TemporaryHome m_home;
    QString m_path = pathValue("DeamonPreferencePath"_L1, {});
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
        {"off", {{Enable, false}, {Manual, u"50"_s}, {Active, 70LL}}, {50}, Manual},
        {"off, above every threshold", {{Enable, false}, {Manual, 100LL}}, {100}, Manual},
        {"on", on(50LL, u"70"_s), {50, true, true}, Active},
        {"both 91", on(u"91"_s, 91LL), {91, true, false}, Active},
        {"active 90", on(90LL, 100LL), {90, true, true}, Active},
        {"idle 90", on(91LL, u"90"_s), {91, true, true}, Active},
        {"no figures", {{Enable, true}}, {0, true, true}, Active},
    };
    forEachRow(rows, [](const auto &row) {
        EXPECT_EQ(throttleDisplay(row.settings), row.shown);
        EXPECT_EQ(throttleEntry(row.settings, -7), (QVariantMap{{row.changes, u"-7"_s}}));
    });
    EXPECT_EQ(throttleDisplay({{Manual, 50LL}}), std::nullopt);
    EXPECT_EQ(throttleEntry({{Manual, 50LL}}, 7), QVariantMap());
}

TEST(ThrottleSettingsTest, OnlyTrueAndTheTextOneAreOnAndFiguresAreOfThirtyTwoBits)
{
    const auto isOn = [](const QVariant &value) { return throttleDisplay({{Enable, value}})->autoPause; };
    EXPECT_TRUE(isOn(true));
    EXPECT_TRUE(isOn(u"1"_s));
    for (const QVariant &off :
         QVariantList{u"0"_s, u"true"_s, u"01"_s, u" 1"_s, false, 1LL, 1.0, QByteArray("1")})
        EXPECT_FALSE(isOn(off)) << off.typeName() << ' ' << qPrintable(off.toString());

    const auto figure = [](const QVariant &value) {
        return throttleDisplay({{Enable, false}, {Manual, value}})->percent;
    };
    EXPECT_EQ(figure(u"+007"_s), 7);
    EXPECT_EQ(figure(u"-2147483648"_s), std::numeric_limits<int>::min());
    EXPECT_EQ(figure(2147483647LL), 2147483647);
    for (const QVariant &none : QVariantList{u"2147483648"_s, u"abc"_s, u""_s, u"+"_s, u"+-5"_s, u" 50"_s,
                                             u"50%"_s, u"5.0"_s, u"\u0665"_s, 2147483648LL, -2147483649LL, 50.0,
                                             true, std::numeric_limits<qulonglong>::max()})
        EXPECT_EQ(figure(none), 0) << none.typeName() << ' ' << qPrintable(none.toString());
}

TEST_F(ThrottleStoreTest, ASaveChangesItsEntryAndNothingElse)
{
    QVariantMap settings{{Enable, u"1"_s}, {Active, 20LL}, {Manual, 40LL}, {u"real"_s, 3.0}, {u"true"_s, true}};
    const QVariantMap before{
        {User, settings}, {u"otto"_s, settings}, {u"version"_s, QVariantList{1LL, QString()}}};
    settings.insert(Active, u"55"_s);
    QVariantMap after = before;
    after.insert(User, settings);
    for (const auto format : {PropertyList::Format::Xml, PropertyList::Format::Binary}) {
        m_home.write(m_path, PropertyList::serialize(before, format).value());
        EXPECT_EQ(save(), std::nullopt);
        // The bytes too: variants of different number types can be equal.
        EXPECT_EQ(m_home.read(m_path), PropertyList::serialize(after, PropertyList::Format::Xml));
        EXPECT_EQ(ThrottleStore::fetchSavedthrottleDataFromPlist(), after);
    }
}

TEST_F(ThrottleStoreTest, WhatCannotBeReadIsToldAndNeverWrittenOver)
{
    const QString damaged = u"no property list, or over a limit"_s, noAccount = u"no settings of the account"_s;
    const struct {
        const char *name;
        QByteArray content;
        QString read, saved; ///< why not
    } rows[] = {
        {"missing", {}, u"cannot be read"_s, u"cannot be read"_s},
        {"empty", "", damaged, damaged},
        {"cut", "<plist><dict><key>ann@example.org</key><dict/></dict></pl", damaged, damaged},
        {"a number too long", "<plist><dict><key>n</key><integer>99999999999999999999</integer></dict></plist>",
         damaged, damaged},
        {"an unwritable character",
         "<plist><dict><key>ann@example.org</key><dict/><key>bell</key><string>&#7;</string></dict></plist>",
         {},
         u"text with an unwritable character"_s},
        {"another account", "<plist><dict><key>otto</key><dict/></dict></plist>", {}, noAccount},
        {"no settings",
         "<plist><dict><key>ann@example.org</key><string>x</string></dict></plist>",
         {},
         noAccount},
    };
    forEachRow(rows, [this](const auto &row) {
        if (!row.content.isNull())
            m_home.write(m_path, row.content);
        testing::internal::CaptureStdout();
        EXPECT_EQ(ThrottleStore::fetchSavedthrottleDataFromPlist().has_value(), row.read.isEmpty());
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  row.read.isEmpty() ? std::string() : "Error reading plist: " + row.read.toStdString() + '\n');
        EXPECT_EQ(save(), row.saved);
        EXPECT_EQ(m_home.read(m_path), row.content);
    });
    m_home.write(m_path, "<plist><array/></plist>");
    EXPECT_EQ(ThrottleStore::fetchSavedthrottleDataFromPlist(), std::nullopt);
    EXPECT_NE(save(), std::nullopt);
}
