#include "video/video_thread.h"

#include "app/log.h"
#include "app/state.h"
#include "imaging/code_reader.h"
#include "imaging/combine.h"
#include "imaging/image_files.h"
#include "imaging/smart_finder.h"
#include "imaging/straighten.h"
#include "video/video_two_thread.h"

#include <QDebug>
#include <QFile>

#include <opencv2/imgproc.hpp>

IVideoTread *videoThread = nullptr;

namespace {

bool needsOutlines(int cropMode)
{
    return cropMode == AutomaticCrop || cropMode == MultiGraphCrop;
}

QVector<QPolygonF> polygons(const std::vector<Quad> &sheets)
{
    QVector<QPolygonF> result;
    for (const Quad &sheet : sheets) {
        QPolygonF polygon;
        for (const cv::Point2f &corner : sheet)
            polygon << QPointF(corner.x, corner.y);
        result << polygon;
    }
    return result;
}

} // namespace

IVideoTread::IVideoTread(QObject *parent)
    : CameraThread({"openCamera start", "openCamera end", "closeCamera start", "closeCamera end",
                    "videoThread->end"},
                   isOpenCamera, parent)
{
    qRegisterMetaType<QVector<QPolygonF>>(); // crosses threads
}

IVideoTread::~IVideoTread()
{
    shutDown();
}

void IVideoTread::prepareStream()
{
    m_outlines.clear();
    m_tracker.reset();
}

// Outlines of an earlier frame hold only for frames that lie the same way.
void IVideoTread::keepFittingOutlines(const Frame &frame, int angle)
{
    const cv::Size size(frame.width, frame.height);
    if (size != m_outlineFrame || angle != m_outlineAngle) {
        m_outlines.clear();
        m_tracker.reset();
    }
    m_outlineFrame = size;
    m_outlineAngle = angle;
}

void IVideoTread::fixSheets(const QVector<QPolygonF> &sheets)
{
    std::vector<Quad> quads;
    for (const QPolygonF &sheet : sheets) {
        Quad quad;
        for (int i = 0; i < 4; ++i)
            quad[static_cast<size_t>(i)] = cv::Point2f(cv::Point2d(sheet[i].x(), sheet[i].y()));
        quads.push_back(quad);
    }
    const std::lock_guard<std::mutex> lock(m_fixMutex);
    m_sheetsToFix = std::move(quads);
}

void IVideoTread::trackSheets(Frame &frame)
{
    std::optional<std::vector<Quad>> toFix;
    {
        const std::lock_guard<std::mutex> lock(m_fixMutex);
        toFix.swap(m_sheetsToFix);
    }
    if (toFix && toFix->empty())
        m_tracker.reset();
    else if (toFix)
        m_tracker.fix(std::move(*toFix));
    frame.sheets = m_tracker.update({frame.pixels, {frame.width, frame.height}, frame.reduction});
    frame.areSheetsFixed = m_tracker.isFixed();
}

FramePtr IVideoTread::finishFrame(Frame &frame, FramePool &pool, const FrameTreatment &treatment)
{
    keepFittingOutlines(frame, treatment.angle);
    const int mode = cutMode;
    frame.searchedFor = NoCrop;
    frame.sheets.clear();
    frame.areSheetsFixed = false;
    if (mode == SmartCrop) {
        frame.searchedFor = mode;
        trackSheets(frame);
    } else {
        m_tracker.reset();
    }
    QVector<QPolygonF> sheets = polygons(frame.sheets);
    if (sheets != m_sentSheets || frame.areSheetsFixed != m_areSentFixed) {
        m_sentSheets = sheets;
        m_areSentFixed = frame.areSheetsFixed;
        emit sheetsChanged(sheets, m_areSentFixed);
    }
    if (!needsOutlines(mode)) {
        m_outlines.clear();
        return nullptr;
    }
    frame.searchedFor = mode;
    const std::shared_ptr<Frame> marked =
        treatment.preview ? pool.acquire(frame.pixels.cols, frame.pixels.rows) : nullptr;
    const std::vector<Outline> drawn = keepFound(m_previewOutlines.find(frame, mode));
    if (marked) {
        frame.pixels.copyTo(marked->pixels);
        drawOutlines(marked->pixels, drawn, frame.reduction);
    }
    frame.outlines = m_outlines;
    frame.documentsLeftOut = m_documentsLeftOut;
    return marked;
}

std::vector<Outline> IVideoTread::keepFound(std::optional<Detection> detection)
{
    if (!detection)
        return {};
    m_outlines = std::move(detection->outlines);
    m_documentsLeftOut = detection->leftOut;
    return std::move(detection->drawn);
}

void IVideoTread::DrawingEdge(unsigned char *frame, int width, int height, int cropMode)
{
    cv::Mat rgb(height, width, CV_8UC3, frame);
    drawOutlines(rgb, keepFound(m_previewOutlines.find(ReducedPicture(rgb), cropMode)));
}

// Captures that cannot even begin.
std::string IVideoTread::refuse(const char *cause)
{
    m_lastCapture = {};
    m_lastCapture.error = cause;
    WriteLog(cause);
    return {};
}

