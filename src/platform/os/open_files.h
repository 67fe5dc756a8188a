#pragma once

#include <QString>

/// Whether another process of this user has the file at `path` open, as far as the system tells
/// (macOS does not, cheaply: false). Looks at every process: a few milliseconds. Any thread.
bool isOpenElsewhere(const QString &path);
