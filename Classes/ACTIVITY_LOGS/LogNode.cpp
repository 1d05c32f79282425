#include "Classes/ACTIVITY_LOGS/LogNode.h"

using namespace Qt::StringLiterals;

namespace
{
/// Whether XML 1.0 can hold the character (https://www.w3.org/TR/xml/#charsets).
bool isCharacterOfXml(char32_t c)
{
    return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0x10FFFF);
}

/// A value as it may stand in an element. A reader takes a bare carriage return for a line feed.
QString inElement(const QString &value)
{
    QString xml;
    xml.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value[i];
        if (c.isHighSurrogate() && i + 1 < value.size() && value[i + 1].isLowSurrogate())
            xml += value.mid(i++, 2);
        else if (c == u'&')
            xml += "&amp;"_L1;
        else if (c == u'<')
            xml += "&lt;"_L1;
        else if (c == u'>')
            xml += "&gt;"_L1;
        else if (c == u'\r')
            xml += "&#13;"_L1;
        else if (isCharacterOfXml(c.unicode()))
            xml += c;
    }
    return xml;
}

/// A number as a number is written; anything else as it stands.
QString inOperationElement(const QString &optype)
{
    bool isNumber = false;
    const qlonglong number = optype.toLongLong(&isNumber);
    return isNumber ? QString::number(number) : inElement(optype);
}
} // namespace

std::optional<QString> LogNode::flattenSelfToXML() const
{
    const struct {
        QLatin1StringView element;
        QString text;
    } values[] = {
        {"datetime"_L1, inElement(datetime)}, {"uname"_L1, inElement(uname)},
        {"files"_L1, inElement(files)},       {"filesinsync"_L1, inElement(filesinsync)},
        {"status"_L1, inElement(status)},     {"duration"_L1, inElement(duration)},
        {"content"_L1, inElement(content)},   {"optype"_L1, inOperationElement(optype)},
        {"lpath"_L1, inElement(lpath)},       {"logfile"_L1, inElement(logfile)},
        {"logname"_L1, inElement(logname)},
    };
    QString block = u"<record>\n"_s;
    for (const auto &value : values)
        block += u"\t<"_s + value.element + u'>' + value.text + u"</"_s + value.element + u">\n"_s;
    return block + u"</record>\n"_s;
}
