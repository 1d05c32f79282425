#include "Source/Controller/StatusRules.h"
#include "Extensions/TextCoding.h"
#include "Source/Controller/ReportRules.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace StatusRules;

namespace
{
const QString Paused = QStringLiteral("Paused");
const QString UpToDate = QStringLiteral("All files are up to date");
const QString NoNetwork = QStringLiteral("No network connectivity");
const QString Working = QStringLiteral("Uploading 3 of 8 files");
const QString Cancelled = QStringLiteral("The account has been cancelled");
const QString Exceeded = QStringLiteral("You have exceeded the allocated quota limit.");

QVariantMap quota(const QVariant &total, const QVariant &used)
{
    return {{QStringLiteral("TOTALQUOTASIZE"), total}, {QStringLiteral("USEDQUOTASIZE"), used}};
}

QVariant coded(const char *figure)
{
    return encryptedString(QString::fromLatin1(figure));
}
} // namespace

TEST(StatusRules, FlagsAreTextOrBoolean)
{
    EXPECT_EQ(flagValue(QStringLiteral("1")), true);
    EXPECT_EQ(flagValue(QStringLiteral("0")), false);
    EXPECT_EQ(flagValue(true), true);
    EXPECT_EQ(flagValue(false), false);
    EXPECT_EQ(flagValue(1LL), std::nullopt);
    EXPECT_EQ(flagValue(QStringLiteral("yes")), std::nullopt);
    EXPECT_EQ(flagValue(QVariant()), std::nullopt);
}

TEST(StatusRules, QuotaIsAtItsLimitWithTenBytesLeft)
{
    const struct {
        const char *name;
        QVariantMap details;
        bool atLimit;
    } rows[] = {
        {"plenty", quota(coded("1024"), coded("10")), false},
        {"used up", quota(coded("1024"), coded("1024")), true},
        {"10 bytes and a half round to 11", quota(coded("1"), coded("0.99998998")), false},
        {"10 bytes", quota(coded("1"), coded("0.9999905")), true},
        {"a total that is no number", quota(coded("much"), coded("0")), true},
        {"nothing known", quota(0.0, 0.0), true},
        {"stored as numbers", quota(1024.0, 1.0), false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(isQuotaAtLimit(row.details), row.atLimit);
    }
}

TEST(StatusRules, OnlyTheOwnerOfAnOwnPlanIsToldToUpgrade)
{
    const QString owner = QStringLiteral("false");
    EXPECT_TRUE(mayPromptUpgrade(true, false, owner, false));
    EXPECT_FALSE(mayPromptUpgrade(false, false, owner, false));
    EXPECT_FALSE(mayPromptUpgrade(true, true, owner, false));
    EXPECT_FALSE(mayPromptUpgrade(true, false, QStringLiteral("true"), false));
    EXPECT_FALSE(mayPromptUpgrade(true, false, std::nullopt, false));
    EXPECT_FALSE(mayPromptUpgrade(true, false, owner, true));
}

TEST(StatusRules, WhichSyncLinesStandStill)
{
    const struct {
        QString line;
        bool final, resting, forQuotaPass;
    } rows[] = {
        {UpToDate, true, true, true},   {Paused, true, true, true},
        {Cancelled, true, true, true},  {QString(), true, true, true},
        {Exceeded, true, true, true},   {NoNetwork, true, false, true},
        {Working, false, false, false}, {QStringLiteral("You have exceeded the limit"), false, true, true},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line.toStdString());
        EXPECT_EQ(isFinalSyncLine(row.line), row.final);
        EXPECT_EQ(isRestingSyncLine(row.line, UpToDate), row.resting);
        EXPECT_EQ(isFinalForQuotaPass(row.line, UpToDate), row.forQuotaPass);
    }
    EXPECT_TRUE(isRestingSyncLine(NoNetwork, NoNetwork));
    EXPECT_FALSE(isFinalForQuotaPass(NoNetwork, NoNetwork));
}

TEST(StatusRules, TakingASyncLine)
{
    const struct {
        const char *name;
        SyncLineInputs in;
        SyncLineOutcome expected;
    } rows[] = {
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
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(takeSyncLine(row.in), row.expected);
    }
}

