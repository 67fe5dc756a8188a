#include "app/settings.h"

#include "app/state.h"

#include <QDebug>
#include <QSettings>

void readcfgini(QString path)
{
    const QSettings ini(path, QSettings::IniFormat);
    colorMode = ini.value(QStringLiteral("Set/colorMode")).toInt();
    cutMode = ini.value(QStringLiteral("Set/cutMode")).toInt();
    fNameType = ini.value(QStringLiteral("Set/NameType")).toInt();
    fImgformat = ini.value(QStringLiteral("Set/Imgformat")).toInt();
    fRecformat = ini.value(QStringLiteral("Set/Recformat")).toString();
    ImgQuality = ini.value(QStringLiteral("Set/ImgQuality")).toInt();
    sLanguage = ini.value(QStringLiteral("Set/Language")).toInt();
    SaveFolderPath = ini.value(QStringLiteral("Set/SaveFolderPath")).toString();
    qDebug() << "SaveFolderPath" << SaveFolderPath;
    qDebug() << "fImgformat" << fImgformat;
    qDebug() << "cutMode" << cutMode.load();
    qDebug() << "colorMode" << colorMode;
}

void writecfgini(QString path)
{
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
