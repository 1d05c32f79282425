#pragma once

#include "Classes/ACTIVITY_LOGS/LogText.h"

#include <QTextBrowser>

#include <vector>

/// One link of the text on view, as a screen reader meets it: a child of the view with its own words, that can
/// be pressed.
class LogTextLink : public QObject
{
    Q_OBJECT

public:
    LogTextLink(LogLink linkTo, int from, int to, QObject *parent)
        : QObject(parent), link(std::move(linkTo)), start(from), end(to)
    {
    }

    const LogLink link;
    const int start, end; ///< in the view's document
};

/// The text of a log: plain text whatever stands in it, with links that mouse, Tab and screen readers reach.
/// Nothing in the text is read as markup, and nothing is fetched.
class LogTextView : public QTextBrowser
{
    Q_OBJECT

public:
    explicit LogTextView(QWidget *parent = nullptr);
    ~LogTextView() override;

    /// Shows the text from its beginning. The language of the log becomes that of QNUtility.
    void showText(const LogText &text);
    [[nodiscard]] const LogText &shown() const { return m_text; }
    /// Shows nothing.
    void empty();

    /// Takes the colours of a light or dark desktop; light until it is called.
    void setDark(bool dark);

    /// The links of the text, in their order; they go with it.
    [[nodiscard]] const std::vector<LogTextLink *> &links() const { return m_links; }
    /// The link that has the keyboard; null where the focus is elsewhere.
    [[nodiscard]] LogTextLink *focusedLink() const;
    /// Where a link is, in the coordinates of the view; a null rectangle while it is scrolled away.
    [[nodiscard]] QRect rectangle(const LogTextLink &link) const;
    void press(const LogTextLink &link);
    void focusLink(const LogTextLink &link);

Q_SIGNALS:
    void linkActivated(const LogLink &link);

protected:
    QVariant loadResource(int type, const QUrl &name) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    [[nodiscard]] QMimeData *createMimeDataFromSelection() const override;

private:
    void deleteLinks();
    void colour();
    [[nodiscard]] LogTextLink *linkOf(const QUrl &address) const;

    LogText m_text;
    std::vector<LogTextLink *> m_links;
    bool m_isDark = false;
};
