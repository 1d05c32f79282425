#include "Utility/Paths/PathTable.h"
#include "Platform/Home.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/LaunchRules.h"
#include "Utility/Paths/AccountNames.h"
#include "Utility/Paths/ApplicationFilePath.h"
#include "Utility/QNUtility.h"
#include "Utility/UserRecords.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(PathTable, LoadsOnceAndTriesAgainUntilItCan)
{
    int loads = 0;
    const PathTable table([&]() -> std::optional<PathTable::Entries> {
        if (++loads < 3)
            return std::nullopt;
        return PathTable::Entries{{u"ExecuterPathTQL"_s, u"/engine"_s},
                                  {u"ExecuterPathDedupTQL"_s, u"/dedup"_s}};
    });
    const QString key = u"ExecuterPathTQL"_s;
    EXPECT_EQ(table.value(key, EUserType::Other), key);
    EXPECT_EQ(table.value(key, EUserType::Dedup), u"ExecuterPathDedupTQL"_s);
    EXPECT_EQ(table.value(key, EUserType::Other), u"/engine"_s);
    EXPECT_EQ(table.value(key, EUserType::Dedup), u"/dedup"_s) << "its accounts have an engine of their own";
    EXPECT_EQ(table.value(u"NoSuchKey"_s, EUserType::Other), u"NoSuchKey"_s);
    EXPECT_EQ(loads, 3);
}

TEST(AccountNames, OnlyOneVisibleComponentFormsAPath)
{
    const TemporaryHome home;
    const QString root = home.path(u".local/share/Corvane/"_s);
    const auto check = [&](const QString &name, bool formsPath) {
        EXPECT_EQ(pathValue("UserDetailsPath"_L1, {name}),
                  formsPath ? root + name + u"/UserDetails.plist"_s : QString());
        EXPECT_EQ(pathValue("SyncDetailsUserPath"_L1, {homeDirectory(), name}).isEmpty(), !formsPath)
            << name.toStdString();
        EXPECT_EQ(accountPath(*ApplicationFilePath(26).path(), {name}).isEmpty(), !formsPath);
        // A file that is the same for all accounts has a path whatever the name.
        EXPECT_EQ(pathValue("LoggedSyncDetailsUserPath"_L1, {name}), root + u"Sync/LoggedSyncDetails.plist"_s);
    };
    for (const QString &name : {u"mona@example.org"_s, u"Mona Lisa"_s, u"\u65e5\u672c"_s, u"a..b"_s, u"%@"_s,
                                u"corvane"_s /* another name than the folder's */, QString(255, u'a')})
        check(name, true);
    const QString halfAPair = u"a"_s + QChar(0xD83D), zero = u"a"_s + QChar(u'\0') + u'b';
    for (const QString &name :
         {QString(256, u'a'), QString(128, u'\u00e9') /* 256 bytes */, QString(), u"."_s, u".."_s, u".hidden"_s,
          u"../../../evil"_s, u"/etc/passwd"_s, u"a/b"_s, u"a\nb"_s, u"a\u0085b"_s, zero, halfAPair})
        check(name, false);
    // What stands in the root folder is the product's.
    for (const QString &name :
         {u"Corvane"_s, u"Logs"_s, u"bin"_s, u"TCPPort.plist"_s, u"RemoteManageInfo.plist"_s,
          QString(LaunchRules::UpdateCheckFile), u"Logs.zip"_s, u"remoteInstall"_s, u"updatedate.xml"_s})
        check(name, false);
    EXPECT_EQ(pathValue("RemoteManageInfoPath"_L1, {home.path(u"x"_s)}),
              home.path(u"x/.local/share/Corvane/RemoteManageInfo.plist"_s));
    EXPECT_EQ(pathValue("ProxySettingFilePath"_L1, {u"setting.plist"_s}), pathValue("ProxySetting"_L1, {}));
}

TEST(AccountNames, NothingIsReadForANameThatFormsNoPath)
{
    const TemporaryHome home;
    for (const auto &[folder, name] :
         {std::pair{u"evil/"_s, u"../evil"_s}, {u"Corvane/"_s, u""_s}, {u"Corvane/Logs/"_s, u"Logs"_s}}) {
        home.write(u".local/share/"_s + folder + u"tqlUser"_s, "");
        EXPECT_FALSE(UserRecords::isTQLUser(name)) << name.toStdString();
    }
}

TEST(ApplicationFilePath, EachCaseComesInTheFormThatItsUsersExpect)
{
    const TemporaryHome home;
    const QString root = homeDirectory() + u"/.local/share/Corvane"_s;
    EXPECT_TRUE(ApplicationFilePath(2).path()->startsWith(root)) << "standardised";
    EXPECT_TRUE(ApplicationFilePath(3).path()->startsWith(root)) << "as a file URL gives it";
    EXPECT_TRUE(ApplicationFilePath(5).path()->startsWith(u'~')) << "as stored";
    for (int number = 0; number < 30; ++number)
        EXPECT_TRUE(ApplicationFilePath(number).path()->size() > 3) << number;
    EXPECT_EQ(ApplicationFilePath(-1).path(), std::nullopt);
    EXPECT_EQ(ApplicationFilePath(30).path(), std::nullopt);
}

TEST(Home, StandardisesByTextAlone)
{
    const TemporaryHome home;
    const QString base = homeDirectory();
    const std::pair<QString, QString> rows[] = {{u"~"_s, base},
                                                {u"~/a//b/./c/../d"_s, base + u"/a/b/d"_s},
                                                {u"~other/a"_s, u"~other/a"_s},
                                                {u"/a/~/b"_s, u"/a/~/b"_s},
                                                {QString(), QString()}};
    for (const auto &[path, expected] : rows)
        EXPECT_EQ(standardizedPath(path), expected) << path.toStdString();
    EXPECT_EQ(homeDirectoryForUser(*consoleUser()), base);
    EXPECT_EQ(homeDirectoryForUser(u"no-such-user"_s), QString());
}
