#include "Classes/Schedules/ScheduleArchive.h"
#include "Classes/Schedules/ScheduleTimeText.h"

#include "Platform/AtomicFile.h"
#include "Tests/Platform/ArchiveMaker.h"
#include "Tests/Support/ForEachRow.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using Item = CorvaneScheduleItem;

namespace
{
constexpr QLatin1StringView Key("Schedules");

Item decodedRecord(const QVariantMap &fields, ArchiveMaker maker = {})
{
    const auto records = scheduleRecordsIn(maker.schedules({maker.record(fields)}), Key);
    return records && records->size() == 1 && records->front() ? *records->front() : Item();
}
} // namespace

TEST(CorvaneScheduleItemTest, AMissingKeyIsZeroOrUnset)
{
    const Item none = decodedRecord({{u"scheduleTimeSettings"_s, 2}});
    EXPECT_EQ(none.scheduleTimeSettings, QNXTimeSettings::recommended) << "its key is another";
    EXPECT_EQ(none.backupType, QNXBackupType::onlineBackup);
    EXPECT_EQ(none.status, QNXStatus::yetToStart);
    EXPECT_EQ(none.scheduleType, QNXScheduleType::backup);
    EXPECT_EQ(none.frequency, QNXFrequency::once);
    EXPECT_EQ(none.notifyMe, 0);
    EXPECT_EQ(none.isUseSSL, false);
    EXPECT_FALSE(none.username || none.scheduleTime || none.selectedDaysArray);
}

TEST(CorvaneScheduleItemTest, FieldsAreDecodedByTheirType)
{
    ArchiveMaker maker;
    const auto days = QVariant::fromValue(maker.array({maker.add(u"Mon"_s), maker.add(4)}));
    const Item item = decodedRecord({{u"username"_s, u"ann: login"_s},
                                     {u"isUseSSL"_s, true},
                                     {u"backupType"_s, 4},
                                     {u"status"_s, 3},
                                     {u"scheduleType"_s, 1},
                                     {u"modify"_s, 1},
                                     {u"notifyMe"_s, -3},
                                     {u"timeSettings"_s, 2},
                                     {u"selectedDaysForSchedule"_s, days},
                                     {u"currentScheduleType"_s, 1},
                                     {u"isBackupNow"_s, true}},
                                    std::move(maker));
    EXPECT_EQ(item.username, u"ann: login"_s);
    EXPECT_EQ(item.isUseSSL, true);
    EXPECT_EQ(item.backupType, QNXBackupType::notBackup);
    EXPECT_EQ(item.status, QNXStatus::completed);
    EXPECT_EQ(item.scheduleType, QNXScheduleType::restore);
    EXPECT_EQ(item.modify, QNXModify::kModified);
    EXPECT_EQ(item.notifyMe, -3);
    EXPECT_EQ(item.scheduleTimeSettings, QNXTimeSettings::startImmediate);
    EXPECT_EQ(item.selectedDaysArray, (QVariantList{u"Mon"_s, 4LL}));
    EXPECT_FALSE(item.currentScheduleType || item.isBackupNow) << "never archived, whatever stands there";
}

TEST(CorvaneScheduleItemTest, WrongValuesLeaveTheirFieldUnset)
{
    const Row<QVariant, std::optional<QNXFrequency>> rows[] = {
        {"last", 6, QNXFrequency::none},         {"one past", 7, std::nullopt},
        {"negative", -1, std::nullopt},          {"wraps in 32 bits", 1LL << 32, std::nullopt},
        {"boolean", true, QNXFrequency::hourly}, {"text", u"3"_s, QNXFrequency::once},
    };
    forEachRow(rows, [](const auto &row) {
        EXPECT_EQ(decodedRecord({{u"frequency"_s, row.given}}).frequency, row.expected);
    });
    const Item item = decodedRecord(
        {{u"username"_s, 5}, {u"scheduleTime"_s, u"2026-11-22"_s}, {u"selectedDaysForSchedule"_s, u"Mon"_s}});
    EXPECT_FALSE(item.username || item.scheduleTime || item.selectedDaysArray);
}

