#pragma once

#include <QProcess>

/// What ffprobe says of `entries` ("stream=duration") of the media file at `path`: one value an
/// element, stream by stream. Counts the packets, so that nb_read_packets can be asked for.
inline QStringList probeMedia(const QString &path, const QString &entries)
{
    QProcess ffprobe;
    ffprobe.start(QStringLiteral("ffprobe"),
                  {"-v", "error", "-count_packets", "-show_entries", entries, "-of",
                   "default=nokey=1:noprint_wrappers=1", path});
    ffprobe.waitForFinished();
    return QString::fromUtf8(ffprobe.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}

/// Length of the media file in seconds; 0 when it has none.
inline double mediaDuration(const QString &path)
{
    return probeMedia(path, QStringLiteral("format=duration")).value(0).toDouble();
}
