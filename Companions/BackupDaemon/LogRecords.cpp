#include "Companions/BackupDaemon/LogRecords.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{
struct Element {
    const char *name;
    QString LogRecord::*value;
};

/// In the order of the file.
constexpr std::array<Element, 11> Elements = {{
    {"datetime", &LogRecord::datetime},
    {"uname", &LogRecord::uname},
    {"files", &LogRecord::files},
    {"filesinsync", &LogRecord::filesinsync},
    {"status", &LogRecord::status},
    {"duration", &LogRecord::duration},
    {"content", &LogRecord::content},
    {"optype", &LogRecord::optype},
    {"lpath", &LogRecord::lpath},
    {"logfile", &LogRecord::logfile},
    {"logname", &LogRecord::logname},
}};

bool fitsIntoXml(QChar character)
{
    const char16_t unit = character.unicode();
    return (unit >= u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r') && unit < 0xfffe;
}

QByteArray escaped(const QString &text)
{
    static constexpr QStringView Special = u"&<>\r";
    const auto isPlain = [](QChar character) { return fitsIntoXml(character) && !Special.contains(character); };
    if (std::all_of(text.cbegin(), text.cend(), isPlain))
        return text.toUtf8();
    QString safe;
    for (const QChar character : text) {
        if (character == u'&')
            safe += "&amp;"_L1;
        else if (character == u'<')
            safe += "&lt;"_L1;
        else if (character == u'>')
            safe += "&gt;"_L1;
        else if (character == u'\r') // as it stands it would be read as a line feed
            safe += "&#13;"_L1;
        else if (fitsIntoXml(character))
            safe += character;
    }
    return safe.toUtf8();
}

LogRecord readRecord(QXmlStreamReader &reader)
{
    LogRecord record;
    while (reader.readNextStartElement()) {
        const auto known = std::find_if(Elements.begin(), Elements.end(), [&reader](const Element &element) {
            return reader.name() == QLatin1StringView(element.name);
        });
        const QString text = reader.readElementText(QXmlStreamReader::SkipChildElements);
        if (known != Elements.end())
            record.*(known->value) = text;
    }
    return record;
}
} // namespace

QByteArray recordBlock(const LogRecord &record)
{
    QByteArray block = "<record>\n";
    for (const Element &element : Elements)
        block.append("\t<")
            .append(element.name)
            .append('>')
            .append(escaped(record.*(element.value)))
            .append("</")
            .append(element.name)
            .append(">\n");
    return block.append("</record>\n");
}

QByteArray dayFileHead()
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<records>\n";
}

QByteArray dayFileTail()
{
    return "</records>\n";
}

QByteArray dayFileBytes(const LogRecords &records)
{
    QByteArray bytes = dayFileHead();
    for (const LogRecord &record : records)
        bytes += recordBlock(record);
    return bytes + dayFileTail();
}

std::optional<LogRecords> dayRecords(const QByteArray &bytes)
{
    QXmlStreamReader reader(bytes);
    LogRecords records;
    if (reader.readNextStartElement()) {
        while (reader.readNextStartElement()) {
            if (reader.name() == "record"_L1)
                records.push_back(readRecord(reader));
            else
                reader.skipCurrentElement();
        }
    }
    while (!reader.atEnd())
        reader.readNext();
    return reader.hasError() ? std::nullopt : std::optional(records);
}
