#include "stand/camera.h"

#include "platform/stand_descriptor.h"
#include "stand/damage.h"
#include "stand/render.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int kJpegQuality = 88;
constexpr std::chrono::milliseconds kFocusTime(500);
constexpr int kSharpFocus = 50;         ///< position of the lens at which the desk is sharp
constexpr double kMostSoftness = 0.003; ///< blur in the middle of a focus run, frame widths

// Steps of a flickering lamp, in parts of its strength.
constexpr double kFlickerSteps[] = {-1, 0.5, 1, -0.5};

Jpeg encode(const cv::Mat &bgr)
{
    std::vector<uchar> bytes;
    cv::imencode(".jpg", bgr, bytes, {cv::IMWRITE_JPEG_QUALITY, kJpegQuality});
    return std::make_shared<const std::vector<uchar>>(std::move(bytes));
}

std::vector<Jpeg> encodeLooks(const cv::Mat &bgr, int flicker)
{
    if (flicker == 0)
        return {encode(bgr)};
    std::vector<Jpeg> looks;
    cv::Mat lit;
    for (const double step : kFlickerSteps) {
        bgr.convertTo(lit, -1, 1, step * flicker);
        looks.push_back(encode(lit));
    }
    return looks;
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
    , m_controls(standControls())
    , m_paintings(m_modes.size())
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
        m_laid = {scene, ++m_lastSerial};
        ++m_version;
        m_motions.clear();
        m_foreseen = nullptr;
        for (Picture &picture : m_pictures)
            picture.film.clear();
    }
    m_changed.notify_all();
}

void StandCamera::play(const Motion &motion, const std::optional<Scene> &after)
{
    {
        const std::lock_guard lock(m_mutex);
        if (after && m_foreseen && m_foreseen->before == serialAfterMotions())
            m_motions.push_back(std::exchange(m_foreseen, nullptr));
        else
            m_motions.push_back(makePending(motion, after));
    }
    m_changed.notify_all();
}

void StandCamera::foresee(const Motion &motion, const Scene &after)
{
    {
        const std::lock_guard lock(m_mutex);
        m_foreseen = makePending(motion, after);
    }
    m_changed.notify_all();
}

// Under m_mutex.
StandCamera::PendingMotionPtr StandCamera::makePending(const Motion &motion,
                                                       const std::optional<Scene> &after)
{
    const auto pending = std::make_shared<PendingMotion>();
    pending->motion = motion;
    pending->before = serialAfterMotions();
    if (after)
        pending->after = LaidScene{*after, ++m_lastSerial};
    return pending;
}

// Of the scene that lies there when all motions are over. Under m_mutex.
int StandCamera::serialAfterMotions() const
{
    int serial = m_laid.serial;
    for (const PendingMotionPtr &motion : m_motions) {
        if (motion->after)
            serial = motion->after->serial;
    }
    return serial;
}

void StandCamera::setFlicker(int grayLevels)
{
    {
        const std::lock_guard lock(m_mutex);
        m_flicker = grayLevels;
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

std::vector<int> StandCamera::controls() const
{
    const std::lock_guard lock(m_mutex);
    std::vector<int> values;
    for (const CameraControl &control : m_controls)
        values.push_back(control.value);
    return values;
}

bool StandCamera::setControl(CameraControl::Kind kind, int value)
{
    {
        const std::lock_guard lock(m_mutex);
        const auto control = std::find_if(m_controls.begin(), m_controls.end(),
                                          [kind](const auto &its) { return its.kind == kind; });
        if (control == m_controls.end() || value < control->min || value > control->max)
            return false;
        control->value = value;
        ++m_version;
    }
    m_changed.notify_all();
    return true;
}

// Zero for one that it does not have. Under m_mutex.
int StandCamera::value(CameraControl::Kind kind) const
{
    for (const CameraControl &control : m_controls) {
        if (control.kind == kind)
            return control.value;
    }
    return 0;
}

Jpeg StandCamera::nextFrame(size_t mode)
{
    const std::lock_guard lock(m_mutex);
    Picture &picture = m_pictures[mode];
    if (m_isStalled || picture.looks.empty())
        return nullptr;
    Jpeg jpeg = picture.looks[picture.turn++ % picture.looks.size()];
    if (!picture.film.empty()) {
        jpeg = picture.film.front();
        picture.film.pop_front();
    }
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
            m_pictures[mode].looks.clear();
    }
    m_changed.notify_all();
}

void StandCamera::run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        size_t mode = 0;
        bool isStale = false;
        m_changed.wait(lock, [&] {
            isStale = findWork(mode);
            return m_isEnding || isStale || !m_motions.empty() || findForeseen(mode);
        });
        if (m_isEnding)
            return;
        if (isStale)
            paintStill(lock, mode);
        else if (!m_motions.empty())
            paintMotion(lock);
        else
            paintForeseen(lock, mode);
    }
}

void StandCamera::paintStill(std::unique_lock<std::mutex> &lock, size_t mode)
{
    const Clock::time_point start = Clock::now();
    const bool isMoving = start < m_focusEnd;
    const int version = m_version, flicker = seenFlicker(),
              light = value(CameraControl::Brightness);
    const LaidScene laid = m_laid;
    const double soft = softness(start);
    lock.unlock();
    const Looks looks = takePicture(laid, mode, soft, flicker, light);
    lock.lock();
    m_pictures[mode].looks = looks;
    m_pictures[mode].version = isMoving ? -1 : version;
    if (isMoving)
        m_changed.wait_until(lock, start + std::chrono::duration<double>(1 / m_modes[mode].rate),
                             [this] { return m_isEnding; });
}

