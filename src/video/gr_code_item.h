#pragma once

#include "video/preview_geometry.h"

#include <QGraphicsItem>
#include <QPolygonF>
#include <QStringList>
#include <QVector>

/// Codes over the picture: their place and, beside it, their text. GUI thread.
class Gr_CodeItem : public QGraphicsItem
{
public:
    struct Label
    {
        QPolygonF corners; ///< pixels of the rotated frame
        QString text;
    };

    explicit Gr_CodeItem(QGraphicsItem *parent = nullptr);

    /// What was seen in a frame of this size and rotation; a picture that lies in another way by
    /// now is left without.
    void setLabels(const QVector<Label> &labels, QSize frame, int angle);
    QStringList texts() const;
    /// Where the frame lies in the scene.
    void setPicture(const ShownPicture &picture);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    QVector<Label> m_labels;
    QSize m_frame;
    int m_angle = 0;
    ShownPicture m_picture;
};
