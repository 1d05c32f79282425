#include "Companions/BackupDaemon/Throttle.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
bool isSwitchedOn(const QVariant &value)
{
    // By type first: a number would be turned into a text and then equal it.
    return value.typeId() == QMetaType::Bool ? value.toBool()
                                             : value.typeId() == QMetaType::QString && value == u"1"_s;
}

std::optional<qlonglong> percentOf(const QVariant &value)
{
    bool isNumber = false;
    if (value.typeId() == QMetaType::QString) {
        const int number = value.toString().toInt(&isNumber);
        return isNumber ? std::optional<qlonglong>(number) : std::nullopt;
    }
    return value.typeId() == QMetaType::LongLong ? std::optional(value.toLongLong()) : std::nullopt;
}
} // namespace

int allowedBandwidth(const QVariantMap &settings)
{
    constexpr qlonglong Least = 1;
    constexpr qlonglong All = 100;
    const bool autoPause = isSwitchedOn(settings.value(u"EnableBandwidthThrottleKey"_s));
    const QString key = autoPause ? u"BandwidthThrottleAutoPauseKey"_s : u"BandwidthThrottleKey"_s;
    return static_cast<int>(std::clamp(percentOf(settings.value(key)).value_or(All), Least, All));
}
