#include "Utility/UserRecords.h"
#include "Extensions/TextCoding.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include "Platform/Home.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
const QString User = u"mona"_s;

QString path(const char *key)
{
    return pathValue(QLatin1StringView(key), {User});
}

QVariantMap job(const QVariant &startType, const QVariant &type)
{
    return {{u"operationStartType"_s, startType}, {u"operationType"_s, type}};
}
} // namespace

TEST(UserRecords, RecordsAndMarkers)
{
    const TemporaryHome home;
    EXPECT_EQ(UserRecords::getLastLoggedInUser(), std::nullopt);
    EXPECT_EQ(UserRecords::getActiveUserDetails(), std::nullopt);
    EXPECT_FALSE(UserRecords::isTQLUser(User) || QNUtility::isCurrentPlanPartner() ||
                 QNUtility::isThinClient());
    EXPECT_TRUE(QNUtility::machineID().has_value()) << "the system has an id of its own";

    const auto signIn = [&](const QVariantMap &record) {
        home.writeList(path("LastUserLoginDetailsFilePath"), record);
        return UserRecords::getLastLoggedInUser();
    };
    EXPECT_EQ(signIn({{u"Username"_s, 7LL}}), std::nullopt);
    EXPECT_EQ(signIn({{u"Username"_s, User}, {u"Plan"_s, u"partner"_s}}), User);
    EXPECT_TRUE(QNUtility::isCurrentPlanPartner());
    home.write(path("TqlUserDetails"), "");
    EXPECT_TRUE(UserRecords::isTQLUser(User));
    EXPECT_FALSE(UserRecords::isTQLUser(std::nullopt));
    for (const auto &[port, used] : {std::pair{QVariant(u"8443"_s), u"8443"_s}, {8443LL, u"443"_s}}) {
        home.writeList(path("UserDetailsPath"), QVariantMap{{u"tqlsrvrport"_s, port}});
        EXPECT_EQ(QNUtility::getTQLSrvPort(), used) << "only a text is a port here";
    }
    home.writeList(path("RootMachineInfoPath"), QVariantMap{{u"machineId"_s, u"m-1"_s}});
    EXPECT_EQ(QNUtility::machineID(), u"m-1"_s);
    home.writeList(path("ThinClientFilePath"), QVariantMap{{u"IsThinClient"_s, true}});
    EXPECT_TRUE(QNUtility::isThinClient());
}

TEST(UserRecords, TheLinkedAccountOfALocalUser)
{
    const TemporaryHome home;
    const QString file = pathValue("RemoteManageInfoPath"_L1, {homeDirectory()});
    EXPECT_EQ(QNUtility::isAnyUserDeletedForProfile(*consoleUser()), std::nullopt);
    home.write(file, "neither XML nor binary");
    EXPECT_EQ(QNUtility::isAnyUserDeletedForProfile(*consoleUser()), std::nullopt);
    EXPECT_TRUE(home.read(standardizedPath(pathValue("MonitorTraceFilePath"_L1)))
                    .contains("Unable to read plist data."));
    home.writeList(file, QVariantMap{{u"cname"_s, User}});
    EXPECT_EQ(QNUtility::isAnyUserDeletedForProfile(*consoleUser())->value(u"cname"_s), User);
}

TEST(UserRecords, KindOfAccount)
{
    using Kind = UserRecords::AccountKind;
    const std::tuple<const char *, QString, QString, bool, QString, Kind> rows[] = {
        {"business", u"Business"_s, {}, false, {}, Kind{.isBusiness = true}},
        {"paid in another case", u"paid"_s, {}, false, {}, Kind{}},
        {"sub-account", u"Personal"_s, u"true"_s, false, {}, Kind{.isBusiness = true}},
        {"partner before personal", u"Personal"_s, u"false"_s, true, {}, Kind{.isBusiness = true}},
        {"personal, unlimited", u"Personal"_s, u"false"_s, false, u"Unlimited"_s,
         Kind{.isPersonal = true, .isUnlimited = true}},
        {"with a line feed", u"Business\n"_s, {}, false, {}, Kind{}},
    };
    for (const auto &[name, plan, type, partner, planType, expected] : rows)
        EXPECT_EQ(UserRecords::accountKind(plan, type, partner, planType), expected) << name;
}

TEST(UserRecords, RunningJobs)
{
    const std::tuple<const char *, QVariant, bool, bool> rows[] = {
        {"interactive backup", QVariantList{job(0LL, 0LL)}, true, true},
        {"interactive local backup", QVariantList{job(0LL, 1LL)}, true, true},
        {"interactive restore", QVariantList{job(0LL, 2LL)}, true, false},
        {"scheduled", QVariantList{job(1LL, 0LL)}, true, false},
        {"start type 3, behind another", QVariantList{job(2LL, 0LL), job(3LL, 0LL)}, true, false},
        {"a boolean is no number", QVariantList{job(false, false)}, false, false},
        {"text instead of jobs", u"none"_s, false, false},
        {"job that is no dictionary", QVariantList{u"x"_s, job(0LL, 0LL)}, true, true},
    };
    for (const auto &[name, jobs, any, interactive] : rows) {
        const TemporaryHome home;
        home.writeList(path("CurrentJobs"), QVariantMap{{User, jobs}});
        EXPECT_EQ(UserRecords::isAnyOperationRunning(User), any) << name;
        EXPECT_EQ(UserRecords::isAnyInteractiveBackupOperationRunning(User), interactive) << name;
        EXPECT_FALSE(UserRecords::isAnyOperationRunning(u"otto"_s));
    }
}

TEST(UserRecords, QuotaFiguresAreRepaired)
{
    const QString total = u"TOTALQUOTASIZE"_s;
    const QString used = u"USEDQUOTASIZE"_s;
    const QString coded = encryptedString(u"10240.5"_s);
    const std::tuple<const char *, QVariantMap, QVariant, QVariant> rows[] = {
        {"nothing", {}, {}, {}},
        {"coded texts stay", {{total, coded}, {used, coded}}, coded, coded},
        {"numbers become doubles", {{total, 5LL}, {used, 2.5}}, 5.0, 2.5},
        {"negative use", {{total, -5LL}, {used, -1LL}}, -5.0, 0.0},
        {"another type", {{total, QVariantList()}, {used, QByteArray("x")}}, {}, {}},
    };
    for (const auto &[name, stored, totalAfter, usedAfter] : rows) {
        const QVariantMap repaired = UserRecords::repairedQuotaDetails(stored);
        EXPECT_EQ(repaired.value(total), totalAfter) << name;
        EXPECT_EQ(repaired.value(used), usedAfter) << name;
    }
}

TEST(QNUtility, PreferencesFileIsFoundWhateverItsCase)
{
    const TemporaryHome home;
    const QString folder = home.path(u"Preferences"_s);
    const QString identifier = u"org.example.ProductMonitor"_s;
    EXPECT_EQ(QNUtility::preferencesPlistPath(identifier, folder), folder + u"/com.halvernet.Corvane.plist"_s);
    home.write(folder + u"/ORG.example.product.plist"_s, "");
    EXPECT_EQ(QNUtility::preferencesPlistPath(identifier, folder), folder + u"/ORG.example.product.plist"_s);
    home.write(folder + u"/org.example.Product.plist"_s, "");
    EXPECT_EQ(QNUtility::preferencesPlistPath(identifier, folder), folder + u"/org.example.Product.plist"_s);
    EXPECT_EQ(QNUtility::preferencesPlistPath(),
              homeDirectory() + u"/Library/Preferences/com.halvernet.Corvane.plist"_s);
}
