// Reading a day file: what becomes of each element, of doubles and of damage.

#include "Classes/ACTIVITY_LOGS/DayFile.h"

#include "Platform/Limits.h"
#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

using namespace Qt::StringLiterals;

namespace
{
const QString key = u"09-24-2026_cdp"_s;

QByteArray inRecords(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<records>\n" + content + "</records>\n";
}

/// Each record as "optype|datetime|status|logfile|uname".
std::optional<QStringList> recordsIn(const QByteArray &bytes)
{
    const auto nodes = DayFile::read(bytes, key);
    if (!nodes)
        return std::nullopt;
    QStringList shown;
    for (const auto &node : *nodes) {
        EXPECT_EQ(node->dayKey, key);
        shown += QStringList{node->optype, node->datetime, node->status, node->logfile, node->uname}.join(u'|');
    }
    return shown;
}

QByteArray record(const QByteArray &optype, const QByteArray &datetime, const QByteArray &more = {})
{
    return "<record>\n\t<datetime>" + datetime + "</datetime><optype>" + optype + "</optype>" + more +
           "</record>\n";
}
} // namespace

TEST(DayFileTest, RecordsComeAsTheyStand)
{
    const Row<QByteArray, QStringList> rows[] = {
        {"nothing in it", inRecords({}), {}},
        {"another root", "<list><record><uname>a</uname></record></list>", {u"||||a"_s}},
        {"entities, CDATA and a comment",
         inRecords("<record><uname>a &amp; <![CDATA[<b>]]><!-- c -->&#x65E5;</uname></record>"),
         {u"||||a & <b>日"_s}},
        {"unknown elements",
         inRecords("<x><y>1</y></x>" + record("1", "d", "<new>7</new><status>ok</status>")),
         {u"1|d|ok||"_s}},
        {"an element in a value", inRecords("<record><status>a<b>b</b>c</status></record>"), {u"||bc||"_s}},
        {"the last of two values counts",
         inRecords("<record><status>a</status><status/></record>"),
         {u"||||"_s}},
        {"letters of every length",
         inRecords("<record>\n\t<uname>é日\xf0\x9f\x98\x80\x7f</uname>\n</record>\n"),
         {u"||||é日\U0001F600\x7f"_s}},
        {"a value outside of records", inRecords("<uname>a</uname>" + record("1", "d")), {u"1|d|||"_s}},
        {"a double",
         inRecords(record("1", "d", "<uname>a</uname>") + record("1", "d", "<uname>b</uname>")),
         {u"1|d|||a"_s}},
        {"the same digits, cut elsewhere",
         inRecords(record("1", "12-05-2026") + record("11", "2-05-2026")),
         {u"1|12-05-2026|||"_s, u"11|2-05-2026|||"_s}},
        {"another encoding",
         "<?xml version='1.0' encoding='iso-8859-1'?><r><record><uname>\xe9</uname></record></r>",
         {u"||||é"_s}},
    };
    forEachRow(rows, [](const auto &row) {
        EXPECT_EQ(recordsIn(row.given), row.expected);
        EXPECT_EQ(recordsIn(row.given + "<!-- in no form of ours -->"), row.expected);
    });
}

TEST(DayFileTest, DamageLeavesNoRecords)
{
    QByteArray deep;
    for (int level = 0; level < Limits::DayFileDepth; ++level)
        deep = "<a>" + deep + "</a>";
    const Row<QByteArray, const char *> rows[] = {
        {"empty", "", "line 1: no element found"},
        {"cut", inRecords(record("1", "d")).chopped(20), "line 4: unclosed token"},
        {"a bare ampersand", inRecords("<uname>a & b</uname>"), "line 3: not well-formed (invalid token)"},
        {"no UTF-8", inRecords("<uname>\xe9 x</uname>"), "line 3: not well-formed (invalid token)"},
        {"no character", inRecords("<record><uname>\xef\xbf\xbf</uname></record>"),
         "line 3: not well-formed (invalid token)"},
        {"half a pair", inRecords("<record><uname>\xed\xa0\xbd</uname></record>"),
         "line 3: not well-formed (invalid token)"},
        {"an unknown encoding", "<?xml version='1.0' encoding='klingon'?><r/>", "line 1: unknown encoding"},
        {"two roots", "<records/><records/>", "line 1: junk after document element"},
        {"a document type", "<!DOCTYPE records [<!ENTITY a 'b'>]><records/>", "a document type"},
        {"an outer file", "<!DOCTYPE records SYSTEM 'file:///etc/passwd'><records/>", "a document type"},
        {"a level too many", "<r>" + deep + "</r>", "too many levels"},
    };
    forEachRow(rows, [](const auto &row) {
        QString reason;
        EXPECT_FALSE(DayFile::read(row.given, key, {}, &reason));
        EXPECT_EQ(reason, QString::fromLatin1(row.expected));
    });
    EXPECT_TRUE(DayFile::read(deep, key));
}

TEST(DayFileTest, AStopLeavesNothingAndNoReason)
{
    std::stop_source source;
    source.request_stop();
    QString reason;
    EXPECT_FALSE(DayFile::read(inRecords(record("1", "d")), key, source.get_token(), &reason));
    EXPECT_EQ(reason, QString());
}

TEST(DayFileTest, APathBelowNoUserFolderIsFoundOrMeantBelowHome)
{
    const TemporaryHome home;
    home.write(u"there"_s, "log");
    const QString there = home.path(u"there"_s), root = home.path({});
    const Row<QString, QString> rows[] = {
        {"none", {}, {}},
        {"below a user's folder", u"/Users/eva/gone"_s, u"/Users/eva/gone"_s},
        {"below another's", u"/x/home/eva/gone"_s, u"/x/home/eva/gone"_s},
        {"below this home", there + u"/../gone"_s, there + u"/../gone"_s},
        {"beside this home", root + u"-2/gone"_s, root + root + u"-2/gone"_s},
        {"something stands there", u"/etc/passwd"_s, u"/etc/passwd"_s},
        {"nothing stands there", u"/Logs/./gone"_s, root + u"/Logs/gone"_s},
        {"relative", u"there"_s, there},
    };
    forEachRow(rows, [](const auto &row) {
        const auto nodes =
            DayFile::read(inRecords("<record><logfile>" + row.given.toUtf8() + "</logfile></record>"), key);
        ASSERT_TRUE(nodes);
        EXPECT_EQ(nodes->front()->logfile, row.expected);
    });
}

TEST(DayFileTest, WhatIsWrittenReadsTheSame)
{
    LogNode node;
    node.datetime = u"09-24-2026 10:00:00"_s;
    node.optype = u"two & <more>"_s;
    node.logfile = u"/home/ana/日 & <b>"_s;
    const QString text = DayFile::getXMLfromNodes({std::make_shared<LogNode>(node)});
    EXPECT_TRUE(
        text.startsWith(u"<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<records>\n<record>\n\t<datetime>"_s));
    EXPECT_TRUE(text.endsWith(u"</logname>\n</record>\n</records>\n"_s));
    EXPECT_EQ(recordsIn(text.toUtf8()),
              QStringList(u"two & <more>|09-24-2026 10:00:00||/home/ana/日 & <b>|"_s));
}
