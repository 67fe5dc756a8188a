#pragma once

#include <QString>

/// One line of the mode listing that a probe prints, e.g.
/// "[avfoundation @ 0x1]   1280x720@[30.000030 30.000030]fps".
struct ModeLine
{
    QString size; ///< what stands between the first "]" and the last "@", trimmed: "1280x720"
    QString rate; ///< whole part of the first rate in the last brackets: "30"
};

/// True when `line` lists a mode.
bool isModeLine(const QString &line);

/// Takes a mode line apart. A line of another form gives some text or other, never an error: what
/// is no size is left out when the list of sizes is built.
ModeLine parseModeLine(const QString &line);
