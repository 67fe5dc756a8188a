#pragma once

#include "imaging/capture.h"

#include <QStringList>

/// What one run of pictor-batch does.
struct BatchOptions
{
    CaptureOptions capture; ///< outlines are filled in for each image
    int rotate = 0;         ///< clockwise degrees, before everything else: 0, 90, 180 or 270
    QString format = QStringLiteral("jpg"); ///< ending of the files written
    QString folder;                         ///< where they go
    QStringList images;                     ///< in order; folders are opened, their files sorted
};

/// Reads the command line, the program's name first. Returns what is wrong with it, empty when
/// nothing is. `arguments` asking for help are answered by the text of batchHelp().
QString parseBatchOptions(const QStringList &arguments, BatchOptions &options);

QString batchHelp();
bool wantsBatchHelp(const QStringList &arguments);
