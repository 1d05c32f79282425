#include "Classes/Schedules/ScheduleArchive.h"
#include "Classes/Schedules/ScheduleTimeText.h"

#include "Platform/AtomicFile.h"
#include "Tests/Platform/ArchiveMaker.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr QLatin1StringView Key("Schedules");

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

CorvaneScheduleItem decodedRecord(const QVariantMap &fields)
{
    ArchiveMaker maker;
    const auto records = scheduleRecordsIn(maker.schedules({maker.record(fields)}), Key);
    return records && records->size() == 1 && records->front() ? *records->front() : CorvaneScheduleItem();
}
} // namespace

TEST(CorvaneScheduleItemTest, EveryFieldHasItsKey)
{
    using Item = CorvaneScheduleItem;
    const std::tuple<const char *, std::optional<QString> Item::*> texts[] = {
        {"username", &Item::username},         {"corvaneUserName", &Item::corvaneUsername},
        {"userAtServer", &Item::userAtServer}, {"serverName", &Item::serverName},
        {"password", &Item::password},         {"processReferenceFile", &Item::processReferenceFile},
        {"emailids", &Item::emailids},         {"quotaServerName", &Item::quotaServerName},
        {"profileName", &Item::profileName},   {"destination", &Item::destination},
    };
    for (const auto &[key, field] : texts)
        EXPECT_EQ(decodedRecord({{text(key), text(key)}}).*field, text(key)) << key;
    const std::tuple<const char *, std::optional<bool> Item::*> switches[] = {
        {"displayDesktopNotification", &Item::displayDesktopNotification},
        {"shouldStartMissedScheduleBackup", &Item::shouldStartMissedScheduleBackup},
        {"sendEmailNotification", &Item::sendEmailNotification},
        {"isUseSSL", &Item::isUseSSL},
        {"sendLogExtract", &Item::sendLogExtract},
        {"notifyOnFailure", &Item::notifyOnFailure},
        {"isAutoSyncEnabled", &Item::isAutoSyncEnabled},
    };
    for (const auto &[key, field] : switches) {
        EXPECT_EQ(decodedRecord({{text(key), true}}).*field, true) << key;
        EXPECT_EQ(decodedRecord({}).*field, false) << key;
    }
    EXPECT_EQ(decodedRecord({{text("backupType"), 4}}).backupType, QNXBackupType::notBackup);
    EXPECT_EQ(decodedRecord({{text("status"), 3}}).status, QNXStatus::completed);
    EXPECT_EQ(decodedRecord({{text("scheduleType"), 1}}).scheduleType, QNXScheduleType::restore);
    EXPECT_EQ(decodedRecord({{text("modify"), 1}}).modify, QNXModify::kModified);
    EXPECT_EQ(decodedRecord({{text("notifyMe"), -3}}).notifyMe, -3);
    const auto timed = decodedRecord({{text("timeSettings"), 2}, {text("scheduleTimeSettings"), 1}});
    EXPECT_EQ(timed.scheduleTimeSettings, QNXTimeSettings::startImmediate);
    // Never archived, whatever stands there.
    const auto more = decodedRecord({{text("currentScheduleType"), 1}, {text("isBackupNow"), true}});
    EXPECT_EQ(more.currentScheduleType, std::nullopt);
    EXPECT_EQ(more.isBackupNow, std::nullopt);

    ArchiveMaker maker;
    const auto days = QVariant::fromValue(maker.array({maker.add(text("Mon")), maker.add(4)}));
    const auto when = QVariant::fromValue(maker.date(45045.75)); // 2001-01-01 12:30:45.75
    const auto record = maker.record({{text("selectedDaysForSchedule"), days}, {text("scheduleTime"), when}});
    const auto records = scheduleRecordsIn(maker.schedules({record}), Key);
    EXPECT_EQ(records->front()->selectedDaysArray, (QVariantList{text("Mon"), 4LL}));
    EXPECT_EQ(records->front()->scheduleTime, QDateTime(QDate(2001, 1, 1), QTime(12, 30, 45), Qt::UTC));
}

TEST(CorvaneScheduleItemTest, MissingKeysReadAsZeroAndFalse)
{
    const auto item = decodedRecord({{text("scheduleTimeSettings"), 2}});
    EXPECT_EQ(item.backupType, QNXBackupType::onlineBackup);
    EXPECT_EQ(item.status, QNXStatus::yetToStart);
    EXPECT_EQ(item.scheduleType, QNXScheduleType::backup);
    EXPECT_EQ(item.frequency, QNXFrequency::once);
    EXPECT_EQ(item.modify, QNXModify::kNModified);
    EXPECT_EQ(item.scheduleTimeSettings, QNXTimeSettings::recommended);
    EXPECT_EQ(item.notifyMe, 0);
    EXPECT_EQ(item.username, std::nullopt);
    EXPECT_EQ(item.scheduleTime, std::nullopt);
    EXPECT_EQ(item.selectedDaysArray, std::nullopt);
    EXPECT_EQ(CorvaneScheduleItem().isUseSSL, std::nullopt);
}

