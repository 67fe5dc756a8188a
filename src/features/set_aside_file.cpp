#include "features/set_aside_file.h"

#include "app/log.h"
#include "app/replaced_file.h"
#include "platform/os/open_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

const QString kAside = QStringLiteral(".previous");

// More than the headers of any container: a file above it holds pictures.
constexpr qint64 kHeaderBytes = 16 * 1024;

// A link that leads nowhere has the name as well: whoever writes into it makes its target.
bool isTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.isSymLink() || info.exists();
}

QDateTime changeOf(const QString &path)
{
    return QFileInfo(path).lastModified();
}

void putBack(const QString &aside, const QString &path)
{
    if (isOpenElsewhere(path) || isOpenElsewhere(aside))
        return;
    if (QFileInfo(path).size() <= kHeaderBytes)
        QFile::remove(path);
    const QString name = isTaken(path) ? nameWithTime(path, changeOf(aside)) : path;
    const bool isBack = QFile::rename(aside, name);
    WriteLog(((isBack ? "put back: " : "cannot put back: ") + name).toUtf8().constData());
}

// Of all names when `ofName` is empty.
void putBackSetAside(const QString &folder, const QString &ofName, const QDateTime &until)
{
    static const QRegularExpression aside(QStringLiteral("^(.+\\.(mov|avi|mp4))\\.previous\\d*$"));
    const QDir dir(folder);
    for (const QString &file : dir.entryList(QDir::Files | QDir::System | QDir::Hidden)) {
        const QString name = aside.match(file).captured(1);
        const bool isWanted = !name.isEmpty() && (ofName.isEmpty() || name == ofName);
        if (isWanted && QFileInfo(dir.filePath(file)).metadataChangeTime() <= until)
            putBack(dir.filePath(file), dir.filePath(name));
    }
}

} // namespace

SetAsideFile::SetAsideFile(const QString &path)
    : m_path(path)
{
}

bool SetAsideFile::setAside()
{
    const QFileInfo info(m_path);
    putBackSetAside(info.path(), info.fileName(), QDateTime::currentDateTime());
    if (!isTaken(m_path))
        return true;
    if (!QFileInfo(m_path).isSymLink() && (!QFileInfo(m_path).isFile() || isOpenElsewhere(m_path)))
        return false;
    QString aside = m_path + kAside;
    for (int i = 2; isTaken(aside); ++i)
        aside = m_path + kAside + QString::number(i);
    if (!QFile::rename(m_path, aside))
        return false;
    m_aside = aside;
    return true;
}

void SetAsideFile::discard()
{
    if (m_aside.isEmpty())
        return;
    // Under a name that says what it is and opens as what it is, also when it is taken out again.
    const QString dated = nameWithTime(m_path, changeOf(m_aside));
    if (QFile::rename(m_aside, dated))
        m_aside = dated;
    if (areReplacedFilesKept()) {
        ReplacedFile replaced{m_path, m_aside, false};
        replaced.isInTrash = moveToTrash(m_aside, &replaced.keptAs);
        tellReplaced(replaced);
    } else if (!QFile::remove(m_aside)) {
        return;
    }
    m_aside.clear();
}

void SetAsideFile::restore()
{
    if (!m_aside.isEmpty() && QFile::rename(m_aside, m_path))
        m_aside.clear();
}

void putBackSetAsideFiles(const QString &folder, const QDateTime &until)
{
    putBackSetAside(folder, QString(), until);
}
