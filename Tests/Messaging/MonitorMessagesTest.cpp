#include "Messaging/MonitorMessages.h"
#include "Messaging/MessageTypes.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

namespace
{
const MonitorMessages::Table Table{
    {QStringLiteral("T1001"), QStringLiteral("Up to date")},
    {QStringLiteral("T1002"), QStringLiteral("Paused")},
    {QStringLiteral("T1001-1"), QStringLiteral("Uploading %@")},
    {QStringLiteral("T1003-2"), QStringLiteral("%@ of %@")},
    {QStringLiteral("T1004-4"), QStringLiteral("%@ %@ %@ %@")},
};

QString display(const char *message, const std::optional<MonitorMessages::Table> &table = Table)
{
    return MonitorMessages::getMessageForID(
        QString::fromUtf8(message), table,
        {.localise = [](const QString &text) { return text.toUpper(); },
         .resolveSyncPath = [](const QString &tail) -> std::optional<QString> {
             return tail == u"gone" ? std::nullopt : std::optional(QStringLiteral("/sync/") + tail);
         }});
}
} // namespace

TEST(MonitorMessages, IdsBecomeText)
{
    const struct {
        const char *name, *message, *expected;
    } rows[] = {
        {"the one id without a line feed", "T1001", "UP TO DATE"},
        {"any other single id", "T1002", "PAUSED\n"},
        {"one argument", "T1001||a.txt", "UPLOADING a.txt"},
        {"two arguments", "T1003||1||2", "1 OF 2"},
        {"four arguments", "T1004||1||2||3||4", "1 2 3 4"},
        {"six items are no format", "T1002||1||2||3||4||5", "PAUSED\n"},
        {"an unknown id with arguments has no template", "T9||a", ""},
        {"an unknown id is its own text", "Progress", "Progress"},
        {"an unknown text of two lines", "a\nb", "a\nb"},
        {"an unknown line behind a known one", "T1002\nb", "PAUSED\n\n"},
        {"two lines", "T1003||1||2\nT1002", "1 OF 2PAUSED\n"},
        {"a path tail", "T1001||a::dir/a.txt", "UPLOADING a::/sync/dir/a.txt"},
        {"a path tail without a folder", "T1001||a::gone", "UPLOADING a::"},
        {"an empty path tail", "T1001||a::", "UPLOADING a"},
        {"three pieces", "T1001||a::b::c", "UPLOADING a::/sync/b"},
        {"T1001 with a tail is not T1001 alone", "T1001::x", "UP TO DATE\n::/sync/x"},
        {"empty", "", ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(display(row.message), QString::fromUtf8(row.expected));
    }
    EXPECT_EQ(display("T1001||a", std::nullopt), QStringLiteral("T1001||a")) << "no table";
}

TEST(MessageTypes, NumberOfAMessage)
{
    const QString name = QStringLiteral("SetToolTip");
    const struct {
        const char *label;
        QVariant second;
        QString name;
        int expected;
    } rows[] = {
        {"by name", QVariantMap(), name, 2},
        {"by name with an array", QVariantList(), QStringLiteral("OpenWindowToViewFile"), 6},
        {"by name with the empty text", QString(), QStringLiteral("SetPauseState"), 7},
        {"an unknown name", QVariantMap(), QStringLiteral("Nonsense"), 0},
        {"as text", QStringLiteral("500"), name, 500},
        {"text that is no number", QStringLiteral("5x"), name, 0},
        {"a number that fits nothing", QStringLiteral("99999999999"), name, 0},
        {"a bare number", 500LL, name, 0},
        {"a boolean", true, name, 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(MessageTypes::numberOf(row.second, row.name), row.expected);
    }
}
