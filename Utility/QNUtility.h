#pragma once

#include "Utility/Paths/PathTable.h"

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

/// Helpers over the machine, the processes and the product's records. Files are read anew at each call; what
/// cannot be read counts as absent, and the empty answer of each helper is told beside it.
namespace QNUtility
{
/// The preferences file that the product's programs share, in the home's Library/Preferences.
[[nodiscard]] QString preferencesPlistPath();
/// The same for a given bundle identifier and folder: the word "Monitor" leaves the identifier; a file of that
/// name in any case is taken as it is spelled; without one, the product's fixed name.
[[nodiscard]] QString preferencesPlistPath(const std::optional<QString> &bundleIdentifier,
                                           const QString &folder);
/// The file of the settings that hold for all programs, beside it.
[[nodiscard]] QString globalPreferencesPath();

/// The record of the account last linked to a local user, with `cname`; none when it is missing or unreadable.
[[nodiscard]] std::optional<QVariantMap> isAnyUserDeletedForProfile(const QString &loginName);
/// Whether the signed-in account has the plan "partner", compared exactly.
[[nodiscard]] bool isCurrentPlanPartner();
/// The machine's recorded id, else the system's own.
[[nodiscard]] std::optional<QString> machineID();
/// The port of the account's server as text; "443" when nothing else is recorded.
[[nodiscard]] QString getTQLSrvPort();
/// Whether this is an installation without continuous protection and remote management.
[[nodiscard]] bool isThinClient();
/// "Corvane Mac:" and the bundle's version, "Corvane Mac" without one.
[[nodiscard]] QString getUserAgent();
/// The system's name and version, for traces.
[[nodiscard]] QString macOSVersion();

/// Base names of the executables that run for the user of this process.
[[nodiscard]] QStringList getBSDProcessList();

[[nodiscard]] bool isDirectory(const QString &path);
/// Removes a file; false when that fails, which is traced, or it is not there.
bool removeFile(const QString &path);

/// Whether `text` holds the sentence `key` in any of the monitor's languages; false when either is empty. The
/// language found is kept for the log viewer, see viewLogDisplayLanguage().
[[nodiscard]] bool isLocalisedString(const std::optional<QString> &text, const std::optional<QString> &key);
/// The language of the log that is being read, as isLocalisedString() last found it or
/// setViewLogDisplayLanguage() said; empty before.
[[nodiscard]] QString viewLogDisplayLanguage();
void setViewLogDisplayLanguage(const QString &language);
} // namespace QNUtility
