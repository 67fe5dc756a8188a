#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

class QSocketNotifier;

/// The stand's hardware buttons: a pseudo-terminal that sends what the buttons' USB adapter
/// would. The device disappears with the object, as a pulled plug does. GUI thread.
class ButtonLine : public QObject
{
    Q_OBJECT

public:
    /// Listed name of the serial port.
    static QString portName() { return QStringLiteral("tty.usbserial-stand"); }

    /// Names of the buttons, in the order of a stand's keypad.
    static QStringList buttonNames();

    /// The seven bytes of a button; empty for an unknown name.
    static QByteArray buttonFrame(const QString &name);

    /// `link` is the path at which the device appears.
    explicit ButtonLine(const QString &link);
    ~ButtonLine() override;

    bool isOpen() const { return m_master >= 0; }

    /// True while some program has the port open.
    bool hasListener() const;

    /// Queues `bytes` for the line. What nobody listens to is lost, as on a real line.
    void send(const QByteArray &bytes);

private:
    void writeSome();

    QString m_link;
    int m_master = -1;
    QByteArray m_waiting;
    std::unique_ptr<QSocketNotifier> m_writable;
};
