#pragma once

#include "video/preview_geometry.h"

#include <QString>

/// What the user has chosen for one camera, kept while the program runs: it comes and goes with
/// its plug, and should be found again as it was left.
struct CameraChoice
{
    QString size;         ///< entry of the resolution box; empty until the user chose one
    PreviewGeometry view; ///< rotation, zoom and place of the picture when it was closed
};
