// The log store: what it hands to its owner, in which order, and what a deletion leaves.

#include "Classes/ACTIVITY_LOGS/LogManager.h"
#include "Classes/ACTIVITY_LOGS/LogFileNames.h"
#include "Platform/UserDefaults.h"
#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"

#include <QDir>

#include <gtest/gtest.h>

#include <thread>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
const QString Logs = u".local/share/Corvane/SessionLogs/"_s;
const QDate Today(2026, 11, 23);

/// An owner that keeps what it is given, as the window does.
class Owner : public LogMaster
{
public:
    void xmlParsed(const std::optional<LogNodes> &list) override
    {
        ++store->currentParseCount;
        given.append(store->currentLog.value_or(u"none"_s) + (!list             ? u" unread"_s
                                                              : store->isParsed ? u""_s
                                                                                : u" kept"_s));
        if (!list || list->empty())
            return;
        store->mLogData.insert(list->front()->dayKey, *list);
        rows.insert(rows.end(), list->begin(), list->end());
        if (const auto once = std::exchange(atFirstList, {}))
            once();
    }
    void readEnded(LogReadEnd end) override { ends.push_back(end); }
    [[nodiscard]] bool isDeleteFromWeb() const override { return isOrdered; }
    void setDeleteFromWeb(bool ordered) override
    {
        EXPECT_TRUE(ends.empty());
        isOrdered = ordered;
    }

    std::unique_ptr<LogManager> store;
    QStringList given;
    LogNodes rows;
    std::vector<LogReadEnd> ends;
    bool isOrdered = false;
    std::function<void()> atFirstList;
};

QByteArray record(const QByteArray &time, const QByteArray &logfile = {}, const QByteArray &user = "ana")
{
    return "<record><datetime>" + time + "</datetime><uname>" + user + "</uname><optype>1</optype><logfile>" +
           logfile + "</logfile></record>";
}

class LogManagerTest : public testing::Test
{
protected:
    LogManagerTest() { owner.store = std::make_unique<LogManager>(owner, clock); }

    void day(const QString &key, const QByteArray &records = record("10:00")) const
    {
        home.write(Logs + u"LOGXML/"_s + key + u".xml"_s, "<records>" + records + "</records>");
    }
    [[nodiscard]] QByteArray fileOf(const QString &key) const
    {
        return home.read(Logs + u"LOGXML/"_s + key + u".xml"_s);
    }
    /// What is handed over from here to the end of a read.
    [[nodiscard]] QStringList given()
    {
        EXPECT_TRUE(waitUntil([&] { return !owner.ends.empty(); }));
        EXPECT_EQ(owner.ends, std::vector{LogReadEnd::Whole});
        owner.ends.clear();
        return std::exchange(owner.given, {});
    }
    void deleteAndWait(const LogNodes &nodes) const
    {
        bool ended = false;
        owner.store->deleteNodes(nodes, [&](const LogNodes &kept) { ended = kept.empty(); });
        EXPECT_TRUE(waitUntil([&] { return ended; }));
    }

    TemporaryHome home;
    ManualClock clock{QDateTime(Today, QTime(12, 0))};
    Owner owner;
};
} // namespace

TEST_F(LogManagerTest, TheAllTimeViewReadsTwentyDaysAtOnceAndTheRestByPages)
{
    for (int back = 0; back < 65; ++back)
        day(LogFileNames::dayName(Today.addDays(-back)));
    day(u"11-23-2026_sync"_s);
    day(u"11-23-2026_cdp"_s);
    day(u"undated"_s);
    owner.store->fetchAllLogs();
    QStringList files = given();
    EXPECT_EQ(files.size(), 22);
    EXPECT_EQ(files.mid(0, 4),
              (QStringList{u"11-23-2026_cdp"_s, u"11-23-2026_sync"_s, u"11-23-2026"_s, u"11-22-2026"_s}));
    EXPECT_EQ(owner.store->currentPage, 0);
    EXPECT_EQ(owner.store->toalParseFileCount, 22);
    owner.store->fetchLogsForPage(0);
    EXPECT_EQ(owner.store->unparsedLogs.size(), 45U);
    for (const auto &[page, read, left] : {std::tuple(1, 20, 25), {2, 5, 20}, {3, 20, 0}}) {
        owner.store->fetchLogsForPage(page);
        EXPECT_EQ(given().size(), read) << page;
        EXPECT_EQ(owner.store->unparsedLogs.size(), std::size_t(left)) << page;
    }
    EXPECT_EQ(owner.store->currentParseCount, 67);
    owner.store->fetchLogsForPage(4);
    owner.store->fetchAndDeleteAllLogs();
    EXPECT_EQ(given().size(), 68);
}

