#include "features/countdown.h"
#include "features/wise_captrue_thread.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/themed_icon.h"
#include "ui_mainwindow.h"
#include "video/video_thread.h"

#include <QTimer>

namespace {

Countdown countdown()
{
    return Countdown(wiseCount, isTimerDoing);
}

QString pageTurnText(const char *english, const char *chinese)
{
    return sLanguage == 1 ? QString::fromUtf8(chinese) : MainWindow::tr(english);
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
    ui->wiseTimeLabel->hide();
    showPageTurnTexts();
}

void MainWindow::showPageTurnTexts()
{
    ui->bt_wiseCaptrue->setText(isWiseCaptrue
                                    ? pageTurnText(QT_TR_NOOP("Stop captrue"), "停止连拍")
                                    : pageTurnText(QT_TR_NOOP("Start captrue"), "开始连拍"));
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
        ui->wiseTimeLabel->hide();
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
        on_bt_captrue_clicked();
        showPageTurnWaiting();
        break;
    case Countdown::Step::Idle:
        m_countdownTimer->stop();
        break;
    }
}

void MainWindow::showPageTurnWaiting()
{
    showPageTurnLabel(pageTurnText(QT_TR_NOOP("Wait for the next page..."), "等待翻页..."));
}

void MainWindow::showPageTurnLabel(const QString &text)
{
    constexpr int digitPixels = 64;
    constexpr int textPixels = 26;
    QFont font = ui->wiseTimeLabel->font();
    font.setPixelSize(text.size() == 1 ? digitPixels : textPixels);
    ui->wiseTimeLabel->setFont(font);
    ui->wiseTimeLabel->setText(text);
    ui->wiseTimeLabel->show();
    ui->wiseTimeLabel->raise();
}
