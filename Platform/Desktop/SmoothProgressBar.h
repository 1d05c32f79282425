#pragma once

#include "Platform/Clock.h"

#include <QColor>
#include <QProgressBar>

#include <memory>

/// A flat bar that glides to a new value, and sweeps where there is none. Its colours come from the style
/// sheet. Nothing ticks while nothing moves, while the bar can't be seen, or where the desktop asks for no
/// animations; there a new value is shown at once.
class SmoothProgressBar : public QProgressBar
{
    Q_OBJECT
    Q_PROPERTY(QColor trackColour MEMBER m_trackColour)
    Q_PROPERTY(QColor fillColour MEMBER m_fillColour)
    Q_PROPERTY(QColor pausedColour MEMBER m_pausedColour)

public:
    static constexpr Clock::Duration GlideTime{250};
    static constexpr Clock::Duration SweepTime{1600};
    static constexpr int Height = 8;

    explicit SmoothProgressBar(QWidget *parent = nullptr);
    ~SmoothProgressBar() override;

    /// The clock outlives the bar.
    void setClock(Clock &clock);

    void setPaused(bool paused);
    [[nodiscard]] bool isPaused() const { return m_isPaused; }
    /// Whether an indeterminate bar (its minimum is its maximum) moves.
    void setSweeping(bool sweeping);

    /// Whether a timer runs for it at this moment.
    [[nodiscard]] bool isMoving() const { return m_frames != nullptr; }
    /// What is painted of it, from 0 to 1; on its way to the value while it glides.
    [[nodiscard]] double shownFraction() const { return m_shown; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    [[nodiscard]] bool isIndeterminate() const { return minimum() == maximum(); }
    [[nodiscard]] double fraction() const;
    [[nodiscard]] bool canBeSeen() const;
    [[nodiscard]] bool desktopAnimates() const;
    [[nodiscard]] bool hasToMove() const;
    [[nodiscard]] QRectF fillArea() const;
    void valueHasChanged();
    void startFrames();
    void stopFrames();
    void frame();
    void updateEnd();

    SystemClock m_ownClock;
    Clock *m_clock = &m_ownClock;
    std::unique_ptr<Clock::Timer> m_frames;
    Clock::Duration m_period{};

    double m_paintedEnd = 0; ///< right end of the fill as it was painted last
    double m_shown = 0;      ///< parts of the whole, as the next two
    double m_from = 0;
    double m_target = 0;
    double m_glide = 1; ///< of the way between them, as time
    double m_sweep = 0; ///< of one sweep, as time
    bool m_isSweeping = false;
    bool m_isPaused = false;

    QColor m_trackColour = Qt::lightGray;
    QColor m_fillColour = Qt::blue;
    QColor m_pausedColour = Qt::darkGray;
};
