#include "support/sheet_images.h"

#include "stand/codes.h"

#include <opencv2/imgproc.hpp>

#include <cmath>

namespace sheets {

namespace {

const cv::Scalar kInk = cv::Scalar::all(30);
const cv::Scalar kPaper = cv::Scalar::all(245);

// Rows of modules, black where '1' or '#' stands, within a quiet zone of so many pixels.
cv::Mat drawModules(const QStringList &rows, cv::Size module, int quiet)
{
    const cv::Scalar white = cv::Scalar::all(255);
    cv::Mat code(rows.size(), rows.first().size(), CV_8UC3, white);
    for (int y = 0; y < code.rows; ++y) {
        for (int x = 0; x < code.cols; ++x) {
            if (rows[y][x] == '1' || rows[y][x] == '#')
                code.at<cv::Vec3b>(y, x) = {};
        }
    }
    cv::resize(code, code, {}, module.width, module.height, cv::INTER_NEAREST);
    cv::copyMakeBorder(code, code, quiet, quiet, quiet, quiet, cv::BORDER_CONSTANT, white);
    return code;
}

} // namespace

cv::Mat textPage(cv::Size size)
{
    cv::Mat page(size, CV_8UC3, kPaper);
    const int margin = size.width / 10;
    const int step = std::max(size.height / 40, 8);
    cv::rectangle(page, {margin, margin, size.width - 2 * margin, step}, kInk, cv::FILLED);
    cv::RNG random(7);
    for (int y = margin + 3 * step; y + step < size.height - margin; y += 2 * step) {
        for (int x = margin; x < size.width - margin;) {
            const int word = std::min(random.uniform(step, 5 * step), size.width - margin - x);
            for (int stroke = x; stroke + step / 8 < x + word; stroke += step / 2)
                cv::rectangle(page, {stroke, y, std::max(step / 6, 2), step}, kInk, cv::FILLED);
            x += word + step;
        }
    }
    return page;
}

cv::Mat pageWith(const cv::Mat &content, cv::Size size)
{
    cv::Mat page(size, CV_8UC3, cv::Scalar::all(255));
    content.copyTo(page(cv::Rect((size.width - content.cols) / 2, (size.height - content.rows) / 2,
                                 content.cols, content.rows)));
    return page;
}

Scene desk(cv::Size size, int level)
{
    return {cv::Mat(size, CV_8UC3, cv::Scalar::all(level)), {}};
}

void lay(Scene &scene, const cv::Mat &page, cv::Point2f centre, double degrees)
{
    const double radians = degrees * CV_PI / 180;
    const double c = std::cos(radians), s = std::sin(radians);
    const cv::Point2d middle((page.cols - 1) / 2.0, (page.rows - 1) / 2.0);
    const cv::Matx23d toDesk(c, -s, centre.x - c * middle.x + s * middle.y, //
                             s, c, centre.y - s * middle.x - c * middle.y);
    cv::warpAffine(page, scene.picture, toDesk, scene.picture.size(), cv::INTER_LINEAR,
                   cv::BORDER_TRANSPARENT);
    std::array<cv::Point2f, 4> corners;
    const cv::Point2d ends(page.cols - 1, page.rows - 1);
    const cv::Point2d own[] = {{0, 0}, {ends.x, 0}, ends, {0, ends.y}};
    for (size_t i = 0; i < corners.size(); ++i) {
        const cv::Vec2d at = toDesk * cv::Vec3d(own[i].x, own[i].y, 1);
        corners[i] = {static_cast<float>(at[0]), static_cast<float>(at[1])};
    }
    scene.corners.push_back(corners);
}

void shade(cv::Mat &picture, double share)
{
    cv::Mat light(1, picture.cols, CV_32FC3);
    for (int x = 0; x < picture.cols; ++x)
        light.at<cv::Vec3f>(x) =
            cv::Vec3f::all(static_cast<float>(1 - (1 - share) * x / picture.cols));
    for (int y = 0; y < picture.rows; ++y)
        cv::multiply(picture.row(y), light, picture.row(y), 1, picture.type());
}

void addNoise(cv::Mat &picture, double sigma, unsigned seed)
{
    cv::Mat noise(picture.size(), CV_16SC3);
    cv::RNG random(seed);
    random.fill(noise, cv::RNG::NORMAL, 0, sigma);
    cv::add(picture, noise, picture, cv::noArray(), CV_8U);
}

cv::Mat bars(const QByteArray &modules, int moduleWidth, int height)
{
    return drawModules({QString::fromLatin1(modules)}, {moduleWidth, height}, 12 * moduleWidth);
}

cv::Mat barcode(Code code, const std::string &text, int moduleWidth, int height)
{
    const QString digits = QString::fromStdString(text);
    return bars(code == Code::Ean13 ? eanModules(eanWithCheckDigit(digits))
                                    : code128Modules(QByteArray::fromStdString(text)),
                moduleWidth, height);
}

cv::Mat qrCode(int module)
{
    return drawModules(qrModules(), {module, module}, 4 * module);
}

} // namespace sheets
