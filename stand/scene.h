#pragma once

#include <QImage>
#include <QPointF>
#include <QSizeF>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

/// A flat thing that lies on the desk. Lengths are millimetres on the desk; the origin lies under
/// the camera, x runs to the right and y towards the user.
struct Sheet
{
    /// Draws the sheet upright at a resolution in pixels a millimetre. Called from any thread.
    using Art = std::function<QImage(double pixelsPerMm)>;

    Art art;
    QSizeF size;
    QPointF centre;
    double angle = 0;    ///< degrees, clockwise as seen by the camera
    double height = 0.5; ///< above the desk; a higher sheet throws a longer, softer shadow
};

/// What lies under the camera, and in which light.
struct Scene
{
    enum class Desk { Dark, White };

    QString name;
    std::vector<Sheet> sheets; ///< from the bottom up
    Desk desk = Desk::Dark;
    double light = 1; ///< brightness of the lamp, 1 is normal
};

/// Names of the built-in scenes.
QStringList sceneNames();

/// The scenes that `nameOrPath` stands for: a built-in one (of the book each opening), an image
/// file laid on the desk, or the images of a folder in the order of their names. Empty with a
/// sentence in `why` when there is none.
std::vector<Scene> findScenes(const QString &nameOrPath, QString *why = nullptr);
