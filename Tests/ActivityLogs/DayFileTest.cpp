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

/// Each record as "optype|datetime|status|uname", with a blank behind; "none" where there is no list.
QString recordsIn(const QByteArray &bytes)
{
    const auto nodes = DayFile::read(bytes, key);
    QString shown = nodes ? QString() : u"none"_s;
    for (const auto &node : nodes.value_or(LogNodes())) {
        EXPECT_EQ(node->dayKey, key);
        shown += QStringList{node->optype, node->datetime, node->status, node->uname}.join(u'|') + u' ';
    }
    return shown;
}
} // namespace

TEST(DayFileTest, RecordsComeAsTheyStand)
{
    const QByteArray first = "<record><datetime>d</datetime><optype>1</optype><uname>a</uname></record>\n";
    const QByteArray late = "<record><datetime>12-05</datetime><optype>1</optype></record>";
    const QByteArray early = "<record><datetime>2-05</datetime><optype>11</optype></record>";
    const Row<QByteArray, QString> rows[] = {
        {"nothing in it", "", {}},
        {"entities and CDATA", "<record><uname>&amp;<![CDATA[<b>]]><!-- c -->&#x65E5;</uname></record>",
         u"|||&<b>日 "_s},
        {"unknown elements", "<x><y>1</y></x><record><new>7</new><status>ok</status></record>", u"||ok| "_s},
        {"an element in a value", "<record><status>a<b>b</b>c</status></record>", u"||bc| "_s},
        {"the last of two values counts", "<record><status>a</status><status/></record>", u"||| "_s},
        {"letters", "<record>\n\t<uname>é日\xf0\x9f\x98\x80</uname>\n</record>\n", u"|||é日\U0001F600 "_s},
        {"a value outside of records", "<uname>b</uname>" + first, u"1|d||a "_s},
        {"a double of any user", first + QByteArray(first).replace(">a<", ">b<"), u"1|d||a "_s},
        {"the same digits, cut elsewhere", late + early, u"1|12-05|| 11|2-05|| "_s},
    };
    const QByteArray endless = QByteArray("日").repeated(30'000);
    EXPECT_EQ(recordsIn(inRecords("<record><uname>" + endless + "</uname></record>")),
              u"|||"_s + QString(21'845, u'日') + u' ');
    forEachRow(rows, [](const auto &row) {
        EXPECT_EQ(recordsIn(inRecords(row.given)), row.expected);
        EXPECT_EQ(recordsIn(inRecords(row.given) + "<!-- in no form of ours -->"), row.expected);
    });
    EXPECT_EQ(recordsIn("<?xml version='1.0' encoding='iso-8859-1'?><record><uname>\xe9</uname></record>"),
              u"|||é "_s);
}

TEST(DayFileTest, DamageLeavesNoRecords)
{
    QByteArray deep;
    for (int level = 0; level < Limits::DayFileDepth; ++level)
        deep = "<a>" + deep + "</a>";
    const char *const noText = "line 3: not well-formed (invalid token)";
    const Row<QByteArray, const char *> rows[] = {
        {"empty", "", "line 1: no element found"},
        {"cut", inRecords("<record><uname>a</uname></record>").chopped(20), "line 3: no element found"},
        {"a bare ampersand", inRecords("<record><uname>a & b</uname></record>"), noText},
        {"no UTF-8", inRecords("<record><uname>\xe9 x</uname></record>"), noText},
        {"no character", inRecords("<record><uname>\xef\xbf\xbf</uname></record>"), noText},
        {"two roots", "<records></records><records></records>", "line 1: junk after document element"},
        {"a document type", "<!DOCTYPE records [<!ENTITY a 'b'>]><records/>", "a document type"},
        {"a level too many", "<r>" + deep + "</r>", "too many levels"},
    };
    forEachRow(rows, [](const auto &row) {
        QString reason;
        EXPECT_FALSE(DayFile::read(row.given, key, {}, &reason));
        EXPECT_EQ(reason, QString::fromLatin1(row.expected));
    });
    EXPECT_EQ(recordsIn(deep), QString());
}

TEST(DayFileTest, AStopLeavesNothingAndNoReason)
{
    std::stop_source source;
    source.request_stop();
    QString reason;
    EXPECT_FALSE(DayFile::read(inRecords("<record></record>"), key, source.get_token(), &reason));
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
    node.uname = u"日 & <b>"_s;
    node.optype = u"two & <more>"_s;
    const QString text = DayFile::getXMLfromNodes({std::make_shared<LogNode>(node)});
    EXPECT_TRUE(
        text.startsWith(u"<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<records>\n<record>\n\t<datetime>"_s));
    EXPECT_TRUE(text.endsWith(u"</logname>\n</record>\n</records>\n"_s));
    EXPECT_EQ(recordsIn(text.toUtf8()), u"two & <more>|||日 & <b> "_s);
}
