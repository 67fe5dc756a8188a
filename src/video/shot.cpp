#include "video/shot.h"

#include "app/choices.h"
#include "app/log.h"
#include "imaging/assist_image.h"
#include "imaging/combine.h"
#include "imaging/document_finder.h"
#include "imaging/failure.h"
#include "imaging/smart_finder.h"
#include "video/camera_thread.h"

#include <opencv2/imgproc.hpp>

#include <utility>

namespace {

CaptureResult failed(std::string cause)
{
    CaptureResult result;
    result.error = std::move(cause);
    return result;
}

// Captures that cannot even begin.
CaptureResult refusal(const char *cause)
{
    WriteLog(cause);
    return failed(cause);
}

bool needsOutlines(int cropMode)
{
    return cropMode == AutomaticCrop || cropMode == MultiGraphCrop;
}

// All pixels of the frame, as the user wants them by now: he may have turned the picture or chosen
// another crop since it came. What is cut out depends on the whole picture, never on how much of it
// the view needed.
FramePtr wholeSearched(const FramePtr &latest, int angle, int cropMode)
{
    const FramePtr whole = CameraThread::wholeFrame(latest, angle);
    const bool isSearched = latest == whole && latest && latest->searchedFor == cropMode;
    if (!whole || isSearched)
        return whole;
    const auto frame = std::make_shared<Frame>(*whole);
    if (cropMode == SmartCrop && latest->searchedFor == cropMode && latest->angle == frame->angle) {
        frame->sheets = latest->sheets;
        frame->areSheetsFixed = latest->areSheetsFixed;
    }
    if (!needsOutlines(cropMode))
        return frame;
    if (auto detection = DocumentFinder().find(frame->pixels, cropMode)) {
        frame->outlines = std::move(detection->outlines);
        frame->documentsLeftOut = detection->leftOut;
    } else if (latest->angle == frame->angle && latest->searchedFor == cropMode) {
        frame->outlines = latest->outlines; // as long as nothing is found, what was found last
        frame->documentsLeftOut = latest->documentsLeftOut;
    }
    frame->searchedFor = cropMode;
    return frame;
}

CaptureOptions commonOptions(const Shot &shot)
{
    CaptureOptions options;
    options.nameByCode = shot.isNamedByCode;
    options.codeType = shot.codeType;
    options.save = shot.save;
    return options;
}

CaptureResult takeCombined(const Shot &shot, const std::string &path)
{
    const FramePtr frame = wholeSearched(shot.frame, shot.angle, NoCrop);
    const FramePtr assist =
        shot.assist ? CameraThread::wholeFrame(shot.assist, shot.assist->angle) : nullptr;
    if (!frame || !assist)
        return refusal("a camera delivers no picture to combine");
    CaptureOptions options = commonOptions(shot);
    options.isGivenUp = true;
    cv::Mat combined = combineFrames(frame->pixels, assist->pixels, shot.assistPlace);
    cv::cvtColor(combined, combined, cv::COLOR_BGR2RGB);
    return captureFrame(combined, path, options);
}

CaptureResult takeMain(const Shot &shot, const std::string &path)
{
    const FramePtr frame = wholeSearched(shot.frame, shot.angle, shot.cropMode);
    if (!frame)
        return refusal("the camera delivers no picture");
    CaptureOptions options = commonOptions(shot);
    options.cropMode = shot.cropMode;
    options.outlines = frame->outlines;
    options.documentsLeftOut = frame->documentsLeftOut;
    options.areSheetsGiven = frame->areSheetsFixed;
    if (frame->areSheetsFixed) {
        options.sheets = frame->sheets;
    } else if (shot.cropMode == SmartCrop) { // in this very frame, whatever was shown before
        for (const SmartSheet &sheet : sureSheets(findSheets(frame->pixels, frame->sheets)))
            options.sheets.push_back(sheet.corners);
    }
    options.manualRect = scaledManualRect(shot.manualRect, shot.manualFrame, frame->pixels.size());
    options.isGivenUp = frame->compressed != nullptr; // then decoded for this capture alone
    return captureFrame(frame->pixels, path, options);
}

} // namespace

CaptureResult takeShot(const Shot &shot, const std::string &path)
{
    try {
        return shot.isCombined ? takeCombined(shot, path) : takeMain(shot, path);
    } catch (const std::exception &exception) {
        return failed(loggedFailure("cannot process the picture for " + path, exception));
    }
}

CaptureResult takeAssistShot(const FramePtr &frame, const std::string &path,
                             const SaveOptions &save)
{
    try {
        const FramePtr whole = frame ? CameraThread::wholeFrame(frame, frame->angle) : nullptr;
        if (!whole)
            return refusal("the camera delivers no picture");
        cv::Mat image;
        cv::cvtColor(whole->pixels, image, cv::COLOR_RGB2BGR);
        CaptureResult result;
        result.error = SaveCamTwoImage(path, std::move(image), save);
        if (result.error.empty())
            result.files.push_back(path);
        return result;
    } catch (const std::exception &exception) {
        return failed(loggedFailure("cannot process the picture for " + path, exception));
    }
}
