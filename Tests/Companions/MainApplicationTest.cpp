#include "Companions/MainApplication/MainApplication.h"

#include "Companions/Common/PropertyList.h"
#include "Tests/Companions/TemporaryHome.h"

#include <QFileInfo>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(MainApplication, RecordComesWithSignInAndGoesWithSignOut)
{
    const TemporaryHome home;
    const auto path = [&home](const char *key) {
        return home.table.path(QString::fromLatin1(key), {u"Ana"_s});
    };
    const auto entry = [&path](const char *key, const char *name) {
        return readPropertyList(path(key)).toMap().value(QString::fromLatin1(name));
    };
    AccountFiles files(home.table);
    ASSERT_TRUE(files.signIn({.name = u"Ana"_s, .usesEngine = true, .totalMebibytes = 20}));
    EXPECT_EQ(entry("LastUserLoginDetailsFilePath", "isTQL"), QVariant(true));
    EXPECT_EQ(entry("SyncStateFilePath", "ana"), QVariant(false));
    EXPECT_EQ(codedText(u"1024.5"_s), u"b`dh\\j"_s) << "its units are doubled";
    EXPECT_EQ(entry("UserDetailsPath", "TOTALQUOTASIZE"), codedText(u"20.000000"_s));
    EXPECT_TRUE(QFileInfo::exists(path("TqlUserDetails")));
    ASSERT_TRUE(files.signIn({.name = u"Ana"_s, .usesEngine = false}));
    EXPECT_FALSE(QFileInfo::exists(path("TqlUserDetails"))) << "no marker of the old kind of account";
    EXPECT_TRUE(files.signOut());
    EXPECT_EQ(files.signedInAccount(), QString());
    EXPECT_TRUE(QFileInfo::exists(path("LoginDetailsFilePath")));
}

TEST(MainApplication, RefusesWhatItCannotDo)
{
    const TemporaryHome home;
    const MainApplication application(home.table);
    for (const char *line : {"sign in", "sign in ../x", "sign in a/b", "sign out", "quota 1 2", "schedule demo",
                             "account sub", "schedule noon daily ana", "schedule 5 yearly ana", "language fr"})
        EXPECT_FALSE(application.run(QString::fromLatin1(line)).done) << line;
    EXPECT_FALSE(QFileInfo::exists(home.table.path(u"LastUserLoginDetailsFilePath"_s)));
}
