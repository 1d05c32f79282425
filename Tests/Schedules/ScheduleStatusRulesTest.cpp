#include "Classes/Schedules/ScheduleStatusRules.h"

#include "Classes/Schedules/CorvaneScheduleItem.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using Kind = BackupTip::Kind;

TEST(ScheduleStatusRulesTest, FilesAreComparedWhole)
{
    const std::tuple<std::optional<QString>, ScheduleSwitch, bool, std::optional<ScheduleMenu>> rows[] = {
        {std::nullopt, ScheduleSwitch::Enabled, false, std::nullopt},
        {QString(), ScheduleSwitch::Enabled, false, ScheduleMenu{false, true}},
        {u"0"_s, ScheduleSwitch::Disabled, false, ScheduleMenu{true, false}},
        {u"0\n"_s, ScheduleSwitch::Enabled, false, ScheduleMenu{false, true}},
        {u"1"_s, ScheduleSwitch::Enabled, true, ScheduleMenu{false, true}},
        {u"1\n"_s, ScheduleSwitch::Enabled, false, ScheduleMenu{false, true}},
        {u"2"_s, ScheduleSwitch::JobPaused, false, ScheduleMenu{false, true}},
        {u"true"_s, ScheduleSwitch::Enabled, true, ScheduleMenu{false, true}},
        {u"True"_s, ScheduleSwitch::Enabled, false, ScheduleMenu{false, true}},
    };
    for (const auto &[content, jobs, paused, menu] : rows) {
        SCOPED_TRACE(qPrintable(content.value_or(u"no file"_s)));
        EXPECT_EQ(scheduleSwitch(content), jobs);
        EXPECT_EQ(isPauseMarker(content), paused);
        EXPECT_EQ(scheduleMenu(content), menu);
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
    const BackupTip next{Kind::Next, u"11-22-2026 09:05"_s};

    EXPECT_EQ(tipForNextJob(nullptr, locale).kind, Kind::NoJobs);
    EXPECT_EQ(tipForNextJob(&undated, locale).kind, Kind::NoJobs);
    EXPECT_EQ(tipForNextJob(&running, locale).kind, Kind::InProgress);
    EXPECT_EQ(tipForNextJob(&dated, locale), next);

    const auto disabled = ScheduleSwitch::Disabled;
    const std::tuple<const char *, BackupTipInputs, BackupTip> rows[] = {
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
    for (const auto &[name, in, tip] : rows)
        EXPECT_EQ(tipForSchedules(in, locale), tip) << name;
}
