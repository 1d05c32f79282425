#include "Platform/PropertyList.h"

#include "Platform/AtomicFile.h"
#include "Platform/BinaryPlist.h"
#include "Platform/XmlPlist.h"

#include <QDateTime>
#include <QScopeGuard>

#include <plist/plist.h>

#include <algorithm>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

// Lists are read by BinaryPlist and XmlPlist and not by the library. Of a binary list that one unfolds shared
// references (thirty small objects can ask for gigabytes), recurses as deep as the file says, and squeezes
// dates into 32 bits; in an XML list it takes the square of many a number: of texts whose hashes are the same,
// of keys, of escapes. XML becomes binary, and from there goes the same road; everything written is the
// library's.

namespace
{
using Kind = PlistValue::Kind;

struct PlistDeleter {
    void operator()(void *node) const { plist_free(node); }
};
using PlistNode = std::unique_ptr<void, PlistDeleter>;

void explain(QString *reason, QString words)
{
    if (reason)
        *reason = std::move(words);
}

/// Turns objects into variants while the limits hold.
class VariantBuilder
{
public:
    explicit VariantBuilder(const BinaryPlist &list) : m_list(list) {}

    bool build(const PlistValue &value, int depth, QVariant &out)
    {
        if (++m_values > Limits::ListValues)
            return refuse(u"too many values"_s);
        if (depth > PropertyList::MaxDepth)
            return refuse(u"nested too deeply"_s);
        switch (value.kind) {
        case Kind::Null:
            return true;
        case Kind::Boolean:
            out = BinaryPlist::boolean(value);
            return true;
        case Kind::Integer:
            return buildInteger(value, out);
        case Kind::Real:
            out = *BinaryPlist::real(value);
            return true;
        case Kind::Date:
            return buildDate(value, out);
        case Kind::Uid:
            out = QVariant::fromValue(PropertyListUid{*BinaryPlist::uid(value)});
            return true;
        case Kind::Data:
            if (!spend(value.length))
                return false;
            out = BinaryPlist::data(value);
            return true;
        case Kind::Ascii:
        case Kind::Utf16:
            if (!spend(2 * value.length))
                return false;
            out = *BinaryPlist::text(value);
            return true;
        case Kind::Array:
            return buildArray(value, depth, out);
        case Kind::Dictionary:
            return buildDictionary(value, depth, out);
        case Kind::Invalid:
            break;
        }
        return refuse(u"damaged object"_s);
    }

    [[nodiscard]] QString reason() const { return m_reason; }

private:
    bool refuse(QString words)
    {
        m_reason = std::move(words);
        return false;
    }

    bool spend(quint64 bytes)
    {
        m_payload += qint64(bytes);
        return m_payload <= PropertyList::MaxPayloadBytes || refuse(u"too much data"_s);
    }

    bool buildInteger(const PlistValue &value, QVariant &out)
    {
        if (const auto number = BinaryPlist::integer(value))
            out = qlonglong(*number);
        else if (const auto large = BinaryPlist::unsignedInteger(value))
            out = qulonglong(*large);
        else
            return refuse(u"integer of more than 64 bits"_s);
        return true;
    }

    bool buildDate(const PlistValue &value, QVariant &out)
    {
        const auto date = dateFromReferenceSeconds(*BinaryPlist::real(value));
        if (!date)
            return refuse(u"date out of range"_s);
        out = *date;
        return true;
    }

    bool buildArray(const PlistValue &array, int depth, QVariant &out)
    {
        QVariantList entries;
        for (quint64 i = 0; i < array.length; ++i) {
            QVariant entry;
            if (!build(m_list.element(array, i), depth + 1, entry))
                return false;
            entries.append(std::move(entry));
        }
        out = entries;
        return true;
    }

    bool buildDictionary(const PlistValue &dictionary, int depth, QVariant &out)
    {
        QVariantMap entries;
        for (quint64 i = 0; i < dictionary.length; ++i) {
            const auto keyObject = m_list.keyAt(dictionary, i);
            if (!keyObject.isText())
                return refuse(u"key that is no text"_s);
            if (!spend(2 * keyObject.length))
                return false;
            QVariant entry;
            if (!build(m_list.valueAt(dictionary, i), depth + 1, entry))
                return false;
            entries.insert(*BinaryPlist::text(keyObject), entry);
        }
        // XML has no element for a reference; it is written as this dictionary.
        const auto reference = entries.size() == 1 ? entries.value(u"CF$UID"_s) : QVariant();
        if (reference.typeId() == QMetaType::LongLong && reference.toLongLong() >= 0)
            out = QVariant::fromValue(PropertyListUid{reference.toULongLong()});
        else
            out = entries;
        return true;
    }

