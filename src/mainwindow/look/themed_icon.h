#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

/// The icon ":/icon/icon/NAME.svg", drawn from its outline at every size and pixel ratio. Its
/// strokes take the text colour of the palette in force when it is painted, so it reads on light
/// and dark desktops alike; with `fixedColor` they take that colour instead. GUI thread.
QIcon themedIcon(const QString &name, const QColor &fixedColor = QColor());
