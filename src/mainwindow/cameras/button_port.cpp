#include "mainwindow/cameras/button_port.h"

#include "app/log.h"
#include "app/state.h"
#include "platform/platform.h"

#include <QDebug>
#include <QSerialPort>

#include <memory>

QSerialPort *serial = nullptr;

namespace {

void logPort(const SerialPortEntry &port)
{
    qDebug() << "Name:" << port.name;
    qDebug() << "Description:" << port.description;
    qDebug() << "Manufacturer: " << port.manufacturer;
    qDebug() << "Serial Number: " << port.serialNumber;
    qDebug() << "System Location: " << port.location;
}

// The search runs every two seconds while no port is open; only news are worth a line.
void logNewPorts(const QList<SerialPortEntry> &ports)
{
    static QStringList known;
    QStringList names;
    for (const SerialPortEntry &port : ports) {
        names.append(port.name);
        if (!known.contains(port.name))
            logPort(port);
    }
    known = names;
}

// A port that another program holds or that the user may not open is tried again every two
// seconds; one line for each reason is enough.
void logRefusal(const SerialPortEntry &entry, const QString &reason)
{
    static QString told;
    const QString line =
        QStringLiteral("the button port %1 does not open: %2").arg(entry.location, reason);
    if (line != told)
        logLine(line);
    told = line;
}

// A port that does not open leaves the one in use alone.
void openPort(const SerialPortEntry &entry, const std::function<void()> &onReadyRead)
{
    qDebug()
        << "*********************************tty.wchusbserial141410***************************";
    auto port = std::make_unique<QSerialPort>();
    port->setPortName(entry.location);
    if (!port->open(QIODevice::ReadWrite)) {
        logRefusal(entry, port->errorString());
        return;
    }
    port->setBaudRate(QSerialPort::Baud9600, QSerialPort::AllDirections);
    port->setParity(QSerialPort::NoParity);
    port->setDataBits(QSerialPort::Data8);
    port->setStopBits(QSerialPort::OneStop);
    port->setFlowControl(QSerialPort::NoFlowControl);
    closeButtonPort();
    serial = port.release();
    QObject::connect(serial, &QSerialPort::readyRead, onReadyRead);
    // An unplugged adapter reports its loss without end unless it is closed.
    QObject::connect(serial, &QSerialPort::errorOccurred, serial,
                     [opened = serial](QSerialPort::SerialPortError error) {
                         if (error != QSerialPort::NoError && opened->isOpen())
                             opened->close();
                     });
}

} // namespace

bool openButtonPort(const std::function<void()> &onReadyRead)
{
    const QList<SerialPortEntry> ports = platform().serialPorts();
    logNewPorts(ports);
    for (const SerialPortEntry &port : ports) {
        if (platform().isButtonAdapter(port))
            openPort(port, onReadyRead);
    }
    return isButtonPortOpen();
}

bool isButtonPortOpen()
{
    return serial && serial->isOpen();
}

QByteArray readButtonPort()
{
    return isButtonPortOpen() ? serial->readAll() : QByteArray();
}

void closeButtonPort()
{
    if (!serial)
        return;
    if (serial->isOpen()) {
        serial->clear(QSerialPort::AllDirections);
        serial->close();
    }
    serial->deleteLater();
    serial = nullptr;
}
