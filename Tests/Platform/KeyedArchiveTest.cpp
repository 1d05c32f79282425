#include "Platform/KeyedArchive.h"

#include "Tests/Platform/ArchiveMaker.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr QLatin1StringView Root("root");

PropertyListUid uid(quint64 value)
{
    return {value};
}
QVariant ref(quint64 value)
{
    return QVariant::fromValue(uid(value));
}

/// An archive of one object of class Thing with one field, "f".
QByteArray archiveOfField(const QVariant &field)
{
    ArchiveMaker maker;
    const auto thing = maker.object({u"Thing"_s, u"NSObject"_s}, {{u"f"_s, field}});
    return maker.archive(u"root"_s, thing);
}

/// The root of an archive, kept together with it.
struct Opened {
    explicit Opened(const QByteArray &bytes) : archive(KeyedArchive::open(bytes))
    {
        if (archive)
            root = archive->decodeObject(Root);
    }
    std::optional<KeyedArchive> archive;
    ArchiveObject root;
};
} // namespace

// The layout of objects, byte widths apart, that the platform's archiver gives for an array of one item: null
// first, the array and its items before their classes, numbers in place, everything else referred to.
TEST(KeyedArchiveTest, ReadsTheLayoutOfThePlatformsArchiver)
{
    const auto classRecord = [](const QStringList &chain) {
        return QVariantMap{{u"$classname"_s, chain.first()}, {u"$classes"_s, chain}};
    };
    const QVariantList objects{u"$null"_s,
                               QVariantMap{{u"NS.objects"_s, QVariantList{ref(2)}}, {u"$class"_s, ref(7)}},
                               QVariantMap{{u"$class"_s, ref(6)},
                                           {u"owner"_s, ref(3)},
                                           {u"when"_s, ref(5)},
                                           {u"note"_s, ref(0)},
                                           {u"count"_s, 3},
                                           {u"on"_s, true}},
                               QVariantMap{{u"$class"_s, ref(4)}, {u"NS.string"_s, u"ann: ann-login"_s}},
                               classRecord({u"NSMutableString"_s, u"NSString"_s, u"NSObject"_s}),
                               QVariantMap{{u"NS.time"_s, 816382245.75}, {u"$class"_s, ref(8)}},
                               classRecord({u"Item"_s, u"Base"_s, u"NSObject"_s}),
                               classRecord({u"NSMutableArray"_s, u"NSArray"_s, u"NSObject"_s}),
                               classRecord({u"NSDate"_s, u"NSObject"_s})};
    const QVariantMap list{{u"$version"_s, 100000},
                           {u"$archiver"_s, u"NSKeyedArchiver"_s},
                           {u"$top"_s, QVariantMap{{u"root"_s, ref(1)}}},
                           {u"$objects"_s, objects}};
    for (const auto format : {PropertyList::Format::Binary, PropertyList::Format::Xml}) {
        const Opened opened(PropertyList::serialize(list, format).value());
        const auto entries = opened.root.entries();
        ASSERT_TRUE(entries);
        ASSERT_EQ(entries->size(), 1U);
        const auto &item = entries->front();
        EXPECT_EQ(item.classChain().join(u','), u"Item,Base,NSObject");
        EXPECT_TRUE(item.isKindOf("Base"_L1));
        EXPECT_EQ(item.decodeString("owner"_L1), u"ann: ann-login"_s);
        EXPECT_EQ(item.decodeDate("when"_L1), QDateTime(QDate(2026, 11, 14), QTime(20, 50, 45, 750), Qt::UTC));
        EXPECT_TRUE(item.contains("note"_L1) && item.decodeObject("note"_L1).isNull());
        EXPECT_EQ(item.decodeInt("count"_L1), 3);
        EXPECT_TRUE(item.decodeBool("on"_L1));
    }
}

TEST(KeyedArchiveTest, NumbersAndBooleansReadAsEachOther)
{
    const std::tuple<QVariant, qint64, bool> rows[] = {
        {0, 0, false},    {-1, -1, true},         {true, 1, true},    {false, 0, false},  {2.9, 2, true},
        {1e300, 0, true}, {~quint64(0), 0, true}, {u"1"_s, 0, false}, {ref(0), 0, false}, {ref(99), 0, false}};
    for (const auto &[field, integer, boolean] : rows) {
        const Opened opened(archiveOfField(field));
        EXPECT_EQ(opened.root.decodeInt("f"_L1), integer) << field.toString().toStdString();
        EXPECT_EQ(opened.root.decodeBool("f"_L1), boolean) << field.toString().toStdString();
        EXPECT_EQ(opened.root.decodeInt("missing"_L1), 0);
    }
    ArchiveMaker maker;
    const auto thing = maker.object({u"Thing"_s}, {{u"f"_s, QVariant::fromValue(maker.add(4))}});
    EXPECT_EQ(Opened(maker.archive(u"root"_s, thing)).root.decodeInt("f"_L1), 4) << "a number as an object";
}

