#include "Classes/Progress/ProgressRules.h"
#include "Classes/Progress/ProgressFigures.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace ProgressRules;
using namespace Qt::StringLiterals;

TEST(ProgressRules, APercentageIsAWholeDecimalNumber)
{
    const struct {
        std::string_view text;
        std::optional<qint64> number;
    } rows[] = {
        {"42", 42},
        {"0", 0},
        {"007", 7},
        {"+5", 5},
        {"-3", -3},
        {"150", 150},
        {"", {}},
        {" 42", {}},
        {"42 ", {}},
        {"42%", {}},
        {"4.2", {}},
        {"0x2A", {}},
        {"+-5", {}},
        {"\xEF\xBC\x94", {}},
        {"9223372036854775808", {}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(percentage(row.text), row.number) << row.text;
}

TEST(ProgressRules, WhatIsShownFollowsTheKindOfOperation)
{
    for (const qint64 kind : {8, 9, 10})
        EXPECT_EQ(groupForFigures(kind), FieldGroup::BackupInfo) << kind;
    for (const std::optional<qint64> kind : {std::optional<qint64>(), std::optional<qint64>(0),
                                             std::optional<qint64>(7), std::optional<qint64>(11)})
        EXPECT_EQ(groupForFigures(kind), FieldGroup::FileCounts);

    EXPECT_EQ(groupAtStart(0, u"on"_s), FieldGroup::FileCounts);
    EXPECT_EQ(groupAtStart(0, u"off"_s), FieldGroup::BackupInfo);
    EXPECT_EQ(groupAtStart(0, u"ON"_s), std::nullopt);
    EXPECT_EQ(groupAtStart(0, std::nullopt), std::nullopt);
    EXPECT_EQ(groupAtStart(1, u"on"_s), FieldGroup::BackupInfo);
    EXPECT_EQ(groupAtStart(std::nullopt, u"off"_s), std::nullopt);

    EXPECT_TRUE(canBePaused(1));
    EXPECT_TRUE(canBePaused(std::nullopt));
    EXPECT_FALSE(canBePaused(2));
    EXPECT_FALSE(canBePaused(3));
}

TEST(ProgressRules, TheFileLine)
{
    EXPECT_EQ(fileLine(u"Backing up"_s, u"/home/a b.txt"_s, u"4 KB"_s), u"Backing up /home/a b.txt  (4 KB)"_s);
    EXPECT_EQ(fileLine(u"Full SYNC of"_s, u"a"_s, u"1 B"_s), u" a  (1 B)"_s);
    EXPECT_EQ(fileLine(u"%@"_s, u"%1$@ %@"_s, u"%%"_s), u"%@ %1$@ %@  (%%)"_s) << "names are no formats";
}

TEST(ProgressRules, AnyTextFitsOnOneLine)
{
    EXPECT_EQ(presentable("plain.txt"), u"plain.txt"_s);
    EXPECT_EQ(presentable("a\nb\tc\x7f"), u"a b c\uFFFD"_s);
    EXPECT_EQ(presentable("x\u202Egpj.exe\u2028y"), u"xgpj.exe y"_s);
    EXPECT_EQ(presentable("\u5bb6\u65cf \U0001F3D4"), u"\u5bb6\u65cf \U0001F3D4"_s);

    // Longer by one: beginning and end stay, and no character is cut in two.
    std::string fits(LongestText - 3, 'a');
    fits.append("\u5bb6");
    EXPECT_EQ(presentable(fits).size(), qsizetype(LongestText) - 2);
    std::string huge = "begin/";
    while (huge.size() < 10'000'000)
        huge += "\u5bb6";
    const QString cut = presentable(huge + "/end");
    EXPECT_TRUE(cut.startsWith(u"begin/\u5bb6"_s));
    EXPECT_TRUE(cut.contains(u"\u5bb6\u2026\u5bb6"_s));
    EXPECT_TRUE(cut.endsWith(u"\u5bb6/end"_s));
    EXPECT_LE(cut.size(), qsizetype(LongestText));
}

TEST(ProgressFigures, KeepWhatCameLastAndKnowWhatIsNew)
{
    using Figure = ProgressFigures::Figure;
    ProgressFigures figures;
    figures.begin();
    figures.take("transferSpeed", "1 MB/s");
    figures.take("transferSpeed", "2 MB/s"); // a key that came twice
    figures.take("Filename", "a");
    EXPECT_EQ(figures.text(Figure::TransferSpeed), u"1 MB/s"_s);
    EXPECT_FALSE(figures.has(Figure::FileName)) << "keys are spelled exactly";

    figures.begin();
    EXPECT_FALSE(figures.has(Figure::TransferSpeed));
    EXPECT_EQ(figures.text(Figure::TransferSpeed), u"1 MB/s"_s);

    // A long text and its own beginning are not the same.
    const std::string longText(LongestText + 10, 'x');
    figures.take("filename", longText);
    figures.begin();
    figures.take("filename", longText.substr(0, LongestText));
    EXPECT_EQ(figures.text(Figure::FileName), QString(qsizetype(LongestText), u'x'));

    figures.begin();
    figures.take({{u"percentage"_s, 50}, {u"filesize"_s, u"1 B"_s}});
    EXPECT_FALSE(figures.has(Figure::Percentage)) << "only texts are figures";
    EXPECT_EQ(figures.text(Figure::FileSize), u"1 B"_s);
}
