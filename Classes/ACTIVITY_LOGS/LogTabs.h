#pragma once

#include <QString>

#include <functional>
#include <vector>

/// The texts that a record has, each a tab of the window and a file beside the record's log.
enum class LogTab { Details, Summary, Upload, Download, Rename, Delete };

namespace LogTabs
{
/// The tabs of a record in the order shown, the first of which is selected. A sync record has those whose file
/// `exists` says is there, perhaps none; any other has its details, behind the summary where there is one.
[[nodiscard]] std::vector<LogTab> of(const QString &logfile, bool isSync,
                                     const std::function<bool(const QString &path)> &exists);

/// The lists of a sync record, in their order.
[[nodiscard]] const std::vector<LogTab> &ofSync();

/// Whether the record is one of cloud sync, by the name of its log.
[[nodiscard]] bool isSyncLog(const QString &logfile);

/// The file behind a tab.
[[nodiscard]] QString file(const QString &logfile, LogTab tab);

/// The tab's title in the program's language.
[[nodiscard]] const QString &title(LogTab tab);
} // namespace LogTabs
