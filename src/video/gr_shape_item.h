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
    /// Marks the corners so that they can be caught; filled when they were set by hand.
    void setCornersMarked(bool areMarked, bool areFilled);
    /// Where the frame lies in the scene.
    void setPicture(const ShownPicture &picture);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    QVector<QPolygonF> m_shapes;
    ShownPicture m_picture;
    bool m_areMarked = false, m_areFilled = false;
};
