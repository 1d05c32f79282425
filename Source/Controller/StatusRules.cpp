#include "Source/Controller/StatusRules.h"

#include "Extensions/TextCoding.h"
#include "Extensions/TextFormat.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Language/LanguageManager.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace StatusRules
{
using namespace MonitorControllerVC;

std::optional<bool> flagValue(const QVariant &value)
{
    if (value.metaType() == QMetaType::fromType<bool>())
        return value.toBool();
    if (value.metaType() != QMetaType::fromType<QString>())
        return std::nullopt;
    const QString text = value.toString();
    if (text == u"1")
        return true;
    return text == u"0" ? std::optional(false) : std::nullopt;
}

double quotaFigure(const QVariant &stored)
{
    if (stored.metaType() == QMetaType::fromType<QString>())
        return decryptedString(stored.toString()).toDouble(); // 0 for what doesn't parse
    return stored.toDouble();
}

bool isQuotaAtLimit(const QVariantMap &quotaDetails)
{
    constexpr double Mebibyte = 1024.0 * 1024.0;
    constexpr double SmallestFreeSpace = 10;
    const QVariant total = quotaDetails.value(u"TOTALQUOTASIZE"_s);
    const QVariant used = quotaDetails.value(u"USEDQUOTASIZE"_s);
    if (!total.isValid() || !used.isValid())
        return false;
    return std::round((quotaFigure(total) - quotaFigure(used)) * Mebibyte) <= SmallestFreeSpace;
}

bool mayPromptUpgrade(bool atLimit, bool planNeverWarns, const std::optional<QString> &accountType,
                      bool isPartner)
{
    return atLimit && !planNeverWarns && accountType == u"false"_s && !isPartner;
}

bool isRestingSyncLine(const QString &line)
{
    return line.isEmpty() || line == allFilesUpToDateTooltip || line == pausedTooltip ||
           line == syncAccCancelTooltip || line == noInternetTooltip ||
           line.startsWith(youHaveExceededPrefixTooltip.text());
}

QString syncLine(QString text)
{
    if (text.endsWith(u'\n'))
        text.chop(1);
    return text.isEmpty() ? text : localized(text);
}

SyncLineOutcome takeSyncLine(const SyncLineInputs &in)
{
    SyncLineOutcome out{in.lines};
    if (!in.message || in.message->isEmpty()) {
        if (out.lines.current == pausedTooltip.text() && !out.lines.previous && in.paused == false)
            out.lines.current.reset();
        return out;
    }
    if (!in.paused || !in.reinitialising)
        return out;

    const bool saysPaused = *in.message == pausedTooltip;
    if (!*in.paused && !*in.reinitialising) {
        if (saysPaused)
            out.lines.previous = out.lines.current;
        out.lines.current = in.message;
        out.storeMessage = true;
    } else if (!saysPaused) {
        out.lines.previous = in.message;
    } else if (!*in.paused && out.lines.previous) {
        out.lines.current = out.lines.previous;
    }
    out.evaluateIcon = true;
    return out;
}

NormalIcon normalIcon(const NormalIconInputs &in)
{
    NormalIcon out;
    const bool rests = in.syncLine && in.hasAnimators && isRestingSyncLine(*in.syncLine);
    out.stopAnimation = rests || !in.syncEnabled;
    out.clearAnimatingFlag = !rests && !in.syncEnabled;
    if (in.syncAnimationRuns && !out.stopAnimation)
        return out; // its next frame would wipe away whatever were shown here
    out.picture = in.jobPaused ? Picture::Pause : Picture::App;
    out.showPausedTip = in.jobPaused;
    return out;
}

SyncActivity syncActivity(const std::optional<QString> &syncLine, bool syncEnabled, bool animatingFlag)
{
    if (!syncLine)
        return SyncActivity::Nothing;
    if (!syncEnabled || isRestingSyncLine(*syncLine))
        return SyncActivity::Settle;
    return animatingFlag ? SyncActivity::Nothing : SyncActivity::Animate;
}

ToolTipKind toolTipKind(const ToolTipInputs &in)
{
    if (!in.backupTip)
        return in.syncEnabled && in.syncMessage ? ToolTipKind::SyncMessage : ToolTipKind::None;
    if (!in.syncTip || in.syncTip->isEmpty())
        return ToolTipKind::BackupTip;
    if (!in.syncEnabled && !in.movingFolder)
        return ToolTipKind::BackupTip;
    if (in.quotaFull)
        return ToolTipKind::QuotaFull;
    return *in.backupTip == in.appFullName ? ToolTipKind::SchedulerStatus : ToolTipKind::Both;
}

QString bothLines(const std::optional<QString> &backupTip, const QString &syncTip)
{
    return formatted(backupAndSyncTooltip, {backupTip.value_or(QString()), syncTip});
}

QString quotaFullLines(const std::optional<QString> &backupTip, const QString &syncTip,
                       const QString &appFullName)
{
    return formatted(backupAndSyncQuotaTooltip, {backupTip.value_or(QString()), syncTip, appFullName});
}

QString withSyncedWording(QString text)
{
    return text.replace(cloudDriveUpToDate.text(), cloudDriveSynced.text());
}

QString buttonToolTip(const QString &appFullName, const std::optional<QString> &shortVersion,
                      const std::optional<QString> &text)
{
    QString tip = appFullName;
    if (shortVersion && !shortVersion->isEmpty())
        tip += u' ' + *shortVersion;
    if (text && !text->isEmpty() && *text != appFullName)
        tip += u'\n' + *text;
    return tip;
}
} // namespace StatusRules
