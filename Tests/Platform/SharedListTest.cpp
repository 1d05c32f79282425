#include "Platform/SharedList.h"
#include "Platform/AtomicFile.h"
#include "Platform/UserDefaults.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <QFile>

#include <cerrno>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
class SharedListTest : public testing::Test
{
protected:
    /// Another program's change: a whole new file, or other bytes in the same one.
    void othersWrite(const QVariantMap &list, bool inPlace = false) const
    {
        const auto bytes = PropertyList::serialize(list, PropertyList::Format::Xml).value();
        if (inPlace)
            home.write(file, bytes);
        else
            ASSERT_TRUE(AtomicFile::write(file, bytes));
    }
    [[nodiscard]] QVariantMap stored() const
    {
        return PropertyList::readDictionary(file).value_or(QVariantMap());
    }

    TemporaryHome home;
    QString file = home.path(u"Library/Preferences/list.plist"_s);
    UserDefaults defaults{file};
    const QString key = u"AppleLanguages"_s;
};
} // namespace

TEST_F(SharedListTest, WhatOthersWriteInBetweenStays)
{
    for (const bool inPlace : {false, true}) {
        othersWrite({{u"theirs"_s, u"1"_s}});
        int rounds = 0;
        const auto change = [&](QVariantMap &list) -> std::optional<QString> {
            if (++rounds == 1)
                othersWrite({{u"theirs"_s, u"2"_s}}, inPlace); // of the same size, in the same moment
            list.insert(u"ours"_s, true);
            return std::nullopt;
        };
        EXPECT_TRUE(SharedList::update(file, SharedList::Missing::Refuse, PropertyList::Format::Xml, change));
        EXPECT_EQ(rounds, 2);
        EXPECT_EQ(stored(), (QVariantMap{{u"theirs"_s, u"2"_s}, {u"ours"_s, true}})) << inPlace;
    }
}

TEST_F(SharedListTest, WhoeverNeverStopsIsNotWaitedForForEver)
{
    qlonglong rounds = 0;
    const auto change = [&](QVariantMap &list) -> std::optional<QString> {
        othersWrite({{u"theirs"_s, ++rounds}});
        list.insert(u"ours"_s, true);
        return std::nullopt;
    };
    EXPECT_EQ(SharedList::update(file, SharedList::Missing::Begin, PropertyList::Format::Xml, change).reason(),
              u"others go on changing it"_s);
    EXPECT_EQ(rounds, SharedList::MostAttempts);
    EXPECT_EQ(stored(), (QVariantMap{{u"theirs"_s, rounds}}));
}

TEST_F(SharedListTest, AValueThatTheFileHoldsLeavesNothingPending)
{
    othersWrite({{key, QVariantList{u"en"_s}}});
    defaults.setValue(key, QVariantList{u"en"_s});
    const QByteArray before = home.read(file);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(home.read(file), before) << "nothing was written";
    defaults.setValue(key, QVariantList{u"en"_s});
    othersWrite({{key, QVariantList{u"ja"_s}}});
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(defaults.value(key), QVariantList{u"ja"_s});
    // Compared with what stands there now, not with what was read once; and true is not one.
    othersWrite({{key, QVariantList{1LL}}});
    defaults.setValue(key, QVariantList{true});
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(stored().value(key).toList().value(0).typeId(), QMetaType::Bool);
}

TEST_F(SharedListTest, WhatCouldNotBeWrittenStandsUntilAnotherChoosesAnew)
{
    home.write(u"Library"_s, "a file in the way");
    defaults.setValue(key, QVariantList{u"es"_s});
    EXPECT_EQ(defaults.synchronize().error(), ENOTDIR);
    EXPECT_EQ(defaults.value(key), QVariantList{u"es"_s});
    ASSERT_TRUE(QFile::remove(home.path(u"Library"_s)));
    EXPECT_TRUE(defaults.synchronize()) << "the folder is made";
    EXPECT_EQ(stored().value(key), QVariantList{u"es"_s});

    defaults.setValue(key, QVariantList{u"en"_s});
    othersWrite({{key, QVariantList{u"ja"_s}}, {u"theirs"_s, 1LL}});
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(stored(), (QVariantMap{{key, QVariantList{u"ja"_s}}, {u"theirs"_s, 1LL}}))
        << "their choice is the newer one";
}

TEST_F(SharedListTest, WhatNobodyCouldReadAgainIsNotWritten)
{
    othersWrite({{u"kept"_s, 1LL}});
    const QByteArray before = home.read(file);
    defaults.setValue(key, QString(40'000'000, u'\u00e9')); // 40 million characters, 80 MB as they are read
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(home.read(file), before);
}
