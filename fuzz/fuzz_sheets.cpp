#include "fuzz/fuzz_input.h"
#include "imaging/smart_cut.h"
#include "imaging/smart_finder.h"

#include <cmath>

// Finds sheets in any picture, brings their corners onto its edges and cuts each of them; then cuts
// along corners taken from the input, as a user may drag them.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzzHome();
    constexpr int kSideMax = 400;
    const cv::Mat picture = pictureFrom(data, size, kSideMax, CV_8UC3);
    std::vector<Quad> quads;
    for (const SmartSheet &sheet : findSheets(picture).sheets) {
        if (!(sheet.confidence >= kSmartConfidenceMin && sheet.confidence <= 1))
            std::abort();
        quads.push_back(sharpenedCorners(picture, sheet.corners));
    }
    Quad dragged;
    for (size_t i = 0; i < 8 && i < size; ++i)
        (i % 2 == 0 ? dragged[i / 2].x : dragged[i / 2].y) = static_cast<float>(data[i]) * 2 - 60;
    quads.push_back(sharpenedCorners(picture, dragged));
    for (const Quad &quad : quads) {
        std::string error;
        const cv::Mat page = cutSheet(picture, quad, error);
        if (page.empty() == error.empty() || page.cols % 4 != 0 || page.rows % 4 != 0)
            std::abort();
    }
    return 0;
}
