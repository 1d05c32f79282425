#include "Companions/Common/ScheduleArchive.h"

#include "Companions/MainApplication/ScheduleBook.h"

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <memory>

namespace
{
using PlistHandle = std::unique_ptr<void, decltype([](plist_t node) { plist_free(node); })>;

/// Walks an archive with the property-list library alone, the way a program of somebody else would.
class ForeignReader
{
public:
    explicit ForeignReader(const QByteArray &bytes)
    {
        plist_t root = nullptr;
        plist_from_bin(bytes.constData(), static_cast<uint32_t>(bytes.size()), &root);
        m_root.reset(root);
    }

    [[nodiscard]] plist_t root() const { return m_root.get(); }
    [[nodiscard]] plist_t object(uint32_t index) const
    {
        return plist_array_get_item(plist_dict_get_item(root(), "$objects"), index);
    }
    /// The object that the entry `key` of `holder` refers to; nullptr when that is no reference.
    [[nodiscard]] plist_t follow(plist_t holder, const char *key) const
    {
        return deref(plist_dict_get_item(holder, key));
    }
    [[nodiscard]] plist_t deref(plist_t reference) const
    {
        if (!reference || plist_get_node_type(reference) != PLIST_UID)
            return nullptr;
        uint64_t index = 0;
        plist_get_uid_val(reference, &index);
        return object(static_cast<uint32_t>(index));
    }
    [[nodiscard]] QStringList classChain(plist_t holder) const
    {
        plist_t chain = plist_dict_get_item(follow(holder, "$class"), "$classes");
        QStringList names;
        for (uint32_t i = 0; chain && i < plist_array_get_size(chain); ++i)
            names.append(text(plist_array_get_item(chain, i)));
        return names;
    }
    [[nodiscard]] static QString text(plist_t node)
    {
        const char *bytes = node ? plist_get_string_ptr(node, nullptr) : nullptr;
        return QString::fromUtf8(bytes);
    }

private:
    PlistHandle m_root;
};

std::vector<ScheduleRecord> twoJobs()
{
    const QDateTime time(QDate(2026, 11, 23), QTime(2, 30, 15, 250), Qt::UTC);
    return {
        ScheduleBook::makeJob(QStringLiteral("ana@example.com"), QStringLiteral("ana"), time, Frequency::Daily),
        ScheduleBook::makeJob(QStringLiteral("\u5065\u4e8c"), QStringLiteral("ana"), time, Frequency::Once)};
}
} // namespace

TEST(ScheduleArchive, HasTheShapeOfAKeyedArchive)
{
    const QByteArray bytes = archiveSchedules(twoJobs());
    ASSERT_TRUE(bytes.startsWith("bplist00"));
    const ForeignReader reader(bytes);
    ASSERT_NE(reader.root(), nullptr);
    EXPECT_EQ(ForeignReader::text(plist_dict_get_item(reader.root(), "$archiver")),
              QStringLiteral("NSKeyedArchiver"));
    uint64_t version = 0;
    plist_get_uint_val(plist_dict_get_item(reader.root(), "$version"), &version);
    EXPECT_EQ(version, 100000U);
    EXPECT_EQ(ForeignReader::text(reader.object(0)), QStringLiteral("$null"));

    plist_t list = reader.follow(plist_dict_get_item(reader.root(), "$top"), "Schedules");
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(reader.classChain(list), QStringList({QStringLiteral("NSMutableArray"), QStringLiteral("NSArray"),
                                                    QStringLiteral("NSObject")}));
    EXPECT_EQ(plist_array_get_size(plist_dict_get_item(list, "NS.objects")), 2U);
}

