#include "platform/stand_recording.h"

#include <QStringList>

namespace {

constexpr QSize kLargest(1920, 1080);

// Microseconds after which a camera that sends nothing counts as gone.
const QString kSilence = QStringLiteral("-rw_timeout 3000000");

qint64 area(const StandMode &mode)
{
    return qint64{mode.mode.size.width()} * mode.mode.size.height();
}

} // namespace

StandMode recordingMode(const QList<StandMode> &modes)
{
    StandMode best, smallest;
    for (const StandMode &mode : modes) {
        const QSize size = mode.mode.size;
        if (smallest.socket.isEmpty() || area(mode) < area(smallest))
            smallest = mode;
        if (size != size.boundedTo(kLargest))
            continue;
        if (best.socket.isEmpty() || area(mode) > area(best) ||
            (area(mode) == area(best) && mode.mode.rate > best.mode.rate))
            best = mode;
    }
    return best.socket.isEmpty() ? smallest : best;
}

QString standRecordCommand(const RecordRequest &request, const QList<StandMode> &modes)
{
    const StandMode mode = recordingMode(modes);
    const bool avi = request.target.endsWith(QLatin1String(".avi"), Qt::CaseInsensitive);

    // Frames may drop: time is when a frame arrived, not how many came before.
    QStringList parts{quotedArgument(request.ffmpeg),
                      QStringLiteral("-hide_banner -y"),
                      QStringLiteral("-use_wallclock_as_timestamps 1 -fpsprobesize 0"),
                      kSilence,
                      QStringLiteral("-f mjpeg -i"),
                      quotedArgument(QStringLiteral("unix:") + mode.socket)};
    if (!request.audioDevice.isEmpty()) {
        // As a filter and not as an input of its own the sound is made up to the picture's time:
        // the two start and end together without a clock.
        parts << QStringLiteral("-filter_complex anoisesrc=color=brown:amplitude=0.02:r=48000[mic]")
              << QStringLiteral("-map 0:v -map [mic] -b:a 128K -shortest")
              << (avi ? QStringLiteral("-c:a libmp3lame") : QStringLiteral("-c:a aac"));
    }
    // Players expect the video range; the camera's pictures fill the full one.
    parts << QStringLiteral("-vf scale=in_range=full:out_range=tv:flags=fast_bilinear,"
                            "format=yuv420p")
          << QStringLiteral("-c:v libx264 -preset ultrafast -tune zerolatency -crf 23")
          << QStringLiteral("-force_key_frames expr:gte(t,n_forced) -flush_packets 1");
    if (avi) // has no time stamps: a steady rate, gaps filled with the frame before
        parts << QStringLiteral("-fps_mode cfr -r %1").arg(mode.mode.rate);
    else
        parts << QStringLiteral("-fps_mode vfr -enc_time_base 1:90000")
              << QStringLiteral("-movflags +frag_keyframe+empty_moov+default_base_moof");
    parts << quotedArgument(request.target);
    return parts.join(QLatin1Char(' '));
}
