#pragma once

#include <QString>

/// Removes or puts back what killed programs of this machine and user left: half written files and
/// recordings that were set aside in `folder` and the folders directly in it, and the pages of
/// exports. What belongs to a living process stays. Any thread; may take as long as the folder's
/// device does.
void clearLeftovers(const QString &folder);

/// Template for the folder in which an export of this process keeps its pages (QTemporaryDir).
QString exportFolderTemplate();
