#include "Platform/Desktop/AlertMessage.h"
#include "Tests/Support/PrintQt.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace
{
const AlertMessage::Content SignIn{.title = QStringLiteral("Corvane"),
                                   .text = QStringLiteral("Sign in to <b>Corvane</b> first."),
                                   .buttonTitle = QStringLiteral("OK"),
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
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Corvane"));
    auto *label = dialog->findChild<QLabel *>(QStringLiteral("messageLabel"));
    auto *button = dialog->findChild<QPushButton *>(QStringLiteral("okButton"));
    EXPECT_EQ(label->text(), SignIn.text);
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
    EXPECT_EQ(label->accessibleName(), QString());
    EXPECT_EQ(button->text(), QStringLiteral("OK"));
    EXPECT_EQ(button->accessibleName(), QStringLiteral("OK"));
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
    auto *label = dialog->findChild<QLabel *>(QStringLiteral("messageLabel"));
    EXPECT_EQ(label->text(), longer.text);
    EXPECT_GT(dialog->sizeHint().height(), shortHeight);
    QTest::keyClick(dialog, Qt::Key_Return);
    EXPECT_FALSE(message.isShown());
    message.show(SignIn);
    QTest::keyClick(dialog, Qt::Key_Escape);
    EXPECT_FALSE(message.isShown());
}
