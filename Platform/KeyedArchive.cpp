#include "Platform/KeyedArchive.h"

#include "Platform/PropertyList.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace
{
using Kind = PlistValue::Kind;

constexpr QLatin1StringView ClassKey("$class");
constexpr qint64 Version = 100000;
constexpr quint64 CostOfEntry = 64; // bytes that a list needs for each of its entries
constexpr int MaxDepth = 32;

/// Cheap, and enough to keep the few keys of a class apart.
size_t hintSlot(QLatin1StringView key)
{
    const auto letter = [key](qsizetype i) { return size_t(quint8(key.data()[i])); };
    return size_t(key.size()) * 17 + letter(key.size() / 2) * 9 + letter(0) * 3 + letter(key.size() - 1);
}

bool isText(const PlistValue &value, QLatin1StringView text)
{
    return BinaryPlist::equals(value, text);
}
} // namespace

std::optional<KeyedArchive> KeyedArchive::open(const QByteArray &bytes)
{
    auto form = BinaryPlist::hasMagic(bytes) ? std::optional(bytes) : PropertyList::binaryFromXml(bytes);
    if (!form || form->size() > Limits::ArchiveBytes)
        return std::nullopt;
    auto list = BinaryPlist::open(std::move(*form));
    if (!list)
        return std::nullopt;

    KeyedArchive archive(std::move(*list));
    const auto root = archive.m_list.root();
    archive.m_budget = Limits::ArchiveSteps;
    archive.m_top = archive.find(root, "$top"_L1);
    archive.m_objects = archive.find(root, "$objects"_L1);
    const bool archiver = isText(archive.find(root, "$archiver"_L1), "NSKeyedArchiver"_L1);
    const auto version = BinaryPlist::integer(archive.find(root, "$version"_L1));
    if (!archiver || version != Version || archive.m_top.kind != Kind::Dictionary ||
        archive.m_objects.kind != Kind::Array)
        return std::nullopt;
    return archive;
}

ArchiveObject KeyedArchive::decodeObject(QLatin1StringView key) const
{
    return {this, resolve(find(m_top, key))};
}

/// Follows a reference, once: the objects of an archive are never references themselves.
PlistValue KeyedArchive::resolve(const PlistValue &value) const
{
    auto reference = BinaryPlist::uid(value);
    if (!reference && value.kind == Kind::Dictionary &&
        value.length == 1) // the form that XML has for a reference
        reference = BinaryPlist::unsignedInteger(m_list.find(value, "CF$UID"_L1));
    if (!reference)
        return value;
    if (*reference == 0) // the first object stands for null
        return {};
    const auto object = m_list.element(m_objects, *reference);
    return object.kind == Kind::Uid ? PlistValue{} : object;
}

PlistValue KeyedArchive::find(const PlistValue &dictionary, QLatin1StringView key) const
{
    if (dictionary.kind != Kind::Dictionary || key.isEmpty())
        return {};
    auto &hint = m_hints[hintSlot(key) % m_hints.size()];
    if (isText(m_list.keyAt(dictionary, hint), key))
        return m_list.valueAt(dictionary, hint);
    return spend(dictionary.length) ? m_list.find(dictionary, key, hint) : PlistValue{};
}

bool KeyedArchive::spend(quint64 cost) const
{
    m_budget = cost < quint64(std::max<qint64>(m_budget, 0)) ? m_budget - qint64(cost) : 0;
    return m_budget > 0;
}

bool ArchiveObject::isNull() const
{
    return !m_value.isValid() || m_value.kind == Kind::Null || isText(m_value, "$null"_L1);
}

PlistValue ArchiveObject::field(QLatin1StringView key) const
{
    return m_archive ? m_archive->find(m_value, key) : PlistValue{};
}

/// The value of a key whether it stands there or was archived as an object, as optional numbers are.
PlistValue ArchiveObject::plainField(QLatin1StringView key) const
{
    const auto value = field(key);
    return m_archive ? m_archive->resolve(value) : value;
}

PlistValue ArchiveObject::classRecord() const
{
    return plainField(ClassKey);
}

QString ArchiveObject::className() const
{
    const auto record = classRecord();
    if (record.kind != Kind::Dictionary)
        return {};
    return BinaryPlist::text(m_archive->find(record, "$classname"_L1)).value_or(QString());
}

QStringList ArchiveObject::classChain() const
{
    const auto record = classRecord();
    if (record.kind != Kind::Dictionary)
        return {};
    QStringList chain;
    const auto classes = m_archive->find(record, "$classes"_L1);
    for (quint64 i = 0; i < classes.length && classes.kind == Kind::Array; ++i) {
        const auto name = m_archive->m_list.element(classes, i);
        if (!name.isText() || !m_archive->spend(2 * name.length + CostOfEntry))
            break;
        chain.append(*BinaryPlist::text(name));
    }
    if (chain.isEmpty())
        chain.append(className());
    return chain;
}

bool ArchiveObject::isKindOf(QLatin1StringView name) const
{
    const auto record = classRecord();
    if (record.kind != Kind::Dictionary)
        return false;
    if (isText(m_archive->find(record, "$classname"_L1), name))
        return true;
    const auto classes = m_archive->find(record, "$classes"_L1);
    if (classes.kind != Kind::Array || !m_archive->spend(classes.length))
        return false;
    for (quint64 i = 0; i < classes.length; ++i) {
        if (isText(m_archive->m_list.element(classes, i), name))
            return true;
    }
    return false;
}

bool ArchiveObject::contains(QLatin1StringView key) const
{
    return field(key).isValid();
}

