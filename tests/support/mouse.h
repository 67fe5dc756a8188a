#pragma once

#include <QMouseEvent>
#include <QWheelEvent>
#include <QtTest>

/// Moves the mouse over `widget` with the left button held.
inline void drag(QWidget *widget, QPoint from, QPoint to)
{
    QTest::mousePress(widget, Qt::LeftButton, {}, from);
    QMouseEvent move(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(widget, &move);
    QTest::mouseRelease(widget, Qt::LeftButton, {}, to);
}

/// Turns the wheel over `widget`; one step is 120.
inline void turnWheel(QWidget *widget, int delta)
{
    const QPoint place = widget->rect().center();
    QWheelEvent event(place, widget->mapToGlobal(place), {}, {0, delta}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}
