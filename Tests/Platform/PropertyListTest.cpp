#include "Platform/PropertyList.h"

#include "Tests/Platform/ArchiveMaker.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <limits>
#include <random>

using PropertyList::Format;

namespace
{
QByteArray xmlList(const QByteArray &inside)
{
    return "<plist version=\"1.0\">" + inside + "</plist>";
}

QByteArray repeated(const QByteArray &text, int times)
{
    return text.repeated(times);
}
} // namespace

TEST(PropertyListTest, EveryTypeSurvivesBothForms)
{
    const QDateTime date(QDate(2026, 11, 22), QTime(21, 4, 5), Qt::UTC);
    const struct {
        const char *name;
        QVariant value;
    } rows[] = {
        {"true", true},
        {"false", false},
        {"one is no boolean", qlonglong(1)},
        {"negative", qlonglong(-5)},
        {"least", std::numeric_limits<qlonglong>::min()},
        {"greatest signed", std::numeric_limits<qlonglong>::max()},
        {"greatest unsigned", std::numeric_limits<qulonglong>::max()},
        {"real", 0.1},
        {"whole real", 3.0},
        {"large real", 1e300},
        {"empty text", QString()},
        {"text", QStringLiteral("a<b>&\"é\n\t\U0001F600")},
        {"data", QByteArray("\x00\xFF<", 3)},
        {"date", date},
        {"date before 2001", QDateTime(QDate(1970, 1, 1), QTime(0, 0, 1), Qt::UTC)},
        {"reference", QVariant::fromValue(PropertyListUid{70000})},
        {"empty array", QVariantList()},
        {"nested", QVariantList{QVariantMap{{QStringLiteral("é k"), QVariantList{1LL, true}}}}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const QVariant list = QVariantMap{{QStringLiteral("value"), row.value}};
        for (const auto format : {Format::Xml, Format::Binary}) {
            const auto bytes = PropertyList::serialize(list, format);
            ASSERT_TRUE(bytes);
            EXPECT_EQ(bytes->startsWith("bplist00"), format == Format::Binary);
            const auto read = PropertyList::parse(*bytes);
            ASSERT_TRUE(read);
            const auto value = read->toMap().value(QStringLiteral("value"));
            EXPECT_EQ(value.typeId(), row.value.typeId());
            EXPECT_EQ(value, row.value);
        }
    }
}

TEST(PropertyListTest, ReadsWhatOtherWritersWrite)
{
    const QDateTime farAway(QDate(4001, 1, 1), QTime(0, 0), Qt::UTC);
    const struct {
        const char *name;
        QByteArray bytes;
        QVariant value;
    } rows[] = {
        {"scalar root", xmlList("<string>a &amp; b</string>"), QStringLiteral("a & b")},
        {"document type and comment",
         "<?xml version=\"1.0\"?>\n<!DOCTYPE plist PUBLIC \"-//X//Y\" \"http://z\">\n<!-- <array> -->" +
             xmlList("<array><true/></array>"),
         QVariantList{true}},
        {"byte order mark", "\xEF\xBB\xBF" + xmlList("<true/>"), true},
        {"tags in CDATA", xmlList("<array><string><![CDATA[</array>]]></string></array>"),
         QVariantList{QStringLiteral("</array>")}},
        {"reference", xmlList("<dict><key>CF$UID</key><integer>7</integer></dict>"),
         QVariant::fromValue(PropertyListUid{7})},
        {"date past 2068", xmlList("<date>4001-01-01T00:00:00Z</date>"), farAway},
        {"binary date past 2068", rawPlist({QByteArray("\x33\x42\x2D\x63\xC3\x7F\x00\x00\x00", 9)}), farAway},
        {"date with a fraction", rawPlist({QByteArray("\x33\x3F\xF8\x00\x00\x00\x00\x00\x00", 9)}),
         QDateTime(QDate(2001, 1, 1), QTime(0, 0, 1, 500), Qt::UTC)},
        {"short integer is unsigned", rawPlist({QByteArray("\x10\xFF", 2)}), 255LL},
        {"integer of 16 bytes", rawPlist({QByteArray("\x14") + QByteArray(15, '\xFF') + '\xFE'}), -2LL},
        {"single precision", rawPlist({QByteArray("\x22\x3F\x00\x00\x00", 5)}), 0.5},
        {"UTF-16 text", rawPlist({QByteArray("\x62\x00\xE9\xD8\x3D", 5)}), QString::fromUtf16(u"\u00E9\xD83D")},
        {"shared entry", rawPlist({QByteArray("\xA2\x01\x01"), QByteArray("\x51x")}),
         QVariantList{QStringLiteral("x"), QStringLiteral("x")}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        QString reason;
        const auto value = PropertyList::parse(row.bytes, &reason);
        ASSERT_TRUE(value) << qPrintable(reason);
        EXPECT_EQ(value->typeId(), row.value.typeId());
        EXPECT_EQ(*value, row.value);
    }
}

TEST(PropertyListTest, RefusesWhatIsDamagedOrHostile)
{
    std::initializer_list<QByteArray> doubling = {
        "\xA2\x01\x01", "\xA2\x02\x02", "\xA2\x03\x03", "\xA2\x04\x04", "\xA2\x05\x05", "\xA2\x06\x06",
        "\xA2\x07\x07", "\xA2\x08\x08", "\xA2\x09\x09", "\xA2\x0A\x0A", "\xA2\x0B\x0B", "\xA2\x0C\x0C",
        "\xA2\x0D\x0D", "\xA2\x0E\x0E", "\xA2\x0F\x0F", "\xA2\x10\x10", "\xA2\x11\x11", "\xA2\x12\x12",
        "\xA2\x13\x13", "\xA2\x14\x14", "\xA2\x15\x15", "\xA2\x16\x16", "\xA2\x17\x17", "\x09"};
    constexpr int Deep = 100'000;
    const struct {
        const char *name;
        QByteArray bytes;
        const char *reason;
    } rows[] = {
        {"nothing", "", "no property list"},
        {"plain text", "12345", "no property list"},
        {"XML cut in a text", "<plist><dict><key>a</key><string>b", "no property list"},
        {"XML cut after a value", "<plist><dict><key>a</key><string>b</string>", "no property list"},
        {"deep XML", xmlList(repeated("<array>", Deep) + repeated("</array>", Deep)), "no property list"},
        {"deep XML with attributes", xmlList(repeated("<array x=\"/>\">", Deep)), "no property list"},
        {"deep XML behind quotes", xmlList(repeated("<array><string x=\"></array>\"></string>", Deep)),
         "no property list"},
        {"deep XML in a comment", xmlList("<!-->" + repeated("<dict>", Deep) + "-->"), "no property list"},
        {"tags out of step", xmlList("<array><dict></array></dict>"), "no property list"},
        {"magic alone", "bplist00", "damaged trailer"},
        {"count over the table", rawPlist({"\x09"}).replace(33, 1, "\x7F"), "damaged trailer"},
        {"array that holds itself", rawPlist({QByteArray("\xA1\x00", 2)}), "nested too deeply"},
        {"dictionary that holds itself", rawPlist({QByteArray("\xD1\x01\x00", 3), "\x51k"}),
         "nested too deeply"},
        {"eight million entries in a hundred bytes", rawPlist(doubling), "too many values"},
        {"key that is no text", rawPlist({"\xD1\x01\x01", "\x09"}), "key that is no text"},
        {"reference out of range", rawPlist({"\xA1\x05"}), "damaged object"},
        {"text longer than the file", rawPlist({QByteArray("\x5F\x12\x7F\xFF\xFF\xFF", 6)}), "damaged object"},
        {"length that overflows", rawPlist({QByteArray("\xAF\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 10)}),
         "damaged object"},
        {"unknown marker", rawPlist({"\x70"}), "damaged object"},
        {"date that is no number", rawPlist({QByteArray("\x33\x7F\xF8\x00\x00\x00\x00\x00\x00", 9)}),
         "date out of range"},
        {"integer of 128 bits", rawPlist({QByteArray("\x14\x01") + QByteArray(15, '\0')}),
         "integer of more than 64 bits"},
        {"too large", QByteArray(PropertyList::MaxBytes + 1, ' '), "too large"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        QString reason;
        EXPECT_FALSE(PropertyList::parse(row.bytes, &reason));
        EXPECT_EQ(reason.toStdString(), row.reason);
    }
}

TEST(PropertyListTest, DamagedBytesGiveAnAnswer)
{
    const QVariantMap list{{QStringLiteral("a"), QVariantList{1LL, 2.5, true, QByteArray("xyz")}},
                           {QStringLiteral("é"), QDateTime(QDate(2026, 1, 1), QTime(1, 2), Qt::UTC)}};
    std::mt19937 random(20261122); // fixed, so that a failure comes again
    for (const auto format : {Format::Xml, Format::Binary}) {
        const auto whole = PropertyList::serialize(list, format).value();
        for (qsizetype length = 0; length < whole.size() - 10; ++length)
            EXPECT_FALSE(PropertyList::parse(whole.first(length))) << length;
        for (int round = 0; round < 3000; ++round) {
            auto bytes = whole;
            for (int flip = 0; flip <= round % 3; ++flip)
                bytes[qsizetype(random() % size_t(bytes.size()))] = char(random());
            const auto value = PropertyList::parse(bytes);
            EXPECT_TRUE(!value || value->isValid() || format == Format::Binary); // only binary lists know null
        }
    }
}

TEST(PropertyListTest, RefusesToWriteWhatCouldNotBeReadBack)
{
    QVariant deep = QVariantList();
    for (int level = 0; level < 200; ++level)
        deep = QVariantList{deep};
    const struct {
        const char *name;
        QVariant list;
        bool xml, binary;
    } rows[] = {
        {"invalid variant", QVariantList{QVariant()}, false, false},
        {"other type", QVariantList{QVariant(QChar(u'x'))}, false, false},
        {"zero in a text", QVariantList{QString(QChar(u'\0'))}, false, false},
        {"bell in a text", QVariantList{QStringLiteral("\a")}, false, true},
        {"bell in a key", QVariantMap{{QStringLiteral("\a"), 1}}, false, true},
        {"date past 2068", QVariantList{QDateTime(QDate(2070, 1, 1), QTime(), Qt::UTC)}, false, false},
        {"reference beside a type without form", QVariantList{QVariant::fromValue(PropertyListUid{1}), QTime()},
         false, false},
        {"too deep", deep, false, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        QString reason;
        EXPECT_EQ(PropertyList::serialize(row.list, Format::Xml, &reason).has_value(), row.xml);
        EXPECT_EQ(PropertyList::serialize(row.list, Format::Binary, &reason).has_value(), row.binary);
        EXPECT_FALSE(reason.isEmpty());
    }
}

TEST(PropertyListTest, FilesAreReadWholeAndReplacedWhole)
{
    const QTemporaryDir home;
    const auto path = home.filePath(QStringLiteral("list.plist"));
    QString reason;
    EXPECT_FALSE(PropertyList::readDictionary(path, &reason));
    EXPECT_EQ(reason, u"cannot be read");

    ASSERT_TRUE(PropertyList::write(path, QVariantMap{{QStringLiteral("Username"), QStringLiteral("ann")}}));
    EXPECT_FALSE(PropertyList::write(path, QVariantList{QVariant()}));
    EXPECT_EQ(PropertyList::readDictionary(path)->value(QStringLiteral("Username")), QStringLiteral("ann"));

    ASSERT_TRUE(PropertyList::write(path, QVariantList{1}, Format::Binary));
    EXPECT_FALSE(PropertyList::readDictionary(path, &reason));
    EXPECT_EQ(reason, u"no dictionary");
}

TEST(PropertyListTest, EntriesAreTakenByTheirOwnTypeOnly)
{
    const auto list = PropertyList::parse(xmlList(
        "<dict><key>t</key><string>1</string><key>i</key><integer>1</integer><key>b</key><true/></dict>"));
    const auto dictionary = list->toMap();
    const struct {
        const char *key;
        bool text, integer, boolean;
    } rows[] = {{"t", true, false, false},
                {"i", false, true, false},
                {"b", false, false, true},
                {"x", false, false, false}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.key);
        const auto key = QString::fromLatin1(row.key);
        EXPECT_EQ(PropertyList::textValue(dictionary, key).has_value(), row.text);
        EXPECT_EQ(PropertyList::intValue(dictionary, key).has_value(), row.integer);
        EXPECT_EQ(PropertyList::boolValue(dictionary, key).has_value(), row.boolean);
    }
}
