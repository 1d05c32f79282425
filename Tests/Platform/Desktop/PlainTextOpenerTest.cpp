// Which program a log is opened with, by the desktop's own programs as a test has them.

#include "Platform/Desktop/PlainTextOpener.h"

#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

class PlainTextOpenerTest : public testing::Test
{
protected:
    PlainTextOpenerTest()
    {
        qputenv("PATH", QFile::encodeName(home.path(u"bin"_s)) + ":" + pathBefore);
        qputenv("XDG_DATA_HOME", QFile::encodeName(home.path(u"share"_s)));
        for (const auto &name : {u"editor"_s, u"xdg-open"_s})
            program(name,
                    "printf '%s %s' \"${0##*/}\" \"$*\" > \"$HOME/.new\" && mv \"$HOME/.new\" \"$HOME/told\"");
        home.write(u"a 'b' $c.pdf"_s, "log");
    }
    ~PlainTextOpenerTest() override
    {
        qputenv("PATH", pathBefore);
        qunsetenv("XDG_DATA_HOME");
    }
    void program(const QString &name, const QByteArray &script) const
    {
        const QString path = home.path(u"bin/"_s + name);
        home.write(path, "#!/bin/sh\n" + script + "\n");
        EXPECT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
    /// What was started for that file by the end, and with what.
    [[nodiscard]] QString told() const
    {
        return waitUntil([&] { return QFile::exists(home.path(u"told"_s)); })
                   ? QString::fromUtf8(home.read(u"told"_s)).replace(file, u"FILE"_s)
                   : u"nothing"_s;
    }

    const QByteArray pathBefore = qgetenv("PATH");
    const TemporaryHome home;
    const QString file = home.path(u"a 'b' $c.pdf"_s);
    ManualClock clock{QDateTime(QDate(2026, 1, 1), QTime())};
    PlainTextOpener opener{clock};
};

TEST_F(PlainTextOpenerTest, TheProgramForPlainTextOpensALogWhateverItsNameEndsIn)
{
    program(u"xdg-mime"_s, "echo org.test-editor.desktop");
    home.write(u"share/applications/org.test/editor.desktop"_s,
               "[Desktop Entry]\nExec=editor --new %U\nMimeType=text/plain;\n");
    opener.open(file);
    EXPECT_EQ(told(), u"editor --new FILE"_s);
}

TEST_F(PlainTextOpenerTest, WithoutOneOrWithoutAnAnswerTheDesktopDecides)
{
    program(u"xdg-mime"_s, "echo ../../etc/x.desktop");
    opener.open(file);
    EXPECT_EQ(told(), u"xdg-open FILE"_s);
    EXPECT_TRUE(QFile::remove(home.path(u"told"_s)));
    program(u"xdg-mime"_s, "exec sleep 60");
    opener.open(file);
    clock.advance(PlainTextOpener::Patience);
    EXPECT_EQ(told(), u"xdg-open FILE"_s);
    home.write(u"share/applications/t.desktop"_s, "[Desktop Entry]\nExec=editor\nTerminal=true\n");
    EXPECT_EQ(wordsToOpen(u"t.desktop"_s, file), QStringList());
}

TEST_F(PlainTextOpenerTest, OnlyAFileIsOpened)
{
    for (const QString &path : {home.path(u"."_s), home.path(u"none"_s), u"/dev/null"_s, u"told"_s}) {
        std::optional<bool> isStarted;
        opener.open(path, [&](bool started) { isStarted = started; });
        EXPECT_EQ(isStarted, false) << qPrintable(path);
    }
}
