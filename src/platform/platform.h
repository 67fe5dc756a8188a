#pragma once

#include "platform/camera_control.h"

#include <QList>
#include <QPair>
#include <QSize>
#include <QString>
#include <QStringList>

#include <memory>

/// One camera of the system. Its position in `Platform::cameras()` is its device index.
struct CameraInfo
{
    QString uniqueId;    ///< ends in vendor and product ID, eight lower-case hexadecimal digits
    QString description; ///< name shown to the user
};

/// One mode that a camera offers; rates in whole or broken frames a second.
struct CameraMode
{
    QSize size;
    double rate = 0;
};

/// What libavformat opens to read a camera.
struct CaptureSource
{
    QString format;                         ///< input format name, e.g. "avfoundation"
    QString url;                            ///< e.g. "0" or "unix:/run/..."
    QList<QPair<QString, QString>> options; ///< e.g. ("video_size", "1920x1080")
};

/// One serial port of the system.
struct SerialPortEntry
{
    QString name;     ///< port name as the system lists it
    QString location; ///< what QSerialPort::setPortName takes
    QString description, manufacturer, serialNumber;
};

/// What a recording is asked for; the platform chooses inputs and options.
struct RecordRequest
{
    QString ffmpeg;      ///< path of the executable
    int camera = 0;      ///< device index of the camera to record
    QString videoDevice; ///< avfoundation video device index
    QString audioDevice; ///< audio device index as text; empty records no sound
    QString rate;        ///< frames a second as text
    QString target;      ///< output file

    // Only where takesPictures() says so.
    QSize size = {};    ///< of the pictures, before any turn
    int angle = 0;      ///< clockwise degrees by which the recording is turned
    qint64 startUs = 0; ///< from which the pictures' times count, microseconds since 1970
};

/// A sound input as libavformat opens it.
struct SoundInput
{
    QString format; ///< e.g. "pulse", "alsa"; "lavfi" for a sound that is made; empty for none
    QString device;
    QString description; ///< name shown to the user
};

/// Why a camera does not open, as far as the system tells.
struct OpenProblem
{
    enum Kind { Unknown, Forbidden, Busy };
    Kind kind = Unknown;
    QString device; ///< its path, e.g. "/dev/video0"
    QString holder; ///< Busy: name of the program that has it open; empty when nobody tells
};

/// The one seam to the operating system. All members may be called from any thread and never
/// block for long; what does not exist gives an empty list or text.
class Platform
{
public:
    Platform() = default;
    virtual ~Platform() = default;
    Platform(const Platform &) = delete;
    Platform &operator=(const Platform &) = delete;

    /// Cameras in device-index order.
    virtual QList<CameraInfo> cameras() const = 0;

    /// Folders in which something appears or goes when a device does; for noticing it sooner than
    /// by asking again and again.
    virtual QStringList deviceFolders() const;

    /// Modes of camera `index` in the order in which the device lists them; used by pictor-probe.
    virtual QList<CameraMode> modes(int index) const = 0;

    /// `size` as "1920x1080", `rate` as "30". An index that matches no camera still gives a
    /// source; opening it fails.
    virtual CaptureSource captureSource(int index, const QString &size,
                                        const QString &rate) const = 0;

    /// Command text that prints the modes of camera `index`, one a line, as avfoundation lists
    /// them. `ffmpeg` is the path of the executable.
    virtual QString probeCommand(const QString &ffmpeg, int index) const = 0;

    /// Command text that records a camera into `request.target`.
    virtual QString recordCommand(const RecordRequest &request) const = 0;

    /// True when that command does not open the camera, which can be read only once, but waits for
    /// its pictures, as a NUT stream on standard input.
    virtual bool takesPictures() const { return false; }

    /// Command text that lists the capture devices; empty where there is nothing to list.
    virtual QString deviceListCommand(const QString &ffmpeg) const = 0;

    /// Names of the audio inputs in device order.
    virtual QStringList audioInputs() const = 0;

    /// Input `index` of audioInputs().
    virtual SoundInput soundInput(int index) const;

    /// Position in audioInputs() of the input that fits camera `index` best; -1 when unknown.
    virtual int microphoneOf(int index) const;

    virtual QList<SerialPortEntry> serialPorts() const = 0;

    /// True for the port of a camera stand's hardware buttons.
    virtual bool isButtonAdapter(const SerialPortEntry &port) const;

    /// True when camera `index` can be asked for an autofocus run. May wait for the device.
    virtual bool canFocus(int index) const;

    /// Starts one autofocus run; false when the camera offers none or does not answer.
    virtual bool focus(int index);

    /// What can be chosen about the picture of camera `index`, in the order of their kinds, with
    /// the present values. This and setControl() may wait for the device; not for the GUI thread.
    virtual QList<CameraControl> controls(int index) const;

    /// False when the camera has no such control, refuses the value or is gone.
    virtual bool setControl(int index, CameraControl::Kind kind, int value);

    /// Asked after camera `index` failed to open.
    virtual OpenProblem openProblem(int index) const;
};

/// The platform in use: avfoundation on macOS; on Linux the system's devices and behind them those
/// of the virtual stand; elsewhere the stand; until a test installs its own.
Platform &platform();

/// Installs `replacement`, or the system's own again when it is null. GUI thread, while no
/// camera is open.
void setPlatform(std::unique_ptr<Platform> replacement);

/// `text` in double quotes when it holds a character at which QProcess would split it.
QString quotedArgument(const QString &text);

/// Command text that runs the pictor-probe beside the program for camera `index`.
QString pictorProbeCommand(int index);
