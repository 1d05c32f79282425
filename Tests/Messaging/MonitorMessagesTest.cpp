#include "Messaging/MonitorMessages.h"
#include "Messaging/MessageTypes.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
const MonitorMessages::Table Table{
    {u"T1001"_s, u"Up to date"_s}, {u"T1002"_s, u"Paused"_s},        {u"T1001-1"_s, u"Uploading %@"_s},
    {u"T1003-2"_s, u"%@ of %@"_s}, {u"T1004-4"_s, u"%@ %@ %@ %@"_s},
};

int pathLookups = 0;

QString display(const QByteArray &message, const std::optional<MonitorMessages::Table> &table = Table)
{
    return MonitorMessages::getMessageForID(
        QString::fromUtf8(message), table,
        {.localise = [](const QString &text) { return text.toUpper(); },
         .resolveSyncPath = [](const QString &tail) -> std::optional<QString> {
             ++pathLookups;
             return tail == u"gone" ? std::nullopt : std::optional(u"/sync/"_s + tail);
         }});
}
} // namespace

TEST(MonitorMessages, IdsBecomeText)
{
    const std::tuple<const char *, const char *, const char *> rows[] = {
        {"the one id without a line feed", "T1001", "UP TO DATE"},
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
    };
    for (const auto &[name, message, expected] : rows)
        EXPECT_EQ(display(message), QString::fromUtf8(expected)) << name;
    EXPECT_EQ(display("T1001||a", std::nullopt), u"T1001||a"_s) << "no table";
}

TEST(MonitorMessages, ALongMessageCostsNoMoreThanAScreenful)
{
    pathLookups = 0;
    const QString shown = display(QByteArray("T1001||a::x\n").repeated(100'000));
    EXPECT_EQ(pathLookups, 200);
    EXPECT_EQ(shown.count(u"UPLOADING a::/sync/x"_s), 200);
    EXPECT_EQ(display(QByteArray(16'000'000, 'x')).size(), 65'536) << "an unknown text";
    const QString pairs = display('x' + QByteArray("\xF0\x9F\x98\x80").repeated(100'000));
    EXPECT_EQ(pairs.size(), 65'535) << "no half of a pair";
}

TEST(MessageTypes, NumberOfAMessage)
{
    const std::tuple<const char *, QVariant, const char16_t *, int> rows[] = {
        {"by name", QVariantMap(), u"SetToolTip", 2},
        {"by name with an array", QVariantList(), u"OpenWindowToViewFile", 6},
        {"by name with the empty text", QString(), u"SetPauseState", 7},
        {"an unknown name", QVariantMap(), u"Nonsense", 0},
        {"as text", u"500"_s, u"SetToolTip", 500},
        {"text that is no number", u"5x"_s, u"SetToolTip", 0},
        {"a number that fits nothing", u"99999999999"_s, u"SetToolTip", 0},
        {"a bare number", 500LL, u"SetToolTip", 0},
    };
    for (const auto &[name, second, typeName, expected] : rows)
        EXPECT_EQ(MessageTypes::numberOf(second, QString::fromUtf16(typeName)), expected) << name;
}
