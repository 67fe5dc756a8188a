#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QSize>
#include <QString>

#include <atomic>
#include <memory>

class QLabel;
class QStatusBar;
class QTimer;

/// "3264 x 2448, 15 fps"; without the rate while it is unknown (0), empty without a size.
QString cameraText(QSize frame, int framesPerSecond);

/// Share of the screen pixels that one frame pixel takes, "Zoom 24 %"; empty without a frame.
QString zoomText(double shownWidth, int frameWidth);

/// "12.3 GB free"; empty for a negative number.
QString freeSpaceText(qint64 bytes);

/// The line at the bottom of the window: size and rate of the live picture, zoom, free space of
/// the output folder, and the time of a running recording. Measures the rate from the frames that
/// are shown. GUI thread.
class StatusLine : public QObject
{
    Q_OBJECT

public:
    explicit StatusLine(QStatusBar *bar);

    /// A frame of this size (after rotation) was shown.
    void countFrame(QSize frame);
    void showZoom(double shownWidth, int frameWidth);
    /// A dot and the time recorded so far; an empty text when nothing is being recorded.
    void showRecording(const QString &time);
    /// The picture is gone.
    void clearCamera();

private:
    /// Free bytes as far as they are known; shared with the thread that asks, which may outlive
    /// everything else when the folder lies on a network that has gone.
    struct FreeSpace
    {
        std::atomic<qint64> bytes{-1};
        std::atomic<bool> isBeingAsked{false};
    };

    void refresh();
    void showFreeSpace();

    const std::shared_ptr<FreeSpace> m_freeSpace = std::make_shared<FreeSpace>();

    QLabel *m_recording;
    QLabel *m_camera;
    QLabel *m_zoom;
    QLabel *m_space;
    QTimer *m_timer;
    QElapsedTimer m_sinceRefresh;
    QSize m_frame;
    int m_frames = 0;
    int m_rate = 0; ///< pictures a second at the last tick
};
