#pragma once

#include "features/recording.h"
#include "platform/platform.h"
#include "video/camera_thread.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <chrono>

class QProcess;

/// Records a camera, with the camera's microphone when there is one, through the external ffmpeg
/// program. GUI thread; nothing blocks except where said.
class Recorder : public QObject
{
    Q_OBJECT

public:
    explicit Recorder(QObject *parent = nullptr);

    /// Finishes a running recording as `finishNow` does.
    ~Recorder() override;

    /// Output file of the next recording; its folder is created when missing.
    void setRecordPath(const QString &path);
    QString recordPath() const { return m_recordPath; }

    /// Device index of the camera to record, where the system lets one be chosen. A running
    /// recording that is fed with pictures goes on with those of this camera.
    void setCamera(int index);

    /// Where the pictures come from, where ffmpeg does not open the camera itself.
    void setSource(CameraThread *source) { m_source = source; }

    /// The failure that `recordSignal` told last.
    RecordingFailure failure() const { return m_failure; }

    /// True from a start until its ffmpeg has ended.
    bool isRunning() const;

    /// Starts recording into the record path; nothing while a recording runs. A file of that name
    /// is moved aside and comes back when nothing gets recorded.
    void StartREC();

    /// Asks ffmpeg to finish, which it does in the background; `finished` follows when there is a
    /// file. Clears the path.
    void StopREC();

    /// Ends the recording, as failed but with what was recorded, when its camera is not connected
    /// any more. To be called every now and then.
    void checkCamera();

    /// Stops every ffmpeg that still writes and waits until the files are whole, a few seconds at
    /// most; for the end of the program, before the cameras are closed.
    void finishNow();

    /// Number of audio inputs. Chooses the camera's own microphone, else the first input, for the
    /// next recording.
    int getInputAudioDevCount();

    /// Starts asking ffmpeg for the index of the capture device that shows the screen; does
    /// nothing on a system without such a list.
    void getScreenDevID();

    /// That index as text; empty until it is known. No recording uses it.
    QString screenDeviceId() const { return m_screenDeviceId; }

public slots:
    void getScreenDevIDResult();

    /// Reads what ffmpeg printed, and reports a failure when it speaks of an error.
    void getStartRecResult();

    void read_error();

signals:
    /// False, once per recording: it failed, wholly or from here on.
    void recordSignal(bool ok);

    /// The recording that was started last has ended without having been stopped.
    void endedByItself();

    /// The recording `path` is complete and closed; once per recording that has a file, also when
    /// it ended by itself or after the stop.
    void finished(const QString &path);

private:
    RecordRequest request();
    void stopFeeding();
    bool isCameraThere() const;
    void takeFailure(const RecordingFailure &failure);
    void finishRecordingsOf(const QString &path);

    std::chrono::steady_clock::time_point m_startTime; ///< of the recording that was started last
    QString m_recordPath;
    QString m_videoDeviceId = QStringLiteral("1");
    QString m_frameRate = QStringLiteral("30");
    QString m_audioDeviceId = QStringLiteral("0");
    QString m_screenDeviceId;
    QPointer<CameraThread> m_source;
    int m_camera = 0;
    QString m_cameraId; ///< unique ID of the camera being recorded; it may not be the one shown
    QPointer<Recording> m_recording; ///< the one that was started last, while its ffmpeg runs
    RecordingFailure m_failure;
    QPointer<QProcess> m_deviceList;
};

/// Index of the capture device that shows the screen in the device list that ffmpeg printed; empty
/// when there is none.
QString screenDeviceIndex(const QString &listing);
