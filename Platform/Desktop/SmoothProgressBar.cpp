#include "Platform/Desktop/SmoothProgressBar.h"

#include <QEasingCurve>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QWindow>

#include <algorithm>
#include <cmath>

namespace
{
// A glide is seen for a moment and should be even; a sweep may go on for an hour and should cost little.
constexpr Clock::Duration GlideFrame{16};
constexpr Clock::Duration SweepFrame{33};
constexpr double SweepWidth = 0.3; ///< of the bar
constexpr int PreferredWidth = 160;

double eased(double time)
{
    static const QEasingCurve curve(QEasingCurve::OutCubic);
    return curve.valueForProgress(time);
}
} // namespace

SmoothProgressBar::SmoothProgressBar(QWidget *parent) : QProgressBar(parent)
{
    setTextVisible(false);
    connect(this, &QProgressBar::valueChanged, this, &SmoothProgressBar::valueHasChanged);
}

SmoothProgressBar::~SmoothProgressBar() = default;

void SmoothProgressBar::setClock(Clock &clock)
{
    stopFrames();
    m_clock = &clock;
}

void SmoothProgressBar::setPaused(bool paused)
{
    if (paused == m_isPaused)
        return;
    m_isPaused = paused;
    update();
}

void SmoothProgressBar::setSweeping(bool sweeping)
{
    if (sweeping == m_isSweeping)
        return;
    m_isSweeping = sweeping;
    m_sweep = 0;
    startFrames();
    update();
}

QSize SmoothProgressBar::sizeHint() const
{
    return {PreferredWidth, Height};
}

QSize SmoothProgressBar::minimumSizeHint() const
{
    return {4 * Height, Height};
}

double SmoothProgressBar::fraction() const
{
    if (isIndeterminate())
        return 0;
    const double range = double(maximum()) - minimum();
    return std::clamp((double(value()) - minimum()) / range, 0.0, 1.0);
}

bool SmoothProgressBar::canBeSeen() const
{
    const QWindow *handle = window()->windowHandle();
    return isVisible() && handle && handle->isExposed();
}

bool SmoothProgressBar::desktopAnimates() const
{
    return style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
}

bool SmoothProgressBar::hasToMove() const
{
    if (!canBeSeen() || !desktopAnimates())
        return false;
    return isIndeterminate() ? m_isSweeping : m_glide < 1;
}

void SmoothProgressBar::valueHasChanged()
{
    m_from = m_shown;
    m_target = fraction();
    // A bar that is set back, for the next job, isn't undoing its work before the user's eyes.
    const bool glides = m_target > m_from && canBeSeen() && desktopAnimates();
    m_glide = glides ? 0 : 1;
    if (!glides)
        m_shown = m_target;
    startFrames();
    update();
}

void SmoothProgressBar::startFrames()
{
    if (!hasToMove()) {
        stopFrames();
        return;
    }
    const Clock::Duration period = isIndeterminate() ? SweepFrame : GlideFrame;
    if (m_frames && period == m_period)
        return;
    m_period = period;
    m_frames = m_clock->start(period, Clock::Repeat::Forever, [this] { frame(); });
}

void SmoothProgressBar::stopFrames()
{
    m_frames.reset();
    m_glide = 1;
    m_shown = m_target;
}

void SmoothProgressBar::frame()
{
    if (isIndeterminate()) {
        m_sweep += std::chrono::duration<double>(m_period) / SweepTime;
        m_sweep -= m_sweep >= 1 ? 1 : 0;
    } else {
        m_glide = std::min(1.0, m_glide + std::chrono::duration<double>(m_period) / GlideTime);
        m_shown = m_from + (m_target - m_from) * eased(m_glide);
    }
    // What can't be seen now is painted when it can, and moves on from there.
    const bool isLast = !hasToMove();
    if (isLast)
        stopFrames();
    if (isLast || isIndeterminate())
        update();
    else
        updateEnd();
}

/// The end of the fill has moved: only what lies between its old and its new place is painted, and nothing for
/// less than a pixel of the screen.
void SmoothProgressBar::updateEnd()
{
    const double end = fillArea().right();
    if (std::abs(end - m_paintedEnd) * devicePixelRatioF() < 1)
        return;
    QRectF strip(rect());
    strip.setLeft(std::min(end, m_paintedEnd) - height());
    strip.setRight(std::max(end, m_paintedEnd) + 1);
    if (layoutDirection() == Qt::RightToLeft)
        strip.moveRight(width() - strip.left());
    update(strip.toAlignedRect());
}

void SmoothProgressBar::hideEvent(QHideEvent *event)
{
    stopFrames();
    QProgressBar::hideEvent(event);
}

QRectF SmoothProgressBar::fillArea() const
{
    QRectF area(rect());
    if (!isIndeterminate()) {
        if (m_shown > 0)
            area.setWidth(std::max(area.width() * m_shown, area.height()));
        else
            area.setWidth(0);
        return area;
    }
    if (!m_isSweeping)
        return {};
    const double length = area.width() * SweepWidth;
    if (!desktopAnimates())
        return {(area.width() - length) / 2, area.top(), length, area.height()};
    static const QEasingCurve curve(QEasingCurve::InOutSine);
    const double left = -length + (area.width() + length) * curve.valueForProgress(m_sweep);
    return {left, area.top(), length, area.height()};
}

void SmoothProgressBar::paintEvent(QPaintEvent *)
{
    startFrames(); // after the window was hidden by the desktop
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double radius = height() / 2.0;
    QPainterPath track;
    track.addRoundedRect(QRectF(rect()), radius, radius);
    painter.fillPath(track, m_trackColour);

    QRectF area = fillArea();
    m_paintedEnd = area.right();
    if (area.isEmpty())
        return;
    if (layoutDirection() == Qt::RightToLeft)
        area.moveRight(width() - area.left());
    QPainterPath fill;
    fill.addRoundedRect(area, radius, radius);
    painter.fillPath(isIndeterminate() ? fill.intersected(track) : fill,
                     m_isPaused ? m_pausedColour : m_fillColour);
}
