// Saving logs to a folder: what stands there afterwards, and what never goes from it.

#include "Classes/ACTIVITY_LOGS/LogArchive.h"
#include "Classes/ACTIVITY_LOGS/LogWork.h"
#include "Platform/DispatchQueue.h"

#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include <future>

#include <archive.h>
#include <archive_entry.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
/// "name=content" of each entry.
QStringList zipEntries(const QString &path)
{
    QStringList entries;
    archive *const zip = archive_read_new();
    archive_read_support_format_zip(zip);
    EXPECT_EQ(archive_read_open_filename(zip, QFile::encodeName(path).constData(), 4096), ARCHIVE_OK);
    archive_entry *entry = nullptr;
    while (archive_read_next_header(zip, &entry) == ARCHIVE_OK) {
        QByteArray content(int(archive_entry_size(entry)), '\0');
        EXPECT_EQ(archive_read_data(zip, content.data(), size_t(content.size())), content.size());
        entries.append(QString::fromUtf8(archive_entry_pathname_utf8(entry)) + u'=' +
                       QString::fromUtf8(content));
    }
    archive_read_free(zip);
    return entries;
}
} // namespace

class LogArchiveTest : public testing::Test
{
protected:
    LogArchiveTest() { home.write(u"to/há %20b_sync"_s, "mine"); }
    [[nodiscard]] QStringList saved() const
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    const TemporaryHome home;
    const QString folder = home.path(u"to"_s);
    const QString sync = home.path(u"from/há %20b_sync"_s);
    std::atomic<bool> stop = false;
};

TEST_F(LogArchiveTest, EachRowIsSavedByItsOwnKindAndNothingIsReplaced)
{
    home.write(sync, "log");
    home.write(sync + u".sync-up"_s, "up");
    home.write(sync + u".delete"_s, "gone");
    home.write(u"from/plain"_s, "text");
    home.write(u"from/plain.rename"_s, "no list of a plain log");
    const QString pipe = home.path(u"from/pipe"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const std::vector<LogArchive::Row> rows{
        {sync, true},  {home.path(u"from/plain"_s), false}, {home.path(u"from/plain"_s), false},
        {pipe, false}, {home.path(u"from/.."_s), false},    {QString(), false}};
    const auto result = LogArchive::save(rows, folder, stop);
    EXPECT_EQ(result.files, 4);
    EXPECT_EQ(result.absent, 3);
    EXPECT_FALSE(result.needsAlert());
    EXPECT_EQ(saved(), (QStringList{u"há %20b_sync"_s, u"há %20b_sync (2)"_s, u"plain"_s, u"plain (2)"_s,
                                    u"sync_há %20b.zip"_s}));
    EXPECT_EQ(home.read(u"to/há %20b_sync"_s), "mine");
    EXPECT_EQ(home.read(u"to/há %20b_sync (2)"_s), "log");
    EXPECT_EQ(zipEntries(folder + u"/sync_há %20b.zip"_s),
              (QStringList{u"há %20b_sync.sync-up=up"_s, u"há %20b_sync.delete=gone"_s}));
    EXPECT_EQ(LogArchive::zipStem(u"a_sync_b_sync"_s), u"sync_a_b"_s);
}

TEST_F(LogArchiveTest, WhatCannotBeWrittenIsCountedAndLeavesNothing)
{
    home.write(sync, "log");
    home.write(sync + u".sync-up"_s, "up");
    const auto gone = LogArchive::save({{sync, true}}, home.path(u"nowhere"_s), stop);
    EXPECT_EQ(gone.failed, 2);
    EXPECT_TRUE(gone.needsAlert());
    EXPECT_FALSE(LogArchive::isWritable(home.path(u"nowhere"_s)));
    EXPECT_FALSE(LogArchive::isWritable(sync));
    EXPECT_TRUE(LogArchive::isWritable(folder));
    stop = true;
    EXPECT_TRUE(LogArchive::save({{sync, true}}, folder, stop).stopped);
    EXPECT_EQ(saved(), QStringList{u"há %20b_sync"_s});
}

TEST_F(LogArchiveTest, ASavingEndsOnTheMainThreadUnlessItsOwnerIsGone)
{
    home.write(sync, "log");
    bool late = false;
    LogSaving().start({{sync, false}}, folder, [&](const auto &) { late = true; });
    LogSaving saving;
    std::optional<LogArchive::Saved> result;
    saving.start({{sync, false}}, folder, [&](const LogArchive::Saved &ended) { result = ended; });
    ASSERT_TRUE(waitUntil([&] { return result.has_value(); }));
    EXPECT_EQ(result->files, 1);
    EXPECT_FALSE(late);
}

TEST(LogWorkerTest, WorkOfMinutesLeavesThePoolFreeAndRunsInItsOrder)
{
    const LogWorker workers[] = {LogWorker("one"), LogWorker("two"), LogWorker("three")};
    std::promise<void> minutesLater;
    const auto minutes = minutesLater.get_future().share();
    std::atomic<int> ended = 0;
    for (const LogWorker &worker : workers) {
        const auto first = std::make_shared<std::atomic<bool>>(false);
        worker.async([=] {
            minutes.wait();
            *first = true;
        });
        worker.async([&ended, first] { ended += *first ? 1 : 0; });
    }
    std::atomic<bool> listIsRead = false;
    DispatchQueue("list").async([&] { listIsRead = true; });
    EXPECT_TRUE(waitUntil([&] { return listIsRead.load(); }));
    minutesLater.set_value();
    EXPECT_TRUE(waitUntil([&] { return ended == 3; }));
}
