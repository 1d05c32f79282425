#pragma once

#include "Classes/ACTIVITY_LOGS/LogNode.h"

#include <QString>

#include <optional>
#include <stop_token>

/// Reads one day file of a folder, on whatever thread runs it. Runs once.
class LogParseOperation
{
public:
    LogParseOperation(QString folder, QString dayKey, std::stop_token stop);

    void main();

    std::optional<LogNodes> parsedData; ///< absent before main(), and where the file gave none
    QString reason;                     ///< then why, for a trace; empty after a stop

private:
    QString m_folder;
    QString m_dayKey;
    std::stop_token m_stop;
};
