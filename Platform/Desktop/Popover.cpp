#include "Platform/Desktop/Popover.h"

#include "Platform/Desktop/Compositing.h"
#include "Platform/Desktop/PopoverPlace.h"
#include "Platform/Desktop/WindowLook.h"

#include <QAccessible>
#include <QApplication>
#include <QCursor>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace
{
constexpr int TextMargin = 10; ///< above and below the text; the popover is its height plus 20
constexpr int SideMargin = 14; ///< between text and edge
constexpr int ArrowHeight = 8;
constexpr int ArrowHalfWidth = 9;
constexpr int ShadowWidth = 10; ///< around the bubble, where the desktop blends
constexpr qreal Radius = 9;

const QScreen *screenOf(const QRect &item)
{
    const QScreen *screen = item.isEmpty() ? nullptr : QGuiApplication::screenAt(item.center());
    if (!screen)
        screen = QGuiApplication::screenAt(QCursor::pos());
    return screen ? screen : QGuiApplication::primaryScreen();
}

QPainterPath bubble(const QRectF &body, PopoverPlace::Side side, std::optional<qreal> tip)
{
    QPainterPath path;
    path.addRoundedRect(body, Radius, Radius);
    if (!tip)
        return path;
    const bool upwards = side == PopoverPlace::Side::Below;
    const qreal base = upwards ? body.top() + 1 : body.bottom() - 1; // 1 into the body, so that the shapes join
    const qreal point = upwards ? body.top() - ArrowHeight : body.bottom() + ArrowHeight;
    QPainterPath arrow;
    arrow.moveTo(*tip - ArrowHalfWidth, base);
    arrow.lineTo(*tip, point);
    arrow.lineTo(*tip + ArrowHalfWidth, base);
    arrow.closeSubpath();
    return path.united(arrow);
}
} // namespace

/// The popover on screen. Its frame is the bubble with room for the arrow above and below and for the shadow.
class Popover::Window : public QWidget
{
public:
    Window(const QString &text, bool dark, std::function<void()> clicked)
        : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus |
                               Qt::NoDropShadowWindowHint),
          m_clicked(std::move(clicked)), m_blends(desktopBlendsWindows()), m_dark(dark)
    {
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_TranslucentBackground, m_blends);
        setWindowTitle(QGuiApplication::applicationDisplayName());
        setPalette(WindowLook::palette(dark));
        m_label->setTextFormat(Qt::PlainText); // before the text, which may look like markup
        m_label->setText(text);
        m_label->setAlignment(Qt::AlignCenter);
        m_label->setWordWrap(true);
        m_label->setPalette(palette());
        const int textHeight = std::clamp(m_label->heightForWidth(TextWidth), 0, MaxTextHeight);
        m_label->setGeometry(shadow() + SideMargin, shadow() + ArrowHeight + TextMargin, TextWidth, textHeight);
        resize(TextWidth + 2 * (SideMargin + shadow()), textHeight + 2 * (TextMargin + ArrowHeight + shadow()));
    }

    void placeAt(const QRect &item)
    {
        const QScreen *screen = screenOf(item);
        const QMargins shadowMargins(shadow(), shadow(), shadow(), shadow());
        PopoverPlace place = popoverPlace(rect().marginsRemoved(shadowMargins).size(), item,
                                          {screen->geometry(), screen->availableGeometry()});
        m_side = place.side;
        if (place.arrowX)
            m_tip = *place.arrowX + shadow() + 0.5;
        move(place.topLeft - QPoint(shadow(), shadow()));
        if (!m_blends)
            setMask(QRegion(outline(0).toFillPolygon().toPolygon()));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (m_blends) {
            painter.setCompositionMode(QPainter::CompositionMode_Source);
            painter.fillRect(rect(), Qt::transparent);
            painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
            paintShadow(painter);
        } else {
            painter.fillRect(rect(), palette().mid()); // what of a pixel the mask leaves outside the outline
        }
        painter.setBrush(palette().window());
        painter.setPen(QPen(palette().mid(), 1));
        painter.drawPath(outline(0.5));
    }

    void mousePressEvent(QMouseEvent *event) override
    {
        event->accept();
        m_clicked();
    }

private:
    [[nodiscard]] int shadow() const { return m_blends ? ShadowWidth : 0; }

    [[nodiscard]] QPainterPath outline(qreal inset) const
    {
        const qreal side = shadow() + inset;
        const qreal end = side + ArrowHeight;
        return bubble(QRectF(rect()).adjusted(side, end, -side, -end), m_side, m_tip);
    }

    /// Rings of the same faint black: where more of them lie on each other, nearer the bubble, it is darker.
    void paintShadow(QPainter &painter) const
    {
        const QPainterPath shape = outline(0).translated(0, 2);
        const int alpha = m_dark ? 11 : 6;
        for (int width = ShadowWidth - 2; width > 0; --width) {
            painter.setPen(QPen(QColor(0, 0, 0, alpha), 2 * width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter.drawPath(shape);
        }
    }

    std::function<void()> m_clicked;
    bool m_blends;
    bool m_dark;
    QLabel *const m_label = new QLabel(this);
    PopoverPlace::Side m_side = PopoverPlace::Side::Below;
    std::optional<qreal> m_tip;
};

Popover::Popover(Clock &clock, std::function<bool()> isDark) : m_clock(clock), m_isDark(std::move(isDark))
{
}

Popover::~Popover() = default;

void Popover::show(const QString &text, const QRect &itemGeometry)
{
    close();
    m_window = std::make_unique<Window>(text, m_isDark(), [this] { close(); });
    m_window->placeAt(itemGeometry);
    m_window->show();
    QAccessibleEvent announcement(m_window.get(), QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
    m_end = m_clock.start(TimeOnScreen, Clock::Repeat::Once, [this] { close(); });
}

void Popover::close()
{
    m_end.reset();
    if (Window *window = m_window.release()) { // it may be the one whose event or timer brought us here
        window->hide();
        window->deleteLater();
    }
}

bool Popover::isShown() const
{
    return m_window != nullptr;
}
