#include "features/wise_captrue_thread.h"

#include "app/state.h"

#include <algorithm>
#include <chrono>
#include <utility>

wiseCaptrueThr *wiseCaptrueThread = nullptr;

namespace {

constexpr unsigned kPixelTolerance = 25; // gray levels
constexpr unsigned kStillPercent = 90;
constexpr double kSamePagePercent = 99; // a hand that passed leaves no more than noise and flicker
constexpr int kDoubtfulPicturesNeeded = 5; // a turn that begins slowly has begun by then
constexpr std::chrono::milliseconds
    kLeastPause(5); // leaves the GUI thread a turn when samples take long

cv::Mat wrapped(unsigned char *rgb, unsigned width, unsigned height)
{
    if (!rgb || width == 0 || height == 0)
        return {};
    return {static_cast<int>(height), static_cast<int>(width), CV_8UC3, rgb};
}

FrameSample sampleOf(const Frame &frame)
{
    return FrameSample({frame.pixels, {frame.width, frame.height}, frame.reduction});
}

} // namespace

wiseCaptrueThr::wiseCaptrueThr(QObject *parent)
    : QThread(parent)
{
}

wiseCaptrueThr::~wiseCaptrueThr()
{
    toStop();
    wait();
}

void wiseCaptrueThr::setFrameSource(FrameSource source)
{
    const std::lock_guard lock(m_sourceMutex);
    m_source = std::move(source);
}

void wiseCaptrueThr::toStart()
{
    std::unique_lock lock(m_mutex);
    if (!m_running) {
        lock.unlock();
        wait(); // a run that was stopped may not have ended yet
        lock.lock();
    }
    m_running = true;
    m_isInDoubt = m_mayDoubt = false;
    m_doubted.reset();
    m_machine.start();
    start();
}

void wiseCaptrueThr::toStop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_running = false;
        m_stopped.notify_all();
    }
    wait(kStopTimeoutMs);
    destroyCompare();
}

void wiseCaptrueThr::destroyCompare()
{
    const std::lock_guard lock(m_mutex);
    m_comparer.destroyCompare();
    m_lastFrame.reset();
    takeShotFrame();
}

void wiseCaptrueThr::setShotFrame(FramePtr frame)
{
    const std::lock_guard lock(m_sourceMutex);
    m_shotFrame = std::move(frame);
}

FramePtr wiseCaptrueThr::takeShotFrame()
{
    const std::lock_guard lock(m_sourceMutex);
    return std::exchange(m_shotFrame, nullptr);
}

int wiseCaptrueThr::CheckIsHavePaper(unsigned char *rgb, unsigned int width, unsigned int height)
{
    FrameSample sample(wrapped(rgb, width, height));
    return ::CheckIsHavePaper(sample);
}

int wiseCaptrueThr::CompareBuf(unsigned char *rgb, unsigned int width, unsigned int height,
                               unsigned int pixelTolerance, unsigned int percent)
{
    FrameSample sample(wrapped(rgb, width, height));
    const std::lock_guard lock(m_mutex);
    return m_comparer.CompareBuf(sample, pixelTolerance, percent);
}

void wiseCaptrueThr::run()
{
    std::unique_lock lock(m_mutex);
    auto next = std::chrono::steady_clock::now();
    while (m_running) {
        if (isWiseCaptrue) {
            if (const FramePtr shot = takeShotFrame()) {
                m_isInDoubt = isReachedInto(shot);
                m_mayDoubt = !m_isInDoubt;
                keepAsShot(shot);
            }
            const FramePtr frame = newestFrame();
            const PageTurnMachine::Sample sample = judge(frame);
            m_isInDoubt = lastsTheDoubt(frame, sample) || m_isInDoubt;
            const auto answer = m_machine.take(sample, [&] { return compareWithShot(frame); });
            if (answer == PageTurnMachine::Answer::Shoot) {
                keepAsShot(frame);
                m_mayDoubt = false; // until the countdown has ended
                m_doubted.reset();
            }
            const bool isDoubtful = std::exchange(m_isInDoubt, false);
            if (isDoubtful || answer != PageTurnMachine::Answer::Nothing) {
                lock.unlock();
                if (isDoubtful)
                    emit shotIsDoubtful();
                if (answer != PageTurnMachine::Answer::Nothing)
                    emit wiseCaptrueSignal(answer == PageTurnMachine::Answer::Shoot);
                lock.lock();
                if (!m_running)
                    break;
            }
        }
        // A fixed pace, so that sixteen samples take the same time whatever a sample costs.
        next = std::max(next + std::chrono::milliseconds(kSamplePeriodMs),
                        std::chrono::steady_clock::now() + kLeastPause);
        m_stopped.wait_until(lock, next, [this] { return !m_running; });
    }
}

FramePtr wiseCaptrueThr::newestFrame()
{
    const std::lock_guard lock(m_sourceMutex);
    return m_source ? m_source() : nullptr;
}

PageTurnMachine::Sample wiseCaptrueThr::judge(const FramePtr &frame)
{
    using Sample = PageTurnMachine::Sample;
    if (!frame)
        return Sample::NoSheet;
    if (m_lastFrame.lock() == frame)
        return m_lastSample == Sample::NoSheet ? Sample::NoSheet : Sample::Still;

    FrameSample sample = sampleOf(*frame);
    if (::CheckIsHavePaper(sample) != 0)
        m_lastSample = Sample::NoSheet;
    else if (m_comparer.CompareBuf(sample, kPixelTolerance, kStillPercent) != 0)
        m_lastSample = Sample::Changed;
    else
        m_lastSample = Sample::Still;
    m_lastFrame = frame;
    return m_lastSample;
}

PageTurnMachine::Page wiseCaptrueThr::compareWithShot(const FramePtr &frame)
{
    using Page = PageTurnMachine::Page;
    FrameSample sample = sampleOf(*frame);
    const double alike = m_comparer.alikeToShot(sample, kPixelTolerance);
    if (alike < 0)
        return Page::Alike;
    if (alike > kSamePagePercent)
        return Page::Same;
    if (alike <= kStillPercent)
        return Page::Other; // is shot itself: a hand that went away with it spoils nothing
    if (m_mayDoubt && isReachedInto(frame)) {
        m_doubted = frame;
        m_doubtfulPictures = 0;
        m_mayDoubt = false;
    }
    return Page::Alike;
}

// The first moments of a turn look like a hand as well, and may be the last of sixteen still
// samples: what reaches into the page has to lie there in the next pictures, too.
bool wiseCaptrueThr::lastsTheDoubt(const FramePtr &frame, PageTurnMachine::Sample sample)
{
    if (!m_doubted || m_doubted == frame)
        return false;
    const bool lies = sample == PageTurnMachine::Sample::Still;
    const bool isSure = lies && ++m_doubtfulPictures == kDoubtfulPicturesNeeded;
    m_doubted = lies && !isSure ? frame : nullptr;
    m_mayDoubt = !lies;
    return isSure;
}

// Of two pictures of which one has a hand in it the shot one is meant: the other lay still.
bool wiseCaptrueThr::isReachedInto(const FramePtr &frame) const
{
    FrameSample sample = sampleOf(*frame);
    return m_comparer.isReachedInto(sample, kPixelTolerance);
}

void wiseCaptrueThr::keepAsShot(const FramePtr &frame)
{
    FrameSample sample = sampleOf(*frame);
    m_comparer.keepAsShot(sample);
}
