#include "platform/system_sound.h"

#include <QDir>
#include <QFile>
#include <QLibrary>

extern "C" {
#include <libavdevice/avdevice.h>
}

namespace {

const QString kServer = QStringLiteral("pulse");

// Asked for its inputs, the client library would start a server where none runs.
bool isServerThere()
{
    return qEnvironmentVariableIsSet("PULSE_SERVER") ||
           QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/pulse/native"));
}

// Of libavdevice, which is loaded when a device is asked for.
template <typename Function>
Function *deviceFunction(const char *name)
{
    return reinterpret_cast<Function *>(
        QLibrary::resolve(QStringLiteral("avdevice"), LIBAVDEVICE_VERSION_MAJOR, name));
}

QList<SoundInput> serverInputs()
{
    QList<SoundInput> inputs;
    const auto registerAll =
        deviceFunction<decltype(avdevice_register_all)>("avdevice_register_all");
    const auto list =
        deviceFunction<decltype(avdevice_list_input_sources)>("avdevice_list_input_sources");
    const auto release =
        deviceFunction<decltype(avdevice_free_list_devices)>("avdevice_free_list_devices");
    if (!registerAll || !list || !release)
        return inputs;
    registerAll();
    AVDeviceInfoList *devices = nullptr;
    list(nullptr, kServer.toLatin1().constData(), nullptr, &devices);
    for (int i = 0; devices && i < devices->nb_devices; ++i) {
        const AVDeviceInfo &device = *devices->devices[i];
        const QString name = QString::fromUtf8(device.device_name);
        if (name.endsWith(QLatin1String(".monitor")))
            continue; // what an output plays
        inputs.insert(i == devices->default_device ? 0 : inputs.size(),
                      {kServer, name, QString::fromUtf8(device.device_description)});
    }
    release(&devices);
    return inputs;
}

QString firstLine(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readLine()).trimmed()
                                          : QString();
}

// Of a line of the file of cards: " 1 [Camera         ]: USB-Audio - USB 2.0 Camera".
QString cardName(const QString &folder, const QString &id)
{
    QFile file(folder + QStringLiteral("/cards"));
    if (file.open(QIODevice::ReadOnly)) {
        const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            if (line.section(QLatin1Char('['), 1).section(QLatin1Char(']'), 0, 0).trimmed() == id)
                return line.section(QStringLiteral(" - "), 1).trimmed();
        }
    }
    return id;
}

QString lettersOf(const QString &text)
{
    QString letters;
    for (const QChar c : text) {
        if (c.isLetterOrNumber())
            letters += c.toLower();
    }
    return letters;
}

} // namespace

QList<SoundInput> soundCards(const QString &folder)
{
    QList<SoundInput> inputs;
    const QStringList cards =
        QDir(folder).entryList({QStringLiteral("card[0-9]*")}, QDir::Dirs, QDir::Name);
    for (const QString &card : cards) {
        const QDir devices(folder + QLatin1Char('/') + card);
        const QStringList captures =
            devices.entryList({QStringLiteral("pcm*c")}, QDir::Dirs, QDir::Name);
        const QString id = firstLine(devices.filePath(QStringLiteral("id")));
        for (const QString &capture : captures)
            inputs.append({QStringLiteral("alsa"),
                           QStringLiteral("plughw:CARD=%1,DEV=%2")
                               .arg(id, capture.mid(3, capture.size() - 4)),
                           cardName(folder, id)});
    }
    return inputs;
}

QList<SoundInput> systemSoundInputs()
{
    const QList<SoundInput> inputs = isServerThere() ? serverInputs() : QList<SoundInput>();
    return inputs.isEmpty() ? soundCards(QStringLiteral("/proc/asound")) : inputs;
}

int microphoneOfCamera(const QString &camera, const QList<SoundInput> &inputs)
{
    const QString name = lettersOf(camera);
    for (int i = 0; i < inputs.size() && !name.isEmpty(); ++i) {
        if (lettersOf(inputs[i].description).contains(name) ||
            lettersOf(inputs[i].device).contains(name))
            return i;
    }
    return -1;
}
