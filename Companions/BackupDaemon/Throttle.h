#pragma once

#include <QVariantMap>

/// How much of the line, in percent from 1 to 100, an account's settings in the shared preference list leave to
/// its backups: `BandwidthThrottleAutoPauseKey` while `EnableBandwidthThrottleKey` is on, else
/// `BandwidthThrottleKey`. Percents are text or integers. A missing or unusable one limits nothing, and one
/// below 1 counts as 1, so that every job comes to its end.
[[nodiscard]] int allowedBandwidth(const QVariantMap &settings);
