#pragma once

#include "imaging/capture.h"
#include "imaging/smart_tracker.h"
#include "video/camera_thread.h"
#include "video/preview_outlines.h"
#include "video/shot.h"

#include <QPolygonF>
#include <QVector>

#include <opencv2/core/types.hpp>

#include <mutex>
#include <optional>
#include <string>
#include <vector>

/// The main camera: live picture, rotation, document outlines, captures of the newest frame.
///
/// GUI thread, except where a member says otherwise. Paths are UTF-8.
class IVideoTread : public CameraThread
{
    Q_OBJECT

public:
    explicit IVideoTread(QObject *parent = nullptr);
    ~IVideoTread() override;

    /// Clockwise degrees applied from the next frame on. Another value than 0, 90, 180 and 270
    /// freezes the picture until a valid one is set.
    void setRotateAngle(int angle) { m_angle = angle; }
    int getRotateAngle() const { return m_angle; }

    /// Rectangle of the manual crop, pixels of a frame of `op_width` x `op_height` after rotation.
    /// A frame of another size is cut at the same place.
    void setManualCutRect(int x, int y, int w, int h);

    /// Smart crop: these corners (frame pixels, clockwise) hold for the next captures, until
    /// another sheet lies there. An empty list gives the sheets free again.
    void fixSheets(const QVector<QPolygonF> &sheets);

    /// Kind of code read for a name: 0 barcode, 1 QR code.
    void setRecogCodeType(int type) { m_recogCodeType = type; }

    /// A capture of the newest frame as the settings stand now, to be taken whenever there is time.
    Shot shot() const;

    /// The same with the assist camera's newest picture at `assistPlace`, frame pixels.
    Shot combinedShot(cv::Rect assistPlace) const;

    /// Captures the newest frame, in full, as the settings say. Returns the path of the first file
    /// written, empty when no stream runs or nothing was written; lastCapture() says why.
    std::string CaptureImage(const char *path, bool nameByCode);

    /// Captures `frame` with the given CropMode into `path`. Always 0; see lastCapture().
    int capture(std::string path, FramePtr frame, int cropMode);

    /// What the last capture wrote.
    const CaptureResult &lastCapture() const { return m_lastCapture; }

    /// Pastes the assist camera's picture into the main one at (ax, ay, aw, ah), frame pixels, and
    /// saves it, uncut, named after its code where the naming rule says so. Returns the path of the
    /// file, empty when a camera delivers nothing or no file was written; see lastCapture().
    std::string CombineMainAssistImage(const char *path, int ax, int ay, int aw, int ah);

    /// Pastes two to four page files into one picture, `dir` 0 downwards or 1 to the right, `gap`
    /// pixels apart, and removes them. 0; -1 fewer than two files; -2 a file does not open;
    /// -3 the result could not be written. On failure the files stay, and mergeError() says why.
    int combineImageFiles(QString outPath, std::vector<QString> files, int dir, int gap);

    const std::string &mergeError() const { return m_mergeError; }

    // The next three return the cause of a failure, empty on success.

    /// Rewrites the picture file at `path` at width x height.
    std::string ImageResizeEx(const char *path, int width, int height);

    /// Rewrites the picture file `target` at the size of `reference`.
    std::string ImageResize(const char *target, const char *reference);

    /// Adds the picture file `overlay`, stretched, to `base` and writes the sum to `out`.
    std::string SavePaintImage(const char *base, const char *overlay, const char *out);

    /// Text of the code in the picture file at `path`; empty when there is none.
    std::string RecogBarQrCodeFromFile(const char *path, int type);

    /// Leaning angle in degrees of document `index` (0 to 7) in `quads`, four corner points each.
    float GetAngle(int index, const int *quads) const;

    /// Finds documents in `frame` (height x width x 3, R,G,B) and draws their edges into it.
    /// `cropMode` AutomaticCrop takes the largest only. Decode thread.
    void DrawingEdge(unsigned char *frame, int width, int height, int cropMode);

signals:
    void sgImage(QImage image);
    /// Smart crop: corners of the sheets in the frames from now on, frame pixels; sent when they
    /// change. `areFixed`: the user set them.
    void sheetsChanged(const QVector<QPolygonF> &sheets, bool areFixed);

protected:
    void prepareStream() override;
    int frameAngle() const override { return m_angle; }
    FramePtr finishFrame(Frame &frame, FramePool &pool, const FrameTreatment &treatment) override;
    void showImage(const QImage &image) override { emit sgImage(image); }

private:
    void trackSheets(Frame &frame);
    void keepFittingOutlines(const Frame &frame, int angle);
    std::vector<Outline> keepFound(std::optional<Detection> detection);

    std::atomic<int> m_angle{0};
    cv::Rect m_manualRect;
    cv::Size m_manualFrame; // that it was drawn on
    int m_recogCodeType = 0;
    CaptureResult m_lastCapture;
    std::string m_mergeError;

    std::mutex m_fixMutex; // guards m_sheetsToFix
    std::optional<std::vector<Quad>> m_sheetsToFix;

    // Decode thread only.
    SmartTracker m_tracker;
    QVector<QPolygonF> m_sentSheets;
    bool m_areSentFixed = false;
    PreviewOutlines m_previewOutlines;
    std::vector<Outline> m_outlines; // found last, for frames without any
    int m_documentsLeftOut = 0;      // beside them
    cv::Size m_outlineFrame;         // size of the frame they belong to
    int m_outlineAngle = 0;          // rotation of that frame
};
