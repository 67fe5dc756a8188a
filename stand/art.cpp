#include "stand/art.h"

#include "stand/sheet_painter.h"

#include <QLinearGradient>
#include <QPainterPath>

namespace {

const QColor kPaper(244, 242, 236);
const QColor kRule(34, 34, 40);

using Style = SheetPainter::Style;

void drawBars(QPainter &painter, QRandomGenerator &random, QPointF foot)
{
    painter.setPen(QPen(kRule, 0.3));
    painter.drawLine(foot, foot + QPointF(60, 0));
    for (int i = 0; i < 6; ++i) {
        const double height = random.bounded(12, 48);
        painter.setBrush(i % 2 ? QColor(176, 74, 58) : QColor(62, 98, 140));
        painter.drawRect(QRectF(foot.x() + 3 + 9.5 * i, foot.y() - height, 6.5, height));
    }
    painter.setBrush(Qt::NoBrush);
}

void drawTable(SheetPainter &sheet, QRandomGenerator &random, double top)
{
    constexpr double kRow = 9;
    const double edges[] = {22, 72, 130, 188};
    for (int i = 0; i <= 6; ++i)
        sheet.painter().drawLine(QPointF(22, top + i * kRow), QPointF(188, top + i * kRow));
    for (double x : edges)
        sheet.painter().drawLine(QPointF(x, top), QPointF(x, top + 6 * kRow));
    for (int i = 0; i < 6; ++i) {
        const QStringList cells =
            i == 0 ? QStringList{QStringLiteral("Box"), QStringLiteral("From"),
                                 QStringLiteral("Sheets")}
                   : QStringList{QString::number(random.bounded(1000, 9999)), proseWord(random),
                                 QString::number(random.bounded(2, 300))};
        for (int k = 0; k < 3; ++k)
            sheet.text({edges[k] + 2, top + i * kRow + 2, 54, kRow}, cells[k],
                       {4, i == 0 ? QFont::Bold : QFont::Normal});
    }
}

} // namespace

QImage drawTextPage(double pixelsPerMm, int seed)
{
    QRandomGenerator random(static_cast<quint32>(seed));
    SheetPainter sheet({210, 297}, pixelsPerMm, kPaper);
    sheet.text({22, 20, 120, 8}, QStringLiteral("County archive, reading room"), {3.4});
    sheet.text({22, 20, 166, 8}, QStringLiteral("Sheet %1").arg(seed),
               {3.4, QFont::Normal, Qt::AlignRight | Qt::AlignTop});
    sheet.text({22, 34, 166, 14}, QStringLiteral("On the keeping of loose sheets"),
               {8, QFont::Bold});
    sheet.text({22, 52, 166, 56}, prose(random, 9), {4.2});
    sheet.text({22, 114, 166, 10}, QStringLiteral("What is asked for most"), {5.4, QFont::Bold});
    sheet.text({22, 126, 98, 72}, prose(random, 8), {4.2});
    drawBars(sheet.painter(), random, {128, 180});
    drawTable(sheet, random, 204);
    sheet.text({22, 265, 166, 18}, prose(random, 3), {3.2});
    return sheet.finish();
}

QImage drawReceipt(double pixelsPerMm, int seed)
{
    QRandomGenerator random(static_cast<quint32>(seed));
    SheetPainter sheet({80, 190}, pixelsPerMm, QColor(240, 240, 238));
    const Style centred{4, QFont::Normal, Qt::AlignHCenter | Qt::AlignTop, "DejaVu Sans Mono"};
    const Style left{3.4, QFont::Normal, Qt::AlignLeft | Qt::AlignTop, "DejaVu Sans Mono"};
    const Style right{3.4, QFont::Normal, Qt::AlignRight | Qt::AlignTop, "DejaVu Sans Mono"};
    sheet.text({5, 10, 70, 8}, QStringLiteral("PAPER & INK"),
               {6, QFont::Bold, centred.alignment, centred.family});
    sheet.text({5, 20, 70, 6}, QStringLiteral("12 Mill Lane"), centred);
    const QStringList goods{QStringLiteral("Folder A4"),   QStringLiteral("Pencil HB"),
                            QStringLiteral("Index cards"), QStringLiteral("Glue stick"),
                            QStringLiteral("Archive box"), QStringLiteral("Cotton tape"),
                            QStringLiteral("Ruler 30 cm"), QStringLiteral("Eraser")};
    int total = 0;
    double y = 36;
    for (int i = 0; i < 14; ++i, y += 7.5) {
        const int price = random.bounded(45, 1990);
        total += price;
        sheet.text({6, y, 50, 7}, goods.at(random.bounded(goods.size())), left);
        sheet.text({6, y, 68, 7}, QString::number(price / 100.0, 'f', 2), right);
    }
    sheet.painter().fillRect(QRectF(6, y + 1, 68, 0.4), kRule);
    sheet.text({6, y + 4, 50, 8}, QStringLiteral("TOTAL"),
               {5, QFont::Bold, left.alignment, left.family});
    sheet.text({6, y + 4, 68, 8}, QString::number(total / 100.0, 'f', 2),
               {5, QFont::Bold, right.alignment, right.family});
    sheet.text({5, y + 20, 70, 12}, QStringLiteral("Thank you for your visit"), centred);
    return sheet.finish();
}

