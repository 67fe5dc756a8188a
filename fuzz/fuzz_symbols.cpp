#include "fuzz/fuzz_input.h"
#include "imaging/naming_code.h"
#include "imaging/symbol_reader.h"

#include <cmath>

// Reads codes of both kinds from any picture, plainly and as a file's name needs them.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzzHome();
    constexpr int kSideMax = 200;
    const int type = size > 0 ? data[size - 1] & 1 : 0;
    const cv::Mat gray = pictureFrom(data, size, kSideMax, CV_8UC1);
    for (const CodeSymbol &symbol : readSymbols(gray, type)) {
        if (symbol.text.empty())
            std::abort();
        for (const cv::Point2f &corner : symbol.corners) {
            if (!(std::abs(corner.x) < 4 * kSideMax && std::abs(corner.y) < 4 * kSideMax))
                std::abort();
        }
    }
    const NamingCode code = readNamingCode(pictureFrom(data, size, kSideMax, CV_8UC3), type);
    if (code.isCertain && code.text.empty())
        std::abort();
    return 0;
}
