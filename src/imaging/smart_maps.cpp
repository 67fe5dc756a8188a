#include "imaging/smart_maps.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr float kChromaGain = 1.5F; // paper and desk differ less in colour than in lightness
constexpr float kHalfLevelMin = 2;  // gradient levels per pixel, about three times camera noise
constexpr float kHalfLevelMax = 10;
constexpr float kHalfLevelPerMedian = 3;
constexpr int kStraightWindow = 9; // pixels
constexpr int kHistogramStep = 8;  // per level
constexpr int kHistogramSize = 512;

// Gradient of the channel in which it is longest, in levels per pixel.
cv::Mat_<cv::Vec2f> strongestGradient(const cv::Mat_<cv::Vec3b> &lab)
{
    cv::Mat_<cv::Vec2f> gradient(lab.size(), cv::Vec2f(0, 0));
    for (int y = 1; y + 1 < lab.rows; ++y) {
        const cv::Vec3b *above = lab[y - 1], *here = lab[y], *below = lab[y + 1];
        cv::Vec2f *to = gradient[y];
        for (int x = 1; x + 1 < lab.cols; ++x) {
            int bestX = 0, bestY = 0;
            float best = -1;
            for (int c = 0; c < 3; ++c) {
                const int dx =
                    3 * (above[x + 1][c] - above[x - 1][c] + below[x + 1][c] - below[x - 1][c]) +
                    10 * (here[x + 1][c] - here[x - 1][c]);
                const int dy =
                    3 * (below[x - 1][c] - above[x - 1][c] + below[x + 1][c] - above[x + 1][c]) +
                    10 * (below[x][c] - above[x][c]);
                const float length = static_cast<float>(dx * dx + dy * dy) *
                                     (c == 0 ? 1 : kChromaGain * kChromaGain);
                if (length > best) {
                    best = length;
                    const int gain = c == 0 ? 2 : 3; // 1 : kChromaGain
                    bestX = dx * gain;
                    bestY = dy * gain;
                }
            }
            to[x] = {static_cast<float>(bestX) / 64, static_cast<float>(bestY) / 64};
        }
    }
    return gradient;
}

float medianLength(const cv::Mat_<cv::Vec2f> &gradient)
{
    std::array<int, kHistogramSize> counts{};
    for (int y = 0; y < gradient.rows; y += 2) {
        const cv::Vec2f *row = gradient[y];
        for (int x = 0; x < gradient.cols; x += 2) {
            const float length = std::sqrt(row[x][0] * row[x][0] + row[x][1] * row[x][1]);
            ++counts[std::min(static_cast<size_t>(length * kHistogramStep), counts.size() - 1)];
        }
    }
    const int half = gradient.rows * gradient.cols / 8;
    int sum = 0;
    for (size_t i = 0; i < counts.size(); ++i) {
        sum += counts[i];
        if (sum > half)
            return static_cast<float>(i) / kHistogramStep;
    }
    return 0;
}

// Coherence of the structure tensor over a window: near 1 along a straight edge, low in writing.
cv::Mat_<float> straightness(const cv::Mat_<cv::Vec2f> &edge)
{
    cv::Mat_<cv::Vec3f> tensor(edge.size());
    for (int y = 0; y < edge.rows; ++y) {
        const cv::Vec2f *from = edge[y];
        cv::Vec3f *to = tensor[y];
        for (int x = 0; x < edge.cols; ++x)
            to[x] = {from[x][0] * from[x][0], from[x][1] * from[x][1], from[x][0] * from[x][1]};
    }
    cv::blur(tensor, tensor, {kStraightWindow, kStraightWindow});
    cv::Mat_<float> straight(edge.size());
    for (int y = 0; y < edge.rows; ++y) {
        const cv::Vec3f *from = tensor[y];
        float *to = straight[y];
        for (int x = 0; x < edge.cols; ++x) {
            const float difference = from[x][0] - from[x][1];
            const float sum = from[x][0] + from[x][1];
            const float spread = std::sqrt(difference * difference + 4 * from[x][2] * from[x][2]);
            to[x] = sum > 1e-6F ? spread / sum : 0;
        }
    }
    return straight;
}

} // namespace

SmartMaps smartMaps(const cv::Mat &rgb)
{
    SmartMaps maps;
    cv::Mat lab;
    cv::cvtColor(rgb, lab, cv::COLOR_RGB2Lab);
    cv::GaussianBlur(lab, lab, {5, 5}, 1.0);
    maps.lab = lab;
    maps.edge = strongestGradient(maps.lab);
    maps.halfLevel =
        std::clamp(kHalfLevelPerMedian * medianLength(maps.edge), kHalfLevelMin, kHalfLevelMax);
    for (int y = 0; y < maps.edge.rows; ++y) {
        cv::Vec2f *row = maps.edge[y];
        for (int x = 0; x < maps.edge.cols; ++x) {
            const float length = std::sqrt(row[x][0] * row[x][0] + row[x][1] * row[x][1]);
            row[x] *= 1 / (length + maps.halfLevel);
        }
    }
    maps.straight = straightness(maps.edge);
    return maps;
}