TEST(CorvaneScheduleItemTest, FractionIsCutOffDownwards)
{
    const QDateTime first(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    const Row<double, qint64> rows[] = {{"after", 45045.75, 45045}, {"before", -0.25, -1}, {"whole", -1, -1}};
    forEachRow(rows, [&](const auto &row) {
        ArchiveMaker maker;
        const auto time = QVariant::fromValue(maker.date(row.given));
        EXPECT_EQ(decodedRecord({{u"scheduleTime"_s, time}}, std::move(maker)).scheduleTime,
                  first.addSecs(row.expected));
    });
}

TEST(ScheduleArchiveTest, EntriesKeepTheirPlace)
{
    ArchiveMaker maker;
    const auto item = maker.record({});
    const auto subclass = maker.object({u"SpecialItem"_s, u"CorvaneScheduleItem"_s, u"NSObject"_s}, {});
    const auto alien = maker.object({u"Alien"_s, u"NSObject"_s}, {{u"frequency"_s, 2}});
    const auto records =
        scheduleRecordsIn(maker.schedules({item, maker.add(u"text"_s), maker.array({item}), alien,
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
    const auto path = home.filePath(u"schedules"_s);
    EXPECT_FALSE(contentsOfArchivedFile(std::nullopt, Key));
    EXPECT_FALSE(contentsOfArchivedFile(path, Key));
    EXPECT_FALSE(contentsOfArchivedFile(home.path(), Key));
    ArchiveMaker maker;
    const Row<QByteArray, bool> rows[] = {
        {"empty array", maker.schedules({}), true},
        {"plain property list", "<plist><dict><key>Schedules</key><array/></dict></plist>", false},
        {"another key", maker.archive(u"root"_s, maker.array({})), false},
        {"no array", maker.archive(u"Schedules"_s, maker.add(5)), false},
    };
    forEachRow(rows, [&path](const auto &row) {
        ASSERT_TRUE(AtomicFile::write(path, row.given));
        EXPECT_EQ(contentsOfArchivedFile(path, Key).has_value(), row.expected);
    });
}

TEST(ScheduleArchiveTest, HostileRepetitionIsRefused)
{
    static_assert(Limits::ArchiveRecords >= 10'000, "which an account may have");
    ArchiveMaker maker;
    const auto huge = maker.record({{u"username"_s, QString(2'000'000, u'x')}});
    EXPECT_FALSE(scheduleRecordsIn(maker.schedules(QList<PropertyListUid>(5000, huge)), Key));
    EXPECT_FALSE(
        scheduleRecordsIn(maker.schedules(QList<PropertyListUid>(Limits::ArchiveRecords + 1, {})), Key));
}

TEST(ScheduleTimeTextTest, PatternIsTheSameOnBothClocks)
{
    const QDateTime afternoon(QDate(2026, 11, 22), QTime(15, 4, 59));
    const QString usual = u"11-22-2026 15:04"_s;
    const struct {
        const char *name;
        bool is24Hours;
        QString shown;
    } rows[] = {
        {"en_US", false, usual},
        {"de_DE", true, usual},
        {"ja_JP", true, usual},
        {"ar_EG", false, u"١١-٢٢-٢٠٢٦ ١٥:٠٤"_s}, // its own digits: a 12-hour clock keeps its locale
        {"fa_IR", true, usual},                  // and a 24-hour clock does not
        {"C", false, usual},
    };
    Item item;
    EXPECT_EQ(item.scheduleTimeString(), std::nullopt);
    item.scheduleTime = afternoon.toUTC();
    forEachRow(rows, [&](const auto &row) {
        const QLocale locale(QString::fromLatin1(row.name));
        EXPECT_EQ(getTimeFormat(locale, afternoon), row.is24Hours);
        EXPECT_EQ(getTimeFormat(locale, afternoon.addSecs(-12 * 3600)), row.is24Hours);
        EXPECT_EQ(item.scheduleTimeString(locale), row.shown);
    });
}
