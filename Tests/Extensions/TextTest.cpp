#include "Extensions/TextCoding.h"
#include "Extensions/TextFormat.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

TEST(TextCoding, DoublesEveryUnitAndComesBack)
{
    EXPECT_EQ(encryptedString(QStringLiteral("12")), QStringLiteral("bd"));
    EXPECT_EQ(decryptedString(QStringLiteral("bd")), QStringLiteral("12"));
    for (char16_t unit = 0; unit < 0x8000; ++unit) {
        const QString text(1, QChar(unit));
        ASSERT_EQ(encryptedString(text).at(0).unicode(), unit * 2);
        ASSERT_EQ(decryptedString(encryptedString(text)), text);
    }
}

TEST(TextCoding, UnitsWhoseDoubleDoesNotFitLoseTheirTopBitAndNothingElse)
{
    const QString face = QString::fromUtf8("a😀b"); // a surrogate pair in the middle
    const QString coded = encryptedString(face);
    ASSERT_EQ(coded.size(), face.size());
    EXPECT_EQ(coded.at(1).unicode(), 0xD83D * 2 & 0xFFFF);
    EXPECT_EQ(decryptedString(coded).at(3), u'b');
}

TEST(TextFormat, FillsPlaceholders)
{
    const struct {
        const char *name;
        QString format;
        QStringList arguments;
        QString expected;
    } rows[] = {
        {"in order",
         QStringLiteral("%@ and %@"),
         {QStringLiteral("a"), QStringLiteral("b")},
         QStringLiteral("a and b")},
        {"numbered",
         QStringLiteral("%2$@, %1$@"),
         {QStringLiteral("a"), QStringLiteral("b")},
         QStringLiteral("b, a")},
        {"too few", QStringLiteral("%@ %@"), {QStringLiteral("a")}, QStringLiteral("a %@")},
        {"too many", QStringLiteral("%@"), {QStringLiteral("a"), QStringLiteral("b")}, QStringLiteral("a")},
        {"argument with a placeholder",
         QStringLiteral("%@-%@"),
         {QStringLiteral("%@"), QStringLiteral("100%")},
         QStringLiteral("%@-100%")},
        {"percent sign", QStringLiteral("100%% of %@"), {QStringLiteral("x")}, QStringLiteral("100% of x")},
        {"lone percent at the end", QStringLiteral("50%"), {}, QStringLiteral("50%")},
        {"number without an argument", QStringLiteral("%3$@"), {QStringLiteral("a")}, QStringLiteral("%3$@")},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(formatted(row.format, row.arguments), row.expected);
    }
}
