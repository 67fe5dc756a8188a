#pragma once

#include <QString>

/// Enters into an AVI file what only the end of a recording would have written: the sizes of its
/// lists and how many pictures and pieces of sound there are, from which players tell its duration.
/// The pictures stay as they are. False, and nothing is written, when the file needs none of it or
/// is no AVI. Reads eight bytes of every chunk; any thread.
bool mendAvi(const QString &path);
