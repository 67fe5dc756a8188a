#include "features/page_turn.h"

PageTurnMachine::Answer PageTurnMachine::take(Sample sample, const std::function<Page()> &page)
{
    switch (sample) {
    case Sample::NoSheet:
        return Answer::Nothing;
    case Sample::Changed:
        m_stableCount = 0;
        m_hasMoved = true;
        return Answer::Changing;
    case Sample::Still:
        if (m_stableCount == kStableNeeded)
            return decide(page);
        ++m_stableCount;
        return Answer::Nothing;
    }
    return Answer::Nothing;
}

PageTurnMachine::Answer PageTurnMachine::decide(const std::function<Page()> &page)
{
    m_stableCount = 0;
    const Page found = m_armed ? Page::Other : page();
    if (found == Page::Alike && !m_hasMoved)
        return Answer::Nothing;
    m_hasMoved = false;
    if (found == Page::Same)
        return Answer::Nothing;
    m_armed = false;
    return Answer::Shoot;
}
