#include "Utility/UserRecords.h"
#include "Extensions/TextCoding.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include "Platform/Home.h"

#include <QDir>

#include <gtest/gtest.h>

namespace
{
const QString User = QStringLiteral("mona");

QString path(const char *key)
{
    return pathValue(QLatin1String(key), {User});
}

void signIn(const TemporaryHome &home, const QVariantMap &more = {})
{
    QVariantMap record{{QStringLiteral("Username"), User}};
    record.insert(more);
    home.writeList(path("LastUserLoginDetailsFilePath"), record);
}

QVariantMap job(const QVariant &startType, const QVariant &type)
{
    return {{QStringLiteral("operationStartType"), startType}, {QStringLiteral("operationType"), type}};
}
} // namespace

TEST(UserRecords, NoFileMeansNoValue)
{
    const TemporaryHome home;
    EXPECT_EQ(UserRecords::getLastLoggedInUser(), std::nullopt);
    EXPECT_EQ(UserRecords::getActiveUserDetails(), std::nullopt);
    EXPECT_FALSE(UserRecords::isAnyOperationRunning(User));
    EXPECT_FALSE(UserRecords::isTQLUser(User));
    EXPECT_FALSE(QNUtility::isCurrentPlanPartner());
    EXPECT_FALSE(QNUtility::isThinClient());
    EXPECT_EQ(QNUtility::getTQLSrvPort(), QStringLiteral("443"));
    EXPECT_TRUE(QNUtility::machineID().has_value()) << "the system has an id of its own";
}

TEST(UserRecords, RecordsAndMarkers)
{
    const TemporaryHome home;
    signIn(home, {{QStringLiteral("Plan"), QStringLiteral("partner")}});
    EXPECT_EQ(UserRecords::getLastLoggedInUser(), User);
    EXPECT_TRUE(QNUtility::isCurrentPlanPartner());
    home.write(path("TqlUserDetails"), "");
    EXPECT_TRUE(UserRecords::isTQLUser(User));
    EXPECT_FALSE(UserRecords::isTQLUser(std::nullopt));
    EXPECT_FALSE(UserRecords::isDisconnectedUser(User));
    home.writeList(path("UserDetailsPath"),
                   QVariantMap{{QStringLiteral("tqlsrvrport"), QStringLiteral("8443")}});
    EXPECT_EQ(QNUtility::getTQLSrvPort(), QStringLiteral("8443"));
    home.writeList(path("UserDetailsPath"), QVariantMap{{QStringLiteral("tqlsrvrport"), 8443LL}});
    EXPECT_EQ(QNUtility::getTQLSrvPort(), QStringLiteral("443")) << "only a text is a port here";
    home.writeList(path("RootMachineInfoPath"),
                   QVariantMap{{QStringLiteral("machineId"), QStringLiteral("m-1")}});
    EXPECT_EQ(QNUtility::machineID(), QStringLiteral("m-1"));
    home.writeList(path("ThinClientFilePath"), QVariantMap{{QStringLiteral("IsThinClient"), true}});
    EXPECT_TRUE(QNUtility::isThinClient());
    home.writeList(path("LastUserLoginDetailsFilePath"), QVariantMap{{QStringLiteral("Username"), 7LL}});
    EXPECT_EQ(UserRecords::getLastLoggedInUser(), std::nullopt);
}

TEST(UserRecords, TheLinkedAccountOfALocalUser)
{
    const TemporaryHome home;
    const QString file = pathValue(QLatin1String("RemoteManageInfoPath"), {homeDirectory()});
    EXPECT_EQ(QNUtility::isAnyUserDeletedForProfile(*consoleUser()), std::nullopt);
    home.write(file, "neither XML nor binary");
    EXPECT_EQ(QNUtility::isAnyUserDeletedForProfile(*consoleUser()), std::nullopt);
    EXPECT_TRUE(home.read(standardizedPath(pathValue(QLatin1String("MonitorTraceFilePath"))))
                    .contains("Unable to read plist data."));
    home.writeList(file, QVariantMap{{QStringLiteral("cname"), User}});
    EXPECT_EQ(QNUtility::isAnyUserDeletedForProfile(*consoleUser())->value(QStringLiteral("cname")), User);
}

