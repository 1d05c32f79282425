#include "Classes/Progress/CustomSlider.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionSlider>

CustomSlider::CustomSlider(QWidget *parent) : QSlider(Qt::Horizontal, parent)
{
}

CustomSlider::~CustomSlider() = default;

void CustomSlider::showValue(int value)
{
    if (isInUse())
        return;
    const QScopedValueRollback<bool> showing(m_showsValue, true);
    const QSignalBlocker quiet(this);
    setValue(value);
}

void CustomSlider::sliderChange(SliderChange change)
{
    QSlider::sliderChange(change);
    // A value that changes before the slider is seen comes from setting it up.
    if (change == SliderValueChange && !m_showsValue && !isSliderDown() && isVisible())
        m_pause = m_clock->start(PauseAfterChange, Clock::Repeat::Once, [this] { finish(); });
}

int CustomSlider::valueAt(int handleLeft) const
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect groove = style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, this);
    const QRect handle = style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    return QStyle::sliderValueFromPosition(minimum(), maximum(), handleLeft - groove.left(),
                                           groove.width() - handle.width(), option.upsideDown);
}

void CustomSlider::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect handle = style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    const int x = event->position().toPoint().x();
    const bool onHandle = x >= handle.left() && x <= handle.right();
    m_grip = onHandle ? x - handle.left() : handle.width() / 2;
    m_pause.reset(); // the release tells of what came before, too
    setSliderDown(true);
    if (!onHandle)
        setSliderPosition(valueAt(x - m_grip));
    event->accept();
}

void CustomSlider::mouseMoveEvent(QMouseEvent *event)
{
    if (isSliderDown())
        setSliderPosition(valueAt(event->position().toPoint().x() - m_grip));
    event->setAccepted(isSliderDown());
}

void CustomSlider::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !isSliderDown()) {
        event->ignore();
        return;
    }
    setSliderDown(false);
    event->accept();
    finish();
}

void CustomSlider::keyReleaseEvent(QKeyEvent *event)
{
    QSlider::keyReleaseEvent(event);
    if (!event->isAutoRepeat() && !isSliderDown())
        endUse();
}

void CustomSlider::focusOutEvent(QFocusEvent *event)
{
    QSlider::focusOutEvent(event);
    endUse();
}

void CustomSlider::hideEvent(QHideEvent *event)
{
    QSlider::hideEvent(event);
    endUse(); // a hidden widget gets no release
}

void CustomSlider::endUse()
{
    if (!isInUse())
        return;
    setSliderDown(false);
    finish();
}

void CustomSlider::finish()
{
    m_pause.reset();
    if (m_delegate)
        m_delegate->sliderDidFinishMoving(*this);
}
