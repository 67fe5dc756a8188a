#pragma once

#include "video/frame.h"

#include <mutex>

/// Holds the newest frame of a stream. A new one replaces the old; nobody waits for one.
/// Any thread.
class FrameSlot
{
public:
    void set(FramePtr frame)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_frame.swap(frame); // the old one is let go after the lock
    }

    FramePtr get() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_frame;
    }

private:
    mutable std::mutex m_mutex; // guards m_frame
    FramePtr m_frame;
};
