#pragma once

#include "Classes/Progress/CustomSlider.h"
#include "Classes/Progress/JobOrder.h"
#include "Classes/Progress/ProgressDisplay.h"
#include "Platform/Clock.h"

#include <QWidget>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace Ui
{
class ScheduleProgress;
}

/// The window that shows a running scheduled job. It knows what stands in each outlet and nothing of the job;
/// its size depends on language and font alone. Closing only hides it.
class ScheduleProgressView : public QWidget, private CustomSliderDelegate
{
    Q_OBJECT

public:
    /// The clock outlives the view.
    explicit ScheduleProgressView(Clock &clock);
    ~ScheduleProgressView() override;

    /// Copies into the outlets what is different from what they show. While the user moves the slider it stays
    /// where the user has it.
    void apply(const ProgressDisplay &display);

    /// Takes the look of a light or dark desktop; light until it is called.
    void setDark(bool dark);

    /// How long a frame of the screen lasts on which the widget stands; 16 ms where that isn't known.
    [[nodiscard]] static std::chrono::milliseconds framePeriod(const QWidget *widget);

    /// @name What the user does; each may be unset
    /// @{
    std::function<void(JobOrder order)> pauseOrResume; ///< what the button says
    std::function<void()> stop;
    std::function<void(int percent)> sliderMoved; ///< not to be stored yet
    std::function<void(int percent)> sliderDone;  ///< to be stored
    std::function<void()> appears;                ///< before the window is shown
    /// @}

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void sliderDidFinishMoving(CustomSlider &slider) override;
    void keepPlacesOfHidden();
    void setTabOrder();
    void setFixedTexts();
    void reserveRoom();
    void connectControls();
    void dress();
    void showTexts(const ProgressDisplay *before, const ProgressDisplay &now);
    void showVisibility(const ProgressDisplay *before, const ProgressDisplay &now);
    void showBandwidth(const ProgressDisplay &now);
    void showPauseButton(bool isPaused);
    void userMovedSlider(int percent);

    std::unique_ptr<Ui::ScheduleProgress> m_ui;
    std::optional<ProgressDisplay> m_shown; ///< what stands in the outlets; none before the first apply()
    bool m_isDark = false;
};
