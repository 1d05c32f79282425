#include "Platform/KeyedArchive.h"

#include "Tests/Platform/ArchiveMaker.h"

#include <gtest/gtest.h>

#include <random>

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
    const auto thing =
        maker.object({QStringLiteral("Thing"), QStringLiteral("NSObject")}, {{QStringLiteral("f"), field}});
    return maker.archive(QStringLiteral("root"), thing);
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
    std::ignore = object.decodeDate(QLatin1StringView("f"));
    std::ignore = object.decodeInt(QLatin1StringView("f"));
    std::ignore = object.decodeBool(QLatin1StringView("f"));
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
    const auto string = [](const char *text) { return QString::fromLatin1(text); };
    const QVariantList objects{
        string("$null"),
        QVariantMap{{string("NS.objects"), QVariantList{ref(2)}}, {string("$class"), ref(9)}},
        QVariantMap{{string("$class"), ref(8)},
                    {string("owner"), ref(3)},
                    {string("when"), ref(5)},
                    {string("note"), ref(0)},
                    {string("title"), ref(7)},
                    {string("count"), 3},
                    {string("on"), true}},
        QVariantMap{{string("$class"), ref(4)}, {string("NS.string"), string("ann: ann-login")}},
        QVariantMap{{string("$classname"), string("NSMutableString")},
                    {string("$classes"),
                     QStringList{string("NSMutableString"), string("NSString"), string("NSObject")}}},
        QVariantMap{{string("NS.time"), 816382245.75}, {string("$class"), ref(6)}},
        QVariantMap{{string("$classname"), string("NSDate")},
                    {string("$classes"), QStringList{string("NSDate"), string("NSObject")}}},
        string("plain"),
        QVariantMap{{string("$classname"), string("Item")},
                    {string("$classes"), QStringList{string("Item"), string("Base"), string("NSObject")}}},
        QVariantMap{{string("$classname"), string("NSMutableArray")},
                    {string("$classes"),
                     QStringList{string("NSMutableArray"), string("NSArray"), string("NSObject")}}}};
    const QVariantMap list{{string("$version"), 100000},
                           {string("$archiver"), string("NSKeyedArchiver")},
                           {string("$top"), QVariantMap{{string("root"), ref(1)}}},
                           {string("$objects"), objects}};

    for (const auto format : {PropertyList::Format::Binary, PropertyList::Format::Xml}) {
        const Opened opened(PropertyList::serialize(list, format).value());
        ASSERT_TRUE(opened.archive);
        const auto entries = opened.root.entries();
        ASSERT_TRUE(entries);
        ASSERT_EQ(entries->size(), 1U);
        const auto &item = entries->front();
        EXPECT_EQ(item.className(), u"Item");
        EXPECT_EQ(item.classChain().join(u','), u"Item,Base,NSObject");
        EXPECT_TRUE(item.isKindOf(QLatin1StringView("Base")));
        EXPECT_FALSE(item.isKindOf(QLatin1StringView("NSArray")));
        EXPECT_EQ(item.decodeString(QLatin1StringView("owner")), QStringLiteral("ann: ann-login"));
        EXPECT_EQ(item.decodeString(QLatin1StringView("title")), QStringLiteral("plain"));
        EXPECT_EQ(item.decodeDate(QLatin1StringView("when")),
                  QDateTime(QDate(2026, 11, 14), QTime(20, 50, 45, 750), Qt::UTC));
        EXPECT_TRUE(item.contains(QLatin1StringView("note")));
        EXPECT_TRUE(item.decodeObject(QLatin1StringView("note")).isNull());
        EXPECT_EQ(item.decodeInt(QLatin1StringView("count")), 3);
        EXPECT_TRUE(item.decodeBool(QLatin1StringView("on")));
    }
}

