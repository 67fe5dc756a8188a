#include "mainwindow/preview/manual_cut_geometry.h"

#include <algorithm>
#include <cmath>

namespace {

bool isOn(CutHandle handle, std::initializer_list<CutHandle> side)
{
    return std::find(side.begin(), side.end(), handle) != side.end();
}

bool isLeft(CutHandle handle)
{
    return isOn(handle, {CutHandle::TopLeft, CutHandle::Left, CutHandle::BottomLeft});
}

bool isRight(CutHandle handle)
{
    return isOn(handle, {CutHandle::TopRight, CutHandle::Right, CutHandle::BottomRight});
}

bool isTop(CutHandle handle)
{
    return isOn(handle, {CutHandle::TopLeft, CutHandle::Top, CutHandle::TopRight});
}

bool isBottom(CutHandle handle)
{
    return isOn(handle, {CutHandle::BottomLeft, CutHandle::Bottom, CutHandle::BottomRight});
}

/// One side of a rectangle: `start` and the length `size`, within 0 and `limit`.
struct Span
{
    int start = 0, size = 0;
};

Span movedSpan(Span span, int limit, int offset)
{
    return {std::clamp(span.start + offset, 0, std::max(0, limit - span.size)), span.size};
}

Span withMovedStart(Span span, int smallest, int offset)
{
    const int end = span.start + span.size;
    const int start = std::clamp(span.start + offset, 0, std::max(0, end - smallest));
    return {start, end - start};
}

Span withMovedEnd(Span span, int smallest, int limit, int offset)
{
    const int lowest = std::min(span.start + smallest, limit);
    return {span.start, std::clamp(span.start + span.size + offset, lowest, limit) - span.start};
}

Span confined(Span span, int smallest, int limit)
{
    const int size = std::clamp(span.size, std::min(smallest, limit), limit);
    return movedSpan({span.start, size}, limit, 0);
}

} // namespace

QRect rotatedRect(const QRect &rect, QSize frame, int degrees)
{
    switch (((degrees % 360) + 360) % 360) {
    case 90:
        return {frame.height() - rect.y() - rect.height(), rect.x(), rect.height(), rect.width()};
    case 180:
        return {frame.width() - rect.x() - rect.width(), frame.height() - rect.y() - rect.height(),
                rect.width(), rect.height()};
    case 270:
        return {rect.y(), frame.width() - rect.x() - rect.width(), rect.height(), rect.width()};
    default:
        return rect;
    }
}

void ManualCutGeometry::setPicture(const ShownPicture &picture)
{
    const ShownPicture before = m_picture;
    m_picture = picture;
    if (picture.frame.isEmpty())
        return;
    if (m_rect.isEmpty()) {
        selectDefault();
        return;
    }
    const int turn = picture.angle - before.angle;
    QRect rect = rotatedRect(m_rect, before.frame, turn);
    const QSize turned = turn % 180 == 0 ? before.frame : before.frame.transposed();
    if (turned != picture.frame && !turned.isEmpty()) {
        const double kx = double(picture.frame.width()) / turned.width();
        const double ky = double(picture.frame.height()) / turned.height();
        rect = QRectF(rect.x() * kx, rect.y() * ky, rect.width() * kx, rect.height() * ky).toRect();
    }
    setRect(rect);
}

void ManualCutGeometry::selectDefault()
{
    const QSize frame = m_picture.frame;
    const QSize size(int(std::lround(frame.width() * kDefault)),
                     int(std::lround(frame.height() * kDefault)));
    setRect({(frame.width() - size.width()) / 2, (frame.height() - size.height()) / 2, size.width(),
             size.height()});
}

void ManualCutGeometry::setRect(const QRect &rect)
{
    const QSize frame = m_picture.frame;
    if (frame.isEmpty())
        return;
    const Span x = confined({rect.x(), rect.width()}, kMinimum, frame.width());
    const Span y = confined({rect.y(), rect.height()}, kMinimum, frame.height());
    m_rect = QRect(x.start, y.start, x.size, y.size);
}

QRectF ManualCutGeometry::toScreen(const QRect &frameRect) const
{
    const QRectF &shown = m_picture.rect;
    if (m_picture.frame.isEmpty())
        return {};
    const double kx = shown.width() / m_picture.frame.width();
    const double ky = shown.height() / m_picture.frame.height();
    return {shown.x() + frameRect.x() * kx, shown.y() + frameRect.y() * ky, frameRect.width() * kx,
            frameRect.height() * ky};
}

QRect ManualCutGeometry::toFrame(const QRectF &screenRect) const
{
    const QRectF &shown = m_picture.rect;
    if (shown.isEmpty())
        return {};
    const double kx = m_picture.frame.width() / shown.width();
    const double ky = m_picture.frame.height() / shown.height();
    const QPoint topLeft(int(std::lround((screenRect.left() - shown.left()) * kx)),
                         int(std::lround((screenRect.top() - shown.top()) * ky)));
    const QPoint bottomRight(int(std::lround((screenRect.right() - shown.left()) * kx)),
                             int(std::lround((screenRect.bottom() - shown.top()) * ky)));
    return {topLeft, QSize(bottomRight.x() - topLeft.x(), bottomRight.y() - topLeft.y())};
}

QRect ManualCutGeometry::moved(const QRect &rect, CutHandle handle, QPoint offset) const
{
    const QSize frame = m_picture.frame;
    Span x{rect.x(), rect.width()};
    Span y{rect.y(), rect.height()};
    if (handle == CutHandle::Inside) {
        x = movedSpan(x, frame.width(), offset.x());
        y = movedSpan(y, frame.height(), offset.y());
    }
    if (isLeft(handle))
        x = withMovedStart(x, kMinimum, offset.x());
    if (isRight(handle))
        x = withMovedEnd(x, kMinimum, frame.width(), offset.x());
    if (isTop(handle))
        y = withMovedStart(y, kMinimum, offset.y());
    if (isBottom(handle))
        y = withMovedEnd(y, kMinimum, frame.height(), offset.y());
    return {x.start, y.start, x.size, y.size};
}

void ManualCutGeometry::drag(const QRect &start, CutHandle handle, const QPointF &offset)
{
    const QRectF &shown = m_picture.rect;
    if (shown.isEmpty() || m_picture.frame.isEmpty())
        return;
    const QPoint pixels(int(std::lround(offset.x() * m_picture.frame.width() / shown.width())),
                        int(std::lround(offset.y() * m_picture.frame.height() / shown.height())));
    m_rect = moved(start, handle, pixels);
}

void ManualCutGeometry::moveBy(int dx, int dy)
{
    m_rect = moved(m_rect, CutHandle::Inside, {dx, dy});
}

void ManualCutGeometry::growBy(int dw, int dh)
{
    m_rect = moved(m_rect, CutHandle::BottomRight, {dw, dh});
}
