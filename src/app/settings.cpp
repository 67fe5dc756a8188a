#include "app/settings.h"

#include "app/state.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// A process that was killed while it took the lock leaves it without a name in it; waiting for its
// owner then lasts half a minute. A lock that is held is locked for the system as well.
void removeAbandonedLock(const QString &path)
{
    const QByteArray lock = QFile::encodeName(path + QStringLiteral(".lock"));
    const int file = open(lock.constData(), O_RDWR | O_CLOEXEC);
    if (file < 0)
        return;
    struct stat info = {};
    if (fstat(file, &info) == 0 && info.st_size == 0 && flock(file, LOCK_EX | LOCK_NB) == 0)
        unlink(lock.constData());
    close(file);
}

int numberOf(const QSettings &ini, const QString &key, int otherwise, bool &isDamaged)
{
    if (!ini.contains(key))
        return otherwise;
    bool isNumber = false;
    const int number = ini.value(key).toInt(&isNumber);
    isDamaged = isDamaged || !isNumber;
    return isNumber ? number : otherwise;
}

} // namespace

bool areSettingsReadOnly = false;
bool areSettingsDamaged = false;
bool isQualityChosen = true;

void readcfgini(QString path)
{
    removeAbandonedLock(path);
    const QSettings ini(path, QSettings::IniFormat);
    bool isDamaged =
        ini.status() == QSettings::FormatError ||
        ((QFileInfo(path).isDir() || QFileInfo(path).size() > 0) && ini.allKeys().isEmpty());
    colorMode = numberOf(ini, QStringLiteral("Set/colorMode"), 0, isDamaged);
    cutMode = numberOf(ini, QStringLiteral("Set/cutMode"), 0, isDamaged);
    fNameType = numberOf(ini, QStringLiteral("Set/NameType"), 0, isDamaged);
    fImgformat = numberOf(ini, QStringLiteral("Set/Imgformat"), 0, isDamaged);
    fRecformat = ini.value(QStringLiteral("Set/Recformat")).toString();
    ImgQuality = numberOf(ini, QStringLiteral("Set/ImgQuality"), 0, isDamaged);
    sLanguage = numberOf(ini, QStringLiteral("Set/Language"), 0, isDamaged);
    SaveFolderPath = ini.value(QStringLiteral("Set/SaveFolderPath")).toString();
    areSettingsDamaged = isDamaged;
    isQualityChosen = ini.contains(QStringLiteral("Set/ImgQuality")) && !isDamaged;
    qDebug() << "SaveFolderPath" << SaveFolderPath;
    qDebug() << "fImgformat" << fImgformat;
    qDebug() << "cutMode" << cutMode.load();
    qDebug() << "colorMode" << colorMode;
}

void writecfgini(QString path)
{
    if (areSettingsReadOnly)
        return;
    removeAbandonedLock(path);
    QSettings ini(path, QSettings::IniFormat);
    ini.beginGroup(QStringLiteral("Set"));
    ini.setValue(QStringLiteral("colorMode"), colorMode);
    ini.setValue(QStringLiteral("cutMode"), cutMode.load());
    ini.setValue(QStringLiteral("NameType"), fNameType);
    ini.setValue(QStringLiteral("Imgformat"), fImgformat);
    ini.setValue(QStringLiteral("Recformat"), fRecformat);
    ini.setValue(QStringLiteral("ImgQuality"), ImgQuality);
    ini.setValue(QStringLiteral("SaveFolderPath"), SaveFolderPath);
    ini.setValue(QStringLiteral("Language"), sLanguage);
    ini.endGroup();
}
