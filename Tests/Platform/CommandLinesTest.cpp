#include "Platform/CommandLines.h"
#include "Tests/Support/PrintQt.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(CommandLines, CountsAsGrepWould)
{
    const QString path = u"/opt/corvane/webmanage"_s;
    const QStringList lines{path + u" --port 1"_s, u"sh -c "_s + path + u"; "_s + path, u"/usr/bin/webmanage"_s,
                            u"/opt/corvane/daemon"_s};
    const std::pair<QString, int> rows[] = {{u"webmanage"_s, 3}, // each occurrence in the lines that match
                                            {u"w.bmanage --port"_s, 1},   // a dot is any character
                                            {u"webmanage+"_s, 0},         // a plus is a plus
                                            {u"Webmanage"_s, 0},          // case counts
                                            {QString(), 3},               // no pattern lets all pass
                                            {u"[web"_s, 0},               // a broken one lets none pass
                                            {u"$(echo webmanage)"_s, 0}}; // shell text is text
    for (const auto &[pattern, count] : rows)
        EXPECT_EQ(occurrencesInLines(lines, pattern, path), count) << pattern.toStdString();
    EXPECT_EQ(occurrencesInLines(lines, u"webmanage"_s, QString()), 0);
    EXPECT_TRUE(runningCommandLines().contains(QCoreApplication::arguments().join(u' ')));
}
