#include "Companions/Common/ScheduleArchive.h"

#include "Companions/Common/PropertyList.h"

#include <QFile>
#include <QHash>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace
{
constexpr int ArchiverVersion = 100000;
const QString RecordClass = u"CorvaneScheduleItem"_s;

QDateTime referenceDate()
{
    return QDateTime(QDate(2001, 1, 1), QTime(0, 0), QTimeZone::utc());
}

/// Builds "$objects" in the order of the platform's archiver: an object takes its place before the objects it
/// refers to, and a class follows its first instance. Equal texts and classes are stored once.
class ArchiveBuilder
{
public:
    ArchiveBuilder() { m_objects.append(u"$null"_s); }

    QVariant addArray(const QVariantList &elements, const QString &className)
    {
        const qsizetype place = reserve();
        QVariantList references;
        for (const QVariant &element : elements)
            references.append(addValue(element));
        const QStringList chain = className == "NSMutableArray"_L1
                                      ? QStringList{className, u"NSArray"_s, u"NSObject"_s}
                                      : QStringList{className, u"NSObject"_s};
        return fill(place, {{u"NS.objects"_s, references}}, chain);
    }

    QByteArray finish(const QString &rootKey, const QVariant &root)
    {
        const QVariantMap archive{{u"$version"_s, ArchiverVersion},
                                  {u"$archiver"_s, u"NSKeyedArchiver"_s},
                                  {u"$top"_s, QVariantMap{{rootKey, root}}},
                                  {u"$objects"_s, m_objects}};
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
            return addArray(value.toList(), u"NSArray"_s);
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
        return fill(reserve(), {{u"NS.time"_s, seconds}}, {u"NSDate"_s, u"NSObject"_s});
    }

    QVariant addRecord(const ScheduleRecord &record)
    {
        const qsizetype place = reserve();
        QVariantMap object;
        for (auto field = record.cbegin(); field != record.cend(); ++field)
            object.insert(field.key(), addValue(field.value()));
        return fill(place, object, {RecordClass, u"NSObject"_s});
    }

    QVariant fill(qsizetype place, QVariantMap object, const QStringList &classChain)
    {
        object.insert(u"$class"_s, addClass(classChain));
        m_objects[place] = object;
        return reference(place);
    }

    QVariant addClass(const QStringList &chain)
    {
        const auto known = m_classes.constFind(chain.first());
        if (known != m_classes.cend())
            return reference(*known);
        const qsizetype place = reserve();
        m_objects[place] = QVariantMap{{u"$classname"_s, chain.first()}, {u"$classes"_s, chain}};
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
    explicit ArchiveReader(const QVariantMap &archive) : m_objects(archive.value(u"$objects"_s).toList()) {}

    [[nodiscard]] std::optional<QVariantList> array(const QVariant &from) const
    {
        const QVariantMap object = resolve(from).toMap();
        const QVariant elements = object.value(u"NS.objects"_s);
        if (elements.typeId() != QMetaType::QVariantList)
            return std::nullopt;
        return elements.toList();
    }

    [[nodiscard]] std::optional<ScheduleRecord> record(const QVariant &from) const
    {
        QVariantMap object = resolve(from).toMap();
        if (className(object) != RecordClass)
            return std::nullopt;
        object.remove(u"$class"_s);
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
        return resolve(object.value(u"$class"_s)).toMap().value(u"$classname"_s).toString();
    }

    [[nodiscard]] QVariant value(const QVariant &from) const
    {
        if (!from.canConvert<PlistUid>())
            return from;
        const QVariant object = resolve(from);
        if (object.typeId() != QMetaType::QVariantMap)
            return object;
        const QVariant seconds = object.toMap().value(u"NS.time"_s);
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
    const QVariant root = builder.addArray(QVariantList(records.begin(), records.end()), u"NSMutableArray"_s);
    return builder.finish(u"Schedules"_s, root);
}

std::optional<std::vector<ScheduleRecord>> unarchiveSchedules(const QByteArray &bytes)
{
    const QVariantMap archive = parsePropertyList(bytes).toMap();
    const ArchiveReader reader(archive);
    const auto entries = reader.array(archive.value(u"$top"_s).toMap().value(u"Schedules"_s));
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
    if (record.value(u"scheduleType"_s).toInt() == 1)
        return JobKind::Restore;
    return record.value(u"backupType"_s).toInt() == 1 ? JobKind::LocalBackup : JobKind::OnlineBackup;
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
