#include "Messaging/DaemonMessage.h"

#include <QFile>

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace
{
/// One reader, whose memory is used again from message to message.
class DaemonMessageTest : public testing::Test
{
protected:
    std::optional<DaemonMessage> read(QByteArray payload)
    {
        reason.clear();
        auto message = reader.read(std::move(payload), &reason);
        EXPECT_EQ(message.has_value(), reason.isEmpty());
        return message;
    }

    DaemonMessageReader reader;
    QString reason; // of the last refusal
};
} // namespace

TEST_F(DaemonMessageTest, RefusesWhatIsNoObjectAndReadsOn)
{
    const QByteArray rows[] = {"",
                               R"({"type":"operationPro)",
                               R"({"type":"a"}{"type":"b"})",
                               QByteArray("\x00\x01\xff{}", 5),
                               QByteArray("{}\0\0", 4),
                               R"([{"type":"a"}])",
                               R"({"type":"a",})",
                               R"({"n":1e400})",
                               "{\"type\":\"\xc3\x28\"}",
                               R"({"type":"\ud800"})",
                               "{\"a\":" + QByteArray(100000, '[') + QByteArray(100000, ']') + "}",
                               QByteArray(1000000, '{')};
    for (const QByteArray &payload : rows) {
        EXPECT_FALSE(read(payload)) << payload.left(50).toStdString();
        const auto next = read(R"({"type":"good"})");
        EXPECT_TRUE(next && next->type() == u"good") << "after " << payload.left(50).toStdString();
    }
}

TEST_F(DaemonMessageTest, FindsItsRoutingKeysAtTheTopLevelFirstAndThenInData)
{
    using Number = std::optional<qint64>;
    const std::tuple<QByteArray, std::optional<QString>, Number, Number> rows[] = {
        {R"({"userName":"ann","operationStartType":0,"progressType":6})", u"ann"_s, 0, 6},
        {R"({"data":{"userName":"ann","operationStartType":1,"progressType":-1}})", u"ann"_s, 1, -1},
        {R"({"data":{"userName":"bob","progressType":2},"userName":"ann"})", u"ann"_s, {}, 2},
        {R"({"data":{"data":{"userName":"ann"}}})", {}, {}, {}},
        {R"({"data":[{"userName":"ann"}]})", {}, {}, {}},
        {R"({"userName":7,"operationStartType":"1","progressType":true})", {}, {}, {}},
        {R"({"userName":null,"data":{"userName":"ann"}})", {}, {}, {}},
        {R"({"progressType":1.5,"operationStartType":18446744073709551615})", {}, {}, {}},
        {R"({"userName":"first","userName":"second"})", u"first"_s, {}, {}},
        {R"({"1":1,"2":1,"3":1,"4":1,"5":1,"6":1,"7":1,"8":1,"9":1,"a":1,"b":1,"c":1,"d":1,"e":1,"f":1,)"
         R"("g":1,"h":1,"userName":"ann","data":{"progressType":4}})",
         u"ann"_s,
         {},
         4},
        {R"({"userName":"\u00e4\ud83d\ude00\u0000z"})", QString::fromUtf8("ä😀\0z", 8), {}, {}},
    };
    for (const auto &[payload, user, start, progress] : rows) {
        const auto message = read(payload).value();
        EXPECT_EQ(message.userName(), user) << payload.toStdString();
        EXPECT_EQ(message.operationStartType(), start) << payload.toStdString();
        EXPECT_EQ(message.progressType(), progress) << payload.toStdString();
    }
}

TEST_F(DaemonMessageTest, PathsLeadIntoObjects)
{
    const std::pair<QByteArray, std::optional<QString>> rows[] = {
        {R"({"operationData":{"progressData":{"percentage":"41"}}})", u"41"_s},
        {R"({"data":{"operationData":{"progressData":{"percentage":"42"}}}})", u"42"_s},
        {R"({"data":{"operationData":{"progressData":{"percentage":"1"}}},"operationData":{}})", {}},
        {R"({"operationData":"progressData"})", {}},
        {R"({"operationData":[{"progressData":{"percentage":"1"}}]})", {}},
        {R"({"operationData/progressData/percentage":"1"})", {}},
    };
    for (const auto &[payload, percentage] : rows) {
        const auto message = read(payload).value();
        EXPECT_EQ(message.text("operationData/progressData/percentage"_L1), percentage)
            << payload.toStdString();
        EXPECT_EQ(message.contains("operationData/progressData/percentage"_L1), percentage.has_value());
    }
}

TEST_F(DaemonMessageTest, KnowsReportsByTheTypeAtTheTopLevel)
{
    EXPECT_TRUE(read(R"({"type":"operationProgress"})")->isOperationProgress());
    for (const char *payload : {R"({"type":"operationProgress "})", R"({"data":{"type":"operationProgress"}})",
                                R"({"type":[1]})", "{}"})
        EXPECT_FALSE(read(payload)->isOperationProgress()) << payload;
}

