#include "Platform/PropertyList.h"

#include "Tests/Platform/ArchiveMaker.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <ctime>
#include <limits>

using namespace Qt::StringLiterals;
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
    const std::pair<const char *, QVariant> rows[] = {
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
        {"byte order mark in a text", u"\uFEFFa"_s},
        {"text", u"a<b>&\"é\n\t\U0001F600"_s},
        {"blanks and carriage returns", u" \r\n "_s},
        {"data", QByteArray("\x00\xFF<", 3)},
        {"date", date},
        {"date before 2001", QDateTime(QDate(1970, 1, 1), QTime(0, 0, 1), Qt::UTC)},
        {"first date", QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC)},
        {"last date", QDateTime(QDate(9999, 12, 31), QTime(23, 59, 59), Qt::UTC)},
        {"reference", QVariant::fromValue(PropertyListUid{70000})},
        {"empty array", QVariantList()},
        {"nested", QVariantList{QVariantMap{{u"é k"_s, QVariantList{1LL, true}}}}},
    };
    for (const auto &[name, wanted] : rows) {
        SCOPED_TRACE(name);
        const QVariant list = QVariantMap{{u"value"_s, wanted}};
        for (const auto format : {Format::Xml, Format::Binary}) {
            const auto bytes = PropertyList::serialize(list, format);
            ASSERT_TRUE(bytes);
            EXPECT_EQ(bytes->startsWith("bplist00"), format == Format::Binary);
            EXPECT_TRUE(format == Format::Binary || !bytes->contains('\r')) << "readers make a line feed of it";
            const auto read = PropertyList::parse(*bytes);
            ASSERT_TRUE(read);
            const auto value = read->toMap().value(u"value"_s);
            EXPECT_EQ(value.typeId(), wanted.typeId());
            EXPECT_EQ(value, wanted);
        }
    }
}

TEST(PropertyListTest, ReadsWhatOtherWritersWrite)
{
    const QDateTime farAway(QDate(4001, 1, 1), QTime(0, 0), Qt::UTC);
    const std::tuple<const char *, QByteArray, QVariant> rows[] = {
        {"scalar root", xmlList("<string>a &amp; b</string>"), u"a & b"_s},
        {"document type and comment",
         "<?xml version=\"1.0\"?>\n<!DOCTYPE plist PUBLIC \"-//X//Y\" \"http://z\">\n<!-- <array> -->" +
             xmlList("<array><true/></array>"),
         QVariantList{true}},
        {"document type with declarations",
         "<!DOCTYPE plist [<!ENTITY x \"]\"><!ELEMENT plist ANY>]>" + xmlList("<true/>"), true},
        {"attributes", xmlList("<array a='/>'><true b=\"</array>\" /></array >"), QVariantList{true}},
        {"hexadecimal", xmlList("<integer> -0x1F </integer>"), -31LL},
        {"hexadecimal of 64 bits", xmlList("<integer>0XffffFFFFffffFFFF</integer>"),
         std::numeric_limits<qulonglong>::max()},
        {"real with an exponent", xmlList("<real> +1.5e-3 </real>"), 0.0015},
        {"real with a comma", xmlList("<real>1,5</real>"), 1.0},
        {"endless real", xmlList("<real>-infinity</real>"), -std::numeric_limits<double>::infinity()},
        {"date with more behind it", xmlList("<date>\n2026-01-02T03:04:05.678+01:00</date>"),
         QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5), Qt::UTC)},
        {"data on lines", xmlList("<data>\n\tQU\r\n\tI=\n</data>"), QByteArray("AB")},
        {"elements without content", xmlList("<array><string/><data/><array/><dict/><false></false></array>"),
         QVariantList{QString(), QByteArray(), QVariantList(), QVariantMap(), false}},
        {"the last of two entries", xmlList("<dict><key>a</key><true/><key>a</key><string>b</string></dict>"),
         QVariantMap{{u"a"_s, u"b"_s}}},
        {"escapes",
         xmlList("<dict><key>&lt;&gt;&quot;&apos;</key><string>&#65;&#x1f600;&#233;&#1;</string></dict>"),
         QVariantMap{{u"<>\"'"_s, u"A\U0001F600\u00E9\u0001"_s}}},
        {"control characters and line ends", xmlList("<string>a\x07\r\nb\rc]]></string>"),
         u"a\u0007\r\nb\rc]]>"_s},
        {"byte order mark", "\xEF\xBB\xBF" + xmlList("<true/>"), true},
        {"another encoding declared",
         "\n<?xml version='1.0' encoding='ISO-8859-1'?>" + xmlList("<string>\xC3\xA9</string>"), u"\u00E9"_s},
        {"no element around the root", "<dict><key>a</key><true/></dict>", QVariantMap{{u"a"_s, true}}},
        {"the end of a longer list behind a shorter one", xmlList("<true/>") + "</dict></plist>\n", true},
        {"comments and CDATA in a text",
         xmlList("<string>a<!-- </string> & -->&amp;<![CDATA[&amp;<]]>b</string>"), u"a&&amp;<b"_s},
        {"tags in CDATA", xmlList("<array><string><![CDATA[</array>]]></string></array>"),
         QVariantList{u"</array>"_s}},
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
         QVariantList{u"x"_s, u"x"_s}},
    };
    for (const auto &[name, bytes, wanted] : rows) {
        SCOPED_TRACE(name);
        QString reason;
        const auto value = PropertyList::parse(bytes, &reason);
        ASSERT_TRUE(value) << qPrintable(reason);
        EXPECT_EQ(value->typeId(), wanted.typeId());
        EXPECT_EQ(*value, wanted);
    }
}

