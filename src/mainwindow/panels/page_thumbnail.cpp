#include "mainwindow/panels/page_thumbnail.h"

#include <QImageReader>
#include <QPainter>

QImage pageThumbnail(const QString &path, QSize size)
{
    QImageReader reader(path);
    reader.setScaledSize(reader.size().scaled(size, Qt::KeepAspectRatio));
    const QImage page = reader.read();
    QImage thumbnail(size, QImage::Format_ARGB32_Premultiplied);
    thumbnail.fill(Qt::transparent);
    QPainter painter(&thumbnail);
    painter.drawImage((size.width() - page.width()) / 2, (size.height() - page.height()) / 2, page);
    return thumbnail;
}