    const BinaryPlist &m_list;
    qint64 m_values = 0;
    qint64 m_payload = 0;
    QString m_reason;
};

/// Turns variants into nodes of the library; null, with a reason, where one has no form there.
class NodeBuilder
{
public:
    explicit NodeBuilder(PropertyList::Format format) : m_format(format) {}

    PlistNode build(const QVariant &value, int depth = 0)
    {
        if (depth > PropertyList::MaxDepth)
            return refuse(u"nested too deeply"_s);
        switch (value.typeId()) {
        case QMetaType::Bool:
            return PlistNode(plist_new_bool(value.toBool()));
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::LongLong:
            return PlistNode(plist_new_uint(quint64(value.toLongLong()))); // the library reads the sign back
        case QMetaType::ULong:
        case QMetaType::ULongLong:
            return unsignedNode(value.toULongLong());
        case QMetaType::Double:
        case QMetaType::Float:
            return PlistNode(plist_new_real(value.toDouble()));
        case QMetaType::QString:
            return textNode(value.toString());
        case QMetaType::QByteArray: {
            const auto bytes = value.toByteArray();
            return PlistNode(plist_new_data(bytes.constData(), quint64(bytes.size())));
        }
        case QMetaType::QDateTime:
            return dateNode(value.toDateTime());
        case QMetaType::QStringList:
        case QMetaType::QVariantList:
            return arrayNode(value.toList(), depth);
        case QMetaType::QVariantMap:
            return dictionaryNode(value.toMap(), depth);
        default:
            if (value.canConvert<PropertyListUid>())
                return PlistNode(plist_new_uid(value.value<PropertyListUid>().value));
            return refuse(u"value of a type that property lists do not have"_s);
        }
    }

    [[nodiscard]] QString reason() const { return m_reason; }

private:
    PlistNode refuse(QString words)
    {
        m_reason = std::move(words);
        return nullptr;
    }

    /// For what the library has no call for and makes only when it reads it.
    static PlistNode nodeFromXml(const QByteArray &element)
    {
        const auto xml = "<plist>" + element + "</plist>";
        plist_t node = nullptr;
        plist_from_xml(xml.constData(), quint32(xml.size()), &node);
        return PlistNode(node);
    }

    static PlistNode unsignedNode(quint64 value)
    {
        if (value <= quint64(std::numeric_limits<qint64>::max()))
            return PlistNode(plist_new_uint(value));
        return nodeFromXml("<integer>" + QByteArray::number(value) + "</integer>");
    }

    /// The library takes text up to the first zero, and writes XML that it cannot read for other control
    /// characters. Half of a surrogate pair has no form in UTF-8.
    bool isWritable(const QString &text) const
    {
        return text.isValidUtf16() && std::none_of(text.cbegin(), text.cend(), [this](QChar c) {
                   const auto unit = c.unicode();
                   const bool control = unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r';
                   return unit == 0 || (m_format == PropertyList::Format::Xml && (control || unit >= 0xFFFE));
               });
    }

    PlistNode textNode(const QString &text)
    {
        if (!isWritable(text))
            return refuse(u"text with an unwritable character"_s);
        return PlistNode(plist_new_string(text.toUtf8().constData()));
    }

    PlistNode dateNode(const QDateTime &date)
    {
        constexpr qint64 ReferenceEpoch = 978307200000; // 2001-01-01 in milliseconds since 1970
        const qint64 milliseconds = date.toMSecsSinceEpoch() - ReferenceEpoch;
        qint64 seconds = milliseconds / 1000;
        if (milliseconds % 1000 < 0)
            --seconds;
        const auto utc = date.toUTC();
        if (!date.isValid() || utc.date().year() < 1 || utc.date().year() > 9999)
            return refuse(u"date out of range"_s);
        if (seconds != qint64(qint32(seconds)))
            return nodeFromXml("<date>" + utc.toString(Qt::ISODate).toLatin1() + "</date>");
        return PlistNode(plist_new_date(qint32(seconds), qint32((milliseconds - seconds * 1000) * 1000)));
    }

    PlistNode arrayNode(const QVariantList &entries, int depth)
    {
        PlistNode array(plist_new_array());
        for (const auto &entry : entries) {
            auto node = build(entry, depth + 1);
            if (!node)
                return nullptr;
            plist_array_append_item(array.get(), node.release());
        }
        return array;
    }

