#include "Companions/Common/PropertyList.h"

#include <plist/plist.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTimeZone>

#include <cstdlib>
#include <memory>

namespace
{
using PlistHandle = std::unique_ptr<void, decltype([](plist_t node) { plist_free(node); })>;

const QDateTime &plistEpoch()
{
    static const QDateTime epoch(QDate(2001, 1, 1), QTime(0, 0), QTimeZone::utc());
    return epoch;
}

QVariant fromNode(plist_t node);

QVariantMap mapFromNode(plist_t node)
{
    QVariantMap map;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    for (;;) {
        char *key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, iterator, &key, &value);
        if (!value)
            break;
        map.insert(QString::fromUtf8(key), fromNode(value));
        std::free(key);
    }
    std::free(iterator);
    return map;
}

QVariantList listFromNode(plist_t node)
{
    QVariantList list;
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(node, &iterator);
    for (;;) {
        plist_t value = nullptr;
        plist_array_next_item(node, iterator, &value);
        if (!value)
            break;
        list.append(fromNode(value));
    }
    std::free(iterator);
    return list;
}

QVariant dataFromNode(plist_t node)
{
    char *bytes = nullptr;
    uint64_t length = 0;
    plist_get_data_val(node, &bytes, &length);
    const QByteArray data(bytes, static_cast<qsizetype>(length));
    std::free(bytes);
    return data;
}

QVariant dateFromNode(plist_t node)
{
    int32_t seconds = 0;
    int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    return plistEpoch().addSecs(seconds).addMSecs(microseconds / 1000);
}

/// Reads a scalar through the accessor of its own type.
template<typename Value>
Value scalar(plist_t node, void (*get)(plist_t, Value *))
{
    Value value{};
    get(node, &value);
    return value;
}

QVariant fromNode(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN:
        return scalar<uint8_t>(node, plist_get_bool_val) != 0;
    case PLIST_UINT:
        return static_cast<qlonglong>(scalar<uint64_t>(node, plist_get_uint_val));
    case PLIST_REAL:
        return scalar<double>(node, plist_get_real_val);
    case PLIST_STRING: {
        uint64_t length = 0;
        const char *text = plist_get_string_ptr(node, &length);
        return QString::fromUtf8(text, static_cast<qsizetype>(length));
    }
    case PLIST_DATA:
        return dataFromNode(node);
    case PLIST_DATE:
        return dateFromNode(node);
    case PLIST_UID:
        return QVariant::fromValue(PlistUid{scalar<uint64_t>(node, plist_get_uid_val)});
    case PLIST_ARRAY:
        return listFromNode(node);
    case PLIST_DICT:
        return mapFromNode(node);
    default:
        return {};
    }
}

plist_t nodeFrom(const QVariant &value);

plist_t nodeFromMap(const QVariantMap &map)
{
    plist_t dict = plist_new_dict();
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry)
        if (plist_t node = nodeFrom(entry.value()))
            plist_dict_set_item(dict, entry.key().toUtf8().constData(), node);
    return dict;
}

plist_t nodeFromList(const QVariantList &list)
{
    plist_t array = plist_new_array();
    for (const QVariant &value : list)
        if (plist_t node = nodeFrom(value))
            plist_array_append_item(array, node);
    return array;
}

plist_t nodeFrom(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return plist_new_bool(value.toBool());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        return plist_new_uint(static_cast<uint64_t>(value.toLongLong()));
    case QMetaType::Double:
        return plist_new_real(value.toDouble());
    case QMetaType::QString:
        return plist_new_string(value.toString().toUtf8().constData());
    case QMetaType::QByteArray: {
        const QByteArray data = value.toByteArray();
        return plist_new_data(data.constData(), static_cast<uint64_t>(data.size()));
    }
    case QMetaType::QDateTime:
        return plist_new_date(static_cast<int32_t>(plistEpoch().secsTo(value.toDateTime())), 0);
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return nodeFromList(value.toList());
    case QMetaType::QVariantMap:
        return nodeFromMap(value.toMap());
    default:
        if (value.canConvert<PlistUid>())
            return plist_new_uid(value.value<PlistUid>().index);
        return nullptr;
    }
}
} // namespace

QVariant parsePropertyList(const QByteArray &bytes)
{
    plist_t root = nullptr;
    plist_from_memory(bytes.constData(), static_cast<uint32_t>(bytes.size()), &root);
    const PlistHandle owner(root);
    return root ? fromNode(root) : QVariant();
}

QByteArray propertyListBytes(const QVariant &tree, PlistForm form)
{
    const PlistHandle root(nodeFrom(tree));
    char *bytes = nullptr;
    uint32_t length = 0;
    if (form == PlistForm::Binary)
        plist_to_bin(root.get(), &bytes, &length);
    else
        plist_to_xml(root.get(), &bytes, &length);
    const QByteArray result(bytes, length);
    std::free(bytes);
    return result;
}

QVariant readPropertyList(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? parsePropertyList(file.readAll()) : QVariant();
}

QString readTextFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool writeWholeFile(const QString &path, const QByteArray &bytes)
{
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

bool writePropertyList(const QString &path, const QVariantMap &tree, PlistForm form)
{
    return writeWholeFile(path, propertyListBytes(tree, form));
}
