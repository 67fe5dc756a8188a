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
}

void CamTwo_View::moveToPictureCorner()
{
    if (m_picture)
        move(m_picture().topLeft());
}

void CamTwo_View::keepInside()
{
    move(inside(geometry()).topLeft());
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
}

void CamTwo_View::mouseReleaseEvent(QMouseEvent *)
{
    isdown = false;
}
