#include "Tests/AlertPanel/AlertFixture.h"
#include "Utility/Language/LocalizedBundle.h"

#include <QAccessible>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace
{
/// Before the first sentence is asked for: the sentences of a process keep their language.
class Japanese : public testing::Environment
{
    void SetUp() override { LocalizedBundle::main().forceLanguage(u"ja"_s); }
};
[[maybe_unused]] const testing::Environment *const japanese =
    testing::AddGlobalTestEnvironment(new Japanese); // owned by the test program

const QString english = u"Warning! Backup operations will not work without these permissions. Learn more"_s;
} // namespace

class AlertWindow : public AlertFixture
{
protected:
    /// An alert on the screen that isn't modal.
    void show(const std::optional<QString> &message, const std::optional<QString> &title = {})
    {
        show(Alert::withdefaultButton(surroundings, yes, no), message, title);
    }
    void show(std::unique_ptr<Alert> made, const std::optional<QString> &message,
              const std::optional<QString> &title = {})
    {
        alert = std::move(made);
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
    show(QString(), u"Title"_s);
    const QSize base = shown()->size();
    constexpr int More = -1; // than the line count asks for
    const Row<QString, int> rows[] = {
        {"short", u"a"_s, 0},
        {"two lines", QString(17, u'x') + u" abcdefg"_s.repeated(11), 0},
        {"the rule's two", u"abcde fghi"_s.repeated(14), 18},
        {"the rule's five", u"abcde fghi"_s.repeated(35), 72},
        {"short lines that the rule doesn't count", u"a\n"_s.repeated(12), More},
    };
    forEachRow(rows, [&](const auto &row) {
        show(row.given, u"Title"_s);
        EXPECT_EQ(shown()->width(), base.width());
        if (row.expected != More)
            EXPECT_EQ(shown()->height(), base.height() + row.expected);
        else
            EXPECT_GT(shown()->height(), base.height() + 12 * 18 - 64);
        expectNothingIsCut();
    });
}

TEST_F(AlertWindow, HostileTextIsPlainBoundedAndScrolls)
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    show(u"<h1>x</h1>\u202E"_s + QString(10'000'000, u'A'), QString(100'000, u'M'));
    EXPECT_TRUE(screen.contains(shown()->geometry()));
    expectNothingIsCut();
    auto *message = outlet<AlertLabel>("mMessageString");
    EXPECT_TRUE(message->text().startsWith(u"<h1>x</h1>AAA"_s));
    EXPECT_EQ(message->text().size(), 20'001);
    EXPECT_EQ(message->textFormat(), Qt::PlainText);
    QScrollBar *bar = outlet<QScrollArea>("messageArea")->verticalScrollBar();
    EXPECT_TRUE(bar->isVisible());
    EXPECT_GT(bar->maximum(), 0);
    shown()->grab(); // paints it
}

TEST_F(AlertWindow, ButtonsWithoutATitleAreAwayAndTheOthersSayTheirs)
{
    show(Alert::withdefaultButton(surroundings, u"Save & close"_s, QString(), other), text);
    EXPECT_FALSE(button("mCancelButton")->isVisible());
    alert->buttonClicked(button("mCancelButton"));
    EXPECT_NE(shown(), nullptr) << "its number can't be returned";
    EXPECT_EQ(button("mOkButton")->text(), u"Save && close"_s);
    EXPECT_EQ(button("mOkButton")->accessibleName(), u"Save & close"_s);
    const int narrow = button("mOkButton")->width();
    EXPECT_GT(button("mOkButton")->x(), button("mOtherButton")->x());

    show(Alert::withdefaultButton(surroundings, u"Save everything & close"_s, no, QString(500, u'W')), text);
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
    EXPECT_EQ(shown()->windowTitle(), u"Corvane"_s);
    const auto looksDark = [] {
        const QPalette colours = outlet<AlertLabel>("mMessageString")->palette();
        return colours.color(QPalette::Window).lightness() < colours.color(QPalette::WindowText).lightness();
    };
    EXPECT_FALSE(looksDark());
    shown()->close();
    dark = true;
    Alert::refreshColours();
    alert->showWindow();
    EXPECT_TRUE(looksDark()) << "it had the look of its first showing";
    dark = false;
    Alert::refreshColours();
    EXPECT_FALSE(looksDark());
}

TEST_F(AlertWindow, OnlyTheSentenceAboutPermissionsHasALink)
{
    const Row<QString, bool> rows[] = {
        {"English", english, true},
        {"Japanese", u"警告: これらの権限がないとバックアップは実行できません。詳細"_s, true},
        {"a blank more", english + u' ', false},
        {"the phrase alone", u"Learn more"_s, false},
        {"markup", u"<a href=\"https://x.example\">Learn more</a>"_s, false},
    };
    forEachRow(rows, [this](const auto &row) {
        show(row.given);
        auto *message = outlet<AlertLabel>("mMessageString");
        EXPECT_EQ(message->textFormat() == Qt::RichText, row.expected);
        EXPECT_EQ(QAccessible::queryAccessibleInterface(message)->text(QAccessible::Name), row.given);
        expectNothingIsCut();

        opened.clear();
        message->setFocus();
        QTest::keyClick(message, Qt::Key_Tab); // onto the link, or back to the buttons where there is none
        for (int x = 0; x < message->width() && opened.isEmpty(); x += 4) {
            for (int y = 2; y < message->height() && opened.isEmpty(); y += 4)
                QTest::mouseClick(message, Qt::LeftButton, {}, QPoint(x, y));
        }
        EXPECT_EQ(opened,
                  row.expected
                      ? QList<QUrl>{QUrl(u"https://www.corvane.example/online-backup-mac-faq#pre-authorize"_s)}
                      : QList<QUrl>());
        EXPECT_NE(shown(), nullptr);
    });
}

TEST_F(AlertWindow, TheLinkIsReachedByTheKeyboard)
{
    show(english);
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
