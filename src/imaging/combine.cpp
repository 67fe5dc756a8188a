#include "imaging/combine.h"

#include "imaging/failure.h"
#include "imaging/jpeg_size.h"
#include "imaging/save_image.h"

#include <QFile>

#include <opencv2/core/utility.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <atomic>
#include <functional>
#include <unistd.h>

namespace {

constexpr size_t kPagesMin = 2, kPagesMax = 4;
constexpr int kSideMax = 32000; // pixels; a JPEG that claims more is damaged
const cv::Scalar kWhite = cv::Scalar::all(255);

struct Layout
{
    cv::Size canvas;
    std::vector<cv::Rect> places;
};

Layout layOut(const std::vector<cv::Size> &pages, MergeDirection direction, int gap)
{
    const bool isVertical = direction == MergeDirection::Vertical;
    Layout layout;
    cv::Point corner(gap, gap);
    int across = 0;
    for (const cv::Size &page : pages) {
        layout.places.emplace_back(corner, page);
        (isVertical ? corner.y : corner.x) += (isVertical ? page.height : page.width) + gap;
        across = std::max(across, (isVertical ? page.width : page.height) + 2 * gap);
    }
    layout.canvas = isVertical ? cv::Size(across, corner.y) : cv::Size(corner.x, across);
    return layout;
}

std::vector<uchar> bytesOf(const std::string &path)
{
    QFile file(QString::fromStdString(path));
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return {bytes.begin(), bytes.end()};
}

// As many at a time as there are processors.
void forEachPage(size_t count, const std::function<void(size_t)> &work)
{
    cv::parallel_for_({0, static_cast<int>(count)}, [&](const cv::Range &range) {
        for (int i = range.start; i < range.end; ++i)
            work(static_cast<size_t>(i));
    });
}

// Decodes a JPEG file into `place`, whose pixels mean nothing when it returns false.
bool decodeInto(cv::Mat place, const std::vector<uchar> &bytes)
{
    // imdecode() returns its target as it was when it fails at the file's head. A page that really
    // begins so goes the longer way of damaged ones.
    const cv::Vec3b untouched(1, 254, 2);
    place.at<cv::Vec3b>(0, 0) = untouched;
    cv::Mat target = place;
    const cv::Mat page = cv::imdecode(bytes, cv::IMREAD_COLOR, &target);
    return page.data == place.data && page.at<cv::Vec3b>(0, 0) != untouched;
}

// Decodes the pages straight into their places: a merge then takes the memory of its result and
// copies nothing. Only JPEG files, as captured pages are, tell their size beforehand; empty when a
// page is none or turns out to be damaged or of another size.
cv::Mat decodedInPlace(const std::vector<std::string> &files, const MergeJob &job)
{
    std::vector<std::vector<uchar>> bytes;
    std::vector<cv::Size> sizes;
    for (const std::string &file : files) {
        bytes.push_back(bytesOf(file));
        sizes.push_back(jpegSize(bytes.back()));
        if (sizes.back().empty() || std::max(sizes.back().width, sizes.back().height) > kSideMax)
            return {};
    }
    const Layout layout = layOut(sizes, job.direction, job.gap);
    cv::Mat canvas(layout.canvas, CV_8UC3, kWhite);
    std::atomic<bool> isGood{true};
    forEachPage(files.size(), [&](size_t i) {
        if (!decodeInto(canvas(layout.places[i]), bytes[i]))
            isGood = false;
    });
    return isGood ? canvas : cv::Mat();
}

// Empty when a page cannot be read.
cv::Mat mergedFiles(const MergeJob &job, std::string &cause)
{
    std::vector<std::string> files = job.files;
    files.resize(std::min(files.size(), kPagesMax));
    if (cv::Mat canvas = decodedInPlace(files, job); !canvas.empty())
        return canvas;
    std::vector<cv::Mat> pages(files.size());
    forEachPage(files.size(), [&](size_t i) { pages[i] = cv::imread(files[i], cv::IMREAD_COLOR); });
    for (size_t i = 0; i < pages.size(); ++i) {
        if (pages[i].empty()) {
            cause = loggedFailure("cannot read the page " + files[i]);
            return {};
        }
    }
    return pastePages(pages, job.direction, job.gap);
}

} // namespace

cv::Mat combineFrames(const cv::Mat &mainRgb, const cv::Mat &assistRgb, cv::Rect place)
{
    if (mainRgb.empty() || assistRgb.empty())
        return {};
    try {
        cv::Mat canvas;
        cv::cvtColor(mainRgb, canvas, cv::COLOR_RGB2BGR);
        const cv::Rect visible = place & cv::Rect(cv::Point(), canvas.size());
        if (visible.empty())
            return canvas;
        cv::Mat assist;
        cv::resize(assistRgb, assist, place.size(), 0, 0, cv::INTER_LINEAR);
        cv::Mat target = canvas(visible);
        cv::cvtColor(assist(visible - place.tl()), target, cv::COLOR_RGB2BGR);
        return canvas;
    } catch (const std::exception &exception) {
        loggedFailure("combining two pictures failed", exception);
        return {};
    }
}

cv::Mat pastePages(const std::vector<cv::Mat> &pages, MergeDirection direction, int gap)
{
    std::vector<cv::Size> sizes;
    sizes.reserve(pages.size());
    for (const cv::Mat &page : pages)
        sizes.push_back(page.size());
    const Layout layout = layOut(sizes, direction, gap);
    cv::Mat canvas(layout.canvas, CV_8UC3, kWhite);
    for (size_t i = 0; i < pages.size(); ++i)
        pages[i].copyTo(canvas(layout.places[i]));
    return canvas;
}

MergeResult mergeImageFiles(const MergeJob &job, std::string &cause)
{
    cause.clear();
    if (job.files.size() < kPagesMin) {
        cause = loggedFailure("there are too few pages");
        return MergeTooFewPages;
    }
    try {
        const cv::Mat canvas = mergedFiles(job, cause);
        if (canvas.empty())
            return MergeUnreadablePage;
        cause = saveImage(job.outPath, canvas, job.save, true);
        if (!cause.empty())
            return MergeNotSaved;
    } catch (const std::exception &exception) {
        cause = loggedFailure("merging failed", exception);
        return MergeNotSaved;
    }
    for (const std::string &file : job.files) {
        if (file != job.outPath && unlink(file.c_str()) != 0 && errno != ENOENT)
            loggedFailure(withErrno("cannot remove the page " + file));
    }
    return MergeDone;
}