TEST_F(LogManagerTest, AFolderWithoutFilesGivesAnEmptyListAndAMissingOneOnlyAnEnd)
{
    owner.store->fetchAllLogs();
    ASSERT_TRUE(waitUntil([&] { return !owner.ends.empty(); }));
    EXPECT_EQ(owner.ends, std::vector{LogReadEnd::Failed});
    EXPECT_EQ(owner.given, QStringList());
    owner.ends.clear();
    QDir().mkpath(home.path(Logs + u"LOGXML"_s));
    const Row<std::function<void(LogManager &)>, QStringList> rows[] = {
        {"all", [](LogManager &store) { store.fetchAllLogs(); }, {u"none kept"_s}},
        {"all, to be deleted", [](LogManager &store) { store.fetchAndDeleteAllLogs(); }, {u"none kept"_s}},
        {"a period", [](LogManager &store) { store.fetchLogs(Today.addDays(-7), Today); }, {u"none kept"_s}},
        {"no end", [](LogManager &store) { store.fetchLogs(Today, std::nullopt); }, {u"none kept"_s}},
        {"one day", [](LogManager &store) { store.parseXmlFile(u"../x"_s); }, {}},
    };
    forEachRow(rows, [&](const auto &row) {
        row.given(*owner.store);
        EXPECT_EQ(given(), row.expected);
    });
}

TEST_F(LogManagerTest, AFileThatCantBeReadIsAnsweredAndNeverWaitedFor)
{
    day(u"11-20-2026"_s, "<record>");
    home.write(Logs + u"LOGXML/11-21-2026.xml/inside"_s, "a folder");
    ASSERT_EQ(::mkfifo(QFile::encodeName(home.path(Logs + u"LOGXML/11-22-2026.xml"_s)).constData(), 0600), 0);
    day(u"11-22-2026_cdp"_s);
    owner.store->fetchLogs(Today.addDays(-7), Today);
    EXPECT_EQ(given(), (QStringList{u"11-20-2026 unread"_s, u"11-21-2026 unread"_s, u"11-22-2026_cdp"_s,
                                    u"11-22-2026 unread"_s}));
    EXPECT_EQ(owner.store->toalParseFileCount, 4);
}

TEST_F(LogManagerTest, WhatWasReadIsNotReadAgainButForToday)
{
    day(u"11-22-2026"_s);
    day(u"11-23-2026_sync"_s);
    owner.store->fetchLogs(Today.addDays(-1), Today);
    EXPECT_EQ(given(), (QStringList{u"11-22-2026"_s, u"11-23-2026_sync"_s}));
    owner.store->parseXmlFile(u"11-23-2026"_s);
    EXPECT_EQ(given(), QStringList(u"11-23-2026_sync"_s));
    owner.store->parseXmlFile(u"11-22-2026"_s);
    EXPECT_EQ(given(), QStringList(u"11-22-2026 kept"_s));
    owner.store->fetchLogs(Today.addDays(-1), Today.addDays(-1));
    EXPECT_EQ(given(), QStringList(u"11-22-2026"_s));
}

