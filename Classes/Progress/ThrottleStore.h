#pragma once

#include "Classes/Progress/ThrottleSettings.h"

#include <QString>
#include <QVariantMap>

#include <optional>

/// The property list that the monitor and the backup daemon share (`DeamonPreferencePath`): a dictionary from
/// account name to that account's settings. There is no lock on it; both replace it whole, and what the daemon
/// changes while it is changed here stays.
namespace ThrottleStore
{
/// The whole list. None when it cannot be read, which is told on the console, or is no dictionary.
[[nodiscard]] std::optional<QVariantMap> fetchSavedthrottleDataFromPlist();

/// Lays `entry` over the stored settings of `account`. Everything else in the list stays in value and type, as
/// far as XML can hold it: dates lose fractions of a second. The reason where it fails, and the file is then as
/// it was: also where the account has no settings any more, since it may just have signed out. The failure is
/// traced.
std::optional<QString> savePlistData(SettingCategory settingType, const QString &account,
                                     const QVariantMap &entry);
} // namespace ThrottleStore
