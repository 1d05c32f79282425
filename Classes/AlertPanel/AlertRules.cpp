#include "Classes/AlertPanel/AlertRules.h"

#include "Platform/DisplayLine.h"

#include <QTextBoundaryFinder>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
int characterCount(QStringView line)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, line.data(), line.size());
    int count = 0;
    while (finder.toNextBoundary() >= 0)
        ++count;
    return count;
}

bool isControl(char16_t unit)
{
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
}

bool isLineEnd(char16_t unit)
{
    return unit == u'\n' || unit == u'\r' || unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator;
}
} // namespace

int AlertRules::calculateTotalLines(const std::optional<QString> &text)
{
    if (!text)
        return 0;
    int total = 0;
    for (const QStringView line : QStringView(*text).split(u'\n'))
        total += line.isEmpty() ? 1 : characterCount(line) / CharactersPerLine;
    return total;
}

int AlertRules::extraHeight(int totalLines)
{
    return std::max(totalLines - 1, 0) * PointsPerLine;
}

QString AlertRules::displayText(const QString &text, qsizetype maximum)
{
    QString shown;
    shown.reserve(std::min(text.size(), maximum) + 1);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text.at(i);
        const bool needsTwo = unit.isHighSurrogate() && i + 1 < text.size();
        if (shown.size() + (needsTwo ? 2 : 1) > maximum)
            return shown + QChar(0x2026);
        if (isLineEnd(unit.unicode())) {
            if (unit == u'\r' && i + 1 < text.size() && text.at(i + 1) == u'\n')
                ++i;
            shown += u'\n';
        } else if (unit == u'\t') {
            shown += u' ';
        } else if (!isControl(unit.unicode()) && !DisplayLine::turnsDirection(unit.unicode())) {
            shown += unit;
            if (needsTwo)
                shown += text.at(++i);
        }
    }
    return shown;
}

std::optional<AlertRules::Link> AlertRules::linkIn(const QString &message, const QString &sentence,
                                                   const QString &phrase)
{
    if (message != sentence || phrase.isEmpty())
        return std::nullopt;
    const qsizetype start = message.lastIndexOf(phrase);
    return start < 0 ? std::nullopt : std::optional(Link{start, phrase.size()});
}

QUrl AlertRules::permissionsHelpPage(const QString &publicWebHost)
{
    return QUrl(publicWebHost + u"/online-backup-mac-faq#pre-authorize"_s);
}
