#include "imaging/jpeg_encoder.h"

#include <opencv2/core/utility.hpp>
#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <atomic>
#include <optional>

namespace {

using Bytes = std::vector<uchar>;

constexpr int kUnitSide = 16; // pixels; color is stored at half the resolution
constexpr int kBandsMax = 8;  // restart markers are numbered 0 to 7
constexpr int kIntervalMax = 65535;
constexpr int kBandUnitRowsMin = 8; // smaller bands are not worth a thread

struct Bands
{
    int count = 1;
    int rows = 0;     // of every band but the last, pixels
    int interval = 0; // coding units of a band
};

Bands bandsOf(cv::Size size)
{
    const int unitRows = (size.height + kUnitSide - 1) / kUnitSide;
    const int unitColumns = (size.width + kUnitSide - 1) / kUnitSide;
    const int wanted =
        std::max(1, std::min({cv::getNumThreads(), kBandsMax, unitRows / kBandUnitRowsMin}));
    const int bandUnitRows = (unitRows + wanted - 1) / wanted;
    Bands bands;
    bands.rows = bandUnitRows * kUnitSide;
    bands.interval = bandUnitRows * unitColumns;
    if (bands.interval <= kIntervalMax)
        bands.count = (unitRows + bandUnitRows - 1) / bandUnitRows;
    return bands;
}

struct Layout
{
    size_t height; // where the frame header holds the picture's height
    size_t data;   // first coded byte
    size_t end;    // behind the last coded byte
};

// Empty when the file is not laid out as expected: three components, colour halved.
std::optional<Layout> layoutOf(const Bytes &jpeg)
{
    constexpr uchar kFrame = 0xC0, kScan = 0xDA;
    constexpr size_t kFrameBytes = 19;
    Layout layout{0, 0, jpeg.size() < 4 ? 0 : jpeg.size() - 2};
    for (size_t at = 2; at + 4 < layout.end;) {
        const uchar marker = jpeg[at + 1];
        const size_t next = at + 2 + static_cast<size_t>(jpeg[at + 2] << 8 | jpeg[at + 3]);
        if (jpeg[at] != 0xFF || next > layout.end)
            break;
        if (marker == kFrame && next - at == kFrameBytes && jpeg[at + 11] == 0x22)
            layout.height = at + 5;
        if (marker == kScan) {
            layout.data = next;
            break;
        }
        at = next;
    }
    if (layout.height == 0 || layout.data == 0)
        return std::nullopt;
    return layout;
}

// False when the bands do not fit together.
bool join(const std::vector<Bytes> &bands, int height, Bytes &bytes)
{
    bytes.clear();
    for (size_t i = 0; i < bands.size(); ++i) {
        const std::optional<Layout> layout = layoutOf(bands[i]);
        if (!layout)
            return false;
        const auto begin = bands[i].begin();
        if (i == 0) {
            bytes.insert(bytes.end(), begin, begin + static_cast<std::ptrdiff_t>(layout->data));
            bytes[layout->height] = static_cast<uchar>(height >> 8);
            bytes[layout->height + 1] = static_cast<uchar>(height & 0xFF);
        } else {
            bytes.insert(bytes.end(), {0xFF, static_cast<uchar>(0xD0 + i - 1)});
        }
        bytes.insert(bytes.end(), begin + static_cast<std::ptrdiff_t>(layout->data),
                     begin + static_cast<std::ptrdiff_t>(layout->end));
    }
    bytes.insert(bytes.end(), {0xFF, 0xD9}); // end of image
    return true;
}

// What a JPEG's two bytes for its height can say; more is for the encoder to refuse.
constexpr int kRowsMax = 65500;

bool encodeBands(const cv::Mat &image, const Bands &bands, std::vector<int> parameters,
                 Bytes &bytes)
{
    parameters.insert(parameters.end(), {cv::IMWRITE_JPEG_RST_INTERVAL, bands.interval});
    std::vector<Bytes> parts(static_cast<size_t>(bands.count));
    std::atomic<bool> good{true};
    cv::parallel_for_(
        cv::Range(0, bands.count),
        [&](const cv::Range &range) {
            for (int i = range.start; i < range.end; ++i) {
                const cv::Range rows(i * bands.rows, std::min((i + 1) * bands.rows, image.rows));
                if (!cv::imencode(".jpg", image.rowRange(rows), parts[static_cast<size_t>(i)],
                                  parameters))
                    good = false;
            }
        },
        bands.count);
    return good && join(parts, image.rows, bytes);
}

} // namespace

bool encodeJpeg(const cv::Mat &image, int quality, std::vector<uchar> &bytes)
{
    std::vector<int> parameters;
    if (quality >= 0)
        parameters = {cv::IMWRITE_JPEG_QUALITY, quality};
    const Bands bands = bandsOf(image.size());
    if (image.type() == CV_8UC3 && bands.count > 1 && image.rows <= kRowsMax &&
        encodeBands(image, bands, parameters, bytes))
        return true;
    return cv::imencode(".jpg", image, bytes, parameters);
}
