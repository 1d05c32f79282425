#include "Platform/Desktop/MenuIconAnimation.h"

MenuIconAnimation::MenuIconAnimation(StatusItem &statusItem, Clock &clock, QStringList animatingIcons,
                                     QStringList blinkingIcons)
    : m_statusItem(statusItem), m_clock(clock), m_animatingIcons(std::move(animatingIcons)),
      m_blinkingIcons(std::move(blinkingIcons))
{
}

void MenuIconAnimation::startAnimation()
{
    m_animationTimer = m_clock.start(AnimationPeriod, Clock::Repeat::Forever, [this] { animateIcons(); });
    animateIcons();
}

void MenuIconAnimation::stopAnimation()
{
    m_animationTimer.reset();
}

void MenuIconAnimation::animateIcons()
{
    if (m_animatingIcons.isEmpty())
        return;
    m_statusItem.setImage(m_animatingIcons.at(m_animatingIndex));
    m_animatingIndex = (m_animatingIndex + 1) % m_animatingIcons.size();
}

void MenuIconAnimation::startBlinking()
{
    if (isAnimating() || !shouldBlink)
        return;
    m_blinkingTimer = m_clock.start(BlinkingPeriod, Clock::Repeat::Forever, [this] { blinkIcons(); });
    blinkIcons();
}

void MenuIconAnimation::stopBlinking()
{
    m_blinkingTimer.reset();
}

void MenuIconAnimation::blinkIcons()
{
    if (m_blinkingIcons.size() < 2)
        return;
    m_statusItem.setImage(m_blinkingIcons.at(m_blinkingIndex));
    m_blinkingIndex = 1 - m_blinkingIndex;
}
