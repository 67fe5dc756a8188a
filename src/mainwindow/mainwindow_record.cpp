#include "features/record_path.h"
#include "features/recorder.h"
#include "mainwindow/file_naming.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

#include <QFileInfo>
#include <QTimerEvent>

namespace {

constexpr int kRecordTickMs = 1000;

} // namespace

void MainWindow::SetRecordModeUI()
{
    ui->v_formatComBox->addItems({tr("MOV"), tr("AVI"), tr("MP4")});
    ui->v_nameComBox->addItems({tr("Date and time"), tr("Custom"), tr("Name as folder")});
    connect(recorder, &Recorder::finished, this,
            [this](const QString &path) { addToImageList(path, QFileInfo(path).fileName()); });
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
    fRecformat = QStringLiteral("mov");
    if (index == 1)
        fRecformat = QStringLiteral("avi");
    if (index == 2)
        fRecformat = QStringLiteral("mp4");
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
        recorder->setCamera(camid);
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
}

void MainWindow::showRecordedTime()
{
    const QString time = elapsedTimeText(m_recordedSeconds);
    ui->recTimeLabel->setText(time);
    ui->recTimeLabel->setAccessibleName(tr("Recorded time: %1").arg(time));
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

// The recording state stays as it is: the user ends it with the stop button.
void MainWindow::RecordResultEvent(bool isOk)
{
    if (!isOk)
        showBox(QMessageBox::Information, QString(), tr("Recording failed!"));
}
