#include "video/box_shrink.h"

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

/// The sums of one band of rows, averaged over blocks of `factor` columns.
void averageColumns(const uint16_t *sums, int width, int factor, int rows, QRgb *out)
{
    for (int x = 0; x < width; x += factor) {
        const int columns = std::min(factor, width - x);
        uint32_t r = 0, g = 0, b = 0;
        for (int i = 0; i < columns; ++i, sums += kChannels) {
            r += sums[0];
            g += sums[1];
            b += sums[2];
        }
        const uint32_t count = uint32_t(columns * rows);
        *out++ = qRgb(int((r + count / 2) / count), int((g + count / 2) / count),
                      int((b + count / 2) / count));
    }
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