ArchiveObject ArchiveObject::decodeObject(QLatin1StringView key) const
{
    return {m_archive, plainField(key)};
}

qint64 ArchiveObject::decodeInt(QLatin1StringView key) const
{
    const auto value = plainField(key);
    if (value.kind == Kind::Boolean)
        return BinaryPlist::boolean(value) ? 1 : 0;
    if (value.kind == Kind::Real) {
        const double number = std::trunc(*BinaryPlist::real(value));
        return std::abs(number) < 0x1p63 ? qint64(number) : 0;
    }
    return BinaryPlist::integer(value).value_or(0);
}

bool ArchiveObject::decodeBool(QLatin1StringView key) const
{
    const auto value = plainField(key);
    if (value.kind == Kind::Boolean)
        return BinaryPlist::boolean(value);
    if (value.kind == Kind::Real)
        return *BinaryPlist::real(value) != 0;
    return value.kind == Kind::Integer && BinaryPlist::integer(value) != 0;
}

std::optional<QString> ArchiveObject::decodeString(QLatin1StringView key) const
{
    return decodeObject(key).text();
}

std::optional<QDateTime> ArchiveObject::decodeDate(QLatin1StringView key) const
{
    return decodeObject(key).date();
}

std::optional<QVariantList> ArchiveObject::decodeList(QLatin1StringView key) const
{
    const auto object = decodeObject(key);
    if (object.m_value.kind != Kind::Array && !object.isKindOf("NSArray"_L1))
        return std::nullopt;
    return object.toVariant().toList();
}

std::optional<QString> ArchiveObject::text() const
{
    if (isNull())
        return std::nullopt;
    auto value = m_value;
    if (value.kind == Kind::Dictionary && isKindOf("NSString"_L1)) {
        value = plainField("NS.string"_L1);
        if (const auto bytes = plainField("NS.bytes"_L1); bytes.kind == Kind::Data)
            return m_archive->spend(bytes.length) ? std::optional(QString::fromUtf8(BinaryPlist::data(bytes)))
                                                  : std::nullopt;
    }
    if (!value.isText() || !m_archive->spend(2 * value.length))
        return std::nullopt;
    return BinaryPlist::text(value);
}

std::optional<QDateTime> ArchiveObject::date() const
{
    auto value = m_value;
    if (value.kind == Kind::Dictionary) {
        if (!isKindOf("NSDate"_L1))
            return std::nullopt;
        value = plainField("NS.time"_L1);
        if (const auto seconds = BinaryPlist::integer(value))
            return dateFromReferenceSeconds(double(*seconds));
    } else if (value.kind != Kind::Date) {
        return std::nullopt;
    }
    const auto seconds = BinaryPlist::real(value);
    return seconds ? dateFromReferenceSeconds(*seconds) : std::nullopt;
}

std::optional<QByteArray> ArchiveObject::data() const
{
    auto value = m_value;
    if (value.kind == Kind::Dictionary && isKindOf("NSData"_L1))
        value = plainField("NS.data"_L1);
    if (value.kind != Kind::Data || !m_archive->spend(value.length))
        return std::nullopt;
    return BinaryPlist::data(value);
}

/// The plain array that holds the references of a collection, paid for; Invalid when it is something else.
PlistValue ArchiveObject::entryReferences(QLatin1StringView key) const
{
    const auto references = m_value.kind == Kind::Array ? m_value : field(key);
    const bool usable = references.kind == Kind::Array && m_archive->spend(references.length * CostOfEntry);
    return usable ? references : PlistValue{};
}

std::optional<std::vector<ArchiveObject>> ArchiveObject::entries() const
{
    if (m_value.kind != Kind::Array && !isKindOf("NSArray"_L1))
        return std::nullopt;
    const auto references = entryReferences("NS.objects"_L1);
    if (!references.isValid())
        return std::nullopt;
    std::vector<ArchiveObject> entries;
    entries.reserve(references.length);
    for (quint64 i = 0; i < references.length; ++i)
        entries.push_back({m_archive, m_archive->resolve(m_archive->m_list.element(references, i))});
    return entries;
}

QVariant ArchiveObject::toVariant() const
{
    return toVariant(0);
}

QVariant ArchiveObject::toVariant(int depth) const
{
    if (isNull() || depth > MaxDepth)
        return {};
    if (m_value.kind == Kind::Boolean)
        return BinaryPlist::boolean(m_value);
    if (const auto number = BinaryPlist::integer(m_value))
        return qlonglong(*number);
    if (m_value.kind == Kind::Real)
        return *BinaryPlist::real(m_value);
    if (const auto string = text())
        return *string;
    if (const auto list = entries()) {
        QVariantList values;
        values.reserve(qsizetype(list->size()));
        for (const auto &entry : *list)
            values.append(entry.toVariant(depth + 1));
        return values;
    }
    if (const auto moment = date())
        return *moment;
    if (const auto bytes = data())
        return *bytes;
    return isKindOf("NSDictionary"_L1) ? dictionaryToVariant(depth) : QVariant();
}

QVariant ArchiveObject::dictionaryToVariant(int depth) const
{
    const auto keys = entryReferences("NS.keys"_L1);
    const auto values = entryReferences("NS.objects"_L1);
    QVariantMap dictionary;
    for (quint64 i = 0; i < keys.length && i < values.length; ++i) {
        const ArchiveObject key(m_archive, m_archive->resolve(m_archive->m_list.element(keys, i)));
        const ArchiveObject value(m_archive, m_archive->resolve(m_archive->m_list.element(values, i)));
        if (const auto name = key.text())
            dictionary.insert(*name, value.toVariant(depth + 1));
    }
    return dictionary;
}
