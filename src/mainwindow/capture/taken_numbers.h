#pragma once

#include <QMap>
#include <QString>

#include <optional>

/// The numbers that captures took when they were pressed, so that those of failed ones can be given
/// back as long as nothing came after them. GUI thread.
class TakenNumbers
{
public:
    struct Taken
    {
        int number = 0;
        int sequence = 0; ///< that it belongs to
    };

    /// What the sequence goes on with, and what the number field shows until then.
    struct Rest
    {
        int next = 0;
        QString shown;
    };

    /// `shownBefore`: what the number field showed when `number` was taken.
    Taken take(int number, const QString &shownBefore)
    {
        m_shownBefore[number] = shownBefore;
        m_failed.remove(number);
        return {number, m_sequence};
    }

    /// The capture that took `taken` failed. Answers where the sequence, which would go on with
    /// `next`, goes on instead: nothing when a later number is in use.
    std::optional<Rest> giveBack(const Taken &taken, int next)
    {
        if (taken.sequence != m_sequence)
            return std::nullopt;
        m_failed[taken.number] = m_shownBefore.value(taken.number);
        std::optional<Rest> rest;
        for (; m_failed.contains(next - 1); --next)
            rest = Rest{next - 1, m_failed.take(next - 1)};
        return rest;
    }

    /// Another sequence begins: numbers of the one before are nothing to it.
    void restart()
    {
        ++m_sequence;
        m_shownBefore.clear();
        m_failed.clear();
    }

private:
    int m_sequence = 0;
    QMap<int, QString> m_shownBefore, m_failed;
};
