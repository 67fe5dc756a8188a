#include "video/gr_cam_item.h"

#include "app/state.h"
#include "video/box_shrink.h"
#include "video/preview_geometry.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

/// Source pixels per device pixel that still look right with bilinear sampling alone.
constexpr double kBilinearLimit = 2.0;

/// Qt samples RGB32 several times faster than RGB888. Pictures with more pixels than this are shown
/// in part, and to convert all of them would cost more than it saves.
constexpr int kConvertedMax = 3 << 20;

int pixelsOf(const QImage &image)
{
    return image.width() * image.height();
}

bool isWhole(double value)
{
    return std::abs(value - std::round(value)) < 1e-6;
}

} // namespace

Gr_CamItem::Gr_CamItem(QGraphicsItem *parent)
    : QGraphicsItem(parent)
{
}

void Gr_CamItem::SetQImage(QImage image)
{
    m_image = std::move(image);
    m_reducedFactor = 0;
    update();
}

void Gr_CamItem::turn(int degrees)
{
    SetQImage(m_image.transformed(QTransform().rotate(degrees)));
}

void Gr_CamItem::setShowRect(double x, double y, double w, double h)
{
    m_show = QRectF(x, y, w, h);
    setBoundingRect(x, y, w, h);
}

QRect Gr_CamItem::getShowGeometry() const
{
    return {int(m_show.x()), int(m_show.y()), int(m_show.width()), int(m_show.height())};
}

void Gr_CamItem::setBoundingRect(double x, double y, double w, double h)
{
    prepareGeometryChange();
    m_bounds = QRectF(x, y, w, h);
    update();
}

int Gr_CamItem::CalculateSuitableShowSize(int w, int h)
{
    PreviewGeometry geometry;
    geometry.setScene({SceneShowWidth, SceneShowHeight});
    const int side = geometry.fit(w, h);
    const QRectF base = geometry.baseRect();
    setShowRect(base.x(), base.y(), base.width(), base.height());
    return side;
}

const QImage &Gr_CamItem::reduced(int factor)
{
    if (m_reducedFactor != factor) {
        boxShrink(m_image, factor, m_reduced);
        m_reducedFactor = factor;
    }
    return m_reduced;
}

void Gr_CamItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    const QRect target = getShowGeometry();
    if (m_image.isNull() || target.isEmpty())
        return;
    const QTransform device = painter->deviceTransform();
    const double x = m_image.width() / (target.width() * std::hypot(device.m11(), device.m12()));
    const double y = m_image.height() / (target.height() * std::hypot(device.m21(), device.m22()));
    const double shrink = std::min(x, y);

    const int factor = shrink >= kBilinearLimit ? std::min(int(shrink + 1e-6), 255) : 1;
    const bool crisp = shrink < 1.0 || (isWhole(x / factor) && isWhole(y / factor));
    const bool isConverted = factor > 1 || (!crisp && pixelsOf(m_image) <= kConvertedMax);
    const QImage &source = isConverted ? reduced(factor) : m_image;
    painter->setRenderHint(QPainter::SmoothPixmapTransform, !crisp);
    painter->drawImage(
        QRectF(target), source,
        QRectF(0, 0, double(m_image.width()) / factor, double(m_image.height()) / factor));
}
