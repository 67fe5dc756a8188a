#include "imaging/colour_effects.h"

#include "imaging/trim.h"

#include <opencv2/core/hal/intrin.hpp>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cfloat>
#include <mutex>

namespace {

// Byte 0 of a pixel is blue: it takes the weight that textbooks give to red, on purpose.
constexpr double kWeight0 = 0.299, kWeight1 = 0.587, kWeight2 = 0.114;
constexpr int kChannels = 3;
constexpr int kLevels = 256;
constexpr int kOptimizationBlock = 179; // pixels
constexpr double kOptimizationOffset = 19.0;
constexpr int kWhite = 255;

using Histogram = std::array<int, kLevels>;

uchar grayOf(const uchar *pixel)
{
    return static_cast<uchar>(kWeight0 * pixel[0] + kWeight1 * pixel[1] + kWeight2 * pixel[2]);
}

#if CV_SIMD128_64F
constexpr int kLanes = cv::v_uint8x16::nlanes;

struct Weights
{
    cv::v_float64x2 weight0 = cv::v_setall_f64(kWeight0);
    cv::v_float64x2 weight1 = cv::v_setall_f64(kWeight1);
    cv::v_float64x2 weight2 = cv::v_setall_f64(kWeight2);

    // The same operations in the same order as grayOf, so that every colour rounds alike.
    cv::v_float64x2 sum(const cv::v_float64x2 &c0, const cv::v_float64x2 &c1,
                        const cv::v_float64x2 &c2) const
    {
        return weight0 * c0 + weight1 * c1 + weight2 * c2;
    }

    cv::v_int32x4 gray(const cv::v_uint32x4 &u0, const cv::v_uint32x4 &u1,
                       const cv::v_uint32x4 &u2) const
    {
        using namespace cv;
        const v_int32x4 c0 = v_reinterpret_as_s32(u0);
        const v_int32x4 c1 = v_reinterpret_as_s32(u1);
        const v_int32x4 c2 = v_reinterpret_as_s32(u2);
        const v_int32x4 low = v_trunc(sum(v_cvt_f64(c0), v_cvt_f64(c1), v_cvt_f64(c2)));
        const v_int32x4 high =
            v_trunc(sum(v_cvt_f64_high(c0), v_cvt_f64_high(c1), v_cvt_f64_high(c2)));
        return v_combine_low(low, high);
    }

    cv::v_uint16x8 gray(const cv::v_uint16x8 &s0, const cv::v_uint16x8 &s1,
                        const cv::v_uint16x8 &s2) const
    {
        using namespace cv;
        v_uint32x4 a0, b0, a1, b1, a2, b2;
        v_expand(s0, a0, b0);
        v_expand(s1, a1, b1);
        v_expand(s2, a2, b2);
        return v_pack_u(gray(a0, a1, a2), gray(b0, b1, b2));
    }

