#include "video/preview_geometry.h"

#include <algorithm>

int PreviewGeometry::fit(int w, int h)
{
    if (m_scene.isEmpty() || w < 1 || h < 1)
        return 0;
    const bool fillsHeight = double(m_scene.width()) / m_scene.height() > double(w) / h;
    const int truncated =
        fillsHeight ? int(qint64(m_scene.height()) * w / h) : int(qint64(m_scene.width()) * h / w);
    const QSize size =
        fillsHeight ? QSize(truncated, m_scene.height()) : QSize(m_scene.width(), truncated);
    m_base = QRectF((m_scene.width() - size.width()) * 0.5,
                    (m_scene.height() - size.height()) * 0.5, size.width(), size.height());
    return truncated;
}

QSize PreviewGeometry::rotatedFrame() const
{
    return isQuarterTurned() ? m_frame.transposed() : m_frame;
}

bool PreviewGeometry::refit()
{
    return fit(rotatedFrame().width(), rotatedFrame().height()) > 0;
}

void PreviewGeometry::show(QSizeF size)
{
    m_show = QRectF(m_centre.x() - size.width() * 0.5, m_centre.y() - size.height() * 0.5,
                    size.width(), size.height());
}

void PreviewGeometry::toSuitable()
{
    if (!refit())
        return;
    m_zoom = 1.0;
    m_centre = m_base.center();
    m_show = m_base;
}

void PreviewGeometry::toTrueSize()
{
    if (!refit())
        return;
    m_zoom = m_frame.width() / (isQuarterTurned() ? m_base.height() : m_base.width());
    show(m_base.size() * m_zoom);
}

void PreviewGeometry::zoom(ZoomDirection direction)
{
    m_zoom = direction == ZoomDirection::In ? std::min(kZoomMax, m_zoom + kZoomStep)
                                            : std::max(kZoomMin, m_zoom - kZoomStep);
    show(m_base.size() * m_zoom);
}

void PreviewGeometry::rotate(RotateDirection direction)
{
    if (direction == RotateDirection::Left)
        m_angle = m_angle < 90 ? 270 : m_angle - 90;
    else
        m_angle = m_angle >= 270 ? 0 : m_angle + 90;

    const QSizeF turned = (m_base.size() * m_zoom).transposed();
    if (!refit())
        return;
    // The factor follows the frame's width, so truncation in fit() does not add up over turns.
    m_zoom =
        isQuarterTurned() ? turned.height() / m_base.height() : turned.width() / m_base.width();
    show(turned);
}

void PreviewGeometry::pan(QPoint offset)
{
    m_centre += offset;
    show(m_base.size() * m_zoom);
}
