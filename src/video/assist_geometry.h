#pragma once

#include <QRect>
#include <QSize>
#include <QStringList>

/// Places of the assist picture in a combined capture; the value is the index in the placement
/// box and of `camCombinePos`.
enum AssistPosition {
    AssistFree = 0,
    AssistUpperLeft = 1,
    AssistUpperRight = 2,
    AssistMiddle = 3,
    AssistBottomLeft = 4,
    AssistBottomRight = 5
};

/// Index of the size that is chosen at start.
constexpr int kAssistDefaultSize = 1;

/// Texts of the size box, in order: "0.8" to "2.5".
QStringList assistSizeTexts();

/// Size of the assist view for an index of the size box, pixels; any other index gives the size
/// of kAssistDefaultSize.
QSize assistViewSize(int index);

/// `view` moved into the displayed picture. Where it is larger than the picture it is flush with
/// the right or bottom edge and sticks out on the left or at the top.
QRect clampAssistView(const QRect &view, const QRect &picture);

/// What decides where the assist picture goes in the main picture.
struct AssistPlacement
{
    QRect view;       ///< the assist view, in the preview's coordinates
    QRect picture;    ///< the displayed main picture, in the preview's coordinates
    QSize frame;      ///< size at which the main camera is open, before rotation, pixels
    int angle = 0;    ///< rotation of the main picture, degrees
    int position = 0; ///< see AssistPosition; anything else acts as AssistFree
};

/// Rectangle of the assist picture in pixels of the rotated main frame; empty when the displayed
/// picture is empty.
QRect assistCombineRect(const AssistPlacement &placement);
