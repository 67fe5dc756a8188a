#include "imaging/smart_cut.h"

#include "imaging/failure.h"
#include "imaging/smart_quad.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr int kSideStep = 4;
constexpr double kFormatTolerance = 0.03;
constexpr double kFocalMin = 0.6, kFocalMax = 4, kFocalUsual = 1.2; // of the frame's longer side
constexpr double kWeakPerspective = 0.02; // relative change of scale over a sheet
constexpr float kBorderMargin = 0.005F;   // of the frame's longer side
constexpr double kGrowthMax = 2; // of a side against its length in the picture, by the ratio

struct Format
{
    const char *name;
    double ratio;
};

// ISO 216, ANSI/ASME Y14.1, US legal, ISO/IEC 7810.
constexpr Format kFormats[] = {{"A", 1.41421},
                               {"Letter", 11 / 8.5},
                               {"Legal", 14 / 8.5},
                               {"Tabloid", 17 / 11.0},
                               {"ID-1", 85.60 / 53.98}};

double lengthOf(cv::Point2f v)
{
    return std::hypot(v.x, v.y);
}

// The corner after which the side leads most to the right.
Quad upright(Quad quad)
{
    size_t first = 0;
    double best = -2;
    for (size_t i = 0; i < 4; ++i) {
        const cv::Point2f across =
            quad[(i + 1) % 4] - quad[i] + quad[(i + 2) % 4] - quad[(i + 3) % 4];
        const double rightward = across.x / std::max(1e-6, lengthOf(across));
        if (rightward > best) {
            best = rightward;
            first = i;
        }
    }
    std::rotate(quad.begin(), quad.begin() + static_cast<std::ptrdiff_t>(first), quad.end());
    return quad;
}

// Width by height of the rectangle whose picture `quad` is; names as in the paper.
std::optional<double> perspectiveRatio(const Quad &quad, cv::Size frame)
{
    const cv::Point3d centre(frame.width / 2.0, frame.height / 2.0, 0);
    const auto homogeneous = [&](cv::Point2f p) { return cv::Point3d(p.x, p.y, 1) - centre; };
    const cv::Point3d m1 = homogeneous(quad[0]), m2 = homogeneous(quad[1]),
                      m3 = homogeneous(quad[3]), m4 = homogeneous(quad[2]);
    const double divisor2 = m2.cross(m4).dot(m3), divisor3 = m3.cross(m4).dot(m2);
    if (std::fabs(divisor2) < 1e-9 || std::fabs(divisor3) < 1e-9)
        return std::nullopt;
    const double k2 = m1.cross(m4).dot(m3) / divisor2, k3 = m1.cross(m4).dot(m2) / divisor3;
    const cv::Point3d n2 = k2 * m2 - m1, n3 = k3 * m3 - m1;
    const double side = std::max(frame.width, frame.height);
    double focal = kFocalUsual * side;
    if (std::fabs(n2.z) > kWeakPerspective && std::fabs(n3.z) > kWeakPerspective) {
        const double square = -(n2.x * n3.x + n2.y * n3.y) / (n2.z * n3.z);
        if (square > 0)
            focal = std::clamp(std::sqrt(square), kFocalMin * side, kFocalMax * side);
    }
    const double width = n2.x * n2.x + n2.y * n2.y + focal * focal * n2.z * n2.z;
    const double height = n3.x * n3.x + n3.y * n3.y + focal * focal * n3.z * n3.z;
    if (!(width > 0 && height > 0))
        return std::nullopt;
    return std::sqrt(width / height);
}

bool runsOff(const Quad &quad, cv::Size frame)
{
    const float margin = kBorderMargin * static_cast<float>(std::max(frame.width, frame.height));
    return std::any_of(quad.begin(), quad.end(), [&](cv::Point2f p) {
        return p.x < margin || p.y < margin || p.x > static_cast<float>(frame.width - 1) - margin ||
               p.y > static_cast<float>(frame.height - 1) - margin;
    });
}

int side(double length)
{
    return std::max(1, cvRound(length / kSideStep)) * kSideStep;
}

} // namespace

SheetShape sheetShape(const Quad &corners, cv::Size frame)
{
    SheetShape shape;
    shape.corners = upright(inOrder(corners));
    const Quad &q = shape.corners;
    double width = std::max(lengthOf(q[1] - q[0]), lengthOf(q[2] - q[3]));
    double height = std::max(lengthOf(q[3] - q[0]), lengthOf(q[2] - q[1]));
    const double seen = std::max(width, 1.0) / std::max(height, 1.0);
    double ratio =
        std::clamp(perspectiveRatio(q, frame).value_or(seen), seen / kGrowthMax, seen * kGrowthMax);
    const bool isWide = ratio > 1;
    double longBySmall = isWide ? ratio : 1 / ratio;
    double nearest = kFormatTolerance;
    double formatRatio = longBySmall;
    if (!runsOff(q, frame)) {
        for (const Format &format : kFormats) {
            const double away = std::fabs(longBySmall / format.ratio - 1);
            if (away < nearest) {
                nearest = away;
                formatRatio = format.ratio;
                shape.format = format.name;
            }
        }
    }
    longBySmall = formatRatio;
    ratio = isWide ? longBySmall : 1 / longBySmall;
    shape.ratio = static_cast<float>(longBySmall);
    if (width < height * ratio)
        width = height * ratio;
    else
        height = width / ratio;
    shape.size = {side(width), side(height)};
    return shape;
}

cv::Mat cutSheet(const cv::Mat &rgb, const Quad &corners, std::string &error)
{
    try {
        if (rgb.type() == CV_8UC3 && isConvex(corners) &&
            std::fabs(quadArea(corners)) >= kSideStep * kSideStep)
        {
            const SheetShape shape = sheetShape(corners, rgb.size());
            const auto right = static_cast<float>(shape.size.width - 1);
            const auto bottom = static_cast<float>(shape.size.height - 1);
            const Quad target{cv::Point2f(0, 0), cv::Point2f(right, 0), cv::Point2f(right, bottom),
                              cv::Point2f(0, bottom)};
            cv::Mat page;
            cv::warpPerspective(rgb, page,
                                cv::getPerspectiveTransform(shape.corners.data(), target.data()),
                                shape.size, cv::INTER_LINEAR);
            cv::cvtColor(page, page, cv::COLOR_RGB2BGR);
            return page;
        }
        error = loggedFailure("the corners enclose no sheet");
    } catch (const std::exception &exception) {
        error = loggedFailure("cutting a sheet failed", exception);
    }
    return {};
}
