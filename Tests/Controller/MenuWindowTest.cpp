#include "Source/Controller/MenuRules.h"
#include "Source/Controller/StatusMenu.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
class MenuWindowTest : public testing::Test
{
protected:
    MenuWindowTest() { m_menu.apply(MenuRules::titles(u"Corvane"_s, std::nullopt)); }

    const TemporaryHome m_home;
    std::vector<MenuAction> m_clicks;
    StatusMenu m_menu{[this](MenuAction action) { m_clicks.push_back(action); }};
};

/// Empty where each separator that is seen parts two items that are seen; else what is wrong.
std::string separatorFault(const QMenu &menu)
{
    bool lastWasSeparator = true;
    for (const QAction *action : menu.actions()) {
        if (!action->isVisible())
            continue;
        if (action->isSeparator() && lastWasSeparator)
            return "a separator is first or doubled";
        lastWasSeparator = action->isSeparator();
    }
    return lastWasSeparator && !menu.isEmpty() ? "a separator is last" : std::string();
}
} // namespace

TEST_F(MenuWindowTest, ItemsAreFoundByTheirNumbers)
{
    const QString seen =
        u"212 Access Corvane web\n2013 Scheduler\n100 Upgrade storage\n310 Disable Web Access\n"
        u"320 Continuous Data Protection\n400 Check for latest version\n9165 Cloud Drive\n91653 Pause\n"
        u"91654 Sync Status\n9112013 Manage all scheduled jobs\n9122013 Pause the scheduled job\n"
        u"9132013 Stop the scheduled job\n9142013 Disable all scheduled jobs"_s;
    for (const QString &row : seen.split(u'\n')) {
        const QAction *item = m_menu.itemWithTag(row.section(u' ', 0, 0).toInt());
        EXPECT_EQ(item ? item->text() : QString(), row.section(u' ', 1)) << row.toStdString();
    }
    EXPECT_EQ(m_menu.itemWithTag(335), m_menu.action(MenuItem::ProgressCompanion));
    EXPECT_TRUE(m_menu.itemWithTag(102)->isSeparator());
    EXPECT_TRUE(m_menu.itemWithTag(111)->isSeparator());
    EXPECT_EQ(m_menu.itemWithTag(0), nullptr);
    EXPECT_EQ(m_menu.itemWithTag(7), nullptr);
    EXPECT_EQ(m_menu.itemWithTitle(u"Cloud Drive"_s), m_menu.itemWithTag(9165));
    EXPECT_EQ(m_menu.itemWithTitle(u"Pause"_s), nullptr); // in a submenu
    EXPECT_EQ(m_menu.itemWithTitle(QString()), nullptr);
}

TEST_F(MenuWindowTest, ItemThatIsTakenOutComesBackOnlyWhenItIsPutBack)
{
    m_menu.apply(MenuItem::Protection, {.present = false});
    EXPECT_EQ(m_menu.itemWithTag(320), nullptr);
    m_menu.apply(MenuItem::Protection, {.hidden = false, .ticked = true});
    EXPECT_TRUE(m_menu.isHidden(MenuItem::Protection));
    EXPECT_FALSE(m_menu.action(MenuItem::Protection)->isVisible());
    EXPECT_FALSE(m_menu.isTicked(MenuItem::Protection));
    m_menu.apply(MenuItem::Protection, {.present = true, .hidden = false, .ticked = true});
    EXPECT_EQ(m_menu.itemWithTag(320), m_menu.action(MenuItem::Protection));
    EXPECT_TRUE(m_menu.action(MenuItem::Protection)->isVisible());
    EXPECT_TRUE(m_menu.action(MenuItem::Protection)->isChecked());
}

TEST_F(MenuWindowTest, EachCommandAsksForItsOwnAction)
{
    const std::pair<MenuItem, MenuAction> rows[] = {
        {MenuItem::Status, MenuAction::ShowStatus},
        {MenuItem::ShowProgress, MenuAction::ShowProgress},
        {MenuItem::ProgressCompanion, MenuAction::ShowProgress},
        {MenuItem::ManageJobs, MenuAction::ManageJobs},
        {MenuItem::PauseJob, MenuAction::PauseOrResumeJob},
        {MenuItem::StopJob, MenuAction::StopJob},
        {MenuItem::SwitchJobs, MenuAction::SwitchJobs},
        {MenuItem::Logs, MenuAction::ViewLogs},
        {MenuItem::RemoteManagement, MenuAction::SwitchRemoteManagement},
        {MenuItem::Protection, MenuAction::SwitchProtection},
        {MenuItem::CloudDriveFolder, MenuAction::OpenCloudDriveFolder},
        {MenuItem::PauseSync, MenuAction::PauseOrResumeSync},
        {MenuItem::Start, MenuAction::StartApplication},
        {MenuItem::WebAccess, MenuAction::AccessWeb},
        {MenuItem::Upgrade, MenuAction::UpgradeStorage},
        {MenuItem::Settings, MenuAction::OpenSettings},
        {MenuItem::Proxy, MenuAction::OpenProxySettings},
        {MenuItem::Update, MenuAction::CheckForUpdate},
        {MenuItem::ErrorReport, MenuAction::ReportError},
        {MenuItem::Help, MenuAction::OpenHelp},
        {MenuItem::Quit, MenuAction::Quit},
    };
    for (const auto &[item, action] : rows) {
        SCOPED_TRACE(m_menu.title(item).toStdString());
        m_clicks.clear();
        m_menu.action(item)->trigger();
        EXPECT_EQ(m_clicks, std::vector{action});
    }
}

