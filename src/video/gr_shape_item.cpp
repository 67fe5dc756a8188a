#include "video/gr_shape_item.h"

#include <QPainter>

Gr_ShapeItem::Gr_ShapeItem(QGraphicsItem *parent)
    : QGraphicsItem(parent)
{
}

void Gr_ShapeItem::setShapes(const QVector<QPolygonF> &shapes)
{
    m_shapes = shapes;
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
    return m_picture.rect.adjusted(-2, -2, 2, 2);
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
    painter->setPen(QPen(QColor(0, 200, 83), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (const QPolygonF &shape : m_shapes)
        painter->drawPolygon(toScene.map(shape));
}
