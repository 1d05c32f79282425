#include "Platform/XmlPlist.h"

#include "Platform/BinaryPlistWriter.h"

#include <QChar>
#include <QStringView>

#include <span>
#include <utility>
#include <vector>

#include <locale.h>
#include <stdlib.h>
#include <time.h>

namespace
{
using Reference = BinaryPlistWriter::Reference;

constexpr QByteArrayView ByteOrderMark("\xEF\xBB\xBF");
constexpr QByteArrayView CommentStart("<!--"), CommentEnd("-->");
constexpr QByteArrayView CdataStart("<![CDATA["), CdataEnd("]]>");

struct Tag {
    QByteArrayView name;
    bool closes = false;  // </name>
    bool isEmpty = false; // <name/>
};

/// A collection whose end has not come yet.
struct Collection {
    bool isDictionary = false;
    bool awaitsValue = false; // behind a key
    size_t firstKey = 0;
    size_t firstValue = 0;
};

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/// The character that `name` stands for between "&" and ";"; 0 when there is none.
char32_t character(QByteArrayView name)
{
    constexpr std::pair<QByteArrayView, char32_t> Names[] = {
        {"lt", U'<'}, {"gt", U'>'}, {"amp", U'&'}, {"quot", U'"'}, {"apos", U'\''}};
    for (const auto &[known, c] : Names) {
        if (name == known)
            return c;
    }
    if (!name.startsWith('#'))
        return 0;
    const auto number = name.sliced(1);
    const bool hexadecimal = number.startsWith('x') || number.startsWith('X');
    bool isNumber = false;
    const char32_t code = hexadecimal ? number.sliced(1).toUInt(&isNumber, 16) : number.toUInt(&isNumber);
    const bool exists = isNumber && code <= QChar::LastValidCodePoint && !QChar::isSurrogate(code);
    return exists ? code : 0;
}

/// With a point in every language.
std::optional<double> realNumber(const QByteArray &text)
{
    static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
    char *end = nullptr;
    const double number = ::strtod_l(text.constData(), &end, plain);
    return end == text.constData() ? std::nullopt : std::optional(number);
}

std::optional<double> secondsSince2001(const QByteArray &text)
{
    constexpr double ReferenceEpoch = 978307200; // 2001-01-01 in seconds since 1970
    struct tm fields {
    };
    if (!::strptime(text.constData(), " %Y-%m-%dT%H:%M:%S", &fields))
        return std::nullopt;
    return double(::timegm(&fields)) - ReferenceEpoch;
}

class XmlPlistReader
{
public:
    XmlPlistReader(QByteArrayView xml, XmlPlistLimits limits) : m_xml(xml), m_limits(limits) {}

    std::optional<QByteArray> read()
    {
        if (m_xml.startsWith(ByteOrderMark))
            m_position = ByteOrderMark.size();
        while (!m_root) {
            const auto tag = nextTag();
            if (!tag || !take(*tag))
                return std::nullopt;
        }
        // A list without its end was cut off while somebody wrote it.
        const auto end = m_isWrapped ? nextTag() : std::nullopt;
        if (m_isWrapped && (!end || !end->closes || end->name != "plist"))
            return std::nullopt;
        return m_list.finish(*m_root);
    }

private:
    [[nodiscard]] QByteArrayView rest() const { return m_xml.sliced(m_position); }

    /// Moves behind the next `end`, which has to come.
    bool skipPast(QByteArrayView end)
    {
        const auto found = m_xml.indexOf(end, m_position);
        m_position = found + end.size();
        return found >= 0;
    }

    /// The next tag outside of texts. Only blanks, comments and what may precede a root are passed over.
    std::optional<Tag> nextTag()
    {
        for (;;) {
            while (m_position < m_xml.size() && isBlank(m_xml[m_position]))
                ++m_position;
            bool passed = false;
            if (rest().startsWith(CommentStart))
                passed = skipComment();
            else if (rest().startsWith("<?"))
                passed = skipPast("?>");
            else if (rest().startsWith("<!DOCTYPE"))
                passed = skipDocumentType();
            else
                return readTag();
            if (!passed)
                return std::nullopt;
        }
    }

    bool skipComment()
    {
        m_position += CommentStart.size();
        return skipPast(CommentEnd);
    }

    bool skipDocumentType()
    {
        while (m_position < m_xml.size() && m_xml[m_position] != '>' && m_xml[m_position] != '[')
            ++m_position;
        return skipPast(rest().startsWith('[') ? "]>" : ">");
    }

    /// The tag that begins here. Its attributes have no meaning, but may hold the character that ends it.
    std::optional<Tag> readTag()
    {
        if (!rest().startsWith('<'))
            return std::nullopt;
        const auto start = m_position + 1;
        auto end = start;
        while (end < m_xml.size() && m_xml[end] != '>') {
            const char c = m_xml[end];
            if (c == '"' || c == '\'')
                end = m_xml.indexOf(c, end + 1);
            if (c == '<' || end < 0)
                return std::nullopt;
            ++end;
        }
        if (end >= m_xml.size())
            return std::nullopt;
        m_position = end + 1;

        auto inside = m_xml.sliced(start, end - start);
        Tag tag{.name = {}, .closes = inside.startsWith('/'), .isEmpty = inside.endsWith('/')};
        if (tag.closes && tag.isEmpty)
            return std::nullopt;
        inside = inside.sliced(tag.closes ? 1 : 0).chopped(tag.isEmpty ? 1 : 0);
        qsizetype length = 0;
        while (length < inside.size() && !isBlank(inside[length]))
            ++length;
        tag.name = inside.first(length);
        return tag;
    }