TEST_F(DaemonMessageTest, ValuesKeepTheirKind)
{
    const QVariantMap map = read(R"({"t":true,"i":1,"big":18446744073709551615,"d":1.0,"n":null,"s":"x",
        "list":[1,"a",{"k":[]}],"o":{"k":"first","k":"second"},"":"empty key"})")
                                ->toVariantMap();
    const QVariantMap wanted{{u"t"_s, true},
                             {u"i"_s, qlonglong(1)},
                             {u"big"_s, std::numeric_limits<qulonglong>::max()},
                             {u"d"_s, 1.0},
                             {u"n"_s, QVariant::fromValue(nullptr)},
                             {u"s"_s, u"x"_s},
                             {u"list"_s, QVariantList{1, u"a"_s, QVariantMap{{u"k"_s, QVariantList()}}}},
                             {u"o"_s, QVariantMap{{u"k"_s, u"first"_s}}},
                             {u""_s, u"empty key"_s}};
    EXPECT_EQ(map, wanted);
    for (auto entry = wanted.begin(); entry != wanted.end(); ++entry)
        EXPECT_EQ(map.value(entry.key()).typeId(), entry->typeId()) << entry.key().toStdString();
}

TEST_F(DaemonMessageTest, ArgumentsComeInTheirOrderWithoutGaps)
{
    const std::pair<QByteArray, QVariantList> rows[] = {
        {R"({"newOperation":8,"profile":"7","destination":"6","operation":5,"UserName":"4","State":"3","data":"2","type":"1","extra":9})",
         {u"1"_s, u"2"_s, u"3"_s, u"4"_s, 5, u"6"_s, u"7"_s, 8}},
        {R"({"type":"SetToolTip","data":{"a":1},"UserName":"ann"})",
         {u"SetToolTip"_s, QVariantMap{{u"a"_s, 1}}, u"ann"_s}},
        {R"({"Type":"a","userName":"b","state":"c"})", {}},
        {R"({"type":"a","data":null,"State":false})", {u"a"_s, QVariant::fromValue(nullptr), false}},
        {"{}", {}},
    };
    for (const auto &[payload, arguments] : rows)
        EXPECT_EQ(read(payload)->argumentList(), arguments) << payload.toStdString();
}

TEST_F(DaemonMessageTest, AMessageThatIsKeptOutlivesTheNext)
{
    const auto first = read(R"({"type":"first","userName":"ann"})");
    const auto second = read(R"({"type":"second"})");
    EXPECT_FALSE(read("garbage"));
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->userName(), u"ann"_s);
    EXPECT_EQ(first->payload(), R"({"type":"first","userName":"ann"})");
    EXPECT_EQ(second->type(), u"second"_s);
    EXPECT_FALSE(second->userName()) << "memory that is used again shows nothing of the message before";
}

namespace
{
constexpr qint64 Mebibyte = 1024 * 1024;

/// What /proc/self/status says, in bytes; `VmHWM` counts from forgetPeak() on.
qint64 memory(const char *what)
{
    QFile status(u"/proc/self/status"_s);
    const QByteArray text = status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray();
    return text.mid(text.indexOf(what)).simplified().split(' ').value(1).toLongLong() * 1024;
}
void forgetPeak()
{
    QFile file(u"/proc/self/clear_refs"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}
} // namespace

TEST_F(DaemonMessageTest, TooManyValuesAreRefused)
{
    const auto list = [](const char *value, int times) {
        return R"({"type":"a","data":[)" + QByteArray(value).append(',').repeated(times) + "0]}";
    };
    EXPECT_TRUE(read(list("1", 99'000)));
    EXPECT_TRUE(read(R"({"type":")" + QByteArray("[,{\\\"").repeated(100'000) + R"("})"))
        << "all of it one text";
    for (const QByteArray &payload : {list("1", 8'000'000), list("[]", 100'000), list("{}", 100'000),
                                      R"({"a":1)" + QByteArray(R"(,"a":1)").repeated(100'000) + "}"}) {
        EXPECT_FALSE(read(payload)) << payload.left(30).toStdString();
        EXPECT_EQ(reason, u"too many values"_s);
    }
}

TEST_F(DaemonMessageTest, AGreatFrameGivesItsMemoryBack)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer keeps memory of its own";
#endif
    constexpr int Frame = 16 * Mebibyte - 64;
    const qint64 before = memory("VmRSS:");
    forgetPeak();
    for (const QByteArray &piece : {QByteArray(180, 'x'), '"' + QByteArray(180, 'x') + "\","}) {
        const bool isList = piece.startsWith('"');
        QByteArray payload = isList ? R"({"type":"a","data":[)" : R"({"type":"a","data":")";
        payload += piece.repeated(Frame / piece.size() - 1) + (isList ? "0]}" : "\"}");
        payload.reserve(16 * Mebibyte);
        const auto message = read(std::move(payload));
        ASSERT_TRUE(message);
        EXPECT_EQ(message->argumentList().size(), 2);
    }
    EXPECT_LT(memory("VmHWM:") - before, 200 * Mebibyte);
    EXPECT_LT(memory("VmRSS:") - before, 8 * Mebibyte);
}
