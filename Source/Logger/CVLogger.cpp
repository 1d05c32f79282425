#include "Source/Logger/CVLogger.h"

#include "Platform/DispatchQueue.h"
#include "Platform/NotificationCenter.h"

#include <QFileInfo>
#include <QLocale>

#include <array>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{
constexpr char16_t Arrow[] = u"\u279E";
constexpr char16_t Star[] = u"\u2739";
constexpr char16_t Watch[] = u"\u231A";
constexpr char16_t IdBadge[] = u"\U0001F194";

struct Level {
    const char16_t *title;
    const char16_t *symbol;
};

constexpr std::array<Level, 6> Levels{{
    {u"Success", u"\u2705"},
    {u"Error", u"\u274C"},
    {u"Warning", u"\U0001F6A7"},
    {u"Information", u"\U0001F4E3"},
    {u"Alert", u"\U0001F6A8"},
    {u"", u""},
}};

const Level &levelOf(LogType type)
{
    return Levels[static_cast<std::size_t>(type)];
}

QString text(const char16_t *units)
{
    return QString::fromUtf16(units);
}

QString traceText(const TraceInfo &info)
{
    const QString arrow = u' ' + text(Arrow) + u' ';
    return u"[Trace]"_s + arrow + QFileInfo(info.fileName).fileName() + arrow + info.functionName + u" #"_s +
           QString::number(info.lineNumber);
}
} // namespace

CVLogger::CVLogger(Sink sink, const Clock &clock) : m_sink(std::move(sink)), m_clock(clock)
{
}

CVLogger &CVLogger::log()
{
    static auto &clock = *new SystemClock;
    static auto &logger =
        *new CVLogger([](const QString &line) { std::puts(line.toUtf8().constData()); }, clock);
    return logger;
}

QString CVLogger::time() const
{
    return QLocale::c().toString(m_clock.now(), options.logDateFormat);
}

bool CVLogger::passes(LogType type, const QString &file) const
{
    const bool typePasses = options.filterLogs.empty() || options.filterLogs.contains(type);
    return typePasses && !options.filterFiles.contains(QFileInfo(file).fileName());
}

QString CVLogger::fullForm(const QString &id, const QString &details, LogType type) const
{
    const auto symbol = [this](const char16_t *units) { return m_emojis ? text(units) : QString(); };
    QString title = m_titles ? text(levelOf(type).title) : QString();
    if (options.capitalizeTitles)
        title = title.toUpper();
    title = (symbol(levelOf(type).symbol) + u' ' + title).trimmed();

    QString line;
    if (!title.isEmpty())
        line += u'[' + title + u"] "_s;
    if (!options.hideLogsTime)
        line += u'[' + symbol(Watch) + time() + u"] "_s;
    if (!id.isEmpty())
        line += u'[' + (symbol(IdBadge) + u' ' + id).trimmed() + u']';
    if (!details.isEmpty()) {
        const QString stars = symbol(Star) + symbol(Star);
        line += u' ' + symbol(Arrow) + u' ' + stars +
                (options.capitalizeDetails ? details.toUpper() : details) + stars;
    }
    return line;
}

QString CVLogger::plainForm(const QString &id, const QString &details) const
{
    const QString arrow = m_emojis ? text(Arrow) : QString();
    QString line;
    if (!options.hideLogsTime)
        line += u'[' + time() + u"] "_s;
    if (!id.isEmpty())
        line += u" ID "_s + arrow + u' ' + id;
    if (!details.isEmpty())
        line += u" Details "_s + arrow + u' ' + (options.capitalizeDetails ? details.toUpper() : details);
    return line;
}

