#include "Tests/Controller/MonitorFixture.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/LoginItemRegistry.h"
#include "Utility/QNUtility.h"

using namespace Qt::StringLiterals;

namespace
{
class LifecycleTest : public MonitorFixture
{
protected:
    /// The language is the process's, and so the next test's.
    void TearDown() override { LanguageManager::shared().updateLanguage(u"en"_s); }

    [[nodiscard]] static QString root(const char *name)
    {
        return pathValue("ApplicationRootFolderPath"_L1, {}) + u'/' + QLatin1StringView(name);
    }
    [[nodiscard]] bool traced(const char *text) const { return trace().contains(QLatin1StringView(text)); }
    void changeLanguage(const QString &word) { controller.loclaizationSetup({{u"language"_s, word}}); }

    const QStringList restart{u"relaunch"_s, u"quit"_s};
};
} // namespace

TEST_F(LifecycleTest, MarkersAreActedOnOnceAndRemoved)
{
    const QStringList markers{root("autoLaunchCheckfile.txt"), root("launchApp"), root("silentInstall.txt"),
                              path("UpdateOnDaemonRestart")};
    for (const QString &marker : markers)
        home.write(marker, "");
    home.write(path("InstallForTrayInfoPath"), "");
    home.write(path("MonitorLaunchPath"), "sendErrorReport");
    start();
    for (const QString &marker : markers + QStringList(path("MonitorLaunchPath")))
        EXPECT_FALSE(QFileInfo::exists(marker)) << marker.toStdString();
    EXPECT_TRUE(traced("AUTOUPDATE:Check File is available"));
    EXPECT_TRUE(traced("showErrorReport"));
    EXPECT_TRUE(done.isEmpty());
    clock.advance(5s);
    EXPECT_TRUE(done.contains(u"popover Corvane is up-to-date"_s));
    EXPECT_FALSE(QFileInfo::exists(path("InstallForTrayInfoPath")));
    clock.advance(60s);
    EXPECT_EQ(done.size(), 2) << "that, and the help";
}

TEST_F(LifecycleTest, HelpWaitsForAPanel)
{
    home.write(path("InstallForTrayInfoPath"), "");
    panelIsVisible = false;
    start();
    clock.advance(5s);
    EXPECT_TRUE(done.isEmpty());
    EXPECT_TRUE(QFileInfo::exists(path("InstallForTrayInfoPath")));
    panelIsVisible = true;
    controller.panelDidAppear();
    clock.advance(1s);
    EXPECT_EQ(done.value(0).left(15), u"popover Corvane"_s);
    controller.panelDidAppear();
    clock.advance(60s);
    EXPECT_EQ(done.size(), 1);
}

TEST_F(LifecycleTest, TheLoginItemFollowsTheSettings)
{
    const struct {
        const char *name;
        std::function<void()> act;
        std::optional<qlonglong> setting; ///< none: nobody has said anything
        int items;
    } rows[] = {
        {"a start", [&] { start(); }, 1, 1},
        {"changed settings", [&] { controller.reloadPreferencesFromApp(); }, 0, 0},
        {"a message",
         [&] {
             receive({u"UpdateLoginItem"_s, QVariantMap()});
         },
         1, 1},
        {"no settings", [&] { controller.manageLaunchOnStartup(); }, {}, 1},
        {"a sign-in", [&] { controller.enablePreferences(); }, 0, 0},
    };
    forEachRow(rows, [&](const auto &row) {
        QFile::remove(path("AppDefaultSettings"));
        if (row.setting)
            home.writeList(path("AppDefaultSettings"),
                           QVariantMap{{User, QVariantMap{{u"launchOnStartup"_s, *row.setting}}}});
        row.act();
        EXPECT_EQ(LoginItemRegistry::allLoginItems().size(), row.items);
    });
}

TEST_F(LifecycleTest, AnUpdateFolderInUseSurvives)
{
    home.write(root("Corvane/package"), "");
    home.write(root("checkfile.plist"), "");
    Launcher::removeUpdateDMGFolder();
    EXPECT_TRUE(QFileInfo::exists(root("Corvane/package")));
    QFile::remove(root("checkfile.plist"));
    Launcher::removeUpdateDMGFolder();
    EXPECT_FALSE(QFileInfo::exists(root("Corvane")));
    EXPECT_TRUE(QFileInfo::exists(path("LastUserLoginDetailsFilePath")));
}