QImage drawCard(double pixelsPerMm, int seed)
{
    QRandomGenerator random(static_cast<quint32>(seed));
    const int hue = seed * 47 % 360;
    SheetPainter sheet({86, 54}, pixelsPerMm, QColor::fromHsv(hue, 40, 240));
    QPainter &painter = sheet.painter();
    painter.fillRect(QRectF(0, 0, 86, 11), QColor::fromHsv(hue, 170, 150));
    painter.setPen(Qt::white);
    sheet.text({5, 2.6, 76, 8}, QStringLiteral("Public library"),
               {5, QFont::Bold, Qt::AlignLeft | Qt::AlignTop, "DejaVu Sans"});
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromHsv(hue, 60, 205));
    painter.drawRect(QRectF(5, 15, 24, 31));
    painter.setBrush(QColor(96, 74, 62));
    painter.drawEllipse(QPointF(17, 26), 6, 7);
    painter.drawChord(QRectF(7.5, 34, 19, 24), 0, 180 * 16);
    painter.setPen(kRule);
    sheet.text({33, 17, 50, 6}, QStringLiteral("Card %1").arg(random.bounded(100000, 999999)),
               {4.4, QFont::Bold, Qt::AlignLeft | Qt::AlignTop, "DejaVu Sans"});
    sheet.text({33, 25, 50, 20}, proseWord(random) + QStringLiteral(" branch\nvalid to 12/2031"),
               {3.6, QFont::Normal, Qt::AlignLeft | Qt::AlignTop, "DejaVu Sans"});
    return sheet.finish();
}

QImage drawPostcard(double pixelsPerMm, int seed)
{
    QRandomGenerator random(static_cast<quint32>(seed));
    SheetPainter sheet({150, 105}, pixelsPerMm, QColor(250, 250, 246));
    QPainter &painter = sheet.painter();
    const QRectF view(5, 5, 140, 95);
    painter.setClipRect(view);
    painter.setPen(Qt::NoPen);
    QLinearGradient sky(0, 5, 0, 80);
    sky.setColorAt(0, QColor(52, 104, 176));
    sky.setColorAt(1, QColor(250, 196, 120));
    painter.fillRect(view, sky);
    painter.setBrush(QColor(255, 240, 190));
    painter.drawEllipse(QPointF(104, 46), 9, 9);
    for (int i = 0; i < 4; ++i) {
        QPainterPath hill(QPointF(0, 110));
        double y = 50 + 12 * i;
        for (int x = 0; x <= 150; x += 30) {
            hill.quadTo(QPointF(x + 5, y - random.bounded(4, 16)), QPointF(x + 15, y));
            hill.quadTo(QPointF(x + 25, y + random.bounded(2, 8)), QPointF(x + 30, y));
        }
        hill.lineTo(180, 110);
        painter.setBrush(QColor::fromHsv(150 - 18 * i, 120 + 20 * i, 120 - 14 * i));
        painter.drawPath(hill);
    }
    painter.setPen(Qt::white);
    sheet.text({12, 84, 126, 14}, QStringLiteral("Greetings from the valley"),
               {8, QFont::Bold, Qt::AlignRight | Qt::AlignTop});
    return sheet.finish();
}

QImage drawBook(double pixelsPerMm, int seed)
{
    QRandomGenerator random(static_cast<quint32>(seed));
    SheetPainter sheet({300, 210}, pixelsPerMm, QColor(240, 234, 220));
    for (int side = 0; side < 2; ++side) {
        const double x = side == 0 ? 18 : 170;
        const Style foot{3.6, QFont::Normal,
                         (side == 0 ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignTop};
        sheet.text({x, 18, 112, 12}, QStringLiteral("Chapter %1").arg(2 * seed + side),
                   {6.4, QFont::Bold});
        sheet.text({x, 34, 112, 150}, prose(random, 23), {4.2});
        sheet.text({x, 194, 112, 8}, QString::number(4 * seed + 10 + side), foot);
    }
    // The pages bend down into the fold.
    QLinearGradient fold(0, 0, 300, 0);
    fold.setColorAt(0, QColor(0, 0, 0, 26));
    fold.setColorAt(0.04, QColor(0, 0, 0, 0));
    fold.setColorAt(0.42, QColor(0, 0, 0, 8));
    fold.setColorAt(0.497, QColor(0, 0, 0, 120));
    fold.setColorAt(0.505, QColor(0, 0, 0, 90));
    fold.setColorAt(0.56, QColor(0, 0, 0, 10));
    fold.setColorAt(0.96, QColor(0, 0, 0, 0));
    fold.setColorAt(1, QColor(0, 0, 0, 30));
    sheet.painter().fillRect(QRectF(0, 0, 300, 210), fold);
    return sheet.finish();
}

QImage drawPalePage(double pixelsPerMm)
{
    SheetPainter sheet({210, 297}, pixelsPerMm, QColor(247, 247, 246));
    sheet.painter().setPen(QColor(176, 176, 180));
    sheet.text({30, 40, 150, 10}, QStringLiteral("This page is left blank."), {4.6});
    return sheet.finish();
}
