#pragma once

#include <QLabel>

/// A line of plain text that never asks for more room: what is too long is shown with an ellipsis in its
/// middle. text() stays whole, which is what is read aloud, and the tool tip shows it. The work for a text is
/// bounded by the room for it. Right-to-left names don't turn the line around.
class ElidedLabel : public QLabel
{
    Q_OBJECT
    /// The label asks for the width of this text, and for no width when it is empty.
    Q_PROPERTY(QString reservedText READ reservedText WRITE setReservedText)

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    /// Sets text and tool tip; the tool tip is cut where the text is very long.
    void setText(const QString &text);

    /// The last `units` of the text are left whole while they take no more than most of the room, and the
    /// ellipsis stands in the middle of what is before them.
    void setKeptEnd(qsizetype units);

    [[nodiscard]] const QString &reservedText() const { return m_reservedText; }
    void setReservedText(const QString &text);

    /// What is painted.
    [[nodiscard]] QString shownText() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_reservedText;
    qsizetype m_keptEnd = 0;
};
