#include "Classes/Schedules/ScheduleArchive.h"
#include "Classes/Schedules/ScheduleTimeText.h"

#include "Platform/AtomicFile.h"
#include "Tests/Platform/ArchiveMaker.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

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
    ArchiveMaker maker;
    const auto when = maker.date(45045.75); // 2001-01-01 12:30:45.75
    const auto days = maker.array({maker.add(text("Mon")), maker.add(4)});
    const auto record = maker.record({{text("username"), text("ann: login")},
                                      {text("corvaneUserName"), text("ann")},
                                      {text("scheduleTime"), QVariant::fromValue(when)},
                                      {text("backupType"), 4},
                                      {text("status"), 3},
                                      {text("scheduleType"), 1},
                                      {text("currentScheduleType"), 1},
                                      {text("frequency"), 6},
                                      {text("modify"), 1},
                                      {text("userAtServer"), text("at")},
                                      {text("serverName"), text("server")},
                                      {text("password"), text("secret")},
                                      {text("processReferenceFile"), text("reference")},
                                      {text("emailids"), text("a@b")},
                                      {text("quotaServerName"), text("quota")},
                                      {text("profileName"), text("login")},
                                      {text("destination"), text("here")},
                                      {text("displayDesktopNotification"), true},
                                      {text("shouldStartMissedScheduleBackup"), true},
                                      {text("sendEmailNotification"), true},
                                      {text("isUseSSL"), true},
                                      {text("isBackupNow"), true},
                                      {text("timeSettings"), 2},
                                      {text("scheduleTimeSettings"), 1},
                                      {text("selectedDaysForSchedule"), QVariant::fromValue(days)},
                                      {text("sendLogExtract"), true},
                                      {text("notifyOnFailure"), true},
                                      {text("isAutoSyncEnabled"), true},
                                      {text("notifyMe"), -3}});
    const auto records = scheduleRecordsIn(maker.schedules({record}), Key);
    ASSERT_TRUE(records && records->size() == 1 && records->front());
    const auto &item = *records->front();
    EXPECT_EQ(item.username, text("ann: login"));
    EXPECT_EQ(item.corvaneUsername, text("ann"));
    EXPECT_EQ(item.scheduleTime, QDateTime(QDate(2001, 1, 1), QTime(12, 30, 45), Qt::UTC));
    EXPECT_EQ(item.backupType, QNXBackupType::notBackup);
    EXPECT_EQ(item.status, QNXStatus::completed);
    EXPECT_EQ(item.scheduleType, QNXScheduleType::restore);
    EXPECT_EQ(item.currentScheduleType, std::nullopt);
    EXPECT_EQ(item.frequency, QNXFrequency::none);
    EXPECT_EQ(item.modify, QNXModify::kModified);
    EXPECT_EQ(item.userAtServer, text("at"));
    EXPECT_EQ(item.serverName, text("server"));
    EXPECT_EQ(item.password, text("secret"));
    EXPECT_EQ(item.processReferenceFile, text("reference"));
    EXPECT_EQ(item.emailids, text("a@b"));
    EXPECT_EQ(item.quotaServerName, text("quota"));
    EXPECT_EQ(item.profileName, text("login"));
    EXPECT_EQ(item.destination, text("here"));
    EXPECT_EQ(item.displayDesktopNotification, true);
    EXPECT_EQ(item.shouldStartMissedScheduleBackup, true);
    EXPECT_EQ(item.sendEmailNotification, true);
    EXPECT_EQ(item.isUseSSL, true);
    EXPECT_EQ(item.isBackupNow, std::nullopt);
    EXPECT_EQ(item.scheduleTimeSettings, QNXTimeSettings::startImmediate);
    EXPECT_EQ(item.selectedDaysArray, (QVariantList{text("Mon"), 4LL}));
    EXPECT_EQ(item.sendLogExtract, true);
    EXPECT_EQ(item.notifyOnFailure, true);
    EXPECT_EQ(item.isAutoSyncEnabled, true);
    EXPECT_EQ(item.notifyMe, -3);
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
    EXPECT_EQ(item.isUseSSL, false);
    EXPECT_EQ(item.username, std::nullopt);
    EXPECT_EQ(item.scheduleTime, std::nullopt);
    EXPECT_EQ(item.selectedDaysArray, std::nullopt);
    EXPECT_EQ(CorvaneScheduleItem().isUseSSL, std::nullopt);
}