// All pixels of the newest frame, as the user wants them by now: he may have turned the picture or
// chosen another crop since it came. What is cut out depends on the whole picture, never on how
// much of it the view needed.
FramePtr IVideoTread::frameToCapture(int cropMode) const
{
    const FramePtr latest = currentFrame();
    const FramePtr whole = wholeFrame(latest, m_angle);
    const bool isSearched = latest == whole && latest && latest->searchedFor == cropMode;
    if (!whole || isSearched)
        return whole;
    const auto frame = std::make_shared<Frame>(*whole);
    if (cropMode == SmartCrop && latest->searchedFor == cropMode && latest->angle == frame->angle) {
        frame->sheets = latest->sheets;
        frame->areSheetsFixed = latest->areSheetsFixed;
    }
    if (!needsOutlines(cropMode))
        return frame;
    if (auto detection = DocumentFinder().find(frame->pixels, cropMode)) {
        frame->outlines = std::move(detection->outlines);
        frame->documentsLeftOut = detection->leftOut;
    } else if (latest->angle == frame->angle && latest->searchedFor == cropMode) {
        frame->outlines = latest->outlines; // as long as nothing is found, what was found last
        frame->documentsLeftOut = latest->documentsLeftOut;
    }
    frame->searchedFor = cropMode;
    return frame;
}

void IVideoTread::setManualCutRect(int x, int y, int w, int h)
{
    m_manualRect = {x, y, w, h};
    const bool isSideways = m_angle == 90 || m_angle == 270;
    m_manualFrame = isSideways ? cv::Size(op_height, op_width) : cv::Size(op_width, op_height);
}

std::string IVideoTread::CaptureImage(const char *path, bool nameByCode)
{
    const int cropMode = cutMode;
    const FramePtr frame = frameToCapture(cropMode);
    if (!isActive() || !frame)
        return refuse("the camera delivers no picture");
    m_nameByCode = nameByCode;
    capture(path, frame, cropMode);
    const std::string written = m_lastCapture.path();
    return QFile::exists(QString::fromStdString(written)) ? written : std::string();
}

int IVideoTread::capture(std::string path, FramePtr frame, int cropMode)
{
    CaptureOptions options;
    options.cropMode = cropMode;
    options.outlines = frame->outlines;
    options.documentsLeftOut = frame->documentsLeftOut;
    options.areSheetsGiven = frame->areSheetsFixed;
    if (frame->areSheetsFixed) {
        options.sheets = frame->sheets;
    } else if (cropMode == SmartCrop) { // in this very frame, whatever was shown a moment ago
        for (const SmartSheet &sheet : sureSheets(findSheets(frame->pixels, frame->sheets)))
            options.sheets.push_back(sheet.corners);
    }
    options.manualRect = scaledManualRect(m_manualRect, m_manualFrame, frame->pixels.size());
    options.nameByCode = m_nameByCode;
    options.codeType = m_recogCodeType;
    options.save = currentSaveOptions();
    options.isGivenUp = frame->compressed != nullptr; // then decoded for this capture alone
    m_lastCapture = captureFrame(frame->pixels, path, options);
    return 0;
}

std::string IVideoTread::CombineMainAssistImage(const char *path, int ax, int ay, int aw, int ah)
{
    qDebug("CombineMainAssistImage start");
    if (!isOpenCamera || !isOpenCameraTwo || !videoTwoThread)
        return refuse("a camera delivers no picture to combine");
    qDebug("CombineMainAssistImage 01");
    const FramePtr frame = frameToCapture(NoCrop);
    qDebug("CombineMainAssistImage 02");
    const FramePtr assist = videoTwoThread->wholeCurrentFrame();
    if (!frame || !assist)
        return refuse("a camera delivers no picture to combine");
    qDebug("CombineMainAssistImage 03");
    CaptureOptions options;
    options.nameByCode = fNameType == NameByBarcode && currentFunMode != MultipdfMode;
    options.codeType = m_recogCodeType;
    options.save = currentSaveOptions();
    try {
        cv::Mat combined = combineFrames(frame->pixels, assist->pixels, {ax, ay, aw, ah});
        cv::cvtColor(combined, combined, cv::COLOR_BGR2RGB);
        options.isGivenUp = true;
        m_lastCapture = captureFrame(combined, path, options);
    } catch (const cv::Exception &e) {
        return refuse(("the pictures could not be combined: " + e.msg).c_str());
    }
    qDebug("CombineMainAssistImage end");
    return m_lastCapture.path();
}

int IVideoTread::combineImageFiles(QString outPath, std::vector<QString> files, int dir, int gap)
{
    MergeJob job;
    job.outPath = outPath.toStdString();
    for (const QString &file : files)
        job.files.push_back(file.toStdString());
    job.direction = dir == 0 ? MergeDirection::Vertical : MergeDirection::Horizontal;
    job.gap = gap;
    job.save = currentSaveOptions();
    return mergeImageFiles(job, m_mergeError);
}

std::string IVideoTread::ImageResizeEx(const char *path, int width, int height)
{
    return ::ImageResizeEx(path, width, height);
}

std::string IVideoTread::ImageResize(const char *target, const char *reference)
{
    return ::ImageResize(target, reference);
}

std::string IVideoTread::SavePaintImage(const char *base, const char *overlay, const char *out)
{
    return ::SavePaintImage(base, overlay, out);
}

std::string IVideoTread::RecogBarQrCodeFromFile(const char *path, int type)
{
    return ::RecogBarQrCodeFromFile(path, type);
}

float IVideoTread::GetAngle(int index, const int *quads) const
{
    const int *corner = quads + (index >= 1 && index < 8 ? index * 8 : 0);
    Outline outline;
    for (cv::Point &point : outline) {
        point = {corner[0], corner[1]};
        corner += 2;
    }
    return straightenGeometry(outline).angle;
}
