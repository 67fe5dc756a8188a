#pragma once

#include <QLabel>
#include <QPoint>
#include <QPointF>

#include <functional>

/// The assist camera's picture, a label laid over the preview that the user drags about inside
/// the displayed main picture. GUI thread.
class CamTwo_View : public QLabel
{
    Q_OBJECT

public:
    /// Answers the displayed main picture in the coordinates of this label's parent.
    using Picture = std::function<QRect()>;

    explicit CamTwo_View(QWidget *parent = nullptr);

    /// Without a picture the label is not held back.
    void setPicture(Picture picture);

    /// Takes the size of `index` in the size table and moves back into the picture if needed.
    void applySize(int index);
    /// Moves to the picture's top-left corner.
    void moveToPictureCorner();
    /// Moves back to where it was dragged to, inside the picture, after that has changed.
    void keepPlace();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QRect inside(const QRect &view) const;
    void rememberPlace();

    Picture m_picture;
    QPointF m_place; ///< of the room that the picture leaves to the left and above, 0 to 1
    QPoint m_last;   ///< last mouse position in the parent's coordinates
};
