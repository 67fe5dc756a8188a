#include "imaging/smart_finder.h"

#include "imaging/failure.h"
#include "imaging/quarter_size.h"
#include "imaging/smart_candidates.h"
#include "imaging/smart_quad.h"
#include "imaging/smart_refine.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>

namespace {

constexpr int kSearchSide = 416; // pixels, the longer side of the picture that is searched
constexpr int kSideMin = 32;
constexpr float kFurtherConfidenceMin = 0.9F; // of sheets besides the best one
constexpr float kSharedMax = 0.12F;           // of the smaller of two sheets
constexpr size_t kSheetsMax = 24;
constexpr float kRoughReach = 4, kFineReach = 6; // places to either side of a side

int reductionOf(cv::Size size)
{
    const int side = std::max(size.width, size.height);
    const int factor = std::max(1, (side + kSearchSide - 1) / kSearchSide);
    return factor < 7 ? factor : (factor + 1) / kQuarter * kQuarter; // quarters are fast
}

cv::Mat reduced(const cv::Mat &rgb, int factor)
{
    cv::Mat small = rgb;
    if (factor % kQuarter == 0) {
        shrinkToQuarterByArea(rgb, small);
        factor /= kQuarter;
    }
    if (factor > 1)
        cv::resize(small, small, small.size() / factor, 0, 0, cv::INTER_AREA);
    return small;
}

SmartFinding search(const cv::Mat &rgb, const std::vector<Quad> &expected)
{
    const int factor = reductionOf(rgb.size());
    SmartFinding finding;
    const auto scale = static_cast<float>(factor);
    std::vector<Quad> expectedSmall;
    expectedSmall.reserve(expected.size());
    for (const Quad &quad : expected)
        expectedSmall.push_back(scaled(quad, 1 / scale, 1 / scale));
    for (const RatedQuad &rated : ratedQuads(smartMaps(reduced(rgb, factor)), expectedSmall)) {
        finding.best = std::max(finding.best, rated.confidence);
        const float least = finding.sheets.empty() ? kSmartConfidenceMin : kFurtherConfidenceMin;
        if (rated.confidence < least || finding.sheets.size() == kSheetsMax)
            break; // the best come first
        Quad quad = scaled(rated.quad, scale, scale);
        for (cv::Point2f &corner : quad)
            corner += cv::Point2f(scale - 1, scale - 1) * 0.5F; // from centre to centre of pixels
        const bool isApart =
            std::all_of(finding.sheets.begin(), finding.sheets.end(), [&](const SmartSheet &sheet) {
                const float smaller = std::min(quadArea(sheet.corners), quadArea(quad));
                return sharedArea(sheet.corners, quad) < kSharedMax * smaller;
            });
        if (isApart)
            finding.sheets.push_back(
                {refinedInPicture(rgb, quad, kRoughReach, std::max(1.0F, scale / 2)),
                 rated.confidence});
    }
    std::stable_sort(finding.sheets.begin(), finding.sheets.end(),
                     [](const SmartSheet &a, const SmartSheet &b) {
                         return quadArea(a.corners) > quadArea(b.corners);
                     });
    return finding;
}

} // namespace

std::vector<SmartSheet> sureSheets(const SmartFinding &finding)
{
    std::vector<SmartSheet> sure;
    std::copy_if(finding.sheets.begin(), finding.sheets.end(), std::back_inserter(sure),
                 [](const SmartSheet &sheet) { return sheet.confidence >= kSmartCutMin; });
    return sure;
}

SmartFinding findSheets(const cv::Mat &rgb, const std::vector<Quad> &expected)
{
    if (rgb.type() != CV_8UC3 || rgb.cols < kSideMin || rgb.rows < kSideMin)
        return {};
    try {
        return search(rgb, expected);
    } catch (const std::exception &error) {
        loggedFailure(std::string("sheet search failed: ") + error.what());
        return {};
    }
}

Quad sharpenedCorners(const cv::Mat &rgb, const Quad &corners)
{
    const float step = static_cast<float>(reductionOf(rgb.size())) / 6;
    if (step <= 0.5F || rgb.type() != CV_8UC3)
        return corners;
    return refinedInPicture(rgb, corners, kFineReach, std::max(1.0F, step));
}
