#include "Classes/ACTIVITY_LOGS/DayFile.h"

#include "Classes/ACTIVITY_LOGS/DayFileScan.h"
#include "Classes/ACTIVITY_LOGS/LogFileNames.h"

#include <QSet>

#include <utility>

using namespace Qt::StringLiterals;

std::optional<LogNodes> DayFile::read(QByteArrayView bytes, const QString &dayKey, const std::stop_token &stop,
                                      QString *reason)
{
    DayFileScan::Outcome outcome = DayFileScan::run(bytes, dayKey, stop);
    if (reason)
        *reason = outcome.reason;
    if (!outcome.isWhole)
        return std::nullopt;
    QSet<std::pair<QString, QString>> known;
    known.reserve(qsizetype(outcome.records.size()));
    LogNodes nodes;
    nodes.reserve(outcome.records.size());
    for (DayFileScan::Record &record : outcome.records) {
        const qsizetype before = known.size();
        known.insert({record.node->optype, record.node->datetime});
        if (known.size() == before)
            continue;
        record.node->logfile = LogFileNames::sessionLogPath(record.node->logfile);
        nodes.push_back(std::move(record.node));
    }
    return nodes;
}

QString DayFile::getXMLfromNodes(const LogNodes &nodes)
{
    QString text = u"<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<records>\n"_s;
    for (const LogNodePtr &node : nodes)
        text += node->flattenSelfToXML().value_or(QString());
    return text + u"</records>\n"_s;
}
