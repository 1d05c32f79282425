#include "Tests/Controller/MonitorFixture.h"

namespace
{
/// An account whose stored figures say that nothing is free.
class QuotaTest : public MonitorFixture
{
protected:
    QuotaTest()
    {
        storeFigures({{u"TOTALQUOTASIZE"_s, 5120LL}, {u"USEDQUOTASIZE"_s, 5120.0}});
        home.write(path("AccountTypeFilePath"), "false");
    }

    void storeFigures(const QVariantMap &figures) { home.writeList(path("UserDetailsPath"), figures); }

    const QString full = u"Corvane 9.2.1\nQuota Exceeded - You have utilized the allocated storage space."_s;
};
} // namespace

TEST_F(QuotaTest, TheIconBlinksUntilTheMenuIsOpenedAndThenStands)
{
    start();
    clock.advance(10s);
    EXPECT_EQ(item.toolTip(), full);
    clock.advance(500ms);
    EXPECT_EQ(item.imageName(), u"menu_upgrade"_s);
    controller.menuWillOpen();
    item.images.clear();
    clock.advance(5s);
    EXPECT_TRUE(item.images.isEmpty()) << "the blink has ended";
    controller.board().setStatusMenuIconForState(MenuIcons::normal);
    clock.advance(10s);
    EXPECT_EQ(item.imageName(), u"menu_upgrade"_s);

    home.write(path("AccountPlanFilePath"), "PAID"); // the user has upgraded
    clock.advance(10s);
    EXPECT_EQ(item.imageName(), u"menu_app"_s);

    storeFigures({{u"TOTALQUOTASIZE"_s, 10240LL}, {u"USEDQUOTASIZE"_s, 5120LL}});
    clock.advance(10s);
    EXPECT_EQ(shown(), u"menu_app: "_s + next);
}

TEST_F(QuotaTest, AnAccountThatIsNeverWarnedShowsTheStateOfItsJobs)
{
    const struct {
        const char *name, *plan, *type;
        QString planOfRecord, tip;
    } rows[] = {
        {"business", "Business", "false", {}, full},  {"paid", "PAID", "false", {}, full},
        {"personal", "Personal", "false", {}, full},  {"sub-account", "", "true", {}, next},
        {"partner", "", "false", u"partner"_s, full}, {"unknown type", "", "", {}, next},
    };
    forEachRow(rows, [&](const auto &row) {
        home.write(path("AccountPlanFilePath"), row.plan);
        home.write(path("AccountTypeFilePath"), row.type);
        home.writeList(path("LastUserLoginDetailsFilePath"),
                       QVariantMap{{u"Username"_s, User}, {u"Plan"_s, row.planOfRecord}});
        controller.enablePreferences();
        item.images.clear();
        controller.board().setStatusMenuIconForState(MenuIcons::paused); // what the pass has to put right
        controller.checkForTotalQuota();
        EXPECT_EQ(item.imageName(), u"menu_app"_s);
        EXPECT_EQ(item.toolTip(), row.tip);
        clock.advance(1s);
        EXPECT_FALSE(item.images.contains(u"menu_upgrade"_s));
    });
}

TEST_F(QuotaTest, WithoutFiguresThePassGoesOn)
{
    // What cannot be read of them is the rules' matter.
    storeFigures({{u"TOTALQUOTASIZE"_s, QByteArray("x")}, {u"USEDQUOTASIZE"_s, 1LL}});
    start();
    controller.board().setStatusMenuIconForState(MenuIcons::paused);
    controller.board().setStatusMenuToolTip(u"An older line"_s, std::nullopt);
    clock.advance(10s);
    EXPECT_EQ(shown(), u"menu_app: "_s + next);
}
