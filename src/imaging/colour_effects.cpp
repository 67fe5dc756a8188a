#include "imaging/colour_effects.h"

#include "imaging/trim.h"
#include "imaging/wide_vectors.h"

#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cfloat>
#include <mutex>

namespace {

constexpr int kLevels = 256;
constexpr int kBandRows = 16;
constexpr int kOptimizationBlock = 179; // pixels
constexpr int kOptimizationOffset = 19;
constexpr int kWhite = 255;

using Histogram = std::array<int, kLevels>;

// Byte 0 of a pixel is blue: it takes the weight that textbooks give to red, on purpose.
PICTOR_WIDE_VECTORS
void weigh(const uchar *plane0, const uchar *plane1, const uchar *plane2, uchar *gray, int count)
{
    for (int i = 0; i < count; ++i)
        gray[i] = static_cast<uchar>(
            static_cast<int>(0.299 * plane0[i] + 0.587 * plane1[i] + 0.114 * plane2[i]));
}

/// Calls work(rows) for bands of rows that stay in the cache, on all cores.
template <typename Work>
void inBands(int rows, const Work &work)
{
    const int bands = (rows + kBandRows - 1) / kBandRows;
    cv::parallel_for_(cv::Range(0, bands), [&](const cv::Range &range) {
        for (int i = range.start; i < range.end; ++i)
            work(cv::Range(i * kBandRows, std::min((i + 1) * kBandRows, rows)));
    });
}

// `gray`: of the same size, continuous.
void weighBand(const cv::Mat &band, cv::Mat &gray)
{
    cv::Mat planes[3];
    cv::split(band, planes);
    weigh(planes[0].data, planes[1].data, planes[2].data, gray.data,
          static_cast<int>(gray.total()));
}

void spreadBand(const cv::Mat &gray, cv::Mat band)
{
    cv::cvtColor(gray, band, cv::COLOR_GRAY2BGR);
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

// As cv::adaptiveThreshold by the local mean, but in bands, one for each thread, and with sweeps in
// the place of its table. Each band takes as many rows beyond its own as the mean reaches.
cv::Mat aboveLocalMean(const cv::Mat &gray)
{
    cv::Mat result(gray.size(), CV_8UC1);
    const int bands = std::min(cv::getNumThreads(), std::max(1, gray.rows / kOptimizationBlock));
    cv::parallel_for_(cv::Range(0, bands), [&](const cv::Range &range) {
        for (int i = range.start; i < range.end; ++i) {
            const cv::Range own(gray.rows * i / bands, gray.rows * (i + 1) / bands);
            const cv::Range seen(std::max(own.start - kOptimizationBlock / 2, 0),
                                 std::min(own.end + kOptimizationBlock / 2, gray.rows));
            cv::Mat means;
            cv::boxFilter(gray.rowRange(seen), means, CV_8U,
                          {kOptimizationBlock, kOptimizationBlock}, {-1, -1}, true,
                          cv::BORDER_REPLICATE | cv::BORDER_ISOLATED);
            cv::Mat darker = means.rowRange(own.start - seen.start, own.end - seen.start);
            cv::subtract(darker, gray.rowRange(own), darker);
            cv::threshold(darker, result.rowRange(own), kOptimizationOffset - 1, kWhite,
                          cv::THRESH_BINARY_INV);
        }
    });
    return result;
}

} // namespace

void grayInPlace(cv::Mat &image)
{
    inBands(image.rows, [&image](const cv::Range &rows) {
        cv::Mat gray(rows.size(), image.cols, CV_8UC1);
        weighBand(image.rowRange(rows), gray);
        spreadBand(gray, image.rowRange(rows));
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
    inBands(image.rows, [&](const cv::Range &rows) {
        cv::Mat band = gray.rowRange(rows);
        weighBand(image.rowRange(rows), band);
    });
    const int threshold = otsu(gray.data, gray.cols, gray.rows);
    inBands(image.rows, [&](const cv::Range &rows) {
        cv::Mat band = gray.rowRange(rows);
        cv::threshold(band, band, threshold, kWhite, cv::THRESH_BINARY);
        spreadBand(band, image.rowRange(rows));
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
    spreadBand(gray, image);
}
