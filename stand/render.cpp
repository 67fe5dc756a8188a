#include "stand/render.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace {

// The camera leans back a little: the far edge of the desk looks smaller than the near one.
constexpr double kTiltPerMm = 0.00022;
// Art is drawn finer than the frame shows it, so that the warp does not blur print.
constexpr double kArtOversampling = 1.2;
constexpr int kTileSide = 1024;
constexpr int kFixedBits = 4; // subpixel bits of polygon corners

using Quad = std::array<cv::Point2f, 4>;

double pixelsPerMm(cv::Size size)
{
    return std::min(size.width / kViewWidthMm, size.height / kViewHeightMm);
}

cv::Point2f toFrame(QPointF desk, cv::Size size)
{
    const double scale = pixelsPerMm(size) / (1 - kTiltPerMm * desk.y());
    return {static_cast<float>(size.width / 2.0 + scale * desk.x()),
            static_cast<float>(size.height / 2.0 + scale * desk.y())};
}

Quad sheetCorners(const Sheet &sheet, cv::Size size)
{
    const double radians = sheet.angle * CV_PI / 180;
    const double c = std::cos(radians), s = std::sin(radians);
    const double w = sheet.size.width() / 2, h = sheet.size.height() / 2;
    const std::array<QPointF, 4> flat{QPointF{-w, -h}, {w, -h}, {w, h}, {-w, h}};
    Quad corners;
    for (size_t i = 0; i < flat.size(); ++i) {
        const QPointF turned(c * flat[i].x() - s * flat[i].y(), s * flat[i].x() + c * flat[i].y());
        corners[i] = toFrame(sheet.centre + turned, size);
    }
    return corners;
}

// A tile of smooth random values around zero, of the given grain (pixels) and deviation. It is
// made as small as its grain allows, since a blur of that width would take a second.
cv::Mat noiseTile(cv::Size side, cv::Size grain, double deviation, int seed)
{
    cv::Mat small(side.height / grain.height, side.width / grain.width, CV_32FC1), tile;
    cv::RNG rng(static_cast<uint64_t>(seed));
    rng.fill(small, cv::RNG::NORMAL, 0, deviation);
    if (grain == cv::Size(1, 1))
        return small;
    // One cell more on each side, wrapped round, so that copies of the tile join without a seam.
    cv::copyMakeBorder(small, small, 1, 1, 1, 1, cv::BORDER_WRAP);
    cv::resize(small, tile, {}, grain.width, grain.height, cv::INTER_CUBIC);
    return tile(cv::Rect({grain.width, grain.height}, side)).clone();
}

cv::Mat paintDesk(Scene::Desk desk, cv::Size size)
{
    // Fine streaks over broad clouds, as on a desk top of dark wood.
    static const cv::Mat grain = [] {
        cv::Mat sum = noiseTile({kTileSide, kTileSide}, {128, 2}, 4.2, 11);
        sum += noiseTile({kTileSide, kTileSide}, {256, 32}, 5.0, 12);
        sum += noiseTile({kTileSide, kTileSide}, {2, 1}, 1.2, 13);
        return sum;
    }();
    const double scale = pixelsPerMm(size) / 7;
    cv::Mat tile;
    cv::resize(grain, tile, {}, std::max(scale, 0.1), std::max(scale, 0.1), cv::INTER_LINEAR);
    const bool isWhite = desk == Scene::Desk::White;
    const cv::Scalar base = isWhite ? cv::Scalar(219, 222, 224) : cv::Scalar(40, 46, 54);
    cv::Mat colour;
    cv::merge(std::vector<cv::Mat>{tile * (isWhite ? 0.3 : 0.9), tile * (isWhite ? 0.3 : 1.0),
                                   tile * (isWhite ? 0.3 : 1.15)},
              colour);
    colour += base;
    colour.convertTo(colour, CV_8UC3);
    // Straight into the frame: fresh pages of memory cost more than the copying.
    cv::Mat desktop(size, CV_8UC3);
    for (int y = 0; y < size.height; ++y) {
        const uchar *from = colour.ptr(y % colour.rows);
        for (int x = 0; x < size.width; x += colour.cols)
            std::copy_n(from, 3 * std::min(colour.cols, size.width - x), desktop.ptr(y, x));
    }
    return desktop;
}

cv::Rect boundingRect(const Quad &corners, double margin, cv::Size size)
{
    const cv::Rect2f box =
        cv::boundingRect(std::vector<cv::Point2f>(corners.begin(), corners.end()));
    const int m = static_cast<int>(std::ceil(margin));
    const cv::Rect grown(static_cast<int>(box.x) - m, static_cast<int>(box.y) - m,
                         static_cast<int>(box.width) + 2 * m, static_cast<int>(box.height) + 2 * m);
    return grown & cv::Rect({0, 0}, size);
}

void fillQuad(cv::Mat &mask, const Quad &corners, cv::Point2f shift, double scale)
{
    std::array<cv::Point, 4> points;
    std::transform(corners.begin(), corners.end(), points.begin(), [&](cv::Point2f p) {
        const cv::Point2f q = (p + shift) * scale * (1 << kFixedBits);
        return cv::Point(cvRound(q.x), cvRound(q.y));
    });
    cv::fillConvexPoly(mask, points.data(), 4, cv::Scalar(255), cv::LINE_AA, kFixedBits);
}

