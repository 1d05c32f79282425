#include "Tests/Controller/MonitorFixture.h"
#include "Utility/LoginItemRegistry.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
class LifecycleTest : public MonitorFixture
{
protected:
    [[nodiscard]] static QString root(const char *name)
    {
        return pathValue("ApplicationRootFolderPath"_L1, {}) + u'/' + QLatin1String(name);
    }
    [[nodiscard]] bool traced(const char *text) const { return trace().contains(QLatin1String(text)); }
};
} // namespace

TEST_F(LifecycleTest, MarkersAreActedOnOnceAndRemoved)
{
    for (const char *name : {"autoLaunchCheckfile.txt", "launchApp", "silentInstall.txt"})
        home.write(root(name), "");
    home.write(path("InstallForTrayInfoPath"), "");
    home.write(path("UpdateOnDaemonRestart"), "");
    home.write(path("MonitorLaunchPath"), "sendErrorReport");
    start();
    for (const QString &marker : {root("autoLaunchCheckfile.txt"), root("launchApp"), root("silentInstall.txt"),
                                  path("UpdateOnDaemonRestart"), path("MonitorLaunchPath")})
        EXPECT_FALSE(QFileInfo::exists(marker)) << marker.toStdString();
    EXPECT_TRUE(traced("AUTOUPDATE:Check File is available"));
    EXPECT_TRUE(traced("showErrorReport"));
    EXPECT_TRUE(done.isEmpty());
    clock.advance(5s);
    EXPECT_EQ(done.value(0).left(15), u"popover Corvane"_s);
    EXPECT_TRUE(done.contains(u"popover Corvane is up-to-date"_s));
    EXPECT_FALSE(QFileInfo::exists(path("InstallForTrayInfoPath")));
    clock.advance(60s);
    EXPECT_EQ(done.size(), 2);
}

TEST_F(LifecycleTest, HelpIsGivenUpWhereThePanelIsHidden)
{
    home.write(path("InstallForTrayInfoPath"), "");
    panelIsVisible = false;
    start();
    clock.advance(5s);
    EXPECT_TRUE(done.isEmpty());
    EXPECT_TRUE(traced("popover is hidden because menu bar is hidden"));
    EXPECT_FALSE(QFileInfo::exists(path("InstallForTrayInfoPath")));
}

TEST_F(LifecycleTest, TheLoginItemFollowsTheSettings)
{
    const auto settings = [&](const QVariant &value) {
        home.writeList(path("AppDefaultSettings"),
                       QVariantMap{{User, QVariantMap{{u"launchOnStartup"_s, value}}}});
    };
    settings(1LL);
    start();
    EXPECT_EQ(LoginItemRegistry::allLoginItems().size(), 1);
    settings(0LL);
    controller.reloadPreferencesFromApp();
    EXPECT_EQ(LoginItemRegistry::allLoginItems().size(), 0);
    settings(1LL);
    controller.didReceiveIPCMessage({u"UpdateLoginItem"_s, QVariantMap()},
                                    CorvaneMonitorController::Origin::BackupDaemon);
    EXPECT_EQ(LoginItemRegistry::allLoginItems().size(), 1);
    QFile::remove(path("AppDefaultSettings"));
    controller.manageLaunchOnStartup();
    EXPECT_EQ(LoginItemRegistry::allLoginItems().size(), 0);
}

TEST_F(LifecycleTest, AnUpdateFolderInUseSurvives)
{
    home.write(root("Corvane/package"), "");
    home.write(root("checkfile.plist"), "");
    controller.removeUpdateDMGFolder();
    EXPECT_TRUE(QFileInfo::exists(root("Corvane/package")));
    QFile::remove(root("checkfile.plist"));
    controller.removeUpdateDMGFolder();
    EXPECT_FALSE(QFileInfo::exists(root("Corvane")));
    EXPECT_TRUE(QFileInfo::exists(path("LastUserLoginDetailsFilePath")));
}

