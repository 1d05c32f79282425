#include "Source/Logger/InterfaceTraceWriters.h"

#include "Platform/Home.h"
#include "Source/Logger/TraceLine.h"
#include "Utility/Paths/PathTable.h"

using namespace Qt::StringLiterals;

void InterfaceTraceBuffer::writeOut(bool flush)
{
    const QString path = standardizedPath(pathValue("AppInterfaceTraceFilePath"_L1));
    if (!m_messages.isEmpty() && (flush || m_messages.size() >= LargestBuffer)) {
        if (m_file.append(path, m_messages))
            m_messages.clear();
        else // until there is room again; the newest tell most
            m_messages = m_messages.right(MostKept);
    } else {
        TraceFile::clearLogs(path);
    }
}

CVTraceFileLogger::CVTraceFileLogger() : InterfaceTraceBuffer("AppInterfaceTrace")
{
}

CVTraceFileLogger &CVTraceFileLogger::shared()
{
    static auto &logger = *new CVTraceFileLogger; // threads may trace until the very end of the process
    return logger;
}

void CVTraceFileLogger::logAppInterfaceTrace(const QString &message, bool flush)
{
    onQueue([&] {
        if (message.isEmpty())
            return;
        append(TraceLine::timestamp() + u" : "_s + message + u" \n"_s);
        writeOut(flush);
    });
}

QNBackupProgressLogger::QNBackupProgressLogger() : InterfaceTraceBuffer("com.example.interactiveTrace")
{
}

QNBackupProgressLogger &QNBackupProgressLogger::progressLogger()
{
    static auto &logger = *new QNBackupProgressLogger;
    return logger;
}

void QNBackupProgressLogger::logAppInterfaceTrace(const QString &message, bool flush)
{
    onQueue([&] {
        if (!message.isEmpty()) {
            const QString line = TraceLine::timestamp() + u" : "_s + message + u'\n';
            append(TraceLine::namingThisProduct(line));
        }
        writeOut(flush);
    });
}
