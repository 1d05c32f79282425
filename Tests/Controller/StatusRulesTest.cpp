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
    EXPECT_EQ(flagValue(u"1"_s), true);
    EXPECT_EQ(flagValue(u"0"_s), false);
    EXPECT_EQ(flagValue(true), true);
    EXPECT_EQ(flagValue(false), false);
    EXPECT_EQ(flagValue(1LL), std::nullopt);
    EXPECT_EQ(flagValue(u"yes"_s), std::nullopt);
    EXPECT_EQ(flagValue(QVariant()), std::nullopt);
}

TEST(StatusRules, QuotaIsAtItsLimitWithTenBytesLeft)
{
    const std::tuple<const char *, QVariantMap, bool> rows[] = {
        {"plenty", quota(coded("1024"), coded("10")), false},
        {"used up", quota(coded("1024"), coded("1024")), true},
        {"10 bytes and a half round to 11", quota(coded("1"), coded("0.99998998")), false},
        {"10 bytes", quota(coded("1"), coded("0.9999905")), true},
        {"a total that is no number", quota(coded("much"), coded("0")), true},
        {"nothing known", quota(0.0, 0.0), true},
        {"stored as numbers", quota(1024.0, 1.0), false},
    };
    for (const auto &[name, details, atLimit] : rows)
        EXPECT_EQ(isQuotaAtLimit(details), atLimit) << name;
}

TEST(StatusRules, OnlyTheOwnerOfAnOwnPlanIsToldToUpgrade)
{
    const QString owner = u"false"_s;
    EXPECT_TRUE(mayPromptUpgrade(true, false, owner, false));
    EXPECT_FALSE(mayPromptUpgrade(false, false, owner, false));
    EXPECT_FALSE(mayPromptUpgrade(true, true, owner, false));
    EXPECT_FALSE(mayPromptUpgrade(true, false, u"true"_s, false));
    EXPECT_FALSE(mayPromptUpgrade(true, false, std::nullopt, false));
    EXPECT_FALSE(mayPromptUpgrade(true, false, owner, true));
}

TEST(StatusRules, WhichSyncLinesStandStill)
{
    const std::tuple<QString, bool, bool, bool> rows[] = {
        {UpToDate, true, true, true},   {Paused, true, true, true},
        {Cancelled, true, true, true},  {QString(), true, true, true},
        {Exceeded, true, true, true},   {NoNetwork, true, false, true},
        {Working, false, false, false}, {u"You have exceeded the limit"_s, false, true, true},
    };
    for (const auto &[line, final, resting, forQuotaPass] : rows) {
        SCOPED_TRACE(line.toStdString());
        EXPECT_EQ(isFinalSyncLine(line), final);
        EXPECT_EQ(isRestingSyncLine(line, UpToDate), resting);
        EXPECT_EQ(isFinalForQuotaPass(line, UpToDate), forQuotaPass);
    }
    EXPECT_TRUE(isRestingSyncLine(NoNetwork, NoNetwork));
    EXPECT_FALSE(isFinalForQuotaPass(NoNetwork, NoNetwork));
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
    constexpr auto animators = &In::hasAnimators, sync = &In::syncEnabled, test = &In::scheduledPauseTest;
    constexpr auto paused = &In::scheduledBackupPaused, entry = &In::syncEntryOn,
                   moving = &In::syncAnimationRuns;
    const NormalIcon pauseTip{.picture = Picture::Pause, .showPausedTip = true};
    const NormalIcon stopped{.picture = Picture::App, .stopAnimation = true};
    EXPECT_EQ(icon({}, {animators, sync}), NormalIcon{.picture = Picture::App});
    EXPECT_EQ(icon({}, {animators, sync, test}), pauseTip);
    EXPECT_EQ(icon({}, {animators, sync, test, entry}), NormalIcon{});
    EXPECT_EQ(icon(Working, {animators, sync, moving}), NormalIcon{})
        << "a running animation is not painted over";
    EXPECT_EQ(icon(UpToDate, {animators, sync, moving}), stopped);
    EXPECT_EQ(icon(UpToDate, {animators, sync, paused, test, entry}),
              (NormalIcon{.picture = Picture::Pause, .showPausedTip = true, .stopAnimation = true}));
    EXPECT_EQ(icon({}, {animators, moving}),
              (NormalIcon{.picture = Picture::App, .stopAnimation = true, .clearAnimatingFlag = true}));
    EXPECT_EQ(icon(UpToDate, {sync, test}), pauseTip) << "without animators the sync line plays no part";
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
    for (const auto &[label, in, expected] : rows) {
        SCOPED_TRACE(label);
        EXPECT_EQ(toolTipKind(in), expected);
    }
}

TEST(StatusRules, TextsOfTheToolTip)
{
    const QString name = u"Corvane"_s;
    EXPECT_EQ(buttonToolTip(name, u"9.2"_s, u"x"_s), u"Corvane 9.2\nx"_s);
    EXPECT_EQ(buttonToolTip(name, u"9.2"_s, name), u"Corvane 9.2"_s);
    EXPECT_EQ(buttonToolTip(name, std::nullopt, QString()), u"Corvane"_s);
    EXPECT_EQ(withSyncedWording(bothLines(u"x"_s, UpToDate)),
              u"Backup: x\nCloud Drive: All files are synced"_s);
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

    const std::tuple<std::optional<qint64>, bool, bool, Tip, Tip> rows[] = {
        {0, false, false, Tip::ScheduledProgress, Tip::InteractiveProgress},
        {1, true, false, Tip::ScheduledProgress, Tip::Keep},
        {1, true, true, Tip::ScheduledPaused, Tip::Keep},
        {1, false, false, Tip::Keep, Tip::Keep},
        {4, true, true, Tip::ScheduledPaused, Tip::InteractivePaused},
        {5, true, false, Tip::ScheduledProgress, Tip::InteractiveProgress},
        {std::nullopt, true, false, Tip::ScheduledProgress, Tip::Keep},
        {std::nullopt, false, false, Tip::Keep, Tip::Keep},
    };
    for (const auto &[type, inProgress, paused, scheduled, interactive] : rows) {
        SCOPED_TRACE(type.value_or(-1));
        EXPECT_EQ(scheduledTip(progressType(type), inProgress, paused), scheduled);
        EXPECT_EQ(interactiveTip(progressType(type)), interactive);
    }
}
