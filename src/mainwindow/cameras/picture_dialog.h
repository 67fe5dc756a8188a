#pragma once

#include "platform/camera_control.h"

#include <QDialog>
#include <QMap>

class PictureControls;

/// A small page beside the live picture for what the camera lets one choose about it; each change
/// takes effect at once. What an automatic rules is greyed. GUI thread.
class PictureDialog : public QDialog
{
    Q_OBJECT

public:
    PictureDialog(PictureControls *controls, QWidget *parent);

private:
    void showList();
    void build();
    QWidget *editor(const CameraControl &control);
    void showValues();

    PictureControls *const m_controls; ///< outlives the dialog
    class QFormLayout *m_form;
    class QLabel *m_hint;
    class QPushButton *m_defaults;
    QMap<CameraControl::Kind, QWidget *> m_editors;
    QList<CameraControl> m_built; ///< for which the editors were made
};
