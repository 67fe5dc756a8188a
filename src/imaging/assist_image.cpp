#include "imaging/assist_image.h"

#include "app/choices.h"
#include "imaging/failure.h"
#include "imaging/path_parts.h"
#include "imaging/pdf.h"
#include "imaging/save_image.h"

#include <opencv2/imgproc.hpp>

namespace {

constexpr int kWhite = 255;
constexpr int kNeighbourhood = 179;
constexpr double kBelowMean = 19.0;

cv::Mat coloured(const cv::Mat &image, int colorMode)
{
    if (colorMode != ColorGray && colorMode != ColorBinarization)
        return image;
    cv::Mat gray;
    cv::cvtColor(image, gray, cv::COLOR_BGR2GRAY);
    if (colorMode == ColorBinarization)
        cv::adaptiveThreshold(gray, gray, kWhite, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY,
                              kNeighbourhood, kBelowMean);
    return gray;
}

} // namespace

std::string SaveCamTwoImage(std::string path, cv::Mat image, const SaveOptions &save)
{
    try {
        const cv::Mat picture = coloured(image, save.colorMode);
        return fileEnding(path) == ".pdf" ? TempImgToPdf(path, picture)
                                          : encodeImageFile(path, picture, save.quality);
    } catch (const std::exception &exception) {
        return loggedFailure("cannot process the picture for " + path, exception);
    }
}
