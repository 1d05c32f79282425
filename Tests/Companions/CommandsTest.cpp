#include "Companions/Common/Commands.h"

#include <gtest/gtest.h>

TEST(CommandTable, LongestCommandWinsAndTheRestKeepsItsBlanks)
{
    CommandTable table;
    QString seen;
    const auto note = [&seen](const QString &name) {
        return [&seen, name](const QStringList &words, const QString &rest) {
            seen = name + u'|' + words.join(u',') + u'|' + rest;
            return CommandResult::ok();
        };
    };
    table.add(QStringLiteral("schedule"), {}, note(QStringLiteral("schedule")));
    table.add(QStringLiteral("schedule demo"), {}, note(QStringLiteral("demo")));
    table.add(QStringLiteral("send"), {}, note(QStringLiteral("send")));

    const struct {
        const char *line;
        const char *seen;
    } rows[] = {{"schedule 5 daily", "schedule|5,daily|5 daily"},
                {"schedule demo", "demo||"},
                {"schedule demonstration", "schedule|demonstration|demonstration"},
                {"  send   {\"a  b\": 1} ", "send|{\"a,b\":,1}|{\"a  b\": 1}"}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line);
        EXPECT_TRUE(table.run(QString::fromLatin1(row.line)).done);
        EXPECT_EQ(seen, QString::fromLatin1(row.seen));
    }
    for (const char *line : {"", "sendall", "sched"})
        EXPECT_FALSE(table.run(QString::fromLatin1(line)).done) << line;
}
