#include "video/box_shrink.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

constexpr int kChannels = 3;

void addRow(uint16_t *sums, const uchar *row, int count)
{
    for (int i = 0; i < count; ++i)
        sums[i] = uint16_t(sums[i] + row[i]);
}

/// Divides by a fixed count without dividing: sums below 2^24, result at most one off.
class Averager
{
public:
    explicit Averager(int count)
        : m_half(uint32_t(count) / 2)
        , m_reciprocal(((uint64_t(1) << 32) + uint64_t(count) - 1) / uint64_t(count))
    {
    }
    int operator()(uint32_t sum) const { return int(((sum + m_half) * m_reciprocal) >> 32); }

private:
    uint64_t m_half;
    uint64_t m_reciprocal;
};

QRgb averageBlock(const uint16_t *sums, int columns, const Averager &average)
{
    uint32_t r = 0, g = 0, b = 0;
    for (int i = 0; i < columns; ++i, sums += kChannels) {
        r += sums[0];
        g += sums[1];
        b += sums[2];
    }
    return qRgb(average(r), average(g), average(b));
}

/// The sums of one band of rows, averaged over blocks of `factor` columns.
void averageColumns(const uint16_t *sums, int width, int factor, int rows, QRgb *out)
{
    const Averager whole(factor * rows);
    const int wholeBlocks = width / factor;
    for (int i = 0; i < wholeBlocks; ++i)
        *out++ = averageBlock(sums + i * factor * kChannels, factor, whole);
    if (const int rest = width % factor)
        *out = averageBlock(sums + wholeBlocks * factor * kChannels, rest, Averager(rest * rows));
}

} // namespace

void boxShrink(const QImage &source, int factor, QImage &target)
{
    const QImage rgb = source.format() == QImage::Format_RGB888
                           ? source
                           : source.convertToFormat(QImage::Format_RGB888);
    const QSize size((rgb.width() + factor - 1) / factor, (rgb.height() + factor - 1) / factor);
    if (target.size() != size || target.format() != QImage::Format_RGB32)
        target = QImage(size, QImage::Format_RGB32);
    if (factor == 1) {
        const cv::Mat pixels(rgb.height(), rgb.width(), CV_8UC3, const_cast<uchar *>(rgb.bits()),
                             static_cast<size_t>(rgb.bytesPerLine()));
        cv::Mat converted(pixels.size(), CV_8UC4, target.bits(),
                          static_cast<size_t>(target.bytesPerLine()));
        cv::cvtColor(pixels, converted, cv::COLOR_RGB2BGRA);
        return;
    }

    const int count = rgb.width() * kChannels;
    std::vector<uint16_t> sums(static_cast<size_t>(count));
    for (int y = 0, outRow = 0; y < rgb.height(); y += factor, ++outRow) {
        const int rows = std::min(factor, rgb.height() - y);
        std::fill(sums.begin(), sums.end(), uint16_t(0));
        for (int i = 0; i < rows; ++i)
            addRow(sums.data(), rgb.constScanLine(y + i), count);
        averageColumns(sums.data(), rgb.width(), factor, rows,
                       reinterpret_cast<QRgb *>(target.scanLine(outRow)));
    }
}
