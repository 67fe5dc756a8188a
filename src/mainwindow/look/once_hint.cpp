#include "mainwindow/look/once_hint.h"

#include <QSet>
#include <QSettings>
#include <QStandardPaths>

bool isFirstHint(const QString &name)
{
    static QSet<QString> told;
    QSettings hints(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                        QStringLiteral("/pictor/hints.ini"),
                    QSettings::IniFormat);
    if (told.contains(name) || hints.value(name).toBool())
        return false;
    told.insert(name);
    hints.setValue(name, true);
    return true;
}
