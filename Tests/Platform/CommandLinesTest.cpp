#include "Platform/CommandLines.h"
#include "Tests/Support/PrintQt.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(CommandLines, CountsAsGrepWould)
{
    const QString path = u"/opt/corvane/webmanage"_s;
    const QStringList lines{
        u"/opt/corvane/webmanage --port 1"_s,
        u"sh -c /opt/corvane/webmanage; /opt/corvane/webmanage"_s,
        u"/usr/bin/webmanage"_s,
        u"/opt/corvane/daemon"_s,
    };
    const std::tuple<const char *, QString, int> rows[] = {
        {"each occurrence in the lines that match", u"webmanage"_s, 3},
        {"only the lines that match", u"--port"_s, 1},
        {"a dot is any character", u"w.bmanage --port"_s, 1},
        {"a plus is a plus", u"webmanage+"_s, 0},
        {"case counts", u"Webmanage"_s, 0},
        {"no pattern lets all pass", QString(), 3},
        {"a broken pattern lets none pass", u"[web"_s, 0},
        {"shell text is text", u"$(echo webmanage)"_s, 0},
    };
    for (const auto &[name, pattern, count] : rows)
        EXPECT_EQ(occurrencesInLines(lines, pattern, path), count) << name;
    EXPECT_EQ(occurrencesInLines(lines, u"webmanage"_s, QString()), 0);
    EXPECT_TRUE(runningCommandLines().contains(QCoreApplication::arguments().join(u' ')));
}