TEST(UserRecords, KindOfAccount)
{
    using Kind = UserRecords::AccountKind;
    const struct {
        const char *name;
        QString plan, type;
        bool partner;
        QString planType;
        Kind expected;
    } rows[] = {
        {"business", QStringLiteral("Business"), {}, false, {}, Kind{.isBusiness = true}},
        {"paid", QStringLiteral("PAID"), {}, false, {}, Kind{.isBusiness = true}},
        {"paid in another case", QStringLiteral("paid"), {}, false, {}, Kind{}},
        {"sub-account",
         QStringLiteral("Personal"),
         QStringLiteral("true"),
         false,
         {},
         Kind{.isBusiness = true}},
        {"partner before personal",
         QStringLiteral("Personal"),
         QStringLiteral("false"),
         true,
         {},
         Kind{.isBusiness = true}},
        {"personal, unlimited", QStringLiteral("Personal"), QStringLiteral("false"), false,
         QStringLiteral("Unlimited"), Kind{.isPersonal = true, .isUnlimited = true}},
        {"with a line feed", QStringLiteral("Business\n"), {}, false, {}, Kind{}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(UserRecords::accountKind(row.plan, row.type, row.partner, row.planType), row.expected);
    }
}

TEST(UserRecords, RunningJobs)
{
    const struct {
        const char *name;
        QVariant jobs;
        bool any, interactive;
    } rows[] = {
        {"interactive backup", QVariantList{job(0LL, 0LL)}, true, true},
        {"interactive local backup", QVariantList{job(0LL, 1LL)}, true, true},
        {"interactive restore", QVariantList{job(0LL, 2LL)}, true, false},
        {"scheduled", QVariantList{job(1LL, 0LL)}, true, false},
        {"start type 2", QVariantList{job(2LL, 0LL)}, false, false},
        {"start type 3, behind another", QVariantList{job(2LL, 0LL), job(3LL, 0LL)}, true, false},
        {"a boolean is no number", QVariantList{job(false, false)}, false, false},
        {"text instead of jobs", QStringLiteral("none"), false, false},
        {"job that is no dictionary", QVariantList{QStringLiteral("x"), job(0LL, 0LL)}, true, true},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const TemporaryHome home;
        home.writeList(path("CurrentJobs"), QVariantMap{{User, row.jobs}});
        EXPECT_EQ(UserRecords::isAnyOperationRunning(User), row.any);
        EXPECT_EQ(UserRecords::isAnyInteractiveBackupOperationRunning(User), row.interactive);
        EXPECT_FALSE(UserRecords::isAnyOperationRunning(QStringLiteral("otto")));
    }
}

TEST(UserRecords, QuotaFiguresAreRepaired)
{
    const QString total = QStringLiteral("TOTALQUOTASIZE");
    const QString used = QStringLiteral("USEDQUOTASIZE");
    const QString coded = encryptedString(QStringLiteral("10240.5"));
    const struct {
        const char *name;
        QVariantMap stored;
        QVariant total, used;
    } rows[] = {
        {"nothing", {}, 0.0, 0.0},
        {"coded texts stay", {{total, coded}, {used, coded}}, coded, coded},
        {"numbers become doubles", {{total, 5LL}, {used, 2.5}}, 5.0, 2.5},
        {"negative use", {{total, -5LL}, {used, -1LL}}, -5.0, 0.0},
        {"another type", {{total, QVariantList()}, {used, QByteArray("x")}}, 0.0, 0.0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const QVariantMap repaired = UserRecords::repairedQuotaDetails(row.stored);
        EXPECT_EQ(repaired.value(total), row.total);
        EXPECT_EQ(repaired.value(used), row.used);
    }
}

TEST(QNUtility, PreferencesFileIsFoundWhateverItsCase)
{
    const TemporaryHome home;
    const QString folder = home.path(QStringLiteral("Preferences"));
    const QString identifier = QStringLiteral("org.example.ProductMonitor");
    EXPECT_EQ(QNUtility::preferencesPlistPath(identifier, folder),
              folder + QStringLiteral("/com.halvernet.Corvane.plist"));
    home.write(folder + QStringLiteral("/ORG.example.product.plist"), "");
    EXPECT_EQ(QNUtility::preferencesPlistPath(identifier, folder),
              folder + QStringLiteral("/ORG.example.product.plist"));
    home.write(folder + QStringLiteral("/org.example.Product.plist"), "");
    EXPECT_EQ(QNUtility::preferencesPlistPath(identifier, folder),
              folder + QStringLiteral("/org.example.Product.plist"));
    EXPECT_EQ(QNUtility::preferencesPlistPath(),
              homeDirectory() + QStringLiteral("/Library/Preferences/com.halvernet.Corvane.plist"));
}

TEST(QNUtility, TheProcessListHoldsThisProcess)
{
    EXPECT_TRUE(QNUtility::getBSDProcessList().contains(QStringLiteral("utility_test")));
}
