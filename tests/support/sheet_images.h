#pragma once

#include <QByteArray>

#include <opencv2/core/mat.hpp>

#include <array>
#include <string>
#include <vector>

/// Pictures of sheets and codes with known contents, drawn for tests. All are 8 bits with three
/// channels; R,G,B and B,G,R look alike because everything drawn is gray.
namespace sheets {

/// A desk with the sheets laid on it so far.
struct Scene
{
    cv::Mat picture;
    std::vector<std::array<cv::Point2f, 4>> corners; ///< per sheet: top left, then clockwise
};

enum class Code { Ean13, Code128 };

/// White page with lines of dark text blocks and a heavy bar along its top, `size` 100 or more.
cv::Mat textPage(cv::Size size);

/// White page of `size` with `content` in its middle.
cv::Mat pageWith(const cv::Mat &content, cv::Size size);

/// An empty desk of gray `level`.
Scene desk(cv::Size size, int level = 60);

/// Lays `page` on the desk, its centre at `centre`, turned clockwise by `degrees`.
void lay(Scene &scene, const cv::Mat &page, cv::Point2f centre, double degrees);

/// Dims the picture linearly from left (full light) to right (`share` of it left).
void shade(cv::Mat &picture, double share);

/// Adds noise of the given standard deviation; equal seeds give equal noise.
void addNoise(cv::Mat &picture, double sigma, unsigned seed = 1);

/// A barcode with quiet zones; of `modules`, '1' is black, each `moduleWidth` pixels wide.
cv::Mat bars(const QByteArray &modules, int moduleWidth, int height);

/// The same of `text`: 12 digits for EAN-13, ASCII for Code 128.
cv::Mat barcode(Code code, const std::string &text, int moduleWidth, int height);

/// The stand's QR code with a quiet zone; `module` pixels a module.
cv::Mat qrCode(int module);

} // namespace sheets
