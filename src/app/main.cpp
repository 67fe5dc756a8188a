#include "app/quit_on_signals.h"
#include "imaging/large_pages.h"
#include "mainwindow/mainwindow.h"
#include "platform/os/memory.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    giveLargeBlocksBack();
    useLargePagesForPictures();
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    quitOnSignals();
    QApplication::setApplicationName(QStringLiteral("Pictor"));
    MainWindow window;
    window.show();
    return QApplication::exec();
}
