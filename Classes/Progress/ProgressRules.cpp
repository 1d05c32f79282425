#include "Classes/Progress/ProgressRules.h"

#include "Extensions/TextFormat.h"
#include "Platform/DisplayLine.h"

#include <array>
#include <charconv>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::string_view Ellipsis = "\u2026";

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}
} // namespace

namespace ProgressRules
{
std::optional<ProgressType> progressType(std::optional<qint64> number)
{
    if (!number || *number < 0 || *number > static_cast<qint64>(ProgressType::Complete))
        return std::nullopt;
    return static_cast<ProgressType>(*number);
}

FieldGroup groupForFigures(std::optional<qint64> operationDetailedType)
{
    const bool countsNoFiles =
        operationDetailedType && *operationDetailedType >= 8 && *operationDetailedType <= 10;
    return countsNoFiles ? FieldGroup::BackupInfo : FieldGroup::FileCounts;
}

std::optional<FieldGroup> groupAtStart(std::optional<qint64> operationType, const std::optional<QString> &dedup)
{
    if (!operationType)
        return std::nullopt;
    if (*operationType != 0 || dedup == u"off"_s)
        return FieldGroup::BackupInfo;
    return dedup == u"on"_s ? std::optional(FieldGroup::FileCounts) : std::nullopt;
}

bool canBePaused(std::optional<qint64> operationType)
{
    return operationType != 2 && operationType != 3;
}

std::optional<qint64> percentage(std::string_view text)
{
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    qint64 number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

QString percentText(int percent)
{
    constexpr int Whole = 100;
    static const auto texts = [] { // asked for with every report
        std::array<QString, Whole + 1> list;
        for (int i = 0; i <= Whole; ++i)
            list[std::size_t(i)] = u"%1 %"_s.arg(i);
        return list;
    }();
    const bool isUsual = percent >= 0 && percent <= Whole;
    return isUsual ? texts[std::size_t(percent)] : u"%1 %"_s.arg(percent);
}

QString fileLine(const QString &verb, const QString &name, const QString &size)
{
    const bool isSync = verb.contains("sync"_L1, Qt::CaseInsensitive);
    return formatted(u"%@ %@  (%@)"_s, {isSync ? QString() : verb, name, size});
}

std::string shortened(std::string_view utf8)
{
    if (utf8.size() <= LongestText)
        return std::string(utf8);
    const std::size_t half = (LongestText - Ellipsis.size()) / 2;
    std::string_view head = utf8.substr(0, half);
    std::string_view tail = utf8.substr(utf8.size() - half);
    while (!head.empty() && isContinuation(utf8[head.size()]))
        head.remove_suffix(1);
    while (!tail.empty() && isContinuation(tail.front()))
        tail.remove_prefix(1);
    return std::string(head).append(Ellipsis).append(tail);
}

QString presentable(std::string_view utf8)
{
    const std::string bytes = shortened(utf8);
    return DisplayLine::singleLine(QString::fromUtf8(bytes.data(), qsizetype(bytes.size())));
}

QString titleLine(const QString &account, const QString &what)
{
    return account + u" : "_s + what;
}
} // namespace ProgressRules