void StandCamera::paintMotion(std::unique_lock<std::mutex> &lock)
{
    const PendingMotionPtr pending = m_motions.front();
    const LaidScene before = m_laid;
    const LaidScene after = pending->after.value_or(before);
    const int flicker = seenFlicker();
    std::map<size_t, Film> films;
    if (pending->flicker == flicker)
        films = std::move(pending->films);
    std::vector<size_t> missing;
    for (size_t mode = 0; mode < m_pictures.size(); ++mode) {
        if (m_pictures[mode].readers > 0 && films.count(mode) == 0)
            missing.push_back(mode);
    }
    lock.unlock();
    for (const size_t mode : missing)
        films[mode] = makeFilm(pending->motion, before, after, mode, flicker);
    lock.lock();
    if (m_motions.empty() || m_motions.front() != pending)
        return; // another scene was laid in the meantime
    m_motions.pop_front();
    const bool isOther = after.serial != before.serial;
    if (isOther) {
        m_laid = after;
        ++m_version;
    }
    for (const auto &[mode, film] : films) {
        Picture &picture = m_pictures[mode];
        if (picture.readers == 0)
            continue; // who comes later must not see the motion then
        picture.film.insert(picture.film.end(), film.frames.begin(), film.frames.end());
        if (!isOther)
            continue;
        picture.looks = film.rest;
        picture.version = flicker == seenFlicker() ? m_version : -1;
    }
}

void StandCamera::paintForeseen(std::unique_lock<std::mutex> &lock, size_t mode)
{
    const PendingMotionPtr foreseen = m_foreseen;
    const LaidScene before = m_laid;
    const int flicker = seenFlicker();
    lock.unlock();
    Film film = makeFilm(foreseen->motion, before, *foreseen->after, mode, flicker);
    lock.lock();
    if (foreseen->flicker != flicker)
        foreseen->films.clear();
    foreseen->flicker = flicker;
    foreseen->films[mode] = std::move(film);
}

StandCamera::Film StandCamera::makeFilm(const Motion &motion, const LaidScene &before,
                                        const LaidScene &after, size_t mode, int flicker)
{
    const int count = motion.frameCount(m_modes[mode].rate);
    Film film;
    try {
        const cv::Mat from = painting(before, mode);
        const cv::Mat to = painting(after, mode);
        for (int i = 0; i < count; ++i)
            film.frames.push_back(encode(motion.paint(from, to, (i + 0.5) / count)));
        if (after.serial != before.serial)
            film.rest = encodeLooks(to, flicker);
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "pictor-stand: a motion cannot be painted: %s\n", fault.what());
    }
    return film;
}

// What lies there after one motion is what lies there before the next, and in a focus run: it is
// painted once.
cv::Mat StandCamera::painting(const LaidScene &laid, size_t mode)
{
    auto &kept = m_paintings[mode];
    const auto known = std::find_if(kept.begin(), kept.end(), [&](const Painting &painting) {
        return painting.serial == laid.serial;
    });
    if (known != kept.end())
        return known->bgr;
    Painting &oldest = kept[0].serial < kept[1].serial ? kept[0] : kept[1];
    const QSize size = m_modes[mode].size;
    oldest = {renderScene(laid.scene, {size.width(), size.height()}).bgr, laid.serial};
    return oldest.bgr;
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

// Finds a mode that is read and has no film of what is foreseen.
bool StandCamera::findForeseen(size_t &mode) const
{
    if (!m_foreseen || m_foreseen->before != m_laid.serial)
        return false;
    const bool isOther = m_foreseen->flicker != seenFlicker();
    for (mode = 0; mode < m_pictures.size(); ++mode) {
        if (m_pictures[mode].readers > 0 && (isOther || m_foreseen->films.count(mode) == 0))
            return true;
    }
    return false;
}

StandCamera::Looks StandCamera::takePicture(const LaidScene &laid, size_t mode, double soft,
                                            int flicker, int light)
{
    try {
        const cv::Mat sharp = painting(laid, mode);
        cv::Mat seen = soft > 0 ? blurred(sharp, soft * sharp.cols) : sharp;
        if (light != 0)
            seen = seen + cv::Scalar::all(light);
        return encodeLooks(seen, flicker);
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "pictor-stand: scene %s cannot be painted: %s\n",
                     qPrintable(laid.scene.name), fault.what());
        return {};
    }
}

// A camera that is told the frequency of the mains exposes in step with the lamp; here it is 50 Hz.
int StandCamera::seenFlicker() const
{
    constexpr int k50Hz = 1;
    return value(CameraControl::PowerLine) == k50Hz ? 0 : m_flicker;
}

// Rises fast and falls to zero at the end of a run; of a lens set by hand what is out of focus.
double StandCamera::softness(Clock::time_point now) const
{
    const double left = std::chrono::duration<double>(m_focusEnd - now) / kFocusTime;
    if (left <= 0)
        return value(CameraControl::AutoFocus)
                   ? 0
                   : kMostSoftness * std::abs(value(CameraControl::Focus) - kSharpFocus) /
                         kSharpFocus;
    return kMostSoftness * std::min(left / 0.8, (1 - left) / 0.2);
}
