#pragma once

#include "Companions/BackupDaemon/LogRecords.h"
#include "Companions/BackupDaemon/SessionLogText.h"
#include "Companions/Common/PathTable.h"

#include <chrono>
#include <optional>

/// The activity logs as the daemon leaves them: for each job a session log, its summary, and its record in the
/// file of the day on which it began. All files are replaced as a whole. What writes returns false on failure;
/// a file that could not be written is as it was.
class LogBook
{
public:
    /// Which file of its day holds a record.
    enum class DayFile { Plain, Protection, Sync };

    /// A session log and the record that points at it.
    struct Entry {
        SessionStory story;
        LogRecord record;
    };

    explicit LogBook(PathTable table);

    /// The folders of the day files and of the session logs.
    [[nodiscard]] QString dayFolder() const;
    [[nodiscard]] QString sessionFolder() const;
    [[nodiscard]] QString dayPath(const QString &logname) const;

    /// The language of the session logs from now on, and whether they carry the sentences that become links.
    /// With no language set it is that of the product.
    void setLanguage(LogLanguage language);
    void setLinkSentences(bool on);

    /// What a job of that number writes when it begins at `start`, as running. Its session log has a name of
    /// its own, with a time some seconds later where another job has the name.
    [[nodiscard]] Entry begin(const QString &account, int optype, const QDateTime &start) const;

    /// The same under the name of its time, whether that is taken or not.
    [[nodiscard]] Entry entry(const QString &account, int optype, const QDateTime &start) const;

    /// Gives an entry its end.
    static void conclude(Entry &entry, const QString &status, const QDateTime &end,
                         std::chrono::milliseconds duration);

    /// Writes session log, summary or lists, and the record, in the place of an older record of the same
    /// session log. A running job has no summary. False also where the day file is damaged, which stays.
    [[nodiscard]] bool write(const Entry &entry) const;

    /// Puts a record alone into its day file.
    [[nodiscard]] bool putRecord(const LogRecord &record) const;

    /// The files of an entry beside its record: path and text.
    struct TextFile {
        QString path;
        QByteArray text;
    };
    [[nodiscard]] std::vector<TextFile> textFiles(const Entry &entry) const;

    /// Shapes for whoever writes many entries at once.
    [[nodiscard]] static QString dayName(QDate day, DayFile file);
    [[nodiscard]] static DayFile dayFileOf(int optype);
    [[nodiscard]] QString sessionPath(int optype, const QDateTime &start) const;

private:
    [[nodiscard]] LogLanguage language() const;

    PathTable m_table;
    std::optional<LogLanguage> m_language;
    bool m_withLinks = false;
};
