#pragma once

#include "video/preview_geometry.h"

#include <QPointF>
#include <QRect>

/// Parts of the crop rectangle that the mouse can take hold of.
enum class CutHandle {
    None,
    TopLeft,
    Top,
    TopRight,
    Right,
    BottomRight,
    Bottom,
    BottomLeft,
    Left,
    Inside
};

/// The crop rectangle in pixels of the rotated frame, and its way to the screen and back.
///
/// The rectangle always lies inside the frame and is at least kMinimum on each side (or the
/// frame's side, where that is less). Screen means the coordinates of ShownPicture::rect.
class ManualCutGeometry
{
public:
    static constexpr int kMinimum = 32;     ///< frame pixels
    static constexpr double kDefault = 0.8; ///< share of each side that is selected at first

    /// The picture as it lies now. A turned frame turns the selection with it, a frame of another
    /// size scales it; the first picture selects the default.
    void setPicture(const ShownPicture &picture);
    const ShownPicture &picture() const { return m_picture; }
    bool isEmpty() const { return m_rect.isEmpty(); }

    void selectDefault();
    QRect rect() const { return m_rect; }
    void setRect(const QRect &rect);

    QRectF screenRect() const { return toScreen(m_rect); }
    QRectF toScreen(const QRect &frameRect) const;
    /// Frame pixels covered by `screenRect`, edges rounded to the nearest pixel border.
    QRect toFrame(const QRectF &screenRect) const;

    /// `start` with the part `handle` moved by `offset` (screen), as the new selection.
    void drag(const QRect &start, CutHandle handle, const QPointF &offset);
    /// Moves the selection by frame pixels.
    void moveBy(int dx, int dy);
    /// Moves the right and bottom edge by frame pixels.
    void growBy(int dw, int dh);

private:
    QRect moved(const QRect &rect, CutHandle handle, QPoint offset) const;

    ShownPicture m_picture;
    QRect m_rect;
};

/// `rect` of a frame of size `frame`, after turning the frame clockwise by `degrees` (a multiple
/// of 90, negative for the other way).
QRect rotatedRect(const QRect &rect, QSize frame, int degrees);
