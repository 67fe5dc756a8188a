#pragma once

#include "video/frame_pool.h"
#include "video/frame_slot.h"
#include "video/settled_size.h"
#include "video/stream_reader.h"

#include <QImage>
#include <QSize>
#include <QString>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>

/// Reads one camera in a thread of its own: what the main and the assist camera have in common.
///
/// Public members belong to the thread that owns the object (the GUI thread) unless they say
/// otherwise. The thread always ends: opening, probing and reading look at the running flag at
/// least ten times a second, everything else takes the time of one frame.
class CameraThread : public QThread
{
    Q_OBJECT

public:
    /// Opens the camera with device index `cameraIndex` (decimal) at `videoSize` ("1920x1080") and
    /// `frameRate` ("30"). Returns at once; a stream that was open before is closed, and the camera
    /// opened when that has ended.
    void openCamera(std::string cameraIndex, std::string videoSize, std::string frameRate);

    /// Ends the stream and waits for the thread's end, at most 1200 ms. Afterwards no picture is
    /// delivered any more and the camera's open flag stays clear.
    void closeCamera();

    /// The same without waiting, for a window that must not stand still.
    void endStream();

    void startPreview() { m_preview = true; }
    void stopPreview() { m_preview = false; } ///< captures go on getting current frames

    /// The picture is shown `size` large, pixels of the screen: pictures that come from now on are
    /// decoded so that each of them shows at least one of theirs. Empty: in full, as at first.
    void setShownSize(QSize size) { m_shownSide = std::max(size.width(), size.height()); }

    /// From now on `sink` receives every picture, also of streams that are opened later, until
    /// another one, or null, takes its place.
    void setPictureSink(std::shared_ptr<PictureSink> sink);

    /// Frames a second that the stream was opened with, as text.
    std::string frameRate() const { return m_frameRate; }

    /// Newest frame; null before the first one and after the stream ended or was closed.
    /// Any thread.
    FramePtr lastFrame() const { return m_latest.get(); }

    /// The same for a capture: null also when the camera has been silent for a while, so that no
    /// earlier page is taken for the one that lies there now. Owner's thread.
    FramePtr currentFrame() const;

    /// The whole picture of `frame`, turned clockwise by `angle`: decoded anew where the frame was
    /// reduced, without outlines. The frame itself when it is so already; null when it cannot be
    /// had. Any thread.
    static FramePtr wholeFrame(const FramePtr &frame, int angle);

    /// The stream could not be opened or broke off by itself, and has not been closed since.
    /// Any thread.
    bool hasEnded() const { return m_ended; }

    bool isActive() const
    {
        return m_isWanted;
    } ///< between openCamera and closeCamera. Any thread.

signals:
    /// The camera could not be opened. Comes on the owner's thread, never after closeCamera.
    void sgOpenFailed();
    /// The stream ended, or did not begin, because the camera sends nothing. Comes likewise.
    void sgSilent();

protected:
    /// What differs between the cameras in the log.
    struct LogTexts
    {
        const char *openStart, *openEnd, *closeStart, *closeEnd, *threadEnd;
    };

    /// `openFlag` is set with every packet and cleared when the stream ends.
    CameraThread(const LogTexts &texts, std::atomic<bool> &openFlag, QObject *parent);

    /// To be called by the destructor of each class derived from this one.
    void shutDown();

    void run() override;

    /// Decode thread: forgets what belongs to an earlier stream.
    virtual void prepareStream() {}

    /// Decode thread: logs what is special about this camera before it is opened.
    virtual void logOpening(const QString &index, const QString &size, const QString &rate);

    /// Decode thread: angle by which the next frame is turned; another value than 0, 90, 180 and
    /// 270 makes no frame.
    virtual int frameAngle() const { return 0; }

    /// How a frame came about and what becomes of it.
    struct FrameTreatment
    {
        int angle = 0;       ///< by which it was turned
        bool preview = true; ///< it will be shown
    };

    /// Decode thread: last work on `frame` before it is published. The picture that comes back is
    /// shown; null shows the frame itself.
    virtual FramePtr finishFrame(Frame &frame, FramePool &pool, const FrameTreatment &treatment);

    /// Owner's thread: hands a picture to the window.
    virtual void showImage(const QImage &image) = 0;

private:
    static void log(const char *text);
    static void logFailure(const char *text);
    Q_INVOKABLE void deliverImage();
    Q_INVOKABLE void deliverEnd();
    void halt();
    void begin();
    bool openStream(StreamReader &reader);
    void readStream(StreamReader &reader);
    void handlePicture(StreamReader &reader, FramePool &pool, SettledSize &settled);
    int wantedReduction(const StreamReader &reader) const;
    void markPacket();
    bool handOn(StreamReader &reader, std::chrono::steady_clock::time_point arrival);
    bool isBehind(std::chrono::steady_clock::time_point arrival);
    void publish(const FramePtr &frame);
    void offerImage(const FramePtr &picture);
    void pause();
    enum class End { BrokenOff, NotOpened, Silent };
    void streamEnded(End end);

    const LogTexts m_texts;
    std::atomic<bool> &m_openFlag;
    struct Wanted
    {
        std::string cameraIndex, videoSize, frameRate;
    };
    std::optional<Wanted> m_next; // owner's thread: to be opened when the stream before has ended
    std::atomic<bool> m_isWanted{false};

    std::string m_cameraIndex, m_videoSize, m_frameRate; // written only while no thread runs
    QString m_deviceName;

    std::atomic<bool> m_running{false};
    std::atomic<bool> m_ended{false};
    std::atomic<bool> m_preview{true};
    std::atomic<int> m_shownSide{0}; // longer side of the shown picture, screen pixels; 0: in full
    uint64_t m_sequence = 0;         // decode thread only
    std::chrono::steady_clock::time_point m_ready; // decode thread: last picture was done with
    int m_leftOutInARow = 0;                       // decode thread: pictures that were not shown
    FrameSlot m_latest;

    // Guards m_image, m_imageUnderWay, m_end, and every change of m_running together with
    // what the decode thread makes visible only while it holds: m_openFlag, m_ended, m_latest.
    // And m_sink.
    std::mutex m_mutex;
    std::condition_variable m_stopped;
    QImage m_image;               // newest picture that the owner has not taken yet
    bool m_imageUnderWay = false; // a call to deliverImage is queued
    std::optional<End> m_end;     // not yet told to the owner
    std::shared_ptr<PictureSink> m_sink;
};
