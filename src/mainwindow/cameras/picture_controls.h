#pragma once

#include "platform/camera_control.h"

#include <QMap>
#include <QObject>
#include <QThreadPool>

/// What can be chosen about the picture of the main camera. The user's choices are kept in the
/// settings file, group "Picture", by the camera's unique ID, and put back whenever it is opened,
/// also at another port. The device is asked and told in a thread of its own, since a camera may
/// take seconds to answer or have gone. GUI thread.
class PictureControls : public QObject
{
    Q_OBJECT

public:
    explicit PictureControls(QObject *parent = nullptr);

    /// Waits for the answer of the device, which the system bounds by a few seconds.
    ~PictureControls() override;

    /// Turns to the camera with this unique ID, puts back what was chosen for it and reads what
    /// it has; an empty ID for no camera.
    void open(const QString &id);

    /// Tells the camera as soon as it has taken what it was told before; of several values
    /// meanwhile only the last.
    void set(CameraControl::Kind kind, int value);

    /// Back to the driver's defaults; nothing is kept for this camera any more.
    void setDefaults();

    /// As read last; empty until then.
    const QList<CameraControl> &list() const { return m_list; }
    bool canFocus() const { return m_canFocus; }

signals:
    void changed(); ///< what list() and canFocus() give

private:
    using Values = QMap<CameraControl::Kind, int>;
    struct Reading;

    void tell();
    void take(const Reading &reading);

    QThreadPool m_pool; ///< one thread
    QString m_id;
    Values m_kept;    ///< chosen by the user
    Values m_waiting; ///< not told yet
    bool m_isTelling = false;
    bool m_isStale = false; ///< the camera has to be read again
    QList<CameraControl> m_list;
    bool m_canFocus = false;
};
