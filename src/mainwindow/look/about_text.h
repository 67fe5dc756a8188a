#pragma once

#include <QString>
#include <QStringList>

/// "Qt 5.15.8", "OpenCV 4.6.0", ...: the libraries as they were loaded.
QStringList libraryVersions();

/// What the About box says: the program's version, its libraries, and where its files lie. HTML.
QString aboutText();
