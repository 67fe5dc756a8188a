#include "video/gr_view.h"

#include "app/state.h"
#include "video/gr_cam_item.h"
#include "video/gr_shape_item.h"

#include <QDebug>
#include <QMouseEvent>
#include <QPainter>

#include <cstdlib>

Gr_View::Gr_View(QWidget *parent)
    : QGraphicsView(parent)
{
    // A frame or scroll bars would take room from the scene, which is as large as the view.
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setBackgroundBrush(
        QColor(0x2b, 0x2d, 0x30)); // neutral beside paper, in light and dark palettes
}

void Gr_View::setCamItem(Gr_CamItem *item)
{
    m_camItem = item;
}

void Gr_View::setShapeItem(Gr_ShapeItem *item)
{
    m_shapeItem = item;
}

void Gr_View::setPaintRegionInit(int w, int h)
{
    m_paintColour = -1;
    m_paintLayer = QImage();
    if (w > 0 && h > 0) {
        // Zeroed pages are transparent pixels, and cost no memory until something is drawn.
        if (void *pixels = std::calloc(size_t(w) * size_t(h), 4))
            m_paintLayer = QImage(static_cast<uchar *>(pixels), w, h, QImage::Format_ARGB32,
                                  &std::free, pixels);
    }
    m_paintLayerCopy = m_paintLayer;
}

ShownPicture Gr_View::shownPicture() const
{
    return {m_geometry.showRect(), m_geometry.rotatedFrame(), m_geometry.angle()};
}

ShownPicture Gr_View::paintedPicture() const
{
    const QRectF show = m_geometry.showRect();
    return {QRect(int(show.x()), int(show.y()), int(show.width()), int(show.height())),
            m_geometry.rotatedFrame(), m_geometry.angle()};
}

void Gr_View::readState()
{
    m_geometry.setScene({SceneShowWidth, SceneShowHeight});
    m_geometry.setFrame({op_width, op_height});
}

void Gr_View::applyShowRect()
{
    const QRectF show = m_geometry.showRect();
    if (m_camItem)
        m_camItem->setShowRect(show.x(), show.y(), show.width(), show.height());
    if (m_shapeItem)
        m_shapeItem->setPicture(paintedPicture());
    emit showRectChanged();
}

void Gr_View::setPreviewGeometry(const PreviewGeometry &geometry)
{
    m_geometry = geometry;
    readState();
    if (m_geometry.scene() != geometry.scene() || m_geometry.frame() != geometry.frame())
        m_geometry.toSuitable();
    applyShowRect();
}

int Gr_View::CalculateSuitableShowSize(int w, int h)
{
    readState();
    return m_geometry.fit(w, h);
}

void Gr_View::rotate(RotateDirection direction)
{
    readState();
    m_geometry.rotate(direction);
    if (m_camItem)
        m_camItem->turn(direction == RotateDirection::Left ? -90 : 90);
    emit rotated(m_geometry.angle());
    applyShowRect();
}

void Gr_View::rotateLeft()
{
    rotate(RotateDirection::Left);
}

void Gr_View::rotateRight()
{
    rotate(RotateDirection::Right);
}

void Gr_View::toRotate(int direction)
{
    rotate(direction == 0 ? RotateDirection::Left : RotateDirection::Right);
}

void Gr_View::zoom(ZoomDirection direction)
{
    m_geometry.zoom(direction);
    applyShowRect();
}

void Gr_View::zoomIn()
{
    zoom(ZoomDirection::In);
}

void Gr_View::zoomOut()
{
    zoom(ZoomDirection::Out);
}

void Gr_View::toZoom(int in)
{
    zoom(in == 0 ? ZoomDirection::Out : ZoomDirection::In);
}

void Gr_View::panBy(QPoint offset)
{
    m_geometry.pan(offset);
    applyShowRect();
}

void Gr_View::toSuitable()
{
    readState();
    m_geometry.toSuitable();
    applyShowRect();
}

void Gr_View::toTrueSize()
{
    readState();
    m_geometry.toTrueSize();
    qDebug() << "toTrueSize: scale->" << m_geometry.zoomFactor();
    applyShowRect();
}

void Gr_View::paint(QImage &image)
{
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(QPen(QColor(0, 255, 0), 4, Qt::SolidLine, Qt::RoundCap));
    painter.drawRect(QRect(m_pressPoint, m_currentPoint - QPoint(1, 1)));
    painter.end();
    if (m_camItem)
        m_camItem->SetQImage(image);
}

QPoint Gr_View::scenePoint(const QPoint &viewPoint) const
{
    const QPointF point = mapToScene(viewPoint);
    return {int(point.x()), int(point.y())};
}

void Gr_View::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && !isOpenCameraTwo) {
        m_pressPoint = scenePoint(event->pos());
        isPaintMouseDown = true;
        ismove = false;
    }
    QGraphicsView::mousePressEvent(event);
}

void Gr_View::mouseMoveEvent(QMouseEvent *event)
{
    if (isOpenCameraTwo)
        return;
    if (isPaintMouseDown && cutMode != ManualCrop) {
        m_currentPoint = scenePoint(event->pos());
        m_geometry.pan(m_currentPoint - m_pressPoint);
        m_pressPoint = m_currentPoint;
        ismove = true;
        applyShowRect();
    }
    QGraphicsView::mouseMoveEvent(event);
}

void Gr_View::mouseReleaseEvent(QMouseEvent *event)
{
    isPaintMouseDown = false;
    QGraphicsView::mouseReleaseEvent(event);
}

void Gr_View::wheelEvent(QWheelEvent *event)
{
    event->accept();
    const QPoint delta = event->angleDelta();
    const bool isPhaseMark = delta.isNull() && event->phase() != Qt::NoScrollPhase;
    if (isOpenCameraTwo || isPhaseMark)
        return;
    const int turned = std::abs(delta.x()) > std::abs(delta.y()) ? delta.x() : delta.y();
    zoom(turned < 1 ? ZoomDirection::Out : ZoomDirection::In);
}

void Gr_View::keyPressEvent(QKeyEvent *event)
{
    // Arrow keys would scroll the scene; the window's own keys pass through.
    event->ignore();
}
