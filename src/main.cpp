#include "app/paths.h"
#include "app/quit_on_signals.h"
#include "app/settings.h"
#include "app/single_instance.h"
#include "imaging/large_pages.h"
#include "mainwindow/look/other_instance.h"
#include "mainwindow/mainwindow.h"
#include "platform/os/memory.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    giveLargeBlocksBack();
    leaveOutOpenGl();
    useLargePagesForPictures();
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    quitOnSignals();
    QApplication::setApplicationName(QStringLiteral("Pictor"));
    SingleInstance instance(settingsPath());
    const SingleInstance::Role role = instance.take();
    if (role == SingleInstance::Role::HandedOver)
        return 0;
    if (role == SingleInstance::Role::NotAnswering) {
        tellOtherInstance(QString());
        return 1;
    }
    areSettingsReadOnly = role == SingleInstance::Role::Elsewhere;
    if (areSettingsReadOnly)
        tellOtherInstance(instance.otherMachine());
    MainWindow window;
    instance.setWake([&window] { bringToFront(window); });
    window.show();
    return QApplication::exec();
}
