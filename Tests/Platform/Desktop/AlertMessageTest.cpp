#include "Platform/Desktop/AlertMessage.h"
#include "Tests/Support/PrintQt.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
const AlertMessage::Content SignIn{.title = u"Corvane"_s,
                                   .text = u"Sign in to <b>Corvane</b> first."_s,
                                   .buttonTitle = u"OK"_s,
                                   .iconFile = {}};

QDialog *shownDialog()
{
    QDialog *found = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<QDialog *>(widget); dialog && dialog->isVisible()) {
            EXPECT_EQ(found, nullptr) << "one message at a time";
            found = dialog;
        }
    }
    return found;
}
} // namespace

TEST(AlertMessage, ShowsTheTextAndClosesByItsButton)
{
    bool dark = false;
    AlertMessage message([&dark] { return dark; });
    message.show(SignIn);
    QDialog *dialog = shownDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(dialog->isModal());
    EXPECT_EQ(dialog->windowTitle(), u"Corvane"_s);
    auto *label = dialog->findChild<QLabel *>(u"messageLabel"_s);
    auto *button = dialog->findChild<QPushButton *>(u"okButton"_s);
    EXPECT_EQ(label->text(), SignIn.text);
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
    EXPECT_EQ(label->accessibleName(), QString());
    EXPECT_EQ(button->text(), u"OK"_s);
    EXPECT_EQ(button->accessibleName(), u"OK"_s);
    EXPECT_GT(label->palette().window().color().lightness(), label->palette().windowText().color().lightness());
    dark = true;
    message.refreshColours();
    EXPECT_LT(label->palette().window().color().lightness(), label->palette().windowText().color().lightness());
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(message.isShown());
}

TEST(AlertMessage, ANewMessageTakesThePlace)
{
    AlertMessage message([] { return false; });
    message.show(SignIn);
    const int shortHeight = shownDialog()->sizeHint().height();
    AlertMessage::Content longer = SignIn;
    longer.text = SignIn.text.repeated(20);
    message.show(longer);
    QDialog *dialog = shownDialog();
    ASSERT_NE(dialog, nullptr);
    auto *label = dialog->findChild<QLabel *>(u"messageLabel"_s);
    EXPECT_EQ(label->text(), longer.text);
    EXPECT_GT(dialog->sizeHint().height(), shortHeight);
    QTest::keyClick(dialog, Qt::Key_Return);
    EXPECT_FALSE(message.isShown());
    message.show(SignIn);
    QTest::keyClick(dialog, Qt::Key_Escape);
    EXPECT_FALSE(message.isShown());
}
