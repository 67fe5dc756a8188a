#include "video/gr_shape_item.h"

#include <QPainter>

namespace {

constexpr double kMarkRadius = 6; // scene units
constexpr double kBeyond = 200;   // corners may lie outside of the picture

} // namespace

Gr_ShapeItem::Gr_ShapeItem(QGraphicsItem *parent)
    : QGraphicsItem(parent)
{
}

void Gr_ShapeItem::setShapes(const QVector<QPolygonF> &shapes)
{
    m_shapes = shapes;
    update();
}

void Gr_ShapeItem::setCornersMarked(bool areMarked, bool areFilled)
{
    m_areMarked = areMarked;
    m_areFilled = areFilled;
    update();
}

void Gr_ShapeItem::setPicture(const ShownPicture &picture)
{
    prepareGeometryChange();
    m_picture = picture;
    update();
}

QRectF Gr_ShapeItem::boundingRect() const
{
    return m_picture.rect.adjusted(-kBeyond, -kBeyond, kBeyond, kBeyond);
}

void Gr_ShapeItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    if (m_shapes.isEmpty() || m_picture.frame.isEmpty())
        return;
    const QTransform toScene = QTransform::fromTranslate(m_picture.rect.x(), m_picture.rect.y())
                                   .scale(m_picture.rect.width() / m_picture.frame.width(),
                                          m_picture.rect.height() / m_picture.frame.height());
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    const QColor green(0, 200, 83);
    painter->setPen(QPen(green, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (const QPolygonF &shape : m_shapes) {
        const QPolygonF shown = toScene.map(shape);
        painter->setBrush(Qt::NoBrush);
        painter->drawPolygon(shown);
        painter->setBrush(m_areFilled ? green : QColor(255, 255, 255, 160));
        for (const QPointF &corner : shown) {
            if (m_areMarked)
                painter->drawEllipse(corner, kMarkRadius, kMarkRadius);
        }
    }
}
