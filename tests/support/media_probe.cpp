#include "support/media_probe.h"

#include <QProcess>

QStringList probeMedia(const QString &path, const QString &entries)
{
    QProcess ffprobe;
    ffprobe.start(QStringLiteral("ffprobe"),
                  {"-v", "error", "-count_packets", "-show_entries", entries, "-of",
                   "default=nokey=1:noprint_wrappers=1", path});
    ffprobe.waitForFinished();
    return QString::fromUtf8(ffprobe.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}

double mediaDuration(const QString &path)
{
    return probeMedia(path, QStringLiteral("format=duration")).value(0).toDouble();
}