    bool take(const Tag &tag)
    {
        if (tag.closes)
            return closeCollection(tag.name);
        if (tag.name == "plist")
            return m_open.empty() && !tag.isEmpty && !std::exchange(m_isWrapped, true);
        if (tag.name == "dict" || tag.name == "array")
            return openCollection(tag);
        if (tag.name == "key")
            return addKey(tag);
        const auto object = readText(tag) ? scalar(tag.name) : std::nullopt;
        return object && place(*object);
    }

    bool openCollection(const Tag &tag)
    {
        if (m_open.size() >= m_limits.depth)
            return false;
        m_open.push_back({.isDictionary = tag.name == "dict",
                          .awaitsValue = false,
                          .firstKey = m_keys.size(),
                          .firstValue = m_values.size()});
        return !tag.isEmpty || closeCollection(tag.name);
    }

    bool closeCollection(QByteArrayView name)
    {
        if (m_open.empty() || name != (m_open.back().isDictionary ? "dict" : "array") ||
            m_open.back().awaitsValue)
            return false;
        const auto collection = m_open.back();
        m_open.pop_back();
        const std::span keys(m_keys.begin() + qsizetype(collection.firstKey), m_keys.end());
        const std::span values(m_values.begin() + qsizetype(collection.firstValue), m_values.end());
        const auto object =
            collection.isDictionary ? m_list.addDictionary(keys, values) : m_list.addArray(values);
        m_keys.resize(collection.firstKey);
        m_values.resize(collection.firstValue);
        return place(object);
    }

    bool addKey(const Tag &tag)
    {
        if (m_open.empty() || !m_open.back().isDictionary || std::exchange(m_open.back().awaitsValue, true))
            return false;
        if (!readText(tag))
            return false;
        m_keys.push_back(m_list.addText(m_text));
        return true;
    }

    /// Puts an object where it belongs: into the innermost collection, or at the root.
    bool place(Reference object)
    {
        if (++m_placed > m_limits.values)
            return false;
        if (m_open.empty()) {
            m_root = object;
            return true;
        }
        if (m_open.back().isDictionary && !std::exchange(m_open.back().awaitsValue, false))
            return false;
        m_values.push_back(object);
        return true;
    }

    /// Takes what stands between an opening tag and its end, which has to be the next tag, as the text.
    bool readText(const Tag &tag)
    {
        m_text.resize(0);
        while (!tag.isEmpty) {
            const auto start = m_position;
            m_position = m_xml.indexOf('<', start);
            if (m_position < 0 || !appendDecoded(m_xml.sliced(start, m_position - start)))
                return false;
            if (rest().startsWith(CommentStart)) {
                if (!skipComment())
                    return false;
            } else if (rest().startsWith(CdataStart)) {
                const auto content = m_position + CdataStart.size();
                if (!skipPast(CdataEnd))
                    return false;
                m_text.append(m_xml.sliced(content, m_position - CdataEnd.size() - content));
            } else {
                const auto end = readTag();
                return end && end->closes && end->name == tag.name;
            }
        }
        return true;
    }

    bool appendDecoded(QByteArrayView raw)
    {
        for (auto escape = raw.indexOf('&'); escape >= 0; escape = raw.indexOf('&')) {
            const auto end = raw.indexOf(';', escape);
            const auto c = end < 0 ? 0 : character(raw.sliced(escape + 1, end - escape - 1));
            if (c == 0)
                return false;
            m_text.append(raw.first(escape));
            if (c < 0x80)
                m_text.append(char(c));
            else
                m_text.append(QStringView(QChar::fromUcs4(c)).toUtf8());
            raw = raw.sliced(end + 1);
        }
        m_text.append(raw);
        return true;
    }

    /// The object that an element of this name makes of the text.
    std::optional<Reference> scalar(QByteArrayView name)
    {
        if (name == "string")
            return m_list.addText(m_text);
        if (name == "true" || name == "false")
            return m_list.addBoolean(name == "true");
        if (name == "data")
            return m_list.addData(QByteArray::fromBase64(m_text));
        if (name == "integer")
            return integer(QByteArrayView(m_text).trimmed());
        if (name == "real") {
            const auto number = realNumber(m_text);
            return number ? std::optional(m_list.addReal(*number)) : std::nullopt;
        }
        if (name == "date") {
            const auto seconds = secondsSince2001(m_text);
            return seconds ? std::optional(m_list.addDate(*seconds)) : std::nullopt;
        }
        return std::nullopt;
    }

    std::optional<Reference> integer(QByteArrayView digits)
    {
        const int base = digits.contains('x') || digits.contains('X') ? 16 : 10;
        bool fits = false;
        if (const auto number = digits.toLongLong(&fits, base); fits)
            return m_list.addInteger(number);
        if (const auto number = digits.toULongLong(&fits, base); fits)
            return m_list.addUnsigned(number);
        return std::nullopt;
    }

    QByteArrayView m_xml;
    XmlPlistLimits m_limits;
    qsizetype m_position = 0;
    qint64 m_placed = 0;
    BinaryPlistWriter m_list;
    std::vector<Collection> m_open; // the innermost last
    std::vector<Reference> m_keys;  // of all that are open, one behind the other
    std::vector<Reference> m_values;
    QByteArray m_text;
    std::optional<Reference> m_root;
    bool m_isWrapped = false; ///< in an element that has to end behind the root
};
} // namespace

std::optional<QByteArray> binaryFromXmlPlist(QByteArrayView xml, XmlPlistLimits limits)
{
    return XmlPlistReader(xml, limits).read();
}
