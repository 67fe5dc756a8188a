#include "imaging/capture.h"

#include "app/choices.h"
#include "imaging/code_file_name.h"
#include "imaging/failure.h"
#include "imaging/naming_code.h"
#include "imaging/path_parts.h"
#include "imaging/save_image.h"
#include "imaging/smart_cut.h"
#include "imaging/smart_finder.h"
#include "imaging/straighten.h"

#include <QDebug>

#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <unistd.h>

namespace {

constexpr size_t kFileNameBytesMax = 255;
constexpr size_t kSuffixBytes = 2; // "_7"
constexpr int kSideStep = 4;
constexpr int kSwappedRows = 8;
constexpr const char *kNoSheet = "No sheet was seen clearly enough, the whole picture was saved";

void append(std::string &text, const std::string &more)
{
    if (!text.empty() && !more.empty())
        text += "; ";
    text += more;
}

/// One capture under way: where the next picture goes and what was written so far.
class Job
{
public:
    Job(const std::string &path, const CaptureOptions &options)
        : m_path(path)
        , m_options(options)
    {
    }

    /// Saves picture number `index`, renaming it first when a code is wanted and found. `image`
    /// is changed.
    void save(cv::Mat &image, int index, const char *renamedMessage)
    {
        if (m_options.nameByCode)
            renameByCode(image, renamedMessage);
        std::string target = m_path;
        if (index > 0)
            target = numbered(index);
        while (std::count(result.files.begin(), result.files.end(), target) != 0)
            target =
                fileFolder(target) + fileBaseName(target) + "_" + ending(); // codes may collide
        const bool replaces = m_isRenamed && access(target.c_str(), F_OK) == 0;
        const std::string error = saveImage(target, image, m_options.save, false);
        if (error.empty())
            result.files.push_back(target);
        if (error.empty() && replaces)
            append(result.note, "An earlier file was replaced: " + target);
        append(result.error, error);
    }

    CaptureResult result;

private:
    // With its dot, as it is written.
    std::string ending() const { return m_path.substr(m_path.size() - fileEnding(m_path).size()); }

    std::string numbered(int index) const
    {
        return fileFolder(m_path) + fileBaseName(m_path) + "_" + std::to_string(index) + ending();
    }

    void renameByCode(const cv::Mat &image, const char *renamedMessage)
    {
        const NamingCode code = readNamingCode(image, m_options.codeType);
        result.code = code.isCertain ? code.text : std::string();
        result.codes.push_back(result.code);
        if (!code.isCertain) {
            const std::string note =
                (code.text.empty() ? "No readable code, the name is: "
                                   : "Code not certain: \"" + code.text + "\", the name is: ") +
                fileBaseName(m_path);
            if (result.note.find(note) == std::string::npos) // several documents share the name
                append(result.note, note);
            return;
        }
        const CodeFileName name =
            codeFileName(result.code, kFileNameBytesMax - kSuffixBytes - ending().size());
        if (name.altered)
            append(result.note, "The code \"" + result.code +
                                    "\" is no file name, used instead: \"" +
                                    (name.name.empty() ? fileBaseName(m_path) : name.name) + "\"");
        if (name.name.empty())
            return;
        m_path = fileFolder(m_path) + name.name + ending();
        m_isRenamed = true;
        qDebug() << renamedMessage << m_path.c_str();
    }

