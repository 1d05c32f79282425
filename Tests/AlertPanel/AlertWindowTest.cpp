#include "Tests/AlertPanel/AlertFixture.h"
#include "Utility/Language/LocalizedBundle.h"

#include <QAccessible>
#include <QScrollBar>

namespace
{
/// Before the first sentence is asked for: the sentences of a process keep their language.
class Japanese : public testing::Environment
{
    void SetUp() override { LocalizedBundle::main().forceLanguage(QStringLiteral("ja")); }
};
[[maybe_unused]] const testing::Environment *const japanese =
    testing::AddGlobalTestEnvironment(new Japanese); // owned by the test program
} // namespace

class AlertWindow : public AlertFixture
{
protected:
    /// An alert on the screen that isn't modal.
    void show(const std::optional<QString> &message, const std::optional<QString> &title = {})
    {
        alert = Alert::withdefaultButton(surroundings, yes, no);
        alert->displayMessage(message, title, false);
        alert->showWindow();
    }

    /// Every visible part lies whole within its parent.
    static void expectNothingIsCut()
    {
        for (QWidget *part : shown()->findChildren<QWidget *>()) {
            const bool scrolled = part->parentWidget()->parentWidget() == outlet<QScrollArea>("messageArea");
            if (part->isVisible() && !scrolled) {
                EXPECT_TRUE(part->parentWidget()->rect().contains(part->geometry()))
                    << part->objectName().toStdString();
            }
        }
    }

    std::unique_ptr<Alert> alert;
};

TEST_F(AlertWindow, ItsHeightFollowsTheLineCountAndItNeverCutsATextOrWidens)
{
    show(QString(), QStringLiteral("Title"));
    const QSize base = shown()->size();
    const struct {
        const char *name;
        QString message;
        int extra; ///< -1: more than the line count asks for
    } rows[] = {
        {"short", QStringLiteral("a"), 0},
        {"two lines", QString(17, u'x') + QStringLiteral(" abcdefg").repeated(11), 0},
        {"the rule's two", QStringLiteral("abcde fghi").repeated(14), 18},
        {"the rule's five", QStringLiteral("abcde fghi").repeated(35), 72},
        {"short lines that the rule doesn't count", QStringLiteral("a\n").repeated(12), -1},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        show(row.message, QStringLiteral("Title"));
        EXPECT_EQ(shown()->width(), base.width());
        if (row.extra >= 0)
            EXPECT_EQ(shown()->height(), base.height() + row.extra);
        else
            EXPECT_GT(shown()->height(), base.height() + 12 * 18 - 64);
        expectNothingIsCut();
    }
}

