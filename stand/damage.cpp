#include "stand/damage.h"

#include <algorithm>

namespace {

// Offset of the first marker FF `code`, or the size when there is none.
size_t findMarker(const std::vector<uchar> &jpeg, uchar code)
{
    const uchar marker[] = {0xff, code};
    return static_cast<size_t>(
        std::search(jpeg.begin(), jpeg.end(), std::begin(marker), std::end(marker)) - jpeg.begin());
}

void overwrite(std::vector<uchar> &jpeg, size_t from, size_t count)
{
    // Never 0xff: a stray start marker would split the picture in two.
    for (size_t i = from; i < std::min(jpeg.size(), from + count); ++i)
        jpeg[i] = static_cast<uchar>((i * 73 + 41) % 255);
}

} // namespace

Jpeg damageJpeg(const std::vector<uchar> &jpeg, int turn)
{
    std::vector<uchar> bad = jpeg;
    switch (turn % 4) {
    case 0:
        overwrite(bad, bad.size() / 3, bad.size() / 8);
        break;
    case 1:
        bad.resize(bad.size() / 2);
        break;
    case 2:
        overwrite(bad, findMarker(jpeg, 0xdb) + 4, 40);
        break;
    default:
        overwrite(bad, findMarker(jpeg, 0xc0) + 4, 10);
        break;
    }
    return std::make_shared<const std::vector<uchar>>(std::move(bad));
}
