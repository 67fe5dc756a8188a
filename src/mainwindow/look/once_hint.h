#pragma once

#include <QString>

/// True the first time it is asked for `name`, for this user and for good. Kept apart from the
/// settings file, which is written whole. When it cannot be kept, true once in each run. GUI
/// thread.
bool isFirstHint(const QString &name);
