#include "mainwindow/preview/sheet_corners.h"

#include "video/gr_shape_item.h"
#include "video/gr_view.h"

#include <QLineF>
#include <QMouseEvent>

namespace {

constexpr double kReach = 16; // view pixels around a corner in which it is caught

QTransform frameToScene(const ShownPicture &picture)
{
    return QTransform::fromTranslate(picture.rect.x(), picture.rect.y())
        .scale(picture.rect.width() / picture.frame.width(),
               picture.rect.height() / picture.frame.height());
}

// Dragged past its neighbours a corner would turn the sheet inside out.
bool isConvex(const QPolygonF &sheet)
{
    for (int i = 0; i < 4; ++i) {
        const QPointF a = sheet[(i + 1) % 4] - sheet[i];
        const QPointF b = sheet[(i + 2) % 4] - sheet[(i + 1) % 4];
        if (a.x() * b.y() - a.y() * b.x() <= 0)
            return false;
    }
    return true;
}

} // namespace

SheetCorners::SheetCorners(Gr_View *view, Gr_ShapeItem *shapes)
    : QObject(view)
    , m_view(view)
    , m_shapes(shapes)
{
    view->viewport()->installEventFilter(this);
}

void SheetCorners::show(const QVector<QPolygonF> &sheets, bool areFixed)
{
    if (m_sheet >= 0)
        return;
    m_sheets = sheets;
    m_areFixed = areFixed;
    draw();
}

void SheetCorners::setActive(bool isActive)
{
    m_isActive = isActive;
    m_sheet = -1;
    draw();
}

void SheetCorners::release()
{
    m_sheet = -1;
    if (m_isActive)
        emit sheetsSet({});
}

bool SheetCorners::eventFilter(QObject *watched, QEvent *event)
{
    const bool isMouse = event->type() == QEvent::MouseButtonPress ||
                         event->type() == QEvent::MouseMove ||
                         event->type() == QEvent::MouseButtonRelease;
    if (!isMouse || !m_isActive || m_view->paintedPicture().frame.isEmpty())
        return QObject::eventFilter(watched, event);
    const auto *mouse = static_cast<QMouseEvent *>(event);
    if (event->type() == QEvent::MouseButtonPress && mouse->button() == Qt::LeftButton)
        return pick(mouse->localPos());
    if (event->type() == QEvent::MouseMove && m_sheet >= 0) {
        drag(mouse->localPos());
        return true;
    }
    if (event->type() == QEvent::MouseButtonRelease && m_sheet >= 0) {
        m_sheet = -1;
        emit sheetsSet(m_sheets);
        return true;
    }
    return QObject::eventFilter(watched, event);
}

bool SheetCorners::pick(const QPointF &viewPoint)
{
    const QTransform toView = frameToScene(m_view->paintedPicture()) * m_view->viewportTransform();
    double nearest = kReach;
    for (int sheet = 0; sheet < m_sheets.size(); ++sheet) {
        for (int corner = 0; corner < m_sheets[sheet].size(); ++corner) {
            const QPointF grip = toView.map(m_sheets[sheet][corner]) - viewPoint;
            const double distance = QLineF(QPointF(), grip).length();
            if (distance >= nearest)
                continue;
            nearest = distance;
            m_sheet = sheet;
            m_corner = corner;
            m_grip = grip;
        }
    }
    return m_sheet >= 0;
}

void SheetCorners::drag(const QPointF &viewPoint)
{
    const QTransform toView = frameToScene(m_view->paintedPicture()) * m_view->viewportTransform();
    QPolygonF moved = m_sheets[m_sheet];
    moved[m_corner] = toView.inverted().map(viewPoint + m_grip);
    if (isConvex(moved))
        m_sheets[m_sheet] = moved;
    m_areFixed = true;
    draw();
}

void SheetCorners::draw()
{
    m_shapes->setShapes(m_isActive ? m_sheets : QVector<QPolygonF>());
    m_shapes->setCornersMarked(m_isActive, m_areFixed);
}
