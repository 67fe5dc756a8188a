#include "stand/sheet_painter.h"

#include <QFont>
#include <QStringList>

namespace {

const QColor kInk(34, 34, 40);

const QStringList &sentences()
{
    static const QStringList list{
        QStringLiteral("The archive keeps every letter in a numbered box."),
        QStringLiteral("Each box has a card that names its year, sender and shelf."),
        QStringLiteral("Sheets are laid flat under the lamp, one at a time."),
        QStringLiteral("Check the edges and straighten folded corners before the picture is "
                       "taken."),
        QStringLiteral("Readers may ask for a copy by writing its number on the slip."),
        QStringLiteral("Copies are ready within one day when nothing is missing."),
        QStringLiteral("Two lost pages were found between the covers after the move."),
        QStringLiteral("Light falls from the left, so that no hand throws a shadow on the text."),
        QStringLiteral("Old ink fades in the sun; close the blinds before noon."),
        QStringLiteral("A page that curls is held down with a strip of clear glass."),
        QStringLiteral("Never press a bound volume open further than it goes by itself."),
        QStringLiteral("Maps larger than the desk are taken in four parts."),
        QStringLiteral("Write the date in full: day, month and year."),
        QStringLiteral("When in doubt, take the picture twice and keep the better one."),
        QStringLiteral("The reading room opens at nine and closes at half past five."),
        QStringLiteral("Pencils only, please; pens stay at the door.")};
    return list;
}

} // namespace

SheetPainter::SheetPainter(QSizeF sizeMm, double pixelsPerMm, QColor paper)
    : m_image((sizeMm * pixelsPerMm).toSize().expandedTo({1, 1}), QImage::Format_RGB32)
{
    m_image.fill(paper);
    m_painter.begin(&m_image);
    m_painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    m_painter.scale(pixelsPerMm, pixelsPerMm);
    m_painter.setPen(kInk);
}

void SheetPainter::text(QRectF box, const QString &text, const Style &style)
{
    // Laid out large and scaled down: a font four units high would be set with whole-unit steps.
    constexpr double kFine = 20;
    QFont font(QLatin1String(style.family));
    font.setPixelSize(qRound(style.heightMm * kFine));
    font.setWeight(style.weight);
    font.setHintingPreference(QFont::PreferNoHinting);
    m_painter.save();
    m_painter.scale(1 / kFine, 1 / kFine);
    m_painter.setFont(font);
    m_painter.drawText(QRectF(box.topLeft() * kFine, box.size() * kFine),
                       int(style.alignment) | Qt::TextWordWrap, text);
    m_painter.restore();
}

QImage SheetPainter::finish()
{
    m_painter.end();
    return m_image;
}

QString prose(QRandomGenerator &random, int count)
{
    QStringList parts;
    for (int i = 0; i < count; ++i)
        parts << sentences().at(random.bounded(sentences().size()));
    return parts.join(QLatin1Char(' '));
}

QString proseWord(QRandomGenerator &random)
{
    static const QStringList words{
        QStringLiteral("Harbour"), QStringLiteral("Mill Lane"), QStringLiteral("North office"),
        QStringLiteral("Parish"),  QStringLiteral("Surveyor"),  QStringLiteral("Town hall"),
        QStringLiteral("School"),  QStringLiteral("Orchard"),   QStringLiteral("Ferry")};
    return words.at(random.bounded(words.size()));
}
