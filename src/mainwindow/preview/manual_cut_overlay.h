#pragma once

#include "mainwindow/preview/manual_cut_geometry.h"

#include <QPointer>
#include <QWidget>

class Gr_View;

/// The manual crop rectangle over the preview, with eight handles and a dimmed outside.
///
/// Lies exactly over the view, either as a widget of the view's parent or, without a parent, as a
/// frameless window of its own. Dragging and the arrow keys move the rectangle, handles and
/// Shift + arrow keys resize it; a drag outside moves the picture, the wheel zooms it. GUI thread.
class ManualCutOverlay : public QWidget
{
    Q_OBJECT

public:
    explicit ManualCutOverlay(QWidget *parent = nullptr);

    /// Follows the picture in `view` from now on and hands wheel events to it.
    void follow(Gr_View *view);
    /// The picture, in this widget's coordinates; for use without follow().
    void setPicture(const ShownPicture &picture);

    /// The selection in pixels of the rotated frame; empty before the first picture.
    QRect frameRect() const { return m_geometry.rect(); }
    /// Where the selection lies in this widget; empty before the first picture.
    QRectF screenRect() const { return m_geometry.screenRect(); }
    void setFrameRect(const QRect &rect);
    /// Back to the default selection.
    void reset();

    /// Moves or resizes for an arrow key, for windows that keep the focus elsewhere; false when
    /// the key means nothing here.
    bool handleKey(int key, Qt::KeyboardModifiers modifiers);

signals:
    /// The selection changed, pixels of the rotated frame.
    void rectChanged(const QRect &frameRect);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void describe();
    CutHandle handleAt(const QPointF &position) const;
    void announce(const QRect &before);

    ManualCutGeometry m_geometry;
    QPointer<Gr_View> m_view;
    CutHandle m_held = CutHandle::None;
    QPointF m_pressed; ///< where the drag began
    QPoint m_panned;   ///< where the picture was moved to last
    bool m_isPanning = false;
    QRect m_startRect; ///< the selection when it began
};
