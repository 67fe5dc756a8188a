#include "video/gr_code_item.h"

#include <QFontMetricsF>
#include <QGraphicsScene>
#include <QPainter>

namespace {

// Scene units.
constexpr double kPadding = 4, kGap = 6, kRound = 4;
constexpr double kTextWidthMax = 320;
constexpr double kBeyond = kTextWidthMax + 60; // texts may reach beyond the picture

const QColor kInk(0, 105, 217); // neither paper, print nor the outlines of sheets

} // namespace

Gr_CodeItem::Gr_CodeItem(QGraphicsItem *parent)
    : QGraphicsItem(parent)
{
}

void Gr_CodeItem::setLabels(const QVector<Label> &labels, QSize frame, int angle)
{
    m_labels = labels;
    m_frame = frame;
    m_angle = angle;
    update();
}

QStringList Gr_CodeItem::texts() const
{
    QStringList result;
    for (const Label &label : m_labels)
        result.append(label.text);
    return result;
}

void Gr_CodeItem::setPicture(const ShownPicture &picture)
{
    prepareGeometryChange();
    m_picture = picture;
    update();
}

QRectF Gr_CodeItem::boundingRect() const
{
    return m_picture.rect.adjusted(-kBeyond, -kBeyond, kBeyond, kBeyond);
}

void Gr_CodeItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    if (m_frame.isEmpty() || m_frame != m_picture.frame || m_angle != m_picture.angle)
        return;
    const QTransform toScene = QTransform::fromTranslate(m_picture.rect.x(), m_picture.rect.y())
                                   .scale(m_picture.rect.width() / m_frame.width(),
                                          m_picture.rect.height() / m_frame.height());
    const QRectF area = scene() ? scene()->sceneRect() : boundingRect();
    const QFontMetricsF metrics(painter->font());
    painter->setRenderHint(QPainter::Antialiasing);
    for (const Label &label : m_labels) {
        const QPolygonF place = toScene.map(label.corners);
        painter->setPen(QPen(kInk, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->setBrush(Qt::NoBrush);
        painter->drawPolygon(place);

        const QString text = metrics.elidedText(label.text, Qt::ElideRight, kTextWidthMax);
        QRectF box(0, 0, metrics.horizontalAdvance(text) + 2 * kPadding,
                   metrics.height() + 2 * kPadding);
        const QRectF around = place.boundingRect();
        box.moveTopLeft({around.center().x() - box.width() / 2, around.bottom() + kGap});
        if (box.bottom() > area.bottom())
            box.moveBottom(around.top() - kGap);
        box.moveLeft(qMax(area.left(), qMin(box.left(), area.right() - box.width())));
        box.moveTop(qMax(area.top(), qMin(box.top(), area.bottom() - box.height())));
        painter->setPen(Qt::NoPen);
        painter->setBrush(kInk);
        painter->drawRoundedRect(box, kRound, kRound);
        painter->setPen(Qt::white);
        painter->drawText(box, Qt::AlignCenter, text);
    }
}
