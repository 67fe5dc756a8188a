#include "stand/stand.h"

#include "stand/button_line.h"

#include <QLocalServer>
#include <QLocalSocket>

#include <algorithm>

namespace {

const QString kOk = QStringLiteral("ok");

QString failure(const QString &reason)
{
    return QStringLiteral("error: ") + reason;
}

StandDevice buttonsDevice(const QString &folder)
{
    StandDevice device;
    device.kind = StandDevice::Buttons;
    device.name = QStringLiteral("buttons");
    device.id = ButtonLine::portName();
    device.description = QStringLiteral("Buttons of the virtual stand");
    device.location = folder + QLatin1Char('/') + ButtonLine::portName();
    return device;
}

// It sits in the main camera and comes and goes with it.
StandDevice microphoneDevice()
{
    StandDevice device;
    device.kind = StandDevice::Microphone;
    device.name = QStringLiteral("microphone");
    device.description = QStringLiteral("USB 2.0 Camera");
    return device;
}

bool hasMicrophone(const QString &device)
{
    return device == QLatin1String("main");
}

} // namespace

Stand::Stand(const StandOptions &options)
    : m_fault(m_folder.fault())
{
    if (m_fault.isEmpty())
        m_fault = setUp(options);
}

// Descriptors go first: nobody is to find a device whose sockets are closed already.
Stand::~Stand()
{
    if (!m_folder.fault().isEmpty())
        return;
    removeStandDevice(m_folder.path(), QStringLiteral("buttons"));
    removeStandDevice(m_folder.path(), microphoneDevice().name);
    for (const CameraPort &port : m_cameras)
        removeStandDevice(m_folder.path(), port.device.name);
}

QString Stand::setUp(const StandOptions &options)
{
    QString fault;
    const QStringList names =
        options.scenes.isEmpty() ? QStringList{QStringLiteral("page")} : options.scenes;
    for (const QString &name : names) {
        const std::vector<Scene> found = findScenes(name, &fault);
        if (found.empty())
            return fault;
        m_scenes.insert(m_scenes.end(), found.begin(), found.end());
    }
    addCamera(QStringLiteral("main"), options.id, QStringLiteral("Virtual document camera"),
              options.modes);
    if (options.hasAssist) {
        addCamera(QStringLiteral("assist"), QStringLiteral("120900a1"),
                  QStringLiteral("Virtual assist camera"), options.modes);
        const QString name =
            options.assistScene.isEmpty() ? QStringLiteral("postcard") : options.assistScene;
        const std::vector<Scene> found = findScenes(name, &fault);
        if (found.empty())
            return fault;
        m_cameras.back().camera->show(found.front());
    }
    layOnDesk(m_scenes.front());
    if (!listenForCommands())
        return QStringLiteral("the control socket cannot be made in %1").arg(m_folder.path());
    for (const QString &device : devices()) {
        const QString answer = plug(device);
        if (answer != kOk)
            return answer;
    }
    return {};
}

void Stand::addCamera(const QString &name, const QString &id, const QString &description,
                      const std::vector<CameraMode> &modes)
{
    CameraPort port;
    port.device.name = name;
    port.device.order = static_cast<int>(m_cameras.size());
    port.device.id = QStringLiteral("stand-%1-0x").arg(name) + id;
    port.device.description = description;
    for (const CameraMode &mode : modes)
        port.device.modes.append({mode, QStringLiteral("%1/%2-%3x%4-%5.sock")
                                            .arg(m_folder.path(), name)
                                            .arg(mode.size.width())
                                            .arg(mode.size.height())
                                            .arg(mode.rate)});
    port.camera = std::make_unique<StandCamera>(modes);
    m_cameras.push_back(std::move(port));
}

Stand::CameraPort *Stand::findCamera(const QString &name)
{
    const auto port = std::find_if(m_cameras.begin(), m_cameras.end(),
                                   [&](const CameraPort &p) { return p.device.name == name; });
    return port == m_cameras.end() ? nullptr : &*port;
}

bool Stand::listenForCommands()
{
    m_control = std::make_unique<QLocalServer>();
    connect(m_control.get(), &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = m_control->nextPendingConnection()) {
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
                while (socket->canReadLine())
                    socket->write(command(QString::fromUtf8(socket->readLine())).toUtf8() + '\n');
            });
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    return m_control->listen(standControlSocket(m_folder.path()));
}

QStringList Stand::devices() const
{
    QStringList names;
    for (const CameraPort &port : m_cameras)
        names << port.device.name;
    return names << QStringLiteral("buttons");
}

bool Stand::isPlugged(const QString &device) const
{
    if (device == QLatin1String("buttons"))
        return m_buttons != nullptr;
    return std::any_of(m_cameras.begin(), m_cameras.end(), [&](const CameraPort &port) {
        return port.device.name == device && port.server;
    });
}

QString Stand::plug(const QString &device)
{
    const bool isButtons = device == QLatin1String("buttons");
    CameraPort *port = findCamera(device);
    if (!port && !isButtons)
        return failure(QStringLiteral("there is no device %1").arg(device));
    if (isPlugged(device))
        return kOk;
    if (isButtons) {
        const StandDevice descriptor = buttonsDevice(m_folder.path());
        m_buttons = std::make_unique<ButtonLine>(descriptor.location);
        if (!m_buttons->isOpen() || !writeStandDevice(m_folder.path(), descriptor)) {
            m_buttons.reset();
            return failure(QStringLiteral("the button line cannot be made"));
        }
    } else {
        std::vector<StreamServer::Endpoint> endpoints;
        for (const StandMode &mode : port->device.modes)
            endpoints.push_back({mode.socket.toStdString(), mode.mode.rate});
        port->server = std::make_unique<StreamServer>(endpoints, *port->camera);
        if (!port->server->isListening() || !writeStandDevice(m_folder.path(), port->device)) {
            port->server.reset();
            return failure(QStringLiteral("the streams of %1 cannot be made").arg(device));
        }
        if (hasMicrophone(device))
            writeStandDevice(m_folder.path(), microphoneDevice());
    }
    emit plugsChanged();
    return kOk;
}

QString Stand::unplug(const QString &device)
{
    CameraPort *port = findCamera(device);
    if (!port && device != QLatin1String("buttons"))
        return failure(QStringLiteral("there is no device %1").arg(device));
    removeStandDevice(m_folder.path(), device);
    if (hasMicrophone(device))
        removeStandDevice(m_folder.path(), microphoneDevice().name);
    if (port)
        port->server.reset();
    else
        m_buttons.reset();
    emit plugsChanged();
    return kOk;
}
