#include "Platform/SessionBus/BusValue.h"

#include "Platform/Limits.h"
#include "Platform/MessageText.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QDateTime>

#include <algorithm>
#include <iterator>
#include <limits>

namespace
{
/// Takes the wrappings off one received value. The depth needs no limit of its own: the bus library refuses
/// messages that nest deeper than 64.
class Unwrapper
{
public:
    enum class TextArrays { AsStringList, AsVariantList };

    explicit Unwrapper(TextArrays form) : m_form(form) {}

    [[nodiscard]] bool isOverLimit() const { return m_left < 0; }

    QVariant value(const QVariant &received)
    {
        if (--m_left < 0)
            return {};
        if (received.typeId() == qMetaTypeId<QDBusVariant>())
            return value(received.value<QDBusVariant>().variant());
        if (received.typeId() == qMetaTypeId<QDBusArgument>())
            return argument(received.value<QDBusArgument>());
        switch (received.typeId()) {
        case QMetaType::QStringList:
            return texts(received.toStringList());
        case QMetaType::QVariantList:
            return list(received.toList());
        case QMetaType::QVariantMap:
            return map(received.toMap());
        case QMetaType::QString:
            return shownPart(received.toString());
        default:
            return isSimple(received) ? received : QVariant();
        }
    }

private:
    static bool isSimple(const QVariant &received)
    {
        switch (received.typeId()) {
        case QMetaType::Bool:
        case QMetaType::UChar:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::Double:
        case QMetaType::QByteArray:
            return true;
        default:
            return false;
        }
    }

    QVariant texts(const QStringList &received)
    {
        m_left -= static_cast<int>(std::min<qsizetype>(received.size(), Limits::MessageValues + 1));
        if (m_left < 0)
            return {};
        QStringList texts;
        std::ranges::transform(received, std::back_inserter(texts), shownPart);
        if (m_form == TextArrays::AsStringList)
            return texts;
        return QVariantList(texts.cbegin(), texts.cend());
    }

    QVariantList list(const QVariantList &received)
    {
        QVariantList plain;
        for (const QVariant &element : received) {
            plain.append(value(element));
            if (isOverLimit())
                break;
        }
        return plain;
    }

    QVariantMap map(const QVariantMap &received)
    {
        QVariantMap plain;
        for (auto entry = received.cbegin(); entry != received.cend() && !isOverLimit(); ++entry)
            insert(plain, entry.key(), entry.value());
        return plain;
    }

    void insert(QVariantMap &plain, const QString &key, const QVariant &received)
    {
        if (const QVariant taken = value(received); taken.isValid())
            plain.insert(shownPart(key), taken);
    }

    QVariant argument(const QDBusArgument &received)
    {
        switch (received.currentType()) {
        case QDBusArgument::ArrayType: {
            received.beginArray();
            const QVariantList plain = elements(received);
            received
                .endArray(); // also where the limit has cut it short: each end frees what the beginning took
            return plain;
        }
        case QDBusArgument::StructureType: {
            received.beginStructure();
            const QVariantList plain = elements(received);
            received.endStructure();
            return plain;
        }
        case QDBusArgument::MapType:
            return entries(received);
        case QDBusArgument::BasicType:
        case QDBusArgument::VariantType:
            return value(received.asVariant());
        default:
            return {};
        }
    }

    QVariantList elements(const QDBusArgument &received)
    {
        QVariantList plain;
        while (!received.atEnd() && !isOverLimit())
            plain.append(value(received.asVariant()));
        return plain;
    }

    QVariantMap entries(const QDBusArgument &received)
    {
        QVariantMap plain;
        received.beginMap();
        while (!received.atEnd() && !isOverLimit()) {
            received.beginMapEntry();
            const QVariant key = received.asVariant();
            insert(plain, key.toString(), received.asVariant());
            received.endMapEntry();
        }
        received.endMap();
        return plain;
    }

    const TextArrays m_form;
    int m_left = static_cast<int>(Limits::MessageValues);
};

bool isListOfTexts(const QVariantList &list)
{
    return std::all_of(list.cbegin(), list.cend(),
                       [](const QVariant &element) { return element.typeId() == QMetaType::QString; });
}

/// The value as one of the five kinds that a notification knows; invalid when it is none.
QVariant notificationValue(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::QStringList:
        return value;
    case QMetaType::QVariantMap:
        return BusValue::notificationDetails(value.toMap());
    case QMetaType::QVariantList:
        return isListOfTexts(value.toList()) ? QVariant(value.toStringList()) : QVariant();
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong: {
        const qlonglong number = value.toLongLong();
        const bool fits =
            number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
        return fits ? QVariant(static_cast<int>(number)) : QVariant();
    }
    default:
        return {};
    }
}

/// sendable(), or invalid where the bus has no form for the value.
QVariant sendableOrNothing(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::QByteArray:
    case QMetaType::QStringList:
        return value;
    case QMetaType::QDateTime:
        return value.toDateTime().toUTC().toString(Qt::ISODate);
    case QMetaType::QVariantList: {
        QVariantList list;
        for (const QVariant &element : value.toList())
            list.append(BusValue::sendable(element));
        return list;
    }
    case QMetaType::QVariantMap: {
        QVariantMap map;
        const QVariantMap given = value.toMap();
        for (auto entry = given.cbegin(); entry != given.cend(); ++entry) {
            if (const QVariant taken = sendableOrNothing(entry.value()); taken.isValid())
                map.insert(entry.key(), taken);
        }
        return map;
    }
    default:
        return {};
    }
}
} // namespace

namespace BusValue
{
std::optional<QVariant> plain(const QVariant &received)
{
    Unwrapper unwrapper(Unwrapper::TextArrays::AsStringList);
    const QVariant value = unwrapper.value(received);
    return unwrapper.isOverLimit() ? std::nullopt : std::optional(value);
}

std::optional<QVariantList> plainList(const QVariant &received)
{
    Unwrapper unwrapper(Unwrapper::TextArrays::AsVariantList);
    const QVariant value = unwrapper.value(received);
    if (unwrapper.isOverLimit() || value.typeId() != QMetaType::QVariantList)
        return std::nullopt;
    return value.toList();
}

QVariantMap notificationDetails(const QVariantMap &details)
{
    QVariantMap kept;
    for (auto entry = details.cbegin(); entry != details.cend(); ++entry) {
        if (const QVariant value = notificationValue(entry.value()); value.isValid())
            kept.insert(entry.key(), value);
    }
    return kept;
}

QVariant sendable(const QVariant &value)
{
    const QVariant taken = sendableOrNothing(value);
    return taken.isValid() ? taken : QVariant(QString());
}
} // namespace BusValue
