#pragma once

#include <QStringList>
#include <QWidget>

/// Over the empty preview while no known camera is there: the other cameras of the system, each
/// with a button that makes it the main camera from then on. GUI thread.
class CameraOffer : public QWidget
{
    Q_OBJECT

public:
    /// `preview` is the widget that is written over.
    explicit CameraOffer(QWidget *preview);

    /// Lists the system's cameras anew and shows them, or hides them all. Cameras that the user
    /// has ruled out are not offered.
    void offer(bool wanted);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void chosen(); ///< a camera has become the user's main camera

private:
    void list();
    void place();

    QWidget *m_preview;
    QStringList m_shown; ///< IDs, names and texts of the rows
};
