#include "app/paths.h"

#include "app/log.h"

#include <QCoreApplication>
#include <QFile>
#include <QStandardPaths>

namespace {

const QString kBundle = QStringLiteral("Pictor.app");
const QString kProgram = QStringLiteral("/ffmpeg");

void logPath(const char *label, const QString &path)
{
    WriteLog(label);
    WriteLog(path.toUtf8().constData());
}

} // namespace

QString documentsPath()
{
    return QStandardPaths::standardLocations(QStandardPaths::DocumentsLocation).first();
}

QString settingsPath()
{
    return documentsPath() + QStringLiteral("/scanner.ini");
}

QStringList ffmpegCandidates(const QString &appDir)
{
    QString beside = appDir + kProgram;
    const int bundle = appDir.lastIndexOf(kBundle);
    if (bundle >= 0)
        beside = appDir.left(bundle - 1);
    return {beside + kProgram, appDir + kProgram,
            appDir + QLatin1Char('/') + kBundle + QStringLiteral("/Contents/MacOS") + kProgram};
}

QString getFFmpegPath()
{
    const QString appDir = QCoreApplication::applicationDirPath();
    const QStringList candidates = ffmpegCandidates(appDir);
    QString path = candidates[2];
    logPath("appPath:", appDir);
    logPath("ffmpeg path 01:", candidates[0]);
    if (QFile::exists(candidates[0])) {
        WriteLog("fpath 01 file exists");
        path = candidates[0];
    } else {
        logPath("ffmpeg path 02:", candidates[1]);
        if (QFile::exists(candidates[1])) {
            WriteLog("fpath 02 is exist");
            path = candidates[1];
        } else if (QFile::exists(candidates[2])) {
            WriteLog("fpath 03 is exist");
        }
    }
    logPath("last ffmpeg path:", path);
    return path;
}

QString languagePathFor(const QString &appDir)
{
    // Without "MacOS" in the path nothing is cut off: left() of a negative length keeps all.
    return appDir.left(appDir.lastIndexOf(QStringLiteral("MacOS")) - 1) +
           QStringLiteral("/Resources");
}

QString getLanguagePath()
{
    const QString path = languagePathFor(QCoreApplication::applicationDirPath());
    logPath("getLanguagePath:", path);
    return path;
}

QString SupplyZero(int n)
{
    const QString digits = QString::number(n);
    return n <= 9 ? QLatin1Char('0') + digits : digits;
}
