#include "Utility/LoginItemRegistry.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using HideIt = LoginItemRegistry::HideIt;

namespace
{
class LoginItems : public testing::Test
{
protected:
    LoginItems() : m_oldConfig(qgetenv("XDG_CONFIG_HOME")) { qunsetenv("XDG_CONFIG_HOME"); }
    ~LoginItems() override
    {
        if (!m_oldConfig.isNull())
            qputenv("XDG_CONFIG_HOME", m_oldConfig);
    }

    [[nodiscard]] QStringList files() const
    {
        return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    void entry(const char *name, const QByteArray &keys) const
    {
        home.write(folder + u'/' + QString::fromUtf8(name), "[Desktop Entry]\nType=Application\n" + keys);
    }
    static QStringList paths()
    {
        QStringList list;
        for (const LoginItem &item : LoginItemRegistry::allLoginItems())
            list.append(item.url.toLocalFile());
        return list;
    }

    const TemporaryHome home;
    const QString folder = home.path(u".config/autostart"_s);
    const QString monitor = u"/opt/my files/100%/corvane-monitor"_s;

private:
    QByteArray m_oldConfig;
};
} // namespace

TEST_F(LoginItems, AddingAtEveryLoginLeavesOneEntry)
{
    EXPECT_TRUE(LoginItemRegistry::addLoginItemWithPath(monitor, HideIt::No));
    ASSERT_EQ(files().size(), 1);
    const QString file = folder + u'/' + files().first();
    const QByteArray text = home.read(file);
    for (const char *line : {"[Desktop Entry]\n", "\nType=Application\n",
                             "\nName=", "\nExec=\"/opt/my files/100%%/corvane-monitor\"\n",
                             "\nTryExec=/opt/my files/100%/corvane-monitor\n", "\nX-Corvane-Hide=false\n"})
        EXPECT_TRUE(text.contains(line)) << line;

    const auto inode = [&] {
        struct stat facts {
        };
        return stat(qPrintable(file), &facts) == 0 ? facts.st_ino : 0;
    };
    const auto before = inode();
    EXPECT_TRUE(LoginItemRegistry::addLoginItemWithPath(monitor, HideIt::No));
    EXPECT_EQ(inode(), before) << "nothing to write";
    EXPECT_TRUE(LoginItemRegistry::addLoginItemWithPath(monitor, HideIt::Yes));
    ASSERT_EQ(LoginItemRegistry::allLoginItems().size(), 1);
    EXPECT_TRUE(LoginItemRegistry::allLoginItems().first().hidden);
    EXPECT_TRUE(LoginItemRegistry::addLoginItemWithPath(u"/usr/bin/corvane-monitor"_s, HideIt::No));
    EXPECT_EQ(files().size(), 2) << "another copy has an entry of its own";
}

TEST_F(LoginItems, RemovingFindsTheFirstOfThatPathAndNoOther)
{
    entry("a-other.desktop", "Exec=/opt/other --tray\n");
    entry("b-own.desktop", "Exec=/opt/corvane-monitor\n");
    entry("c-own.desktop", "Exec=\"/opt/corvane-monitor\" %U\n");
    const QString own = u"/opt/corvane-monitor"_s;
    EXPECT_EQ(paths(), (QStringList{u"/opt/other"_s, own, own}));
    LoginItemRegistry::removeLoginItemWithPath(own);
    EXPECT_EQ(files(), (QStringList{u"a-other.desktop"_s, u"c-own.desktop"_s}));
    LoginItemRegistry::removeLoginItemWithURL(QUrl::fromLocalFile(own));
    LoginItemRegistry::removeLoginItemWithPath(own);
    for (const int none : {1, -1})
        LoginItemRegistry::removeLoginItemAtIndex(none);
    EXPECT_EQ(files(), QStringList{u"a-other.desktop"_s});
}

TEST_F(LoginItems, EntriesThatAreNoItems)
{
    const QByteArray exec = "Exec=/opt/corvane-monitor\n";
    entry("hidden.desktop", "Hidden=true\n" + exec);
    entry("noexec.desktop", "Name=x\n");
    entry("open-quote.desktop", "Exec=\"/opt/corvane-monitor\n");
    entry("unknown-program.desktop", "Exec=no-such-program-anywhere\n");
    entry("not-an-entry.txt", exec);
    home.write(folder + u"/link.desktop"_s, "[Desktop Entry]\nType=Link\n" + exec);
    home.write(folder + u"/bytes.desktop"_s, "\xff\xfe\0garbage");
    home.write(folder + u"/huge.desktop"_s, "[Desktop Entry]\n" + QByteArray(300 * 1024, '#'));
    QDir(folder).mkpath(u"folder.desktop"_s);
    EXPECT_EQ(paths(), QStringList());
    const QStringList before = files();
    LoginItemRegistry::removeLoginItemWithPath(u"/opt/corvane-monitor"_s);
    EXPECT_EQ(files(), before);

    entry("by-name.desktop", "Exec=sh -c x\n");
    ASSERT_EQ(paths().size(), 1);
    EXPECT_TRUE(paths().first().endsWith(u"/sh"_s));
}

TEST_F(LoginItems, AFolderThatCannotBeMadeAndAnotherPlaceForIt)
{
    home.write(u".config"_s, "a file");
    EXPECT_FALSE(LoginItemRegistry::addLoginItemWithPath(monitor, HideIt::No));
    EXPECT_FALSE(LoginItemRegistry::addLoginItemWithURL(QUrl(u"https://example.com/x"_s), HideIt::No));
    EXPECT_EQ(paths(), QStringList());
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path(u"settings"_s)));
    EXPECT_TRUE(LoginItemRegistry::addLoginItemWithPath(monitor, HideIt::No));
    qunsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(QDir(home.path(u"settings/autostart"_s)).entryList(QDir::Files).size(), 1);
}
