#include "imaging/save_image.h"

#include "app/state.h"
#include "imaging/colour_effects.h"
#include "imaging/failure.h"
#include "imaging/file_writer.h"
#include "imaging/jpeg_encoder.h"
#include "imaging/path_parts.h"
#include "imaging/pdf.h"
#include "imaging/trim.h"

#include <QDebug>

#include <opencv2/imgcodecs.hpp>

#include <algorithm>

namespace {

constexpr int kJpegSideMax = 65500; // what the encoder takes

void applyEffects(cv::Mat &image, const SaveOptions &options, bool raw)
{
    if (options.trim && options.colorMode != ColorOptimization && !raw) {
        FN_DeleteBlackEdge(image);
        qDebug() << "FN_DeleteBlackEdge";
    }
    if (options.colorMode == ColorOptimization && !raw) {
        FN_DeleteBackcolor(image);
        qDebug() << "FN_DeleteBackcolor...";
    }
    if (options.colorMode == ColorGray)
        grayInPlace(image);
    if (options.colorMode == ColorBinarization)
        binarizeInPlace(image);
}

} // namespace

SaveOptions currentSaveOptions()
{
    return {colorMode, isDelBlackedge, ImgQuality};
}

std::string encodeImageFile(const std::string &path, const cv::Mat &image, int quality,
                            Earlier earlier)
{
    std::vector<uchar> bytes;
    const std::string ending = fileEnding(path);
    const bool isJpeg = ending == ".jpg" || ending == ".jpeg";
    if (isJpeg && std::max(image.cols, image.rows) > kJpegSideMax)
        return loggedFailure("cannot encode " + path +
                             ": a JPEG picture has at most 65500 pixels a side");
    try {
        const bool good =
            isJpeg ? encodeJpeg(image, quality, bytes) : cv::imencode(ending, image, bytes);
        if (!good)
            return loggedFailure("cannot encode " + path);
    } catch (const std::exception &exception) {
        return loggedFailure("cannot encode " + path, exception);
    }
    std::string error;
    writeWhole(path, {bytes.data(), bytes.size()}, error, earlier);
    return error;
}

std::string saveImage(const std::string &path, cv::Mat image, const SaveOptions &options, bool raw)
{
    try {
        applyEffects(image, options, raw);
    } catch (const std::exception &exception) {
        return loggedFailure("cannot process the picture for " + path, exception);
    }
    if (fileEnding(path) == ".pdf")
        return TempImgToPdf(path, image);
    return encodeImageFile(path, image, options.quality);
}

std::string SaveImage(std::string path, cv::Mat image, bool raw)
{
    return saveImage(path, image, currentSaveOptions(), raw);
}
