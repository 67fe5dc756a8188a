#pragma once

#include <QObject>
#include <QPolygonF>
#include <QVector>

class Gr_ShapeItem;
class Gr_View;

/// Smart crop's outlines over the picture. A drag on a corner sets the sheets as they are then
/// drawn; release() gives them free again. GUI thread.
class SheetCorners : public QObject
{
    Q_OBJECT

public:
    SheetCorners(Gr_View *view, Gr_ShapeItem *shapes);

    /// Outlines in frame pixels; ignored while a corner is dragged.
    void show(const QVector<QPolygonF> &sheets, bool areFixed);
    /// Switched off, nothing is drawn and the mouse is left alone.
    void setActive(bool isActive);
    void release();

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void sheetsSet(const QVector<QPolygonF> &sheets); ///< empty: to be found again

private:
    bool pick(const QPointF &viewPoint);
    void drag(const QPointF &viewPoint);
    void draw();

    Gr_View *m_view;
    Gr_ShapeItem *m_shapes;
    QVector<QPolygonF> m_sheets;
    bool m_isActive = false;
    bool m_areFixed = false;
    int m_sheet = -1; // whose corner is dragged
    int m_corner = 0;
    QPointF m_grip; // from the pointer to the corner, view pixels
};
