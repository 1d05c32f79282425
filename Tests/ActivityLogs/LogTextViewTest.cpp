// The text of a log on the screen: its links by mouse, keyboard and screen reader, and nothing but text.

#include "Classes/ACTIVITY_LOGS/LogTextView.h"
#include "Utility/QNUtility.h"

#include "Tests/Support/PrintQt.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTest>
#include <QTextBlock>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
const LogText text{{{u"<img src=\"file:///x.png\"> שלום\nx "_s, {}},
                    {u"Click here"_s, LogLink{LogLink::Kind::Preferences, {}}},
                    {u" or "_s, {}},
                    {u"View entire log"_s, LogLink{LogLink::Kind::EntireLog, u"/log"_s}}},
                   u"es"_s};
} // namespace

class LogTextViewTest : public testing::Test
{
protected:
    LogTextViewTest()
    {
        view.resize(400, 300);
        view.showText(text);
        view.show();
        view.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
        QObject::connect(&view, &LogTextView::linkActivated, &view,
                         [this](const LogLink &link) { pressed.push_back(link.kind); });
    }
    [[nodiscard]] QColor colourAt(int place) const
    {
        QTextCursor cursor(view.document());
        cursor.setPosition(place + 1);
        return cursor.charFormat().foreground().color();
    }

    LogTextView view;
    std::vector<LogLink::Kind> pressed;
    const std::vector<LogLink::Kind> both{LogLink::Kind::Preferences, LogLink::Kind::EntireLog};
};

TEST_F(LogTextViewTest, ShowsTextAsTextInTheColoursOfTheDesktop)
{
    EXPECT_EQ(view.toPlainText(), text.plain());
    EXPECT_EQ(view.document()->resource(QTextDocument::ImageResource, QUrl(u"file:///x.png"_s)), QVariant());
    EXPECT_EQ(view.document()->firstBlock().textDirection(), Qt::LeftToRight);
    EXPECT_EQ(QNUtility::viewLogDisplayLanguage(), u"es"_s);
    const int link = view.links().front()->start;
    EXPECT_EQ(colourAt(0), QColor(u"#171717"_s));
    const QColor onLight = colourAt(link);
    view.setDark(true);
    EXPECT_EQ(colourAt(0), QColor(u"#FFFFFF"_s));
    EXPECT_GT(colourAt(link).blue(), colourAt(link).red());
    EXPECT_NE(colourAt(link), onLight);
    view.selectAll();
    view.copy();
    EXPECT_FALSE(QGuiApplication::clipboard()->mimeData()->hasHtml());
    view.empty();
    EXPECT_EQ(view.toPlainText(), QString());
    EXPECT_TRUE(view.links().empty());
}

TEST_F(LogTextViewTest, EachLinkIsReachedByTabAndPressedByReturnOrMouse)
{
    view.setFocus();
    for (int i = 0; i < 2; ++i) {
        QTest::keyClick(&view, Qt::Key_Tab);
        QTest::keyClick(&view, Qt::Key_Return);
    }
    EXPECT_EQ(pressed, both);
    QTest::keyClick(&view, Qt::Key_Tab); // out of the view
    QTest::keyClick(&view, Qt::Key_Tab);
    EXPECT_EQ(view.focusedLink(), view.links()[0]);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                      view.viewport()->mapFrom(&view, view.rectangle(*view.links()[0]).center()));
    EXPECT_EQ(pressed.size(), 3U);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_EQ(pressed.size(), 3U);
}

TEST_F(LogTextViewTest, AScreenReaderReadsItWholeAndPressesEachLinkUnderItsWords)
{
    QAccessibleInterface *const seen = QAccessible::queryAccessibleInterface(&view);
    ASSERT_TRUE(seen && seen->textInterface());
    EXPECT_EQ(seen->textInterface()->text(0, seen->textInterface()->characterCount()), text.plain());
    ASSERT_EQ(seen->childCount(), 2);
    QStringList names;
    for (int i = 0; i < 2; ++i) {
        QAccessibleInterface *const link = seen->child(i);
        names.append(link->text(QAccessible::Name));
        EXPECT_EQ(link->role(), QAccessible::Link);
        EXPECT_EQ(seen->indexOfChild(link), i);
        EXPECT_EQ(seen->childAt(link->rect().center().x(), link->rect().center().y()), link);
        link->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        EXPECT_TRUE(link->state().focused);
        link->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    EXPECT_EQ(names, (QStringList{u"Click here"_s, u"View entire log"_s}));
    EXPECT_EQ(pressed, both);
    view.showText(LogText{{{u"no link"_s, {}}}, u"en"_s});
    EXPECT_EQ(seen->childCount(), 0);
}
