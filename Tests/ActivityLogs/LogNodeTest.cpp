// The block of a record in a day file.

#include "Classes/ACTIVITY_LOGS/LogNode.h"

#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(LogNodeTest, ABlockHoldsEveryValueInTheOrderOfTheDayFile)
{
    LogNode record;
    record.datetime = u"09-24-2026 10:00:00"_s;
    record.uname = u"ana@example.com"_s;
    record.files = u"3"_s;
    record.status = u"Success"_s;
    record.optype = u"02"_s;
    record.logfile = u"/home/ana/A & <B>\r\x01\xd83d\xde00\xd83d"_s;
    EXPECT_EQ(record.flattenSelfToXML(), u"<record>\n"
                                         "\t<datetime>09-24-2026 10:00:00</datetime>\n"
                                         "\t<uname>ana@example.com</uname>\n"
                                         "\t<files>3</files>\n"
                                         "\t<filesinsync></filesinsync>\n"
                                         "\t<status>Success</status>\n"
                                         "\t<duration></duration>\n"
                                         "\t<content></content>\n"
                                         "\t<optype>2</optype>\n"
                                         "\t<lpath></lpath>\n"
                                         "\t<logfile>/home/ana/A &amp; &lt;B&gt;&#13;\U0001F600</logfile>\n"
                                         "\t<logname></logname>\n"
                                         "</record>\n"_s);
    record.optype = u"2 <x>"_s;
    EXPECT_TRUE(record.flattenSelfToXML()->contains(u"<optype>2 &lt;x&gt;</optype>"_s));
}
