#pragma once

#include "video/preview_geometry.h"

#include <QHash>
#include <QString>

/// What the user has chosen for one camera, kept while the program runs: it comes and goes with
/// its plug, and should be found again as it was left.
struct CameraChoice
{
    QString size;         ///< entry of the resolution box; empty until the user chose one
    PreviewGeometry view; ///< rotation, zoom and place of the picture when it was closed
};

/// The choice for the camera with this unique ID; for one that is at a new port, which its unique
/// ID names, that of a camera of its model.
inline CameraChoice choiceFor(const QHash<QString, CameraChoice> &choices, const QString &id)
{
    constexpr int kIdDigits = 8;
    const QString model = id.right(kIdDigits);
    if (choices.contains(id) || model == QLatin1String("00000000"))
        return choices.value(id);
    for (auto choice = choices.begin(); choice != choices.end(); ++choice) {
        if (choice.key().endsWith(model))
            return choice.value();
    }
    return {};
}
