#include "Messaging/DaemonMessage.h"

#include <gmock/gmock.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace
{
/// One reader, whose memory is used again from message to message.
class DaemonMessageTest : public testing::Test
{
protected:
    std::optional<DaemonMessage> read(const QByteArray &payload)
    {
        QString reason;
        auto message = reader.read(payload, &reason);
        EXPECT_EQ(message.has_value(), reason.isEmpty());
        return message;
    }

    DaemonMessageReader reader;
};
} // namespace

TEST_F(DaemonMessageTest, RefusesWhatIsNoObjectAndReadsOn)
{
    const std::tuple<const char *, QByteArray> rows[] = {
        {"nothing", ""},
        {"cut", R"({"type":"operationPro)"},
        {"two texts", R"({"type":"a"}{"type":"b"})"},
        {"garbage", QByteArray("\x00\x01\xff{}", 5)},
        {"zero bytes behind the object", QByteArray("{}\0\0", 4)},
        {"array", R"([{"type":"a"}])"},
        {"comma at the end", R"({"type":"a",})"},
        {"not a number", R"({"type":NaN})"},
        {"whole number beyond every type", R"({"n":123456789012345678901234567890})"},
        {"number beyond every type", R"({"n":1e400})"},
        {"bad UTF-8 in a value", "{\"type\":\"\xc3\x28\"}"},
        {"overlong UTF-8 in a key", "{\"\xc0\xaf\":1}"},
        {"lone surrogate", R"({"type":"\ud800"})"},
        {"bare line feed in a text", "{\"type\":\"a\nb\"}"},
        {"too deep", "{\"a\":" + QByteArray(100000, '[') + QByteArray(100000, ']') + "}"},
        {"too deep and cut", QByteArray(1000000, '{')},
    };
    for (const auto &[name, payload] : rows) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(read(payload));
        const auto next = read(R"({"type":"good"})");
        ASSERT_TRUE(next);
        EXPECT_EQ(next->type(), u"good"_s);
    }
}

TEST_F(DaemonMessageTest, FindsItsRoutingKeysAtTheTopLevelFirstAndThenInData)
{
    const std::tuple<const char *, QByteArray, std::optional<QString>, std::optional<qint64>,
                     std::optional<qint64>>
        rows[] = {
            {"top level", R"({"userName":"ann","operationStartType":0,"progressType":6})", u"ann"_s, 0, 6},
            {"in data", R"({"data":{"userName":"ann","operationStartType":1,"progressType":-1}})", u"ann"_s, 1,
             -1},
            {"in both", R"({"data":{"userName":"bob","progressType":2},"userName":"ann"})", u"ann"_s, {}, 2},
            {"data before the keys", R"({"data":"","userName":"ann","progressType":3})", u"ann"_s, {}, 3},
            {"nowhere", R"({"data":{"data":{"userName":"ann"}}})", {}, {}, {}},
            {"data is a list", R"({"data":[{"userName":"ann"}]})", {}, {}, {}},
            {"of other kinds", R"({"userName":7,"operationStartType":"1","progressType":true})", {}, {}, {}},
            {"another kind at the top hides data",
             R"({"userName":null,"data":{"userName":"ann"}})",
             {},
             {},
             {}},
            {"not whole", R"({"progressType":1.5,"operationStartType":18446744073709551615})", {}, {}, {}},
            {"largest", R"({"progressType":9223372036854775807})", {}, {}, std::numeric_limits<qint64>::max()},
            {"twice", R"({"userName":"first","userName":"second"})", u"first"_s, {}, {}},
            {"escapes", R"({"userName":"\u00e4\ud83d\ude00\u0000z"})", QString::fromUtf8("ä😀\0z", 8), {}, {}},
        };
    for (const auto &[name, payload, user, start, progress] : rows) {
        SCOPED_TRACE(name);
        const auto message = read(payload).value();
        EXPECT_EQ(message.userName(), user);
        EXPECT_EQ(message.operationStartType(), start);
        EXPECT_EQ(message.progressType(), progress);
    }
}

TEST_F(DaemonMessageTest, PathsLeadIntoObjects)
{
    const std::tuple<const char *, QByteArray, std::optional<QString>> rows[] = {
        {"top level", R"({"operationData":{"progressData":{"percentage":"41"}}})", u"41"_s},
        {"in data", R"({"data":{"operationData":{"progressData":{"percentage":"42"}}}})", u"42"_s},
        {"the first name decides where",
         R"({"data":{"operationData":{"progressData":{"percentage":"1"}}},"operationData":{}})",
         {}},
        {"a text on the way", R"({"operationData":"progressData"})", {}},
        {"a list on the way", R"({"operationData":[{"progressData":{"percentage":"1"}}]})", {}},
        {"joined key", R"({"operationData/progressData/percentage":"1"})", {}},
    };
    for (const auto &[name, payload, percentage] : rows) {
        SCOPED_TRACE(name);
        const auto message = read(payload).value();
        EXPECT_EQ(message.text("operationData/progressData/percentage"_L1), percentage);
        EXPECT_EQ(message.contains("operationData/progressData/percentage"_L1), percentage.has_value());
    }
}

