#pragma once

#include <QStringList>

/// What ffprobe says of `entries` ("stream=duration") of the media file at `path`: one value an
/// element, stream by stream. Counts the packets, so that nb_read_packets can be asked for.
QStringList probeMedia(const QString &path, const QString &entries);

/// Length of the media file in seconds; 0 when it has none.
double mediaDuration(const QString &path);