TEST(CorvaneScheduleItemTest, WrongValuesLeaveTheirFieldUnset)
{
    const std::tuple<const char *, QVariant, std::optional<QNXFrequency>> rows[] = {
        {"last", 6, QNXFrequency::none},
        {"one past", 7, std::nullopt},
        {"negative", -1, std::nullopt},
        {"least", std::numeric_limits<qint64>::min(), std::nullopt},
        {"wraps in 32 bits", 1LL << 32, std::nullopt},
        {"boolean", true, QNXFrequency::hourly},
        {"text", text("3"), QNXFrequency::once},
    };
    for (const auto &[name, frequency, expected] : rows) {
        SCOPED_TRACE(name);
        EXPECT_EQ(decodedRecord({{text("frequency"), frequency}}).frequency, expected);
    }
    const auto item = decodedRecord({{text("username"), 5},
                                     {text("corvaneUserName"), text("ann")},
                                     {text("scheduleTime"), text("2026-11-22")},
                                     {text("selectedDaysForSchedule"), text("Mon")}});
    EXPECT_EQ(item.username, std::nullopt);
    EXPECT_EQ(item.corvaneUsername, text("ann"));
    EXPECT_EQ(item.scheduleTime, std::nullopt);
    EXPECT_EQ(item.selectedDaysArray, std::nullopt);
}

TEST(CorvaneScheduleItemTest, FractionIsCutOffDownwards)
{
    for (const double seconds : {-0.25, -1.0}) {
        ArchiveMaker maker;
        const auto when = QVariant::fromValue(maker.date(seconds));
        const auto records =
            scheduleRecordsIn(maker.schedules({maker.record({{text("scheduleTime"), when}})}), Key);
        EXPECT_EQ(records->front()->scheduleTime, QDateTime(QDate(2000, 12, 31), QTime(23, 59, 59), Qt::UTC));
    }
}

TEST(ScheduleArchiveTest, EntriesKeepTheirPlace)
{
    ArchiveMaker maker;
    const auto item = maker.record({});
    const auto subclass =
        maker.object({text("SpecialItem"), text("CorvaneScheduleItem"), text("NSObject")}, {});
    const auto alien = maker.object({text("Alien"), text("NSObject")}, {{text("frequency"), 2}});
    const auto records =
        scheduleRecordsIn(maker.schedules({item, maker.add(text("text")), maker.array({item}), alien,
                                           PropertyListUid{0}, PropertyListUid{999}, subclass}),
                          Key);
    ASSERT_TRUE(records);
    QString places;
    for (const auto &record : *records)
        places += record ? u'i' : u'-';
    EXPECT_EQ(places, u"i-----i");
}

TEST(ScheduleArchiveTest, OnlyAReadableArrayGivesRecords)
{
    const QTemporaryDir home;
    const auto path = home.filePath(text("schedules"));
    ArchiveMaker maker;
    const auto empty = maker.schedules({});
    const auto number = maker.add(5);
    const std::tuple<const char *, QByteArray, bool> rows[] = {
        {"empty array", empty, true},
        {"plain property list", "<plist><dict><key>Schedules</key><array/></dict></plist>", false},
        {"another key", maker.archive(text("root"), maker.array({})), false},
        {"no array", maker.archive(text("Schedules"), number), false},
    };
    EXPECT_FALSE(contentsOfArchivedFile(std::nullopt, Key));
    EXPECT_FALSE(contentsOfArchivedFile(QString(), Key));
    EXPECT_FALSE(contentsOfArchivedFile(path, Key));
    EXPECT_FALSE(contentsOfArchivedFile(home.path(), Key));
    for (const auto &[name, bytes, array] : rows) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(AtomicFile::write(path, bytes));
        const auto records = contentsOfArchivedFile(path, Key);
        EXPECT_EQ(records.has_value(), array);
        EXPECT_TRUE(!records || records->empty());
    }
}

TEST(ScheduleArchiveTest, HostileRepetitionIsRefused)
{
    ArchiveMaker maker;
    const auto record = maker.record({{text("username"), QString(2'000'000, u'x')}});
    EXPECT_FALSE(scheduleRecordsIn(maker.schedules(QList<PropertyListUid>(5000, record)), Key));
    EXPECT_FALSE(
        scheduleRecordsIn(maker.schedules(QList<PropertyListUid>(qsizetype(MaxScheduleRecords) + 1, {})), Key));
}

TEST(ScheduleTimeTextTest, PatternIsTheSameOnBothClocks)
{
    const QDateTime afternoon(QDate(2026, 11, 22), QTime(15, 4, 59));
    const std::tuple<const char *, bool, QString> rows[] = {
        {"en_US", false, text("11-22-2026 15:04")}, {"de_DE", true, text("11-22-2026 15:04")},
        {"ja_JP", true, text("11-22-2026 15:04")},  {"en_AU", false, text("11-22-2026 15:04")},
        {"ar_EG", false, u"١١-٢٢-٢٠٢٦ ١٥:٠٤"_s},   // its own digits: a 12-hour clock keeps its locale
        {"fa_IR", true, text("11-22-2026 15:04")}, // and a 24-hour clock does not
        {"C", false, text("11-22-2026 15:04")},
    };
    CorvaneScheduleItem item;
    EXPECT_EQ(item.scheduleTimeString(), std::nullopt);
    item.scheduleTime = afternoon.toUTC();
    for (const auto &[name, is24Hours, shown] : rows) {
        SCOPED_TRACE(name);
        const QLocale locale(text(name));
        EXPECT_EQ(getTimeFormat(locale, afternoon), is24Hours);
        EXPECT_EQ(getTimeFormat(locale, afternoon.addSecs(-12 * 3600)), is24Hours);
        EXPECT_EQ(item.scheduleTimeString(locale), shown);
    }
}
