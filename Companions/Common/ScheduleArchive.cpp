#include "Companions/Common/ScheduleArchive.h"

#include "Companions/Common/PropertyList.h"

#include <QFile>
#include <QHash>
#include <QTimeZone>

namespace
{
constexpr int ArchiverVersion = 100000;
const QString RecordClass = QStringLiteral("CorvaneScheduleItem");

QDateTime referenceDate()
{
    return QDateTime(QDate(2001, 1, 1), QTime(0, 0), QTimeZone::utc());
}

/// Builds "$objects" in the order of the platform's archiver: an object takes its place before the objects it
/// refers to, and a class follows its first instance. Equal texts and classes are stored once.
class ArchiveBuilder
{
public:
    ArchiveBuilder() { m_objects.append(QStringLiteral("$null")); }

    QVariant addArray(const QVariantList &elements, const QString &className)
    {
        const qsizetype place = reserve();
        QVariantList references;
        for (const QVariant &element : elements)
            references.append(addValue(element));
        const QStringList chain =
            className == QLatin1StringView("NSMutableArray")
                ? QStringList{className, QStringLiteral("NSArray"), QStringLiteral("NSObject")}
                : QStringList{className, QStringLiteral("NSObject")};
        return fill(place, {{QStringLiteral("NS.objects"), references}}, chain);
    }

    QByteArray finish(const QString &rootKey, const QVariant &root)
    {
        const QVariantMap archive{{QStringLiteral("$version"), ArchiverVersion},
                                  {QStringLiteral("$archiver"), QStringLiteral("NSKeyedArchiver")},
                                  {QStringLiteral("$top"), QVariantMap{{rootKey, root}}},
                                  {QStringLiteral("$objects"), m_objects}};
        return propertyListBytes(archive, PlistForm::Binary);
    }

private:
    /// A reference to the object that holds `value`, or the value itself where the coder stores it in line.
    QVariant addValue(const QVariant &value)
    {
        switch (value.typeId()) {
        case QMetaType::QString:
            return addText(value.toString());
        case QMetaType::QDateTime:
            return addDate(value.toDateTime());
        case QMetaType::QVariantMap:
            return addRecord(value.toMap());
        case QMetaType::QVariantList:
            return addArray(value.toList(), QStringLiteral("NSArray"));
        default:
            return value;
        }
    }

    QVariant addText(const QString &text)
    {
        const auto known = m_texts.constFind(text);
        if (known != m_texts.cend())
            return reference(*known);
        const qsizetype place = reserve();
        m_objects[place] = text;
        m_texts.insert(text, place);
        return reference(place);
    }

    QVariant addDate(const QDateTime &date)
    {
        const double seconds = static_cast<double>(referenceDate().msecsTo(date)) / 1000.0;
        return fill(reserve(), {{QStringLiteral("NS.time"), seconds}},
                    {QStringLiteral("NSDate"), QStringLiteral("NSObject")});
    }

    QVariant addRecord(const ScheduleRecord &record)
    {
        const qsizetype place = reserve();
        QVariantMap object;
        for (auto field = record.cbegin(); field != record.cend(); ++field)
            object.insert(field.key(), addValue(field.value()));
        return fill(place, object, {RecordClass, QStringLiteral("NSObject")});
    }

    QVariant fill(qsizetype place, QVariantMap object, const QStringList &classChain)
    {
        object.insert(QStringLiteral("$class"), addClass(classChain));
        m_objects[place] = object;
        return reference(place);
    }

    QVariant addClass(const QStringList &chain)
    {
        const auto known = m_classes.constFind(chain.first());
        if (known != m_classes.cend())
            return reference(*known);
        const qsizetype place = reserve();
        m_objects[place] =
            QVariantMap{{QStringLiteral("$classname"), chain.first()}, {QStringLiteral("$classes"), chain}};
        m_classes.insert(chain.first(), place);
        return reference(place);
    }

    qsizetype reserve()
    {
        m_objects.append(QVariant());
        return m_objects.size() - 1;
    }

    static QVariant reference(qsizetype place)
    {
        return QVariant::fromValue(PlistUid{static_cast<quint64>(place)});
    }

    QVariantList m_objects;
    QHash<QString, qsizetype> m_texts;
    QHash<QString, qsizetype> m_classes;
};

/// Follows the references of a parsed archive. Only what a schedule record may hold is understood; anything
/// else comes back as an invalid variant.
class ArchiveReader
{
public:
    explicit ArchiveReader(const QVariantMap &archive)
        : m_objects(archive.value(QStringLiteral("$objects")).toList())
    {
    }

