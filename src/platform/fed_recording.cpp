#include "platform/fed_recording.h"

#include <QStringList>

namespace {

// A sound device's times are those of the wall clock; counted from the recording's start they fit
// the pictures'. Pieces of 50 ms (48 kHz, two channels of 16 bits) instead of up to two seconds.
QStringList soundInput(const RecordRequest &request, const SoundInput &sound)
{
    const QString start = QStringLiteral("%1.%2")
                              .arg(request.startUs / 1000000)
                              .arg(request.startUs % 1000000, 6, 10, QLatin1Char('0'));
    QStringList parts{QStringLiteral("-probesize 32 -analyzeduration 1 -thread_queue_size 512 ") +
                      QStringLiteral("-seek_timestamp 1 -itsoffset -") + start};
    if (sound.format == QLatin1String("pulse"))
        parts << QStringLiteral("-fragment_size 9600");
    return parts << QStringLiteral("-f") << sound.format << QStringLiteral("-i")
                 << quotedArgument(sound.device);
}

// A microphone that begins late, or goes, leaves silence: the pictures alone decide the length.
QString soundOutput(const SoundInput &sound, bool isAvi)
{
    const QString source =
        sound.format == QLatin1String("lavfi")
            // As a filter and not as an input of its own the sound is made up to the picture's
            // time: the two start and end together without a clock.
            ? QStringLiteral("-filter_complex %1[mic] -map 0:v -map [mic]").arg(sound.device)
            : QStringLiteral("-map 0:v -map 1:a -af aresample=async=1000:first_pts=0,apad");
    return source + QStringLiteral(" -shortest -b:a 256K -c:a ") +
           (isAvi ? QStringLiteral("libmp3lame") : QStringLiteral("aac"));
}

// Pictures of another size, after a change of mode or camera, are fitted into those of the first.
// Players expect the video range.
QString pictureFilter(const RecordRequest &request)
{
    QStringList filters;
    const QSize even(request.size.width() & ~1, request.size.height() & ~1);
    const QString range = QStringLiteral("out_range=tv:flags=fast_bilinear,format=yuv420p");
    if (even.isEmpty())
        filters << QStringLiteral("scale=") + range;
    else
        filters << QStringLiteral("scale=%1:%2:force_original_aspect_ratio=decrease:%3,"
                                  "pad=%1:%2:-1:-1,setsar=1")
                       .arg(even.width())
                       .arg(even.height())
                       .arg(range);
    if (request.angle == 90)
        filters << QStringLiteral("transpose=clock");
    else if (request.angle == 180)
        filters << QStringLiteral("hflip,vflip");
    else if (request.angle == 270)
        filters << QStringLiteral("transpose=cclock");
    return filters.join(QLatin1Char(','));
}

} // namespace

QString fedRecordCommand(const RecordRequest &request, const SoundInput &sound)
{
    const bool isAvi = request.target.endsWith(QLatin1String(".avi"), Qt::CaseInsensitive);
    QStringList parts{quotedArgument(request.ffmpeg), QStringLiteral("-hide_banner -y"),
                      QStringLiteral("-fpsprobesize 0 -probesize 32M -seek_timestamp 1"),
                      QStringLiteral("-f nut -i pipe:0")};
    if (!sound.format.isEmpty()) {
        if (sound.format != QLatin1String("lavfi"))
            parts << soundInput(request, sound);
        parts << soundOutput(sound, isAvi);
    }
    parts << QStringLiteral("-vf ") + pictureFilter(request)
          << QStringLiteral("-c:v libx264 -preset ultrafast -tune zerolatency")
          << QStringLiteral("-crf 23 -maxrate 40000K -bufsize 40000K")
          << QStringLiteral("-force_key_frames expr:gte(t,n_forced) -flush_packets 1");
    if (isAvi) // has no time stamps: a steady rate, gaps filled with the frame before
        parts << QStringLiteral("-fps_mode cfr -r ") + request.rate;
    else
        parts << QStringLiteral("-fps_mode vfr -enc_time_base 1:90000")
              << QStringLiteral("-movflags +frag_keyframe+empty_moov+default_base_moof");
    parts << quotedArgument(request.target);
    return parts.join(QLatin1Char(' '));
}

SoundInput requestedSound(const Platform &platform, const RecordRequest &request)
{
    return request.audioDevice.isEmpty() ? SoundInput()
                                         : platform.soundInput(request.audioDevice.toInt());
}
