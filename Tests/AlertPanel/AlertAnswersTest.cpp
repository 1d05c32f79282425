#include "Classes/AlertPanel/ModalSession.h"
#include "Tests/AlertPanel/AlertFixture.h"

#include <atomic>
#include <thread>

class AlertAnswers : public AlertFixture
{
protected:
    [[nodiscard]] std::unique_ptr<Alert> question()
    {
        return Alert::withdefaultButton(surroundings, yes, no, {}, this);
    }
    int ask(Alert &alert) { return alert.displayMessage(text, {}, true); }
};

TEST_F(AlertAnswers, EachButtonAndKeyHasItsNumber)
{
    enum class Kind { Plain, PlainWithOther, OneButton, SaferNo, Reverse, ReverseOneButton };
    const auto clickOn = [](const char *name) { return [name] { click(name); }; };
    const auto key = [](Qt::Key which) { return [which] { press(which); }; };
    const auto tabAndReturn = [] {
        press(Qt::Key_Tab);
        press(Qt::Key_Return);
    };
    const auto close = [] { shown()->close(); };
    const struct {
        const char *name;
        Kind kind;
        std::function<void()> deed;
        int result, yesRuns;
    } rows[] = {
        {"first", Kind::PlainWithOther, clickOn("mOkButton"), 1, 1},
        {"alternate", Kind::PlainWithOther, clickOn("mCancelButton"), 0, 0},
        {"other", Kind::PlainWithOther, clickOn("mOtherButton"), -1, 0},
        {"Return", Kind::Plain, key(Qt::Key_Return), 1, 1},
        {"Enter", Kind::Plain, key(Qt::Key_Enter), 1, 1},
        {"Space", Kind::Plain, key(Qt::Key_Space), 1, 1},
        {"Escape", Kind::Plain, key(Qt::Key_Escape), 0, 0},
        {"Return on the button after the first", Kind::Plain, tabAndReturn, 0, 0},
        {"Return where No is highlighted", Kind::SaferNo, key(Qt::Key_Return), 0, 0},
        {"Return on the button after No", Kind::SaferNo, tabAndReturn, 1, 1},
        {"Return with one button", Kind::OneButton, key(Qt::Key_Return), 1, 1},
        {"Escape with one button", Kind::OneButton, key(Qt::Key_Escape), 1, 1},
        {"reverse first", Kind::Reverse, clickOn("rAOkButton"), 0, 0},
        {"reverse alternate", Kind::Reverse, clickOn("rACancelButton"), 1, 0},
        {"reverse Return", Kind::Reverse, key(Qt::Key_Return), 0, 0},
        {"reverse Escape", Kind::Reverse, key(Qt::Key_Escape), 1, 0},
        {"reverse Escape with one button", Kind::ReverseOneButton, key(Qt::Key_Escape), 0, 0},
        {"plain closed", Kind::OneButton, close, 0, 0},
        {"reverse closed", Kind::Reverse, close, 1, 0},
    };
    forEachRow(rows, [this](const auto &row) {
        const bool reverse = row.kind == Kind::Reverse || row.kind == Kind::ReverseOneButton;
        const auto title =
            row.kind == Kind::OneButton || row.kind == Kind::ReverseOneButton ? std::nullopt : Alert::Title(no);
        const auto third = row.kind == Kind::PlainWithOther ? Alert::Title(other) : std::nullopt;
        const auto alert = reverse ? Alert::reverseAlertWithDefaultButton(surroundings, yes, title, this)
                                   : Alert::withdefaultButton(surroundings, yes, title, third, this);
        int yesRuns = 0;
        closings = 0;
        alert->yesButtonAction = [&yesRuns] { ++yesRuns; };
        alert->mainController = this;
        alert->isNoButtonHighlighted = row.kind == Kind::SaferNo;
        then(row.deed);
        EXPECT_EQ(reverse ? alert->displayReverseAlertMessage(text, {}, true) : ask(*alert), row.result);
        EXPECT_EQ(alert->mButtonClicked, row.result);
        EXPECT_EQ(yesRuns, row.yesRuns);
        EXPECT_EQ(closings, 1);
        EXPECT_EQ(shown(), nullptr);
    });
    EXPECT_TRUE(told.isEmpty()) << "the caller of a modal alert has its answer";
}

TEST_F(AlertAnswers, AHeldKeyAnswersNothing)
{
    then([] {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(shown()->focusWidget(), &held);
        ASSERT_NE(shown(), nullptr);
        press(Qt::Key_Escape);
    });
    EXPECT_EQ(ask(*question()), 0);
}

TEST_F(AlertAnswers, TheNextModalAlertTakesThePlaceAndTheFirstIsAnsweredSafely)
{
    const auto first = Alert::reverseAlertWithDefaultButton(surroundings, yes, no, this);
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
        secondAnswer = ask(*question());
    });
    EXPECT_EQ(first->displayReverseAlertMessage(text, {}, true), 1);
    EXPECT_EQ(secondAnswer, 1);
    EXPECT_EQ(closings, 1);
    EXPECT_FALSE(ran);
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(AlertAnswers, AnActionThatAsksAgainKeepsTheAnswerAndRunsOnce)
{
    const auto alert = question();
    int runs = 0;
    alert->yesButtonAction = [&] {
        ++runs;
        alert->buttonClicked(button("mCancelButton")); // too late
        then([] { click("mCancelButton"); });
        EXPECT_EQ(ask(*question()), 0);
    };
    then([] { click("mOkButton"); });
    EXPECT_EQ(ask(*alert), 1);
    EXPECT_EQ(runs, 1);
}

TEST_F(AlertAnswers, QuestionsThatNobodyAnswersDoNotUseUpTheStack)
{
    int asked = 0, answered = 0;
    std::function<void()> askNext = [&] {
        if (++asked <= ModalSession::MaxDepth + 10)
            then(askNext);
        else
            then([] { click("mOkButton"); });
        answered += ask(*question());
    };
    askNext();
    EXPECT_TRUE(waitUntil([&] { return shown() == nullptr && asked == ModalSession::MaxDepth + 11; }));
    EXPECT_EQ(answered, 1) << "of the one that was on the screen";
}

TEST_F(AlertAnswers, AWorkerWaitsForItsAnswerAndTheWindowIsTheMainThreads)
{
    int answer = -2;
    std::atomic<bool> done = false;
    std::thread worker([&] {
        answer = ask(*question());
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
    const auto alert = question();
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
    auto alert = question();
    alert->displayMessage(text, {}, false);
    alert->yesButtonAction = [&alert] { alert.reset(); };
    alert->showWindow();
    click("mOkButton");
    EXPECT_EQ(shown(), nullptr);
    EXPECT_TRUE(told.isEmpty());
}
