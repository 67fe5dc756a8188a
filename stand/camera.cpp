#include "stand/camera.h"

#include "stand/damage.h"
#include "stand/render.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int kJpegQuality = 88;
constexpr std::chrono::milliseconds kFocusTime(500);
constexpr double kMostSoftness = 0.003; ///< blur in the middle of a focus run, frame widths

Jpeg encode(const cv::Mat &bgr)
{
    std::vector<uchar> bytes;
    cv::imencode(".jpg", bgr, bytes, {cv::IMWRITE_JPEG_QUALITY, kJpegQuality});
    return std::make_shared<const std::vector<uchar>>(std::move(bytes));
}

cv::Mat blurred(const cv::Mat &picture, double radius)
{
    const double factor = std::max(1.0, radius);
    cv::Mat small, result;
    cv::resize(picture, small, {}, 1 / factor, 1 / factor, cv::INTER_AREA);
    cv::resize(small, result, picture.size(), 0, 0, cv::INTER_LINEAR);
    return result;
}

// A gray picture of a size that is not `size`.
Jpeg missizedPicture(QSize size)
{
    const cv::Size other = size.width() == 800 ? cv::Size(640, 480) : cv::Size(800, 600);
    return encode(cv::Mat(other, CV_8UC3, cv::Scalar::all(128)));
}

} // namespace

StandCamera::StandCamera(std::vector<CameraMode> modes)
    : m_modes(std::move(modes))
    , m_pictures(m_modes.size())
    , m_thread([this] { run(); })
{
}

StandCamera::~StandCamera()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void StandCamera::show(const Scene &scene)
{
    {
        const std::lock_guard lock(m_mutex);
        m_scene = scene;
        ++m_version;
    }
    m_changed.notify_all();
}

void StandCamera::setStalled(bool stalled)
{
    const std::lock_guard lock(m_mutex);
    m_isStalled = stalled;
}

void StandCamera::damageFrames(int count)
{
    const std::lock_guard lock(m_mutex);
    m_damagedFrames = count;
}

void StandCamera::missizeFrames(int count)
{
    const std::lock_guard lock(m_mutex);
    m_missizedFrames = count;
}

void StandCamera::focus()
{
    {
        const std::lock_guard lock(m_mutex);
        m_focusEnd = Clock::now() + kFocusTime;
        ++m_version;
    }
    m_changed.notify_all();
}

Jpeg StandCamera::nextFrame(size_t mode)
{
    const std::lock_guard lock(m_mutex);
    const Jpeg jpeg = m_pictures[mode].jpeg;
    if (m_isStalled || !jpeg)
        return nullptr;
    if (m_missizedFrames > 0) {
        --m_missizedFrames;
        return missizedPicture(m_modes[mode].size);
    }
    if (m_damagedFrames > 0) {
        --m_damagedFrames;
        return damageJpeg(*jpeg, m_damageTurn++);
    }
    return jpeg;
}

void StandCamera::setReaders(size_t mode, int count)
{
    {
        const std::lock_guard lock(m_mutex);
        m_pictures[mode].readers = count;
        // A new reader must not be greeted with what lay there long ago.
        if (m_pictures[mode].version != m_version)
            m_pictures[mode].jpeg.reset();
    }
    m_changed.notify_all();
}

void StandCamera::run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        size_t mode = 0;
        m_changed.wait(lock, [&] { return m_isEnding || findWork(mode); });
        if (m_isEnding)
            return;
        const Clock::time_point start = Clock::now();
        const bool isMoving = start < m_focusEnd;
        const int version = m_version;
        const Scene scene = m_scene;
        const double soft = softness(start);
        if (m_sharpVersion != version)
            m_sharp.release();
        m_sharpVersion = version;
        lock.unlock();
        const Jpeg jpeg = takePicture(scene, mode, soft);
        lock.lock();
        m_pictures[mode].jpeg = jpeg;
        m_pictures[mode].version = isMoving ? -1 : version;
        if (isMoving)
            m_changed.wait_until(lock,
                                 start + std::chrono::duration<double>(1 / m_modes[mode].rate),
                                 [this] { return m_isEnding; });
        else
            m_sharp.release();
    }
}

// Finds a mode that is read and does not show the newest look.
bool StandCamera::findWork(size_t &mode) const
{
    // The last mode is what most readers open first: its first picture is made ahead.
    const bool isFirst = m_pictures.back().version < 0 && m_version > 0;
    const auto stale = std::find_if(m_pictures.begin(), m_pictures.end(), [&](const Picture &p) {
        return (p.readers > 0 && p.version != m_version) || (isFirst && &p == &m_pictures.back());
    });
    mode = static_cast<size_t>(stale - m_pictures.begin());
    return stale != m_pictures.end();
}

Jpeg StandCamera::takePicture(const Scene &scene, size_t mode, double soft)
{
    const QSize size = m_modes[mode].size;
    try {
        if (m_sharp.empty() || m_sharpMode != mode)
            m_sharp = renderScene(scene, {size.width(), size.height()}).bgr;
        m_sharpMode = mode;
        return encode(soft > 0 ? blurred(m_sharp, soft * size.width()) : m_sharp);
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "pictor-stand: scene %s cannot be painted: %s\n",
                     qPrintable(scene.name), fault.what());
        return nullptr;
    }
}

// Rises fast and falls to zero at the end of the run.
double StandCamera::softness(Clock::time_point now) const
{
    const double left = std::chrono::duration<double>(m_focusEnd - now) / kFocusTime;
    if (left <= 0)
        return 0;
    return kMostSoftness * std::min(left / 0.8, (1 - left) / 0.2);
}
