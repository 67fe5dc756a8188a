#include "imaging/pdf_picture.h"

#include "imaging/path_parts.h"

#include <QFile>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

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

bool isStartOfFrame(int marker)
{
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

// Walks the segments up to the image data, whose end marker must be there: a cut-off file would
// otherwise become a page with a gray rest.
std::string checkJpeg(PdfPicture &picture)
{
    const Bytes &bytes = picture.bytes;
    const std::string damaged = "damaged JPEG data";
    if (bytes.size() < 4 || bytes[0] != 0xFF || bytes[1] != 0xD8)
        return damaged;
    for (size_t at = 2; at + 4 <= bytes.size();) {
        const int marker = bytes[at + 1];
        const auto length = static_cast<size_t>(bigEndian(bytes, at + 2, 2));
        if (bytes[at] != 0xFF || length < 2 || at + 2 + length > bytes.size())
            return damaged;
        if (isStartOfFrame(marker) && length >= 8) {
            picture.height = bigEndian(bytes, at + 5, 2);
            picture.width = bigEndian(bytes, at + 7, 2);
        }
        at += 2 + length;
        if (marker == 0xDA) { // start of scan
            for (size_t end = bytes.size() - 2; end >= at; --end) {
                if (bytes[end] == 0xFF && bytes[end + 1] == 0xD9)
                    return sizeProblem(picture.width, picture.height);
            }
            return damaged;
        }
    }
    return damaged;
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
