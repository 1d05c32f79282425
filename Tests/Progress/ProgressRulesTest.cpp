#include "Classes/Progress/ProgressRules.h"
#include "Classes/Progress/ProgressFigures.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace ProgressRules;
using namespace Qt::StringLiterals;

TEST(ProgressRules, APercentageIsAWholeDecimalNumber)
{
    const std::pair<std::string_view, qint64> numbers[] = {
        {"42", 42}, {"0", 0}, {"007", 7}, {"+5", 5}, {"-3", -3}};
    for (const auto &[text, number] : numbers)
        EXPECT_EQ(percentage(text), number) << text;
    for (const char *text :
         {"", " 42", "42 ", "42%", "4.2", "0x2A", "+-5", "\xEF\xBC\x94", "9223372036854775808"})
        EXPECT_EQ(percentage(text), std::nullopt) << text;
}

TEST(ProgressRules, WhatIsShownFollowsTheKindOfOperation)
{
    const std::pair<std::optional<qint64>, FieldGroup> kinds[] = {{std::nullopt, FieldGroup::FileCounts},
                                                                  {7, FieldGroup::FileCounts},
                                                                  {8, FieldGroup::BackupInfo},
                                                                  {10, FieldGroup::BackupInfo},
                                                                  {11, FieldGroup::FileCounts}};
    for (const auto &[kind, group] : kinds)
        EXPECT_EQ(groupForFigures(kind), group) << kind.value_or(-1);
    EXPECT_EQ(groupAtStart(0, u"ON"_s), std::nullopt) << "neither \"on\" nor \"off\"";
    EXPECT_EQ(groupAtStart(0, std::nullopt), std::nullopt);
    EXPECT_EQ(groupAtStart(std::nullopt, u"off"_s), std::nullopt);
    EXPECT_TRUE(canBePaused(std::nullopt));
}

TEST(ProgressRules, TheFileLineIsNoFormatAndFitsOnOneLine)
{
    EXPECT_EQ(fileLine(u"Backing up"_s, u"/home/a b.txt"_s, u"4 KB"_s), u"Backing up /home/a b.txt  (4 KB)"_s);
    EXPECT_EQ(fileLine(u"Full SYNC of"_s, u"a"_s, u"1 B"_s), u" a  (1 B)"_s);
    EXPECT_EQ(fileLine(u"%@"_s, u"%1$@ %@"_s, u"%%"_s), u"%@ %1$@ %@  (%%)"_s);

    EXPECT_EQ(presentable("plain.txt"), u"plain.txt"_s);
    EXPECT_EQ(presentable("a\nb\tc\x7f"), u"a b c\uFFFD"_s);
    EXPECT_EQ(presentable("x\u202Egpj.exe\u2028y"), u"xgpj.exe y"_s);
    EXPECT_EQ(presentable("\u5bb6\u65cf \U0001F3D4"), u"\u5bb6\u65cf \U0001F3D4"_s);
    EXPECT_EQ(presentable(std::string(LongestText - 3, 'a') + "\u5bb6").size(), qsizetype(LongestText) - 2);

    // Of a longer one the beginning and the end stay, and no character is cut in two.
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

    const std::string longText(LongestText + 10, 'x');
    figures.take("filename", longText);
    figures.begin();
    EXPECT_FALSE(figures.has(Figure::TransferSpeed));
    EXPECT_EQ(figures.text(Figure::TransferSpeed), u"1 MB/s"_s);
    figures.take("filename", longText.substr(0, LongestText));
    EXPECT_EQ(figures.text(Figure::FileName), QString(qsizetype(LongestText), u'x'))
        << "not the beginning of it";
}
