#pragma once

#include <QGraphicsItem>
#include <QImage>

/// Paints the newest camera frame into a rectangle of the scene. GUI thread.
///
/// Smooth when scaled down: the frame is averaged down by a whole factor once, the rest is
/// bilinear. Pixels stay crisp at whole scales and when enlarged.
class Gr_CamItem : public QGraphicsItem
{
public:
    explicit Gr_CamItem(QGraphicsItem *parent = nullptr);

    /// The frame painted from now on. The pixels are shared, not copied. Asks for a repaint.
    void SetQImage(QImage image);
    QImage GetQImage() const { return m_image; }

    /// Turns the picture clockwise by `degrees`, 90 or -90, until a frame comes that is turned so.
    void turn(int degrees);

    /// Where the whole frame is painted, scene units. Also becomes the bounding rectangle.
    void setShowRect(double x, double y, double w, double h);
    /// The painted rectangle, its four values truncated to integers.
    QRect getShowGeometry() const;

    void setBoundingRect(double x, double y, double w, double h);
    QRectF boundingRect() const override { return m_bounds; }

    /// Shows a frame of `w` x `h` fitted into the scene (`SceneShowWidth` x `SceneShowHeight`).
    /// Returns the fitted side that was truncated, see PreviewGeometry::fit.
    int CalculateSuitableShowSize(int w, int h);

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    const QImage &reduced(int factor);

    QImage m_image;
    QRectF m_show;
    QRectF m_bounds;
    QImage m_reduced;        ///< m_image averaged down, valid while m_reducedFactor is not 0
    int m_reducedFactor = 0; ///< 0: not yet
};
