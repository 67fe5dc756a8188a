#pragma once

#include "video/preview_geometry.h"

#include <QGraphicsView>
#include <QImage>

class Gr_CamItem;
class Gr_ShapeItem;

/// The live picture: zoomed by wheel and buttons, moved by dragging, turned in quarter turns.
///
/// The arithmetic is PreviewGeometry's; the view feeds it `SceneShowWidth` x `SceneShowHeight` and
/// `op_width` x `op_height` and hands the result to its item. Wheel and dragging rest while the
/// assist camera runs, dragging also during manual crop. GUI thread.
class Gr_View : public QGraphicsView
{
    Q_OBJECT

public:
    explicit Gr_View(QWidget *parent = nullptr);

    /// The item that paints the frames; not owned. Null is allowed.
    void setCamItem(Gr_CamItem *item);
    /// Outlines that follow the picture; not owned. Null is allowed.
    void setShapeItem(Gr_ShapeItem *item);

    /// Makes the paint layer a fully transparent image of the frame's size.
    void setPaintRegionInit(int w, int h);
    QImage paintLayer() const { return m_paintLayer; }

    /// Fits `w` x `h` into the scene as base rectangle; see PreviewGeometry::fit.
    int CalculateSuitableShowSize(int w, int h);

    void rotateLeft();
    void rotateRight();
    void toRotate(int direction); ///< 0 left, otherwise right
    void zoomIn();
    void zoomOut();
    void toZoom(int in);       ///< 0 out, otherwise in
    void panBy(QPoint offset); ///< moves the picture, scene units
    void toSuitable();         ///< the whole picture, centred
    void toTrueSize();         ///< one frame pixel is one scene unit

    /// Draws the rectangle from the last press to the last place dragged to (scene units) onto
    /// `image` in green and shows the image.
    void paint(QImage &image);

    /// Rotation, zoom and place of the picture, to be put back later. The picture is fitted when
    /// the scene or the frame has another size by then.
    const PreviewGeometry &previewGeometry() const { return m_geometry; }
    void setPreviewGeometry(const PreviewGeometry &geometry);

    /// Clockwise rotation of the shown frames, degrees; a newly opened camera is given this.
    int rotateAngle() const { return m_geometry.angle(); }
    double zoomFactor() const { return m_geometry.zoomFactor(); }
    /// Where the picture lies now.
    ShownPicture shownPicture() const;
    /// The same in the whole pixels in which it is painted: what is laid over it lies on those.
    ShownPicture paintedPicture() const;

signals:
    /// The user turned the picture: frames are wanted rotated clockwise by `degrees`.
    void rotated(int degrees);
    /// shownPicture() changed.
    void showRectChanged();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void readState();
    void applyShowRect();
    void rotate(RotateDirection direction);
    void zoom(ZoomDirection direction);
    QPoint scenePoint(const QPoint &viewPoint) const;

    PreviewGeometry m_geometry;
    Gr_CamItem *m_camItem = nullptr;
    Gr_ShapeItem *m_shapeItem = nullptr;
    QPoint m_pressPoint;   ///< scene point of the last mouse position used for panning
    QPoint m_currentPoint; ///< scene point of the newest mouse position
    int m_paintColour = 0; ///< -1: none chosen
    QImage m_paintLayer;
    QImage m_paintLayerCopy;
};
