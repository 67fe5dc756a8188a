#include "features/countdown.h"

bool Countdown::start()
{
    if (m_running)
        return false;
    m_value = kStart;
    m_running = true;
    return true;
}

Countdown::Step Countdown::step()
{
    if (!m_running)
        return Step::Idle;
    --m_value;
    if (m_value > 0)
        return Step::Show;
    m_running = false;
    return Step::Shoot;
}
