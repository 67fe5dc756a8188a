#pragma once

#include <QString>

class QWidget;

/// Tells, in the system's language as no settings are read yet, that the program runs already: on
/// `machine`, whose instance keeps the settings, or, when that is empty, on this one without
/// answering. Waits until the box is closed. GUI thread.
void tellOtherInstance(const QString &machine);

/// Shows the window before all others, also when it was minimized.
void bringToFront(QWidget &window);
