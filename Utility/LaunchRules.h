#pragma once

#include "Utility/Paths/AccountNames.h"

#include <QString>
#include <QVariantMap>

#include <optional>

/// What a start of the monitor, and the opening of the main application, depend on: values in, decisions out.
namespace LaunchRules
{
/// @name Files directly in the product's root folder that steer a start
/// @{
using AccountNames::AutoLaunchCheckFile; ///< removed unread
using AccountNames::LaunchHelper;        ///< a copy of the relaunch helper
using AccountNames::SilentInstallFile;   ///< a silent update has just ended
using AccountNames::UpdateCheckFile;     ///< the update folder is in use
/// @}

/// The full path of a file in that folder.
[[nodiscard]] QString rootFile(const QString &name);

/// What to open right after the start.
enum class Redirection { ResetThenPreferences, ErrorReport, ActivityLogs, Preferences };

/// By the whole text of the redirection file; `signedOutName` is the name under which a sign-out is announced.
[[nodiscard]] Redirection launchRedirection(const QString &text, const QString &signedOutName);

/// What a request to open the preferences opens, by the object that came with it.
[[nodiscard]] Redirection preferencesRequest(const QString &object);

/// A notification to the main application that asks for one of its views.
struct ViewRequest {
    QString name;
    QVariantMap userInfo;
};

/// None where the type names no view.
[[nodiscard]] std::optional<ViewRequest> viewRequest(const QString &launchRedirectionType);

/// Whether a program of that bundle version looks for updates by itself: not when it ends in "00", nor without
/// one.
[[nodiscard]] bool versionRunsAutomaticUpdates(const std::optional<QString> &bundleVersion);

/// What becomes of the monitor's login item.
enum class LoginItem { Leave, Add, Remove };

/// By the settings of all users and the signed-in one: that user's `launchOnStartup` adds it where it is other
/// than 0, and removes it where it is 0 or missing. Where the user has no settings, or there are none to be
/// read, nobody has said anything, and the item stays as it is.
[[nodiscard]] LoginItem loginItem(const std::optional<QVariantMap> &settings,
                                  const std::optional<QString> &user);

/// The folder with the packages of an update: the root folder joined with the application's name.
[[nodiscard]] QString updateFolder(const QString &rootFolder, const QString &applicationName);

/// Whether that folder is to be removed at a start. A folder that isn't inside the root folder never is.
struct UpdateLeftover {
    QString rootFolder;
    QString folder;
    bool folderExists = false;
    bool checkFileExists = false;
};
[[nodiscard]] bool removesUpdateFolder(const UpdateLeftover &leftover);
} // namespace LaunchRules
