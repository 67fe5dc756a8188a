#pragma once

#include "video/picture_sink.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

/// Writes a camera's pictures, as they came and with their times, into a socket from which another
/// program reads them as a NUT stream. A thread of its own writes; when the reader is slow the
/// newest pictures are left out instead of being queued.
class PictureFeed : public PictureSink
{
public:
    using Clock = std::chrono::steady_clock;

    /// Most pictures, and bytes of them, that wait: a reader needs most of a second to start.
    static constexpr size_t kWaitingMax = 24;
    static constexpr size_t kWaitingBytesMax = 32 << 20;

    /// The pictures' times count from `start`; there are about `rate` a second.
    PictureFeed(Clock::time_point start, double rate);

    /// Gives up what is not yet written.
    ~PictureFeed() override;

    /// The end for the reader, -1 when the system had none; closed by closeReader(), which is due
    /// as soon as the reader has its own copy: only then its death is noticed.
    int readerEnd() const { return m_ends[0]; }
    void closeReader();

    void take(const CameraPicture &picture) override;

    /// Writes what waits, then the end of the stream. Returns at once.
    void finish();

    /// Pictures written, and pictures left out because the reader was slow.
    int writtenCount() const { return m_written; }
    int leftOutCount() const { return m_leftOut; }

    /// A picture came that is in another format than the first ones and cannot be written.
    bool isFormatChanged() const { return m_isFormatChanged; }

private:
    class Muxer;
    void run();
    bool send(const uint8_t *bytes, int count);

    const Clock::time_point m_start;
    const double m_rate;
    int m_ends[2] = {-1, -1}; ///< reader's, ours
    std::atomic<int> m_written{0};
    std::atomic<int> m_leftOut{0};
    std::atomic<bool> m_isFormatChanged{false};
    std::atomic<bool> m_isGivenUp{false};

    std::mutex m_mutex; // guards m_waiting, m_waitingBytes and m_isFinishing
    std::condition_variable m_changed;
    std::deque<CameraPicture> m_waiting;
    size_t m_waitingBytes = 0;
    bool m_isFinishing = false;
    std::thread m_thread;
};
