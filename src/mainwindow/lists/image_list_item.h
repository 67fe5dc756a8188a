#pragma once

#include "mainwindow/lists/image_list.h"
#include "mainwindow/lists/image_list_files.h"
#include "mainwindow/lists/thumbnail_loader.h"

/// An entry; its icon is the thumbnail, as far as that is known.
class ImageListItem : public QListWidgetItem
{
public:
    ImageListItem(ThumbnailLoader *thumbnails, const QString &path, EntryOrigin origin)
        : QListWidgetItem(nullptr, UserType)
        , m_thumbnails(thumbnails)
    {
        setData(ImageListWidget::PathRole, path);
        setData(ImageListWidget::OriginRole, int(origin));
        setToolTip(path);
        setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled);
    }

    QVariant data(int role) const override
    {
        if (role != Qt::DecorationRole)
            return QListWidgetItem::data(role);
        const QString path = QListWidgetItem::data(ImageListWidget::PathRole).toString();
        const Thumbnail *thumbnail = m_thumbnails->thumbnail(path);
        return thumbnail && !thumbnail->pixmap.isNull() ? QIcon(thumbnail->pixmap)
                                                        : fileKindIcon(fileKind(path));
    }

private:
    ThumbnailLoader *m_thumbnails;
};
