#pragma once

#include "Classes/AlertPanel/AlertRules.h"

#include <QLabel>
#include <QTextLayout>

#include <functional>
#include <memory>

/// A text of an alert: never markup, and broken within a word where the word is longer than the line. Its
/// height for a width is all that it needs there.
class AlertLabel : public QLabel
{
public:
    using QLabel::QLabel;

    /// Shows `text`; what is over `maximumLines` at the label's width ends in an ellipsis, 0 is without limit.
    void showText(const QString &text, int maximumLines = 0);

    /// Shows `text` with a part that is a link, which mouse and keyboard reach; `opened` is called for it.
    void showTextWithLink(const QString &text, AlertRules::Link link, std::function<void()> opened);

    /// From line to line: what the line rule counts with, more where the font needs it.
    [[nodiscard]] int linePitch() const;

    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void setLinkedText();
    [[nodiscard]] const QTextLayout &layoutFor(int width) const;
    [[nodiscard]] QString lastLine(const QString &shown, qsizetype start, int width) const;

    QString m_linkedText;
    AlertRules::Link m_link; ///< in m_linkedText
    int m_maximumLines = 0;
    mutable std::unique_ptr<QTextLayout> m_layout; ///< of m_layoutWidth; none once text or font has changed
    mutable int m_layoutWidth = 0;
};
