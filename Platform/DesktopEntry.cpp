#include "Platform/DesktopEntry.h"

#include <QStringDecoder>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr QLatin1StringView GroupHeader("[Desktop Entry]");

constexpr std::pair<char16_t, char16_t> Escapes[] = {
    {u'\\', u'\\'}, {u'\n', u'n'}, {u'\r', u'r'}, {u'\t', u't'}};

QString escaped(const QString &value)
{
    QString text;
    for (qsizetype index = 0; index < value.size(); ++index) {
        const char16_t unit = value[index].unicode();
        const auto escape = std::find_if(std::begin(Escapes), std::end(Escapes),
                                         [unit](const auto &pair) { return pair.first == unit; });
        if (escape != std::end(Escapes))
            text.append(u'\\').append(QChar(escape->second));
        else if (unit == u' ' && (index == 0 || index + 1 == value.size())) // readers may trim a value
            text.append("\\s"_L1);
        else
            text.append(QChar(unit));
    }
    return text;
}

/// Not QStringView::trimmed(), which takes the blanks of every script.
QStringView trimmed(QStringView text)
{
    const auto isBlank = [](QChar unit) { return unit == u' ' || unit == u'\t' || unit == u'\r'; };
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.mid(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

QString unescaped(QStringView text)
{
    QString value;
    for (qsizetype index = 0; index < text.size(); ++index) {
        if (text[index] != u'\\' || index + 1 == text.size()) {
            value.append(text[index]);
            continue;
        }
        const char16_t letter = text[++index].unicode();
        const auto escape = std::find_if(std::begin(Escapes), std::end(Escapes),
                                         [letter](const auto &pair) { return pair.second == letter; });
        if (escape != std::end(Escapes))
            value.append(QChar(escape->first));
        else if (letter == u's')
            value.append(u' ');
        else
            value.append(u'\\').append(QChar(letter));
    }
    return value;
}

bool partsWords(QChar unit)
{
    return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r';
}

QString execWord(const QString &word)
{
    static const QString Reserved = u" \t\n\r\"'\\><~|&;$*?#()`"_s;
    const bool quoted =
        word.isEmpty() || std::any_of(word.cbegin(), word.cend(), [](QChar c) { return Reserved.contains(c); });
    QString text;
    for (const QChar unit : word) {
        if (unit == u'%')
            text.append(u'%');
        else if (unit == u'"' || unit == u'`' || unit == u'$' || unit == u'\\')
            text.append(u'\\');
        text.append(unit);
    }
    return quoted ? u'"' + text + u'"' : text;
}

/// A word without its field codes; none where nothing else was in it.
std::optional<QString> withoutFieldCodes(const QString &word)
{
    QString text;
    bool hadCode = false;
    for (qsizetype index = 0; index < word.size(); ++index) {
        const bool isCode = word[index] == u'%' && index + 1 < word.size();
        if (isCode && word[++index] != u'%')
            hadCode = true;
        else
            text.append(word[index]);
    }
    return hadCode && text.isEmpty() ? std::nullopt : std::optional(text);
}

/// Takes the word that begins at `index`, quotes resolved, and leaves `index` behind it; none for an open
/// quote.
std::optional<QString> takeWord(const QString &exec, qsizetype &index)
{
    QString word;
    bool quoted = false;
    for (; index < exec.size(); ++index) {
        const QChar unit = exec[index];
        if (unit == u'"')
            quoted = !quoted;
        else if (quoted && unit == u'\\' && index + 1 < exec.size())
            word.append(exec[++index]);
        else if (!quoted && partsWords(unit))
            break;
        else
            word.append(unit);
    }
    return quoted ? std::nullopt : std::optional(word);
}
} // namespace

std::optional<DesktopEntry::Keys> DesktopEntry::parse(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    Keys keys;
    bool groupFound = false;
    bool inGroup = false;
    for (const QStringView whole : QStringView(text).split(u'\n')) {
        const QStringView line = trimmed(whole);
        const qsizetype equals = line.indexOf(u'=');
        if (line.startsWith(u'[')) {
            inGroup = line == GroupHeader;
            groupFound = groupFound || inGroup;
        } else if (inGroup && !line.startsWith(u'#') && equals > 0) {
            const QString key = trimmed(line.left(equals)).toString();
            if (!keys.contains(key))
                keys.insert(key, unescaped(trimmed(line.mid(equals + 1))));
        }
    }
    return groupFound ? std::optional(keys) : std::nullopt;
}

QByteArray DesktopEntry::serialize(const Keys &keys)
{
    QString text = GroupHeader + u'\n';
    for (auto entry = keys.cbegin(); entry != keys.cend(); ++entry)
        text += entry.key() + u'=' + escaped(entry.value()) + u'\n';
    return text.toUtf8();
}

QString DesktopEntry::execOfWords(const QStringList &words)
{
    QStringList quoted;
    for (const QString &word : words)
        quoted.append(execWord(word));
    return quoted.join(u' ');
}

std::optional<QStringList> DesktopEntry::wordsOfExec(const QString &exec)
{
    QStringList words;
    for (qsizetype index = 0; index < exec.size();) {
        if (partsWords(exec[index])) {
            ++index;
            continue;
        }
        const auto word = takeWord(exec, index);
        if (!word)
            return std::nullopt;
        if (const auto text = withoutFieldCodes(*word))
            words.append(*text);
    }
    return words.isEmpty() ? std::nullopt : std::optional(words);
}