TEST_F(AlertWindow, HostileTextIsPlainBoundedAndScrolls)
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    show(QStringLiteral("<h1>x</h1>\u202E") + QString(10'000'000, u'A'), QString(100'000, u'M'));
    EXPECT_TRUE(screen.contains(shown()->geometry()));
    expectNothingIsCut();
    auto *message = outlet<AlertLabel>("mMessageString");
    EXPECT_TRUE(message->text().startsWith(QStringLiteral("<h1>x</h1>AAA")));
    EXPECT_EQ(message->text().size(), 20'001);
    EXPECT_EQ(message->textFormat(), Qt::PlainText);
    QScrollBar *bar = outlet<QScrollArea>("messageArea")->verticalScrollBar();
    EXPECT_TRUE(bar->isVisible());
    EXPECT_GT(bar->maximum(), 0);
    shown()->grab(); // paints it
}

TEST_F(AlertWindow, ButtonsWithoutATitleAreAwayAndTheOthersSayTheirs)
{
    alert = Alert::withdefaultButton(surroundings, QStringLiteral("Save & close"), QString(), other);
    alert->displayMessage(text, {}, false);
    alert->showWindow();
    EXPECT_FALSE(button("mCancelButton")->isVisible());
    alert->buttonClicked(button("mCancelButton"));
    EXPECT_NE(shown(), nullptr) << "its number can't be returned";
    EXPECT_EQ(button("mOkButton")->text(), QStringLiteral("Save && close"));
    EXPECT_EQ(button("mOkButton")->accessibleName(), QStringLiteral("Save & close"));
    const int narrow = button("mOkButton")->width();
    EXPECT_GT(button("mOkButton")->x(), button("mOtherButton")->x());

    alert = Alert::withdefaultButton(surroundings, QStringLiteral("Save everything & close"), no,
                                     QString(500, u'W'));
    alert->displayMessage(text, {}, false);
    alert->showWindow();
    EXPECT_GT(button("mOkButton")->width(), narrow);
    EXPECT_LT(button("mOtherButton")->width(), 320);
    expectNothingIsCut();
}

TEST_F(AlertWindow, TheTwoFormsHaveTheirButtonsTheOtherWayAbout)
{
    show(text);
    EXPECT_GT(button("mOkButton")->x(), button("mCancelButton")->x());
    EXPECT_EQ(button("mOkButton")->property("accent"), true);
    alert = Alert::reverseAlertWithDefaultButton(surroundings, yes, no);
    alert->isNoButtonHighlighted = true;
    alert->displayReverseAlertMessage(text, {}, false);
    alert->showWindow();
    EXPECT_LT(button("rAOkButton")->x(), button("rACancelButton")->x());
    EXPECT_FALSE(button("rAOkButton")->property("accent").toBool());
    EXPECT_EQ(button("rACancelButton")->property("accent"), true);
    EXPECT_EQ(shown()->focusWidget(), button("rACancelButton"));
}

TEST_F(AlertWindow, StandsInTheMiddleOfTheScreenAndFollowsTheDesktopsColours)
{
    show(text);
    const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
    EXPECT_LE((shown()->geometry().center() - middle).manhattanLength(), 2);
    EXPECT_EQ(shown()->windowTitle(), QStringLiteral("Corvane"));
    const auto isDark = [] {
        const QPalette colours = outlet<AlertLabel>("mMessageString")->palette();
        return colours.color(QPalette::Window).lightness() < colours.color(QPalette::WindowText).lightness();
    };
    EXPECT_FALSE(isDark());
    shown()->close();
    dark = true;
    Alert::refreshColours();
    alert->showWindow();
    EXPECT_TRUE(isDark()) << "it had the look of its first showing";
    dark = false;
    Alert::refreshColours();
    EXPECT_FALSE(isDark());
    dark = true;
    Alert::refreshColours();
    EXPECT_TRUE(isDark());
}

TEST_F(AlertWindow, OnlyTheSentenceAboutPermissionsHasALink)
{
    const QString english =
        QStringLiteral("Warning! Backup operations will not work without these permissions. Learn more");
    const struct {
        const char *name;
        QString message;
        bool isLink;
    } rows[] = {
        {"English", english, true},
        {"Japanese", QStringLiteral("警告: これらの権限がないとバックアップは実行できません。詳細"), true},
        {"a blank more", english + u' ', false},
        {"the phrase alone", QStringLiteral("Learn more"), false},
        {"markup", QStringLiteral("<a href=\"https://x.example\">Learn more</a>"), false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        show(row.message);
        auto *message = outlet<AlertLabel>("mMessageString");
        EXPECT_EQ(message->textFormat() == Qt::RichText, row.isLink);
        EXPECT_EQ(QAccessible::queryAccessibleInterface(message)->text(QAccessible::Name), row.message);
        expectNothingIsCut();

        opened.clear();
        message->setFocus();
        QTest::keyClick(message, Qt::Key_Tab); // onto the link, or back to the buttons where there is none
        for (int x = 0; x < message->width() && opened.isEmpty(); x += 4) {
            for (int y = 2; y < message->height() && opened.isEmpty(); y += 4)
                QTest::mouseClick(message, Qt::LeftButton, {}, QPoint(x, y));
        }
        EXPECT_EQ(opened, row.isLink ? QList<QUrl>{QUrl(QStringLiteral(
                                           "https://www.corvane.example/online-backup-mac-faq#pre-authorize"))}
                                     : QList<QUrl>());
        EXPECT_NE(shown(), nullptr);
    }
}

TEST_F(AlertWindow, TheLinkIsReachedByTheKeyboard)
{
    show(QStringLiteral("Warning! Backup operations will not work without these permissions. Learn more"));
    ASSERT_TRUE(waitUntil([] { return shown()->isActiveWindow(); }));
    for (int i = 0; i < 4 && shown()->focusWidget() != outlet<AlertLabel>("mMessageString"); ++i)
        press(Qt::Key_Tab);
    ASSERT_EQ(shown()->focusWidget(), outlet<AlertLabel>("mMessageString"));
    press(Qt::Key_Return);
    EXPECT_EQ(opened.size(), 1);
    ASSERT_NE(shown(), nullptr) << "Return opened the link and took no button";
    press(Qt::Key_Escape);
    EXPECT_EQ(shown(), nullptr);
}
