#include "imaging/pdf_picture.h"

#include "imaging/jpeg_size.h"
#include "imaging/path_parts.h"

#include <QFile>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdint>
#include <cstring>

namespace {

constexpr int kSideMin = 3, kSideMax = 14400; // pixels; the PDF format's page limits in points
constexpr double kSixteenToEightBits = 1.0 / 257;

using Bytes = std::vector<unsigned char>;

int bigEndian(const Bytes &bytes, size_t at, size_t count)
{
    unsigned value = 0;
    for (size_t i = 0; i < count; ++i)
        value = value << 8 | bytes[at + i];
    return static_cast<int>(value);
}

std::string sizeProblem(int width, int height)
{
    if (width >= kSideMin && width <= kSideMax && height >= kSideMin && height <= kSideMax)
        return {};
    return "a PDF page of " + std::to_string(width) + " x " + std::to_string(height) +
           " pixels is not possible, sides must be " + std::to_string(kSideMin) + " to " +
           std::to_string(kSideMax);
}

std::string checkJpeg(PdfPicture &picture)
{
    const cv::Size size = jpegSize(picture.bytes);
    if (size.empty())
        return "damaged JPEG data";
    picture.width = size.width;
    picture.height = size.height;
    return sizeProblem(picture.width, picture.height);
}

cv::Mat onWhite(const cv::Mat &bgra)
{
    cv::Mat rgb(bgra.size(), CV_8UC3);
    for (int y = 0; y < bgra.rows; ++y) {
        const auto *from = bgra.ptr<cv::Vec4b>(y);
        auto *to = rgb.ptr<cv::Vec3b>(y);
        for (int x = 0; x < bgra.cols; ++x) {
            for (int c = 0; c < 3; ++c)
                to[x][c] = static_cast<uchar>(
                    (from[x][2 - c] * from[x][3] + 255 * (255 - from[x][3]) + 127) / 255);
        }
    }
    return rgb;
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
        at += kChunkFrame + static_cast<uint32_t>(bigEndian(png, at, 4));
    if (at + kChunkFrame + 2 > png.size() || !isHere("tRNS"))
        return;
    const int depth = png[kDepthAt], white = gray.depth() == CV_16U ? 0xFFFF : 0xFF;
    const int64_t level = int64_t{bigEndian(png, at + 8, 2)} * white / ((1 << depth) - 1);
    gray.setTo(white, gray == static_cast<double>(level));
}

std::string decodePng(PdfPicture &picture)
{
    const std::string damaged = "damaged PNG data";
    static constexpr unsigned char kSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    constexpr size_t kHeaderBytes = 24;
    if (picture.bytes.size() < kHeaderBytes ||
        std::memcmp(picture.bytes.data(), kSignature, sizeof kSignature) != 0)
        return damaged;
    const std::string problem =
        sizeProblem(bigEndian(picture.bytes, 16, 4), bigEndian(picture.bytes, 20, 4));
    if (!problem.empty())
        return problem;

    cv::Mat image = cv::imdecode(picture.bytes, cv::IMREAD_UNCHANGED);
    if (image.empty())
        return damaged;
    if (image.channels() == 1)
        showPaperThroughGray(picture.bytes, image);
    if (image.depth() == CV_16U)
        image.convertTo(image, CV_8U, kSixteenToEightBits);
    if (image.channels() == 4)
        image = onWhite(image);
    else if (image.channels() == 3)
        cv::cvtColor(image, image, cv::COLOR_BGR2RGB);
    picture.encoding = image.channels() == 1 ? PdfPicture::Gray : PdfPicture::Rgb;
    picture.width = image.cols;
    picture.height = image.rows;
    picture.bytes.assign(image.data, image.data + image.total() * image.elemSize());
    return {};
}

} // namespace

std::string readPdfPicture(const std::string &path, PdfPicture &picture)
{
    const std::string ending = fileEnding(path);
    if (ending != ".jpg" && ending != ".png")
        return "only JPG and PNG pictures can become PDF pages";
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString().toStdString();
    picture.bytes.resize(static_cast<size_t>(file.size()));
    if (file.read(reinterpret_cast<char *>(picture.bytes.data()), file.size()) != file.size())
        return file.errorString().toStdString();
    try {
        if (ending == ".png")
            return decodePng(picture);
    } catch (const std::exception &exception) {
        return exception.what();
    }
    picture.encoding = PdfPicture::Jpeg;
    return checkJpeg(picture);
}