TEST(ScheduleArchive, RecordsCarryTheirFieldsInTheCodersForms)
{
    const ForeignReader reader(archiveSchedules(twoJobs()));
    plist_t list = reader.follow(plist_dict_get_item(reader.root(), "$top"), "Schedules");
    plist_t job = reader.deref(plist_array_get_item(plist_dict_get_item(list, "NS.objects"), 1));
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(reader.classChain(job),
              QStringList({QStringLiteral("CorvaneScheduleItem"), QStringLiteral("NSObject")}));
    EXPECT_EQ(ForeignReader::text(reader.follow(job, "corvaneUserName")), QStringLiteral("\u5065\u4e8c"));
    EXPECT_EQ(ForeignReader::text(reader.follow(job, "username")), QStringLiteral("\u5065\u4e8c: ana"));

    const struct {
        const char *key;
        plist_type type;
    } rows[] = {{"frequency", PLIST_UINT},    {"status", PLIST_UINT},
                {"timeSettings", PLIST_UINT}, {"notifyMe", PLIST_UINT},
                {"isUseSSL", PLIST_BOOLEAN},  {"notifyOnFailure", PLIST_BOOLEAN},
                {"scheduleTime", PLIST_UID},  {"selectedDaysForSchedule", PLIST_UID}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.key);
        plist_t value = plist_dict_get_item(job, row.key);
        ASSERT_NE(value, nullptr);
        EXPECT_EQ(plist_get_node_type(value), row.type);
    }

    plist_t date = reader.follow(job, "scheduleTime");
    EXPECT_EQ(reader.classChain(date), QStringList({QStringLiteral("NSDate"), QStringLiteral("NSObject")}));
    double seconds = 0;
    plist_get_real_val(plist_dict_get_item(date, "NS.time"), &seconds);
    EXPECT_DOUBLE_EQ(seconds, 817093815.25); // 2026-11-23 02:30:15.25 UTC from 2001-01-01
}

TEST(ScheduleArchive, ComesBackAsItWasWritten)
{
    auto jobs = twoJobs();
    jobs[0].insert(QStringLiteral("fieldOfALaterVersion"), QStringLiteral("kept"));
    const auto read = unarchiveSchedules(archiveSchedules(jobs));
    ASSERT_TRUE(read);
    ASSERT_EQ(read->size(), 2U);
    for (std::size_t i = 0; i < 2; ++i)
        for (auto field = jobs[i].cbegin(); field != jobs[i].cend(); ++field) {
            SCOPED_TRACE(field.key().toStdString());
            EXPECT_EQ(read->at(i).value(field.key()), field.value());
        }
}

TEST(ScheduleArchive, DamagedBytesAreNoArchive)
{
    const QByteArray whole = archiveSchedules(twoJobs());
    ASSERT_TRUE(unarchiveSchedules(archiveSchedules({})));
    EXPECT_TRUE(unarchiveSchedules(archiveSchedules({}))->empty());
    const struct {
        const char *name;
        QByteArray bytes;
    } rows[] = {{"empty", {}},
                {"half", whole.left(whole.size() / 2)},
                {"no archive", "<plist><dict><key>Schedules</key><array/></dict></plist>"},
                {"another root", QByteArray(whole).replace("Schedules", "Calendars")}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_FALSE(unarchiveSchedules(row.bytes));
    }
}

TEST(ScheduleArchive, NextOccurrence)
{
    const QDateTime now(QDate(2026, 11, 20), QTime(12, 0), Qt::UTC); // a Friday
    const auto at = [](int month, int day, int hour) {
        return QDateTime(QDate(2026, month, day), QTime(hour, 0), Qt::UTC);
    };
    const struct {
        const char *name;
        QDateTime last;
        Frequency frequency;
        QDateTime next;
    } rows[] = {{"still to come", at(11, 21, 2), Frequency::Daily, at(11, 21, 2)},
                {"this very moment", now, Frequency::Daily, at(11, 21, 12)},
                {"hours missed", at(11, 20, 3), Frequency::Hourly, at(11, 20, 13)},
                {"week", at(11, 6, 12), Frequency::Weekly, at(11, 27, 12)},
                {"month", at(9, 30, 9), Frequency::Monthly, at(11, 30, 9)},
                {"over the weekend", at(11, 20, 9), Frequency::Weekdays, at(11, 23, 9)},
                {"does not repeat", at(11, 19, 9), Frequency::None, at(11, 19, 9)}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(nextOccurrence(row.last, row.frequency, now), row.next);
    }
}
