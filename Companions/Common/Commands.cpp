#include "Companions/Common/Commands.h"

#include <QSocketNotifier>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

LineInput::LineInput(QObject *parent)
    : QObject(parent), m_notifier(new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this))
{
    connect(m_notifier, &QSocketNotifier::activated, this, &LineInput::readAvailable);
}

void LineInput::readAvailable()
{
    char buffer[4096];
    const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
    if (count <= 0) {
        m_notifier->setEnabled(false);
        Q_EMIT ended();
        return;
    }
    m_pending.append(buffer, count);
    for (qsizetype end = m_pending.indexOf('\n'); end >= 0; end = m_pending.indexOf('\n')) {
        const QString line = QString::fromUtf8(m_pending.left(end)).trimmed();
        m_pending.remove(0, end + 1);
        if (!line.isEmpty() && !line.startsWith(u'#'))
            Q_EMIT lineRead(line);
    }
}

void CommandTable::add(const QString &command, const QString &usage, Handler handler)
{
    m_entries.insert_or_assign(command, Entry{usage, std::move(handler)});
}

CommandResult CommandTable::run(const QString &line) const
{
    const QString text = line.trimmed();
    const Entry *found = nullptr;
    qsizetype matched = 0;
    for (const auto &[command, entry] : m_entries) {
        const bool leads = text == command || text.startsWith(command + u' ');
        if (leads && command.size() > matched) {
            found = &entry;
            matched = command.size();
        }
    }
    if (!found)
        return CommandResult::failed(u"unknown command: "_s + text);
    const QString rest = text.mid(matched).trimmed();
    return found->handler(rest.simplified().split(u' ', Qt::SkipEmptyParts), rest);
}

QString CommandTable::help() const
{
    QStringList lines;
    for (const auto &[command, entry] : m_entries)
        lines.append(u"  "_s + entry.usage);
    return lines.join(u'\n');
}

void printLine(const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

void printResult(const CommandResult &result)
{
    const QString word = result.done ? u"ok"_s : u"error"_s;
    printLine(result.text.isEmpty() ? word : word + u' ' + result.text);
}
