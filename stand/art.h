#pragma once

#include <QImage>
#include <QString>

/// The documents of the built-in scenes, each drawn upright and filling the image, at a
/// resolution in pixels a millimetre. A different `seed` gives a different document of the same
/// kind. Any thread.

/// Printed A4 page: headline, paragraphs, a diagram, a table.
QImage drawTextPage(double pixelsPerMm, int seed);

/// Till receipt, 80 x 190 mm.
QImage drawReceipt(double pixelsPerMm, int seed);

/// Membership card with a portrait, 86 x 54 mm.
QImage drawCard(double pixelsPerMm, int seed);

/// Picture postcard, 150 x 105 mm.
QImage drawPostcard(double pixelsPerMm, int seed);

/// Two facing pages of an open book, 300 x 210 mm.
QImage drawBook(double pixelsPerMm, int seed);

/// Blank white A4 page with a single line of pale print.
QImage drawPalePage(double pixelsPerMm);

/// Sheet of 180 x 120 mm with a headline and one code; what the code says stands under it.
QImage drawEanSheet(double pixelsPerMm);
QImage drawCode128Sheet(double pixelsPerMm);
QImage drawQrSheet(double pixelsPerMm);

/// What the codes of the sheets say.
QString eanSheetText();
QString code128SheetText();
