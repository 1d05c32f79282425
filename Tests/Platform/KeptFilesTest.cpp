// Files that are opened only when they may have changed.

#include "Platform/KeptFiles.h"
#include "Platform/Home.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QThread>

using namespace Qt::StringLiterals;

TEST(KeptFilesTest, WhatIsReadIsWhatTheFileHoldsNow)
{
    const TemporaryHome home;
    const QString path = homeDirectory() + u"/switch.txt"_s;
    EXPECT_EQ(KeptFiles::text(path), std::nullopt);
    home.write(path, "1");
    QThread::msleep(60); // until the file's stamp tells any later write apart
    EXPECT_EQ(KeptFiles::text(path), u"1"_s);
    EXPECT_EQ(KeptFiles::text(path), u"1"_s) << "from memory";
    home.write(path, "2");
    EXPECT_EQ(KeptFiles::text(path), u"2"_s) << "of the same size";
    home.write(path, "3");
    EXPECT_EQ(KeptFiles::text(path), u"3"_s) << "within one tick of the clock";
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(KeptFiles::text(path), std::nullopt);

    home.writeList(path, QVariantMap{{u"a"_s, 1}});
    EXPECT_EQ(KeptFiles::dictionary(path, 10), std::nullopt) << "over its limit";
    EXPECT_EQ(KeptFiles::dictionary(path), (QVariantMap{{u"a"_s, 1}}));
}
