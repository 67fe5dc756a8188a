#include "video/picture_converter.h"

#include "video/rotate.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cstring>
#include <utility>

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

namespace {

constexpr int kStripRows = 64;  // when turned sideways, just whole cache lines of the target
constexpr int kColumnStep = 16; // the converter may leave out the columns of a broken last step

// The full-range twins of the 8-bit formats are deprecated: the same layout, told apart by the
// colour range.
AVPixelFormat plainFormat(int format, bool &fullRange)
{
    fullRange = true;
    switch (format) {
    case AV_PIX_FMT_YUVJ420P:
        return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P:
        return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P:
        return AV_PIX_FMT_YUV444P;
    case AV_PIX_FMT_YUVJ440P:
        return AV_PIX_FMT_YUV440P;
    case AV_PIX_FMT_YUVJ411P:
        return AV_PIX_FMT_YUV411P;
    default:
        fullRange = false;
        return static_cast<AVPixelFormat>(format);
    }
}

int roundedUp(int value, int step)
{
    return (value + step - 1) / step * step;
}

// Puts a converted strip where it belongs in the turned picture.
void placeStrip(cv::Mat &pixels, const RotateStrip &strip, int angle)
{
    if (angle != 0) {
        rotateStrip(pixels.data, strip, angle);
        return;
    }
    for (int row = 0; row < strip.rows; ++row)
        std::memcpy(pixels.ptr(strip.top + row), strip.src + row * strip.stride,
                    static_cast<size_t>(strip.width) * 3);
}

} // namespace

PictureConverter::~PictureConverter()
{
    sws_freeContext(m_scaler);
}

bool PictureConverter::prepare(const AVFrame &picture)
{
    if (m_scaler && picture.width == m_width && picture.height == m_height &&
        picture.format == m_format)
        return true;
    sws_freeContext(std::exchange(m_scaler, nullptr));
    m_width = picture.width;
    m_height = picture.height;
    m_format = picture.format;
    bool fullRange = false;
    const AVPixelFormat format = plainFormat(picture.format, fullRange);
    // These two are converted row by row without a filter, given an even height.
    m_rowsAreIndependent =
        m_height % 2 == 0 && (format == AV_PIX_FMT_YUV420P || format == AV_PIX_FMT_YUV422P);
    const int rows = m_rowsAreIndependent ? kStripRows : m_height;
    try {
        m_strip.create(rows, roundedUp(m_width, kColumnStep) + kColumnStep, CV_8UC3);
    } catch (const cv::Exception &) {
        return false;
    }
    m_scaler = sws_getContext(m_width, m_height, format, m_width, m_height, AV_PIX_FMT_RGB24,
                              SWS_BICUBIC, nullptr, nullptr, nullptr);
    if (!m_scaler)
        return false;
    if (fullRange) {
        const int *coefficients = sws_getCoefficients(SWS_CS_DEFAULT);
        sws_setColorspaceDetails(m_scaler, coefficients, 1, coefficients, 1, 0, 1 << 16, 1 << 16);
    }
    return true;
}

bool PictureConverter::convert(const AVFrame &picture, cv::Mat &pixels, int angle)
{
    const bool sideways = angle == 90 || angle == 270;
    const cv::Size turned = sideways ? cv::Size(picture.height, picture.width)
                                     : cv::Size(picture.width, picture.height);
    if (pixels.size() != turned || pixels.type() != CV_8UC3 || !pixels.isContinuous() ||
        !prepare(picture))
        return false;
    if (angle == 0 && m_width % kColumnStep == 0) {
        unsigned char *target[] = {pixels.data};
        const int stride[] = {m_width * 3};
        return sws_scale(m_scaler, picture.data, picture.linesize, 0, m_height, target, stride) ==
               m_height;
    }
    unsigned char *target[] = {m_strip.data};
    const int stride[] = {static_cast<int>(m_strip.step)};
    const int chromaShift =
        av_pix_fmt_desc_get(static_cast<AVPixelFormat>(picture.format))->log2_chroma_h;
    // Taken so that the target is written from left to right, the way memory is fetched ahead.
    const bool bottomUp = angle == 90;
    const int strips = (m_height + m_strip.rows - 1) / m_strip.rows;
    for (int k = 0; k < strips; ++k) {
        const int top = (bottomUp ? strips - 1 - k : k) * m_strip.rows;
        const int rows = std::min(m_strip.rows, m_height - top);
        const uint8_t *planes[AV_NUM_DATA_POINTERS] = {};
        for (int plane = 0; plane < 4 && picture.data[plane]; ++plane) {
            const int shift = plane == 1 || plane == 2 ? chromaShift : 0;
            planes[plane] = picture.data[plane] + ptrdiff_t{top >> shift} * picture.linesize[plane];
        }
        if (sws_scale(m_scaler, planes, picture.linesize, 0, rows, target, stride) != rows)
            return false;
        placeStrip(pixels, {m_strip.data, stride[0], top, rows, m_width, m_height}, angle);
    }
    return true;
}
