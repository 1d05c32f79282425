#include "Classes/ACTIVITY_LOGS/LogParseOperation.h"

#include "Classes/ACTIVITY_LOGS/DayFile.h"
#include "Platform/AtomicFile.h"

using namespace Qt::StringLiterals;

LogParseOperation::LogParseOperation(QString folder, QString dayKey, std::stop_token stop)
    : m_folder(std::move(folder)), m_dayKey(std::move(dayKey)), m_stop(std::move(stop))
{
}

void LogParseOperation::main()
{
    if (m_stop.stop_requested())
        return;
    const auto bytes = AtomicFile::read(m_folder + u'/' + m_dayKey + ".xml"_L1, Limits::DayFileBytes);
    if (bytes)
        parsedData = DayFile::read(*bytes, m_dayKey, m_stop, &reason);
    else
        reason = u"no file that can be read"_s;
}