TEST(KeyedArchiveTest, NumbersAndBooleansReadAsEachOther)
{
    ArchiveMaker maker;
    const struct {
        const char *name;
        QVariant field;
        qint64 integer;
        bool boolean;
    } rows[] = {
        {"zero", 0, 0, false},
        {"seven", 7, 7, true},
        {"minus one", -1, -1, true},
        {"true", true, 1, true},
        {"false", false, 0, false},
        {"real", 2.9, 2, true},
        {"huge real", 1e300, 0, true},
        {"over 63 bits", std::numeric_limits<quint64>::max(), 0, true},
        {"text", QStringLiteral("1"), 0, false},
        {"null", ref(0), 0, false},
        {"out of range", ref(99), 0, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const Opened opened(archiveOfField(row.field));
        EXPECT_EQ(opened.root.decodeInt(QLatin1StringView("f")), row.integer);
        EXPECT_EQ(opened.root.decodeBool(QLatin1StringView("f")), row.boolean);
        EXPECT_EQ(opened.root.decodeInt(QLatin1StringView("missing")), 0);
        EXPECT_FALSE(opened.root.decodeBool(QLatin1StringView("missing")));
    }
    const auto number = maker.add(4);
    const auto thing =
        maker.object({QStringLiteral("Thing")}, {{QStringLiteral("f"), QVariant::fromValue(number)}});
    const Opened boxed(maker.archive(QStringLiteral("root"), thing));
    EXPECT_EQ(boxed.root.decodeInt(QLatin1StringView("f")), 4);
}

TEST(KeyedArchiveTest, ValuesOfAnotherKindAreNone)
{
    const QStringList strings{QStringLiteral("NSString"), QStringLiteral("NSObject")};
    ArchiveMaker maker;
    const struct {
        const char *name;
        PropertyListUid value;
        bool text, date, list;
    } rows[] = {
        {"text", maker.add(QStringLiteral("x")), true, false, false},
        {"wrapped text", maker.object(strings, {{QStringLiteral("NS.string"), QStringLiteral("x")}}), true,
         false, false},
        {"text as bytes", maker.object(strings, {{QStringLiteral("NS.bytes"), QByteArray("x")}}), true, false,
         false},
        {"wrapper without text", maker.object(strings, {}), false, false, false},
        {"wrapped number", maker.object(strings, {{QStringLiteral("NS.string"), 1}}), false, false, false},
        {"date", maker.date(1.5), false, true, false},
        {"date out of range", maker.date(1e300), false, false, false},
        {"date of another class", maker.object({QStringLiteral("Date")}, {{QStringLiteral("NS.time"), 1.0}}),
         false, false, false},
        {"array", maker.array({uid(1)}), false, false, true},
        {"array without entries", maker.object({QStringLiteral("NSArray")}, {}), false, false, false},
        {"number", maker.add(5), false, false, false},
        {"null", uid(0), false, false, false},
        {"out of range", uid(1'000'000), false, false, false},
        {"reference to a reference", maker.add(ref(1)), false, false, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        auto copy = maker;
        const auto thing =
            copy.object({QStringLiteral("Thing")}, {{QStringLiteral("f"), QVariant::fromValue(row.value)}});
        const Opened opened(copy.archive(QStringLiteral("root"), thing));
        const auto field = opened.root.decodeObject(QLatin1StringView("f"));
        EXPECT_EQ(field.text().has_value(), row.text);
        EXPECT_EQ(field.date().has_value(), row.date);
        EXPECT_EQ(field.entries().has_value(), row.list);
    }
}

TEST(KeyedArchiveTest, NestedCollectionsBecomeVariants)
{
    ArchiveMaker maker;
    const auto monday = maker.add(QStringLiteral("Mon"));
    const auto data = maker.object({QStringLiteral("NSMutableData"), QStringLiteral("NSData")},
                                   {{QStringLiteral("NS.data"), QByteArray("\x01")}});
    const auto other = maker.object({QStringLiteral("Alien")}, {});
    const auto map =
        maker.object({QStringLiteral("NSDictionary"), QStringLiteral("NSObject")},
                     {{QStringLiteral("NS.keys"), QVariantList{QVariant::fromValue(monday), ref(0)}},
                      {QStringLiteral("NS.objects"), QVariantList{QVariant::fromValue(data), ref(0)}}});
    const auto list =
        maker.array({monday, maker.add(2), maker.add(true), uid(0), other, map, maker.array({}), uid(500)});
    const Opened opened(maker.archive(QStringLiteral("root"), list));
    const QVariantList expected{QStringLiteral("Mon"),
                                2LL,
                                true,
                                QVariant(),
                                QVariant(),
                                QVariantMap{{QStringLiteral("Mon"), QByteArray("\x01")}},
                                QVariantList(),
                                QVariant()};
    EXPECT_EQ(opened.root.toVariant(), QVariant(expected));
}

TEST(KeyedArchiveTest, RefusesWhatIsNoArchive)
{
    ArchiveMaker maker;
    const auto thing = maker.add(QStringLiteral("x"));
    const auto whole = PropertyList::parse(maker.archive(QStringLiteral("root"), thing))->toMap();
    ASSERT_TRUE(KeyedArchive::open(PropertyList::serialize(whole, PropertyList::Format::Binary).value()));
    const struct {
        const char *name, *key;
        QVariant value;
    } rows[] = {
        {"another archiver", "$archiver", QStringLiteral("NSArchiver")},
        {"archiver is no text", "$archiver", 1},
        {"another version", "$version", 100001},
        {"version is text", "$version", QStringLiteral("100000")},
        {"objects are no array", "$objects", QVariantMap()},
        {"top is no dictionary", "$top", QVariantList()},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        auto damaged = whole;
        damaged.insert(QString::fromLatin1(row.key), row.value);
        EXPECT_FALSE(
            KeyedArchive::open(PropertyList::serialize(damaged, PropertyList::Format::Binary).value()));
        damaged.remove(QString::fromLatin1(row.key));
        EXPECT_FALSE(
            KeyedArchive::open(PropertyList::serialize(damaged, PropertyList::Format::Binary).value()));
    }
    EXPECT_FALSE(KeyedArchive::open({}));
    EXPECT_FALSE(KeyedArchive::open("bplist00"));
    EXPECT_FALSE(KeyedArchive::open(rawPlist({"\x09"})));
}

TEST(KeyedArchiveTest, CyclesEnd)
{
    ArchiveMaker maker;
    const auto text = maker.add(QStringLiteral("x"));
    const auto next = maker.array({uid(4), text}); // stands at 2, its class at 3; holds the one that follows
    const auto last = maker.array({next});
    ASSERT_EQ(last, uid(4));
    const Opened opened(maker.archive(QStringLiteral("root"), last));
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
    const Opened opened(maker.archive(QStringLiteral("root"), level));
    std::ignore = opened.root.toVariant();
    EXPECT_TRUE(opened.archive->isExhausted());
}

TEST(KeyedArchiveTest, DamagedBytesGiveAnAnswer)
{
    ArchiveMaker maker;
    const auto item = maker.object({QStringLiteral("Thing"), QStringLiteral("NSObject")},
                                   {{QStringLiteral("f"), QVariant::fromValue(maker.date(1.5))}});
    const auto whole =
        maker.archive(QStringLiteral("root"), maker.array({item, maker.add(QStringLiteral("é")), item}));
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
