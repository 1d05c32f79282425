#include "Classes/Schedules/ScheduleStatusRules.h"

#include "Classes/Schedules/CorvaneScheduleItem.h"

#include <gtest/gtest.h>

using Kind = BackupTip::Kind;

TEST(ScheduleStatusRulesTest, FilesAreComparedWhole)
{
    const struct {
        std::optional<QString> content;
        ScheduleSwitch jobs;
        bool paused;
        std::optional<ScheduleMenu> menu;
    } rows[] = {
        {std::nullopt, ScheduleSwitch::Enabled, false, std::nullopt},
        {QString(), ScheduleSwitch::Enabled, false, ScheduleMenu{false, true}},
        {QStringLiteral("0"), ScheduleSwitch::Disabled, false, ScheduleMenu{true, false}},
        {QStringLiteral("0\n"), ScheduleSwitch::Enabled, false, ScheduleMenu{false, true}},
        {QStringLiteral("1"), ScheduleSwitch::Enabled, true, ScheduleMenu{false, true}},
        {QStringLiteral("1\n"), ScheduleSwitch::Enabled, false, ScheduleMenu{false, true}},
        {QStringLiteral("2"), ScheduleSwitch::JobPaused, false, ScheduleMenu{false, true}},
        {QStringLiteral("true"), ScheduleSwitch::Enabled, true, ScheduleMenu{false, true}},
        {QStringLiteral("True"), ScheduleSwitch::Enabled, false, ScheduleMenu{false, true}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(qPrintable(row.content.value_or(QStringLiteral("no file"))));
        EXPECT_EQ(scheduleSwitch(row.content), row.jobs);
        EXPECT_EQ(isPauseMarker(row.content), row.paused);
        EXPECT_EQ(scheduleMenu(row.content), row.menu);
    }
    EXPECT_EQ(scheduleSwitchContent(ScheduleSwitch::Disabled), u"0");
    EXPECT_EQ(scheduleSwitchContent(ScheduleSwitch::Enabled), u"1");
    EXPECT_EQ(scheduleSwitchContent(ScheduleSwitch::JobPaused), u"2");
}

TEST(ScheduleStatusRulesTest, BackupLine)
{
    const QLocale locale(QLocale::English, QLocale::UnitedStates);
    const QDateTime moment(QDate(2026, 11, 22), QTime(9, 5));
    CorvaneScheduleItem dated;
    dated.scheduleTime = moment;
    dated.status = QNXStatus::yetToStart;
    auto running = dated;
    running.status = QNXStatus::inProgress;
    auto undated = dated;
    undated.scheduleTime.reset();
    const BackupTip next{Kind::Next, QStringLiteral("11-22-2026 09:05")};

    EXPECT_EQ(tipForNextJob(nullptr, locale).kind, Kind::NoJobs);
    EXPECT_EQ(tipForNextJob(&undated, locale).kind, Kind::NoJobs);
    EXPECT_EQ(tipForNextJob(&running, locale).kind, Kind::InProgress);
    EXPECT_EQ(tipForNextJob(&dated, locale), next);

    const auto disabled = ScheduleSwitch::Disabled;
    const struct {
        const char *name;
        BackupTipInputs in;
        BackupTip tip;
    } rows[] = {
        {"nothing planned", {}, {Kind::NoJobs, {}}},
        {"next job", {.next = &dated}, next},
        {"next job while one is marked paused", {.jobs = ScheduleSwitch::JobPaused, .next = &dated}, next},
        {"immediate before dated", {.hasImmediateJob = true, .next = &dated}, {Kind::Immediate, {}}},
        {"only immediate", {.hasImmediateJob = true}, {Kind::Immediate, {}}},
        {"disabled before all plans",
         {.jobs = disabled, .hasImmediateJob = true, .next = &dated},
         {Kind::Disabled, {}}},
        {"running job keeps the line", {.jobRuns = true, .jobs = disabled, .next = &dated}, {Kind::Leave, {}}},
        {"paused job before the switch",
         {.jobRuns = true, .runningJobIsPaused = true, .jobs = disabled},
         {Kind::Paused, {}}},
        {"pause marker without a job", {.runningJobIsPaused = true, .next = &dated}, next},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(tipForSchedules(row.in, locale), row.tip);
    }
}
