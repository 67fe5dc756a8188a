#pragma once

#include <QIcon>
#include <QString>

enum class FileKind { Picture, Video, Pdf, Other };

/// What a file is by the ending of its name.
FileKind fileKind(const QString &path);

/// The icon that stands for a file without a thumbnail.
QIcon fileKindIcon(FileKind kind);
