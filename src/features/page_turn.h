#pragma once

/// Decides from samples of the live picture, one every 50 ms, when a new page lies still and may
/// be shot. A shot needs at least three changed samples since the shot before it, not necessarily
/// in a row, and then sixteen still samples in a row: one or two jittery samples are ignored. The
/// first page after a start needs no change. One thread at a time.
class PageTurnMachine
{
public:
    enum class Sample { NoSheet, Still, Changed };
    enum class Answer {
        Nothing,
        Changing, ///< the picture is changing
        Shoot     ///< a new page lies still
    };

    static constexpr int kStableNeeded = 15; ///< still samples counted before the one that shoots
    static constexpr int kChangesNeeded = 3; ///< changed samples between two shots

    /// The next page may be taken without a change before it. The counts go on from where they
    /// stood.
    void start();

    /// Forgets that the picture was shot; the counts stay.
    void stop();

    Answer take(Sample sample);

private:
    Answer takeChanged();
    Answer takeStill();

    bool m_armed = false;    ///< the next page needs no change before it
    bool m_captured = false; ///< the present still picture is done with
    bool m_fired = false;    ///< a shot was the last thing that happened
    int m_stableCount = 0;   ///< still samples counted towards a shot
    int m_changeCount = 0;   ///< changed samples since the last shot
};
