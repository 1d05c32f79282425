#include "Classes/AlertPanel/AlertRules.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

TEST(AlertRules, AMessageGrowsTheWindowByItsWholeSeventiesAndEmptyLinesBeyondTheFirst)
{
    const auto letters = [](int count) { return QString(count, u'x'); };
    const struct {
        const char *name;
        std::optional<QString> text;
        int lines, height;
    } rows[] = {
        {"none", std::nullopt, 0, 0},
        {"empty", QString(), 1, 0},
        {"69", letters(69), 0, 0},
        {"70", letters(70), 1, 0},
        {"139", letters(139), 1, 0},
        {"140", letters(140), 2, 18},
        {"an empty line between two short ones", QStringLiteral("a\n\nb"), 1, 0},
        {"each line for itself", letters(69) + u'\n' + letters(69), 0, 0},
        {"a line feed at the end begins an empty line", letters(140) + u'\n', 3, 36},
        {"five", letters(350), 5, 72},
        {"a letter with its accent is one", QStringLiteral("e\u0301").repeated(70), 1, 0},
        {"a character of two units is one", QStringLiteral("\U0001F4BE").repeated(69), 0, 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(AlertRules::calculateTotalLines(row.text), row.lines);
        EXPECT_EQ(AlertRules::extraHeight(row.lines), row.height);
    }
}

TEST(AlertRules, ShownTextIsBoundedAndHoldsNothingThatBreaksALayout)
{
    const struct {
        const char *name;
        QString text, shown;
    } rows[] = {
        {"plain", QStringLiteral("<b>a</b> &amp;"), QStringLiteral("<b>a</b> &amp;")},
        {"line ends", QStringLiteral("a\r\nb\rc\u2028d\n"), QStringLiteral("a\nb\nc\nd\n")},
        {"controls", QStringLiteral("a\x01\x1B\x7F\u0085") + QChar(0) + QStringLiteral("\tb"),
         QStringLiteral("a b")},
        {"directions", QStringLiteral("a\u202Eb\u2067c"), QStringLiteral("abc")},
        {"right to left", QStringLiteral("\u05D0\u05D1"), QStringLiteral("\u05D0\u05D1")},
        {"at the limit", QString(20, u'a'), QString(20, u'a')},
        {"over it", QString(21, u'a'), QString(20, u'a') + u'\u2026'},
        {"a pair across it", QString(19, u'a') + QStringLiteral("\U0001F4BE"), QString(19, u'a') + u'\u2026'},
        {"half a pair at the end", QStringLiteral("a") + QChar(0xD83D), QStringLiteral("a") + QChar(0xD83D)},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(AlertRules::displayText(row.text, 20), row.shown);
    }
}
