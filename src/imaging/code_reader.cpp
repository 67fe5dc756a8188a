#include "imaging/code_reader.h"

#include "imaging/code_ladder.h"
#include "imaging/failure.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdio>
#include <functional>

namespace {

// No exception leaves the reader: a picture that cannot be searched has no code.
std::string guarded(const std::function<std::string()> &read)
{
    try {
        return read();
    } catch (const std::exception &exception) {
        loggedFailure("code reading failed", exception);
        return {};
    }
}

} // namespace

std::string ZbarDecoder(cv::Mat gray, int type)
{
    return guarded([&] { return scannedCode(gray, type, Symbologies::All); });
}

std::string GetQRInBinImg(cv::Mat binary, int type)
{
    return guarded([&] {
        const std::string text = decodedCode(binary, type);
        return text.empty() ? decodedCode(opened(binary), type) : text;
    });
}

std::string GetQR(cv::Mat gray, int type)
{
    return guarded([&] { return climbLadder(gray, type); });
}

// The red and blue weights are swapped on purpose: the picture comes in B,G,R order.
std::string BarQrDecodePro(cv::Mat image, int type)
{
    std::printf("BarQrDecodePro start\r");
    const std::string text = guarded([&] {
        cv::Mat gray;
        cv::cvtColor(image, gray, cv::COLOR_RGB2GRAY);
        return GetQR(gray, type);
    });
    std::printf("BarQrDecodePro end\r");
    return text;
}

std::string RecogBarQrCodeFromFile(const std::string &path, int type)
{
    std::printf("RecogBarQrCodeFromFile start\r");
    const std::string text = guarded([&] {
        const cv::Mat image = cv::imread(path, cv::IMREAD_COLOR);
        if (image.empty())
            return std::string();
        cv::Mat gray;
        cv::cvtColor(image, gray, cv::COLOR_BGR2GRAY);
        return GetQR(gray, type);
    });
    std::printf("RecogBarQrCodeFromFile end\r");
    return text;
}
