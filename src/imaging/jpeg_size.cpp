#include "imaging/jpeg_size.h"

namespace {

constexpr int kStartOfScan = 0xDA, kEndOfImage = 0xD9;

int bigEndian16(const std::vector<unsigned char> &bytes, size_t at)
{
    return bytes[at] << 8 | bytes[at + 1];
}

bool isStartOfFrame(int marker)
{
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool endsBehind(const std::vector<unsigned char> &bytes, size_t begin)
{
    for (size_t end = bytes.size() - 2; end >= begin; --end) {
        if (bytes[end] == 0xFF && bytes[end + 1] == kEndOfImage)
            return true;
    }
    return false;
}

} // namespace

// Walks the segments up to the coded data.
cv::Size jpegSize(const std::vector<unsigned char> &bytes)
{
    cv::Size size;
    if (bytes.size() < 4 || bytes[0] != 0xFF || bytes[1] != 0xD8)
        return {};
    for (size_t at = 2; at + 4 <= bytes.size();) {
        const int marker = bytes[at + 1];
        const auto length = static_cast<size_t>(bigEndian16(bytes, at + 2));
        if (bytes[at] != 0xFF || length < 2 || at + 2 + length > bytes.size())
            return {};
        if (isStartOfFrame(marker) && length >= 8)
            size = {bigEndian16(bytes, at + 7), bigEndian16(bytes, at + 5)};
        at += 2 + length;
        if (marker == kStartOfScan)
            return endsBehind(bytes, at) ? size : cv::Size();
    }
    return {};
}
