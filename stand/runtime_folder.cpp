#include "stand/runtime_folder.h"

#include "platform/stand_descriptor.h"

#include <QDir>
#include <QFile>
#include <QThread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

// Longest name of a file in the folder, with its slash.
constexpr int kLongestName = 40;

// Whoever lists devices holds the lock for an instant.
bool lockFile(int file)
{
    for (int i = 0; i < 20; ++i) {
        if (::flock(file, LOCK_EX | LOCK_NB) == 0)
            return true;
        QThread::msleep(10);
    }
    return false;
}

} // namespace

RuntimeFolder::RuntimeFolder()
    : m_path(standFolder())
    , m_fault(take())
{
}

RuntimeFolder::~RuntimeFolder()
{
    if (m_lock < 0)
        return;
    removeFiles();
    QFile::remove(standLockFile(m_path));
    QDir().rmdir(m_path);
    ::close(m_lock);
}

QString RuntimeFolder::take()
{
    const QByteArray path = QFile::encodeName(m_path);
    if (path.size() + kLongestName >= static_cast<int>(sizeof sockaddr_un::sun_path))
        return QStringLiteral("%1 is too long a path for a socket").arg(m_path);
    ::mkdir(path.constData(), 0700);
    QString fault;
    if (!isPrivateFolder(m_path, &fault))
        return fault;
    const int file = ::open(QFile::encodeName(standLockFile(m_path)).constData(),
                            O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file < 0)
        return QStringLiteral("%1 cannot be written").arg(m_path);
    if (!lockFile(file)) {
        ::close(file);
        return QStringLiteral("another stand is running in %1").arg(m_path);
    }
    m_lock = file;
    removeFiles();
    return {};
}

void RuntimeFolder::removeFiles()
{
    QDir folder(m_path);
    const QStringList names = folder.entryList(QDir::Files | QDir::System | QDir::Hidden);
    for (const QString &name : names) {
        if (folder.filePath(name) != standLockFile(m_path))
            folder.remove(name);
    }
}
