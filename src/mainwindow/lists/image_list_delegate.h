#pragma once

#include <QStyledItemDelegate>

class ThumbnailLoader;

/// Draws an entry of an image list: running number, thumbnail or file icon, name.
class ImageListDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr QSize kThumbnail{136, 102}; ///< room for the picture

    ImageListDelegate(ThumbnailLoader *thumbnails, QObject *parent);

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

private:
    void drawDoubt(QPainter *painter, const QRect &room) const;
    void drawUnderWay(QPainter *painter, const QRect &room, const QPalette &palette) const;
    void drawPicture(QPainter *painter, const QRect &room, const QString &path,
                     const QPalette &palette) const;

    ThumbnailLoader *m_thumbnails;
};