TEST_F(LifecycleTest, ALanguageThatCannotBeWrittenIsNotLostByARestart)
{
    start();
    const QString preferences = LanguageManager::shared().userDefaults().path();
    home.write(preferences, "bplist00 cut");
    changeLanguage(u"ja"_s);
    clock.advance(1min);
    EXPECT_TRUE(done.isEmpty());
    EXPECT_EQ(LanguageManager::shared().currentLanguage(), u"ja"_s);
    QFile::remove(preferences);
    clock.advance(10s);
    EXPECT_EQ(done, restart);
    EXPECT_EQ(LanguageManager::shared().getPersistedAppLanguage(), u"ja"_s);
}

TEST_F(LifecycleTest, ManyChangesOfLanguageAreOneRestart)
{
    start();
    for (int i = 0; i < 100; ++i) {
        changeLanguage(i == 30 ? u"ja"_s : QString());
        EXPECT_EQ(done.isEmpty(), i < 34) << "any of them starts the program anew, a second later";
        clock.advance(30ms);
    }
    EXPECT_EQ(done, restart);
    EXPECT_TRUE(traced("IPC loclaizationSetup language: ja")) << "what comes meanwhile is stored all the same";
}

TEST_F(LifecycleTest, OnlyALanguageThatIsSpokenIsStored)
{
    start();
    LanguageManager::shared().updateLanguage(u"es"_s);
    const QByteArray before = home.read(LanguageManager::shared().userDefaults().path());
    for (const QString &word : {u"de"_s, u"ja-JP"_s, QString(), QString(40'000'000, u'\u00e9')}) {
        changeLanguage(word);
        EXPECT_EQ(LanguageManager::shared().currentLanguage(), u"es"_s);
    }
    EXPECT_EQ(home.read(LanguageManager::shared().userDefaults().path()), before);
    EXPECT_FALSE(traced("IPC loclaizationSetup language"));
}

TEST_F(LifecycleTest, AnAccountThatIsNoFolderNameWritesNothingAnywhere)
{
    start();
    const Row<QString, const char *> rows[] = {
        {"outside", u"../../../evil"_s, "evil"},
        {"a folder of the product", u"Logs"_s, ".local/share/Corvane/Logs"},
        {"its own folder", u"Corvane"_s, ".local/share/Corvane/Corvane"},
        {"none", QString(), ".local/share/Corvane"},
        {"a name", u"otto"_s, ".local/share/Corvane/otto"},
    };
    forEachRow(rows, [&](const auto &row) {
        setRecord(row.given);
        setSync(User, true);
        if (row.given == u"otto")
            setSync(row.given, true);
        controller.board().setStatusMenuToolTip(std::nullopt, u"Uploading"_s);
        const QString place = QLatin1StringView(row.expected) + u"/syncStatusMessage.txt"_s;
        EXPECT_EQ(QFileInfo::exists(home.path(place)), row.given == u"otto");
        EXPECT_FALSE(traced("could not be written")) << "it is no failure";
    });
}

TEST_F(LifecycleTest, AStartAnOpeningAndASignInTellTheTypeOfTheAccount)
{
    const Row<std::function<void()>, EUserType> rows[] = {
        {"a start", [&] { start(); }, EUserType::Other},
        {"no pass in between", [&] { clock.advance(20s); }, EUserType::Dedup},
        {"an opening", [&] { controller.menuWillOpen(); }, EUserType::Other},
        {"a sign-in", [&] { controller.enablePreferences(); }, EUserType::Other},
    };
    forEachRow(rows, [&](const auto &row) {
        QNUtility::userType = EUserType::Dedup;
        row.given();
        EXPECT_EQ(QNUtility::userType, row.expected);
    });
}

TEST_F(LifecycleTest, ASignInKeepsTheSyncOfAnAccountWithACapitalLetter)
{
    start();
    setRecord(u"Mona"_s);
    setSync(u"Mona"_s, true);
    controller.enablePreferences();
    EXPECT_FALSE(traced("disableSync"));
    controller.board().setStatusMenuToolTip(std::nullopt, u"Uploading"_s);
    EXPECT_TRUE(item.toolTip().endsWith(u"Cloud Drive: Uploading"_s)) << item.toolTip().toStdString();

    controller.sync().enableDisbleSync({{u"state"_s, 1}});
    controller.sync().enableDisbleSync({});
    EXPECT_FALSE(traced("disableSync")) << "who says nothing switches nothing";
    controller.sync().enableDisbleSync({{u"state"_s, u"DisableSync"_s}});
    EXPECT_TRUE(traced("disableSync"));
}
