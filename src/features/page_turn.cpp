#include "features/page_turn.h"

void PageTurnMachine::start()
{
    m_fired = false;
    m_armed = true;
}

void PageTurnMachine::stop()
{
    m_fired = false;
    m_captured = false;
}

PageTurnMachine::Answer PageTurnMachine::take(Sample sample)
{
    switch (sample) {
    case Sample::NoSheet:
        m_fired = false;
        return Answer::Nothing;
    case Sample::Changed:
        return takeChanged();
    case Sample::Still:
        return takeStill();
    }
    return Answer::Nothing;
}

PageTurnMachine::Answer PageTurnMachine::takeChanged()
{
    m_captured = false;
    m_fired = false;
    m_stableCount = 0;
    ++m_changeCount;
    return Answer::Changing;
}

PageTurnMachine::Answer PageTurnMachine::takeStill()
{
    if (m_changeCount < kChangesNeeded && !m_armed)
        return Answer::Nothing;
    if (m_stableCount < kStableNeeded) {
        ++m_stableCount;
        return Answer::Nothing;
    }
    ++m_stableCount;
    const bool shoot = !m_fired && !m_captured;
    m_captured = true;
    if (!shoot)
        return Answer::Nothing;
    m_armed = false;
    m_changeCount = 0;
    m_fired = true;
    m_stableCount = 0;
    return Answer::Shoot;
}
