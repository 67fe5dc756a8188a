#pragma once

#include "imaging/capture.h"

#include <QImage>
#include <QObject>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

/// All that comes back from one job.
struct CaptureOutcome
{
    CaptureResult result;
    std::string enlargeError; ///< why a saved picture was not enlarged; empty when it was, or need
                              ///< not be
    QImage thumbnail;         ///< of a page that is shown small; else null
};

/// Does the captures' work beside the window: one job after the other, in the order of the presses,
/// on one thread of its own. The window waits for none of them. GUI thread, unless said otherwise.
class CaptureQueue : public QObject
{
    Q_OBJECT

public:
    /// Frames that waiting captures may hold, which bounds their memory: at 3264 x 2448 that is
    /// 24 MB each for a camera that sends its pictures uncompressed.
    static constexpr int kFramesMax = 8;

    /// Runs on the queue's thread. It touches nothing but what it has brought along.
    using Work = std::function<CaptureOutcome()>;
    /// Runs on the GUI thread, later than add(), in the order of the jobs.
    using Done = std::function<void(const CaptureOutcome &)>;

    explicit CaptureQueue(QObject *parent = nullptr);
    /// Does the work of all jobs that are still waiting; nobody is told of it any more.
    ~CaptureQueue() override;

    /// Whether jobs with `frames` frames more may wait.
    bool hasRoom(int frames) const { return m_frames + frames <= kFramesMax; }

    /// `frames`: as many as `work` holds.
    void add(int frames, Work work, Done done);

    int count() const { return m_count; } ///< of the jobs that are not done
    bool isIdle() const { return m_count == 0; }

    /// Waits for all jobs, those that their ends add included.
    void finish();

    /// Forgets the jobs that have not begun.
    void giveUp();

signals:
    void becameIdle();

private:
    struct Job
    {
        int frames = 0;
        Work work;
        Done done;
    };

    void serve();
    void end(const Job &job, const CaptureOutcome &outcome);

    int m_count = 0;
    int m_frames = 0;

    std::mutex m_mutex; ///< guards m_waiting, m_isBusy and m_stop
    std::deque<Job> m_waiting;
    bool m_isBusy = false;
    bool m_stop = false;
    std::condition_variable m_wake, m_rest;
    std::thread m_thread;
};
