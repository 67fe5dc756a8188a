#include "imaging/naming_code.h"

#include "imaging/code_ladder.h"
#include "imaging/failure.h"
#include "imaging/symbol_reader.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

std::vector<std::string> textsOf(const std::vector<CodeSymbol> &symbols)
{
    std::vector<std::string> texts;
    texts.reserve(symbols.size());
    for (const CodeSymbol &symbol : symbols)
        texts.push_back(symbol.text);
    return texts;
}

bool isPartOfAny(const std::string &text, const std::vector<std::string> &longer)
{
    return std::any_of(longer.begin(), longer.end(), [&](const std::string &whole) {
        return whole.size() > text.size() && whole.find(text) != std::string::npos;
    });
}

/// Other ways to read the same picture, each taken once and when needed.
class SecondLook
{
public:
    SecondLook(const cv::Mat &gray, int type)
        : m_gray(gray)
        , m_type(type)
    {
    }

    // Read alike again, and nowhere as a part of something longer: a line that leaves aslant a code
    // without check digits may end in what looks like its last bars.
    bool confirms(const std::string &text)
    {
        if (!m_readings)
            m_readings = readings();
        return std::count(m_readings->begin(), m_readings->end(), text) > 0 &&
               !isPartOfAny(text, *m_readings);
    }

private:
    // Smoothed, and by the other scanner, as smoothing may close the finest bars.
    std::vector<std::string> readings() const
    {
        cv::Mat smooth;
        cv::blur(m_gray, smooth, cv::Size(3, 3));
        std::vector<std::string> texts = textsOf(readSymbols(smooth, m_type));
        texts.push_back(decodedCode(m_gray, m_type));
        return texts;
    }

    const cv::Mat m_gray;
    const int m_type;
    std::optional<std::vector<std::string>> m_readings;
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
    if (symbols.empty() || (code.isConfirmed && !isPartOfAny(code.text, textsOf(symbols))))
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
