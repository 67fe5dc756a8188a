#include "mainwindow/lists/image_list_files.h"

#include "mainwindow/look/themed_icon.h"

#include <QFileInfo>
#include <QStringList>

FileKind fileKind(const QString &path)
{
    static const QStringList pictures{"jpg",  "jpeg", "bmp", "png", "tif",
                                      "tiff", "webp", "pbm", "pgm", "ppm"};
    static const QStringList videos{"mov", "avi", "mp4", "wmv"};
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (pictures.contains(suffix))
        return FileKind::Picture;
    if (videos.contains(suffix))
        return FileKind::Video;
    return suffix == QLatin1String("pdf") ? FileKind::Pdf : FileKind::Other;
}

QIcon fileKindIcon(FileKind kind)
{
    switch (kind) {
    case FileKind::Picture:
        return themedIcon(QStringLiteral("image"));
    case FileKind::Video:
        return themedIcon(QStringLiteral("file_video"));
    case FileKind::Pdf:
        return themedIcon(QStringLiteral("file_pdf"));
    default:
        return themedIcon(QStringLiteral("file_plain"));
    }
}
