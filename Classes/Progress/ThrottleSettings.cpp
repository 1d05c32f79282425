#include "Classes/Progress/ThrottleSettings.h"

#include "Platform/PropertyList.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace
{
const auto EnableKey = u"EnableBandwidthThrottleKey"_s;
const auto ManualPercentKey = u"BandwidthThrottleKey"_s;
const auto ActivePercentKey = u"BandwidthThrottleAutoPauseKey"_s;
const auto IdlePercentKey = u"BandwidthThrottleForIdleKey"_s;

/// Above it the daemon is next to never held back, and a warning that backups are slow would be wrong.
constexpr int NearlyFullSpeed = 90;

/// Digits with an optional sign and nothing else; Qt's own conversion would let blanks pass.
std::optional<int> numberIn(const QString &text)
{
    const auto digits = QStringView(text).sliced(text.startsWith(u'+') || text.startsWith(u'-') ? 1 : 0);
    if (!std::all_of(digits.cbegin(), digits.cend(), [](QChar c) { return c >= u'0' && c <= u'9'; }))
        return std::nullopt;
    bool fits = false;
    const int number = text.toInt(&fits);
    return fits ? std::optional(number) : std::nullopt;
}

int percentOf(const QVariantMap &settings, const QString &key)
{
    if (const auto text = PropertyList::textValue(settings, key))
        return numberIn(*text).value_or(0);
    const auto number = PropertyList::intValue(settings, key).value_or(0);
    using Limits = std::numeric_limits<int>;
    return number >= Limits::min() && number <= Limits::max() ? int(number) : 0;
}

bool isAutoPause(const QVariantMap &settings)
{
    return PropertyList::boolValue(settings, EnableKey).value_or(false) ||
           PropertyList::textValue(settings, EnableKey) == u"1";
}
} // namespace

std::optional<ThrottleDisplay> throttleDisplay(const QVariantMap &settings)
{
    if (!settings.contains(EnableKey))
        return std::nullopt;
    if (!isAutoPause(settings))
        return ThrottleDisplay{.percent = percentOf(settings, ManualPercentKey)};
    const int active = percentOf(settings, ActivePercentKey);
    const int idle = percentOf(settings, IdlePercentKey);
    return ThrottleDisplay{.percent = active,
                           .autoPause = true,
                           .autoPauseIconIsShown = active <= NearlyFullSpeed || idle <= NearlyFullSpeed};
}

QVariantMap throttleEntry(const QVariantMap &settings, int sliderValue)
{
    if (!settings.contains(EnableKey))
        return {};
    return {{isAutoPause(settings) ? ActivePercentKey : ManualPercentKey, QString::number(sliderValue)}};
}
