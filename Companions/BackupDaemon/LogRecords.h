#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

/// One job in a day file. Values are plain texts; the form in the file is made and read by the functions below.
struct LogRecord {
    QString datetime;
    QString uname; ///< empty for a job of nobody
    QString files;
    QString filesinsync;
    QString status;
    QString duration; ///< HH:mm:ss, or `UnknownDuration`
    QString optype;   ///< a decimal number
    QString content;
    QString lpath;
    QString logfile; ///< absolute path of the session log
    QString logname; ///< base name of the day file
};

using LogRecords = std::vector<LogRecord>;

/// How long a job takes that has not ended.
inline const QString UnknownDuration = QStringLiteral("--:--:--");

/// The words of `status` that the programs of the product know.
namespace LogStatus
{
inline const QString Success = QStringLiteral("Success");
inline const QString Failure = QStringLiteral("Failure");
inline const QString Cancelled = QStringLiteral("Cancelled");
inline const QString InProgress = QStringLiteral("In Progress");
} // namespace LogStatus

/// The block of one record. Values are escaped; characters that XML cannot hold are left out.
[[nodiscard]] QByteArray recordBlock(const LogRecord &record);

/// What stands before and behind the blocks of a day file.
[[nodiscard]] QByteArray dayFileHead();
[[nodiscard]] QByteArray dayFileTail();

/// A whole day file, UTF-8, every line ended by one line feed.
[[nodiscard]] QByteArray dayFileBytes(const LogRecords &records);

/// The records of a day file in their order. Empty when the bytes are no well-formed document.
[[nodiscard]] std::optional<LogRecords> dayRecords(const QByteArray &bytes);
