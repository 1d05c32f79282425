#include "Classes/AlertPanel/AlertRules.h"
#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"

using namespace Qt::StringLiterals;

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
        {"an empty line between two short ones", u"a\n\nb"_s, 1, 0},
        {"each line for itself", letters(69) + u'\n' + letters(69), 0, 0},
        {"a line feed at the end begins an empty line", letters(140) + u'\n', 3, 36},
        {"five", letters(350), 5, 72},
        {"a letter with its accent is one", u"e\u0301"_s.repeated(70), 1, 0},
        {"a character of two units is one", u"\U0001F4BE"_s.repeated(69), 0, 0},
    };
    forEachRow(rows, [](const auto &row) {
        EXPECT_EQ(AlertRules::calculateTotalLines(row.text), row.lines);
        EXPECT_EQ(AlertRules::extraHeight(row.lines), row.height);
    });
}

TEST(AlertRules, ShownTextIsBoundedAndHoldsNothingThatBreaksALayout)
{
    const Row<QString, QString> rows[] = {
        {"plain", u"<b>a</b> &amp;"_s, u"<b>a</b> &amp;"_s},
        {"line ends", u"a\r\nb\rc\u2028d\n"_s, u"a\nb\nc\nd\n"_s},
        {"controls", u"a\x01\x1B\x7F\u0085"_s + QChar(0) + u"\tb"_s, u"a b"_s},
        {"directions", u"a\u202Eb\u2067c"_s, u"abc"_s},
        {"right to left", u"\u05D0\u05D1"_s, u"\u05D0\u05D1"_s},
        {"at the limit", QString(20, u'a'), QString(20, u'a')},
        {"over it", QString(21, u'a'), QString(20, u'a') + u'\u2026'},
        {"a pair across it", QString(19, u'a') + u"\U0001F4BE"_s, QString(19, u'a') + u'\u2026'},
        {"half a pair at the end", u"a"_s + QChar(0xD83D), u"a"_s + QChar(0xD83D)},
    };
    forEachRow(rows, [](const auto &row) { EXPECT_EQ(AlertRules::displayText(row.given, 20), row.expected); });
}
