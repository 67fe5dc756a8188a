#pragma once

#include <QPoint>
#include <QRectF>
#include <QSize>

enum class RotateDirection { Left, Right };
enum class ZoomDirection { Out, In };

/// Where the picture lies in the preview, for whatever is laid over it.
struct ShownPicture
{
    QRectF rect;   ///< the whole picture, scene units; may reach beyond the scene
    QSize frame;   ///< size of the frame as shown, that is after rotation, pixels
    int angle = 0; ///< clockwise rotation of the frame, 0, 90, 180 or 270 degrees
};

/// The arithmetic of the preview: where in the scene the camera's picture is painted.
///
/// A base rectangle (the picture fitted into the scene), a zoom factor and a centre give the show
/// rectangle. Lengths are scene units; `frame` is the camera's size before rotation, pixels.
/// Nothing changes while the scene or the frame is empty, except the angle.
class PreviewGeometry
{
public:
    static constexpr double kZoomStep = 0.05;
    static constexpr double kZoomMin = 0.4;
    static constexpr double kZoomMax = 6.0;

    /// Size of the drawing area. Takes effect with the next operation.
    void setScene(QSize scene) { m_scene = scene; }
    /// Size at which the camera is open. Takes effect with the next operation.
    void setFrame(QSize frame) { m_frame = frame; }

    /// Fits a picture of `w` x `h` into the scene and makes that the base rectangle. The side that
    /// does not fill the scene is truncated to an integer; it is also the result (0 when nothing
    /// can be fitted).
    int fit(int w, int h);

    /// The whole picture, centred, zoom factor 1.
    void toSuitable();
    /// One frame pixel is one scene unit, about the present centre. May leave the zoom limits.
    void toTrueSize();
    /// One step of kZoomStep about the centre, within [kZoomMin, kZoomMax].
    void zoom(ZoomDirection direction);
    /// A quarter turn; the shown size stays with width and height exchanged.
    void rotate(RotateDirection direction);
    /// Moves the picture.
    void pan(QPoint offset);

    QSize scene() const { return m_scene; }
    QSize frame() const { return m_frame; }
    int angle() const { return m_angle; }
    double zoomFactor() const { return m_zoom; }
    QRectF baseRect() const { return m_base; }
    QPointF centre() const { return m_centre; }
    QRectF showRect() const { return m_show; }
    /// The frame's size after rotation.
    QSize rotatedFrame() const;

private:
    bool isQuarterTurned() const { return m_angle == 90 || m_angle == 270; }
    bool refit();
    void show(QSizeF size);

    QSize m_scene{800, 600};
    QSize m_frame;
    int m_angle = 0;
    double m_zoom = 1.0;
    QRectF m_base;
    QPointF m_centre;
    QRectF m_show;
};