TEST(KeyedArchiveTest, ValuesOfAnotherKindAreNone)
{
    enum class Kind { None, Text, Date, List };
    const QStringList strings{u"NSString"_s, u"NSObject"_s};
    ArchiveMaker maker;
    const std::tuple<const char *, PropertyListUid, Kind> rows[] = {
        {"text", maker.add(u"x"_s), Kind::Text},
        {"wrapped text", maker.object(strings, {{u"NS.string"_s, u"x"_s}}), Kind::Text},
        {"text as bytes", maker.object(strings, {{u"NS.bytes"_s, QByteArray("x")}}), Kind::Text},
        {"wrapper without text", maker.object(strings, {{u"NS.string"_s, 1}}), Kind::None},
        {"date", maker.date(1.5), Kind::Date},
        {"date out of range", maker.date(1e300), Kind::None},
        {"date of another class", maker.object({u"Date"_s}, {{u"NS.time"_s, 1.0}}), Kind::None},
        {"array", maker.array({uid(1)}), Kind::List},
        {"array without entries", maker.object({u"NSArray"_s}, {}), Kind::None},
        {"null", uid(0), Kind::None},
        {"out of range", uid(1'000'000), Kind::None},
        {"reference to a reference", maker.add(ref(1)), Kind::None},
    };
    for (const auto &[name, value, kind] : rows) {
        auto copy = maker;
        const auto thing = copy.object({u"Thing"_s, u"NSObject"_s}, {{u"f"_s, QVariant::fromValue(value)}});
        const Opened opened(copy.archive(u"root"_s, thing));
        const auto field = opened.root.decodeObject("f"_L1);
        EXPECT_EQ(field.text().has_value(), kind == Kind::Text) << name;
        EXPECT_EQ(field.date().has_value(), kind == Kind::Date) << name;
        EXPECT_EQ(field.entries().has_value(), kind == Kind::List) << name;
    }
}

TEST(KeyedArchiveTest, NestedCollectionsBecomeVariants)
{
    ArchiveMaker maker;
    const auto monday = maker.add(u"Mon"_s);
    const auto data = maker.object({u"NSMutableData"_s, u"NSData"_s}, {{u"NS.data"_s, QByteArray("\x01")}});
    const auto other = maker.object({u"Alien"_s}, {});
    const auto map = maker.object({u"NSDictionary"_s, u"NSObject"_s},
                                  {{u"NS.keys"_s, QVariantList{QVariant::fromValue(monday), ref(0)}},
                                   {u"NS.objects"_s, QVariantList{QVariant::fromValue(data), ref(0)}}});
    const auto list =
        maker.array({monday, maker.add(2), maker.add(true), uid(0), other, map, maker.array({}), uid(500)});
    const Opened opened(maker.archive(u"root"_s, list));
    const QVariantList expected{u"Mon"_s,       2LL,        true,
                                QVariant(),     QVariant(), QVariantMap{{u"Mon"_s, QByteArray("\x01")}},
                                QVariantList(), QVariant()};
    EXPECT_EQ(opened.root.toVariant(), QVariant(expected));
}

TEST(KeyedArchiveTest, RefusesWhatIsNoArchive)
{
    ArchiveMaker maker;
    const auto thing = maker.add(u"x"_s);
    const auto whole = PropertyList::parse(maker.archive(u"root"_s, thing))->toMap();
    const auto opens = [](const QVariantMap &list) {
        return KeyedArchive::open(PropertyList::serialize(list, PropertyList::Format::Binary).value())
            .has_value();
    };
    ASSERT_TRUE(opens(whole));
    const std::pair<QString, QVariant> rows[] = {
        {u"$archiver"_s, u"NSArchiver"_s}, {u"$archiver"_s, 1},
        {u"$version"_s, 100001},           {u"$version"_s, u"100000"_s},
        {u"$objects"_s, QVariantMap()},    {u"$top"_s, QVariantList()}};
    for (const auto &[key, value] : rows) {
        auto damaged = whole;
        damaged.insert(key, value);
        EXPECT_FALSE(opens(damaged)) << key.toStdString();
        damaged.remove(key);
        EXPECT_FALSE(opens(damaged)) << key.toStdString();
    }
    for (const QByteArray &bytes : {QByteArray(), QByteArray("bplist00"), rawPlist({"\x09"})})
        EXPECT_FALSE(KeyedArchive::open(bytes));
}

TEST(KeyedArchiveTest, CyclesEnd)
{
    ArchiveMaker maker;
    const auto list = maker.array({uid(1)}); // holds itself
    ASSERT_EQ(list, uid(1));
    const Opened opened(maker.archive(u"root"_s, list));
    auto level = opened.root.toVariant();
    int depth = 0;
    for (; !level.toList().isEmpty(); ++depth)
        level = level.toList().first();
    EXPECT_GT(depth, 10);
    EXPECT_FALSE(opened.archive->isExhausted());
}

TEST(KeyedArchiveTest, RepeatedReferencesRunIntoTheBudget)
{
    ArchiveMaker maker;
    auto level = maker.add(QString(10'000, u'x'));
    for (int i = 0; i < 30; ++i)
        level = maker.array({level, level});
    const Opened opened(maker.archive(u"root"_s, level));
    std::ignore = opened.root.toVariant();
    EXPECT_TRUE(opened.archive->isExhausted());
}

TEST(KeyedArchiveTest, AGreatDictionaryAskedOverAndOverRunsIntoTheBudget)
{
    ArchiveMaker maker;
    QVariantMap fields;
    for (int i = 0; i < 100'000; ++i)
        fields.insert(u"field%1"_s.arg(i), i);
    const auto item = maker.object({u"Thing"_s, u"NSObject"_s}, fields);
    const Opened opened(maker.archive(u"root"_s, maker.array(QList<PropertyListUid>(20'000, item))));
    const auto begun = std::chrono::steady_clock::now();
    const auto entries = opened.root.entries().value();
    for (const ArchiveObject &entry : entries)
        std::ignore = entry.decodeInt("missing"_L1);
    EXPECT_TRUE(opened.archive->isExhausted());
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(10));
}
