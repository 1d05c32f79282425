#include "Classes/ACTIVITY_LOGS/LogTextView.h"

#include "Classes/ACTIVITY_LOGS/LogTextAccessible.h"
#include "Platform/Desktop/WindowLook.h"
#include "Utility/Language/LogTextSentences.h"
#include "Utility/QNUtility.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocumentFragment>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr QRgb TextOnLight = 0xFF171717;
constexpr QRgb TextOnDark = 0xFFFFFFFF;
} // namespace

LogTextView::LogTextView(QWidget *parent) : QTextBrowser(parent)
{
    LogTextAccessible::install();
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    setAcceptRichText(false);
    setTabChangesFocus(true);
    setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    // A name in a script that runs from right to left would otherwise turn the line that begins with it.
    QTextOption option = document()->defaultTextOption();
    option.setTextDirection(Qt::LeftToRight);
    document()->setDefaultTextOption(option);
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl &address) {
        if (const LogTextLink *link = linkOf(address))
            press(*link);
    });
}

LogTextView::~LogTextView()
{
    deleteLinks(); // what screen readers know of them asks the view
}

void LogTextView::showText(const LogText &text)
{
    if (!text.language.isEmpty())
        QNUtility::setViewLogDisplayLanguage(text.language);
    if (text == m_text)
        return verticalScrollBar()->setValue(0);
    empty();
    m_text = text;
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    for (const LogPiece &piece : text.pieces) {
        QTextCharFormat format;
        const int start = cursor.position();
        if (piece.link) {
            format.setAnchor(true);
            format.setAnchorHref(u"link:%1"_s.arg(m_links.size()));
            format.setFontUnderline(true);
        }
        cursor.insertText(piece.text, format);
        if (piece.link)
            m_links.push_back(new LogTextLink(*piece.link, start, cursor.position(), this));
    }
    cursor.endEditBlock();
    colour();
    moveCursor(QTextCursor::Start);
    QAccessibleTextInsertEvent told(this, 0, toPlainText());
    QAccessible::updateAccessibility(&told);
}

void LogTextView::empty()
{
    const QString before = toPlainText();
    deleteLinks();
    m_text = {};
    document()->clear();
    if (before.isEmpty())
        return;
    QAccessibleTextRemoveEvent told(this, 0, before);
    QAccessible::updateAccessibility(&told);
}

void LogTextView::deleteLinks()
{
    for (LogTextLink *link : std::exchange(m_links, {}))
        delete link;
}

void LogTextView::setDark(bool dark)
{
    m_isDark = dark;
    colour();
}

void LogTextView::colour()
{
    // Each stretch has its own colour: a style sheet would take one from the palette away.
    QTextCharFormat text;
    text.setForeground(QColor::fromRgb(m_isDark ? TextOnDark : TextOnLight));
    QTextCharFormat link;
    link.setForeground(WindowLook::colour(u"accent", m_isDark));
    QTextCursor cursor(document());
    cursor.select(QTextCursor::Document);
    cursor.mergeCharFormat(text);
    for (const LogTextLink *place : m_links) {
        cursor.setPosition(place->start);
        cursor.setPosition(place->end, QTextCursor::KeepAnchor);
        cursor.mergeCharFormat(link);
    }
}

LogTextLink *LogTextView::linkOf(const QUrl &address) const
{
    bool isNumber = false;
    const std::size_t place = address.path().toULongLong(&isNumber);
    return isNumber && place < m_links.size() ? m_links[place] : nullptr;
}

LogTextLink *LogTextView::focusedLink() const
{
    const QTextCursor cursor = textCursor();
    if (!hasFocus() || !cursor.hasSelection())
        return nullptr;
    for (LogTextLink *link : m_links) {
        if (link->start == cursor.selectionStart() && link->end == cursor.selectionEnd())
            return link;
    }
    return nullptr;
}

QRect LogTextView::rectangle(const LogTextLink &link) const
{
    QTextCursor cursor(document());
    cursor.setPosition(link.start);
    QRect whole = cursorRect(cursor);
    for (int place = link.start + 1; place <= link.end; ++place) {
        cursor.setPosition(place);
        whole |= cursorRect(cursor);
    }
    whole = whole.intersected(viewport()->rect());
    return whole.isEmpty() ? QRect() : QRect(viewport()->mapTo(this, whole.topLeft()), whole.size());
}

void LogTextView::press(const LogTextLink &link)
{
    // Who is told may show another text, and this link goes with the old one.
    const LogLink pressed = link.link;
    Q_EMIT linkActivated(pressed);
}

void LogTextView::focusLink(const LogTextLink &link)
{
    setFocus(Qt::OtherFocusReason);
    QTextCursor cursor(document());
    cursor.setPosition(link.start);
    cursor.setPosition(link.end, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
    ensureCursorVisible();
}

QVariant LogTextView::loadResource(int, const QUrl &)
{
    return {};
}

bool LogTextView::focusNextPrevChild(bool next)
{
    const bool isTaken = QTextBrowser::focusNextPrevChild(next);
    if (LogTextLink *link = isTaken ? focusedLink() : nullptr) {
        QAccessibleEvent told(link, QAccessible::Focus);
        QAccessible::updateAccessibility(&told);
    }
    return isTaken;
}

void LogTextView::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const LogTextLink *link = isReturn ? focusedLink() : nullptr;
    if (!link)
        return QTextBrowser::keyPressEvent(event);
    event->accept();
    press(*link);
}

void LogTextView::contextMenuEvent(QContextMenuEvent *event)
{
    // The one that the class brings offers the address of a link, which is a number here.
    QMenu menu(this);
    QAction *const copySelected = menu.addAction(DynamicViewLogs::copy.text(), this, &QTextEdit::copy);
    copySelected->setEnabled(textCursor().hasSelection());
    QAction *const all = menu.addAction(DynamicViewLogs::selectAll.text(), this, &QTextEdit::selectAll);
    all->setEnabled(!document()->isEmpty());
    menu.exec(event->globalPos());
}

QMimeData *LogTextView::createMimeDataFromSelection() const
{
    // The class would add markup, with links that mean nothing elsewhere.
    auto *const copied = new QMimeData; // the clipboard owns it
    copied->setText(textCursor().selection().toPlainText());
    return copied;
}