TEST(CorvaneScheduleItemTest, WrongValuesLeaveTheirFieldUnset)
{
    const struct {
        const char *name;
        QVariant frequency;
        std::optional<QNXFrequency> expected;
    } rows[] = {
        {"last", 6, QNXFrequency::none},
        {"one past", 7, std::nullopt},
        {"negative", -1, std::nullopt},
        {"least", std::numeric_limits<qint64>::min(), std::nullopt},
        {"wraps in 32 bits", 1LL << 32, std::nullopt},
        {"boolean", true, QNXFrequency::hourly},
        {"text", text("3"), QNXFrequency::once},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(decodedRecord({{text("frequency"), row.frequency}}).frequency, row.expected);
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
    const struct {
        const char *name;
        QByteArray bytes;
        bool array;
    } rows[] = {
        {"empty array", empty, true},
        {"cut short", empty.chopped(1), false},
        {"empty file", "", false},
        {"plain property list", "<plist><dict><key>Schedules</key><array/></dict></plist>", false},
        {"another key", maker.archive(text("root"), maker.array({})), false},
        {"no array", maker.archive(text("Schedules"), number), false},
        {"null", maker.archive(text("Schedules"), PropertyListUid{0}), false},
        {"out of range", maker.archive(text("Schedules"), PropertyListUid{12345}), false},
    };
    EXPECT_FALSE(contentsOfArchivedFile(std::nullopt, Key));
    EXPECT_FALSE(contentsOfArchivedFile(QString(), Key));
    EXPECT_FALSE(contentsOfArchivedFile(path, Key));
    EXPECT_FALSE(contentsOfArchivedFile(home.path(), Key));
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        ASSERT_TRUE(AtomicFile::write(path, row.bytes));
        const auto records = contentsOfArchivedFile(path, Key);
        EXPECT_EQ(records.has_value(), row.array);
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

TEST(ScheduleArchiveTest, DamagedBytesGiveAnAnswer)
{
    ArchiveMaker maker;
    const auto when = QVariant::fromValue(maker.date(1.5));
    const auto record = maker.record({{text("username"), text("ann: login")}, {text("scheduleTime"), when}});
    const auto whole = maker.schedules({record, maker.record({{text("frequency"), 2}})});
    std::mt19937 random(20261122); // fixed, so that a failure comes again
    size_t most = 0;
    for (int round = 0; round < 10'000; ++round) {
        auto bytes = whole;
        bytes[qsizetype(random() % size_t(bytes.size()))] = char(random());
        if (const auto records = scheduleRecordsIn(bytes, Key))
            most = std::max(most, records->size());
    }
    EXPECT_GE(most, 2U);
    EXPECT_LE(most, size_t(whole.size()));
}

TEST(ScheduleTimeTextTest, PatternIsTheSameOnBothClocks)
{
    const QDateTime afternoon(QDate(2026, 11, 22), QTime(15, 4, 59));
    const struct {
        const char *locale;
        bool is24Hours;
        QString text;
    } rows[] = {
        {"en_US", false, text("11-22-2026 15:04")},
        {"de_DE", true, text("11-22-2026 15:04")},
        {"ja_JP", true, text("11-22-2026 15:04")},
        {"en_AU", false, text("11-22-2026 15:04")},
        {"ar_EG", false,
         QStringLiteral("١١-٢٢-٢٠٢٦ ١٥:٠٤")},      // its own digits: a 12-hour clock keeps its locale
        {"fa_IR", true, text("11-22-2026 15:04")}, // and a 24-hour clock does not
        {"C", false, text("11-22-2026 15:04")},
    };
    CorvaneScheduleItem item;
    EXPECT_EQ(item.scheduleTimeString(), std::nullopt);
    item.scheduleTime = afternoon.toUTC();
    for (const auto &row : rows) {
        SCOPED_TRACE(row.locale);
        const QLocale locale(QString::fromLatin1(row.locale));
        EXPECT_EQ(getTimeFormat(locale, afternoon), row.is24Hours);
        EXPECT_EQ(getTimeFormat(locale, afternoon.addSecs(-12 * 3600)), row.is24Hours);
        EXPECT_EQ(item.scheduleTimeString(locale), row.text);
    }
}
