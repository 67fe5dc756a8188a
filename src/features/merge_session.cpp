#include "features/merge_session.h"

#include <utility>

MergeSession::MergeSession(const State &state)
    : m_state(state)
{
}

bool MergeSession::wantsPage() const
{
    return m_state.count < m_state.pages;
}

bool MergeSession::isEmpty() const
{
    return m_state.count == 0;
}

MergeStep MergeSession::addPage(const QString &path)
{
    if (isEmpty())
        m_state.paths.clear();
    m_state.paths.push_back(path);

    MergeStep step;
    step.thumbnail = ++m_state.count;
    if (!wantsPage()) {
        step.job = CollectedPages{std::exchange(m_state.paths, {}), m_state.dir};
        m_state.count = 0;
    }
    return step;
}
