#pragma once

#include <functional>

/// Decides from samples of the live picture, one every 50 ms, when a new page lies still and may
/// be shot: after sixteen still samples in a row, when it is another page than the one shot last.
/// How many samples showed the movement says nothing, as a quick turn is over in two or three of
/// them; pages that are nearly alike need at least one, so that noise makes none of them new. The
/// first page after a start is always new. One thread at a time.
class PageTurnMachine
{
public:
    enum class Sample { NoSheet, Still, Changed };

    /// What lies there, compared with the page that was shot last.
    enum class Page {
        Same,
        Alike, ///< new when something moved: two sheets of sparse text differ in few pixels
        Other
    };

    enum class Answer {
        Nothing,
        Changing, ///< the picture is changing
        Shoot     ///< a new page lies still
    };

    static constexpr int kStableNeeded = 15; ///< still samples counted before the one that decides

    /// The next page is new whatever it looks like. The counts go on from where they stood.
    void start() { m_armed = true; }

    /// `page` is called when sixteen samples were still, and again after sixteen more.
    Answer take(Sample sample, const std::function<Page()> &page);

private:
    Answer decide(const std::function<Page()> &page);

    bool m_armed = false;    ///< the next page is not compared
    int m_stableCount = 0;   ///< still samples in a row since a change or a decision
    bool m_hasMoved = false; ///< a sample changed since the last shot or the last sight of its page
};