TEST_F(MenuWindowTest, ClickLeavesTheTickToTheFiles)
{
    m_menu.action(MenuItem::Protection)->trigger();
    EXPECT_FALSE(m_menu.action(MenuItem::Protection)->isChecked());

    m_menu.apply(MenuItem::Protection, {.ticked = true});
    m_menu.action(MenuItem::Protection)->trigger();
    EXPECT_TRUE(m_menu.action(MenuItem::Protection)->isChecked());
    EXPECT_EQ(m_clicks.size(), 2U);
}

TEST_F(MenuWindowTest, RefreshRunsBeforeTheMenuIsSeen)
{
    bool wasVisible = true;
    m_menu.setWillOpen([&] {
        wasVisible = m_menu.menu().isVisible();
        m_menu.apply(MenuItem::Status, {.title = u"Fresh"_s});
    });
    m_menu.menu().popup(QPoint(10, 10));
    EXPECT_FALSE(wasVisible);
    EXPECT_EQ(m_menu.action(MenuItem::Status)->text(), u"Fresh"_s);
    QTest::mouseClick(&m_menu.menu(), Qt::LeftButton, {},
                      m_menu.menu().actionGeometry(m_menu.action(MenuItem::Status)).center());
    EXPECT_EQ(m_clicks, std::vector{MenuAction::ShowStatus});
}

TEST_F(MenuWindowTest, TitleIsShownToTheLetter)
{
    const std::tuple<const char *, QString, QString, QString> rows[] = {
        {"plain", u"Status"_s, u"Status"_s, u"Status"_s},
        {"underscores", u"a_b__c"_s, u"a_b__c"_s, u"a__b____c"_s},
        {"ampersands", u"R & D & co"_s, u"R && D && co"_s, u"R && D & co"_s},
        {"ampersand last", u"R&"_s, u"R&&"_s, u"R&&"_s},
        {"both", u"a & b_c"_s, u"a && b_c"_s, u"a \uff06 b__c"_s},
    };
    for (const auto &[name, title, inWindow, onBus] : rows) {
        SCOPED_TRACE(name);
        m_menu.apply(MenuItem::SyncStatus, {.title = title});
        EXPECT_EQ(m_menu.title(MenuItem::SyncStatus), title);
        EXPECT_EQ(m_menu.action(MenuItem::SyncStatus)->text(), inWindow);
        EXPECT_EQ(StatusMenu::textOnBus(title), onBus);
    }
}

TEST_F(MenuWindowTest, SecondRefreshOfTheSameStateTouchesNoItem)
{
    MenuRules::MenuInputs in;
    in.recordPresent = in.engineUser = true;
    in.dedup = in.protectionWord = u"1"_s;
    m_menu.apply(MenuRules::atOpening(in).items);
    int changes = 0;
    for (const QAction *action : m_menu.menu().findChildren<QAction *>())
        QObject::connect(action, &QAction::changed, &m_menu.menu(), [&changes] { ++changes; });
    m_menu.apply(MenuRules::atOpening(in).items);
    EXPECT_EQ(changes, 0);
    in.partnerPlan = true; // takes out the upgrade and its separator
    m_menu.apply(MenuRules::atOpening(in).items);
    EXPECT_EQ(changes, 2);
}

TEST_F(MenuWindowTest, SeparatorsStandBetweenItemsWhateverIsHidden)
{
    std::mt19937 random(20261122);
    for (int round = 0; round < 400; ++round) {
        SCOPED_TRACE(round);
        const unsigned hiddenOfTen = random() % 11;
        MenuState state;
        for (std::size_t item = 0; item < MenuItemCount; ++item)
            state[static_cast<MenuItem>(item)].hidden = random() % 10 < hiddenOfTen;
        m_menu.apply(state);
        const QMenu *menus[] = {&m_menu.menu(), m_menu.submenu(MenuItem::Scheduler),
                                m_menu.submenu(MenuItem::CloudDrive)};
        for (const QMenu *menu : menus) {
            const bool anySeen = std::ranges::any_of(menu->actions(), &QAction::isVisible);
            EXPECT_EQ(anySeen ? separatorFault(*menu) : std::string(), std::string());
        }
    }
}
