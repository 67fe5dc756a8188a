#include "mainwindow/capture/live_codes.h"

#include "app/state.h"
#include "features/code_watch.h"
#include "video/gr_code_item.h"
#include "video/gr_view.h"
#include "video/video_thread.h"

#include <QGraphicsScene>

namespace {

bool isNamingByCode()
{
    return fNameType == NameByBarcode && currentFunMode == DocumentMode;
}

} // namespace

LiveCodes::LiveCodes(Gr_View *view, QGraphicsScene *scene, QObject *parent)
    : QObject(parent)
    , m_view(view)
    , m_item(new Gr_CodeItem)
    , m_watch(new CodeWatch(this))
{
    scene->addItem(m_item);
    connect(view, &Gr_View::showRectChanged, this,
            [this] { m_item->setPicture(m_view->paintedPicture()); });
    connect(m_watch, &CodeWatch::looked, this, &LiveCodes::show);
    startTimer(kPeriodMs);
}

void LiveCodes::timerEvent(QTimerEvent *)
{
    const FramePtr frame = isNamingByCode() && videoThread ? videoThread->lastFrame() : nullptr;
    if (!frame) {
        m_lastFrame.reset();
        m_item->setLabels({}, {}, 0);
        return;
    }
    if (frame == m_lastFrame.lock() && m_lastType == BarQrCodeType)
        return;
    if (m_watch->look(frame, BarQrCodeType)) {
        m_lastFrame = frame;
        m_lastType = BarQrCodeType;
    }
}

void LiveCodes::show(const SeenCodes &seen)
{
    if (!isNamingByCode())
        return;
    QVector<Gr_CodeItem::Label> labels;
    for (const SeenCode &code : seen.codes)
        labels.append({code.corners, code.name});
    m_item->setLabels(labels, seen.frame, seen.angle);
}
