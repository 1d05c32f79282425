#include "Companions/BackupDaemon/FrameCodec.h"

#include <QList>

#include <gtest/gtest.h>

TEST(FrameCodec, HeaderIsTheLittleEndianCount)
{
    EXPECT_EQ(framed("{\"a\":1}"), QByteArray("\x07\0\0\0\0\0\0\0{\"a\":1}", 15));
    EXPECT_EQ(framed(""), QByteArray(8, '\0'));
    EXPECT_EQ(frameHeader(0x0102030405060708ULL), QByteArray("\x08\x07\x06\x05\x04\x03\x02\x01", 8));
}

TEST(FrameCodec, ReaderCutsAStreamHoweverItArrives)
{
    const QByteArray stream =
        QByteArray("\x03\0\0\0\0\0\0\0one\0\0\0\0\0\0\0\0\x05\0\0\0\0\0\0\0three\x02\0", 34);
    for (const qsizetype step : {qsizetype(1), qsizetype(7), qsizetype(8), qsizetype(11), stream.size()}) {
        SCOPED_TRACE(step);
        FrameReader reader;
        QList<QByteArray> payloads;
        for (qsizetype at = 0; at < stream.size(); at += step) {
            ASSERT_TRUE(reader.feed(stream.mid(at, step)));
            while (const auto payload = reader.takePayload())
                payloads.append(*payload);
        }
        EXPECT_EQ(payloads, (QList<QByteArray>{"one", "", "three"}));
    }
}

TEST(FrameCodec, AnnouncementOverTheLimitIsRefused)
{
    const struct {
        const char *name;
        QByteArray header;
        bool accepted;
    } rows[] = {{"16 MiB", QByteArray("\0\0\0\x01\0\0\0\0", 8), true},
                {"one more", QByteArray("\x01\0\0\x01\0\0\0\0", 8), false},
                {"all bits", QByteArray(8, '\xff'), false}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        FrameReader reader;
        EXPECT_EQ(reader.feed(row.header), row.accepted);
        EXPECT_FALSE(reader.takePayload());
    }
}
