#include "Companions/MainApplication/AccountFiles.h"

#include "Companions/Common/PropertyList.h"
#include "Companions/MainApplication/MainApplication.h"
#include "Tests/Companions/TemporaryHome.h"

#include <QFileInfo>

#include <gtest/gtest.h>

TEST(AccountFiles, FiguresAreCodedByDoubledUnits)
{
    EXPECT_EQ(codedText(QStringLiteral("1024.5")), QStringLiteral("b`dh\\j"));
    EXPECT_EQ(codedText(QString()), QString());

    const TemporaryHome home;
    AccountFiles files(TemporaryHome::table());
    const QString ana = QStringLiteral("ana@example.com");
    ASSERT_TRUE(files.signIn({.name = ana, .usedMebibytes = 10, .totalMebibytes = 20}));
    QVariantMap details = readPropertyList(home.file(ana + QStringLiteral("/details.plist"))).toMap();
    EXPECT_EQ(details.value(QStringLiteral("TOTALQUOTASIZE")), codedText(QStringLiteral("20.000000")));
    EXPECT_EQ(details.value(QStringLiteral("USEDQUOTASIZE")), codedText(QStringLiteral("10.000000")));

    ASSERT_TRUE(files.setQuota(ana, 0, 5));
    details = readPropertyList(home.file(ana + QStringLiteral("/details.plist"))).toMap();
    EXPECT_EQ(details.value(QStringLiteral("USEDQUOTASIZE")), QVariant(qlonglong(0)));
    EXPECT_EQ(details.value(QStringLiteral("tqlsrvrport")), QStringLiteral("443"));
}

TEST(AccountFiles, RecordAppearsWithSignInAndGoesWithSignOut)
{
    const TemporaryHome home;
    AccountFiles files(TemporaryHome::table());
    EXPECT_EQ(files.signedInAccount(), QString());
    ASSERT_TRUE(files.signIn({.name = QStringLiteral("Ana"), .usesEngine = true}));
    const QVariantMap record = readPropertyList(home.file(QStringLiteral("record.plist"))).toMap();
    EXPECT_EQ(record.value(QStringLiteral("Username")), QStringLiteral("Ana"));
    EXPECT_EQ(record.value(QStringLiteral("isTQL")), QVariant(true));
    EXPECT_EQ(record.value(QStringLiteral("dedup")), QStringLiteral("on"));
    EXPECT_TRUE(QFileInfo::exists(home.file(QStringLiteral("Ana/tql"))));
    EXPECT_EQ(readPropertyList(home.file(QStringLiteral("sync.plist"))).toMap().value(QStringLiteral("ana")),
              QVariant(false));

    // Another kind of account under the same name leaves no marker of the old one.
    ASSERT_TRUE(files.signIn({.name = QStringLiteral("Ana"), .usesEngine = false}));
    EXPECT_FALSE(QFileInfo::exists(home.file(QStringLiteral("Ana/tql"))));
    EXPECT_TRUE(files.signOut());
    EXPECT_EQ(files.signedInAccount(), QString());
    EXPECT_TRUE(QFileInfo::exists(home.file(QStringLiteral("Ana/login.plist"))));
}

TEST(MainApplication, KindOfAccountAndJobSwitchAreWords)
{
    const TemporaryHome home;
    const MainApplication application(TemporaryHome::table());
    ASSERT_TRUE(application.run(QStringLiteral("sign in Ana")).done);
    const struct {
        const char *line, *file, *content;
    } rows[] = {
        {"account sub", "Ana/type.txt", "true"},
        {"account main", "Ana/type.txt", "false"},
        {"jobs off", "status.txt", "0"},
        {"jobs on", "status.txt", "1"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line);
        EXPECT_TRUE(application.run(QString::fromLatin1(row.line)).done);
        EXPECT_EQ(readTextFile(home.file(QString::fromLatin1(row.file))).toStdString(), row.content);
    }
    for (const char *line : {"account other", "account", "jobs", "jobs maybe"})
        EXPECT_FALSE(application.run(QString::fromLatin1(line)).done) << line;
}

TEST(MainApplication, RefusesWhatItCannotDo)
{
    const TemporaryHome home;
    const MainApplication application(TemporaryHome::table());
    for (const char *line :
         {"sign in", "sign in ../x", "sign in a/b", "sign out", "quota 1 2", "schedule demo", "account sub",
          "schedule noon daily ana", "schedule 5 yearly ana", "language fr", "appearance grey"})
        EXPECT_FALSE(application.run(QString::fromLatin1(line)).done) << line;
    EXPECT_FALSE(QFileInfo::exists(home.file(QStringLiteral("record.plist"))));
}

TEST(MainApplication, LanguageAndAppearanceKeepWhatElseIsStored)
{
    const TemporaryHome home;
    const QString file = home.file(QStringLiteral("Library/Preferences/com.halvernet.Corvane.plist"));
    ASSERT_TRUE(writePropertyList(file, {{QStringLiteral("logsFrom"), 7}}));
    const MainApplication application(TemporaryHome::table());
    ASSERT_TRUE(application.run(QStringLiteral("language ja")).done);
    const QVariantMap preferences = readPropertyList(file).toMap();
    EXPECT_EQ(preferences.value(QStringLiteral("AppleLanguages")).toList(), QVariantList{QStringLiteral("ja")});
    EXPECT_EQ(preferences.value(QStringLiteral("logsFrom")), QVariant(qlonglong(7)));

    const QString global = home.file(QStringLiteral("Library/Preferences/.GlobalPreferences.plist"));
    ASSERT_TRUE(application.run(QStringLiteral("appearance dark")).done);
    EXPECT_EQ(readPropertyList(global).toMap().value(QStringLiteral("AppleInterfaceStyle")),
              QStringLiteral("Dark"));
    ASSERT_TRUE(application.run(QStringLiteral("appearance light")).done);
    EXPECT_FALSE(readPropertyList(global).toMap().contains(QStringLiteral("AppleInterfaceStyle")));
}
