#include "mainwindow/preview/status_line.h"

#include "app/state.h"
#include "mainwindow/look/window_text.h"

#include <QLabel>
#include <QLocale>
#include <QStatusBar>
#include <QStorageInfo>
#include <QTimer>

#include <thread>

namespace {

constexpr int kRefreshMs = 1000;

QLabel *addLabel(QStatusBar *bar, const QString &name)
{
    auto *label = new QLabel(bar);
    label->setObjectName(name);
    label->setContentsMargins(8, 0, 8, 0);
    bar->addPermanentWidget(label);
    return label;
}

} // namespace

QString cameraText(QSize frame, int framesPerSecond)
{
    if (frame.isEmpty())
        return QString();
    const QString size = QStringLiteral("%1 \u00d7 %2").arg(frame.width()).arg(frame.height());
    return framesPerSecond > 0 ? WindowText::tr("%1, %2 fps").arg(size).arg(framesPerSecond) : size;
}

QString zoomText(double shownWidth, int frameWidth)
{
    if (frameWidth <= 0)
        return QString();
    return WindowText::tr("Zoom %1 %").arg(qRound(100.0 * shownWidth / frameWidth));
}

QString freeSpaceText(qint64 bytes)
{
    if (bytes < 0)
        return QString();
    return WindowText::tr("%1 free").arg(
        QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat));
}

StatusLine::StatusLine(QStatusBar *bar)
    : QObject(bar)
    , m_recording(addLabel(bar, QStringLiteral("recordingStatusLabel")))
    , m_camera(addLabel(bar, QStringLiteral("cameraStatusLabel")))
    , m_zoom(addLabel(bar, QStringLiteral("zoomStatusLabel")))
    , m_space(addLabel(bar, QStringLiteral("spaceStatusLabel")))
    , m_timer(new QTimer(this))
{
    connect(m_timer, &QTimer::timeout, this, &StatusLine::refresh);
    m_recording->hide();
    m_timer->start(kRefreshMs);
    m_sinceRefresh.start();
}

void StatusLine::countFrame(QSize frame)
{
    ++m_frames;
    if (frame == m_frame)
        return;
    m_frame = frame;
    m_rate = 0;
    m_camera->setText(cameraText(frame, 0));
}

void StatusLine::showZoom(double shownWidth, int frameWidth)
{
    m_zoom->setText(zoomText(shownWidth, frameWidth));
}

void StatusLine::showRecording(const QString &time)
{
    const bool isRunning = !time.isEmpty();
    m_recording->setVisible(isRunning);
    m_recording->setText(
        isRunning ? QStringLiteral("<span style=\"color:#d93025\">\u25cf</span> %1").arg(time)
                  : QString());
    m_recording->setAccessibleName(isRunning ? WindowText::tr("Recording, %1").arg(time)
                                             : QString());
}

void StatusLine::clearCamera()
{
    m_frame = QSize();
    m_frames = 0;
    m_rate = 0;
    m_camera->clear();
    m_zoom->clear();
}

void StatusLine::refresh()
{
    // Also called between the ticks, where one picture would look like a thousand a second.
    const qint64 elapsedMs = m_sinceRefresh.elapsed();
    if (elapsedMs >= kRefreshMs / 2) {
        m_rate = qRound(1000.0 * m_frames / elapsedMs);
        m_frames = 0;
        m_sinceRefresh.start();
    }
    m_camera->setText(cameraText(m_frame, m_rate));
    showFreeSpace();
}

// Asking may take as long as a network does.
void StatusLine::showFreeSpace()
{
    m_space->setText(freeSpaceText(m_freeSpace->bytes));
    if (m_freeSpace->isBeingAsked.exchange(true))
        return;
    std::thread([space = m_freeSpace, folder = SaveFolderPath] {
        const QStorageInfo storage(folder);
        space->bytes = storage.isValid() ? storage.bytesAvailable() : -1;
        space->isBeingAsked = false;
    }).detach();
}
