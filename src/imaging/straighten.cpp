#include "imaging/straighten.h"

#include "imaging/failure.h"

#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kStraightPi = 3.14; // the camera's calibration counts on this value
constexpr int kBoxGrowth = 4;        // pixels
constexpr int kSideStep = 4;         // sides of a cut document are multiples of this
constexpr int kBandRows = 64;

struct Rotation
{
    cv::Matx23d toSource; // maps target pixels to source pixels
    cv::Size size;        // of the target
};

Rotation rotationOf(cv::Size source, float degree)
{
    const double radians = CV_PI * -static_cast<double>(degree) / 180.0;
    const double sine = std::fabs(std::sin(radians));
    const double cosine = std::fabs(std::cos(radians));
    const cv::Point2f centre = cv::Point(source / 2);
    cv::Mat matrix = cv::getRotationMatrix2D(centre, -static_cast<double>(degree), 1.0);
    Rotation rotation;
    rotation.size = {static_cast<int>(source.height * sine + source.width * cosine),
                     static_cast<int>(source.width * sine + source.height * cosine)};
    const cv::Size growth = rotation.size - source;
    const cv::Size shift = growth / 2;
    matrix.at<double>(0, 2) += shift.width;
    matrix.at<double>(1, 2) += shift.height;
    cv::Mat inverse;
    cv::invertAffineTransform(matrix, inverse);
    rotation.toSource = inverse;
    return rotation;
}

// The last negative coordinate in corner order decides the padding at the near edge, the last
// one beyond `side` that at the far edge.
struct Padding
{
    int before = 0, after = 0;
};

Padding paddingOf(const std::array<int, 4> &coordinates, int side)
{
    Padding padding;
    for (const int value : coordinates) {
        if (value < 0)
            padding.before = -value;
    }
    for (const int value : coordinates) {
        if (value + padding.before > side)
            padding.after = value + padding.before - side;
    }
    return padding;
}

struct CutPlan
{
    cv::Rect box;          // in the padded frame; what it covers beyond the frame is black
    cv::Rect page;         // of the turned box
    cv::Point frameOrigin; // of the frame in the padded frame
    float angle = 0;
};

bool contains(cv::Size size, const cv::Rect &rect)
{
    return rect.x >= 0 && rect.y >= 0 && rect.width > 0 && rect.height > 0 &&
           rect.width <= size.width - rect.x && rect.height <= size.height - rect.y;
}

// False when the outline cannot be cut: its box or its page lies outside of what there is.
bool planCut(cv::Size frame, Outline outline, CutPlan &plan)
{
    const Padding x =
        paddingOf({outline[0].x, outline[1].x, outline[2].x, outline[3].x}, frame.width);
    const Padding y =
        paddingOf({outline[0].y, outline[1].y, outline[2].y, outline[3].y}, frame.height);
    plan.frameOrigin = {x.before, y.before};
    for (cv::Point &corner : outline)
        corner += plan.frameOrigin;
    const cv::Size padded(frame.width + x.before + x.after, frame.height + y.before + y.after);

    const StraightenGeometry geometry = straightenGeometry(outline);
    plan.angle = geometry.angle;
    plan.box = geometry.rect;
    plan.box.width = std::min(plan.box.width + kBoxGrowth, padded.width - plan.box.x);
    plan.box.height = std::min(plan.box.height + kBoxGrowth, padded.height - plan.box.y);
    if (!contains(padded, plan.box))
        return false;
    const cv::Size turned = rotationOf(plan.box.size(), plan.angle).size;
    plan.page = {
        (turned.width - geometry.size.width) / 2, (turned.height - geometry.size.height) / 2,
        geometry.size.width / kSideStep * kSideStep, geometry.size.height / kSideStep * kSideStep};
    return contains(turned, plan.page);
}

cv::Mat boxPicture(const cv::Mat &rgb, const CutPlan &plan)
{
    const cv::Rect frame(plan.frameOrigin, rgb.size());
    const cv::Rect covered = plan.box & frame;
    cv::Mat box(plan.box.size(), CV_8UC3);
    if (covered != plan.box)
        box.setTo(cv::Scalar::all(0));
    if (!covered.empty()) {
        cv::Mat inside = box(covered - plan.box.tl());
        cv::cvtColor(rgb(covered - frame.tl()), inside, cv::COLOR_RGB2BGR);
    }
    return box;
}

// rotateImage(source, angle)(page), without the memory for the corners that the page leaves out.
cv::Mat turnedPage(const cv::Mat &source, float angle, const cv::Rect &page)
{
    if (angle == 0 || angle == 360)
        return source(page).clone();
    const Rotation rotation = rotationOf(source.size(), angle);
    cv::Mat result(page.size(), source.type());
    const int bands = (page.height + kBandRows - 1) / kBandRows;
    cv::parallel_for_(cv::Range(0, bands), [&](const cv::Range &range) {
        cv::Mat band;
        for (int i = range.start; i < range.end; ++i) {
            const cv::Range rows(i * kBandRows, std::min((i + 1) * kBandRows, page.height));
            cv::Matx23d matrix = rotation.toSource;
            matrix(0, 2) += matrix(0, 1) * (page.y + rows.start);
            matrix(1, 2) += matrix(1, 1) * (page.y + rows.start);
            cv::warpAffine(source, band, matrix, cv::Size(rotation.size.width, rows.size()),
                           cv::INTER_LINEAR | cv::WARP_INVERSE_MAP);
            band.colRange(page.x, page.x + page.width).copyTo(result.rowRange(rows));
        }
    });
    return result;
}

int distance(cv::Point a, cv::Point b)
{
    const double x = b.x - a.x;
    const double y = b.y - a.y;
    return static_cast<int>(std::sqrt(x * x + y * y));
}

} // namespace

StraightenGeometry straightenGeometry(const Outline &outline)
{
    const auto [left, right] =
        std::minmax({outline[0].x, outline[1].x, outline[2].x, outline[3].x});
    const auto [top, bottom] =
        std::minmax({outline[0].y, outline[1].y, outline[2].y, outline[3].y});
    StraightenGeometry geometry;
    geometry.rect = {left, top, right - left, bottom - top};

    double angle = 0;
    if (outline[1].x != outline[0].x) {
        const float slope = static_cast<float>(outline[0].y - outline[1].y) /
                            static_cast<float>(outline[1].x - outline[0].x);
        angle = std::atan(slope) * 180.0f / kStraightPi + 90.0;
    }
    const int side01 = distance(outline[0], outline[1]);
    const int side03 = distance(outline[0], outline[3]);
    if (angle > 45.0) {
        geometry.size = {side01, side03};
        geometry.angle = static_cast<float>(angle + 270.0);
    } else {
        geometry.size = {side03, side01};
        geometry.angle = static_cast<float>(angle);
    }
    return geometry;
}

cv::Mat rotateImage(cv::Mat src, float degree)
{
    const Rotation rotation = rotationOf(src.size(), degree);
    cv::Mat turned;
    cv::warpAffine(src, turned, rotation.toSource, rotation.size,
                   cv::INTER_LINEAR | cv::WARP_INVERSE_MAP, cv::BORDER_CONSTANT, cv::Scalar());
    return turned;
}

cv::Mat cutDocument(const cv::Mat &rgb, const Outline &outline, std::string &error)
{
    try {
        CutPlan plan;
        if (planCut(rgb.size(), outline, plan))
            return turnedPage(boxPicture(rgb, plan), plan.angle, plan.page);
        error = loggedFailure("the outline cannot be cut out of the frame");
    } catch (const std::exception &exception) {
        error = loggedFailure("cutting a document failed", exception);
    }
    return {};
}
