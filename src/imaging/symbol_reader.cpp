#include "imaging/symbol_reader.h"

#define ZX_USE_UTF8 // text() answers UTF-8
#include <opencv2/imgproc.hpp>

#include <ReadBarcode.h>
#include <algorithm>

namespace {

using ZXing::BarcodeFormat;

// Check digits are optional in these, and not known to be there.
constexpr int kUnchecked =
    int(BarcodeFormat::Code39) | int(BarcodeFormat::ITF) | int(BarcodeFormat::Codabar);

constexpr int kShrinking = 3, kShrinkFrom = 500; // as the library does by itself

ZXing::DecodeHints hintsFor(int type)
{
    const ZXing::BarcodeFormats bars = BarcodeFormat::LinearCodes;
    const ZXing::BarcodeFormats fields = BarcodeFormat::QRCode | BarcodeFormat::DataMatrix |
                                         BarcodeFormat::Aztec | BarcodeFormat::PDF417;
    return ZXing::DecodeHints()
        .setFormats(type == 0 ? bars : fields)
        .setTryDownscale(false) // the library ends the program when it sees a bar code twice so
        .setReturnCodabarStartEnd(true); // as the ladder does
}

cv::Rect2f bounds(const CodeSymbol &symbol)
{
    const std::vector<cv::Point2f> corners(symbol.corners.begin(), symbol.corners.end());
    return cv::boundingRect(corners);
}

// Rows from the top, each from the left. A row is what reaches beside its topmost symbol.
void sortForReading(std::vector<CodeSymbol> &symbols)
{
    const auto middle = [](const CodeSymbol &symbol) {
        const cv::Rect2f rect = bounds(symbol);
        return (rect.tl() + rect.br()) * 0.5F;
    };
    std::sort(symbols.begin(), symbols.end(),
              [&](const CodeSymbol &a, const CodeSymbol &b) { return middle(a).y < middle(b).y; });
    for (auto row = symbols.begin(); row != symbols.end();) {
        const float bottom = bounds(*row).br().y;
        const auto end = std::find_if(row + 1, symbols.end(), [&](const CodeSymbol &symbol) {
            return middle(symbol).y > bottom;
        });
        std::sort(row, end, [&](const CodeSymbol &a, const CodeSymbol &b) {
            return middle(a).x < middle(b).x;
        });
        row = end;
    }
}

void append(std::vector<CodeSymbol> &symbols, const ZXing::Result &result, float scale)
{
    CodeSymbol symbol;
    symbol.text = result.text();
    if (!result.isValid() || symbol.text.empty())
        return;
    for (size_t i = 0; i < symbol.corners.size(); ++i) {
        const ZXing::PointI corner = result.position()[static_cast<int>(i)];
        symbol.corners[i] = cv::Point2f(cv::Point(corner.x, corner.y)) * scale;
    }
    symbol.isSafe = (int(result.format()) & kUnchecked) == 0;
    const bool isKnown = std::any_of(symbols.begin(), symbols.end(), [&](const CodeSymbol &known) {
        return known.text == symbol.text && !(bounds(known) & bounds(symbol)).empty();
    });
    if (!isKnown)
        symbols.push_back(std::move(symbol));
}

} // namespace

// Large codes are read better from fewer pixels, which average the noise.
std::vector<CodeSymbol> readSymbols(const cv::Mat &gray, int type)
{
    std::vector<CodeSymbol> symbols;
    const ZXing::DecodeHints hints = hintsFor(type);
    cv::Mat picture = gray;
    for (int scale = 1; !picture.empty(); scale *= kShrinking) {
        const ZXing::ImageView view(picture.data, picture.cols, picture.rows,
                                    ZXing::ImageFormat::Lum, static_cast<int>(picture.step));
        for (const ZXing::Result &result : ZXing::ReadBarcodes(view, hints))
            append(symbols, result, static_cast<float>(scale));
        if (std::min(picture.cols, picture.rows) <= kShrinkFrom)
            break;
        cv::Mat fewer;
        cv::resize(picture, fewer, picture.size() / kShrinking, 0, 0, cv::INTER_AREA);
        picture = fewer;
    }
    sortForReading(symbols);
    return symbols;
}
