#pragma once

#include <QtGlobal>

#include <chrono>
#include <cstddef>

/// How much of what comes from outside is taken, in one place, each with its reason. Whatever is larger counts
/// as unreadable, or is cut, as the reader says. Bytes and units of UTF-16, unless a name says otherwise.
namespace Limits
{
/// @name Files, by kind
/// @{
/// A record, a list of settings, a table: the largest that any of the programs writes has some 100 KiB.
inline constexpr qint64 RecordBytes = 1024 * 1024;
/// A list that several accounts share, with whatever the other programs keep in it.
inline constexpr qint64 SharedListBytes = 16 * 1024 * 1024;
/// The archive of scheduled jobs: some 1.5 KiB a job, and room for ten thousand.
inline constexpr qint64 ArchiveBytes = 16 * 1024 * 1024;
/// A switch, a marker, a line that is stored: MessageTextUnits of any script fit.
inline constexpr qint64 TextFileBytes = 256 * 1024;
/// An entry of the autostart folder.
inline constexpr qint64 DesktopEntryBytes = 256 * 1024;
/// The words of a running program, as the kernel tells them.
inline constexpr qint64 CommandLineBytes = 256 * 1024;
/// A property list in memory, whatever file it is from.
inline constexpr qint64 ListBytes = SharedListBytes;
/// Of the finished tree: what many places of a binary list share is counted at each of them.
inline constexpr qint64 ListValues = 500'000;
/// Jobs in the archive, and the steps of decoding it: bytes copied, entries looked at.
inline constexpr qsizetype ArchiveRecords = 20'000;
inline constexpr qint64 ArchiveSteps = 16LL * 1024 * 1024;
/// A day's activity records: a busy day has some hundred, of half a KiB each. A file beyond any of these counts
/// as one that is not well-formed.
inline constexpr qint64 DayFileBytes = 256 * 1024 * 1024;
inline constexpr int DayFileRecords = 1'000'000;
inline constexpr int DayFileDepth = 100; ///< levels of elements
/// A value of a record: ten times the longest path. What is behind it stays in the file, and is not listed.
inline constexpr std::size_t DayFileValueBytes = 64 * 1024;
/// Of a log that is shown; the rest is behind a link.
inline constexpr qsizetype ShownLogBytes = 10'240;
/// Entries of one folder of logs that are looked at: years of jobs with their lists.
inline constexpr qsizetype FolderEntries = 1'000'000;
/// @}

/// @name Messages of the daemons
/// @{
/// A frame that claims more ends the connection.
inline constexpr quint64 FrameBytes = 16 * 1024 * 1024;
/// Values in one message, those within others counted. Each costs up to 100 bytes once it is a variant; the
/// largest report has some fifty.
inline constexpr qsizetype MessageValues = 100'000;
/// A text of a message that is translated and shown, and its lines: a screen has room for less.
inline constexpr qsizetype MessageTextUnits = 64 * 1024;
inline constexpr qsizetype MessageTextLines = 200;
/// What a message may leave allocated for the next one.
inline constexpr qsizetype KeptFrameBytes = 256 * 1024;
/// Messages that wait behind a call to a sync daemon that hangs; later ones are lost. A user's clicks and a
/// sign-in make a dozen.
inline constexpr std::size_t WaitingMessages = 1000;
/// @}

/// @name Texts on the screen
/// @{
/// Each line of a tool tip or note, and how many: as much as fits beside a panel.
inline constexpr qsizetype TipLineUnits = 1000;
inline constexpr int TipLines = 20;
/// The title of a menu item: a whole name with its path.
inline constexpr qsizetype MenuTitleUnits = 4096;
/// @}

/// @name Command lines that the backup daemon has run. Most open a window, and some of those stay.
/// @{
inline constexpr std::size_t WaitingCommands = 8;          ///< behind the one that runs; later ones are refused
inline constexpr std::size_t RunningCommands = 32;         ///< with those that stay
inline constexpr std::chrono::seconds CommandPatience{10}; ///< then the next one may begin beside it
/// @}

/// Of a kernel's table of sockets, where it can't be asked for one: some 25,000 rows, read within 50 ms.
inline constexpr qint64 SocketTableBytes = 4 * 1024 * 1024;
} // namespace Limits
