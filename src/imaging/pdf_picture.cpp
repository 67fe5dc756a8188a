#include "imaging/pdf_picture.h"

#include "imaging/jpeg_size.h"
#include "imaging/path_parts.h"
#include "imaging/png_picture.h"

#include <QFile>

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <new>

namespace {

constexpr int kSideMin = 3, kSideMax = 14400; // pixels; the PDF format's page limits in points

using Bytes = std::vector<unsigned char>;

int bigEndian(const Bytes &bytes, size_t at, size_t count)
{
    unsigned value = 0;
    for (size_t i = 0; i < count; ++i)
        value = value << 8 | bytes[at + i];
    return static_cast<int>(value);
}

std::string checkJpeg(PdfPicture &picture)
{
    const cv::Size size = jpegSize(picture.bytes);
    if (size.empty())
        return "damaged JPEG data";
    picture.bytes.resize(jpegLength(picture.bytes)); // cameras put videos behind it
    picture.width = size.width;
    picture.height = size.height;
    return pdfPageProblem(size);
}

std::string readPng(PdfPicture &picture)
{
    constexpr size_t kHeaderBytes = 24;
    if (picture.bytes.size() < kHeaderBytes)
        return "damaged PNG data";
    const std::string problem =
        pdfPageProblem({bigEndian(picture.bytes, 16, 4), bigEndian(picture.bytes, 20, 4)});
    if (!problem.empty() && isPng(picture.bytes))
        return problem;
    cv::Mat image = decodePng(picture.bytes);
    if (image.empty())
        return "damaged PNG data";
    if (image.channels() == 3)
        cv::cvtColor(image, image, cv::COLOR_BGR2RGB);
    picture.encoding = image.channels() == 1 ? PdfPicture::Gray : PdfPicture::Rgb;
    picture.width = image.cols;
    picture.height = image.rows;
    picture.bytes.assign(image.data, image.data + image.total() * image.elemSize());
    return {};
}

} // namespace

std::string pdfPageProblem(cv::Size size)
{
    if (std::min(size.width, size.height) >= kSideMin &&
        std::max(size.width, size.height) <= kSideMax)
        return {};
    return "a PDF page of " + std::to_string(size.width) + " x " + std::to_string(size.height) +
           " pixels is not possible, sides must be " + std::to_string(kSideMin) + " to " +
           std::to_string(kSideMax);
}

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
            return readPng(picture);
    } catch (const std::exception &exception) {
        return dynamic_cast<const std::bad_alloc *>(&exception) ? "not enough memory"
                                                                : "damaged PNG data";
    }
    picture.encoding = PdfPicture::Jpeg;
    return checkJpeg(picture);
}
