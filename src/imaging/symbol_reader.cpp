#include "imaging/symbol_reader.h"

#define ZX_USE_UTF8 // text() answers UTF-8
#include <opencv2/imgproc.hpp>

#include <ReadBarcode.h>
#include <algorithm>
#include <optional>

namespace {

using ZXing::BarcodeFormat;

// Check digits are optional in these, and not known to be there.
constexpr int kUnchecked =
    int(BarcodeFormat::Code39) | int(BarcodeFormat::ITF) | int(BarcodeFormat::Codabar);

constexpr int kShrinking = 3, kShrinkFrom = 500; // as the library does by itself

const ZXing::BarcodeFormats kBars = BarcodeFormat::LinearCodes;
const ZXing::BarcodeFormats kFields = BarcodeFormat::QRCode | BarcodeFormat::DataMatrix |
                                      BarcodeFormat::Aztec | BarcodeFormat::PDF417;

ZXing::DecodeHints hintsFor(ZXing::BarcodeFormats formats)
{
    return ZXing::DecodeHints().setFormats(formats).setTryDownscale(false).setReturnCodabarStartEnd(
        true); // as the ladder does
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

ZXing::Results results(const cv::Mat &picture, const ZXing::DecodeHints &hints)
{
    const ZXing::ImageView view(picture.data, picture.cols, picture.rows, ZXing::ImageFormat::Lum,
                                static_cast<int>(picture.step));
    return ZXing::ReadBarcodes(view, hints);
}

CodeSymbol symbolOf(const ZXing::Result &result, cv::Point origin)
{
    CodeSymbol symbol;
    symbol.text = result.isValid() ? result.text() : std::string();
    for (size_t i = 0; i < symbol.corners.size(); ++i) {
        const ZXing::PointI corner = result.position()[static_cast<int>(i)];
        symbol.corners[i] = cv::Point2f(cv::Point(corner.x, corner.y) + origin);
    }
    symbol.isSafe = (int(result.format()) & kUnchecked) == 0;
    return symbol;
}

std::vector<CodeSymbol> fieldsIn(const cv::Mat &picture)
{
    std::vector<CodeSymbol> symbols;
    for (const ZXing::Result &result : results(picture, hintsFor(kFields)))
        symbols.push_back(symbolOf(result, {}));
    return symbols;
}

std::optional<CodeSymbol> anyBarsIn(const cv::Mat &picture, cv::Rect part)
{
    part &= cv::Rect(cv::Point(), picture.size());
    if (part.empty())
        return std::nullopt;
    for (const ZXing::Result &result :
         results(picture(part), hintsFor(kBars).setMaxNumberOfSymbols(1)))
        return symbolOf(result, part.tl());
    return std::nullopt;
}

/// Follows the bar codes of a picture to the first one. They are looked for one by one: asked for
/// several, the library ends the program when two of them are alike.
class BarSearch
{
public:
    explicit BarSearch(const cv::Mat &picture)
        : m_picture(picture)
    {
        if (!goTo({{}, picture.size()}))
            return;
        // A code is met somewhere in its height: above may be the rest of it or another one.
        while (goTo({0, 0, picture.cols, cv::Rect(bounds(m_seen.front())).y}))
            continue;
        const cv::Rect first = bounds(m_seen.front());
        const int reach = std::max(first.width, first.height) / 4;
        for (int left = first.x; left > 0; left = cv::Rect(bounds(m_seen.front())).x) {
            if (!goTo({0, first.y - reach, left, first.height + 2 * reach}))
                break;
        }
        growAlongBars();
    }

    /// The first, then those that were met before it.
    std::vector<CodeSymbol> symbols() const { return m_seen; }

private:
    bool goTo(const cv::Rect &part)
    {
        std::optional<CodeSymbol> found;
        if (m_steps++ < kStepsMax)
            found = anyBarsIn(m_picture, part);
        if (!found || found->text.empty())
            return false;
        if (!m_seen.empty() && m_seen.front().text == found->text) {
            if (isPieceOf(m_seen.front(), *found))
                found->corners = joined(m_seen.front(), *found);
            m_seen.front() = *found;
        } else {
            m_seen.insert(m_seen.begin(), *found);
        }
        return true;
    }

    // The other half of the first code: what was met of it lies anywhere in its height.
    void growAlongBars()
    {
        CodeSymbol &first = m_seen.front();
        while (m_steps++ < kStepsMax) {
            const cv::Rect met = bounds(first);
            const int length = std::max(met.width, met.height), aside = length / 8;
            const bool isUpright = met.width > met.height;
            const std::optional<CodeSymbol> more = anyBarsIn(
                m_picture,
                isUpright ? cv::Rect(met.x - aside, met.br().y, met.width + 2 * aside, length)
                          : cv::Rect(met.br().x, met.y - aside, length, met.height + 2 * aside));
            if (!more || more->text != first.text || !isPieceOf(first, *more))
                return;
            first.corners = joined(first, *more);
        }
    }

    static bool isPieceOf(const CodeSymbol &code, const CodeSymbol &piece)
    {
        const cv::Rect2f all = bounds(code) | bounds(piece), one = bounds(piece);
        return one.width > one.height ? all.width < kSameCode * one.width
                                      : all.height < kSameCode * one.height;
    }

    static Quad joined(const CodeSymbol &a, const CodeSymbol &b)
    {
        const cv::Rect2f all = bounds(a) | bounds(b);
        return {all.tl(), {all.br().x, all.y}, all.br(), {all.x, all.br().y}};
    }

    static constexpr int kStepsMax = 24;
    static constexpr float kSameCode = 1.3F; // pieces of one code lie in line, or a little aslant

    const cv::Mat m_picture;
    std::vector<CodeSymbol> m_seen;
    int m_steps = 0;
};

void merge(std::vector<CodeSymbol> &symbols, std::vector<CodeSymbol> more, float scale)
{
    for (CodeSymbol &symbol : more) {
        for (cv::Point2f &corner : symbol.corners)
            corner *= scale;
        const bool isKnown =
            symbol.text.empty() ||
            std::any_of(symbols.begin(), symbols.end(), [&](const CodeSymbol &known) {
                return known.text == symbol.text && !(bounds(known) & bounds(symbol)).empty();
            });
        if (!isKnown)
            symbols.push_back(std::move(symbol));
    }
}

} // namespace

// Large codes are read better from fewer pixels, which average the noise.
std::vector<CodeSymbol> readSymbols(const cv::Mat &gray, int type)
{
    std::vector<CodeSymbol> symbols;
    cv::Mat picture = gray;
    for (int scale = 1; !picture.empty(); scale *= kShrinking) {
        merge(symbols, type == 0 ? BarSearch(picture).symbols() : fieldsIn(picture),
              static_cast<float>(scale));
        if (std::min(picture.cols, picture.rows) <= kShrinkFrom || (type == 0 && !symbols.empty()))
            break;
        cv::Mat fewer;
        cv::resize(picture, fewer, picture.size() / kShrinking, 0, 0, cv::INTER_AREA);
        picture = fewer;
    }
    if (type != 0)
        sortForReading(symbols);
    return symbols;
}