    std::string m_path;
    bool m_isRenamed = false; // after a code; the user does not know the name beforehand
    const CaptureOptions &m_options;
};

// Of documents with exactly equal areas all slots hold the last one.
void tellMissing(const CaptureOptions &options, Job &job)
{
    const std::vector<Outline> &all = options.outlines;
    long repeats = 0;
    for (auto outline = all.begin(); outline != all.end(); ++outline)
        repeats += std::count(all.begin(), outline, *outline) > 0 ? 1 : 0;
    if (repeats > 0)
        append(job.result.note,
               "Documents of exactly equal size, move one a little; not captured: " +
                   std::to_string(repeats));
    if (options.documentsLeftOut > 0)
        append(job.result.note, "More than eight documents, the smallest were not captured: " +
                                    std::to_string(options.documentsLeftOut));
}

void captureDocuments(const cv::Mat &rgb, const CaptureOptions &options, Job &job)
{
    if (std::min(rgb.cols, rgb.rows) < kSideStep)
        job.result.error = loggedFailure("the picture is too small to hold a document");
    else if (options.outlines.empty())
        job.result.error = loggedFailure("no document was found");
    tellMissing(options, job);
    for (size_t i = 0; i < options.outlines.size(); ++i) {
        std::string error;
        cv::Mat page = cutDocument(rgb, options.outlines[i], error);
        if (page.empty())
            append(job.result.error, "document " + std::to_string(i + 1) + ": " + error);
        else
            job.save(page, static_cast<int>(i), "newPath1:");
    }
}

// In its own memory, a few rows at a time: to fill fresh memory takes longer than to convert.
void swapRedAndBlue(cv::Mat &image)
{
    const int bands = (image.rows + kSwappedRows - 1) / kSwappedRows;
    cv::parallel_for_(cv::Range(0, bands), [&image](const cv::Range &range) {
        cv::Mat swapped;
        for (int band = range.start; band < range.end; ++band) {
            const int top = band * kSwappedRows;
            cv::Mat rows = image.rowRange(top, std::min(top + kSwappedRows, image.rows));
            cv::cvtColor(rows, swapped, cv::COLOR_RGB2BGR);
            swapped.copyTo(rows);
        }
    });
}

void captureWhole(const cv::Mat &rgb, const CaptureOptions &options, Job &job)
{
    cv::Rect part(cv::Point(), rgb.size());
    if (options.cropMode == ManualCrop)
        part = clampedManualRect(options.manualRect, rgb.size());
    if (part.width <= 0 || part.height <= 0) {
        const bool isSmall = !(options.manualRect & cv::Rect(cv::Point(), rgb.size())).empty();
        job.result.error = loggedFailure(isSmall ? "the crop rectangle is smaller than 4 x 4 pixels"
                                                 : "the crop rectangle lies outside of the frame");
        return;
    }
    cv::Mat image;
    if (options.isGivenUp && part.size() == rgb.size()) {
        image = rgb;
        swapRedAndBlue(image);
    } else {
        cv::cvtColor(rgb(part), image, cv::COLOR_RGB2BGR);
    }
    job.save(image, 0, "newPath2:");
}

void captureSheets(const cv::Mat &rgb, const CaptureOptions &options, Job &job)
{
    if (options.sheets.empty()) {
        captureWhole(rgb, options, job);
        append(job.result.note, kNoSheet);
        return;
    }
    for (size_t i = 0; i < options.sheets.size(); ++i) {
        const Quad corners =
            options.areSheetsGiven ? options.sheets[i] : sharpenedCorners(rgb, options.sheets[i]);
        std::string error;
        cv::Mat page = cutSheet(rgb, corners, error);
        if (page.empty())
            append(job.result.error, "document " + std::to_string(i + 1) + ": " + error);
        else
            job.save(page, static_cast<int>(i), "newPath1:");
    }
}

} // namespace

CaptureResult captureFrame(const cv::Mat &rgb, const std::string &path,
                           const CaptureOptions &options)
{
    Job job(path, options);
    try {
        if (rgb.empty() || rgb.type() != CV_8UC3)
            job.result.error = loggedFailure("there is no picture to capture");
        else if (options.cropMode == AutomaticCrop || options.cropMode == MultiGraphCrop)
            captureDocuments(rgb, options, job);
        else if (options.cropMode == SmartCrop)
            captureSheets(rgb, options, job);
        else
            captureWhole(rgb, options, job);
    } catch (const std::exception &exception) {
        append(job.result.error, loggedFailure("capture failed", exception));
    }
    return std::move(job.result);
}

cv::Rect clampedManualRect(cv::Rect rect, cv::Size frame)
{
    rect.x = std::max(rect.x, 0);
    rect.y = std::max(rect.y, 0);
    rect.width = std::min(rect.width, frame.width - rect.x) / kSideStep * kSideStep;
    rect.height = std::min(rect.height, frame.height - rect.y) / kSideStep * kSideStep;
    return rect;
}

cv::Rect scaledManualRect(cv::Rect rect, cv::Size drawn, cv::Size frame)
{
    if (drawn.empty() || drawn == frame)
        return rect;
    const double x = double(frame.width) / drawn.width;
    const double y = double(frame.height) / drawn.height;
    return {cv::Point(cvRound(rect.x * x), cvRound(rect.y * y)),
            cv::Point(cvRound(rect.br().x * x), cvRound(rect.br().y * y))};
}
