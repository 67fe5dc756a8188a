#include "app/state.h"
#include "features/countdown.h"
#include "features/wise_captrue_thread.h"
#include "mainwindow/capture/pending_capture.h"
#include "mainwindow/lists/image_list.h"
#include "mainwindow/look/themed_icon.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/preview/preview_feedback.h"
#include "ui_mainwindow.h"
#include "video/video_thread.h"

#include <QFileInfo>
#include <QLocale>
#include <QTime>
#include <QTimer>

#include <utility>

namespace {

Countdown countdown()
{
    return Countdown(wiseCount, isTimerDoing);
}

} // namespace

void MainWindow::on_bt_wiseCaptrue_clicked()
{
    if (!isOpenCamera && !isWiseCaptrue)
        return;
    if (isWiseCaptrue) {
        stopPageTurn();
        return;
    }
    if (fNameType == NameCustom && !ui->customTextEdit->text().isEmpty())
        warn(tr("Every page gets the same name and replaces the one before. Choose another naming "
                "to keep them all."));
    m_isPageTurnFailureTold = false;
    isWiseCaptrue = true;
    wiseCaptrueThread->setFrameSource([camera = videoThread] { return camera->lastFrame(); });
    wiseCaptrueThread->toStart();
    showPageTurnTexts();
}

void MainWindow::stopPageTurn()
{
    if (!isWiseCaptrue)
        return;
    isWiseCaptrue = false;
    wiseCaptrueThread->toStop();
    m_countdownTimer->stop();
    countdown().cancel();
    hidePageTurnLabel();
    showPageTurnTexts();
}

void MainWindow::showPageTurnTexts()
{
    ui->bt_wiseCaptrue->setText(isWiseCaptrue ? tr("Stop captrue") : tr("Start captrue"));
    ui->bt_wiseCaptrue->setIcon(themedIcon(isWiseCaptrue ? QStringLiteral("capture_stop")
                                                         : QStringLiteral("capture_auto")));
}

void MainWindow::wiseCaptrueEvent(bool isReady)
{
    if (sender() == wiseCaptrueThread && !isWiseCaptrue)
        return; // sent before the stop
    if (isReady && countdown().start()) {
        showPageTurnLabel(QString::number(wiseCount));
        m_countdownTimer->start(Countdown::kStepMs);
    } else if (!isReady && !isTimerDoing) {
        hidePageTurnLabel();
    }
}

void MainWindow::stepCountdown()
{
    switch (countdown().step()) {
    case Countdown::Step::Show:
        showPageTurnLabel(QString::number(wiseCount));
        break;
    case Countdown::Step::Shoot:
        m_countdownTimer->stop();
        wiseCaptrueThread->setShotFrame(videoThread->lastFrame());
        if (press(true)) { // the page may be turned: its picture is taken, though not yet written
            showPageTurnWaiting();
        } else {
            losePage(QTime::currentTime(), captureList(), QString());
            showPageTurnLabel(tr("not captured"));
        }
        break;
    case Countdown::Step::Idle:
        m_countdownTimer->stop();
        break;
    }
}

// Nobody looks at the window while pages are turned: the message there goes too soon.
void MainWindow::tellPageTurnFailure()
{
    if (std::exchange(m_isPageTurnFailureTold, true))
        return;
    showBox(QMessageBox::Warning, QString(), tr("A page was not captured."),
            m_feedback->message() + QLatin1Char('\n') + tr("Check the pages from here on."));
}

CaptureList MainWindow::captureList() const
{
    return currentFunMode == MultipdfMode ? CaptureList::PdfPages : CaptureList::CapturedFiles;
}

void MainWindow::finishTurnedPage(const PendingCapture &capture, bool isWhole, bool isWritten)
{
    if (isWhole) {
        m_isPageTurnFailureTold = false;
        return;
    }
    losePage(capture.time, capture.step.list, isWritten ? QString() : capture.step.path);
    if (isWiseCaptrue)
        showPageTurnLabel(tr("not captured"));
}

// No later capture takes over the entry of a lost page. `announced` is the one that it had.
void MainWindow::losePage(QTime time, CaptureList list, const QString &announced)
{
    tellPageTurnFailure();
    const QString text =
        tr("Not captured, %1").arg(QLocale().toString(time, QStringLiteral("HH:mm:ss")));
    listOf(list)->addLostPage(text, announced);
}

void MainWindow::markTurnedPageDoubtful()
{
    if (m_turnedPage.isEmpty())
        return;
    ui->listWidget1->markDoubtful(m_turnedPage);
    ui->pdflistWidget->markDoubtful(m_turnedPage);
    warn(tr("%1: a hand may be in the picture. Look at it.")
             .arg(QFileInfo(m_turnedPage).fileName()));
}

void MainWindow::showPageTurnWaiting()
{
    showPageTurnLabel(tr("Wait for the next page..."));
}

void MainWindow::showPageTurnLabel(const QString &text)
{
    constexpr int digitPixels = 64;
    constexpr int textPixels = 26;
    QFont font = ui->wiseTimeLabel->font();
    font.setPixelSize(text.size() == 1 ? digitPixels : textPixels);
    ui->wiseTimeLabel->setFont(font);
    ui->wiseTimeLabel->setText(text);
    ui->wiseTimeLabel->setVisible(!m_hint); // which stands in the same place
    ui->wiseTimeLabel->raise();
}

void MainWindow::hidePageTurnLabel()
{
    ui->wiseTimeLabel->clear();
    ui->wiseTimeLabel->hide();
}