TEST_F(DaemonMessageTest, KnowsReportsByTheTypeAtTheTopLevel)
{
    const std::tuple<const char *, QByteArray, QString, bool> rows[] = {
        {"report", R"({"type":"operationProgress"})", u"operationProgress"_s, true},
        {"other", R"({"type":"operationProgress "})", u"operationProgress "_s, false},
        {"in data only", R"({"data":{"type":"operationProgress"}})", u""_s, false},
        {"no text", R"({"type":["operationProgress"]})", u""_s, false},
        {"none", "{}", u""_s, false},
    };
    for (const auto &[name, payload, type, report] : rows) {
        SCOPED_TRACE(name);
        const auto message = read(payload).value();
        EXPECT_EQ(message.type(), type);
        EXPECT_EQ(message.isOperationProgress(), report);
    }
}

TEST_F(DaemonMessageTest, ValuesKeepTheirKind)
{
    const auto message = read(R"({"t":true,"f":false,"i":1,"big":18446744073709551615,"d":1.0,"n":null,
        "s":"x","list":[1,"a",{"k":[]}],"o":{"k":"first","k":"second"},"":"empty key"})");
    ASSERT_TRUE(message);
    const QVariantMap map = message->toVariantMap();
    const std::tuple<QString, QMetaType::Type, QVariant> rows[] = {
        {u"t"_s, QMetaType::Bool, true},
        {u"f"_s, QMetaType::Bool, false},
        {u"i"_s, QMetaType::LongLong, qlonglong(1)},
        {u"big"_s, QMetaType::ULongLong, std::numeric_limits<qulonglong>::max()},
        {u"d"_s, QMetaType::Double, 1.0},
        {u"n"_s, QMetaType::Nullptr, QVariant::fromValue(nullptr)},
        {u"s"_s, QMetaType::QString, u"x"_s},
        {u"list"_s, QMetaType::QVariantList, QVariantList{1, u"a"_s, QVariantMap{{u"k"_s, QVariantList()}}}},
        {u"o"_s, QMetaType::QVariantMap, QVariantMap{{u"k"_s, u"first"_s}}},
        {u""_s, QMetaType::QString, u"empty key"_s},
    };
    EXPECT_EQ(size_t(map.size()), std::size(rows));
    for (const auto &[key, kind, value] : rows) {
        SCOPED_TRACE(key.toStdString());
        EXPECT_EQ(map.value(key).typeId(), kind);
        EXPECT_EQ(map.value(key), value);
    }
}

TEST_F(DaemonMessageTest, ArgumentsComeInTheirOrderWithoutGaps)
{
    const std::tuple<const char *, QByteArray, QVariantList> rows[] = {
        {"all, in another order",
         R"({"newOperation":8,"profile":"7","destination":"6","operation":5,"UserName":"4","State":"3","data":"2","type":"1","extra":9})",
         {u"1"_s, u"2"_s, u"3"_s, u"4"_s, 5, u"6"_s, u"7"_s, 8}},
        {"no State",
         R"({"type":"SetToolTip","data":{"a":1},"UserName":"ann"})",
         {u"SetToolTip"_s, QVariantMap{{u"a"_s, 1}}, u"ann"_s}},
        {"no type", R"({"data":""})", {u""_s}},
        {"other case", R"({"Type":"a","userName":"b","state":"c"})", {}},
        {"null is present",
         R"({"type":"a","data":null,"State":false})",
         {u"a"_s, QVariant::fromValue(nullptr), false}},
        {"none", "{}", {}},
    };
    for (const auto &[name, payload, arguments] : rows) {
        SCOPED_TRACE(name);
        const auto message = read(payload).value();
        EXPECT_EQ(message.argumentList(), arguments);
    }
}

TEST_F(DaemonMessageTest, AMessageThatIsKeptOutlivesTheNext)
{
    const auto first = read(R"({"type":"first","userName":"ann"})");
    const auto second = read(R"({"type":"second"})");
    EXPECT_FALSE(read("garbage"));
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->userName(), u"ann"_s);
    EXPECT_EQ(first->toVariantMap().value(u"type"_s), u"first"_s);
    EXPECT_EQ(second->type(), u"second"_s);
    EXPECT_FALSE(second->userName()) << "memory that is used again shows nothing of the message before";
    EXPECT_EQ(first->payload(), R"({"type":"first","userName":"ann"})");
}

TEST_F(DaemonMessageTest, BytesWithRoomBehindThemAreParsedWhereTheyLie)
{
    QByteArray payload = R"({"type":"here"})";
    payload.reserve(payload.size() + 64);
    const char *const place = payload.constData();
    QString reason;
    const auto message = reader.read(std::move(payload), &reason);
    ASSERT_TRUE(message);
    EXPECT_EQ(static_cast<const void *>(message->payload().constData()), place);
}
