#include "Classes/ACTIVITY_LOGS/LogTextAccessible.h"

#include "Classes/ACTIVITY_LOGS/LogTextView.h"

#include <QAccessibleWidget>
#include <QTextCursor>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
LogTextView *viewOf(const QObject *link)
{
    return qobject_cast<LogTextView *>(link->parent());
}

class LinkInterface : public QAccessibleObject, public QAccessibleActionInterface
{
public:
    explicit LinkInterface(LogTextLink *link) : QAccessibleObject(link) {}

    [[nodiscard]] QAccessibleInterface *parent() const override
    {
        return QAccessible::queryAccessibleInterface(viewOf(link()));
    }
    [[nodiscard]] QAccessibleInterface *child(int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    [[nodiscard]] QWindow *window() const override { return parent()->window(); }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Link; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        const QString whole = viewOf(link())->shown().plain();
        return kind == QAccessible::Name ? whole.mid(link()->start, link()->end - link()->start) : QString();
    }
    [[nodiscard]] QRect rect() const override
    {
        const LogTextView *const view = viewOf(link());
        const QRect place = view->rectangle(*link());
        return place.isNull() ? QRect() : QRect(view->mapToGlobal(place.topLeft()), place.size());
    }
    [[nodiscard]] QAccessible::State state() const override
    {
        const LogTextView *const view = viewOf(link());
        QAccessible::State state;
        state.linked = true;
        state.focusable = true;
        state.focused = view->focusedLink() == link();
        // One that is scrolled away counts as shown: it can be pressed as it is.
        state.invisible = !view->isVisible();
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString &name) override
    {
        if (name == pressAction())
            viewOf(link())->press(*link());
        else if (name == setFocusAction())
            viewOf(link())->focusLink(*link());
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString &) const override { return {}; }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
    }

private:
    [[nodiscard]] LogTextLink *link() const { return static_cast<LogTextLink *>(object()); }
};

class ViewInterface : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit ViewInterface(LogTextView *view) : QAccessibleWidget(view, QAccessible::EditableText) {}

    [[nodiscard]] int childCount() const override { return int(view()->links().size()); }
    [[nodiscard]] QAccessibleInterface *child(int index) const override
    {
        const auto &links = view()->links();
        const bool isOne = index >= 0 && index < childCount();
        return isOne ? QAccessible::queryAccessibleInterface(links[std::size_t(index)]) : nullptr;
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override
    {
        const auto &links = view()->links();
        const auto found = std::find(links.begin(), links.end(), child->object());
        return found == links.end() ? -1 : int(found - links.begin());
    }
    [[nodiscard]] QAccessibleInterface *childAt(int x, int y) const override
    {
        for (LogTextLink *link : view()->links()) {
            QAccessibleInterface *const one = QAccessible::queryAccessibleInterface(link);
            if (one->rect().contains(x, y))
                return one;
        }
        return nullptr;
    }
    [[nodiscard]] QAccessibleInterface *focusChild() const override
    {
        LogTextLink *const link = view()->focusedLink();
        return link ? QAccessible::queryAccessibleInterface(link) : QAccessibleWidget::focusChild();
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? whole() : QAccessibleWidget::text(kind);
    }
    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface *>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }

    // A text interface: places are those of the document, which the shown text has one for one.
    [[nodiscard]] QString text(int start, int end) const override { return whole().mid(start, end - start); }
    [[nodiscard]] int characterCount() const override { return int(whole().size()); }
    [[nodiscard]] int cursorPosition() const override { return view()->textCursor().position(); }
    void setCursorPosition(int position) override { select(position, position); }
    [[nodiscard]] int selectionCount() const override { return view()->textCursor().hasSelection() ? 1 : 0; }
    void selection(int index, int *start, int *end) const override
    {
        const QTextCursor cursor = view()->textCursor();
        const bool isThere = index == 0 && cursor.hasSelection();
        *start = isThere ? cursor.selectionStart() : 0;
        *end = isThere ? cursor.selectionEnd() : 0;
    }
    void addSelection(int start, int end) override { select(start, end); }
    void setSelection(int index, int start, int end) override
    {
        if (index == 0)
            select(start, end);
    }
    void removeSelection(int index) override
    {
        if (index == 0)
            select(cursorPosition(), cursorPosition());
    }
    void scrollToSubstring(int start, int end) override
    {
        select(start, end);
        view()->ensureCursorVisible();
    }
    [[nodiscard]] QRect characterRect(int offset) const override
    {
        QTextCursor cursor(view()->document());
        cursor.setPosition(within(offset));
        const QRect place = view()->cursorRect(cursor);
        return {view()->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }
    [[nodiscard]] int offsetAtPoint(const QPoint &point) const override
    {
        return view()->cursorForPosition(view()->viewport()->mapFromGlobal(point)).position();
    }
    [[nodiscard]] QString attributes(int offset, int *start, int *end) const override
    {
        *start = 0;
        *end = characterCount();
        for (const LogTextLink *link : view()->links()) {
            if (offset < link->start) {
                *end = link->start;
                break;
            }
            if (offset < link->end) {
                *start = link->start;
                *end = link->end;
                return u"text-underline-style:solid;"_s;
            }
            *start = link->end;
        }
        return {};
    }

private:
    [[nodiscard]] LogTextView *view() const { return static_cast<LogTextView *>(widget()); }
    [[nodiscard]] QString whole() const { return view()->shown().plain(); }
    [[nodiscard]] int within(int offset) const { return std::clamp(offset, 0, characterCount()); }
    void select(int start, int end)
    {
        QTextCursor cursor = view()->textCursor();
        cursor.setPosition(within(start));
        cursor.setPosition(within(end), QTextCursor::KeepAnchor);
        view()->setTextCursor(cursor);
    }
};

QAccessibleInterface *interfaceOf(const QString &, QObject *object)
{
    if (auto *const view = qobject_cast<LogTextView *>(object))
        return new ViewInterface(view); // the toolkit's cache owns it
    auto *const link = qobject_cast<LogTextLink *>(object);
    return link && viewOf(link) ? new LinkInterface(link) : nullptr;
}
} // namespace

void LogTextAccessible::install()
{
    [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(interfaceOf), true);
}
