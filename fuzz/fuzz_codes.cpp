#include "fuzz/fuzz_input.h"
#include "imaging/code_file_name.h"
#include "imaging/code_reader.h"

// Reads codes from any picture, and makes a file name of any text.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzzHome();
    constexpr int kSideMax = 160;
    constexpr size_t kNameBytes = 40;
    const cv::Mat picture = pictureFrom(data, size, kSideMax, CV_8UC1);
    GetQR(picture, size > 0 ? data[size - 1] & 1 : 0);
    const std::string name =
        codeFileName({reinterpret_cast<const char *>(data), size}, kNameBytes).name;
    if (name.size() > kNameBytes || name.find('/') != std::string::npos || name[0] == '.')
        std::abort();
    return 0;
}
