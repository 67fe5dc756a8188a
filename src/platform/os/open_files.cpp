#include "platform/os/open_files.h"

#ifdef Q_OS_LINUX

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

bool isOpenElsewhere(const QString &path)
{
    struct stat wanted = {};
    if (stat(QFile::encodeName(path).constData(), &wanted) != 0)
        return false;
    const QString self = QString::number(getpid());
    for (const QString &process : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        if (process == self || !process.at(0).isDigit())
            continue;
        const QDir open(QStringLiteral("/proc/%1/fd").arg(process));
        for (const QString &file : open.entryList(QDir::AllEntries | QDir::System)) {
            struct stat held = {};
            if (stat(QFile::encodeName(open.filePath(file)).constData(), &held) == 0 &&
                held.st_dev == wanted.st_dev && held.st_ino == wanted.st_ino)
                return true;
        }
    }
    return false;
}

#else

bool isOpenElsewhere(const QString &)
{
    return false;
}

#endif
