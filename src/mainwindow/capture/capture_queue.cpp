#include "mainwindow/capture/capture_queue.h"

#include "imaging/failure.h"

#include <QCoreApplication>
#include <QEvent>

#include <exception>
#include <utility>

namespace {

// Memory may run out with several pictures under way: one of them is lost then, not the program.
CaptureOutcome outcomeOf(const CaptureQueue::Work &work)
{
    try {
        return work();
    } catch (const std::exception &exception) {
        CaptureOutcome failed;
        failed.result.error = loggedFailure("capture failed", exception);
        return failed;
    }
}

} // namespace

CaptureQueue::CaptureQueue(QObject *parent)
    : QObject(parent)
    , m_thread([this] { serve(); })
{
}

CaptureQueue::~CaptureQueue()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void CaptureQueue::add(int frames, Work work, Done done)
{
    ++m_count;
    m_frames += frames;
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back({frames, std::move(work), std::move(done)});
    }
    m_wake.notify_one();
}

void CaptureQueue::serve()
{
    for (;;) {
        Job job;
        {
            std::unique_lock lock(m_mutex);
            m_isBusy = false;
            m_rest.notify_all();
            m_wake.wait(lock, [this] { return m_stop || !m_waiting.empty(); });
            if (m_waiting.empty())
                return;
            job = std::move(m_waiting.front());
            m_waiting.pop_front();
            m_isBusy = true;
        }
        CaptureOutcome outcome = outcomeOf(job.work);
        job.work = nullptr; // its frames go back to the camera now
        QMetaObject::invokeMethod(
            this,
            [this, done = std::move(job), outcome = std::move(outcome)] { end(done, outcome); },
            Qt::QueuedConnection);
    }
}

void CaptureQueue::end(const Job &job, const CaptureOutcome &outcome)
{
    m_frames -= job.frames;
    job.done(outcome);
    if (--m_count == 0) // after its end, which may have added the next
        emit becameIdle();
}

void CaptureQueue::finish()
{
    while (m_count > 0) {
        {
            std::unique_lock lock(m_mutex);
            m_rest.wait(lock, [this] { return m_waiting.empty() && !m_isBusy; });
        }
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
}

void CaptureQueue::giveUp()
{
    std::deque<Job> forgotten;
    {
        const std::lock_guard lock(m_mutex);
        forgotten.swap(m_waiting);
    }
    for (const Job &job : forgotten) {
        --m_count;
        m_frames -= job.frames;
    }
}