TEST(PropertyListTest, RefusesWhatIsDamagedOrHostile)
{
    const QByteArray damages(
        "<integer>abc</integer>|<integer/>|<integer>1 2</integer>|<real>abc</real>|<real/>|"
        "<date>2026-11-22</date>|<date/>|<null/>|<key>a</key>|<array><key>a</key></array>|"
        "<dict><true/></dict>|<dict><key>a</key></dict>|"
        "<dict><key>a</key><key>b</key><true/></dict>|<dict>x<key>a</key><true/></dict>|"
        "<array>x</array>|<array><true/></dict>|</array>|<string>a|<string>a</key>|"
        "<string>a<true/></string>|<string>a</string/>|<string>&nbsp;</string>|"
        "<string>a & b</string>|<string>&amp</string>|<string>&#0;</string>|"
        "<string>&#xD800;</string>|<string>&#x110000;</string>|<!-- <true/>|"
        "<string><![CDATA[</string>|<true a='/>|<>|<? <true/>|<!DOCTYPE plist [ <true/>|"
        "<array><dict></array></dict>|<integer>18446744073709551616</integer>|"
        "<integer>-9223372036854775809</integer>");
    for (const auto &damage : damages.split('|')) {
        SCOPED_TRACE(damage.toStdString());
        QString reason;
        EXPECT_FALSE(PropertyList::parse(xmlList(damage), &reason));
        EXPECT_EQ(reason, u"no property list, or over a limit");
    }
    std::vector<QByteArray> doubling;
    for (char next = 1; next <= 23; ++next)
        doubling.push_back(QByteArray("\xA2") + next + next);
    doubling.push_back("\x09");
    constexpr int Deep = 100'000;
    const std::tuple<const char *, QByteArray, const char *> rows[] = {
        {"nothing", "", "no property list, or over a limit"},
        {"plain text", "12345", "no property list, or over a limit"},
        {"XML cut in a text", "<plist><dict><key>a</key><string>b", "no property list, or over a limit"},
        {"XML cut after a value", "<plist><dict><key>a</key><string>b</string>",
         "no property list, or over a limit"},
        {"deep XML", xmlList(repeated("<array>", Deep) + repeated("</array>", Deep)),
         "no property list, or over a limit"},
        {"deep XML with attributes", xmlList(repeated("<array x=\"/>\">", Deep)),
         "no property list, or over a limit"},
        {"deep XML behind quotes", xmlList(repeated("<array><string x=\"></array>\"></string>", Deep)),
         "no property list, or over a limit"},
        {"deep XML in a comment", xmlList("<!-->" + repeated("<dict>", Deep) + "-->"),
         "no property list, or over a limit"},
        {"no UTF-8", xmlList("<string>caf\xE9</string>"), "no UTF-8"},
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
        {"more values than a list may have",
         xmlList("<array>" + QByteArray("<true/>").repeated(500'000) + "</array>"),
         "no property list, or over a limit"},
        {"too large", QByteArray(Limits::ListBytes + 1, ' '), "too large"},
    };
    for (const auto &[name, bytes, wanted] : rows) {
        SCOPED_TRACE(name);
        QString reason;
        EXPECT_FALSE(PropertyList::parse(bytes, &reason));
        EXPECT_EQ(reason.toStdString(), wanted);
    }
}

TEST(PropertyListTest, AListThatIsCutOffIsNone)
{
    const QVariantMap list{{u"a"_s, QVariantList{1LL, 2.5, true, QByteArray("xyz")}},
                           {u"é"_s, QDateTime(QDate(2026, 1, 1), QTime(1, 2), Qt::UTC)}};
    for (const auto format : {Format::Xml, Format::Binary}) {
        const auto whole = PropertyList::serialize(list, format).value();
        for (qsizetype length = 0; length < whole.size() - 10; ++length)
            EXPECT_FALSE(PropertyList::parse(whole.first(length))) << length;
    }
}

TEST(PropertyListTest, RefusesToWriteWhatCouldNotBeReadBack)
{
    QVariant deep = QVariantList();
    for (int level = 0; level < 200; ++level)
        deep = QVariantList{deep};
    const std::tuple<const char *, QVariant, bool, bool> rows[] = {
        {"invalid variant", QVariantList{QVariant()}, false, false},
        {"other type", QVariantList{QVariant(QChar(u'x'))}, false, false},
        {"zero in a text", QVariantList{QString(QChar(u'\0'))}, false, false},
        {"bell in a text", QVariantList{u"\a"_s}, false, true},
        {"bell in a key", QVariantMap{{u"\a"_s, 1}}, false, true},
        {"half a surrogate pair", QVariantList{QString(QChar(0xD83D))}, false, false},
        {"year 10000", QVariantList{QDateTime(QDate(10000, 1, 1), QTime(0, 0), Qt::UTC)}, false, false},
        {"reference beside a type without form", QVariantList{QVariant::fromValue(PropertyListUid{1}), QTime()},
         false, false},
        {"too deep", deep, false, false},
    };
    for (const auto &[name, list, xml, binary] : rows) {
        SCOPED_TRACE(name);
        QString reason;
        EXPECT_EQ(PropertyList::serialize(list, Format::Xml, &reason).has_value(), xml);
        EXPECT_EQ(PropertyList::serialize(list, Format::Binary, &reason).has_value(), binary);
        EXPECT_FALSE(reason.isEmpty());
    }
}

TEST(PropertyListTest, WhatTheLibraryIsSlowAtStaysQuick)
{
    constexpr int Size = 2'000'000;
    const auto upToSize = [](auto element) {
        QByteArray elements;
        for (int i = 0; elements.size() < Size; ++i)
            elements += element(i);
        return elements;
    };
    // "Bb" and "CA" have the same hash in the library, and so have words of as many of either.
    const auto word = [](int i) {
        QByteArray letters;
        for (int bit = 0; bit < 16; ++bit)
            letters += (i >> bit & 1) != 0 ? "Bb" : "CA";
        return letters;
    };
    const auto cpuTime = [](const QByteArray &list) {
        const auto begun = std::clock();
        EXPECT_TRUE(PropertyList::parse(xmlList(list)));
        return double(std::clock() - begun) / CLOCKS_PER_SEC;
    };
    const auto numbered = [](int i) {
        return "<string>plain text number " + QByteArray::number(i) + "</string>";
    };
    const double plain = cpuTime("<array>" + upToSize(numbered) + "</array>");
    const std::tuple<const char *, QByteArray> rows[] = {
        {"escapes", "<string>" + upToSize([](int) { return "&amp;"; }) + "</string>"},
        {"empty collections", "<array>" + upToSize([](int) { return "<dict/>"; }) + "</array>"},
        {"texts of one hash",
         "<array>" + upToSize([&](int i) { return "<string>" + word(i) + "</string>"; }) + "</array>"},
        {"keys of one hash",
         "<dict>" + upToSize([&](int i) { return "<key>" + word(i) + "</key><true/>"; }) + "</dict>"},
    };
    for (const auto &[name, list] : rows)
        EXPECT_LT(cpuTime(list), 10 * plain) << name;
}

TEST(PropertyListTest, FilesSayWhyTheyAreNotRead)
{
    const TemporaryHome home;
    const QByteArray text = "<string>" + QByteArray(2'000'000, 'x') + "</string>";
    home.write(u"large"_s, xmlList("<dict><key>a</key>" + text + "</dict>"));
    home.write(u"array"_s, xmlList("<array/>"));
    QString reason;
    EXPECT_FALSE(PropertyList::readDictionary(home.path(u"missing"_s), &reason));
    EXPECT_EQ(reason, u"cannot be read");
    EXPECT_FALSE(PropertyList::readDictionary(home.path(u"array"_s), &reason));
    EXPECT_EQ(reason, u"no dictionary");
    EXPECT_FALSE(PropertyList::readDictionary(home.path(u"large"_s), &reason));
    EXPECT_EQ(reason, u"cannot be read");
    EXPECT_TRUE(PropertyList::readDictionary(home.path(u"large"_s), &reason, Limits::SharedListBytes));
}
