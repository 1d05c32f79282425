#include "Companions/Console/SeenLines.h"

#include <gtest/gtest.h>

TEST(SeenLines, AreTakenInTheirOrderAndOnce)
{
    SeenLines lines;
    for (const char *line : {"core 1", "noise", "pause", "core 2"})
        lines.add(QString::fromLatin1(line));
    EXPECT_FALSE(lines.take(QStringLiteral("resume")));
    EXPECT_TRUE(lines.take(QStringLiteral("pause"))) << "one that is missed takes nothing away";
    EXPECT_FALSE(lines.take(QStringLiteral("core 1"))) << "it came before";
    EXPECT_TRUE(lines.holds(QStringLiteral("core 2")));
    EXPECT_TRUE(lines.take(QStringLiteral("core")));
    EXPECT_FALSE(lines.holds(QStringLiteral("core")));
    EXPECT_TRUE(lines.left().isEmpty());
}
