#include "Classes/AlertPanel/ModalSession.h"
#include "Tests/AlertPanel/AlertFixture.h"

#include <atomic>
#include <thread>

class AlertAnswers : public AlertFixture
{
};

TEST_F(AlertAnswers, EachButtonAndKeyHasItsNumber)
{
    enum class Kind { Plain, PlainWithOther, OneButton, SaferNo, Reverse, ReverseOneButton };
    const auto clickOn = [](const char *name) { return [name] { click(name); }; };
    const auto key = [](Qt::Key which) { return [which] { press(which); }; };
    const auto tabAnd = [](Qt::Key which) {
        return [which] {
            press(Qt::Key_Tab);
            press(which);
        };
    };
    const struct {
        const char *name;
        Kind kind;
        std::function<void()> deed;
        int result;
        int yesRuns;
    } rows[] = {
        {"first", Kind::PlainWithOther, clickOn("mOkButton"), 1, 1},
        {"alternate", Kind::PlainWithOther, clickOn("mCancelButton"), 0, 0},
        {"other", Kind::PlainWithOther, clickOn("mOtherButton"), -1, 0},
        {"Return", Kind::Plain, key(Qt::Key_Return), 1, 1},
        {"Enter", Kind::Plain, key(Qt::Key_Enter), 1, 1},
        {"Space", Kind::Plain, key(Qt::Key_Space), 1, 1},
        {"Escape", Kind::Plain, key(Qt::Key_Escape), 0, 0},
        {"Return on the button after the first", Kind::Plain, tabAnd(Qt::Key_Return), 0, 0},
        {"Return where No is highlighted", Kind::SaferNo, key(Qt::Key_Return), 0, 0},
        {"Return on the button after No", Kind::SaferNo, tabAnd(Qt::Key_Return), 1, 1},
        {"Return with one button", Kind::OneButton, key(Qt::Key_Return), 1, 1},
        {"Escape with one button", Kind::OneButton, key(Qt::Key_Escape), 1, 1},
        {"reverse first", Kind::Reverse, clickOn("rAOkButton"), 0, 0},
        {"reverse alternate", Kind::Reverse, clickOn("rACancelButton"), 1, 0},
        {"reverse Return", Kind::Reverse, key(Qt::Key_Return), 0, 0},
        {"reverse Escape", Kind::Reverse, key(Qt::Key_Escape), 1, 0},
        {"reverse Escape with one button", Kind::ReverseOneButton, key(Qt::Key_Escape), 0, 0},
        {"plain closed", Kind::OneButton, [] { shown()->close(); }, 0, 0},
        {"reverse closed", Kind::Reverse, [] { shown()->close(); }, 1, 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const bool reverse = row.kind == Kind::Reverse || row.kind == Kind::ReverseOneButton;
        const bool alternate = row.kind != Kind::OneButton && row.kind != Kind::ReverseOneButton;
        const auto title = alternate ? Alert::Title(no) : std::nullopt;
        const auto alert =
            reverse ? Alert::reverseAlertWithDefaultButton(surroundings, yes, title, this)
                    : Alert::withdefaultButton(
                          surroundings, yes, title,
                          row.kind == Kind::PlainWithOther ? Alert::Title(other) : std::nullopt, this);
        int yesRuns = 0;
        closings = 0;
        alert->yesButtonAction = [&yesRuns] { ++yesRuns; };
        alert->mainController = this;
        alert->isNoButtonHighlighted = row.kind == Kind::SaferNo;
        then(row.deed);
        EXPECT_EQ(reverse ? alert->displayReverseAlertMessage(text, {}, true)
                          : alert->displayMessage(text, {}, true),
                  row.result);
        EXPECT_EQ(alert->mButtonClicked, row.result);
        EXPECT_EQ(yesRuns, row.yesRuns);
        EXPECT_EQ(closings, 1);
        EXPECT_EQ(shown(), nullptr);
    }
    EXPECT_TRUE(told.isEmpty()) << "the caller of a modal alert has its answer";
}

TEST_F(AlertAnswers, AHeldKeyAnswersNothing)
{
    const auto alert = Alert::withdefaultButton(surroundings, yes, no);
    then([] {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(shown()->focusWidget(), &held);
        ASSERT_NE(shown(), nullptr);
        press(Qt::Key_Escape);
    });
    EXPECT_EQ(alert->displayMessage(text, {}, true), 0);
}

TEST_F(AlertAnswers, TheNextModalAlertTakesThePlaceAndTheFirstIsAnsweredSafely)
{
    const auto first = Alert::reverseAlertWithDefaultButton(surroundings, yes, no, this);
    const auto second = Alert::withdefaultButton(surroundings, yes, no);
    bool ran = false;
    first->yesButtonAction = [&ran] { ran = true; };
    first->mainController = this;
    int secondAnswer = -2;
    then([&] {
        then([&] {
            EXPECT_FALSE(first->isWindowShown());
            EXPECT_EQ(closings, 1);
            click("mOkButton");
        });
        secondAnswer = second->displayMessage(text, {}, true);
    });
    EXPECT_EQ(first->displayReverseAlertMessage(text, {}, true), 1);
    EXPECT_EQ(secondAnswer, 1);
    EXPECT_EQ(closings, 1);
    EXPECT_FALSE(ran);
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(AlertAnswers, AnActionThatAsksAgainKeepsTheAnswerAndRunsOnce)
{
    const auto alert = Alert::withdefaultButton(surroundings, yes, no);
    int runs = 0;
    alert->yesButtonAction = [&] {
        ++runs;
        alert->buttonClicked(button("mCancelButton")); // too late
        const auto again = Alert::withdefaultButton(surroundings, yes, no);
        then([] { click("mCancelButton"); });
        EXPECT_EQ(again->displayMessage(text, {}, true), 0);
    };
    then([] { click("mOkButton"); });
    EXPECT_EQ(alert->displayMessage(text, {}, true), 1);
    EXPECT_EQ(runs, 1);
}

TEST_F(AlertAnswers, QuestionsThatNobodyAnswersDoNotUseUpTheStack)
{
    int asked = 0, answered = 0;
    std::function<void()> ask = [&] {
        if (++asked <= ModalSession::MaxDepth + 10)
            then(ask);
        else
            then([] { click("mOkButton"); });
        answered += Alert::withdefaultButton(surroundings, yes, no)->displayMessage(text, {}, true);
    };
    ask();
    EXPECT_TRUE(waitUntil([&] { return shown() == nullptr && asked == ModalSession::MaxDepth + 11; }));
    EXPECT_EQ(answered, 1) << "of the one that was on the screen";
}

TEST_F(AlertAnswers, AnEndOfTheApplicationAnswersSafely)
{
    const auto alert = Alert::reverseAlertWithDefaultButton(surroundings, yes, no);
    int answer = -2;
    then([&] {
        then([] { QApplication::exit(3); });
        answer = alert->displayReverseAlertMessage(text, {}, true);
    });
    EXPECT_EQ(QApplication::exec(), 3);
    EXPECT_EQ(answer, 1);
    EXPECT_EQ(shown(), nullptr);
}

TEST_F(AlertAnswers, AWorkerWaitsForItsAnswerAndTheWindowIsTheMainThreads)
{
    int answer = -2;
    std::atomic<bool> done = false;
    std::thread worker([&] {
        answer = Alert::withdefaultButton(surroundings, yes, no)->displayMessage(text, {}, true);
        done = true;
    });
    QTimer look; // turns within the alert's own loop too
    QObject::connect(&look, &QTimer::timeout, [&] {
        if (!shown())
            return;
        look.stop();
        EXPECT_FALSE(done);
        EXPECT_EQ(shown()->thread(), qApp->thread());
        click("mOkButton");
    });
    look.start(1);
    EXPECT_TRUE(waitUntil([&] { return done.load(); }));
    worker.join();
    EXPECT_EQ(shown(), nullptr);
    EXPECT_EQ(answer, 1);
}

TEST_F(AlertAnswers, AModelessAlertIsShownByItsCallerAndTellsItsDelegate)
{
    const auto alert = Alert::withdefaultButton(surroundings, yes, no, {}, this);
    int runs = 0;
    EXPECT_EQ(alert->displayMessage(text, {}, false), 0);
    EXPECT_EQ(shown(), nullptr);
    alert->yesButtonAction = [&runs] { ++runs; };
    alert->mainController = this;

    alert->showWindow();
    ASSERT_NE(shown(), nullptr);
    EXPECT_FALSE(shown()->isModal());
    click("mOkButton");
    EXPECT_EQ(shown(), nullptr);
    alert->showWindow();
    press(Qt::Key_Escape);
    alert->showWindow();
    shown()->close();

    EXPECT_EQ(told, (QList<int>{1, 0})) << "nobody chose the third time";
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(closings, 3);
}

TEST_F(AlertAnswers, AnAlertMayEndInItsOwnAction)
{
    auto alert = Alert::withdefaultButton(surroundings, yes, no, {}, this);
    alert->displayMessage(text, {}, false);
    alert->yesButtonAction = [&alert] { alert.reset(); };
    alert->showWindow();
    click("mOkButton");
    EXPECT_EQ(shown(), nullptr);
    EXPECT_TRUE(told.isEmpty());
}
