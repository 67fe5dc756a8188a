#pragma once

#include "platform/platform.h"
#include "stand/frame_feed.h"
#include "stand/motion.h"
#include "stand/scene.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

/// The optics and the sensor of one camera: turns a scene into the encoded pictures of its modes.
///
/// A mode is painted and encoded only while somebody reads it, and a still scene only once. The
/// work is done by a thread of its own, so that neither the streams nor the commands wait for it.
/// All members may be called from any thread.
class StandCamera : public FrameFeed
{
public:
    explicit StandCamera(std::vector<CameraMode> modes);
    ~StandCamera() override;

    /// Shows `scene` from the next frame on; motions that were not over are dropped.
    void show(const Scene &scene);

    /// Plays `motion` to all readers as soon as its frames are painted, then shows `after`, or
    /// the scene as it was. Motions follow each other in the order of the calls.
    void play(const Motion &motion, const std::optional<Scene> &after = {});

    /// Paints ahead what the next play() that changes the scene is going to show, unless another
    /// scene is laid before: a page then turns at once, as it does under a real camera.
    void foresee(const Motion &motion, const Scene &after);

    /// The light flickers by up to `grayLevels` from frame to frame; 0 is steady.
    void setFlicker(int grayLevels);

    /// A stalled camera stays connected and sends nothing.
    void setStalled(bool stalled);

    /// The next `count` frames are sent damaged.
    void damageFrames(int count);

    /// The next `count` frames are sent in another size than the mode's.
    void missizeFrames(int count);

    /// One autofocus run: the picture blurs and sharpens within half a second.
    void focus();

    /// Values of standControls() in that order. Brightness is seen while nothing moves.
    std::vector<int> controls() const;

    /// False for a control that it does not have or a value out of range.
    bool setControl(CameraControl::Kind kind, int value);

    Jpeg nextFrame(size_t mode) override;
    void setReaders(size_t mode, int count) override;

private:
    using Clock = std::chrono::steady_clock;

    /// A still picture: one frame, or under a flickering lamp several that take turns.
    using Looks = std::vector<Jpeg>;

    struct Picture
    {
        std::deque<Jpeg> film; ///< frames of a motion that go before the still picture
        Looks looks;
        size_t turn = 0; ///< counts the frames taken from `looks`
        int readers = 0;
        int version = -1; ///< of the look that it shows
    };

    struct LaidScene
    {
        Scene scene;
        int serial = 0; ///< a new one for each scene that is laid
    };

    /// A scene as one mode shows it.
    struct Painting
    {
        cv::Mat bgr;
        int serial = -1; ///< of the scene
    };

    /// A motion as one mode shows it.
    struct Film
    {
        std::vector<Jpeg> frames;
        Looks rest; ///< the still picture after it; empty when it is the one before it
    };

    struct PendingMotion
    {
        Motion motion;
        std::optional<LaidScene> after;
        int before = 0;               ///< serial of the scene that it begins with
        int flicker = 0;              ///< in the films
        std::map<size_t, Film> films; ///< by mode, as far as they are painted
    };
    using PendingMotionPtr = std::shared_ptr<PendingMotion>;

    void run();
    PendingMotionPtr makePending(const Motion &motion, const std::optional<Scene> &after);
    int serialAfterMotions() const;
    bool findWork(size_t &mode) const;
    bool findForeseen(size_t &mode) const;
    void paintStill(std::unique_lock<std::mutex> &lock, size_t mode);
    void paintMotion(std::unique_lock<std::mutex> &lock);
    void paintForeseen(std::unique_lock<std::mutex> &lock, size_t mode);
    Film makeFilm(const Motion &motion, const LaidScene &before, const LaidScene &after,
                  size_t mode, int flicker);
    cv::Mat painting(const LaidScene &laid, size_t mode);
    Looks takePicture(const LaidScene &laid, size_t mode, double soft, int flicker, int light);
    double softness(Clock::time_point now) const;
    int value(CameraControl::Kind kind) const;
    int seenFlicker() const;

    const std::vector<CameraMode> m_modes;

    mutable std::mutex m_mutex; ///< guards all that follows up to m_paintings
    std::condition_variable m_changed;
    std::vector<Picture> m_pictures;
    LaidScene m_laid;
    int m_lastSerial = 0;
    int m_version = 0; ///< counts what changes the look
    std::deque<PendingMotionPtr> m_motions;
    PendingMotionPtr m_foreseen; ///< not played yet
    int m_flicker = 0;           ///< gray levels
    QList<CameraControl> m_controls;
    Clock::time_point m_focusEnd;
    bool m_isStalled = false;
    bool m_isEnding = false;
    int m_damagedFrames = 0;
    int m_missizedFrames = 0;
    int m_damageTurn = 0;

    /// Of each mode what lies there and what comes next; m_thread only.
    std::vector<std::array<Painting, 2>> m_paintings;
    std::thread m_thread;
};
