#pragma once

#include <QObject>
#include <QPointer>
#include <QThread>

/// Runs of a camera's autofocus, one at a time, each in a thread of its own: a camera takes half a
/// second to answer, or does not. GUI thread.
class Autofocus : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    /// Waits for the end of a run.
    ~Autofocus() override;

    /// Starts a run of the camera with device index `camera`; nothing while one is under way.
    void start(int camera);

signals:
    void failed(); ///< the camera did not focus

private:
    QPointer<QThread> m_run;
};
