#pragma once

#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QRectF>
#include <QString>

/// A sheet of paper to draw on, in millimetres from its upper left corner.
class SheetPainter
{
public:
    struct Style
    {
        double heightMm = 4; ///< of a line's letters
        QFont::Weight weight = QFont::Normal;
        Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignTop;
        const char *family = "DejaVu Serif";
    };

    SheetPainter(QSizeF sizeMm, double pixelsPerMm, QColor paper);

    QPainter &painter() { return m_painter; }

    /// Text in a box, broken at words. No letter snaps to the pixel grid, so that the text looks
    /// the same at every resolution.
    void text(QRectF box, const QString &text, const Style &style);

    /// Ends the drawing and returns the sheet.
    QImage finish();

private:
    QImage m_image;
    QPainter m_painter;
};

/// `count` sentences of plain prose, a few of the same by chance.
QString prose(QRandomGenerator &random, int count);

/// One short word of it.
QString proseWord(QRandomGenerator &random);
