#pragma once

#include "Classes/ACTIVITY_LOGS/DayFile.h"

#include <QByteArray>
#include <QDate>
#include <QTime>

#include <expat.h>

/// The day files of years of jobs, as the daemons write them.
namespace LogYears
{
inline constexpr int Days = 1'100;
inline constexpr int RecordsAFile = 31; // some 100,000 in all
inline constexpr const char *Endings[] = {"_cdp", "_sync", ""};
inline const QDate Today(2026, 11, 23);

/// One of them, of jobs whose session logs lie in `logFolder`.
inline QByteArray dayFile(QDate day, const QByteArray &ending, int records, const QString &logFolder)
{
    const char *const results[] = {"Success", "Success", "Failure", "Success", "Aborted"};
    const QString name = day.toString(u"MM-dd-yyyy");
    LogNodes nodes;
    for (int i = 0; i < records; ++i) {
        auto node = std::make_shared<LogNode>();
        const QTime time = QTime(0, 0).addSecs(i * 2700 + day.dayOfYear());
        node->datetime = name + time.toString(u" HH:mm:ss");
        node->uname = QString::fromLatin1(i % 7 ? "ana@example.com" : "eva@example.com");
        node->files = QString::number(i * 37 % 500);
        node->filesinsync = QString::number(i * 11 % 90);
        node->status = QString::fromLatin1(results[(i + day.day()) % 5]);
        node->duration = QTime(0, 0).addSecs(i * 97 % 4000).toString(u"HH:mm:ss");
        node->optype = QString::number(ending == "_cdp" ? 7 : ending == "_sync" ? 12 : 1 + i % 3);
        node->logfile = logFolder + u'/' + name + time.toString(u"-HH-mm-ss");
        node->logname = name + QString::fromLatin1(ending);
        nodes.push_back(std::move(node));
    }
    return DayFile::getXMLfromNodes(nodes).toUtf8();
}
/// What the parser costs alone: one pass over a file with handlers that only look. Adds to `seen`; false where
/// the file is damaged.
[[nodiscard]] inline bool parseWithBareExpat(const QByteArray &bytes, qint64 &seen)
{
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &seen);
    XML_SetElementHandler(
        parser, [](void *data, const char *, const char **) { ++*static_cast<qint64 *>(data); },
        [](void *data, const char *) { ++*static_cast<qint64 *>(data); });
    XML_SetCharacterDataHandler(
        parser, [](void *data, const char *, int length) { *static_cast<qint64 *>(data) += length; });
    const bool isWhole = XML_Parse(parser, bytes.data(), int(bytes.size()), XML_TRUE) == XML_STATUS_OK;
    XML_ParserFree(parser);
    return isWhole;
}
} // namespace LogYears
