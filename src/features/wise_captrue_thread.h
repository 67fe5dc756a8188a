#pragma once

#include "features/page_turn.h"
#include "imaging/frame_comparer.h"
#include "video/frame.h"

#include <QThread>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

/// Watches the live picture for turned pages: takes the newest frame every 50 ms while
/// `isWiseCaptrue` is set, and reports what `PageTurnMachine` makes of it. All public members are
/// for the GUI thread.
class wiseCaptrueThr : public QThread
{
    Q_OBJECT

public:
    /// Gives the newest frame, null when there is none. Called from the sampling thread; must not
    /// wait for a new frame.
    using FrameSource = std::function<FramePtr()>;

    static constexpr int kSamplePeriodMs = 50;
    static constexpr int kStopTimeoutMs = 1000;

    explicit wiseCaptrueThr(QObject *parent = nullptr);
    ~wiseCaptrueThr() override;

    /// The frames to watch from now on; an empty function watches nothing. When the call returns
    /// the previous source is not in use and will not be called again, so what it refers to may
    /// go: a camera's thread object is taken out here before it is deleted.
    void setFrameSource(FrameSource source);

    void toStart();

    /// Ends the sampling, normally at once, at most `kStopTimeoutMs` later, and forgets the
    /// previous sample. A signal that was sent before may still arrive.
    void toStop();

    void destroyCompare();

    /// The frame that was shot: the page in it is not shot again. Until it is known, the frame at
    /// the signal stands for it; a countdown lies between the two.
    void setShotFrame(FramePtr frame);

    /// 0 when a sheet is in view in the packed R,G,B picture, -1 when not.
    static int CheckIsHavePaper(unsigned char *rgb, unsigned int width, unsigned int height);

    /// 0 when the packed R,G,B picture is still, -1 when it changed since the picture before: when
    /// at most `percent` of the pixels moved by less than `pixelTolerance` gray levels.
    int CompareBuf(unsigned char *rgb, unsigned int width, unsigned int height,
                   unsigned int pixelTolerance, unsigned int percent);

signals:
    /// True: a new page lies still and may be shot. False: the picture is changing.
    void wiseCaptrueSignal(bool ready);

    /// A hand seems to be in the picture that was shot last: it came in while the countdown ran, or
    /// went away after the shot.
    void shotIsDoubtful();

protected:
    void run() override;

private:
    FramePtr newestFrame();
    FramePtr takeShotFrame();
    PageTurnMachine::Sample judge(const FramePtr &frame);
    PageTurnMachine::Page compareWithShot(const FramePtr &frame);
    bool isReachedInto(const FramePtr &frame) const;
    bool lastsTheDoubt(const FramePtr &frame, PageTurnMachine::Sample sample);
    void keepAsShot(const FramePtr &frame);

    std::mutex m_sourceMutex; ///< guards m_source, held during its calls, and m_shotFrame
    FrameSource m_source;
    FramePtr m_shotFrame; ///< not yet seen by the sampling thread

    std::mutex m_mutex; ///< guards everything below
    std::condition_variable m_stopped;
    bool m_running = false;
    PageTurnMachine m_machine;
    FrameComparer m_comparer;
    bool m_isInDoubt = false;   ///< to be told that the shot picture has a hand in it
    bool m_mayDoubt = false;    ///< the shot picture is known, and nothing was told about it
    FramePtr m_doubted;         ///< newest picture that differs as by a hand; the next ones decide
    int m_doubtfulPictures = 0; ///< that lay still since the first one of them
    std::weak_ptr<const Frame> m_lastFrame; ///< the frame judged last: seen again, it is still
    PageTurnMachine::Sample m_lastSample = PageTurnMachine::Sample::NoSheet;
};
