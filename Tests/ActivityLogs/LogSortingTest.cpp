// The orders of the list.

#include "Classes/ACTIVITY_LOGS/LogSorting.h"

#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using LogSorting::Key;

namespace
{
/// A record whose name tells it in what a test expects.
LogNodePtr record(const char *name, const char *datetime, const char *status = "Success")
{
    auto node = std::make_shared<LogNode>();
    node->logfile = QString::fromLatin1(name);
    node->datetime = QString::fromUtf8(datetime);
    node->status = QString::fromUtf8(status);
    return node;
}

QString names(const LogNodes &records)
{
    QString text;
    for (const auto &node : records)
        text += node ? node->logfile : u"0"_s;
    return text;
}

const QDateTime Now = QDateTime(QDate(2026, 9, 23), QTime(12, 0));
} // namespace

TEST(LogSortingTest, WhatRunsStandsOnTopAndWhatHasNoDateLastInBothDirections)
{
    LogNodes records{record("A", "09-23-2026 10:00:00"),
                     record("b", ""),
                     record("C", "Sep 24, 2026 11:00:00 AM"),
                     record("d", " \n", "In Progress"),
                     record("N", "no form of a date"),
                     record("e", ""),
                     record("F", "2026-09-22 10:00:00", "In Progress"),
                     record("G", "09-21-2026 10:00:00", "In Progress"),
                     record("H", "09/23/2026 10:00:00"),
                     nullptr};
    records[1]->dayKey = records[5]->dayKey = u"09-23-2026"_s;
    records[1]->place = 7;
    const LogNodes asTheyCame = records;
    LogSorting::sortRecords(records, true, Now);
    EXPECT_EQ(names(records), u"FGdCNAHeb0"_s);
    LogSorting::sortLogsArray(records, {Key::DateTime, true}, {}, Now);
    EXPECT_EQ(names(records), u"GFdAHNCeb0"_s);
    records = asTheyCame;
    records[1]->dayKey = u"01-02-2027_cdp"_s;
    LogSorting::sortRecords(records, false, Now);
    EXPECT_EQ(names(records), u"GFdAHNCbe0"_s);
}

TEST(LogSortingTest, EachRecordWithoutADateIsTracedOnce)
{
    LogNodes records{record("a", ""), record("b", "09-23-2026\n10:00:00"), record("c", " "), nullptr};
    const LogNodes asTheyCame = records;
    QStringList lines;
    const auto trace = [&lines](const QString &line) { lines += line; };
    LogSorting::sortRecords(records, true, Now, trace);
    EXPECT_EQ(lines.join(u'|'),
              u"⚠️ [SORT RECORDS] Date parsing failed: '' → false, '09-23-2026 10:00:00' → true|"
              "⚠️ [SORT RECORDS] Date parsing failed: '' → false, '09-23-2026 10:00:00' → true|"
              "⚠️ [SORT RECORDS] Cast failed"_s);
    lines.clear();
    records.assign(asTheyCame.begin(), asTheyCame.begin() + 2);
    LogSorting::sortLogsArray(records, {Key::DateTime, false}, {}, Now, trace);
    EXPECT_EQ(lines.join(u'|'), u"⚠️ [SORT RECORDS] Date parsing failed: '', '09-23-2026 10:00:00'"_s);
    lines.clear();
    records.assign(150, record("a", ""));
    LogSorting::sortRecords(records, true, Now, trace);
    EXPECT_EQ(lines.size(), 100);
}

TEST(LogSortingTest, ColumnsOrderByTheirOwnRule)
{
    struct Given {
        Key key;
        QString LogNode::*field;
        QStringList values;
    };
    const QStringList durations{u"10:00:00"_s, u"9:59:59"_s, u"--:--:--"_s, u"09:59:59"_s, u""_s};
    const QStringList files{u"10"_s, u"9"_s, u"100000000000000000000"_s, u"010"_s, u"99999999999999999999"_s};
    const QStringList words{u"zeta"_s, u"Éxito"_s, u"error 10"_s, u"Error 9"_s, u"Zeta"_s};
    const struct {
        const char *name;
        Given given;
        QString ascending, descending;
    } rows[] = {
        {"duration", {Key::Duration, &LogNode::duration, durations}, u"ECBDA"_s, u"ABDCE"_s},
        {"files", {Key::Files, &LogNode::files, files}, u"BADEC"_s, u"CEADB"_s},
        {"status as shown", {Key::Status, &LogNode::status, words}, u"DCBAE"_s, u"AEBCD"_s},
        {"operation's name",
         {Key::Operation, &LogNode::optype, {u"3"_s, u"1"_s, u"2"_s, u"1"_s, u"x"_s}},
         u"EBCDA"_s,
         u"ABCDE"_s},
    };
    const LogSorting::Words shown{.operation =
                                      [](const QString &optype) {
                                          return optype == u"x" ? u""_s : optype == u"3" ? u"b"_s : u"a"_s;
                                      },
                                  .locale = QLocale(QLocale::Spanish)};
    forEachRow(rows, [&shown](const auto &row) {
        LogNodes records;
        for (const QString &value : row.given.values) {
            records.push_back(std::make_shared<LogNode>());
            records.back()->logfile = QChar(u'A' + char16_t(records.size() - 1));
            (*records.back()).*row.given.field = value;
        }
        LogNodes descending = records;
        LogSorting::sortLogsArray(records, {row.given.key, true}, shown, Now);
        EXPECT_EQ(names(records), row.ascending);
        LogSorting::sortLogsArray(descending, {row.given.key, false}, shown, Now);
        EXPECT_EQ(names(descending), row.descending);
    });
}
