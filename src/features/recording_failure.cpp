#include "features/recording_failure.h"

RecordingFailure::Cause failureCause(const QByteArray &line)
{
    if (line.contains("No space left on device") || line.contains("File too large") ||
        line.contains("Disk quota exceeded"))
        return RecordingFailure::DiskFull;
    if (line.contains("Invalid data found"))
        return RecordingFailure::DamagedPicture;
    return RecordingFailure::Unknown;
}

bool isAboutOnePicture(const QByteArray &line)
{
    return line.startsWith("[mjpeg @") || line.startsWith("Error while decoding stream");
}
