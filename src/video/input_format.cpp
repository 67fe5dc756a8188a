#include "video/input_format.h"

#include <QLibrary>

#include <mutex>

extern "C" {
#include <libavdevice/avdevice.h>
#include <libavformat/avformat.h>
}

const AVInputFormat *inputFormat(const char *name)
{
    // Damage on the way from the camera is routine; what ends a stream is logged by us.
    static std::once_flag quiet;
    std::call_once(quiet, [] { av_log_set_level(AV_LOG_FATAL); });
    if (const AVInputFormat *known = av_find_input_format(name))
        return known;
    static std::once_flag devices;
    std::call_once(devices, [] {
#ifdef Q_OS_LINUX
        // Loaded when a device is asked for: it brings seventy libraries along, which every start
        // of the program would wait for.
        const auto registerAll = reinterpret_cast<void (*)()>(QLibrary::resolve(
            QStringLiteral("avdevice"), LIBAVDEVICE_VERSION_MAJOR, "avdevice_register_all"));
        if (registerAll)
            registerAll();
#else
        avdevice_register_all();
#endif
    });
    return av_find_input_format(name);
}
