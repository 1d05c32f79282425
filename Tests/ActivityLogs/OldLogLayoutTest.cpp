// Folders of older versions: what moves where, and that nothing is lost on the way.

#include "Classes/ACTIVITY_LOGS/OldLogLayout.h"
#include "Utility/Paths/PathTable.h"

#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

using namespace Qt::StringLiterals;

class OldLogLayoutTest : public testing::Test
{
protected:
    /// What stands below the swept folder, but for folders that hold something, by its path there.
    [[nodiscard]] QStringList files() const
    {
        QStringList found;
        QDirIterator walk(folder, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            const QString path = walk.next();
            if (!walk.fileInfo().isDir() || walk.fileInfo().isSymLink() || QDir(path).isEmpty())
                found.append(path.mid(folder.size() + 1));
        }
        found.sort();
        return found;
    }
    OldLogLayout::Swept sweep() { return OldLogLayout::moveOldLogs(folder, stop); }

    const TemporaryHome home;
    const QString folder = home.path(u"logs"_s);
    std::atomic<bool> stop = false;
};

TEST_F(OldLogLayoutTest, EachEntryGoesToTheFolderOfItsWord)
{
    const Row<QString, QString> rows[] = {
        {"a file", u"Backup 09-24-2026-10-00-00"_s, u"Backup/Backup 09-24-2026-10-00-00"_s},
        {"a folder's entries", u"Restore_1/a"_s, u"Restore/a"_s},
        {"another name's folder", u"Automatic_Sync_1/a.txt"_s, u"Archive Cleanup/a.txt"_s},
        {"scheduled", u"Schedule_2/b"_s, u"Backup/b"_s},
        {"day files themselves", u"LOGXML/09-24-2026.xml"_s, u"LOGXML/09-24-2026.xml"_s},
        {"older day files", u"LOGXML old/09-24-2026.xml"_s, u"LOGXML/09-24-2026.xml"_s},
        {"what is in place", u"Backup/Backup 1"_s, u"Backup/Backup 1"_s},
        {"a folder in a folder", u"Sync_x/deep/c"_s, u"Sync/deep/c"_s},
        {"another word", u"PutBack_1/a"_s, u"PutBack_1/a"_s},
        {"the word within", u"My Backup"_s, u"My Backup"_s},
        {"another case", u"backup_1"_s, u"backup_1"_s},
    };
    forEachRow(rows, [&](const auto &row) {
        home.write(u"logs/"_s + row.given, "x");
        sweep();
        EXPECT_EQ(files(), QStringList{row.expected});
        EXPECT_EQ(sweep().moved, 0);
        EXPECT_TRUE(QDir(folder).removeRecursively());
    });
}

TEST_F(OldLogLayoutTest, NothingIsOverwrittenFollowedOrRemovedThatHoldsSomething)
{
    home.write(u"logs/Backup/a"_s, "new");
    home.write(u"logs/Backup_1/a"_s, "old");
    home.write(u"logs/Backup_1/b"_s, "b");
    home.write(u"logs/Delete"_s, "a file where a folder should be");
    home.write(u"logs/Delete_1/c"_s, "c");
    home.write(u"else/d"_s, "d");
    ASSERT_TRUE(QFile::link(home.path(u"else"_s), folder + u"/Rename_1"_s));
    const auto swept = sweep();
    EXPECT_EQ(swept.moved, 1);
    EXPECT_EQ(swept.left, 3);
    EXPECT_EQ(files(), (QStringList{u"Backup/a"_s, u"Backup/b"_s, u"Backup_1/a"_s, u"Delete"_s, u"Delete_1/c"_s,
                                    u"Rename_1"_s}));
    EXPECT_EQ(home.read(u"logs/Backup/a"_s), "new");
    EXPECT_EQ(home.read(u"else/d"_s), "d");
    home.write(u"logs/Sync_1/e"_s, "e");
    stop = true;
    EXPECT_EQ(sweep().moved, 0);
}

TEST_F(OldLogLayoutTest, AnEmptyFolderGoesAndOthersStay)
{
    home.write(u"logs/.DS_Store"_s, "x");
    sweep();
    EXPECT_FALSE(QDir(folder).exists());
    home.write(u"logs/Backup/.keep"_s, "x");
    OldLogSweep sweeper;
    int told = 0;
    for (int i = 0; i < 2; ++i)
        sweeper.start(folder, [&](const auto &) { ++told; });
    EXPECT_TRUE(waitUntil([&] { return told == 2; }));
    EXPECT_TRUE(QDir(folder).exists());
}

TEST_F(OldLogLayoutTest, AnArchiveIsShownWhenItHoldsSomethingAndTheSwitchSaysSo)
{
    const auto shown = [&](const QVariant &value) {
        home.writeList(pathValue("SessionsLogsPlistPath"_L1, {}), QVariantMap{{u"shouldShowOldLogs"_s, value}});
        return OldLogLayout::isOldSessionLogsFolderExist();
    };
    const QString days = pathValue("LogsDumpOldPath"_L1, {});
    EXPECT_FALSE(shown(u"1"_s));
    ASSERT_TRUE(QDir().mkpath(days));
    EXPECT_FALSE(shown(u"1"_s));
    home.write(days + u"/a.xml"_s, "x");
    EXPECT_TRUE(shown(u"1"_s));
    EXPECT_FALSE(shown(u"0"_s));
}

TEST_F(OldLogLayoutTest, TheOlderListTellsEachEntryByItsName)
{
    const auto started = [](const QString &name) { return OldLogLayout::sessionLog(u"/f"_s, name)->StartTime; };
    const QDateTime ten(QDate(2026, 9, 24), QTime(10, 5));
    EXPECT_EQ(started(u"Backup 09-24-2026-10-05-07"_s), ten.addSecs(7));
    EXPECT_EQ(started(u"Backup 9-24-2026-10-05 more"_s), ten);
    EXPECT_EQ(started(u"Backup 13-24-2026-10-05"_s), std::nullopt);
    EXPECT_EQ(started(u"Backup"_s), std::nullopt);
    const QString logs = pathValue("SessionLogsNewFolderPath"_L1, {});
    EXPECT_TRUE(OldLogLayout::reloadSessionLogs().empty());
    home.write(logs + u"/.hidden"_s, "x");
    home.write(logs + u"/Sync 09-24-2026-10-05"_s, "x");
    const QString name = u"Sync 09-24-2026-10-05"_s;
    EXPECT_EQ(OldLogLayout::reloadSessionLogs(),
              (std::vector{OldLogLayout::SessionLog{logs + u'/' + name, u"Sync"_s, ten}}));
}
