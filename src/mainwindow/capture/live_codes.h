#pragma once

#include "video/frame.h"

#include <QObject>

class CodeWatch;
class Gr_CodeItem;
class Gr_View;
class QGraphicsScene;
struct SeenCodes;

/// While files are named by code: the codes of the main camera's live picture, marked where they
/// are, with the names that they give. GUI thread.
class LiveCodes : public QObject
{
    Q_OBJECT

public:
    static constexpr int kPeriodMs = 200; ///< between two looks, at least

    /// `scene` takes the marks.
    LiveCodes(Gr_View *view, QGraphicsScene *scene, QObject *parent);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void show(const SeenCodes &seen);

    Gr_View *m_view;
    Gr_CodeItem *m_item; // the scene's
    CodeWatch *m_watch;
    std::weak_ptr<const Frame> m_lastFrame; // looked at
    int m_lastType = 0;                     // of the codes looked for
};
