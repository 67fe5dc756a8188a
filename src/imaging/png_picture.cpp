#include "imaging/png_picture.h"

#include <opencv2/core/utility.hpp>
#include <opencv2/imgcodecs.hpp>

#include <cstdint>
#include <cstring>

namespace {

constexpr double kSixteenToEightBits = 1.0 / 257;

using Bytes = std::vector<unsigned char>;

unsigned bigEndian(const Bytes &bytes, size_t at, size_t count)
{
    unsigned value = 0;
    for (size_t i = 0; i < count; ++i)
        value = value << 8 | bytes[at + i];
    return value;
}

// The decoder leaves out that one gray level may stand for "transparent": paper shows there.
void showPaperThroughGray(const Bytes &png, cv::Mat &gray)
{
    constexpr size_t kDepthAt = 24, kColourTypeAt = 25, kFirstChunkAt = 8, kChunkFrame = 12;
    if (png.size() <= kColourTypeAt || png[kColourTypeAt] != 0)
        return;
    size_t at = kFirstChunkAt;
    const auto isHere = [&](const char *type) { return std::memcmp(&png[at + 4], type, 4) == 0; };
    while (at + kChunkFrame <= png.size() && !isHere("tRNS") && !isHere("IDAT"))
        at += kChunkFrame + bigEndian(png, at, 4);
    if (at + kChunkFrame + 2 > png.size() || !isHere("tRNS"))
        return;
    const int depth = png[kDepthAt], white = gray.depth() == CV_16U ? 0xFFFF : 0xFF;
    const int64_t level = int64_t{bigEndian(png, at + 8, 2)} * white / ((1 << depth) - 1);
    gray.setTo(white, gray == static_cast<double>(level));
}

} // namespace

cv::Mat onWhite(const cv::Mat &bgra)
{
    cv::Mat bgr(bgra.size(), CV_8UC3);
    cv::parallel_for_(cv::Range(0, bgra.rows), [&](const cv::Range &rows) {
        for (int y = rows.start; y < rows.end; ++y) {
            const uchar *from = bgra.ptr(y);
            uchar *to = bgr.ptr(y);
            for (int x = 0; x < bgra.cols; ++x, from += 4, to += 3) {
                const int paper = 255 * (255 - from[3]) + 127;
                for (int c = 0; c < 3; ++c)
                    to[c] = static_cast<uchar>((from[c] * from[3] + paper) / 255);
            }
        }
    });
    return bgr;
}

bool isPng(const std::vector<unsigned char> &bytes)
{
    static constexpr unsigned char kSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    return bytes.size() > sizeof kSignature &&
           std::memcmp(bytes.data(), kSignature, sizeof kSignature) == 0;
}

cv::Mat decodePng(const std::vector<unsigned char> &bytes)
{
    if (!isPng(bytes))
        return {};
    cv::Mat image = cv::imdecode(bytes, cv::IMREAD_UNCHANGED);
    if (image.channels() == 1 && !image.empty())
        showPaperThroughGray(bytes, image);
    if (image.depth() == CV_16U)
        image.convertTo(image, CV_8U, kSixteenToEightBits);
    return image.channels() == 4 ? onWhite(image) : image;
}
