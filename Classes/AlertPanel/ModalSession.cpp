#include "Classes/AlertPanel/ModalSession.h"

#include <utility>

ModalSession *ModalSession::s_running = nullptr;
int ModalSession::s_depth = 0;

bool ModalSession::isPossible()
{
    return s_depth < MaxDepth;
}

ModalSession::ModalSession(std::function<void()> aborted) : m_aborted(std::move(aborted))
{
    ++s_depth;
    if (ModalSession *before = std::exchange(s_running, this)) {
        before->stop();
        before->m_aborted();
    }
}

ModalSession::~ModalSession()
{
    --s_depth;
    if (s_running == this)
        s_running = nullptr;
}

void ModalSession::run()
{
    if (!m_stopped)
        m_loop.exec();
}

void ModalSession::stop()
{
    m_stopped = true;
    m_loop.exit();
}
