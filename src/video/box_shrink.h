#pragma once

#include <QImage>

/// Averages blocks of `factor` x `factor` pixels of `source` into one pixel each of `target`
/// (Format_RGB32). Blocks cut off by the right or bottom edge average what there is of them, so
/// the target has the source's sides divided by `factor`, rounded up. Memory of `target` is
/// reused where it fits. Any source format, best Format_RGB888; `factor` from 1 to 255.
void boxShrink(const QImage &source, int factor, QImage &target);