TEST_F(LogManagerTest, ANewReadDropsTheOneBeforeAndNothingComesOnceTheStoreIsGone)
{
    for (int back = 1; back < 15; ++back)
        day(LogFileNames::dayName(Today.addDays(-back)));
    const auto running = std::make_shared<LogNode>();
    running->logfile = home.path(Logs + u"Backup/log"_s);
    running->dayKey = u"11-01-2026"_s;
    home.write(running->logfile, "text");
    owner.atFirstList = [&] {
        // The queue deletes behind what it reads, so by then all the other files are on their way here.
        owner.store->mLogData.insert(running->dayKey, {running});
        owner.store->deleteNode(running);
        while (QFile::exists(running->logfile))
            std::this_thread::yield();
        owner.given.clear();
        owner.store->fetchAllLogs();
        owner.store->fetchLogs(Today.addDays(-1), Today);
    };
    owner.store->fetchAllLogs();
    EXPECT_EQ(given(), QStringList(u"11-22-2026"_s));
    EXPECT_EQ(owner.store->currentParseCount, 1);
    owner.atFirstList = [&] { owner.store.reset(); };
    owner.store->fetchAllLogs();
    ASSERT_TRUE(waitUntil([&] { return !owner.store; }));
    // A later read ends behind whatever the first store had sent.
    owner.store = std::make_unique<LogManager>(owner, clock);
    owner.store->fetchLogs(Today.addDays(-2), Today.addDays(-2));
    EXPECT_EQ(given(), (QStringList{u"11-22-2026"_s, u"11-21-2026"_s}));
}

TEST_F(LogManagerTest, AnOrderFromTheWebReadsEveryDayAndEndsWithTheRead)
{
    for (int back = 1; back < 30; ++back)
        day(LogFileNames::dayName(Today.addDays(-back)));
    owner.isOrdered = true;
    owner.store->fetchAllLogs();
    EXPECT_EQ(given().size(), 29);
    EXPECT_FALSE(owner.isOrdered);
}

TEST_F(LogManagerTest, ADeletionTakesTheRecordAndItsFilesAndNothingElse)
{
    const QString log = home.path(Logs + u"Backup/11-22-2026-10-00-00"_s);
    for (const char *ending :
         {".sync-up", ".sync-down", ".delete", ".rename", "", ".summary", "_info", ".other"})
        home.write(log + QString::fromLatin1(ending), "text");
    day(u"11-22-2026"_s, record("1", log.toUtf8()) + record("2", log.toUtf8() + ".x", "ben"));
    day(u"11-21-2026"_s, record("1") + record("2"));
    owner.store->fetchLogs(Today.addDays(-7), Today);
    EXPECT_EQ(given().size(), 2);
    ASSERT_EQ(owner.rows.size(), 4U);
    deleteAndWait({owner.rows[0], owner.rows[1], owner.rows[2]});
    EXPECT_EQ(fileOf(u"11-21-2026"_s), QByteArray());
    EXPECT_TRUE(fileOf(u"11-22-2026"_s).contains("ben"));
    EXPECT_FALSE(fileOf(u"11-22-2026"_s).contains("ana"));
    EXPECT_EQ(QDir(home.path(Logs + u"Backup"_s)).entryList(QDir::Files),
              QStringList(u"11-22-2026-10-00-00.other"_s));
    EXPECT_EQ(owner.store->mLogData.size(), 1);
}

TEST_F(LogManagerTest, ADayGoesByItsKeyAndItsLogsStayWhereItCannotBeEdited)
{
    const QString log = home.path(Logs + u"Backup/log"_s);
    const QByteArray mine = record("1", log.toUtf8());
    struct Given {
        QString key;
        QByteArray records;
    };
    const Row<Given, std::pair<bool, qsizetype>> rows[] = {
        // whether the log stays, and how many are kept
        {"a day that was never read", {u"11-20-2026"_s, mine}, {false, 0}},
        {"its file is gone", {u"11-20-2026"_s, {}}, {false, 0}},
        {"malformed by now", {u"11-20-2026"_s, mine + "<"}, {true, 1}},
        {"outside the folder", {u"../11-20-2026"_s, mine}, {true, 0}},
        {"no name", {u""_s, mine}, {true, 0}},
    };
    forEachRow(rows, [&](const auto &row) {
        home.write(Logs + u"Backup/log"_s, "text");
        if (!row.given.records.isEmpty())
            day(row.given.key, row.given.records);
        const auto node = std::make_shared<LogNode>();
        node->datetime = u"1"_s;
        node->uname = u"ana"_s;
        node->optype = u"1"_s;
        node->logfile = log;
        node->dayKey = row.given.key;
        qsizetype kept = -1;
        owner.store->deleteNodes({nullptr, node}, [&](const LogNodes &left) { kept = qsizetype(left.size()); });
        EXPECT_TRUE(waitUntil([&] { return kept >= 0; }));
        EXPECT_EQ(std::pair(QFile::exists(log), kept), row.expected);
        EXPECT_EQ(fileOf(row.given.key).isEmpty(), !row.expected.first);
    });
}

