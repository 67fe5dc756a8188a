#include "app/log.h"

#include "app/paths.h"
#include "app/state.h"

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <mutex>

namespace {

constexpr long kLogBytesMax = 0x13FFFFF;
constexpr int kFolderBytesMax = 127; // the log's folder name is cut here
constexpr int kAttempts = 3;
constexpr int kRetryMs = 1000;

std::mutex logMutex; // guards the file and lastWriteFailed
bool lastWriteFailed = false;

// Cut short between two letters.
QByteArray logFolder()
{
    QByteArray folder = documentsPath().toUtf8();
    int length = std::min(folder.size(), kFolderBytesMax);
    while (length > 0 && length < folder.size() && (folder.at(length) & 0xC0) == 0x80)
        --length;
    folder.truncate(length);
    return folder;
}

std::FILE *openLog(const QByteArray &path)
{
    for (int attempt = 1;; ++attempt) {
        if (std::FILE *file = std::fopen(path.constData(), "ab"))
            return file;
        if (lastWriteFailed)
            return nullptr;
        QThread::msleep(kRetryMs);
        if (attempt == kAttempts)
            return nullptr;
    }
}

} // namespace

void WriteLog(const char *message)
{
    const QByteArray folder = logFolder();
    const QByteArray line =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toLatin1() +
        ' ' + message + " \r\n";
    const QByteArray path = folder + "/scanerlog";

    const std::lock_guard<std::mutex> lock(logMutex);
    if (!QFile::exists(QString::fromUtf8(folder)))
        QDir().mkpath(QString::fromUtf8(folder));
    std::FILE *file = openLog(path);
    lastWriteFailed = file == nullptr;
    if (!file)
        return;
    std::fseek(file, 0, SEEK_END);
    const bool full = std::ftell(file) > kLogBytesMax;
    if (!full)
        std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), file);
    std::fclose(file);
    if (full)
        std::remove(path.constData());
}

void logLine(const QString &message)
{
    if (isoutlog)
        WriteLog(message.toUtf8().constData());
}
