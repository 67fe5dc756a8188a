#pragma once

#include "platform/stand_descriptor.h"
#include "stand/camera.h"
#include "stand/options.h"
#include "stand/runtime_folder.h"
#include "stand/scene.h"
#include "stand/stream_server.h"

#include <QObject>

#include <memory>

class ButtonLine;
class QLocalServer;

/// The whole stand: its cameras, its button line and what lies under it. Everything that can be
/// asked of it goes through command(), from standard input, the control socket and the window
/// alike. GUI thread.
class Stand : public QObject
{
    Q_OBJECT

public:
    explicit Stand(const StandOptions &options);
    ~Stand() override;

    /// Why the stand could not be set up; empty when its devices are listed.
    QString fault() const { return m_fault; }

    /// Carries out one command line and returns "ok" or "error: ..." with a reason.
    QString command(const QString &line);

    /// What lies under the main camera.
    const Scene &scene() const { return m_onDesk; }

    /// Names of all devices, plugged in or not: "main", perhaps "assist", "buttons".
    QStringList devices() const;

    /// True while the device "main", "assist" or "buttons" is plugged in.
    bool isPlugged(const QString &device) const;

signals:
    void sceneChanged();
    void plugsChanged();
    void quitRequested();

private:
    struct CameraPort
    {
        StandDevice device;
        std::unique_ptr<StandCamera> camera;
        std::unique_ptr<StreamServer> server; ///< null while unplugged
    };

    QString setUp(const StandOptions &options);
    void addCamera(const QString &name, const QString &id, const QString &description,
                   const std::vector<CameraMode> &modes);
    CameraPort *findCamera(const QString &name);
    bool listenForCommands();

    void layOnDesk(const Scene &scene);
    QString showScenes(const QString &argument);
    QString showNext();
    QString turnToNext();
    QString showHand(const QString &speed);
    QString flicker(const QString &grayLevels);
    QString clearDesk();
    QString press(const QString &button);
    QString sendBytes(const QString &hex);
    QString plug(const QString &device);
    QString unplug(const QString &device);
    QString stall(const QStringList &words);
    QString spoilFrames(const QString &name, const QStringList &words);
    QString focus(const QString &device);
    QString controls(const QString &device);
    QString setControl(const QStringList &words);
    QString sendToButtons(const QByteArray &bytes);

    RuntimeFolder m_folder;
    QString m_fault;
    std::vector<Scene> m_scenes;
    size_t m_position = 0; ///< in m_scenes
    Scene m_onDesk;
    std::vector<CameraPort> m_cameras;
    std::unique_ptr<ButtonLine> m_buttons; ///< null while unplugged
    std::unique_ptr<QLocalServer> m_control;
};
