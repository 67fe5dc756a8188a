#include "features/recording.h"

#include <QCoreApplication>

// killed_recorder COMMAND PATH: records like the application does, and never stops by itself.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    Recording recording(arguments.value(1), arguments.value(2), &application);
    QObject::connect(&recording, &Recording::outputReady, &recording, &Recording::readOutput);
    recording.start();
    return QCoreApplication::exec();
}
