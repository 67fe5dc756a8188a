#pragma once

#include "platform/platform.h"

#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTimer>

/// Finds the usable cameras and asks each for its modes. GUI thread only.
///
/// A probe runs in a process of its own (`poc`); its result comes by signal. Starting a probe
/// drops the one before, and so does destroying the object that started it. One that takes longer
/// than five seconds is ended.
class CamParams : public QObject
{
    Q_OBJECT

public:
    explicit CamParams(QObject *parent = nullptr);
    ~CamParams() override;

    /// Lists the cameras anew: the first of a main model and, when there is one, every assist
    /// camera. Writes `Camdevice`, `CamdeviceName`, `myDevCount` and the enlarged-size flags
    /// (only the first four are cleared before), forgets the probed modes, returns `myDevCount`.
    int getCameraCount();

    /// Counts the cameras by the same rules without changing anything.
    int checkCameraCount() const;

    /// Name of listed camera `i`; empty when there is none.
    QString getCameraName(int i) const;

    /// Device index of listed camera `i`; -1 outside 0 to 9.
    int geCameraID(int i) const;

    /// Unique ID of the listed camera with device index `deviceIndex`; empty when it is not listed.
    QString uniqueId(int deviceIndex) const;

    /// False while a camera is opened for the first time, true when the user switches to it.
    void setChangeDeviceMode(bool change);

    /// False when another camera stands at device index `deviceIndex` by now than the listed one:
    /// indices shift when a camera comes or goes. True for an index that is not listed.
    bool isStillListed(int deviceIndex) const;

    /// Starts the probe of the camera with device index `deviceIndex`. A negative index only ends
    /// a running probe.
    void getResolutionCount(int deviceIndex);

    /// True from the start of a probe to its end.
    bool isProbing() const { return m_isProbing; }

    /// Mode `index` of the camera probed last, in the order of the listing; 0, or -1 when there is
    /// no such mode. A size that is none leaves `width` and `height` as they are.
    int getResolution(int index, int &width, int &height, int &fps) const;

public slots:
    /// Takes what the probe has printed so far; each text is handled by itself.
    void sltOnReadOutput();

signals:
    void getResCountFinish(int count);  ///< main camera: number of its sizes, at least 1
    void getResCountFinish2(int count); ///< assist camera: number of its sizes, at least 1
    void mainProbeFinished();           ///< the main camera's probe ended, or could not start
    void modesUnknown(); ///< the main camera's probe ended, or could not start, without a size

private:
    /// Sizes and rates of one camera, in the order of the listing.
    struct ModeList
    {
        QStringList sizes;
        QStringList rates;
        int deviceIndex = -1; ///< camera that they belong to
    };

    bool isMainProbe() const { return m_position == 0 || m_changeDevice; }
    ModeList &probed() { return isMainProbe() ? m_main : m_assist; }
    const ModeList &probed() const { return isMainProbe() ? m_main : m_assist; }
    void listCamera(int deviceIndex, const CameraInfo &camera);
    void startProbe(int deviceIndex);
    void probeEnded();
    void giveUpProbe();
    QProcess *takeProbe();

    ModeList m_main, m_assist;
    QStringList m_ids;  ///< unique IDs of the listed cameras
    int m_position = 0; ///< of the probed camera in `Camdevice`
    bool m_changeDevice = false;
    bool m_isProbing = false;
    QPointer<QProcess> m_probe; ///< started by this object; `poc` unless another one took over
    QTimer m_probeLimit;
};