void throwShadow(cv::Mat &frame, const Quad &corners, double heightMm, double perMm)
{
    const double reach = (2.0 + 1.6 * heightMm) * perMm;
    const cv::Rect area = boundingRect(corners, 4 * reach, frame.size());
    if (area.empty())
        return;
    // A smooth thing needs no fine grid: three cells to its reach.
    const double small = std::min(1.0, 3 / reach);
    cv::Mat shade(std::max(1, cvRound(area.height * small)),
                  std::max(1, cvRound(area.width * small)), CV_8UC1, cv::Scalar(0));
    const cv::Point2f origin(static_cast<float>(-area.x), static_cast<float>(-area.y));
    const cv::Point2f fall(static_cast<float>(0.55 * reach), static_cast<float>(0.75 * reach));
    fillQuad(shade, corners, origin + fall, small);
    cv::GaussianBlur(shade, shade, {}, 0.55 * reach * small);
    cv::resize(shade, shade, area.size(), 0, 0, cv::INTER_LINEAR);
    cv::Mat below = frame(area);
    for (int y = 0; y < below.rows; ++y) {
        uchar *pixel = below.ptr(y);
        const uchar *dark = shade.ptr(y);
        for (int x = 0; x < below.cols; ++x, pixel += 3) {
            const int keep = 256 - dark[x] * 140 / 255;
            for (int k = 0; k < 3; ++k)
                pixel[k] = static_cast<uchar>(pixel[k] * keep >> 8);
        }
    }
}

void laySheet(cv::Mat &frame, const Sheet &sheet, const Quad &corners, double perMm)
{
    const cv::Rect area = boundingRect(corners, 2, frame.size());
    if (area.empty())
        return;
    const QImage art = sheet.art(perMm * kArtOversampling).convertToFormat(QImage::Format_RGB32);
    if (art.isNull())
        return;
    const cv::Mat flat(art.height(), art.width(), CV_8UC4, const_cast<uchar *>(art.constBits()),
                       static_cast<size_t>(art.bytesPerLine()));
    const auto w = static_cast<float>(flat.cols), h = static_cast<float>(flat.rows);
    const Quad from{
        cv::Point2f{-0.5f, -0.5f}, {w - 0.5f, -0.5f}, {w - 0.5f, h - 0.5f}, {-0.5f, h - 0.5f}};
    const cv::Point2f origin(static_cast<float>(area.x), static_cast<float>(area.y));
    Quad to = corners;
    for (cv::Point2f &corner : to)
        corner -= origin;
    cv::Mat warped, mask(area.size(), CV_8UC1, cv::Scalar(0));
    cv::warpPerspective(flat, warped, cv::getPerspectiveTransform(from, to), area.size(),
                        cv::INTER_LINEAR, cv::BORDER_REPLICATE);
    fillQuad(mask, to, {}, 1);
    cv::Mat below = frame(area);
    for (int y = 0; y < below.rows; ++y) {
        uchar *pixel = below.ptr(y);
        const uchar *paper = warped.ptr(y);
        const uchar *cover = mask.ptr(y);
        for (int x = 0; x < below.cols; ++x, pixel += 3, paper += 4) {
            for (int k = 0; k < 3; ++k)
                pixel[k] = static_cast<uchar>(
                    (paper[k] * cover[x] + pixel[k] * (255 - cover[x]) + 127) / 255);
        }
    }
}

// The lamp stands at the upper left and the lens darkens the corners; then the sensor's noise.
void exposeFrame(cv::Mat &frame, double light)
{
    static const cv::Mat noise = [] {
        cv::Mat fine = noiseTile({3 * kTileSide, kTileSide}, {1, 1}, 1.3, 21);
        fine += noiseTile({3 * kTileSide, kTileSide}, {4, 1}, 1.1, 22);
        cv::Mat tile;
        fine.convertTo(tile, CV_8SC1);
        return tile;
    }();
    const double one = 256 * light;
    std::vector<int> across(static_cast<size_t>(3 * frame.cols));
    for (int x = 0; x < frame.cols; ++x) {
        const double u = 2.0 * x / frame.cols - 1;
        const int gain = cvRound(one * (1.02 - 0.05 * u - 0.09 * u * u));
        std::fill_n(across.begin() + 3 * x, 3, gain);
    }
    cv::parallel_for_(cv::Range(0, frame.rows), [&](const cv::Range &rows) {
        for (int y = rows.start; y < rows.end; ++y) {
            const double v = 2.0 * y / frame.rows - 1;
            const int down = cvRound(one * (-0.04 * v - 0.07 * v * v));
            uchar *pixel = frame.ptr(y);
            const auto *grain = noise.ptr<schar>(y % noise.rows);
            for (int x = 0; x < 3 * frame.cols; ++x) {
                const int value = (pixel[x] * (across[static_cast<size_t>(x)] + down) >> 8) +
                                  grain[x % noise.cols];
                pixel[x] = static_cast<uchar>(std::clamp(value, 0, 255));
            }
        }
    });
}

} // namespace

std::vector<std::array<cv::Point2f, 4>> sceneCorners(const Scene &scene, cv::Size size)
{
    std::vector<Quad> corners;
    for (const Sheet &sheet : scene.sheets)
        corners.push_back(sheetCorners(sheet, size));
    return corners;
}

RenderedScene renderScene(const Scene &scene, cv::Size size)
{
    RenderedScene result{paintDesk(scene.desk, size), sceneCorners(scene, size)};
    const double perMm = pixelsPerMm(size);
    for (size_t i = 0; i < scene.sheets.size(); ++i) {
        throwShadow(result.bgr, result.corners[i], scene.sheets[i].height, perMm);
        laySheet(result.bgr, scene.sheets[i], result.corners[i], perMm);
    }
    exposeFrame(result.bgr, scene.light);
    return result;
}
