#include "mainwindow/lists/image_list_delegate.h"

#include "mainwindow/lists/image_list.h"
#include "mainwindow/lists/image_list_files.h"
#include "mainwindow/lists/thumbnail_loader.h"
#include "mainwindow/look/themed_icon.h"
#include "mainwindow/look/window_text.h"

#include <QFileInfo>
#include <QPainter>

namespace {

constexpr int kMargin = 6;
constexpr int kGap = 4;
constexpr int kNumberWidth = 26;
constexpr int kIconSide = 40;
constexpr double kRounding = 6;
constexpr double kNameScale = 0.86;
constexpr QColor kDoubtGround(255, 193, 7); // amber, as of a warning

QFont smaller(QFont font)
{
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * kNameScale);
    else
        font.setPixelSize(int(font.pixelSize() * kNameScale));
    return font;
}

QColor withAlpha(QColor colour, int alpha)
{
    colour.setAlpha(alpha);
    return colour;
}

} // namespace

ImageListDelegate::ImageListDelegate(ThumbnailLoader *thumbnails, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_thumbnails(thumbnails)
{
}

QSize ImageListDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {kThumbnail.width() + kNumberWidth + 2 * kMargin,
            kThumbnail.height() + option.fontMetrics.height() + kGap + 2 * kMargin + 2};
}

void ImageListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QPalette &palette = option.palette;
    const bool isSelected = option.state & QStyle::State_Selected;
    const bool isHovered = option.state & QStyle::State_MouseOver;
    const QRectF card = QRectF(option.rect).adjusted(2, 1, -2, -1);
    if (isSelected || isHovered) {
        painter->setPen(isSelected ? QPen(palette.color(QPalette::Highlight), 1.5) : Qt::NoPen);
        painter->setBrush(withAlpha(palette.color(QPalette::Highlight), isSelected ? 60 : 24));
        painter->drawRoundedRect(card, kRounding, kRounding);
    }

    const QRect content = option.rect.adjusted(kMargin, kMargin, -kMargin, -kMargin);
    // A name that is a time stamp fits the list's width in slightly smaller letters.
    const QFont font = smaller(option.font);
    const QFontMetrics metrics(font);
    const int textHeight = option.fontMetrics.height();
    const QRect number(content.left(), content.top(), kNumberWidth - kGap, textHeight);
    painter->setFont(font);
    painter->setPen(withAlpha(palette.color(QPalette::Text), 150));
    painter->drawText(number, Qt::AlignRight | Qt::AlignVCenter, QString::number(index.row() + 1));

    const int rest = content.width() - kNumberWidth;
    const QRect room(content.left() + kNumberWidth + (rest - kThumbnail.width()) / 2, content.top(),
                     kThumbnail.width(), kThumbnail.height());
    if (index.data(ImageListWidget::UnderWayRole).toInt() > 0)
        drawUnderWay(painter, room, palette);
    else
        drawPicture(painter, room, index.data(ImageListWidget::PathRole).toString(), palette);
    if (index.data(ImageListWidget::DoubtfulRole).toBool())
        drawDoubt(painter, room);

    const QRect name(content.left(), room.bottom() + kGap, content.width(), textHeight + 2);
    painter->setPen(palette.color(QPalette::Text));
    painter->drawText(
        name, Qt::AlignHCenter | Qt::AlignVCenter,
        metrics.elidedText(index.data(Qt::DisplayRole).toString(), Qt::ElideMiddle, name.width()));
    painter->restore();
}

// A strip along the lower edge of the thumbnail.
void ImageListDelegate::drawDoubt(QPainter *painter, const QRect &room) const
{
    const QRect strip = room.adjusted(0, room.height() - painter->fontMetrics().height() - 2, 0, 0);
    painter->fillRect(strip, kDoubtGround);
    painter->setPen(Qt::black);
    painter->drawText(strip, Qt::AlignCenter, WindowText::tr("A hand in it?"));
}

void ImageListDelegate::drawUnderWay(QPainter *painter, const QRect &room,
                                     const QPalette &palette) const
{
    painter->setPen(withAlpha(palette.color(QPalette::Text), 50));
    painter->setBrush(withAlpha(palette.color(QPalette::Text), 12));
    painter->drawRoundedRect(QRectF(room).adjusted(0.5, 0.5, -0.5, -0.5), kRounding, kRounding);
    painter->setPen(withAlpha(palette.color(QPalette::Text), 150));
    painter->drawText(room, Qt::AlignCenter, WindowText::tr("Being written..."));
}

void ImageListDelegate::drawPicture(QPainter *painter, const QRect &room, const QString &path,
                                    const QPalette &palette) const
{
    const QColor line = withAlpha(palette.color(QPalette::Text), 50);
    const Thumbnail *thumbnail = m_thumbnails->thumbnail(path);
    if (thumbnail && !thumbnail->pixmap.isNull()) {
        const double ratio = painter->device()->devicePixelRatioF();
        QRectF picture(QPointF(), QSizeF(thumbnail->pixmap.size()) / ratio);
        picture.moveCenter(QRectF(room).center());
        picture.moveTopLeft(picture.topLeft().toPoint());
        painter->drawPixmap(picture, thumbnail->pixmap, QRectF(thumbnail->pixmap.rect()));
        painter->setBrush(Qt::NoBrush);
        painter->setPen(line);
        painter->drawRect(picture.adjusted(-0.5, -0.5, 0.5, 0.5));
        return;
    }
    painter->setPen(line);
    painter->setBrush(withAlpha(palette.color(QPalette::Text), 12));
    painter->drawRoundedRect(QRectF(room).adjusted(0.5, 0.5, -0.5, -0.5), kRounding, kRounding);
    if (!thumbnail && fileKind(path) == FileKind::Picture)
        return; // on its way
    const bool isLostPage = !QFileInfo(path).isAbsolute();
    const bool isMissing = isLostPage || (thumbnail && thumbnail->isMissing());
    QRect icon(0, 0, kIconSide, kIconSide);
    icon.moveCenter(room.center() - QPoint(0, isMissing ? 10 : 0));
    const QIcon drawn =
        isMissing ? themedIcon(QStringLiteral("file_missing")) : fileKindIcon(fileKind(path));
    drawn.paint(painter, icon);
    if (isMissing) {
        painter->setPen(palette.color(QPalette::Text));
        painter->drawText(room.adjusted(0, 0, 0, -12), Qt::AlignHCenter | Qt::AlignBottom,
                          isLostPage ? WindowText::tr("Not captured")
                                     : WindowText::tr("File missing"));
    }
}
