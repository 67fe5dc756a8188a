#include <QApplication>
#include <QMainWindow>

// Nothing but a window: the part of the application's start that is Qt's. It fills the screen, so
// that it is seen wherever the application's preview is.
int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.showMaximized();
    return QApplication::exec();
}
