#include "support/sheet_images.h"

#include <opencv2/imgproc.hpp>

#include <cmath>

namespace sheets {

namespace {

const cv::Scalar kInk = cv::Scalar::all(30);
const cv::Scalar kPaper = cv::Scalar::all(245);

// Widths of bars and gaps of one digit, bar first in the right half and gap first in the left.
constexpr const char *kEanWidths[] = {"3211", "2221", "2122", "1411", "1132",
                                      "1231", "1114", "1312", "1213", "3112"};
constexpr const char *kEanParities[] = {"LLLLLL", "LLGLGG", "LLGGLG", "LLGGGL", "LGLLGG",
                                        "LGGLLG", "LGGGLL", "LGLGLG", "LGLGGL", "LGGLGL"};
constexpr const char *kItfWidths[] = {"11331", "31113", "13113", "33111", "11313",
                                      "31311", "13311", "11133", "31131", "13131"};
constexpr const char *kCode39Characters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ-. *";
constexpr const char *kCode39Widths[] = {
    "111331311", "311311113", "113311113", "313311111", "111331113", "311331111", "113331111",
    "111311313", "311311311", "113311311", "311113113", "113113113", "313113111", "111133113",
    "311133111", "113133111", "111113313", "311113311", "113113311", "111133311", "311111133",
    "113111133", "313111131", "111131133", "311131131", "113131131", "111111333", "311111331",
    "113111331", "111131331", "331111113", "133111113", "333111111", "131131113", "331131111",
    "133131111", "131111313", "331111311", "133111311", "131131311"};
// Code set B: the values 0 to 94 stand for the characters from the blank on.
constexpr const char *kCode128Widths[] = {
    "212222", "222122", "222221", "121223", "121322", "131222", "122213", "122312", "132212",
    "221213", "221312", "231212", "112232", "122132", "122231", "113222", "123122", "123221",
    "223211", "221132", "221231", "213212", "223112", "312131", "311222", "321122", "321221",
    "312212", "322112", "322211", "212123", "212321", "232121", "111323", "131123", "131321",
    "112313", "132113", "132311", "211313", "231113", "231311", "112133", "112331", "132131",
    "113123", "113321", "133121", "313121", "211331", "231131", "213113", "213311", "213131",
    "311123", "311321", "331121", "312113", "312311", "332111", "314111", "221411", "431111",
    "111224", "111422", "121124", "121421", "141122", "141221", "112214", "112412", "122114",
    "122411", "142112", "142211", "241211", "221114", "413111", "241112", "134111", "111242",
    "121142", "121241", "114212", "124112", "124211", "411212", "421112", "421211", "212141",
    "214121", "412121", "111143", "111341", "131141", "114113", "114311", "411113", "411311",
    "113141", "114131", "311141", "411131"};
constexpr int kCode128StartB = 104;
constexpr const char *kCode128StartBWidths = "211214";
constexpr const char *kCode128StopWidths = "2331112";
constexpr int kQuietModules = 12;

constexpr const char *kQr[] = {
    "#######....##.#######", "#.....#.###...#.....#", "#.###.#.####..#.###.#",
    "#.###.#.#..##.#.###.#", "#.###.#..##.#.#.###.#", "#.....#...#.#.#.....#",
    "#######.#.#.#.#######", "........#............", "#.....#.#.#####..###.",
    "...##...#..#..###....", "##.######...##...###.", "#..##..#.##..#...##..",
    "#####.##..###.####.##", "........####....#.##.", "#######..#..#.##.#.#.",
    "#.....#.....#.#..##..", "#.###.#...#.#.##.#.##", "#.###.#..#.#...####..",
    "#.###.#...#####.#####", "#.....#..##....####..", "#######.#...###.#..#."};

int digit(char c)
{
    return c - '0';
}

std::string eanWidths(std::string text)
{
    int sum = 0;
    for (size_t i = 0; i < text.size(); ++i)
        sum += digit(text[i]) * (i % 2 == 0 ? 1 : 3);
    text += static_cast<char>('0' + (10 - sum % 10) % 10);
    const std::string parities = kEanParities[digit(text[0])];
    std::string widths = "111";
    for (size_t i = 1; i < text.size(); ++i) {
        if (i == 7)
            widths += "11111";
        const std::string plain = kEanWidths[digit(text[i])];
        const bool isMirrored = i < 7 && parities[i - 1] == 'G';
        widths += isMirrored ? std::string(plain.rbegin(), plain.rend()) : plain;
    }
    return widths + "111";
}

std::string itfWidths(const std::string &text)
{
    std::string widths = "1111";
    for (size_t i = 0; i + 1 < text.size(); i += 2) {
        for (int k = 0; k < 5; ++k) {
            widths += kItfWidths[digit(text[i])][k];
            widths += kItfWidths[digit(text[i + 1])][k];
        }
    }
    return widths + "311";
}

std::string code39Widths(const std::string &text)
{
    std::string widths;
    for (const char c : "*" + text + "*")
        widths += kCode39Widths[std::string(kCode39Characters).find(c)] + std::string("1");
    return widths;
}

std::string code128Widths(const std::string &text)
{
    std::string widths = kCode128StartBWidths;
    int sum = kCode128StartB;
    for (size_t i = 0; i < text.size(); ++i) {
        const int value = text[i] - ' ';
        sum += value * static_cast<int>(i + 1);
        widths += kCode128Widths[value];
    }
    return widths + kCode128Widths[sum % 103] + kCode128StopWidths;
}

std::string widthsOf(Code code, const std::string &text)
{
    switch (code) {
    case Code::Ean13:
        return eanWidths(text);
    case Code::Code128:
        return code128Widths(text);
    case Code::Code39:
        return code39Widths(text);
    case Code::Itf:
        break;
    }
    return itfWidths(text);
}

} // namespace

const char *const kQrText = "Pictor QR 2026";

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

cv::Mat barcode(Code code, const std::string &text, int moduleWidth, int height)
{
    const std::string widths = widthsOf(code, text);
    int modules = 2 * kQuietModules;
    for (const char width : widths)
        modules += digit(width);
    const int quiet = kQuietModules * moduleWidth;
    cv::Mat picture(height + 2 * quiet, modules * moduleWidth, CV_8UC3, cv::Scalar::all(255));
    int x = quiet;
    for (size_t i = 0; i < widths.size(); ++i) {
        const int width = digit(widths[i]) * moduleWidth;
        if (i % 2 == 0)
            picture(cv::Rect(x, quiet, width, height)).setTo(cv::Scalar::all(0));
        x += width;
    }
    return picture;
}

cv::Mat qrCode(int module)
{
    constexpr int kSide = static_cast<int>(std::size(kQr));
    constexpr int kQuiet = 4;
    cv::Mat picture((kSide + 2 * kQuiet) * module, (kSide + 2 * kQuiet) * module, CV_8UC3,
                    cv::Scalar::all(255));
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            if (kQr[y][x] == '#')
                picture(cv::Rect((x + kQuiet) * module, (y + kQuiet) * module, module, module))
                    .setTo(cv::Scalar::all(0));
        }
    }
    return picture;
}

} // namespace sheets