TEST_F(LifecycleTest, AChangeOfLanguageAlwaysStartsTheProgramAnew)
{
    start();
    controller.loclaizationSetup({{u"language"_s, u"ja"_s}});
    EXPECT_TRUE(traced("IPC loclaizationSetup language: ja"));
    EXPECT_TRUE(done.isEmpty());
    clock.advance(1s);
    EXPECT_EQ(done, QStringList({u"relaunch"_s, u"quit"_s}));
    done.clear();
    controller.loclaizationSetup({});
    clock.advance(1s);
    EXPECT_EQ(done, QStringList({u"relaunch"_s, u"quit"_s}));
}

TEST_F(LifecycleTest, SigningOutAndInAgain)
{
    start();
    EXPECT_EQ(item.toolTip(), next);
    QFile::remove(path("LastUserLoginDetailsFilePath"));
    controller.resetMonitorUI();
    EXPECT_EQ(item.toolTip(), u"Corvane 9.2.1"_s);
    clock.advance(10s);
    controller.menuWillOpen();
    EXPECT_FALSE(controller.menu().isEnabled(MenuItem::Scheduler));
    EXPECT_EQ(item.toolTip(), u"Corvane 9.2.1"_s);

    home.writeList(path("LastUserLoginDetailsFilePath"), QVariantMap{{u"Username"_s, User}});
    home.write(path("CancelledAccountInfoPath"), "");
    controller.enablePreferences();
    EXPECT_EQ(item.toolTip(), next);
    EXPECT_TRUE(controller.menu().isEnabled(MenuItem::Scheduler));
    EXPECT_FALSE(QFileInfo::exists(path("CancelledAccountInfoPath")));
}

TEST_F(LifecycleTest, OnlyAnOpeningAndASignInTellTheTypeOfTheAccount)
{
    QNUtility::userType = EUserType::Dedup;
    start();
    clock.advance(20s);
    EXPECT_EQ(QNUtility::userType, EUserType::Dedup) << "neither the start nor a pass in between";
    controller.menuWillOpen();
    EXPECT_EQ(QNUtility::userType, EUserType::Other);
    QNUtility::userType = EUserType::Dedup;
    controller.enablePreferences();
    EXPECT_EQ(QNUtility::userType, EUserType::Other);
    QNUtility::userType = EUserType::Dedup;
}

TEST_F(LifecycleTest, TheSwitchForAllJobs)
{
    start();
    controller.menuWillOpen();
    EXPECT_EQ(controller.menu().title(MenuItem::SwitchJobs), u"Disable all scheduled jobs"_s);
    controller.disableScheduleSubMenu();
    EXPECT_EQ(switchText(), u"0"_s);
    EXPECT_EQ(controller.menu().title(MenuItem::SwitchJobs), u"Enable all scheduled jobs"_s);
    EXPECT_FALSE(controller.menu().isEnabled(MenuItem::ManageJobs));
    EXPECT_EQ(item.toolTip(), u"Corvane 9.2.1\nYou have disabled all your scheduled job(s)"_s);
    controller.disableScheduleSubMenu();
    EXPECT_EQ(switchText(), u"1"_s);
    EXPECT_EQ(item.toolTip(), next);
}

TEST_F(LifecycleTest, TheMainApplicationIsStartedAndThenAskedForItsView)
{
    start();
    controller.initiateLaunchCorvaneApp(u"Settings"_s);
    EXPECT_EQ(done, QStringList({u"open"_s, u"launch "_s + pathValue("ApplicationExecName"_L1)}));
    controller.onlinehelp();
    EXPECT_TRUE(done.last().startsWith(u"url https://"_s));
    EXPECT_TRUE(done.last().endsWith(u"/help/mac-help/default.htm"_s));
    controller.displayWindowWithAlertMsg(u"Sign in first"_s);
    EXPECT_EQ(done.last(), u"alert Sign in first"_s);
    controller.quitApplication();
    EXPECT_EQ(done.last(), u"quit"_s);
}