void CVLogger::enter(const QString &id, const QString &details, LogType type, const Where &where, Origin origin)
{
    if (options.disable)
        return;
    if (options.printOnlyIfDebugMode) {
        m_sink(
            u"Printer can't logs as RELEASE mode is active and you have set 'printOnlyIfDebugMode' to 'true'."_s);
        return;
    }
    const TraceInfo info{QString::fromUtf8(where.file_name()), QString::fromUtf8(where.function_name()),
                         static_cast<int>(where.line())};
    if (options.onLogCompletion && origin == Origin::Caller)
        options.onLogCompletion(id, details, info.fileName, info.lineNumber, info.functionName);
    if (!passes(type, info.fileName))
        return;

    const bool plain = options.plainLog || type == LogType::plain;
    PLog entry{
        id, details, type, m_clock.now(), info, plain ? plainForm(id, details) : fullForm(id, details, type),
        {}};
    if (options.keepAutoTracing && origin == Origin::Caller)
        entry.printableTrace = traceText(info);

    m_sink(entry.printableLog);
    if (!entry.printableTrace.isEmpty())
        m_sink(entry.printableTrace);
    if (options.addLineAfterEachPrint)
        m_sink(QString(88, u'_'));
    if (origin == Origin::Logger)
        return;
    if (options.keepTracking)
        m_arrayLogs.push_back(std::move(entry));
    NotificationCenter::local().post(QLatin1StringView(LogAddedNotification));
}

void CVLogger::show(const QString &id, const QString &details, LogType type, Where where)
{
    enter(id, details, type, where, Origin::Caller);
}

void CVLogger::showInFuture(const QString &id, const QString &details, LogType type,
                            std::chrono::milliseconds after, Where where)
{
    DispatchQueue::main().after(after, [this, id, details, type, where] { show(id, details, type, where); });
}

void CVLogger::trace(Where where)
{
    if (options.printOnlyIfDebugMode) {
        enter({},
              u"Printer can't trace as RELEASE mode is active and you have set "
              "'printOnlyIfDebugMode' to 'true'."_s,
              LogType::plain, where, Origin::Logger);
        return;
    }
    if (!options.disable) {
        m_sink(traceText({QString::fromUtf8(where.file_name()), QString::fromUtf8(where.function_name()),
                          static_cast<int>(where.line())}));
    }
}

std::vector<PLog> CVLogger::getAllLogs(const std::set<LogType> &filterLogTypes) const
{
    if (filterLogTypes.empty())
        return m_arrayLogs;
    std::vector<PLog> chosen;
    for (const PLog &entry : m_arrayLogs) {
        if (filterLogTypes.contains(entry.logType))
            chosen.push_back(entry);
    }
    return chosen;
}

void CVLogger::all(bool showTrace, const std::set<LogType> &filterLogTypes) const
{
    if (m_arrayLogs.empty()) {
        m_sink(u"No tracked logs. To track logs, you need to set 'keepTracking' to 'true' and 'disable' "
               "is not set to 'true'."_s);
        return;
    }
    for (const PLog &entry : getAllLogs(filterLogTypes)) {
        m_sink(entry.printableLog);
        if (showTrace && !entry.printableTrace.isEmpty())
            m_sink(entry.printableTrace);
    }
}

void CVLogger::success(const QString &id, const QString &details, Where where)
{
    show(id, details, LogType::success, where);
}

void CVLogger::error(const QString &id, const QString &details, Where where)
{
    show(id, details, LogType::error, where);
}

void CVLogger::warning(const QString &id, const QString &details, Where where)
{
    show(id, details, LogType::warning, where);
}

void CVLogger::information(const QString &id, const QString &details, Where where)
{
    show(id, details, LogType::information, where);
}

void CVLogger::alert(const QString &id, const QString &details, Where where)
{
    show(id, details, LogType::alert, where);
}

void CVLogger::success(const QString &details, Where where)
{
    success({}, details, where);
}

void CVLogger::error(const QString &details, Where where)
{
    error({}, details, where);
}

void CVLogger::warning(const QString &details, Where where)
{
    warning({}, details, where);
}

void CVLogger::information(const QString &details, Where where)
{
    information({}, details, where);
}

void CVLogger::alert(const QString &details, Where where)
{
    alert({}, details, where);
}
