#include "video/camtwo_view.h"

#include "app/state.h"
#include "video/assist_geometry.h"

#include <QMouseEvent>

CamTwo_View::CamTwo_View(QWidget *parent)
    : QLabel(parent)
{
    setCursor(Qt::SizeAllCursor);
}

void CamTwo_View::setPicture(Picture picture)
{
    m_picture = std::move(picture);
}

QRect CamTwo_View::inside(const QRect &view) const
{
    const QRect picture = m_picture ? m_picture() : QRect();
    return picture.isEmpty() ? view : clampAssistView(view, picture);
}

void CamTwo_View::applySize(int index)
{
    setGeometry(inside(QRect(pos(), assistViewSize(index))));
    rememberPlace();
}

void CamTwo_View::moveToPictureCorner()
{
    if (m_picture)
        move(m_picture().topLeft());
    m_place = QPointF();
}

void CamTwo_View::keepPlace()
{
    const QRect picture = m_picture ? m_picture() : QRect();
    if (picture.isEmpty())
        return;
    const QSize room = picture.size() - size();
    const QPointF place(m_place.x() * room.width(), m_place.y() * room.height());
    move(inside(QRect(picture.topLeft() + place.toPoint(), size())).topLeft());
}

// In a picture that leaves no room the place stays what it was.
void CamTwo_View::rememberPlace()
{
    const QRect picture = m_picture ? m_picture() : QRect();
    const QSize room = picture.size() - size();
    const QPoint offset = pos() - picture.topLeft();
    if (room.width() > 0)
        m_place.setX(qBound(0.0, double(offset.x()) / room.width(), 1.0));
    if (room.height() > 0)
        m_place.setY(qBound(0.0, double(offset.y()) / room.height(), 1.0));
}

void CamTwo_View::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    isdown = true;
    m_last = mapToParent(event->pos());
}

void CamTwo_View::mouseMoveEvent(QMouseEvent *event)
{
    if (!isdown || !(event->buttons() & Qt::LeftButton))
        return;
    const QPoint current = mapToParent(event->pos());
    move(inside(geometry().translated(current - m_last)).topLeft());
    m_last = current;
    rememberPlace();
}

void CamTwo_View::mouseReleaseEvent(QMouseEvent *)
{
    isdown = false;
}