    cv::v_uint8x16 gray(const uchar *pixels) const
    {
        using namespace cv;
        v_uint8x16 p0, p1, p2;
        v_load_deinterleave(pixels, p0, p1, p2);
        v_uint16x8 a0, b0, a1, b1, a2, b2;
        v_expand(p0, a0, b0);
        v_expand(p1, a1, b1);
        v_expand(p2, a2, b2);
        return v_pack(gray(a0, a1, a2), gray(b0, b1, b2));
    }
};
#endif

void grayRow(const uchar *pixels, uchar *gray, int width)
{
    int x = 0;
#if CV_SIMD128_64F
    const Weights weights;
    for (; x + kLanes <= width; x += kLanes)
        cv::v_store(gray + x, weights.gray(pixels + x * kChannels));
#endif
    for (; x < width; ++x)
        gray[x] = grayOf(pixels + x * kChannels);
}

void spreadRow(const uchar *gray, uchar *pixels, int width)
{
    int x = 0;
#if CV_SIMD128_64F
    for (; x + kLanes <= width; x += kLanes) {
        const cv::v_uint8x16 value = cv::v_load(gray + x);
        cv::v_store_interleave(pixels + x * kChannels, value, value, value);
    }
#endif
    for (; x < width; ++x)
        std::fill_n(pixels + x * kChannels, kChannels, gray[x]);
}

int otsuOf(const Histogram &histogram, double count)
{
    double mean = 0;
    for (int i = 0; i < kLevels; ++i)
        mean += i * static_cast<double>(histogram[static_cast<size_t>(i)]);
    mean /= count;

    double below = 0, meanBelow = 0, best = 0;
    int threshold = 0;
    for (int i = 0; i < kLevels; ++i) {
        const double share = histogram[static_cast<size_t>(i)] / count;
        meanBelow *= below;
        below += share;
        const double above = 1. - below;
        if (std::min(below, above) < FLT_EPSILON || std::max(below, above) > 1. - FLT_EPSILON)
            continue;
        meanBelow = (meanBelow + i * share) / below;
        const double meanAbove = (mean - below * meanBelow) / above;
        const double variance = below * above * (meanBelow - meanAbove) * (meanBelow - meanAbove);
        if (variance > best) {
            best = variance;
            threshold = i;
        }
    }
    return threshold;
}

// Neighbouring pixels are often equal; four tables keep their counts from waiting for each other.
void count(const uchar *gray, int width, std::array<Histogram, 4> &tables)
{
    int x = 0;
    for (; x + 4 <= width; x += 4) {
        for (size_t i = 0; i < tables.size(); ++i)
            ++tables[i][gray[x + static_cast<int>(i)]];
    }
    for (; x < width; ++x)
        ++tables[0][gray[x]];
}

// cv::adaptiveThreshold by the local mean in bands, one for each thread: each takes as many rows
// beyond its own as the mean reaches.
cv::Mat aboveLocalMean(const cv::Mat &gray)
{
    cv::Mat result(gray.size(), CV_8UC1);
    const int bands = std::min(cv::getNumThreads(), std::max(1, gray.rows / kOptimizationBlock));
    cv::parallel_for_(cv::Range(0, bands), [&](const cv::Range &range) {
        for (int i = range.start; i < range.end; ++i) {
            const cv::Range own(gray.rows * i / bands, gray.rows * (i + 1) / bands);
            const cv::Range seen(std::max(own.start - kOptimizationBlock / 2, 0),
                                 std::min(own.end + kOptimizationBlock / 2, gray.rows));
            cv::Mat band;
            cv::adaptiveThreshold(gray.rowRange(seen), band, kWhite, cv::ADAPTIVE_THRESH_MEAN_C,
                                  cv::THRESH_BINARY, kOptimizationBlock, kOptimizationOffset);
            band.rowRange(own.start - seen.start, own.end - seen.start)
                .copyTo(result.rowRange(own));
        }
    });
    return result;
}

} // namespace

void grayInPlace(cv::Mat &image)
{
    cv::parallel_for_(cv::Range(0, image.rows), [&](const cv::Range &rows) {
        std::vector<uchar> gray(static_cast<size_t>(image.cols));
        for (int y = rows.start; y < rows.end; ++y) {
            grayRow(image.ptr(y), gray.data(), image.cols);
            spreadRow(gray.data(), image.ptr(y), image.cols);
        }
    });
}

int otsu(const unsigned char *gray, int width, int height)
{
    std::array<Histogram, 4> total{};
    std::mutex mutex; // guards total
    cv::parallel_for_(cv::Range(0, height), [&](const cv::Range &rows) {
        std::array<Histogram, 4> tables{};
        for (int y = rows.start; y < rows.end; ++y)
            count(gray + static_cast<size_t>(y) * static_cast<size_t>(width), width, tables);
        const std::lock_guard<std::mutex> lock(mutex);
        for (const Histogram &table : tables) {
            for (size_t i = 0; i < table.size(); ++i)
                total[0][i] += table[i];
        }
    });
    return otsuOf(total[0], static_cast<double>(width) * height);
}

void binarizeInPlace(cv::Mat &image)
{
    cv::Mat gray(image.size(), CV_8UC1);
    cv::parallel_for_(cv::Range(0, image.rows), [&](const cv::Range &rows) {
        for (int y = rows.start; y < rows.end; ++y)
            grayRow(image.ptr(y), gray.ptr(y), image.cols);
    });
    const int threshold = otsu(gray.data, gray.cols, gray.rows);
    cv::parallel_for_(cv::Range(0, image.rows), [&](const cv::Range &rows) {
        for (int y = rows.start; y < rows.end; ++y) {
            uchar *const line = gray.ptr(y);
            for (int x = 0; x < gray.cols; ++x)
                line[x] = line[x] > threshold ? kWhite : 0;
            spreadRow(line, image.ptr(y), image.cols);
        }
    });
}

// A sharpening kernel with the centre 5 and the sides -1 would close the chain. On a picture of
// nothing but black and white it changes no pixel, so it is left out.
void FN_DeleteBackcolor(cv::Mat image)
{
    cv::Mat gray;
    cv::cvtColor(image, gray, cv::COLOR_BGR2GRAY);
    gray = aboveLocalMean(gray);
    FillBlackEdgeToWhite(gray, image);
    cv::parallel_for_(cv::Range(0, image.rows), [&](const cv::Range &rows) {
        for (int y = rows.start; y < rows.end; ++y)
            spreadRow(gray.ptr(y), image.ptr(y), image.cols);
    });
}
