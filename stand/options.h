#pragma once

#include "platform/platform.h"

#include <QStringList>

#include <vector>

/// What the command line asks of the stand.
struct StandOptions
{
    QStringList scenes;                      ///< names and paths, walked by `next`
    QString assistScene;                     ///< empty for the built-in one
    QString id = QStringLiteral("12090001"); ///< vendor and product ID of the main camera
    std::vector<CameraMode> modes;           ///< of both cameras
    bool hasAssist = false;
    bool isHeadless = false;
    bool diesWithParent = false;
    QString help; ///< the help page, when that was all that was asked for
};

/// Modes of a camera of which nothing else is asked.
std::vector<CameraMode> standardModes();

/// "640x480@30,3264x1836@15" as modes; empty when any part is no mode.
std::vector<CameraMode> parseModes(const QString &text);

/// Reads the command line. False with a sentence in `fault` when it is wrong.
bool parseOptions(const QStringList &arguments, StandOptions &options, QString &fault);
