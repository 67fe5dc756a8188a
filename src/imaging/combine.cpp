#include "imaging/combine.h"

#include "imaging/failure.h"
#include "imaging/save_image.h"

#include <opencv2/core/utility.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <unistd.h>

namespace {

constexpr size_t kPagesMin = 2, kPagesMax = 4;
const cv::Scalar kWhite = cv::Scalar::all(255);

// Reads the pages, as many at a time as there are processors, and pastes them; empty when one of
// them cannot be read.
cv::Mat mergedFiles(const MergeJob &job, std::string &cause)
{
    std::vector<cv::Mat> pages(std::min(job.files.size(), kPagesMax));
    cv::parallel_for_({0, static_cast<int>(pages.size())}, [&](const cv::Range &range) {
        for (auto i = static_cast<size_t>(range.start); i < static_cast<size_t>(range.end); ++i)
            pages[i] = cv::imread(job.files[i], cv::IMREAD_COLOR);
    });
    for (size_t i = 0; i < pages.size(); ++i) {
        if (pages[i].empty()) {
            cause = loggedFailure("cannot read the page " + job.files[i]);
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
        loggedFailure(std::string("combining two pictures failed: ") + exception.what());
        return {};
    }
}

cv::Mat pastePages(const std::vector<cv::Mat> &pages, MergeDirection direction, int gap)
{
    const bool isVertical = direction == MergeDirection::Vertical;
    int along = gap, across = 0;
    for (const cv::Mat &page : pages) {
        along += (isVertical ? page.rows : page.cols) + gap;
        across = std::max(across, isVertical ? page.cols : page.rows);
    }
    across += 2 * gap;
    cv::Mat canvas(isVertical ? along : across, isVertical ? across : along, CV_8UC3, kWhite);
    cv::Point corner(gap, gap);
    for (const cv::Mat &page : pages) {
        page.copyTo(canvas(cv::Rect(corner, page.size())));
        (isVertical ? corner.y : corner.x) += (isVertical ? page.rows : page.cols) + gap;
    }
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
        cause = loggedFailure(std::string("merging failed: ") + exception.what());
        return MergeNotSaved;
    }
    for (const std::string &file : job.files) {
        if (file != job.outPath && unlink(file.c_str()) != 0 && errno != ENOENT)
            loggedFailure(withErrno("cannot remove the page " + file));
    }
    return MergeDone;
}
