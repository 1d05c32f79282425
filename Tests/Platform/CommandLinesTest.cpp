#include "Platform/CommandLines.h"
#include "Tests/Support/PrintQt.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

TEST(CommandLines, CountsAsGrepWould)
{
    const QString path = QStringLiteral("/opt/corvane/webmanage");
    const QStringList lines{
        QStringLiteral("/opt/corvane/webmanage --port 1"),
        QStringLiteral("sh -c /opt/corvane/webmanage; /opt/corvane/webmanage"),
        QStringLiteral("/usr/bin/webmanage"),
        QStringLiteral("/opt/corvane/daemon"),
    };
    const struct {
        const char *name;
        QString pattern;
        int count;
    } rows[] = {
        {"each occurrence in the lines that match", QStringLiteral("webmanage"), 3},
        {"only the lines that match", QStringLiteral("--port"), 1},
        {"a dot is any character", QStringLiteral("w.bmanage --port"), 1},
        {"a plus is a plus", QStringLiteral("webmanage+"), 0},
        {"case counts", QStringLiteral("Webmanage"), 0},
        {"no pattern lets all pass", QString(), 3},
        {"a broken pattern lets none pass", QStringLiteral("[web"), 0},
        {"shell text is text", QStringLiteral("$(echo webmanage)"), 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(occurrencesInLines(lines, row.pattern, path), row.count);
    }
    EXPECT_EQ(occurrencesInLines(lines, QStringLiteral("webmanage"), QString()), 0);
}

TEST(CommandLines, ThisProcessIsAmongThem)
{
    EXPECT_TRUE(runningCommandLines().contains(QCoreApplication::arguments().join(u' ')));
}
