#include "read_picture.h"

#include "imaging/jpeg_size.h"
#include "imaging/png_picture.h"

#include <QFile>
#include <QFileInfo>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <memory>
#include <new>
#include <sys/stat.h>
#include <turbojpeg.h>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr int kReducedBy = 8;

QString readFile(const QString &path, Bytes &bytes)
{
    QFile file(path);
    struct stat status
    {
    };
    if (path.contains(QChar::ReplacementCharacter))
        return QStringLiteral("the file's name is not valid UTF-8");
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return QStringLiteral("there is no such file");
    if (!S_ISREG(status.st_mode))
        return QStringLiteral("this is no file but a pipe, a device or the like");
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("the file cannot be opened: %1").arg(file.errorString());
    bytes.resize(static_cast<size_t>(file.size()));
    if (bytes.empty())
        return QStringLiteral("the file is empty");
    if (file.read(reinterpret_cast<char *>(bytes.data()), file.size()) != file.size())
        return QStringLiteral("the file cannot be read: %1").arg(file.errorString());
    return {};
}

bool beginsWith(const Bytes &bytes, const char *text)
{
    const QByteArray begin(text);
    return bytes.size() > static_cast<size_t>(begin.size()) &&
           std::equal(begin.begin(), begin.end(), bytes.begin(),
                      [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; });
}

bool isJpeg(const Bytes &bytes)
{
    return beginsWith(bytes, "\xff\xd8\xff");
}

bool isTiff(const Bytes &bytes)
{
    return beginsWith(bytes, "II*") || beginsWith(bytes, "MM");
}

// The decoder fills up what is damaged and says nothing. Every coded bit is read for the smallest
// picture, too.
bool isDamagedJpeg(const Bytes &bytes)
{
    const std::unique_ptr<void, int (*)(tjhandle)> decoder(tjInitDecompress(), tjDestroy);
    int width = 0, height = 0, sampling = 0, colours = 0;
    if (!decoder || tjDecompressHeader3(decoder.get(), bytes.data(), bytes.size(), &width, &height,
                                        &sampling, &colours) != 0)
        return false;
    const auto reduced = [](int side) { return (side + kReducedBy - 1) / kReducedBy; };
    cv::Mat small(reduced(height), reduced(width), CV_8UC1);
    return colours != TJCS_CMYK && colours != TJCS_YCCK &&
           tjDecompress2(decoder.get(), bytes.data(), bytes.size(), small.data, small.cols,
                         static_cast<int>(small.step), small.rows, TJPF_GRAY, TJFLAG_FASTDCT) != 0;
}

cv::Mat decoded(const Bytes &bytes)
{
    if (isJpeg(bytes))
        return cv::imdecode(bytes, cv::IMREAD_COLOR);
    if (isPng(bytes)) {
        cv::Mat image = decodePng(bytes);
        if (image.channels() == 1 && !image.empty())
            cv::cvtColor(image, image, cv::COLOR_GRAY2BGR);
        return image;
    }
    const cv::Mat whole = cv::imdecode(bytes, cv::IMREAD_UNCHANGED);
    return whole.type() == CV_8UC4 ? onWhite(whole) : cv::imdecode(bytes, cv::IMREAD_COLOR);
}

// Empty, with the cause in `error`, when the bytes are no picture.
cv::Mat decode(const QString &path, const Bytes &bytes, QString &error)
{
    cv::Mat image;
    try {
        image = decoded(bytes);
        if (image.empty())
            error = cv::haveImageReader(path.toStdString())
                        ? QStringLiteral("the picture is damaged")
                        : QStringLiteral("this is no picture of a kind that can be read");
    } catch (const cv::Exception &exception) {
        error = exception.func == "validateInputImageSize"
                    ? QStringLiteral("the picture is too large to be read")
                : exception.code == cv::Error::StsNoMem ? QStringLiteral("not enough memory")
                                                        : QStringLiteral("the picture is damaged");
    } catch (const std::bad_alloc &) {
        error = QStringLiteral("not enough memory");
    }
    return image;
}

void turn(cv::Mat &image, int degrees)
{
    if (degrees != 0)
        cv::rotate(image, image,
                   degrees == 90    ? cv::ROTATE_90_CLOCKWISE
                   : degrees == 180 ? cv::ROTATE_180
                                    : cv::ROTATE_90_COUNTERCLOCKWISE);
}

} // namespace

ReadPicture readPicture(const QString &path, int degrees)
{
    ReadPicture picture;
    Bytes bytes;
    picture.error = readFile(path, bytes);
    if (!picture.error.isEmpty())
        return picture;
    if (isJpeg(bytes)) {
        bytes.resize(jpegLength(bytes)); // a phone's video may stand behind the picture
        if (bytes.empty()) {
            picture.error =
                QStringLiteral("the picture is cut off: the end of its file is missing");
            return picture;
        }
        if (isDamagedJpeg(bytes))
            picture.note = QStringLiteral("the picture is damaged, a part of it may be missing");
    }
    picture.rgb = decode(path, bytes, picture.error);
    if (picture.rgb.empty())
        return picture;
    const size_t pages = isTiff(bytes) ? cv::imcount(path.toStdString(), cv::IMREAD_COLOR) : 1;
    if (pages > 1)
        picture.note = QStringLiteral("only the first of %1 pages is taken").arg(pages);
    turn(picture.rgb, degrees);
    cv::cvtColor(picture.rgb, picture.rgb, cv::COLOR_BGR2RGB);
    return picture;
}
