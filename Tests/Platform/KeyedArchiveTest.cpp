#include "Platform/KeyedArchive.h"

#include "Tests/Platform/ArchiveMaker.h"

#include <gtest/gtest.h>

#include <random>

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

/// Touches everything that can be reached, as far as the reader lets it.
void walk(const ArchiveObject &object, int depth)
{
    std::ignore = object.classChain();
    std::ignore = object.toVariant();
    std::ignore = object.decodeDate("f"_L1);
    std::ignore = object.decodeInt("f"_L1);
    std::ignore = object.decodeBool("f"_L1);
    const auto entries = object.entries();
    for (size_t i = 0; depth > 0 && entries && i < entries->size(); ++i)
        walk((*entries)[i], depth - 1);
}
} // namespace

// The layout of objects, byte widths apart, that the platform's archiver gives for an array of one item: null
// first, the array and its items before their classes, equal class records once, numbers in place, everything
// else referred to.
TEST(KeyedArchiveTest, ReadsTheLayoutOfThePlatformsArchiver)
{
    const QVariantList objects{
        u"$null"_s,
        QVariantMap{{u"NS.objects"_s, QVariantList{ref(2)}}, {u"$class"_s, ref(9)}},
        QVariantMap{{u"$class"_s, ref(8)},
                    {u"owner"_s, ref(3)},
                    {u"when"_s, ref(5)},
                    {u"note"_s, ref(0)},
                    {u"title"_s, ref(7)},
                    {u"count"_s, 3},
                    {u"on"_s, true}},
        QVariantMap{{u"$class"_s, ref(4)}, {u"NS.string"_s, u"ann: ann-login"_s}},
        QVariantMap{{u"$classname"_s, u"NSMutableString"_s},
                    {u"$classes"_s, QStringList{u"NSMutableString"_s, u"NSString"_s, u"NSObject"_s}}},
        QVariantMap{{u"NS.time"_s, 816382245.75}, {u"$class"_s, ref(6)}},
        QVariantMap{{u"$classname"_s, u"NSDate"_s}, {u"$classes"_s, QStringList{u"NSDate"_s, u"NSObject"_s}}},
        u"plain"_s,
        QVariantMap{{u"$classname"_s, u"Item"_s},
                    {u"$classes"_s, QStringList{u"Item"_s, u"Base"_s, u"NSObject"_s}}},
        QVariantMap{{u"$classname"_s, u"NSMutableArray"_s},
                    {u"$classes"_s, QStringList{u"NSMutableArray"_s, u"NSArray"_s, u"NSObject"_s}}}};
    const QVariantMap list{{u"$version"_s, 100000},
                           {u"$archiver"_s, u"NSKeyedArchiver"_s},
                           {u"$top"_s, QVariantMap{{u"root"_s, ref(1)}}},
                           {u"$objects"_s, objects}};

    for (const auto format : {PropertyList::Format::Binary, PropertyList::Format::Xml}) {
        const Opened opened(PropertyList::serialize(list, format).value());
        ASSERT_TRUE(opened.archive);
        const auto entries = opened.root.entries();
        ASSERT_TRUE(entries);
        ASSERT_EQ(entries->size(), 1U);
        const auto &item = entries->front();
        EXPECT_EQ(item.className(), u"Item");
        EXPECT_EQ(item.classChain().join(u','), u"Item,Base,NSObject");
        EXPECT_TRUE(item.isKindOf("Base"_L1));
        EXPECT_FALSE(item.isKindOf("NSArray"_L1));
        EXPECT_EQ(item.decodeString("owner"_L1), u"ann: ann-login"_s);
        EXPECT_EQ(item.decodeString("title"_L1), u"plain"_s);
        EXPECT_EQ(item.decodeDate("when"_L1), QDateTime(QDate(2026, 11, 14), QTime(20, 50, 45, 750), Qt::UTC));
        EXPECT_TRUE(item.contains("note"_L1));
        EXPECT_TRUE(item.decodeObject("note"_L1).isNull());
        EXPECT_EQ(item.decodeInt("count"_L1), 3);
        EXPECT_TRUE(item.decodeBool("on"_L1));
    }
}

TEST(KeyedArchiveTest, NumbersAndBooleansReadAsEachOther)
{
    ArchiveMaker maker;
    const std::tuple<const char *, QVariant, qint64, bool> rows[] = {
        {"zero", 0, 0, false},
        {"seven", 7, 7, true},
        {"minus one", -1, -1, true},
        {"true", true, 1, true},
        {"false", false, 0, false},
        {"real", 2.9, 2, true},
        {"huge real", 1e300, 0, true},
        {"over 63 bits", std::numeric_limits<quint64>::max(), 0, true},
        {"text", u"1"_s, 0, false},
        {"null", ref(0), 0, false},
        {"out of range", ref(99), 0, false},
    };
    for (const auto &[name, field, integer, boolean] : rows) {
        SCOPED_TRACE(name);
        const Opened opened(archiveOfField(field));
        EXPECT_EQ(opened.root.decodeInt("f"_L1), integer);
        EXPECT_EQ(opened.root.decodeBool("f"_L1), boolean);
        EXPECT_EQ(opened.root.decodeInt("missing"_L1), 0);
        EXPECT_FALSE(opened.root.decodeBool("missing"_L1));
    }
    const auto number = maker.add(4);
    const auto thing = maker.object({u"Thing"_s}, {{u"f"_s, QVariant::fromValue(number)}});
    const Opened boxed(maker.archive(u"root"_s, thing));
    EXPECT_EQ(boxed.root.decodeInt("f"_L1), 4);
}

