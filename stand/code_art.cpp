#include "stand/art.h"
#include "stand/codes.h"
#include "stand/sheet_painter.h"

namespace {

const QColor kPaper(246, 245, 241);
const QRectF kCaption(15, 92, 150, 10);
const SheetPainter::Style kCaptionStyle{5, QFont::Normal, Qt::AlignHCenter | Qt::AlignTop,
                                        "DejaVu Sans Mono"};

void drawModules(QPainter &painter, const QByteArray &modules, QRectF area)
{
    painter.setRenderHint(QPainter::Antialiasing, false);
    const double step = area.width() / modules.size();
    for (int i = 0; i < modules.size(); ++i) {
        if (modules.at(i) == '1')
            painter.fillRect(QRectF(area.x() + i * step, area.y(), step, area.height()), Qt::black);
    }
}

QImage drawBarSheet(double pixelsPerMm, const QByteArray &modules, const QString &text)
{
    SheetPainter sheet({180, 120}, pixelsPerMm, kPaper);
    sheet.text({15, 14, 150, 12}, QStringLiteral("Archive box label"), {7, QFont::Bold});
    drawModules(sheet.painter(), modules, {35, 40, 110, 46});
    sheet.text(kCaption, text, kCaptionStyle);
    return sheet.finish();
}

} // namespace

QString eanSheetText()
{
    // Numbers that begin with 20 are kept for use inside a house.
    return eanWithCheckDigit(QStringLiteral("200417000028"));
}

QString code128SheetText()
{
    return QStringLiteral("BOX-0417-A");
}

QImage drawEanSheet(double pixelsPerMm)
{
    return drawBarSheet(pixelsPerMm, eanModules(eanSheetText()), eanSheetText());
}

QImage drawCode128Sheet(double pixelsPerMm)
{
    return drawBarSheet(pixelsPerMm, code128Modules(code128SheetText().toLatin1()),
                        code128SheetText());
}

QImage drawQrSheet(double pixelsPerMm)
{
    constexpr double kModuleMm = 1.8;
    SheetPainter sheet({180, 120}, pixelsPerMm, kPaper);
    sheet.text({15, 10, 150, 12}, QStringLiteral("Sheet record"), {7, QFont::Bold});
    const QStringList rows = qrModules();
    for (int y = 0; y < rows.size(); ++y)
        drawModules(sheet.painter(), QByteArray(rows[y].toLatin1()).replace('#', '1'),
                    {64, 28 + kModuleMm * y, kModuleMm * rows[y].size(), kModuleMm + 0.02});
    sheet.text(kCaption, qrText(),
               {4, QFont::Normal, kCaptionStyle.alignment, kCaptionStyle.family});
    return sheet.finish();
}
