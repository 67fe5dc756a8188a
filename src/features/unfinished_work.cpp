#include "features/unfinished_work.h"

#include "app/paths.h"
#include "app/settings.h"

#include <QFile>
#include <QSettings>

namespace {

QString keyOf(UnfinishedWork kind)
{
    return kind == UnfinishedWork::Recording ? QStringLiteral("Unfinished/recordings")
                                             : QStringLiteral("Unfinished/mergePages");
}

void write(UnfinishedWork kind, const QStringList &paths)
{
    if (areSettingsReadOnly)
        return;
    QSettings ini(settingsPath(), QSettings::IniFormat);
    if (paths.isEmpty())
        ini.remove(keyOf(kind));
    else
        ini.setValue(keyOf(kind), paths);
}

QStringList noted(UnfinishedWork kind)
{
    return QSettings(settingsPath(), QSettings::IniFormat).value(keyOf(kind)).toStringList();
}

} // namespace

QStringList unfinishedFiles(UnfinishedWork kind)
{
    QStringList existing;
    const QStringList paths = noted(kind);
    for (const QString &path : paths) {
        if (QFile::exists(path))
            existing << path;
    }
    return existing;
}

void noteUnfinished(UnfinishedWork kind, const QString &path)
{
    QStringList paths = noted(kind);
    paths.removeAll(path);
    write(kind, paths << path);
}

void forgetUnfinished(UnfinishedWork kind, const QStringList &paths)
{
    QStringList left = noted(kind);
    for (const QString &path : paths)
        left.removeAll(path);
    write(kind, left);
}
