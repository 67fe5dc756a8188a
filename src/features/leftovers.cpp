#include "features/leftovers.h"

#include "app/log.h"
#include "features/set_aside_file.h"
#include "imaging/file_writer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <cerrno>
#include <csignal>
#include <unistd.h>

namespace {

const QString kExport = QStringLiteral("pictor-export-");

void log(const QString &what, const QString &path)
{
    WriteLog((what + path).toUtf8().constData());
}

void clearFolder(const QString &folder, const QDateTime &begun)
{
    const QDir dir(folder);
    for (const QString &file : dir.entryList({QStringLiteral(".pictor-*.tmp")},
                                             QDir::Files | QDir::Hidden | QDir::System))
    {
        if (isAbandonedTemporary(file.toStdString()) && QFile::remove(dir.filePath(file)))
            log(QStringLiteral("removed a half written file: "), dir.filePath(file));
    }
    putBackSetAsideFiles(folder, begun);
}

void clearExports()
{
    static const QRegularExpression name('^' + kExport + QStringLiteral("(\\d+)-"));
    const QDir temporary = QDir::temp();
    const auto folders = temporary.entryInfoList({kExport + '*'}, QDir::Dirs | QDir::NoSymLinks);
    for (const QFileInfo &folder : folders) {
        const int process = name.match(folder.fileName()).captured(1).toInt();
        const bool isGone = process > 0 && ::kill(process, 0) != 0 && errno == ESRCH;
        if (isGone && folder.ownerId() == ::getuid() && QDir(folder.filePath()).removeRecursively())
            log(QStringLiteral("removed the pages of an export: "), folder.filePath());
    }
}

} // namespace

void clearLeftovers(const QString &folder)
{
    const QDateTime begun = QDateTime::currentDateTime();
    clearExports();
    if (folder.isEmpty())
        return;
    clearFolder(folder, begun);
    for (const QString &inner :
         QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks))
        clearFolder(folder + '/' + inner, begun);
}

QString exportFolderTemplate()
{
    return QDir::temp().filePath(kExport + QString::number(QCoreApplication::applicationPid()) +
                                 QStringLiteral("-XXXXXX"));
}
