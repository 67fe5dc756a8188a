#include "video/video_thread.h"

#include "app/state.h"
#include "imaging/code_reader.h"
#include "imaging/combine.h"
#include "imaging/image_files.h"
#include "imaging/straighten.h"
#include "video/video_two_thread.h"

#include <QFile>

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
    m_previewOutlines = {};
    m_tracker.reset();
}

// Outlines of an earlier frame hold only for frames that lie the same way.
void IVideoTread::keepFittingOutlines(const Frame &frame, int angle)
{
    const cv::Size size(frame.width, frame.height);
    if (size != m_outlineFrame || angle != m_outlineAngle) {
        m_outlines.clear();
        m_previewOutlines = {};
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

void IVideoTread::setManualCutRect(int x, int y, int w, int h)
{
    m_manualRect = {x, y, w, h};
    const bool isSideways = m_angle == 90 || m_angle == 270;
    m_manualFrame = isSideways ? cv::Size(op_height, op_width) : cv::Size(op_width, op_height);
}

Shot IVideoTread::shot() const
{
    Shot shot;
    shot.frame = isActive() ? currentFrame() : nullptr;
    shot.angle = m_angle;
    shot.cropMode = cutMode;
    shot.manualRect = m_manualRect;
    shot.manualFrame = m_manualFrame;
    shot.codeType = m_recogCodeType;
    shot.save = currentSaveOptions();
    return shot;
}

Shot IVideoTread::combinedShot(cv::Rect assistPlace) const
{
    Shot combined = shot();
    combined.isCombined = true;
    combined.assistPlace = assistPlace;
    if (!isOpenCamera || !isOpenCameraTwo || !videoTwoThread)
        combined.frame = nullptr;
    else
        combined.assist = videoTwoThread->currentFrame();
    return combined;
}

std::string IVideoTread::CaptureImage(const char *path, bool nameByCode)
{
    Shot shot = this->shot();
    shot.isNamedByCode = nameByCode;
    m_lastCapture = takeShot(shot, path);
    const std::string written = m_lastCapture.path();
    return QFile::exists(QString::fromStdString(written)) ? written : std::string();
}

int IVideoTread::capture(std::string path, FramePtr frame, int cropMode)
{
    Shot shot = this->shot();
    shot.frame = frame;
    shot.angle = frame->angle;
    shot.cropMode = cropMode;
    m_lastCapture = takeShot(shot, path);
    return 0;
}

std::string IVideoTread::CombineMainAssistImage(const char *path, int ax, int ay, int aw, int ah)
{
    Shot shot = combinedShot({ax, ay, aw, ah});
    shot.isNamedByCode = fNameType == NameByBarcode && currentFunMode != MultipdfMode;
    m_lastCapture = takeShot(shot, path);
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
