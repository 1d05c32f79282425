#include "Classes/Schedules/ScheduleStatusRules.h"

#include "Classes/Schedules/CorvaneScheduleItem.h"
#include "Tests/Support/ForEachRow.h"

using namespace Qt::StringLiterals;
using Kind = BackupTip::Kind;

TEST(ScheduleStatusRulesTest, FilesAreComparedWhole)
{
    const ScheduleMenu canEnable{true, false}, canDisable{false, true};
    const struct {
        const char *name;
        std::optional<QString> content;
        ScheduleSwitch jobs;
        bool paused;
        std::optional<ScheduleMenu> menu;
    } rows[] = {
        {"no file", std::nullopt, ScheduleSwitch::Enabled, false, std::nullopt},
        {"empty", QString(), ScheduleSwitch::Enabled, false, canDisable},
        {"0", u"0"_s, ScheduleSwitch::Disabled, false, canEnable},
        {"0 and a line feed", u"0\n"_s, ScheduleSwitch::Enabled, false, canDisable},
        {"1", u"1"_s, ScheduleSwitch::Enabled, true, canDisable},
        {"1 and a line feed", u"1\n"_s, ScheduleSwitch::Enabled, false, canDisable},
        {"2", u"2"_s, ScheduleSwitch::JobPaused, false, canDisable},
        {"true", u"true"_s, ScheduleSwitch::Enabled, true, canDisable},
        {"True", u"True"_s, ScheduleSwitch::Enabled, false, canDisable},
    };
    forEachRow(rows, [](const auto &row) {
        EXPECT_EQ(scheduleSwitch(row.content), row.jobs);
        EXPECT_EQ(isPauseMarker(row.content), row.paused);
        EXPECT_EQ(scheduleMenu(row.content), row.menu);
    });
    for (const auto jobs : {ScheduleSwitch::Disabled, ScheduleSwitch::Enabled, ScheduleSwitch::JobPaused})
        EXPECT_EQ(scheduleSwitch(scheduleSwitchContent(jobs)), jobs);
}

TEST(ScheduleStatusRulesTest, BackupLine)
{
    const QLocale locale(QLocale::English, QLocale::UnitedStates);
    CorvaneScheduleItem dated, undated;
    dated.scheduleTime = QDateTime(QDate(2026, 11, 22), QTime(9, 5));
    const BackupTip next{Kind::Next, u"11-22-2026 09:05"_s};
    const auto disabled = ScheduleSwitch::Disabled;
    const Row<BackupTipInputs, BackupTip> rows[] = {
        {"nothing planned", {}, {Kind::NoJobs, {}}},
        {"next job without a date", {.next = &undated}, {Kind::NoJobs, {}}},
        {"next job", {.next = &dated}, next},
        {"next job while one is marked paused", {.jobs = ScheduleSwitch::JobPaused, .next = &dated}, next},
        {"immediate before dated", {.hasImmediateJob = true, .next = &dated}, {Kind::Immediate, {}}},
        {"only immediate", {.hasImmediateJob = true}, {Kind::Immediate, {}}},
        {"disabled before all plans",
         {.jobs = disabled, .hasImmediateJob = true, .next = &dated},
         {Kind::Disabled, {}}},
        {"running job", {.jobRuns = true, .jobs = disabled, .next = &dated}, {Kind::InProgress, {}}},
        {"paused job before the switch",
         {.jobRuns = true, .runningJobIsPaused = true, .jobs = disabled},
         {Kind::Paused, {}}},
        {"pause marker without a job", {.runningJobIsPaused = true, .next = &dated}, next},
    };
    forEachRow(rows, [&](const auto &row) { EXPECT_EQ(tipForSchedules(row.given, locale), row.expected); });
    EXPECT_EQ(tipForNextJob(&undated, locale).kind, Kind::NoJobs);
    EXPECT_EQ(tipForNextJob(&dated, locale), next);
    dated.status = QNXStatus::inProgress;
    EXPECT_EQ(tipForNextJob(&dated, locale).kind, Kind::InProgress);
}
