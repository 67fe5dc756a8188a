#pragma once

#include <QImage>
#include <QString>

/// The picture file at `path`, reduced while it is decoded, in the middle of a transparent picture
/// of size `size`; nothing but transparent when the file cannot be read. Any thread.
QImage pageThumbnail(const QString &path, QSize size);
