#pragma once

#include <QVariantMap>

#include <optional>

/// The kinds of settings in the list that is shared with the backup daemon.
enum class SettingCategory { ThrottleSettings };

/// What the bandwidth group shows.
struct ThrottleDisplay {
    int percent = 0;        ///< as stored, also where it is no percentage
    bool autoPause = false; ///< the slider sets the share during user activity
    bool autoPauseIconIsShown = false;
    friend bool operator==(const ThrottleDisplay &, const ThrottleDisplay &) = default;
};

/// From one account's settings. None where they say nothing of bandwidth: what is shown then stays as it is.
[[nodiscard]] std::optional<ThrottleDisplay> throttleDisplay(const QVariantMap &settings);

/// What the slider changes in these settings: one entry, a text of decimal digits. Empty where they say nothing
/// of bandwidth: nothing is to be stored then.
[[nodiscard]] QVariantMap throttleEntry(const QVariantMap &settings, int sliderValue);
