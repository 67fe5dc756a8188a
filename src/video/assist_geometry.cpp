#include "video/assist_geometry.h"

#include <algorithm>
#include <array>

namespace {

struct AssistSize
{
    const char *text;
    int width, height;
};

constexpr std::array<AssistSize, 7> kSizes{{{"0.8", 160, 120},
                                            {"1.0", 200, 150},
                                            {"1.2", 240, 180},
                                            {"1.5", 300, 225},
                                            {"1.8", 360, 270},
                                            {"2.0", 400, 300},
                                            {"2.5", 500, 375}}};

} // namespace

QStringList assistSizeTexts()
{
    QStringList texts;
    for (const AssistSize &size : kSizes)
        texts << QString::fromLatin1(size.text);
    return texts;
}

QSize assistViewSize(int index)
{
    const bool listed = index >= 0 && index < int(kSizes.size());
    const AssistSize &size = kSizes[size_t(listed ? index : kAssistDefaultSize)];
    return {size.width, size.height};
}

QRect clampAssistView(const QRect &view, const QRect &picture)
{
    const int x = std::min(std::max(view.x(), picture.left()), picture.right() + 1 - view.width());
    const int y = std::min(std::max(view.y(), picture.top()), picture.bottom() + 1 - view.height());
    return {QPoint(x, y), view.size()};
}

QRect assistCombineRect(const AssistPlacement &placement)
{
    const QRect &view = placement.view;
    const QRect &picture = placement.picture;
    if (picture.isEmpty())
        return {};
    const bool quarterTurned = placement.angle == 90 || placement.angle == 270;
    const QSize frame = quarterTurned ? placement.frame.transposed() : placement.frame;
    const double kx = double(frame.width()) / picture.width();
    const double ky = double(frame.height()) / picture.height();
    const int restWidth = picture.width() - view.width();
    const int restHeight = picture.height() - view.height();

    const int right = int(restWidth * kx);
    const int bottom = int(restHeight * ky);
    QPoint corner;
    switch (placement.position) {
    case AssistUpperLeft:
        corner = {0, 0};
        break;
    case AssistUpperRight:
        corner = {right, 0};
        break;
    case AssistMiddle: {
        const int halfWidth = restWidth / 2, halfHeight = restHeight / 2;
        corner = {int(halfWidth * kx), int(halfHeight * ky)};
        break;
    }
    case AssistBottomLeft:
        corner = {0, bottom};
        break;
    case AssistBottomRight:
        corner = {right, bottom};
        break;
    default:
        corner = {int((view.x() - picture.left()) * kx), int((view.y() - picture.top()) * ky)};
    }
    return {corner, QSize(int(view.width() * kx), int(view.height() * ky))};
}
