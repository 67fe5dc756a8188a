#include "features/record_path.h"
#include "features/recorder.h"
#include "mainwindow/capture/file_naming.h"
#include "mainwindow/look/choice_texts.h"
#include "mainwindow/look/window_text.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/preview/preview_feedback.h"
#include "mainwindow/preview/status_line.h"
#include "platform/platform.h"
#include "ui_mainwindow.h"
#include "video/video_thread.h"

#include <QFileInfo>
#include <QTimerEvent>

namespace {

constexpr int kRecordTickMs = 1000;

QString causeText(RecordingFailure::Cause cause)
{
    switch (cause) {
    case RecordingFailure::DiskFull:
        return WindowText::tr("The disk is full.");
    case RecordingFailure::NoProgram:
        return WindowText::tr("The ffmpeg program is missing or cannot be started.");
    case RecordingFailure::CameraGone:
        return WindowText::tr("The camera is not connected any more.");
    case RecordingFailure::DamagedPicture:
        return WindowText::tr("The camera sent pictures that cannot be read.");
    case RecordingFailure::NameTaken:
        return WindowText::tr("A folder or a protected file has the name of the recording.");
    case RecordingFailure::StoppedAtOnce:
        return WindowText::tr("The recording stopped at once.");
    case RecordingFailure::Ended:
        return WindowText::tr("The recording ended by itself.");
    case RecordingFailure::Unknown:
        break;
    }
    return WindowText::tr("The log says more.");
}

QString fileText(RecordingFailure::File file)
{
    switch (file) {
    case RecordingFailure::Kept:
        return WindowText::tr("What was recorded so far is kept.");
    case RecordingFailure::Nothing:
        return WindowText::tr("Nothing was recorded.");
    case RecordingFailure::GoesOn:
        break;
    }
    return WindowText::tr("The recording goes on.");
}

} // namespace

void MainWindow::SetRecordModeUI()
{
    ui->v_formatComBox->addItems(choiceTexts(videoFormats(), false));
    ui->v_nameComBox->addItems(choiceTexts(videoNamingChoices(), false));
    connect(recorder, &Recorder::finished, this,
            [this](const QString &path) { addToImageList(path, QFileInfo(path).fileName()); });
    connect(recorder, &Recorder::endedByItself, this, &MainWindow::stopRecording);
}

QString MainWindow::getRecordPath()
{
    RecordNaming naming;
    naming.nameType = recordNameType;
    naming.text = ui->v_customTextEdit->text();
    naming.folder = SaveFolderPath;
    naming.format = fRecformat;
    naming.time = QDateTime::currentDateTime();
    return recordPath(naming);
}

void MainWindow::on_v_formatComBox_currentIndexChanged(int index)
{
    fRecformat = QString::fromLatin1(choiceOf(videoFormats(), index).ending + 1); // without dot
    focusCentralWidget();
}

void MainWindow::on_v_nameComBox_currentIndexChanged(int index)
{
    if (index < 0)
        return; // emptied for another language
    recordNameType = index + 1;
    ui->v_customLabel->setEnabled(index != 0);
    ui->v_customTextEdit->setEnabled(index != 0);
    focusCentralWidget();
}

void MainWindow::on_Bt_StartRec_clicked()
{
    if (const QString refusal = recordRefusal(); !isRecord && !refusal.isEmpty()) {
        warn(refusal);
    } else if (!isRecord) {
        m_feedback->clearMessage();
        recorder->setCamera(camid);
        recorder->setSource(videoThread);
        recorder->setRecordPath(getRecordPath());
        recorder->StartREC();
        showRecording(true);
        m_recordedSeconds = 0;
        showRecordedTime();
        m_recordTimerId = startTimer(kRecordTickMs);
    }
    focusCentralWidget();
}

QString MainWindow::recordRefusal() const
{
    if (SaveFolderPath.isEmpty())
        return tr("No folder is chosen for the recordings. Choose one under Setting, Save path.");
    if (platform().takesPictures() && !(videoThread && videoThread->currentFrame()))
        return tr("The camera delivers no picture.");
    return recordNameType == RecordByTime ? QString()
                                          : fileNameProblem(ui->v_customTextEdit->text());
}

void MainWindow::on_Bt_StopRec_clicked()
{
    stopRecording();
    focusCentralWidget();
}

void MainWindow::stopRecording()
{
    if (!isRecord)
        return;
    showRecording(false);
    killTimer(m_recordTimerId);
    m_recordTimerId = 0;
    recorder->StopREC();
}

void MainWindow::showRecording(bool isRunning)
{
    isRecord = isRunning;
    ui->Bt_StartRec->setEnabled(!isRunning);
    ui->Bt_StopRec->setEnabled(isRunning);
    if (!isRunning)
        m_status->showRecording(QString());
}

void MainWindow::showRecordedTime()
{
    const QString time = elapsedTimeText(m_recordedSeconds);
    ui->recTimeLabel->setText(time);
    ui->recTimeLabel->setAccessibleName(tr("Recorded time: %1").arg(time));
    m_status->showRecording(isRecord ? time : QString());
}

void MainWindow::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_recordTimerId || m_recordTimerId == 0) {
        QMainWindow::timerEvent(event);
        return;
    }
    ++m_recordedSeconds;
    showRecordedTime();
}

// The recording state stays as it is: it follows ffmpeg, which may go on.
void MainWindow::RecordResultEvent(bool isOk)
{
    if (!isOk)
        showBox(QMessageBox::Information, QString(), tr("Recording failed!"),
                causeText(recorder->failure().cause) + QLatin1Char(' ') +
                    fileText(recorder->failure().file));
}
