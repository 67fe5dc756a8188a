#include "app/replaced_file.h"

#include "app/log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <mutex>
#include <utility>

namespace {

std::mutex listenerMutex;
ReplacedListener listener;

ReplacedListener currentListener()
{
    const std::lock_guard lock(listenerMutex);
    return listener;
}

bool isThere(const QFileInfo &info)
{
    return info.isSymLink() || info.exists();
}

// Qt takes the working folder for the trash when it finds none. Where the trash lies in the data
// folder of a home that has none yet, it cannot be made.
bool hasTrash()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QFileInfo trash(data + QStringLiteral("/Trash"));
    return QDir().mkpath(data) &&
           (trash.exists() ? trash.isDir() && trash.isWritable() : QFileInfo(data).isWritable());
}

} // namespace

void setReplacedListener(ReplacedListener newListener)
{
    const std::lock_guard lock(listenerMutex);
    listener = std::move(newListener);
}

bool areReplacedFilesKept()
{
    return bool(currentListener());
}

bool moveToTrash(const QString &path, QString *keptAs)
{
    return hasTrash() && QFile::moveToTrash(path, keptAs);
}

QString nameWithTime(const QString &path, const QDateTime &time)
{
    const QFileInfo info(path);
    const QString ending = info.suffix().isEmpty() ? QString() : '.' + info.suffix();
    const QString start = info.path() + '/' + info.completeBaseName() + QStringLiteral(" (") +
                          time.toString(QStringLiteral("yyyy-MM-dd HH-mm-ss"));
    QString name = start + ')' + ending;
    for (int i = 2; isThere(QFileInfo(name)); ++i)
        name = start + QStringLiteral(", %1)").arg(i) + ending;
    return name;
}

std::optional<ReplacedFile> keepReplaced(const QString &path, bool &failed)
{
    failed = false;
    if (!areReplacedFilesKept() || !isThere(QFileInfo(path)))
        return std::nullopt;
    ReplacedFile replaced{path, QString(), true};
    if (moveToTrash(path, &replaced.keptAs))
        return replaced;
    replaced.isInTrash = false;
    replaced.keptAs = nameWithTime(path, QFileInfo(path).lastModified());
    failed = !QFile::rename(path, replaced.keptAs);
    return failed ? std::nullopt : std::make_optional(replaced);
}

void tellReplaced(const ReplacedFile &replaced)
{
    WriteLog(("replaced: " + replaced.path + ", kept as " + replaced.keptAs).toUtf8().constData());
    if (const ReplacedListener tell = currentListener())
        tell(replaced);
}
