#include "platform/platform.h"

#include <QCoreApplication>

#include <cstdio>

// pictor-probe N: prints the modes of system camera N as ffmpeg's avfoundation input lists them,
// so that one parser serves every system. The whole list goes out in one write, because its
// reader takes each chunk for a list of its own.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    bool isNumber = false;
    const int index = argc == 2 ? QByteArray(argv[1]).toInt(&isNumber) : -1;
    if (!isNumber) {
        std::fputs("usage: pictor-probe CAMERA-INDEX\n", stderr);
        return 2;
    }
    const QList<CameraMode> modes = platform().modes(index);
    if (modes.isEmpty()) {
        std::fprintf(stderr, "pictor-probe: there is no camera %d\n", index);
        return 1;
    }
    QByteArray text = "[avfoundation @ 0x1] Supported modes:\n";
    for (const CameraMode &mode : modes) {
        const QByteArray rate = QByteArray::number(mode.rate, 'f', 6);
        text += "[avfoundation @ 0x1] \t" + QByteArray::number(mode.size.width()) + 'x' +
                QByteArray::number(mode.size.height()) + "@[" + rate + ' ' + rate + "]fps\n";
    }
    std::setvbuf(stdout, nullptr, _IOFBF, static_cast<size_t>(text.size()) + 1);
    std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
    return std::fflush(stdout) == 0 ? 0 : 1;
}
