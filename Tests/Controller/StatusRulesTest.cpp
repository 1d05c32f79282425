#include "Source/Controller/StatusRules.h"
#include "Extensions/TextCoding.h"
#include "Source/Controller/ReportRules.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace StatusRules;

namespace
{
const QString Paused = u"Paused"_s;
const QString UpToDate = u"All files are up to date"_s;
const QString NoNetwork = u"No network connectivity"_s;
const QString Working = u"Uploading 3 of 8 files"_s;
const QString Cancelled = u"The account has been cancelled"_s;
const QString Exceeded = u"You have exceeded the allocated quota limit."_s;

QVariantMap quota(const QVariant &total, const QVariant &used)
{
    return {{u"TOTALQUOTASIZE"_s, total}, {u"USEDQUOTASIZE"_s, used}};
}

QVariant coded(const char *figure)
{
    return encryptedString(QString::fromLatin1(figure));
}
} // namespace

TEST(StatusRules, FlagsAreTextOrBoolean)
{
    const std::pair<QVariant, std::optional<bool>> rows[] = {{u"1"_s, true},  {u"0"_s, false}, {true, true},
                                                             {false, false},  {1LL, {}},       {u"yes"_s, {}},
                                                             {QVariant(), {}}};
    for (const auto &[value, flag] : rows)
        EXPECT_EQ(flagValue(value), flag) << value.toString().toStdString();
}

TEST(StatusRules, QuotaIsAtItsLimitWithTenBytesLeft)
{
    const std::tuple<const char *, QVariantMap, bool> rows[] = {
        {"plenty", quota(coded("1024"), coded("10")), false},
        {"used up", quota(coded("1024"), coded("1024")), true},
        {"10 bytes and a half round to 11", quota(coded("1"), coded("0.99998998")), false},
        {"10 bytes", quota(coded("1"), coded("0.9999905")), true},
        {"a total that is no number", quota(coded("much"), coded("0")), true},
        {"nothing known", {}, false},
        {"no total", quota(QVariant(), coded("10")), false},
        {"no use", quota(coded("1024"), QVariant()), false},
        {"an account of nothing", quota(0.0, 0.0), true},
        {"stored as numbers", quota(1024.0, 1.0), false},
        {"used up, as numbers", quota(1024.0, 1024.0), true},
    };
    for (const auto &[name, details, atLimit] : rows)
        EXPECT_EQ(isQuotaAtLimit(details), atLimit) << name;
}

TEST(StatusRules, OnlyTheOwnerOfAnOwnPlanIsToldToUpgrade)
{
    const QString owner = u"false"_s;
    EXPECT_TRUE(mayPromptUpgrade(true, false, owner, false));
    EXPECT_FALSE(mayPromptUpgrade(false, false, owner, false));
    EXPECT_FALSE(mayPromptUpgrade(true, true, owner, false)) << "a plan that never warns";
    EXPECT_FALSE(mayPromptUpgrade(true, false, u"true"_s, false));
    EXPECT_FALSE(mayPromptUpgrade(true, false, std::nullopt, false));
    EXPECT_FALSE(mayPromptUpgrade(true, false, owner, true));
}

TEST(StatusRules, WhichSyncLinesStandStill)
{
    const std::pair<QString, bool> rows[] = {
        {UpToDate, true},   {Paused, true},    {Cancelled, true}, {QString(), true},
        {Exceeded, true},   {NoNetwork, true}, {Working, false},  {u"You have exceeded the limit"_s, true},
        {u"Paus"_s, false},
    };
    for (const auto &[line, rests] : rows)
        EXPECT_EQ(isRestingSyncLine(line), rests) << line.toStdString();
}

TEST(StatusRules, TakingASyncLine)
{
    const std::tuple<const char *, SyncLineInputs, SyncLineOutcome> rows[] = {
        {"a working line", {Working, false, false, {UpToDate, {}}}, {{Working, {}}, true, true}},
        {"a pause keeps the line before it",
         {Paused, false, false, {Working, {}}},
         {{Paused, Working}, true, true}},
        {"while paused a line waits", {Working, true, false, {Paused, {}}}, {{Paused, Working}, false, true}},
        {"while re-initialising too", {Working, false, true, {Paused, {}}}, {{Paused, Working}, false, true}},
        {"the line before comes back",
         {Paused, false, true, {Paused, Working}},
         {{Working, Working}, false, true}},
        {"but not while paused", {Paused, true, false, {Paused, Working}}, {{Paused, Working}, false, true}},
        {"no list", {Working, {}, false, {UpToDate, {}}}, {{UpToDate, {}}, false, false}},
        {"half a list", {Working, false, {}, {UpToDate, {}}}, {{UpToDate, {}}, false, false}},
        {"no line after a pause", {{}, false, {}, {Paused, {}}}, {{{}, {}}, false, false}},
        {"no line, still paused", {{}, true, {}, {Paused, {}}}, {{Paused, {}}, false, false}},
        {"no line, one to return to", {{}, false, {}, {Paused, Working}}, {{Paused, Working}, false, false}},
        {"an empty line is none", {QString(), false, false, {Working, {}}}, {{Working, {}}, false, false}},
    };
    for (const auto &[name, in, expected] : rows)
        EXPECT_EQ(takeSyncLine(in), expected) << name;
}

