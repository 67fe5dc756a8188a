#include "imaging/quarter_size.h"

#include "imaging/wide_vectors.h"

#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdint>
#include <vector>

namespace {

constexpr int kChannels = 3;

cv::Size quarterOf(const cv::Mat &image)
{
    return {image.cols / kQuarter, image.rows / kQuarter};
}

bool divides(const cv::Mat &image)
{
    return image.type() == CV_8UC3 && image.cols % kQuarter == 0 && image.rows % kQuarter == 0;
}

// The quarter size of a picture that was decoded at half or a quarter of its size.
cv::Mat reducedFurther(const ReducedPicture &picture)
{
    const cv::Size quarter(picture.full.width / kQuarter, picture.full.height / kQuarter);
    if (picture.rgb.size() == quarter)
        return picture.rgb;
    cv::Mat small;
    cv::resize(picture.rgb, small, quarter, 0, 0, cv::INTER_AREA);
    return small;
}

// Mean of sixteen pixels, halves to even: what the float arithmetic of cv::resize gives.
uchar roundedSixteenth(uint16_t sum)
{
    return static_cast<uchar>(static_cast<uint16_t>(sum + 7 + ((sum >> 4) & 1)) >> 4);
}

/// Sums of one row of target pixels.
struct RowSums
{
    explicit RowSums(int bytes)
        : columns(static_cast<size_t>(bytes))
        , pixels(columns.size())
    {
    }

    std::vector<uint16_t> columns; // of four rows
    std::vector<uint8_t> pixels;   // mean of four such columns; one in four pixels is used
};

// The mean is taken at every byte, though most are not used: in one sweep that is faster than
// picking the bytes first.
PICTOR_WIDE_VECTORS
void meansOfRow(const cv::Mat &rgb, int row, RowSums &sums)
{
    const int bytes = rgb.cols * kChannels;
    const uchar *const line0 = rgb.ptr(row * kQuarter);
    const uchar *const line1 = rgb.ptr(row * kQuarter + 1);
    const uchar *const line2 = rgb.ptr(row * kQuarter + 2);
    const uchar *const line3 = rgb.ptr(row * kQuarter + 3);
    uint16_t *const sum = sums.columns.data();
    for (int i = 0; i < bytes; ++i)
        sum[i] = static_cast<uint16_t>(line0[i] + line1[i] + line2[i] + line3[i]);
    uint8_t *const mean = sums.pixels.data();
    for (int i = 0; i < bytes - 3 * kChannels; ++i)
        mean[i] = roundedSixteenth(static_cast<uint16_t>(
            sum[i] + sum[i + kChannels] + sum[i + 2 * kChannels] + sum[i + 3 * kChannels]));
}

// `means`: of a row of `pixels` pixels of the whole picture.
void pickPixels(const uchar *means, int pixels, uchar *to)
{
    for (int i = 0; i < pixels; i += kQuarter, means += kQuarter * kChannels, to += kChannels) {
        for (int c = 0; c < kChannels; ++c)
            to[c] = means[c];
    }
}

// The brightness of the pixels, in the arithmetic of cv::cvtColor.
void pickBrightness(const uchar *means, int pixels, uchar *to)
{
    constexpr int kRed = 9798, kGreen = 19235, kBlue = 3735, kShift = 15;
    for (int i = 0; i < pixels; i += kQuarter, means += kQuarter * kChannels) {
        const int sum = means[0] * kRed + means[1] * kGreen + means[2] * kBlue;
        *to++ = static_cast<uchar>((sum + (1 << (kShift - 1))) >> kShift);
    }
}

template <class Pick>
void shrinkByArea(const cv::Mat &rgb, cv::Mat &small, Pick pick)
{
    cv::parallel_for_(cv::Range(0, small.rows), [&](const cv::Range &rows) {
        RowSums sums(rgb.cols * kChannels);
        for (int row = rows.start; row < rows.end; ++row) {
            meansOfRow(rgb, row, sums);
            pick(sums.pixels.data(), rgb.cols, small.ptr(row));
        }
    });
}

// In one sweep, too; `means` is room for a mean at every byte.
PICTOR_WIDE_VECTORS
void shrinkRowBilinear(const cv::Mat &rgb, int row, std::vector<uchar> &means, uchar *to)
{
    const int bytes = rgb.cols * kChannels;
    const uchar *const upper = rgb.ptr(row * kQuarter + 1);
    const uchar *const lower = rgb.ptr(row * kQuarter + 2);
    uchar *const mean = means.data();
    for (int i = 0; i < bytes - kChannels; ++i)
        mean[i] = static_cast<uchar>(
            (upper[i] + upper[i + kChannels] + lower[i] + lower[i + kChannels] + 2) >> 2);
    for (int i = kChannels; i < bytes; i += kQuarter * kChannels, to += kChannels) {
        for (int c = 0; c < kChannels; ++c)
            to[c] = mean[i + c];
    }
}

} // namespace

void shrinkToQuarterByArea(const cv::Mat &rgb, cv::Mat &small)
{
    if (!divides(rgb)) {
        cv::resize(rgb, small, quarterOf(rgb), 0, 0, cv::INTER_AREA);
        return;
    }
    small.create(quarterOf(rgb), CV_8UC3);
    shrinkByArea(rgb, small, pickPixels);
}

void grayQuarterByArea(const ReducedPicture &picture, cv::Mat &gray)
{
    const cv::Mat &rgb = picture.rgb;
    if (picture.reduction > 1) {
        cv::cvtColor(reducedFurther(picture), gray, cv::COLOR_RGB2GRAY);
        return;
    }
    if (!divides(rgb)) {
        cv::Mat small;
        cv::resize(rgb, small, quarterOf(rgb), 0, 0, cv::INTER_AREA);
        cv::cvtColor(small, gray, cv::COLOR_RGB2GRAY);
        return;
    }
    gray.create(quarterOf(rgb), CV_8UC1);
    shrinkByArea(rgb, gray, pickBrightness);
}

// At exactly a quarter every target pixel lies in the middle of four source pixels.
void shrinkToQuarterBilinear(const ReducedPicture &picture, cv::Mat &small)
{
    const cv::Mat &rgb = picture.rgb;
    if (picture.reduction > 1) {
        small = reducedFurther(picture);
        return;
    }
    if (!divides(rgb)) {
        cv::resize(rgb, small, quarterOf(rgb), 0, 0, cv::INTER_LINEAR);
        return;
    }
    small.create(quarterOf(rgb), CV_8UC3);
    cv::parallel_for_(cv::Range(0, small.rows), [&](const cv::Range &rows) {
        std::vector<uchar> means(static_cast<size_t>(rgb.cols * kChannels));
        for (int row = rows.start; row < rows.end; ++row)
            shrinkRowBilinear(rgb, row, means, small.ptr(row));
    });
}
