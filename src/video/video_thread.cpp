#include "video/video_thread.h"

#include "app/state.h"

#include <QFile>

IVideoTread *videoThread = nullptr;

IVideoTread::IVideoTread(QObject *parent)
    : CameraThread({"openCamera start", "openCamera end", "closeCamera start", "closeCamera end",
                    "videoThread->end"},
                   isOpenCamera, parent)
{
}

IVideoTread::~IVideoTread()
{
    shutDown();
}

void IVideoTread::prepareStream()
{
    m_outlines.clear();
}

// Outlines of an earlier frame hold only for frames that lie the same way.
void IVideoTread::keepFittingOutlines(const Frame &frame, int angle)
{
    const cv::Size size = frame.pixels.size();
    if (size != m_outlineFrame || angle != m_outlineAngle)
        m_outlines.clear();
    m_outlineFrame = size;
    m_outlineAngle = angle;
}

FramePtr IVideoTread::finishFrame(Frame &frame, FramePool &pool, const FrameTreatment &treatment)
{
    keepFittingOutlines(frame, treatment.angle);
    const int mode = cutMode;
    if (mode != AutomaticCrop && mode != MultiGraphCrop) {
        m_outlines.clear();
        return nullptr;
    }
    const std::shared_ptr<Frame> marked =
        treatment.preview ? pool.acquire(frame.width, frame.height) : nullptr;
    if (marked) {
        frame.pixels.copyTo(marked->pixels);
        DrawingEdge(marked->pixels.data, frame.width, frame.height, mode);
    } else {
        findOutlines(frame.pixels, mode);
    }
    frame.outlines = m_outlines;
    return marked;
}

std::vector<Outline> IVideoTread::findOutlines(const cv::Mat &rgb, int cropMode)
{
    std::optional<Detection> detection = m_finder.find(rgb, cropMode);
    if (!detection)
        return {};
    m_outlines = std::move(detection->outlines);
    return std::move(detection->drawn);
}

void IVideoTread::DrawingEdge(unsigned char *frame, int width, int height, int cropMode)
{
    cv::Mat rgb(height, width, CV_8UC3, frame);
    drawOutlines(rgb, findOutlines(rgb, cropMode));
}
