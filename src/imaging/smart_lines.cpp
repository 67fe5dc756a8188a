#include "imaging/smart_lines.h"

#include "imaging/smart_line_search.h"
#include "imaging/smart_quad.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr size_t kLinesPerFamily = 34;
constexpr float kQuadAreaMin = 0.02F; // of the picture
constexpr float kSupportMin = 0.12F;  // least support of a side
constexpr float kAreaGain = 0.15F;    // of the rating, for each factor of e in area
constexpr size_t kLookedAt = 800;     // combinations, of which many are almost the same
constexpr int kBordersMax = 2;        // sides that may be the picture's border
constexpr float kOutsideMax = 0.12F;  // of the longer side: how far a corner may lie outside

void addBorders(cv::Size size, std::vector<SmartLine> &upright, std::vector<SmartLine> &level)
{
    const auto right = static_cast<float>(size.width - 1);
    const auto bottom = static_cast<float>(size.height - 1);
    const auto border = [](cv::Point2f normal, float distance) {
        SmartLine line;
        line.normal = normal;
        line.along = {-normal.y, normal.x};
        line.origin = distance * normal;
        line.isBorder = true;
        return line;
    };
    upright.push_back(border({1, 0}, 0));
    upright.push_back(border({1, 0}, right));
    level.push_back(border({0, 1}, 0));
    level.push_back(border({0, 1}, bottom));
}

struct Rated
{
    float rating = 0;
    Quad quad;
};

// All that two lines of one family and two of the other enclose.
void combine(const std::vector<SmartLine> &first, const std::vector<SmartLine> &second,
             cv::Size size, std::vector<Rated> &found)
{
    const auto width = static_cast<float>(size.width), height = static_cast<float>(size.height);
    const float outside = kOutsideMax * std::max(width, height);
    const size_t rows = first.size(), columns = second.size();
    std::vector<cv::Point2f> crossings(rows * columns, cv::Point2f(1e6F, 1e6F));
    for (size_t i = 0; i < rows; ++i) {
        for (size_t k = 0; k < columns; ++k) {
            const float turn = first[i].along.cross(second[k].along);
            if (std::fabs(turn) < 0.5F)
                continue;
            const float t = (second[k].origin - first[i].origin).cross(second[k].along) / turn;
            crossings[i * columns + k] = first[i].origin + t * first[i].along;
        }
    }
    const auto isFar = [&](cv::Point2f p) {
        return p.x < -outside || p.y < -outside || p.x > width + outside || p.y > height + outside;
    };
    const auto support = [](const SmartLine &line, cv::Point2f a, cv::Point2f b) {
        return line.support((a - line.origin).dot(line.along), (b - line.origin).dot(line.along));
    };
    struct Rung
    {
        size_t line;
        float support;
    };
    std::vector<Rung> rungs;
    for (size_t i = 0; i < rows; ++i) {
        for (size_t j = i + 1; j < rows; ++j) {
            rungs.clear();
            for (size_t k = 0; k < columns; ++k) {
                const cv::Point2f &a = crossings[i * columns + k], &b = crossings[j * columns + k];
                if (isFar(a) || isFar(b))
                    continue;
                const float along = support(second[k], a, b);
                if (along > kSupportMin)
                    rungs.push_back({k, along});
            }
            for (size_t k = 0; k < rungs.size(); ++k) {
                for (size_t l = k + 1; l < rungs.size(); ++l) {
                    const SmartLine &third = second[rungs[k].line], &fourth = second[rungs[l].line];
                    if (first[i].isBorder + first[j].isBorder + third.isBorder + fourth.isBorder >
                        kBordersMax)
                        continue;
                    const Quad quad{crossings[i * columns + rungs[k].line],
                                    crossings[j * columns + rungs[k].line],
                                    crossings[j * columns + rungs[l].line],
                                    crossings[i * columns + rungs[l].line]};
                    const float area = std::fabs(quadArea(quad));
                    if (area < kQuadAreaMin * width * height || !isConvex(quad))
                        continue;
                    const float sideJ = support(first[j], quad[1], quad[2]);
                    const float sideI = support(first[i], quad[3], quad[0]);
                    const float least =
                        std::min({sideI, sideJ, rungs[k].support, rungs[l].support});
                    if (least < kSupportMin)
                        continue;
                    const float mean = (sideI + sideJ + rungs[k].support + rungs[l].support) / 4;
                    found.push_back(
                        {mean + least + kAreaGain * std::log(area / (width * height)), quad});
                }
            }
        }
    }
}

} // namespace

std::vector<Quad> quadsFromLines(const SmartMaps &maps, size_t most)
{
    const std::vector<SmartLine> lines = strongestLines(maps);
    std::vector<Rated> found;
    if (!lines.empty()) {
        // Families: nearer than 45 degrees to the strongest line, and the others.
        std::vector<SmartLine> first, second;
        const cv::Point2f main = lines.front().along;
        for (const SmartLine &line : lines) {
            std::vector<SmartLine> &family =
                std::fabs(line.along.dot(main)) > std::sqrt(0.5F) ? first : second;
            if (family.size() < kLinesPerFamily)
                family.push_back(line);
        }
        if (std::fabs(main.x) > std::fabs(main.y))
            addBorders(maps.size(), second, first);
        else
            addBorders(maps.size(), first, second);
        combine(first, second, maps.size(), found);
    }
    const auto isBetter = [](const Rated &a, const Rated &b) { return a.rating > b.rating; };
    if (found.size() > kLookedAt) {
        std::nth_element(found.begin(), found.begin() + kLookedAt, found.end(), isBetter);
        found.resize(kLookedAt);
    }
    std::sort(found.begin(), found.end(), isBetter);
    std::vector<Quad> quads;
    for (const Rated &rated : found) {
        if (quads.size() >= most)
            break;
        Quad quad = inOrder(rated.quad);
        if (!containsNear(quads, quad, 4))
            quads.push_back(quad);
    }
    return quads;
}
