#pragma once

#include "Platform/PropertyList.h"

#include <QtEndian>

#include <vector>

/// Makes keyed archives in memory, object by object, as an archiver does.
class ArchiveMaker
{
public:
    PropertyListUid add(const QVariant &object)
    {
        m_objects.append(object);
        return {quint64(m_objects.size() - 1)};
    }

    /// An object of the class `chain` begins with; its class record is shared with the objects before it.
    PropertyListUid object(const QStringList &chain, QVariantMap fields)
    {
        const auto place = add({});
        const auto known = m_classes.constFind(chain);
        const auto record = known != m_classes.constEnd() ? *known : addClass(chain);
        fields.insert(QStringLiteral("$class"), QVariant::fromValue(record));
        m_objects[qsizetype(place.value)] = fields;
        return place;
    }

    PropertyListUid date(double secondsSince2001)
    {
        return object({QStringLiteral("NSDate"), QStringLiteral("NSObject")},
                      {{QStringLiteral("NS.time"), secondsSince2001}});
    }

    PropertyListUid array(const QList<PropertyListUid> &entries)
    {
        QVariantList references;
        for (const auto entry : entries)
            references.append(QVariant::fromValue(entry));
        return object({QStringLiteral("NSMutableArray"), QStringLiteral("NSArray"), QStringLiteral("NSObject")},
                      {{QStringLiteral("NS.objects"), references}});
    }

    /// A schedule record. Texts and dates are given as they are and archived as objects, numbers stand in the
    /// record.
    PropertyListUid record(const QVariantMap &fields)
    {
        QVariantMap archived;
        for (auto field = fields.cbegin(); field != fields.cend(); ++field) {
            const bool text = field->typeId() == QMetaType::QString;
            archived.insert(field.key(), text ? QVariant::fromValue(add(*field)) : *field);
        }
        return object({QStringLiteral("CorvaneScheduleItem"), QStringLiteral("NSObject")}, archived);
    }

    [[nodiscard]] QByteArray archive(const QString &topKey, PropertyListUid top,
                                     PropertyList::Format format = PropertyList::Format::Binary) const
    {
        const QVariantMap root{{QStringLiteral("$archiver"), QStringLiteral("NSKeyedArchiver")},
                               {QStringLiteral("$version"), 100000},
                               {QStringLiteral("$top"), QVariantMap{{topKey, QVariant::fromValue(top)}}},
                               {QStringLiteral("$objects"), m_objects}};
        return PropertyList::serialize(root, format).value_or(QByteArray());
    }

    [[nodiscard]] QByteArray schedules(const QList<PropertyListUid> &entries)
    {
        return archive(QStringLiteral("Schedules"), array(entries));
    }

private:
    PropertyListUid addClass(const QStringList &chain)
    {
        const auto record = add(
            QVariantMap{{QStringLiteral("$classname"), chain.first()}, {QStringLiteral("$classes"), chain}});
        m_classes.insert(chain, record);
        return record;
    }

    QVariantList m_objects{QStringLiteral("$null")};
    QMap<QStringList, PropertyListUid> m_classes;
};

/// A binary property list of objects given as bytes, with references of one byte: for what no writer would
/// write.
inline QByteArray rawPlist(const std::vector<QByteArray> &objects)
{
    QByteArray file("bplist00");
    QByteArray table;
    const auto big = [](quint64 value) {
        QByteArray bytes(8, '\0');
        qToBigEndian(value, bytes.data());
        return bytes;
    };
    for (const auto &object : objects) {
        table += big(quint64(file.size()));
        file += object;
    }
    const auto tableOffset = quint64(file.size());
    return file + table + QByteArray(6, '\0') + QByteArray("\x08\x01") + big(objects.size()) + big(0) +
           big(tableOffset);
}
