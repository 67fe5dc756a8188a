#pragma once

#include <QStringList>

/// Files of work that has begun and not ended, noted in the settings file so that the next start
/// of the program knows of them, whatever ended this one. GUI thread.
enum class UnfinishedWork { Recording, MergePages };

/// Noted files that exist.
QStringList unfinishedFiles(UnfinishedWork kind);

void noteUnfinished(UnfinishedWork kind, const QString &path);
void forgetUnfinished(UnfinishedWork kind, const QStringList &paths);
