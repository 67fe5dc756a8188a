#include "mainwindow/look/other_instance.h"

#include "app/paths.h"
#include "mainwindow/look/window_text.h"

#include <QCoreApplication>
#include <QLocale>
#include <QMessageBox>
#include <QTranslator>
#include <QWidget>

void tellOtherInstance(const QString &machine)
{
    QTranslator chinese;
    if (QLocale().language() == QLocale::Chinese &&
        chinese.load(QStringLiteral("lan_cn"), getLanguagePath()))
        QCoreApplication::installTranslator(&chinese);
    const QString text =
        machine.isEmpty()
            ? WindowText::tr("Pictor is running already, but does not answer. End it first.")
            : WindowText::tr("Pictor is running already on %1. Settings changed here are not kept.")
                  .arg(machine);
    QMessageBox::warning(nullptr, QStringLiteral("Pictor"), text);
}

void bringToFront(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}
