#include "imaging/gaussian_blur.h"

#include "imaging/wide_vectors.h"

#include <opencv2/core.hpp>

#include <array>
#include <cstdint>
#include <vector>

namespace {

// What cv::GaussianBlur makes of the bell curve in 256ths; beyond nine pixels nothing is left.
constexpr int kRadius = 9;
constexpr int kWeights[kRadius + 1] = {30, 28, 25, 20, 15, 11, 6, 4, 2, 2};
constexpr int kBits = 16; // of both passes together

using Rows = std::array<const uchar *, 2 * kRadius + 1>;

// Sums in 256ths; 255 * 256 is the most. Without the promise that nothing overlaps the compiler
// would not use vectors.
PICTOR_WIDE_VECTORS
void blurDown(const Rows &rows, uint16_t *__restrict to, int width)
{
    const uchar *const centre = rows[kRadius];
    for (int x = 0; x < width; ++x) {
        auto sum = static_cast<uint16_t>(centre[x] * kWeights[0]);
        for (size_t k = 1; k <= kRadius; ++k)
            sum = static_cast<uint16_t>(sum + (rows[kRadius - k][x] + rows[kRadius + k][x]) *
                                                  kWeights[k]);
        to[x] = sum;
    }
}

// `sums` goes on for the radius to both sides.
PICTOR_WIDE_VECTORS
void blurAcross(const uint16_t *sums, uchar *__restrict to, int width)
{
    for (int x = 0; x < width; ++x) {
        int sum = (1 << (kBits - 1)) + sums[x] * kWeights[0];
        for (int k = 1; k <= kRadius; ++k)
            sum += (sums[x - k] + sums[x + k]) * kWeights[k];
        to[x] = static_cast<uchar>(sum >> kBits);
    }
}

int mirrored(int position, int length)
{
    return cv::borderInterpolate(position, length, cv::BORDER_REFLECT_101);
}

} // namespace

void gaussianBlur21(const cv::Mat &gray, cv::Mat &blurred)
{
    blurred.create(gray.size(), CV_8UC1);
    const int width = gray.cols;
    std::vector<uint16_t> padded(static_cast<size_t>(width + 2 * kRadius));
    uint16_t *const sums = padded.data() + kRadius;
    for (int y = 0; y < gray.rows; ++y) {
        Rows rows{};
        int from = y - kRadius;
        for (const uchar *&row : rows)
            row = gray.ptr(mirrored(from++, gray.rows));
        blurDown(rows, sums, width);
        for (int k = 1; k <= kRadius; ++k) {
            sums[-k] = sums[mirrored(-k, width)];
            sums[width - 1 + k] = sums[mirrored(width - 1 + k, width)];
        }
        blurAcross(sums, blurred.ptr(y), width);
    }
}
