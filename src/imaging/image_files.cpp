#include "imaging/image_files.h"

#include "imaging/failure.h"
#include "imaging/save_image.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace {

constexpr int kEncoderQuality = -1;

cv::Mat load(const std::string &path, std::string &error)
{
    cv::Mat image;
    try {
        image = cv::imread(path, cv::IMREAD_COLOR);
    } catch (const std::exception &exception) {
        error = loggedFailure("cannot read " + path, exception);
        return {};
    }
    if (image.empty())
        error = loggedFailure("cannot read " + path);
    return image;
}

std::string resizeFile(const std::string &path, const cv::Mat &image, cv::Size size)
{
    try {
        cv::Mat resized;
        cv::resize(image, resized, size, 0, 0, cv::INTER_LINEAR);
        return encodeImageFile(path, resized, kEncoderQuality, Earlier::IsPartOfTheWork);
    } catch (const std::exception &exception) {
        return loggedFailure("cannot resize " + path, exception);
    }
}

} // namespace

std::string ImageResizeEx(const std::string &path, int width, int height)
{
    std::string error;
    const cv::Mat image = load(path, error);
    return image.empty() ? error : resizeFile(path, image, {width, height});
}

std::string ImageResize(const std::string &target, const std::string &reference)
{
    std::string error;
    const cv::Mat image = load(target, error);
    const cv::Mat model = image.empty() ? cv::Mat() : load(reference, error);
    return model.empty() ? error : resizeFile(target, image, model.size());
}

std::string SavePaintImage(const std::string &base, const std::string &overlay,
                           const std::string &out)
{
    std::string error;
    const cv::Mat below = load(base, error);
    cv::Mat above = below.empty() ? cv::Mat() : load(overlay, error);
    if (above.empty())
        return error;
    try {
        cv::resize(above, above, below.size(), 0, 0, cv::INTER_LINEAR);
        cv::addWeighted(below, 1.0, above, 1.0, 0.0, above);
        return encodeImageFile(out, above, kEncoderQuality);
    } catch (const std::exception &exception) {
        return loggedFailure("cannot add " + overlay, exception);
    }
}
