#pragma once

#include "Platform/Clock.h"
#include "Platform/Desktop/StatusItem.h"

#include <QStringList>

#include <memory>

/// Shows a row of images on the status item, one after the other, for as long as something goes on.
class MenuIconAnimation
{
public:
    static constexpr Clock::Duration AnimationPeriod{170};
    static constexpr Clock::Duration BlinkingPeriod{400};

    /// Names of images; `blinkingIcons` are two, shown in turn.
    MenuIconAnimation(StatusItem &statusItem, Clock &clock, QStringList animatingIcons,
                      QStringList blinkingIcons = {});

    /// Starts with the next image at once and shows one every AnimationPeriod; a running animation starts anew.
    void startAnimation();
    /// The image that was shown last stays.
    void stopAnimation();
    [[nodiscard]] bool isAnimating() const { return m_animationTimer != nullptr; }

    /// Blinks, unless it is animating or has been told not to.
    void startBlinking();
    void stopBlinking();
    [[nodiscard]] bool isBlinking() const { return m_blinkingTimer != nullptr; }

    bool shouldBlink = true;

private:
    void animateIcons();
    void blinkIcons();

    StatusItem &m_statusItem;
    Clock &m_clock;
    QStringList m_animatingIcons;
    QStringList m_blinkingIcons;
    qsizetype m_animatingIndex = 0;
    qsizetype m_blinkingIndex = 0;
    std::unique_ptr<Clock::Timer> m_animationTimer;
    std::unique_ptr<Clock::Timer> m_blinkingTimer;
};
