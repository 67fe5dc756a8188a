#pragma once

#include <QImage>
#include <QSizeF>
#include <QString>

/// The documents of the built-in scenes, each drawn upright and filling the image. Any thread.

/// A printed A4 page: headline, two paragraphs, a table, a small diagram. `seed` changes the
/// words, so that two pages never look alike.
QImage drawTextPage(double pixelsPerMm, int seed);

/// Blank image of a sheet of `size` millimetres at a resolution in pixels a millimetre.
QImage blankSheet(QSizeF size, double pixelsPerMm, QColor paper);
