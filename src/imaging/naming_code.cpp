#include "imaging/naming_code.h"

#include "imaging/code_ladder.h"
#include "imaging/failure.h"
#include "imaging/symbol_reader.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

/// Other ways to read the same picture, each taken once and when needed.
class SecondLook
{
public:
    SecondLook(const cv::Mat &gray, int type)
        : m_gray(gray)
        , m_type(type)
    {
    }

    // Bars too fine for smoothing are left to the other scanner.
    bool confirms(const std::string &text)
    {
        if (!m_smoothed) {
            cv::Mat smooth;
            cv::blur(m_gray, smooth, cv::Size(3, 3));
            m_smoothed = readSymbols(smooth, m_type);
        }
        if (std::any_of(m_smoothed->begin(), m_smoothed->end(),
                        [&](const CodeSymbol &symbol) { return symbol.text == text; }))
            return true;
        if (!m_scanned)
            m_scanned = decodedCode(m_gray, m_type);
        return *m_scanned == text;
    }

private:
    const cv::Mat m_gray;
    const int m_type;
    std::optional<std::vector<CodeSymbol>> m_smoothed;
    std::optional<std::string> m_scanned;
};

NamingCode read(const cv::Mat &gray, int type)
{
    const std::vector<CodeSymbol> symbols = readSymbols(gray, type);
    SecondLook second(gray, type);
    for (const CodeSymbol &symbol : symbols) {
        if (symbol.isSafe || second.confirms(symbol.text))
            return {symbol.text, true};
    }
    const LadderCode code = climbLadderTwice(gray, type);
    if (code.isConfirmed || symbols.empty())
        return {code.text, code.isConfirmed};
    return {symbols.front().text, false};
}

} // namespace

NamingCode readNamingCode(const cv::Mat &image, int type)
{
    try {
        cv::Mat gray;
        cv::cvtColor(image, gray, cv::COLOR_RGB2GRAY); // as BarQrDecodePro does
        return read(gray, type);
    } catch (const std::exception &exception) {
        loggedFailure("code reading failed", exception);
        return {};
    }
}
