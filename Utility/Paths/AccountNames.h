#pragma once

#include <QHash>
#include <QSet>
#include <QString>

/// Which account names may stand in a path. An account's files lie in a folder of its name below the product's
/// root folder, beside the product's own folders and files; the name comes from outside.
namespace AccountNames
{
/// @name Files directly in the root folder that the path table does not name
/// @{
inline constexpr QLatin1StringView AutoLaunchCheckFile("autoLaunchCheckfile.txt");
inline constexpr QLatin1StringView UpdateCheckFile("checkfile.plist");
inline constexpr QLatin1StringView SilentInstallFile("silentInstall.txt");
inline constexpr QLatin1StringView LaunchHelper("launchApp");
inline constexpr QLatin1StringView LogsArchive("Logs.zip");
inline constexpr QLatin1StringView ViewLogs("viewLogs");
inline constexpr QLatin1StringView ViewScheduledJobs("viewManageScheduleJobs");
inline constexpr QLatin1StringView RemoteInstall("remoteInstall");
inline constexpr QLatin1StringView UpdateDate("updatedate.xml");
/// @}

inline constexpr qsizetype LongestBytes = 255; ///< of one component, as the file systems have it

/// Whether a name is one component of a path and no hidden one: not empty, no "/", no "." in front, no control
/// character, not too long, and of whole characters, since two halves of pairs would share a folder.
[[nodiscard]] bool isPathComponent(const QString &name);

/// The names directly below the root folder that belong to the product, by its path table: those of the table's
/// values, the package folder of an update, and the files above.
[[nodiscard]] QSet<QString> ownNames(const QHash<QString, QString> &table);
} // namespace AccountNames