    PlistNode dictionaryNode(const QVariantMap &entries, int depth)
    {
        PlistNode dictionary(plist_new_dict());
        for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
            if (!isWritable(entry.key()))
                return refuse(u"key with an unwritable character"_s);
            auto node = build(entry.value(), depth + 1);
            if (!node)
                return nullptr;
            plist_dict_set_item(dictionary.get(), entry.key().toUtf8().constData(), node.release());
        }
        return dictionary;
    }

    PropertyList::Format m_format;
    QString m_reason;
};

using PlistWriter = void (*)(plist_t, char **, quint32 *);

std::optional<QByteArray> bytesOf(plist_t node, PlistWriter writer)
{
    char *buffer = nullptr;
    quint32 length = 0;
    writer(node, &buffer, &length);
    const auto release = qScopeGuard([buffer] { plist_to_bin_free(buffer); });
    return buffer ? std::optional(QByteArray(buffer, qsizetype(length))) : std::nullopt;
}
} // namespace

std::optional<QByteArray> PropertyList::binaryFromXml(const QByteArray &bytes, QString *reason)
{
    if (bytes.size() > Limits::ListBytes) {
        explain(reason, u"too large"_s);
        return std::nullopt;
    }
    if (!QUtf8StringView(bytes.constData(), bytes.size()).isValidUtf8()) {
        explain(reason, u"no UTF-8"_s);
        return std::nullopt;
    }
    auto binary = binaryFromXmlPlist(bytes, {.depth = MaxDepth, .values = Limits::ListValues});
    if (!binary)
        explain(reason, u"no property list, or over a limit"_s);
    return binary;
}

std::optional<QVariant> PropertyList::parse(const QByteArray &bytes, QString *reason)
{
    if (bytes.size() > Limits::ListBytes) {
        explain(reason, u"too large"_s);
        return std::nullopt;
    }
    const auto form = BinaryPlist::hasMagic(bytes) ? std::optional(bytes) : binaryFromXml(bytes, reason);
    if (!form)
        return std::nullopt;
    const auto list = BinaryPlist::open(*form);
    if (!list) {
        explain(reason, u"damaged trailer"_s);
        return std::nullopt;
    }
    VariantBuilder builder(*list);
    QVariant value;
    if (builder.build(list->root(), 0, value))
        return value;
    explain(reason, builder.reason());
    return std::nullopt;
}

std::optional<QVariant> PropertyList::read(const QString &path, QString *reason, qint64 limit)
{
    const auto bytes = AtomicFile::read(path, limit);
    if (bytes)
        return parse(*bytes, reason);
    explain(reason, u"cannot be read"_s);
    return std::nullopt;
}

std::optional<QVariantMap> PropertyList::readDictionary(const QString &path, QString *reason, qint64 limit)
{
    const auto list = read(path, reason, limit);
    if (!list)
        return std::nullopt;
    if (list->typeId() == QMetaType::QVariantMap)
        return list->toMap();
    explain(reason, u"no dictionary"_s);
    return std::nullopt;
}

std::optional<QByteArray> PropertyList::serialize(const QVariant &list, Format format, QString *reason)
{
    NodeBuilder builder(format);
    const auto root = builder.build(list);
    if (!root) {
        explain(reason, builder.reason());
        return std::nullopt;
    }
    auto bytes = bytesOf(root.get(), format == Format::Binary ? &plist_to_bin : &plist_to_xml);
    if (!bytes) {
        explain(reason, u"the library made nothing of it"_s);
        return std::nullopt;
    }
    if (format == Format::Xml)
        bytes->replace("\r", "&#13;"); // readers take a bare one for a line feed
    // What nobody could read again would be lost with all that stands beside it.
    if (!parse(*bytes, reason))
        return std::nullopt;
    return bytes;
}

bool PropertyList::isSame(const QVariant &one, const QVariant &other)
{
    if (!one.isValid() || !other.isValid())
        return one.isValid() == other.isValid();
    const auto bytes = serialize(QVariantList{one}, Format::Binary);
    return bytes && bytes == serialize(QVariantList{other}, Format::Binary);
}

std::optional<QString> PropertyList::textValue(const QVariantMap &dictionary, const QString &key)
{
    const auto value = dictionary.value(key);
    return value.typeId() == QMetaType::QString ? std::optional(value.toString()) : std::nullopt;
}

std::optional<qint64> PropertyList::intValue(const QVariantMap &dictionary, const QString &key)
{
    const auto value = dictionary.value(key);
    return value.typeId() == QMetaType::LongLong ? std::optional(value.toLongLong()) : std::nullopt;
}

std::optional<bool> PropertyList::boolValue(const QVariantMap &dictionary, const QString &key)
{
    const auto value = dictionary.value(key);
    return value.typeId() == QMetaType::Bool ? std::optional(value.toBool()) : std::nullopt;
}
