#include "app/state.h"
#include "imaging/smart_finder.h"
#include "imaging/smart_quad.h"
#include "tests/imaging/plain_finder.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

// sheet_figures FOLDER [WORST]: how well sheets are found in the photographs of a folder.
// FOLDER/corners.json maps each picture's name to its sheet's four corners, [x, y] in pixels.
// Prints mean overlap (intersection over union), the share above 0.9 and above 0.7, the time at
// 8 megapixels beside the plain document search, sheets that this finds worse, and the worst.

namespace {

constexpr int kRounds = 5;
constexpr float kRight = 0.9F, kLoss = 0.02F;
const cv::Size kEightMegapixels(3264, 2448);

struct Result
{
    std::string name;
    float smart = 0, plain = 0, confidence = 0;
};

double shortestMs(const std::function<void()> &work)
{
    double best = 1e9;
    for (int i = 0; i < kRounds; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> spent =
            std::chrono::steady_clock::now() - start;
        best = std::min(best, spent.count());
    }
    return best;
}

Quad cornersFrom(const QJsonArray &list)
{
    Quad quad;
    for (int i = 0; i < 4; ++i) {
        const QJsonArray point = list[i].toArray();
        quad[static_cast<size_t>(i)] =
            cv::Point2f(cv::Point2d(point[0].toDouble(), point[1].toDouble()));
    }
    return inOrder(quad);
}

Result looked(const std::string &name, const cv::Mat &rgb, const Quad &truth)
{
    Result result;
    result.name = name;
    const SmartFinding found = findSheets(rgb);
    if (!found.sheets.empty())
        result.smart = overlap(sharpenedCorners(rgb, found.sheets.front().corners), truth);
    result.confidence = found.best;
    if (const auto plain = plainFind(rgb, AutomaticCrop)) {
        Quad quad;
        std::copy(plain->outlines[0].begin(), plain->outlines[0].end(), quad.begin());
        result.plain = overlap(inOrder(quad), truth);
    }
    return result;
}

void printRow(const char *title, const std::vector<Result> &results, float Result::*value)
{
    double sum = 0;
    int above9 = 0, above7 = 0;
    for (const Result &result : results) {
        sum += result.*value;
        above9 += result.*value > 0.9F ? 1 : 0;
        above7 += result.*value > 0.7F ? 1 : 0;
    }
    const auto count = static_cast<double>(results.size());
    std::printf("%-8s mean %.3f   above 0.9: %3.0f %%   above 0.7: %3.0f %%\n", title, sum / count,
                100 * above9 / count, 100 * above7 / count);
}

} // namespace

int main(int argc, char **argv)
{
    const QDir folder(QString::fromLocal8Bit(argc > 1 ? argv[1] : "."));
    QFile file(folder.filePath("corners.json"));
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "usage: sheet_figures FOLDER [WORST], with FOLDER/corners.json\n");
        return 2;
    }
    const QJsonObject corners = QJsonDocument::fromJson(file.readAll()).object();
    const size_t worst = argc > 2 ? std::stoul(argv[2]) : 10;
    std::vector<Result> results;
    double smartMs = 0, plainMs = 0;
    for (const QString &name : corners.keys()) {
        cv::Mat picture = cv::imread(folder.filePath(name).toStdString(),
                                     cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
        if (picture.empty()) {
            std::fprintf(stderr, "cannot read %s\n", name.toLocal8Bit().constData());
            continue;
        }
        cv::cvtColor(picture, picture, cv::COLOR_BGR2RGB);
        results.push_back(
            looked(name.toStdString(), picture, cornersFrom(corners[name].toArray())));
        if (picture.cols < picture.rows)
            cv::rotate(picture, picture, cv::ROTATE_90_CLOCKWISE);
        cv::resize(picture, picture, kEightMegapixels, 0, 0, cv::INTER_AREA);
        smartMs += shortestMs([&] { findSheets(picture); });
        plainMs += shortestMs([&] { plainFind(picture, AutomaticCrop); });
    }
    if (results.empty())
        return 1;
    printRow("smart", results, &Result::smart);
    printRow("plain", results, &Result::plain);
    const auto count = static_cast<double>(results.size());
    std::printf("8 megapixels, shortest of %d: smart %.1f ms, plain %.1f ms\n", kRounds,
                smartMs / count, plainMs / count);
    for (const Result &result : results) {
        if (result.plain > kRight && result.smart < result.plain - kLoss)
            std::printf("worse than plain: %s %.3f instead of %.3f\n", result.name.c_str(),
                        result.smart, result.plain);
    }
    std::sort(results.begin(), results.end(),
              [](const Result &a, const Result &b) { return a.smart < b.smart; });
    for (size_t i = 0; i < std::min(worst, results.size()); ++i)
        std::printf("%.3f (confidence %.2f, plain %.3f) %s\n", results[i].smart,
                    results[i].confidence, results[i].plain, results[i].name.c_str());
    return 0;
}
