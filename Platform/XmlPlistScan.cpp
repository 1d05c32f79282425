#include "Platform/XmlPlistScan.h"

#include <QVarLengthArray>

#include <algorithm>

// The scan need not agree with the parser behind it on what is well formed; it only must never count fewer
// levels than the parser may see. So everything by which the two could part is refused, where property lists
// have no use for it: quotes in tags after the first, instructions and declarations between elements. What is
// passed over counts as if each opening tag in it opened a level.

namespace
{
class NestingScan
{
public:
    NestingScan(QByteArrayView xml, XmlPlistLimits limits) : m_xml(xml), m_limits(limits) {}

    bool isWellFormed()
    {
        for (auto open = m_xml.indexOf('<'); open >= 0; open = m_xml.indexOf('<', m_position)) {
            if (!take(open))
                return false;
        }
        return m_tags > 0 && m_open.isEmpty();
    }

private:
    bool take(qsizetype open)
    {
        const auto rest = m_xml.sliced(open + 1);
        if (rest.startsWith("!--"))
            return passOver(open, open + 4, "-->");
        if (rest.startsWith("![CDATA["))
            return passOver(open, open + 9, "]]>");
        if (rest.startsWith('?'))
            return m_tags == 0 && passOver(open, open + 2, "?>");
        if (rest.startsWith('!'))
            return m_tags == 0 && passOver(open, open + 2, ">");
        const auto close = rest.indexOf('>');
        m_position = open + 1 + close + 1;
        return close > 0 && takeTag(rest.first(close));
    }

    bool passOver(qsizetype open, qsizetype from, QByteArrayView end)
    {
        const auto found = m_xml.indexOf(end, from);
        if (found < 0)
            return false;
        m_position = found + end.size();
        const auto passed = m_xml.sliced(open, m_position - open);
        for (const QByteArrayView name : {QByteArrayView("<array"), QByteArrayView("<dict")})
            m_passedLevels += passed.count(name);
        return m_open.size() + m_passedLevels <= m_limits.depth;
    }

    bool takeTag(QByteArrayView tag)
    {
        if (++m_tags > 2 * m_limits.elements)
            return false;
        const bool quoted = tag.contains('"') || tag.contains('\'');
        if (quoted && m_tags > 1)
            return false;
        const bool closes = tag.startsWith('/');
        const bool empty = tag.endsWith('/');
        if (closes && empty)
            return false;
        const auto name = tag.sliced(closes ? 1 : 0).chopped(empty ? 1 : 0).trimmed();
        if (name == "integer" && !closes && !empty)
            return startsWithInteger(m_xml.sliced(m_position));
        if (!name.startsWith("array") && !name.startsWith("dict"))
            return true;
        if (closes) {
            if (m_open.isEmpty() || m_open.back() != name)
                return false;
            m_open.removeLast();
        } else if (!empty) {
            m_open.append(name);
        }
        return m_open.size() + m_passedLevels <= m_limits.depth;
    }

    /// Decimal or hexadecimal digits of at most 64 bits up to the next tag; the parser would put another number
    /// in place of anything else.
    static bool startsWithInteger(QByteArrayView text)
    {
        const auto digits = text.first(std::max<qsizetype>(0, text.indexOf('<'))).trimmed();
        const int base = digits.contains('x') || digits.contains('X') ? 16 : 10;
        bool isSigned = false, isUnsigned = false;
        (void)digits.toLongLong(&isSigned, base);
        (void)digits.toULongLong(&isUnsigned, base);
        return isSigned || isUnsigned;
    }

    QByteArrayView m_xml;
    XmlPlistLimits m_limits;
    QVarLengthArray<QByteArrayView, 32> m_open;
    qsizetype m_position = 0;
    qint64 m_tags = 0;
    qint64 m_passedLevels = 0;
};
} // namespace

bool xmlPlistIsWellFormed(QByteArrayView xml, XmlPlistLimits limits)
{
    return NestingScan(xml, limits).isWellFormed();
}
