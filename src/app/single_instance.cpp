#include "app/single_instance.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QSysInfo>
#include <QThread>

namespace {

constexpr int kAnswerMs = 1000;
constexpr int kPatienceMs = 5000; // for one that is just starting: two clicks start two programs
constexpr int kRetryMs = 50;
constexpr int kLifeMs = 5 * 60 * 1000;
constexpr int kForgottenSeconds = 60 * 60; // clocks of two machines differ

// Short: a socket's path holds some hundred bytes.
QString socketFor(const QString &settings)
{
    const QByteArray hash =
        QCryptographicHash::hash(settings.toUtf8(), QCryptographicHash::Md5).toHex().left(16);
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QStringLiteral("/pictor-window-") + QString::fromLatin1(hash);
}

} // namespace

SingleInstance::SingleInstance(const QString &settings)
    : m_socket(socketFor(settings))
    , m_lockPath(QFileInfo(settings).path() + QStringLiteral("/.pictor.lock"))
    , m_lock(m_lockPath)
{
    QObject::connect(&m_life, &QTimer::timeout, &m_life, [this] { showLife(); });
    m_lock.setStaleLockTime(0); // the process tells, not the time
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] {
        while (QLocalSocket *socket = m_server.nextPendingConnection()) {
            socket->write("1");
            socket->flush();
            QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            if (m_wake)
                m_wake();
        }
    });
}

SingleInstance::Role SingleInstance::take()
{
    QElapsedTimer clock;
    clock.start();
    Role role = tryToTake();
    while (role == Role::NotAnswering && clock.elapsed() < kPatienceMs) {
        QThread::msleep(kRetryMs);
        role = tryToTake();
    }
    return role;
}

SingleInstance::Role SingleInstance::tryToTake()
{
    if (m_lock.tryLock(0) || m_lock.error() != QLockFile::LockFailedError) {
        listen();
        return Role::First;
    }
    qint64 process = 0;
    QString machine, program;
    m_lock.getLockInfo(&process, &machine, &program);
    if (!machine.isEmpty() && machine != QSysInfo::machineHostName()) {
        if (isForgotten() && QFile::remove(m_lockPath))
            return tryToTake();
        m_otherMachine = machine;
        return Role::Elsewhere;
    }
    return wakeOther() ? Role::HandedOver : Role::NotAnswering;
}

void SingleInstance::listen()
{
    QLocalServer::removeServer(m_socket); // of a killed one, as the lock is ours
    m_server.listen(m_socket);
    m_life.start(kLifeMs);
}

bool SingleInstance::isForgotten() const
{
    return QFileInfo(m_lockPath).lastModified().secsTo(QDateTime::currentDateTime()) >
           kForgottenSeconds;
}

void SingleInstance::showLife() const
{
    QFile lock(m_lockPath);
    if (lock.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
        lock.setFileTime(QDateTime::currentDateTime(), QFileDevice::FileModificationTime);
}

bool SingleInstance::wakeOther() const
{
    QLocalSocket socket;
    socket.connectToServer(m_socket);
    return socket.waitForConnected(kAnswerMs) && socket.waitForReadyRead(kAnswerMs);
}
