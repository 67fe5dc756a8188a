#pragma once

#include "video/camera_thread.h"

#include <string>

/// The assist camera: live picture and plain captures of it. GUI thread, except where the base
/// class says otherwise. Paths are UTF-8.
class IVideoTwoThread : public CameraThread
{
    Q_OBJECT

public:
    explicit IVideoTwoThread(QObject *parent = nullptr);
    ~IVideoTwoThread() override;

    /// Saves the newest frame. Returns `path`; empty when no stream runs, it has no picture or no
    /// file was written.
    std::string CaptureImage(const char *path);

    /// Why the last capture failed; empty when it did not.
    const std::string &captureError() const { return m_captureError; }

    /// Saves `frame` with the colour effect of the settings. False when that failed.
    bool capture(std::string path, FramePtr frame);

signals:
    void sgImageTwo(QImage image);

protected:
    void logOpening(const QString &index, const QString &size, const QString &rate) override;
    void showImage(const QImage &image) override { emit sgImageTwo(image); }

private:
    std::string m_captureError; // of the last capture
};
