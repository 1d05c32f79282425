#include "Platform/CommandLines.h"

#include "Platform/Limits.h"

#include <QDir>
#include <QFile>

#include <regex.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// A compiled basic regular expression.
class Pattern
{
public:
    explicit Pattern(const QString &text)
        : m_isValid(regcomp(&m_expression, QFile::encodeName(text).constData(), REG_NOSUB) == 0)
    {
    }
    ~Pattern()
    {
        if (m_isValid)
            regfree(&m_expression);
    }
    Pattern(const Pattern &) = delete;

    [[nodiscard]] bool matches(const QString &line) const
    {
        return m_isValid && regexec(&m_expression, QFile::encodeName(line).constData(), 0, nullptr, 0) == 0;
    }

private:
    regex_t m_expression{};
    bool m_isValid;
};
} // namespace

QStringList runningCommandLines()
{
    QStringList lines;
    const QDir processes(u"/proc"_s);
    for (const QString &name : processes.entryList({u"[0-9]*"_s}, QDir::Dirs)) {
        struct stat facts {
        };
        const QString folder = processes.filePath(name);
        if (stat(QFile::encodeName(folder).constData(), &facts) != 0 || facts.st_uid != getuid())
            continue;
        QFile file(folder + u"/cmdline"_s);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        QByteArray words = file.read(Limits::CommandLineBytes);
        while (words.endsWith('\0'))
            words.chop(1);
        if (!words.isEmpty())
            lines.append(QFile::decodeName(words.replace('\0', ' ')));
    }
    return lines;
}

int occurrencesInLines(const QStringList &lines, const QString &pattern, const QString &path)
{
    if (path.isEmpty())
        return 0;
    const Pattern filter(pattern);
    qsizetype count = 0;
    for (const QString &line : lines) {
        if (filter.matches(line))
            count += line.count(path);
    }
    return int(count);
}