TEST(StatusRules, TheNormalIcon)
{
    const NormalIconInputs idle{.hasAnimators = true, .syncEnabled = true};
    const auto with = [&](auto change) {
        NormalIconInputs in = idle;
        change(in);
        return normalIcon(in);
    };
    EXPECT_EQ(normalIcon(idle), NormalIcon{.picture = Picture::App});
    EXPECT_EQ(with([](auto &in) { in.scheduledPauseTest = true; }),
              (NormalIcon{.picture = Picture::Pause, .showPausedTip = true}));
    EXPECT_EQ(with([](auto &in) { in.scheduledPauseTest = in.syncEntryOn = true; }), NormalIcon{});
    EXPECT_EQ(with([](auto &in) {
                  in.syncLine = Working;
                  in.syncAnimationRuns = true;
              }),
              NormalIcon{})
        << "a running animation is not painted over";
    EXPECT_EQ(with([](auto &in) {
                  in.syncLine = UpToDate;
                  in.syncAnimationRuns = true;
              }),
              (NormalIcon{.picture = Picture::App, .stopAnimation = true}));
    EXPECT_EQ(with([](auto &in) {
                  in.syncLine = UpToDate;
                  in.scheduledBackupPaused = in.scheduledPauseTest = in.syncEntryOn = true;
              }),
              (NormalIcon{.picture = Picture::Pause, .showPausedTip = true, .stopAnimation = true}));
    EXPECT_EQ(with([](auto &in) {
                  in.syncEnabled = false;
                  in.syncAnimationRuns = true;
              }),
              (NormalIcon{.picture = Picture::App, .stopAnimation = true, .clearAnimatingFlag = true}));
    EXPECT_EQ(with([](auto &in) {
                  in.hasAnimators = false;
                  in.syncLine = UpToDate;
                  in.scheduledPauseTest = true;
              }),
              (NormalIcon{.picture = Picture::Pause, .showPausedTip = true}))
        << "without animators the sync line plays no part";
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
    const QString name = QStringLiteral("Corvane");
    const QString job = QStringLiteral("Scheduled Backup is in progress.");
    const struct {
        const char *label;
        ToolTipInputs in;
        ToolTipKind expected;
    } rows[] = {
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
    for (const auto &row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(toolTipKind(row.in), row.expected);
    }
}

TEST(StatusRules, TextsOfTheToolTip)
{
    const QString name = QStringLiteral("Corvane");
    EXPECT_EQ(buttonToolTip(name, QStringLiteral("9.2"), QStringLiteral("x")),
              QStringLiteral("Corvane 9.2\nx"));
    EXPECT_EQ(buttonToolTip(name, QStringLiteral("9.2"), name), QStringLiteral("Corvane 9.2"));
    EXPECT_EQ(buttonToolTip(name, std::nullopt, QString()), QStringLiteral("Corvane"));
    EXPECT_EQ(withSyncedWording(bothLines(QStringLiteral("x"), UpToDate)),
              QStringLiteral("Backup: x\nCloud Drive: All files are synced"));
    EXPECT_EQ(quotaFullLines(std::nullopt, Working, name),
              QStringLiteral(
                  "Backup: \nCloud Drive: Uploading 3 of 8 files\nYou have exceeded the allocated quota limit. "
                  "For further syncing you have to upgrade your account. Click the 'Upgrade Storage' menu item "
                  "to upgrade your Corvane account"));
}

TEST(ReportRules, RouteAndTip)
{
    using namespace ReportRules;
    EXPECT_EQ(route(std::nullopt, 0), Route::Drop);
    EXPECT_EQ(route(QStringLiteral("mona"), 0), Route::Interactive);
    EXPECT_EQ(route(QStringLiteral("mona"), 1), Route::Scheduled);
    EXPECT_EQ(route(QStringLiteral("mona"), std::nullopt), Route::Scheduled);
    EXPECT_EQ(progressType(7), std::nullopt);
    EXPECT_EQ(progressType(-1), std::nullopt);
    EXPECT_EQ(progressType(6), ProgressType::Complete);

    const struct {
        std::optional<qint64> type;
        bool inProgress, paused;
        Tip scheduled, interactive;
    } rows[] = {
        {0, false, false, Tip::ScheduledProgress, Tip::InteractiveProgress},
        {1, true, false, Tip::ScheduledProgress, Tip::Keep},
        {1, true, true, Tip::ScheduledPaused, Tip::Keep},
        {1, false, false, Tip::Keep, Tip::Keep},
        {4, true, true, Tip::ScheduledPaused, Tip::InteractivePaused},
        {5, true, false, Tip::ScheduledProgress, Tip::InteractiveProgress},
        {std::nullopt, true, false, Tip::ScheduledProgress, Tip::Keep},
        {std::nullopt, false, false, Tip::Keep, Tip::Keep},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.type.value_or(-1));
        EXPECT_EQ(scheduledTip(progressType(row.type), row.inProgress, row.paused), row.scheduled);
        EXPECT_EQ(interactiveTip(progressType(row.type)), row.interactive);
    }
}
