#include "Extensions/TextCoding.h"
#include "Extensions/TextFormat.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(TextCoding, DoublesEveryUnitAndComesBack)
{
    EXPECT_EQ(encryptedString(u"12"_s), u"bd"_s);
    for (char16_t unit = 0; unit < 0x8000; ++unit) {
        const QString text(1, QChar(unit));
        ASSERT_EQ(encryptedString(text).at(0).unicode(), unit * 2);
        ASSERT_EQ(decryptedString(encryptedString(text)), text);
    }
    // A double that does not fit loses its top bit and nothing else: a surrogate pair in the middle.
    const QString coded = encryptedString(u"a\U0001F600b"_s);
    ASSERT_EQ(coded.size(), 4);
    EXPECT_EQ(coded.at(1).unicode(), 0xD83D * 2 & 0xFFFF);
    EXPECT_EQ(decryptedString(coded).at(3), u'b');
}

TEST(TextFormat, FillsPlaceholders)
{
    const std::tuple<const char *, QString, QStringList, QString> rows[] = {
        {"in order", u"%@ and %@"_s, {u"a"_s, u"b"_s}, u"a and b"_s},
        {"numbered", u"%2$@, %1$@"_s, {u"a"_s, u"b"_s}, u"b, a"_s},
        {"too few", u"%@ %@"_s, {u"a"_s}, u"a %@"_s},
        {"too many", u"%@"_s, {u"a"_s, u"b"_s}, u"a"_s},
        {"argument with a placeholder", u"%@-%@"_s, {u"%@"_s, u"100%"_s}, u"%@-100%"_s},
        {"percent sign", u"100%% of %@"_s, {u"x"_s}, u"100% of x"_s},
        {"lone percent at the end", u"50%"_s, {}, u"50%"_s},
        {"number without an argument", u"%3$@"_s, {u"a"_s}, u"%3$@"_s},
    };
    for (const auto &[name, format, arguments, expected] : rows)
        EXPECT_EQ(formatted(format, arguments), expected) << name;
}
