#include "imaging/jpeg_size.h"

#include <algorithm>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr int kPrefix = 0xFF, kStartOfScan = 0xDA, kEndOfImage = 0xD9;

struct Layout
{
    cv::Size size;
    size_t scan = 0; // where the first coded data begins, 0 when nothing leads there
    size_t end = 0;  // behind the end marker
};

int bigEndian16(const Bytes &bytes, size_t at)
{
    return bytes[at] << 8 | bytes[at + 1];
}

bool isStartOfFrame(int marker)
{
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool isRestart(int marker)
{
    return marker >= 0xD0 && marker <= 0xD7;
}

// Of the first marker in the coded data at `at` that belongs to no stuffing and no restart.
size_t endOfScan(const Bytes &bytes, size_t at)
{
    for (; at + 1 < bytes.size(); ++at) {
        if (bytes[at] == kPrefix && bytes[at + 1] != 0 && !isRestart(bytes[at + 1]))
            break;
    }
    return at;
}

// In a damaged scan anything may look like a segment, so that the walk gets lost.
size_t endBehind(const Bytes &bytes, size_t begin)
{
    static constexpr unsigned char kEnd[] = {kPrefix, kEndOfImage};
    const auto found = std::find_end(bytes.begin() + static_cast<std::ptrdiff_t>(begin),
                                     bytes.end(), std::begin(kEnd), std::end(kEnd));
    return found == bytes.end() ? 0 : static_cast<size_t>(found - bytes.begin()) + sizeof kEnd;
}

// Segment by segment. Fill bytes may stand before any marker.
Layout layoutOf(const Bytes &bytes)
{
    Layout layout;
    if (bytes.size() < 4 || bytes[0] != kPrefix || bytes[1] != 0xD8)
        return layout;
    for (size_t at = 2; at + 2 <= bytes.size() && bytes[at] == kPrefix;) {
        const int marker = bytes[at + 1];
        if (marker == kEndOfImage) {
            layout.end = at + 2;
            return layout;
        }
        if (marker == kPrefix || isRestart(marker)) {
            at += marker == kPrefix ? 1 : 2;
            continue;
        }
        if (at + 4 > bytes.size())
            break;
        const auto length = static_cast<size_t>(bigEndian16(bytes, at + 2));
        if (length < 2 || at + 2 + length > bytes.size())
            break;
        if (isStartOfFrame(marker) && length >= 8)
            layout.size = {bigEndian16(bytes, at + 7), bigEndian16(bytes, at + 5)};
        at += 2 + length;
        if (marker != kStartOfScan)
            continue;
        layout.scan = layout.scan == 0 ? at : layout.scan;
        at = endOfScan(bytes, at);
    }
    if (layout.scan != 0)
        layout.end = endBehind(bytes, layout.scan);
    return layout;
}

} // namespace

cv::Size jpegSize(const std::vector<unsigned char> &bytes)
{
    const Layout layout = layoutOf(bytes);
    return layout.scan != 0 && layout.end != 0 ? layout.size : cv::Size();
}

std::size_t jpegLength(const std::vector<unsigned char> &bytes)
{
    return layoutOf(bytes).end;
}