TEST(StatusRules, TheNormalIcon)
{
    using In = NormalIconInputs;
    const auto icon = [](const std::optional<QString> &line, std::initializer_list<bool In::*> flags) {
        In in{.syncLine = line};
        for (const auto flag : flags)
            in.*flag = true;
        return normalIcon(in);
    };
    constexpr auto animators = &In::hasAnimators, sync = &In::syncEnabled, paused = &In::jobPaused,
                   moving = &In::syncAnimationRuns;
    const NormalIcon pauseTip{.picture = Picture::Pause, .showPausedTip = true};
    const NormalIcon stopped{.picture = Picture::App, .stopAnimation = true};
    EXPECT_EQ(icon({}, {animators, sync}), NormalIcon{.picture = Picture::App});
    EXPECT_EQ(icon({}, {animators, sync, paused}), pauseTip) << "no sync line yet";
    for (const auto job : {animators, paused})
        EXPECT_EQ(icon(Working, {animators, sync, moving, job}), NormalIcon{})
            << "a running animation is not painted over";
    EXPECT_EQ(icon(UpToDate, {animators, sync, moving}), stopped);
    EXPECT_EQ(icon(NoNetwork, {animators, sync, moving, paused}),
              (NormalIcon{.picture = Picture::Pause, .showPausedTip = true, .stopAnimation = true}));
    EXPECT_EQ(icon({}, {animators, moving}),
              (NormalIcon{.picture = Picture::App, .stopAnimation = true, .clearAnimatingFlag = true}));
    EXPECT_EQ(icon(UpToDate, {sync, paused}), pauseTip) << "without animators the sync line plays no part";
}

TEST(StatusRules, WhenTheIconMoves)
{
    EXPECT_EQ(syncActivity(std::nullopt, true, false), SyncActivity::Nothing);
    EXPECT_EQ(syncActivity(Working, true, false), SyncActivity::Animate);
    EXPECT_EQ(syncActivity(Working, true, true), SyncActivity::Nothing);
    EXPECT_EQ(syncActivity(Working, false, false), SyncActivity::Settle);
    EXPECT_EQ(syncActivity(UpToDate, true, false), SyncActivity::Settle);
}

TEST(StatusRules, WhichLinesTheToolTipHas)
{
    const QString name = u"Corvane"_s;
    const QString job = u"Scheduled Backup is in progress."_s;
    const std::tuple<const char *, ToolTipInputs, ToolTipKind> rows[] = {
        {"nothing", {.syncEnabled = true, .appFullName = name}, ToolTipKind::None},
        {"sync alone", {.syncMessage = Working, .syncEnabled = true}, ToolTipKind::SyncMessage},
        {"sync alone, not enabled", {.syncMessage = Working}, ToolTipKind::None},
        {"backup alone", {.backupTip = job, .syncEnabled = true}, ToolTipKind::BackupTip},
        {"empty sync line",
         {.backupTip = job, .syncTip = QString(), .syncEnabled = true},
         ToolTipKind::BackupTip},
        {"sync not enabled", {.backupTip = job, .syncTip = Working}, ToolTipKind::BackupTip},
        {"moving the folder", {.backupTip = job, .syncTip = Working, .movingFolder = true}, ToolTipKind::Both},
        {"both", {.backupTip = job, .syncTip = Working, .syncEnabled = true}, ToolTipKind::Both},
        {"both, full",
         {.backupTip = job, .syncTip = Working, .syncEnabled = true, .quotaFull = true},
         ToolTipKind::QuotaFull},
        {"the name says nothing",
         {.backupTip = name, .syncTip = Working, .syncEnabled = true, .appFullName = name},
         ToolTipKind::SchedulerStatus},
        {"the name, full",
         {.backupTip = name, .syncTip = Working, .syncEnabled = true, .quotaFull = true, .appFullName = name},
         ToolTipKind::QuotaFull},
    };
    for (const auto &[label, in, expected] : rows)
        EXPECT_EQ(toolTipKind(in), expected) << label;
}

TEST(StatusRules, TextsOfTheToolTip)
{
    const QString name = u"Corvane"_s;
    EXPECT_EQ(buttonToolTip(name, std::nullopt, QString()), name);
    EXPECT_EQ(buttonToolTip(name, u"9.2"_s, name), u"Corvane 9.2"_s);
    EXPECT_EQ(quotaFullLines(std::nullopt, Working, name),
              u"Backup: \nCloud Drive: Uploading 3 of 8 files\nYou have exceeded the allocated quota limit. "
              u"For further syncing you have to upgrade your account. Click the 'Upgrade Storage' menu item "
              u"to upgrade your Corvane account"_s);
}

TEST(ReportRules, RouteAndTip)
{
    using namespace ReportRules;
    using ProgressRules::progressType;
    EXPECT_EQ(route(std::nullopt, 0), Route::Drop);
    EXPECT_EQ(route(u"mona"_s, 0), Route::Interactive);
    EXPECT_EQ(route(u"mona"_s, 1), Route::Scheduled);
    EXPECT_EQ(route(u"mona"_s, std::nullopt), Route::Scheduled);
    EXPECT_EQ(progressType(7), std::nullopt);
    EXPECT_EQ(progressType(-1), std::nullopt);
    EXPECT_EQ(progressType(6), ProgressType::Complete);

    // What the types with a meaning do is seen in the tool tip.
    EXPECT_EQ(scheduledTip(ProgressType::Figures, false, false), Tip::Keep);
    EXPECT_EQ(scheduledTip(std::nullopt, true, false), Tip::ScheduledProgress);
    EXPECT_EQ(scheduledTip(std::nullopt, false, false), Tip::Keep);
    EXPECT_EQ(interactiveTip(std::nullopt), Tip::Keep);
}