    [[nodiscard]] std::optional<QVariantList> array(const QVariant &from) const
    {
        const QVariantMap object = resolve(from).toMap();
        const QVariant elements = object.value(QStringLiteral("NS.objects"));
        if (elements.typeId() != QMetaType::QVariantList)
            return std::nullopt;
        return elements.toList();
    }

    [[nodiscard]] std::optional<ScheduleRecord> record(const QVariant &from) const
    {
        QVariantMap object = resolve(from).toMap();
        if (className(object) != RecordClass)
            return std::nullopt;
        object.remove(QStringLiteral("$class"));
        ScheduleRecord record;
        for (auto field = object.cbegin(); field != object.cend(); ++field)
            if (const QVariant decoded = value(field.value()); decoded.isValid())
                record.insert(field.key(), decoded);
        return record;
    }

private:
    [[nodiscard]] QVariant resolve(const QVariant &from) const
    {
        const auto uid = from.value<PlistUid>();
        const bool inside = from.canConvert<PlistUid>() && uid.index < static_cast<quint64>(m_objects.size());
        return inside && uid.index != 0 ? m_objects.at(static_cast<qsizetype>(uid.index)) : QVariant();
    }

    [[nodiscard]] QString className(const QVariantMap &object) const
    {
        return resolve(object.value(QStringLiteral("$class")))
            .toMap()
            .value(QStringLiteral("$classname"))
            .toString();
    }

    [[nodiscard]] QVariant value(const QVariant &from) const
    {
        if (!from.canConvert<PlistUid>())
            return from;
        const QVariant object = resolve(from);
        if (object.typeId() != QMetaType::QVariantMap)
            return object;
        const QVariant seconds = object.toMap().value(QStringLiteral("NS.time"));
        if (seconds.isValid())
            return referenceDate().addMSecs(qRound64(seconds.toDouble() * 1000.0)).toLocalTime();
        const auto elements = array(from);
        if (!elements)
            return {};
        QVariantList texts; // a record holds lists of plain values only, so one level is all there is
        for (const QVariant &element : *elements)
            texts.append(element.canConvert<PlistUid>() ? resolve(element) : element);
        return texts;
    }

    QVariantList m_objects;
};
} // namespace

QByteArray archiveSchedules(const std::vector<ScheduleRecord> &records)
{
    ArchiveBuilder builder;
    const QVariant root =
        builder.addArray(QVariantList(records.begin(), records.end()), QStringLiteral("NSMutableArray"));
    return builder.finish(QStringLiteral("Schedules"), root);
}

std::optional<std::vector<ScheduleRecord>> unarchiveSchedules(const QByteArray &bytes)
{
    const QVariantMap archive = parsePropertyList(bytes).toMap();
    const ArchiveReader reader(archive);
    const auto entries =
        reader.array(archive.value(QStringLiteral("$top")).toMap().value(QStringLiteral("Schedules")));
    if (!entries)
        return std::nullopt;
    std::vector<ScheduleRecord> records;
    for (const QVariant &entry : *entries)
        if (const auto record = reader.record(entry))
            records.push_back(*record);
    return records;
}

std::vector<ScheduleRecord> readSchedules(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return unarchiveSchedules(file.readAll()).value_or(std::vector<ScheduleRecord>{});
}

JobKind kindOf(const ScheduleRecord &record)
{
    if (record.value(QStringLiteral("scheduleType")).toInt() == 1)
        return JobKind::Restore;
    return record.value(QStringLiteral("backupType")).toInt() == 1 ? JobKind::LocalBackup
                                                                   : JobKind::OnlineBackup;
}

bool writeSchedules(const QString &path, const std::vector<ScheduleRecord> &records)
{
    return writeWholeFile(path, archiveSchedules(records));
}

QDateTime nextOccurrence(const QDateTime &last, Frequency frequency, const QDateTime &now)
{
    const auto step = [frequency](const QDateTime &from) {
        switch (frequency) {
        case Frequency::Hourly:
            return from.addSecs(3600);
        case Frequency::Daily:
            return from.addDays(1);
        case Frequency::Weekly:
            return from.addDays(7);
        case Frequency::Monthly:
            return from.addMonths(1);
        case Frequency::Weekdays:
            return from.addDays(from.date().dayOfWeek() >= Qt::Friday ? 8 - from.date().dayOfWeek() : 1);
        default:
            return from;
        }
    };
    QDateTime next = last;
    while (next <= now) {
        const QDateTime later = step(next);
        if (later == next)
            break;
        next = later;
    }
    return next;
}