TEST(KeyedArchiveTest, ValuesOfAnotherKindAreNone)
{
    const QStringList strings{u"NSString"_s, u"NSObject"_s};
    ArchiveMaker maker;
    const std::tuple<const char *, PropertyListUid, bool, bool, bool> rows[] = {
        {"text", maker.add(u"x"_s), true, false, false},
        {"wrapped text", maker.object(strings, {{u"NS.string"_s, u"x"_s}}), true, false, false},
        {"text as bytes", maker.object(strings, {{u"NS.bytes"_s, QByteArray("x")}}), true, false, false},
        {"wrapper without text", maker.object(strings, {}), false, false, false},
        {"wrapped number", maker.object(strings, {{u"NS.string"_s, 1}}), false, false, false},
        {"date", maker.date(1.5), false, true, false},
        {"date out of range", maker.date(1e300), false, false, false},
        {"date of another class", maker.object({u"Date"_s}, {{u"NS.time"_s, 1.0}}), false, false, false},
        {"array", maker.array({uid(1)}), false, false, true},
        {"array without entries", maker.object({u"NSArray"_s}, {}), false, false, false},
        {"number", maker.add(5), false, false, false},
        {"null", uid(0), false, false, false},
        {"out of range", uid(1'000'000), false, false, false},
        {"reference to a reference", maker.add(ref(1)), false, false, false},
    };
    for (const auto &[name, value, text, date, list] : rows) {
        SCOPED_TRACE(name);
        auto copy = maker;
        const auto thing = copy.object({u"Thing"_s}, {{u"f"_s, QVariant::fromValue(value)}});
        const Opened opened(copy.archive(u"root"_s, thing));
        const auto field = opened.root.decodeObject("f"_L1);
        EXPECT_EQ(field.text().has_value(), text);
        EXPECT_EQ(field.date().has_value(), date);
        EXPECT_EQ(field.entries().has_value(), list);
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
    const std::tuple<const char *, const char *, QVariant> rows[] = {
        {"another archiver", "$archiver", u"NSArchiver"_s},
        {"archiver is no text", "$archiver", 1},
        {"another version", "$version", 100001},
        {"version is text", "$version", u"100000"_s},
        {"objects are no array", "$objects", QVariantMap()},
        {"top is no dictionary", "$top", QVariantList()},
    };
    for (const auto &[name, key, value] : rows) {
        SCOPED_TRACE(name);
        auto damaged = whole;
        damaged.insert(QString::fromLatin1(key), value);
        EXPECT_FALSE(opens(damaged));
        damaged.remove(QString::fromLatin1(key));
        EXPECT_FALSE(opens(damaged));
    }
    EXPECT_FALSE(KeyedArchive::open({}));
    EXPECT_FALSE(KeyedArchive::open("bplist00"));
    EXPECT_FALSE(KeyedArchive::open(rawPlist({"\x09"})));
}

TEST(KeyedArchiveTest, CyclesEnd)
{
    ArchiveMaker maker;
    const auto text = maker.add(u"x"_s);
    const auto next = maker.array({uid(4), text}); // stands at 2, its class at 3; holds the one that follows
    const auto last = maker.array({next});
    ASSERT_EQ(last, uid(4));
    const Opened opened(maker.archive(u"root"_s, last));
    auto level = opened.root.toVariant();
    int depth = 0;
    for (; level.typeId() == QMetaType::QVariantList && !level.toList().isEmpty(); ++depth)
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

TEST(KeyedArchiveTest, DamagedBytesGiveAnAnswer)
{
    ArchiveMaker maker;
    const auto item =
        maker.object({u"Thing"_s, u"NSObject"_s}, {{u"f"_s, QVariant::fromValue(maker.date(1.5))}});
    const auto whole = maker.archive(u"root"_s, maker.array({item, maker.add(u"é"_s), item}));
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(KeyedArchive::open(whole.first(length))) << length;
    std::mt19937 random(20261122); // fixed, so that a failure comes again
    int opened = 0;
    for (int round = 0; round < 20'000; ++round) {
        auto bytes = whole;
        for (int flip = 0; flip <= round % 4; ++flip)
            bytes[qsizetype(random() % size_t(bytes.size()))] = char(random());
        const Opened damaged(bytes);
        if (damaged.archive) {
            ++opened;
            walk(damaged.root, 4);
        }
    }
    EXPECT_GT(opened, 1000); // or the loop would have tested the trailer alone
}
