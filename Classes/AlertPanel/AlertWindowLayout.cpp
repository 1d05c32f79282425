#include "Classes/AlertPanel/AlertWindowLayout.h"

#include "Classes/AlertPanel/AlertLabel.h"
#include "Classes/AlertPanel/AlertRules.h"
#include "Classes/AlertPanel/CVAlertCenterWindow.h"

#include <QGuiApplication>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr int MaxButtonText = 240; ///< points
constexpr qreal MaxShareOfScreen = 0.85;
constexpr qreal MaxStretch = 1.3; ///< of the line's width, for a title that is little longer
constexpr int LinesOfBaseSize = 2;

/// Prose is narrower than a font's average character, which counts the capitals as much as the rest.
int lineWidth(const QFontMetrics &metrics)
{
    static const QString prose = u"the next scheduled backup will begin as soon as the computer is idle"_s;
    return int(metrics.horizontalAdvance(prose) * qreal(AlertRules::CharactersPerLine) / prose.size());
}

void polish(const AlertOutlets &outlets)
{
    outlets.window->ensurePolished();
    for (QWidget *child : outlets.window->findChildren<QWidget *>())
        child->ensurePolished();
}

/// What stands beside the texts: icon, spacing, margins.
int widthBesideTexts(const AlertOutlets &outlets)
{
    const QMargins margins = outlets.window->layout()->contentsMargins();
    const int image =
        outlets.image->isHidden() ? 0 : outlets.image->minimumWidth() + outlets.content->spacing();
    return margins.left() + image + margins.right();
}

int textWidth(const AlertOutlets &outlets, const QSize &screen)
{
    const int beside = widthBesideTexts(outlets);
    const QMargins margins = outlets.window->layout()->contentsMargins();
    const int buttons = outlets.buttons->sizeHint().width() + margins.left() + margins.right() - beside;
    int lines = lineWidth(outlets.message->fontMetrics());
    const int title = outlets.title->fontMetrics().horizontalAdvance(outlets.title->text()) + 1;
    if (title > lines && title < lines * MaxStretch)
        lines = title; // rather than one word on a line of its own
    return std::max(std::min(lines, int(screen.width() * MaxShareOfScreen) - beside), buttons);
}

/// Title and a message of that height, with what lies between them.
int textsHeight(const AlertOutlets &outlets, int titleHeight, int messageHeight)
{
    const bool both = titleHeight > 0 && messageHeight > 0;
    return titleHeight + (both ? outlets.texts->layout()->spacing() : 0) + messageHeight;
}
} // namespace

void AlertWindowLayout::fit(const AlertOutlets &outlets, int totalLines)
{
    polish(outlets);
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    const int width = textWidth(outlets, screen);
    const int titleHeight = outlets.title->isHidden() ? 0 : outlets.title->heightForWidth(width);
    int messageHeight = outlets.messageArea->isHidden() ? 0 : outlets.message->heightForWidth(width);

    const QLayout &whole = *outlets.window->layout();
    const QMargins margins = whole.contentsMargins();
    const int around =
        margins.top() + whole.spacing() + outlets.buttons->sizeHint().height() + margins.bottom();
    const int maximum = int(screen.height() * MaxShareOfScreen) - around;
    const int image = outlets.image->minimumHeight();
    const int base = std::max(image, textsHeight(outlets, outlets.title->linePitch(),
                                                 LinesOfBaseSize * outlets.message->linePitch()));
    const bool scrolls = textsHeight(outlets, titleHeight, messageHeight) > maximum;
    if (scrolls)
        messageHeight = maximum - textsHeight(outlets, titleHeight, 1) + 1;
    const int needed = std::max(image, textsHeight(outlets, titleHeight, messageHeight));

    outlets.title->setFixedSize(width, titleHeight);
    // The bar of a message that scrolls takes its width from the lines.
    const int bar = scrolls ? outlets.messageArea->verticalScrollBar()->sizeHint().width() : 0;
    outlets.message->setFixedSize(width - bar, outlets.message->heightForWidth(width - bar));
    outlets.messageArea->setFixedSize(width, messageHeight);
    outlets.messageArea->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    outlets.messageArea->setFocusPolicy(scrolls ? Qt::StrongFocus : Qt::NoFocus);
    outlets.texts->setFixedSize(width, needed);
    const int byRule = std::min(base + AlertRules::extraHeight(totalLines), maximum);
    outlets.window->setFixedSize(width + widthBesideTexts(outlets), around + std::max(byRule, needed));
}

void AlertWindowLayout::setTitle(QPushButton &button, const QString &title)
{
    const QString whole = AlertRules::displayText(title, AlertRules::MaxTitleCharacters).simplified();
    button.ensurePolished();
    QString shown = button.fontMetrics().elidedText(whole, Qt::ElideRight, MaxButtonText);
    button.setText(shown.replace(u'&', u"&&"_s)); // a character, not the mark of a key
    button.setAccessibleName(whole);
}
