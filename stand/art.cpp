#include "stand/art.h"

#include <QFont>
#include <QPainter>
#include <QRandomGenerator>
#include <QTextDocument>

namespace {

const QColor kPaper(244, 242, 236);
const QColor kInk(34, 34, 40);

const QStringList kWords =
    QStringLiteral("the archive keeps every letter in a numbered box and each box has a card that "
                   "names its year sender subject and shelf pages are laid flat under the lamp "
                   "edges checked corners straightened before the picture is taken readers may "
                   "ask for a copy by writing its number on the slip copies are ready within one "
                   "day when nothing is missing lost sheets were found between two covers after "
                   "the move light falls from the left so that no shadow crosses the text")
        .split(QLatin1Char(' '));

QString sentence(QRandomGenerator &random)
{
    QStringList words;
    const int count = random.bounded(8, 16);
    for (int i = 0; i < count; ++i)
        words << kWords.at(random.bounded(kWords.size()));
    QString text = words.join(QLatin1Char(' '));
    text[0] = text[0].toUpper();
    return text + QLatin1Char('.');
}

QString paragraph(QRandomGenerator &random, int sentences)
{
    QStringList parts;
    for (int i = 0; i < sentences; ++i)
        parts << sentence(random);
    return parts.join(QLatin1Char(' '));
}

// A painter whose unit is one millimetre.
void startPainter(QPainter &painter, QImage &image, double pixelsPerMm)
{
    painter.begin(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    painter.scale(pixelsPerMm, pixelsPerMm);
    painter.setPen(kInk);
}

// Font of a height in millimetres. Painted large and scaled down, because a font of three units
// would be laid out with letters snapped to whole units.
void drawText(QPainter &painter, QRectF box, const QString &text, double heightMm,
              QFont::Weight weight = QFont::Normal, int flags = Qt::AlignLeft | Qt::AlignTop)
{
    constexpr double kFine = 20;
    QFont font(QStringLiteral("DejaVu Serif"));
    font.setPixelSize(qRound(heightMm * kFine));
    font.setWeight(weight);
    font.setHintingPreference(QFont::PreferNoHinting);
    painter.save();
    painter.scale(1 / kFine, 1 / kFine);
    painter.setFont(font);
    painter.drawText(QRectF(box.topLeft() * kFine, box.size() * kFine), flags | Qt::TextWordWrap,
                     text);
    painter.restore();
}

} // namespace

QImage blankSheet(QSizeF size, double pixelsPerMm, QColor paper)
{
    QImage image((size * pixelsPerMm).toSize().expandedTo({1, 1}), QImage::Format_RGB32);
    image.fill(paper);
    return image;
}

QImage drawTextPage(double pixelsPerMm, int seed)
{
    QRandomGenerator random(static_cast<quint32>(seed));
    QImage image = blankSheet({210, 297}, pixelsPerMm, kPaper);
    QPainter painter;
    startPainter(painter, image, pixelsPerMm);
    drawText(painter, {22, 20, 120, 8}, QStringLiteral("County archive, reading room"), 3.4);
    drawText(painter, {22, 20, 166, 8}, QStringLiteral("Sheet %1").arg(seed), 3.4, QFont::Normal,
             Qt::AlignRight | Qt::AlignTop);
    drawText(painter, {22, 34, 166, 14}, QStringLiteral("On the keeping of loose sheets"), 8,
             QFont::Bold);
    drawText(painter, {22, 52, 166, 60}, paragraph(random, 7), 4.2);
    drawText(painter, {22, 112, 166, 10}, QStringLiteral("What is asked for most"), 5.4,
             QFont::Bold);
    drawText(painter, {22, 122, 98, 80}, paragraph(random, 6), 4.2);

    // A diagram beside the second paragraph.
    painter.setPen(QPen(kInk, 0.3));
    painter.drawLine(QPointF(128, 178), QPointF(188, 178));
    for (int i = 0; i < 6; ++i) {
        const double height = random.bounded(12, 48);
        painter.setBrush(i % 2 ? QColor(176, 74, 58) : QColor(62, 98, 140));
        painter.drawRect(QRectF(131 + 9.5 * i, 178 - height, 6.5, height));
    }
    painter.setBrush(Qt::NoBrush);

    // A table under it.
    const double top = 206, row = 9;
    for (int i = 0; i <= 6; ++i)
        painter.drawLine(QPointF(22, top + i * row), QPointF(188, top + i * row));
    for (double x : {22.0, 72.0, 130.0, 188.0})
        painter.drawLine(QPointF(x, top), QPointF(x, top + 6 * row));
    const QStringList heads{QStringLiteral("Box"), QStringLiteral("Sender"),
                            QStringLiteral("Sheets")};
    for (int i = 0; i < 6; ++i) {
        const QStringList cells{QString::number(random.bounded(1000, 9999)),
                                kWords.at(random.bounded(kWords.size())),
                                QString::number(random.bounded(2, 300))};
        for (int k = 0; k < 3; ++k) {
            const double x = k == 0 ? 24 : k == 1 ? 74 : 132;
            drawText(painter, {x, top + i * row + 2, 54, row}, i == 0 ? heads[k] : cells[k], 4,
                     i == 0 ? QFont::Bold : QFont::Normal);
        }
    }
    drawText(painter, {22, 268, 166, 18}, paragraph(random, 2), 3.2);
    painter.end();
    return image;
}
