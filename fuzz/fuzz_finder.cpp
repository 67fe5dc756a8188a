#include "app/state.h"
#include "fuzz/fuzz_input.h"
#include "imaging/document_finder.h"
#include "imaging/straighten.h"

// Finds documents in any picture from 1x1 on, cuts each of them and draws them all.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzzHome();
    static DocumentFinder finder;
    constexpr int kSideMax = 400;
    cv::Mat picture = pictureFrom(data, size, kSideMax, CV_8UC3);
    const auto found = finder.find(picture, MultiGraphCrop);
    if (!found)
        return 0;
    for (const Outline &outline : found->outlines) {
        std::string error;
        const cv::Mat page = cutDocument(picture, outline, error);
        if (page.empty() == error.empty() || page.cols % 4 != 0 || page.rows % 4 != 0)
            std::abort();
    }
    drawOutlines(picture, found->drawn);
    return 0;
}