TEST_F(LogManagerTest, ARecordTakesNoFileThatIsNotItsOwn)
{
    home.write(u"outside/log"_s, "text");
    home.write(Logs + u"Backup/folder/inside"_s, "text");
    day(u"11-19-2026"_s);
    QFile::link(home.path(u"outside"_s), home.path(Logs + u"Backup/way"_s));
    QFile::link(home.path(u"outside/log"_s), home.path(Logs + u"Backup/link"_s));
    const QString logs = home.path(Logs);
    const Row<QString, QString> rows[] = {
        {"outside", home.path(u"outside/log"_s), u"outside/log"_s},
        {"by way of the folder above", logs + u"Backup/../../../../../outside/log"_s, u"outside/log"_s},
        {"through a linked folder", logs + u"Backup/way/log"_s, u"outside/log"_s},
        {"a link", logs + u"Backup/link"_s, u"outside/log"_s},
        {"a folder", logs + u"Backup/folder"_s, Logs + u"Backup/folder/inside"_s},
        {"a folder, with its slash", logs + u"Backup/folder/"_s, Logs + u"Backup/folder/inside"_s},
        {"another day's file", logs + u"LOGXML/11-19-2026.xml"_s, Logs + u"LOGXML/11-19-2026.xml"_s},
    };
    forEachRow(rows, [&](const auto &row) {
        day(u"11-22-2026"_s, record("1", row.given.toUtf8()));
        owner.rows.clear();
        owner.store->fetchLogs(Today.addDays(-1), Today);
        EXPECT_EQ(given().size(), 1);
        deleteAndWait(owner.rows);
        EXPECT_EQ(fileOf(u"11-22-2026"_s), QByteArray());
        EXPECT_FALSE(home.read(row.expected).isEmpty());
    });
    EXPECT_TRUE(QFileInfo(home.path(Logs + u"Backup/link"_s)).isSymLink());
}

TEST_F(LogManagerTest, OldSessionLogsAreLookedForOnceAndOnlyWithoutDayFiles)
{
    UserDefaults defaults(home.path(u"defaults.plist"_s));
    home.write(Logs + u"Backup/11-22-2026-10-00-00"_s, "file size: 1\n");
    int records = -1;
    owner.store->createOldLogs(defaults, [&](int made) { records = made; });
    ASSERT_TRUE(waitUntil([&] { return records >= 0; }));
    EXPECT_EQ(records, 1);
    EXPECT_EQ(owner.store->logLimit, 1);
    EXPECT_EQ(UserDefaults(defaults.path()).value(u"onlyonce"_s).toInt(), 1);
    EXPECT_TRUE(fileOf(u"11-22-2026"_s).contains("11-22-2026-10-00-00"));
}

TEST_F(LogManagerTest, OldSessionLogsAreRebuiltWithoutTheStoreThatBeganIt)
{
    UserDefaults defaults(home.path(u"defaults.plist"_s));
    home.write(Logs + u"Backup/11-22-2026-10-00-00"_s, "file size: 1\n");
    owner.store->createOldLogs(defaults, [](int) { ADD_FAILURE() << "the store is gone"; });
    owner.store.reset();
    EXPECT_TRUE(waitUntil([&] { return !fileOf(u"11-22-2026"_s).isEmpty(); }));
}
