#pragma once

#include "Companions/Common/PathTable.h"

#include <QDateTime>
#include <QString>

#include <optional>
#include <vector>

enum class LogLanguage { English, Spanish, Japanese };

/// The language behind "en", "es" or "ja".
[[nodiscard]] std::optional<LogLanguage> logLanguageOf(const QString &word);

/// The folder that keeps the session logs of an operation number: `Backup`, `Restore`, `Delete`, `Rename`,
/// `PutBack`, `Archive Cleanup`, `Sync` or `Continuous Data Protection`.
[[nodiscard]] QString operationFolder(int optype);

/// One file that a job has been through.
struct LoggedFile {
    QString path;
    QString size; ///< as it is shown
};

/// What a session log tells of its job.
struct SessionStory {
    QString account;
    int optype = 2;
    QDateTime started;
    std::optional<QDateTime> ended; ///< none while the job runs
    QString status;                 ///< a word of LogStatus
    std::vector<LoggedFile> files;  ///< those that it names
    qint64 count = 0;               ///< of all that it has been through
};

/// Sentences that the monitor turns into links, in the language of the log: all of them go into a log or none.
struct LinkSentences {
    QString details;
    QString summary;
};

/// The sentences by the product's own string table of that language; in English where it has none.
[[nodiscard]] LinkSentences linkSentences(LogLanguage language, const PathTable &table);

/// The text of a session log, and that of its summary. How the engine names a file is English in every
/// language.
[[nodiscard]] QString sessionLogText(const SessionStory &story, LogLanguage language);
[[nodiscard]] QString summaryText(const SessionStory &story, LogLanguage language);
