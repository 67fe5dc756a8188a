#pragma once

#include "video/preview_geometry.h"

#include <QGraphicsItem>
#include <QPolygonF>
#include <QVector>

/// Outlines over the picture, given in frame pixels so that they follow zoom, rotation and
/// panning. GUI thread.
class Gr_ShapeItem : public QGraphicsItem
{
public:
    explicit Gr_ShapeItem(QGraphicsItem *parent = nullptr);

    /// Closed outlines in pixels of the rotated frame; an empty list removes them.
    void setShapes(const QVector<QPolygonF> &shapes);
    /// Where the frame lies in the scene.
    void setPicture(const ShownPicture &picture);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    QVector<QPolygonF> m_shapes;
    ShownPicture m_picture;
};
