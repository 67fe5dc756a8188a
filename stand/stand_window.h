#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class Stand;

/// The stand on a display: what lies under the camera, its hardware buttons, and the plugs of its
/// devices. Whatever is pressed becomes a command of the stand.
class StandWindow : public QWidget
{
    Q_OBJECT

public:
    explicit StandWindow(Stand &stand);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    QWidget *makeSceneRow();
    QWidget *makeButtonRow();
    QWidget *makePlugRow();
    void run(const QString &command);
    void openPicture();
    void showScene();
    void showPlugs();

    Stand &m_stand;
    QLabel *m_picture, *m_answer;
    QComboBox *m_scenes = nullptr;
    QList<QCheckBox *> m_plugs;
};
