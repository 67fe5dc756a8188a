#pragma once

/// The countdown "3, 2, 1" before an automatic capture. One runs at a time. The caller's timer
/// calls `step` every `kStepMs`, so that the capture comes 1200 ms after the start. The value and
/// the running flag stay where the caller keeps them. GUI thread.
class Countdown
{
public:
    static constexpr int kStart = 3;
    static constexpr int kStepMs = 400;

    enum class Step {
        Idle, ///< no countdown runs; stop the timer
        Show, ///< show the new value
        Shoot ///< the countdown is over: stop the timer, capture
    };

    Countdown(int &value, bool &running)
        : m_value(value)
        , m_running(running)
    {
    }

    /// True when a countdown begins; false, and nothing changes, while one runs.
    bool start();

    Step step();

    /// Ends a countdown without its capture.
    void cancel() { m_running = false; }

private:
    int &m_value;
    bool &m_running;
};
