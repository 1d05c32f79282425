#pragma once

#include "Platform/Clock.h"

#include <QSlider>

#include <memory>

class CustomSlider;

/// Is told when the user has done with a slider.
class CustomSliderDelegate
{
public:
    virtual ~CustomSliderDelegate() = default;
    /// The value stands until the user takes the slider up again.
    virtual void sliderDidFinishMoving(CustomSlider &slider) = 0;
};

/// A horizontal slider that goes where it is clicked and tells its delegate when the user has done: when the
/// mouse button is let go, when a key is, and a moment after a change by any other way, such as the wheel.
class CustomSlider : public QSlider
{
    Q_OBJECT

public:
    static constexpr Clock::Duration PauseAfterChange{400};

    explicit CustomSlider(QWidget *parent = nullptr);
    ~CustomSlider() override;

    /// Neither is owned; both outlive the slider.
    void setDelegate(CustomSliderDelegate *delegate) { m_delegate = delegate; }
    void setClock(Clock &clock) { m_clock = &clock; }

    /// Shows a value that doesn't come from the user: nobody is told. Left undone while the user moves the
    /// slider, who would have it jump away from under the pointer.
    void showValue(int value);
    /// From the user's first touch until the delegate has been told.
    [[nodiscard]] bool isInUse() const { return isSliderDown() || m_pause; }
    /// Takes the user to be done, and tells the delegate so, where the slider is in use.
    void endUse();

protected:
    void sliderChange(SliderChange change) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    [[nodiscard]] int valueAt(int handleLeft) const;
    void finish();

    SystemClock m_ownClock;
    Clock *m_clock = &m_ownClock;
    CustomSliderDelegate *m_delegate = nullptr;
    std::unique_ptr<Clock::Timer> m_pause; ///< runs while a change has not been told
    int m_grip = 0;                        ///< from the handle's left to where it is held
    bool m_showsValue = false;             ///< showValue() is at work
};
