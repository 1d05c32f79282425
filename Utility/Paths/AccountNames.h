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
inline constexpr QLatin1String AutoLaunchCheckFile("autoLaunchCheckfile.txt");
inline constexpr QLatin1String UpdateCheckFile("checkfile.plist");
inline constexpr QLatin1String SilentInstallFile("silentInstall.txt");
inline constexpr QLatin1String LaunchHelper("launchApp");
inline constexpr QLatin1String LogsArchive("Logs.zip");
inline constexpr QLatin1String ViewLogs("viewLogs");
inline constexpr QLatin1String ViewScheduledJobs("viewManageScheduleJobs");
inline constexpr QLatin1String RemoteInstall("remoteInstall");
inline constexpr QLatin1String UpdateDate("updatedate.xml");
/// @}

inline constexpr qsizetype LongestBytes = 255; ///< of one component, as the file systems have it

/// Whether a name is one component of a path and no hidden one: not empty, no "/", no "." in front, no control
/// character, not too long, and of whole characters, since two halves of pairs would share a folder.
[[nodiscard]] bool isPathComponent(const QString &name);

/// The names directly below the root folder that belong to the product, by its path table: those of the table's
/// values, the package folder of an update, and the files above.
[[nodiscard]] QSet<QString> ownNames(const QHash<QString, QString> &table);
} // namespace AccountNames
