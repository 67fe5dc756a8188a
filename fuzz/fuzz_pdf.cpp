#include "fuzz/fuzz_input.h"
#include "imaging/pdf.h"

#include <QFile>

#include <opencv2/imgcodecs.hpp>

#include <vector>

namespace {

constexpr size_t kPatchBytes = 3;

std::vector<uint8_t> encoded(const char *ending)
{
    std::vector<uint8_t> bytes;
    cv::Mat picture(16, 20, CV_8UC3);
    cv::randu(picture, 0, 255);
    cv::imencode(ending, picture, bytes);
    return bytes;
}

// A sound file with single bytes replaced: place (two bytes) and value of each. An odd number of
// bytes also cuts the end off.
std::vector<uint8_t> patched(std::vector<uint8_t> bytes, const uint8_t *data, size_t size)
{
    for (size_t at = 0; at + kPatchBytes <= size; at += kPatchBytes)
        bytes[static_cast<size_t>(data[at] << 8 | data[at + 1]) % bytes.size()] = data[at + 2];
    if (size % kPatchBytes == 1)
        bytes.resize(bytes.size() * data[size - 1] / 256);
    return bytes;
}

} // namespace

// Takes any bytes, or a damaged picture, for a picture file, and makes a page of it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const std::vector<uint8_t> png = encoded(".png"), jpeg = encoded(".jpg");
    const QTemporaryDir &home = fuzzHome();
    const int kind = size > 0 ? data[0] & 3 : 0;
    const bool isPng = (kind & 1) != 0;
    std::vector<uint8_t> bytes(data, data + size);
    if (kind > 1)
        bytes = patched(isPng ? png : jpeg, data + 1, size - 1);

    const QString picture = home.filePath(isPng ? "page.png" : "page.jpg");
    QFile file(picture);
    if (!file.open(QIODevice::WriteOnly))
        std::abort();
    file.write(reinterpret_cast<const char *>(bytes.data()), static_cast<qint64>(bytes.size()));
    file.close();

    const QString path = home.filePath("out.pdf");
    QFile::remove(path);
    PdfDocument document(path.toStdString());
    const bool isAdded = document.addPage(picture.toStdString());
    const bool isSaved = document.save();
    if (isSaved != isAdded || isSaved != document.error().empty() || isSaved != QFile::exists(path))
        std::abort();
    return 0;
}
